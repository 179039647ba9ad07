#include "celllook.h"
#include "delegatesamples.h"

#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>

using namespace celllook;

namespace {

class SampleView : public CellView
{
public:
    SampleView(const DelegateSample &sample, Qt::LayoutDirection direction)
        : CellView({sample.name, sample.value}, sample.column, direction)
    {
        setItemDelegate(sample.make(this));
    }
};

const DelegateSample &sampleNamed(const char *title)
{
    for (const DelegateSample &sample : delegateSamples()) {
        if (qstrcmp(sample.title, title) == 0)
            return sample;
    }
    qFatal("no sample %s", title);
}

void addBothWays(std::initializer_list<const char *> titles)
{
    QTest::addColumn<const DelegateSample *>("sample");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    for (const char *title : titles) {
        QTest::addRow("%s", title) << &sampleNamed(title) << Qt::LeftToRight;
        QTest::addRow("%s, right to left", title) << &sampleNamed(title) << Qt::RightToLeft;
    }
}

} // namespace

class TestDelegateLooks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { useFusion(); }

    void aListLooksAsItsComboBox_data();
    void aListLooksAsItsComboBox();
    void aSwitchLooksAsItsCheckBox_data();
    void aSwitchLooksAsItsCheckBox();
    void aNumberLooksAsAReadOnlySpinBox_data();
    void aNumberLooksAsAReadOnlySpinBox();
    void aCellHasTheColoursOfItsView_data();
    void aCellHasTheColoursOfItsView();
    void aValueIsSeen_data();
    void aValueIsSeen();
    void anOpenSwitchHidesTheCellBelow_data();
    void anOpenSwitchHidesTheCellBelow();
};

void TestDelegateLooks::aListLooksAsItsComboBox_data()
{
    addBothWays({"filter", "enumeration"});
}

void TestDelegateLooks::aListLooksAsItsComboBox()
{
    QFETCH(const DelegateSample *, sample);
    QFETCH(Qt::LayoutDirection, direction);
    SampleView view(*sample, direction);
    LoneEditor lone(view);
    compareLooks(view.painted(), lone.look(), sample->title, direction, "editor");
}

void TestDelegateLooks::aSwitchLooksAsItsCheckBox_data()
{
    QTest::addColumn<const DelegateSample *>("sample");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const char *suffix = direction == Qt::RightToLeft ? ", right to left" : "";
        for (const bool state : {false, true}) {
            QTest::addRow("switch %d%s", state, suffix)
                << &sampleNamed("switch") << direction << QVariant(state ? 1.0 : 0.0) << (state ? "On" : "Off");
            QTest::addRow("yes or no %d%s", state, suffix)
                << &sampleNamed("yes or no") << direction << QVariant(state) << (state ? "Yes" : "No");
        }
    }
}

void TestDelegateLooks::aSwitchLooksAsItsCheckBox()
{
    QFETCH(const DelegateSample *, sample);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    DelegateSample changed = *sample;
    changed.value = value;
    SampleView view(changed, direction);
    LoneEditor lone(view);
    auto *box = qobject_cast<QCheckBox *>(lone.editor);
    QVERIFY(box);
    QCOMPARE(box->isChecked(), value.toBool());
    box->setText(text); // which the editor of a variable lacks
    const QByteArray title = QByteArray(sample->title) + ' ' + text.toLatin1();
    compareLooks(view.painted(), lone.look(), title, direction, "editor");
}

void TestDelegateLooks::aNumberLooksAsAReadOnlySpinBox_data()
{
    addBothWays({"frequency", "device frequency", "milliseconds", "seconds", "number"});
}

void TestDelegateLooks::aNumberLooksAsAReadOnlySpinBox()
{
    QFETCH(const DelegateSample *, sample);
    QFETCH(Qt::LayoutDirection, direction);
    SampleView view(*sample, direction);
    // The frequency delegate edits in a line edit: what its cells imitate is the spin box of another.
    const bool isLineEdit = qstrcmp(sample->editor, "QLineEdit") == 0;
    SampleView other(isLineEdit ? sampleNamed("number") : *sample, direction);
    LoneEditor lone(other);
    auto *box = qobject_cast<QDoubleSpinBox *>(lone.editor);
    QVERIFY(box);
    box->setReadOnly(true);

    const QImage painted = view.painted();
    keepLook(painted, sample->title, direction, "painted");
    keepLook(lone.look(), sample->title, direction, "editor");
    box->setSuffix(QString());
    box->findChild<QLineEdit *>()->clear();
    const QImage empty = lone.look();
    QCOMPARE(painted.size(), QSize(kWidth, kHeight) * expectedScale());
    QCOMPARE(empty.size(), painted.size());

    const QRect text = difference(painted, empty); // and nothing else
    const QPoint off = text.center() - painted.rect().center();
    QVERIFY(text.width() > 10 * expectedScale() && text.height() > 5 * expectedScale());
    QVERIFY2(qAbs(off.x()) <= 2 * expectedScale(), qPrintable(QString::number(off.x())));
    QVERIFY2(qAbs(off.y()) <= 3 * expectedScale(), qPrintable(QString::number(off.y())));
}

void TestDelegateLooks::aCellHasTheColoursOfItsView_data()
{
    QTest::addColumn<const DelegateSample *>("sample");
    for (const char *title : {"filter", "enumeration", "switch", "frequency", "device frequency", "number"})
        QTest::newRow(title) << &sampleNamed(title);
}

// They are none of the application's.
void TestDelegateLooks::aCellHasTheColoursOfItsView()
{
    QFETCH(const DelegateSample *, sample);
    const QColor ink(Qt::yellow);
    SampleView view(*sample, Qt::LeftToRight);
    const QImage before = view.painted();
    QPalette palette(QColor("#203040"));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(role, ink);
    view.setPalette(palette);
    const QImage painted = view.painted();
    keepLook(painted, sample->title, Qt::LeftToRight, "coloured");
    const auto count = [&ink](const QImage &image) {
        int pixels = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                pixels += image.pixelColor(x, y) == ink ? 1 : 0;
        }
        return pixels;
    };
    QCOMPARE(count(before), 0);
    QVERIFY(count(painted) > 10 * expectedScale());
    const QPoint frame(kWidth * expectedScale() - 8, 2 * expectedScale()); // of all editors but a check box
    if (qstrcmp(sample->editor, "QCheckBox") != 0)
        QVERIFY(painted.pixelColor(frame) != before.pixelColor(frame));
}

void TestDelegateLooks::aValueIsSeen_data()
{
    addDelegateSampleRows();
}

// Each value leaves ink, and another than another value.
void TestDelegateLooks::aValueIsSeen()
{
    QFETCH(const DelegateSample *, sample);
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        DelegateSample changed = *sample;
        (changed.column == 0 ? changed.name : changed.value) = sample->committed;
        SampleView before(*sample, direction);
        SampleView after(changed, direction);
        const QImage painted = before.painted();
        keepLook(painted, sample->title, direction, "cell");
        QVERIFY(difference(painted, after.painted()).isValid());
    }
}

void TestDelegateLooks::anOpenSwitchHidesTheCellBelow_data()
{
    QTest::addColumn<const DelegateSample *>("sample");
    QTest::newRow("switch") << &sampleNamed("switch");
    QTest::newRow("yes or no") << &sampleNamed("yes or no");
}

// The view paints the cell below an open editor too: its text must not show through beside the editor's.
void TestDelegateLooks::anOpenSwitchHidesTheCellBelow()
{
    QFETCH(const DelegateSample *, sample);
    SampleView view(*sample, Qt::LeftToRight);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.edit(view.cell());
    QWidget *editor = view.indexWidget(view.cell());
    QVERIFY(editor);
    const QImage over = view.painted();
    keepLook(over, sample->title, Qt::LeftToRight, "open");
    view.model()->setData(view.cell(), sample->committed);
    qobject_cast<QCheckBox *>(editor)->setChecked(sample->value.toBool()); // as before: only the cell below differs
    QCOMPARE(difference(over, view.painted()), QRect());
}

QTEST_MAIN(TestDelegateLooks)
#include "tst_delegatelooks.moc"
