#include "delegatesamples.h"
#include "editorkeys.h"

#include <QtGui/QStandardItemModel>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QTableView>

// Painted cells against the editors that they imitate, pixel by pixel, in the style Fusion. CTest runs this program at
// scale factor 1 and at 2.

using namespace editorkeys;

namespace {

constexpr int kWidth = 240;
constexpr int kHeight = 28;

// A bare table of two columns and one row: nothing but the cells is drawn.
class CellView : public QTableView
{
public:
    CellView(const DelegateSample &sample, Qt::LayoutDirection direction)
        : m_cells(1, 2)
        , m_column(sample.column)
    {
        m_cells.setData(m_cells.index(0, 0), sample.name);
        m_cells.setData(m_cells.index(0, 1), sample.value);
        setModel(&m_cells);
        setItemDelegate(sample.make(this));
        setLayoutDirection(direction);
        setFrameShape(QFrame::NoFrame);
        setShowGrid(false);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        horizontalHeader()->hide();
        verticalHeader()->hide();
        horizontalHeader()->setDefaultSectionSize(kWidth);
        verticalHeader()->setDefaultSectionSize(kHeight);
        resize(2 * kWidth, kHeight);
    }

    QModelIndex cell() const { return m_cells.index(0, m_column); }
    QStyleOptionViewItem option() const
    {
        QStyleOptionViewItem option = viewOptions();
        option.rect = QRect(QPoint(), visualRect(cell()).size());
        return option;
    }
    QImage painted() { return viewport()->grab(visualRect(cell())).toImage().convertToFormat(QImage::Format_RGB32); }

private:
    QStandardItemModel m_cells;
    int m_column;
};

// The editor of the view's cell alone on the ground of the view, as it is without the focus.
class LoneEditor : public QWidget
{
public:
    explicit LoneEditor(const CellView &view)
    {
        setBackgroundRole(QPalette::Base);
        setAutoFillBackground(true);
        setLayoutDirection(view.layoutDirection());
        const QStyleOptionViewItem option = view.option();
        resize(option.rect.size());
        editor = view.itemDelegate()->createEditor(this, option, view.cell());
        view.itemDelegate()->setEditorData(editor, view.cell());
        editor->setGeometry(option.rect);
        editor->setAutoFillBackground(false);
    }
    QImage look() { return grab().toImage().convertToFormat(QImage::Format_RGB32); }

    QWidget *editor;
};

// The part in which two pictures differ; invalid if they are the same.
QRect difference(const QImage &a, const QImage &b)
{
    QRect different;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (a.pixel(x, y) != b.pixel(x, y))
                different |= QRect(x, y, 1, 1);
        }
    }
    return different;
}

int expectedScale()
{
    return qEnvironmentVariableIntValue("QT_SCALE_FACTOR") == 2 ? 2 : 1;
}

QString pictureName(const char *title, Qt::LayoutDirection direction, const char *what)
{
    QString name = QStringLiteral("%1-%2-%3x-%4.png")
                       .arg(QLatin1String(title), direction == Qt::RightToLeft ? "rtl" : "ltr",
                            QString::number(expectedScale()), QLatin1String(what));
    return name.replace(QLatin1Char(' '), QLatin1Char('-'));
}

const DelegateSample &sampleNamed(const char *title)
{
    for (const DelegateSample &sample : delegateSamples()) {
        if (qstrcmp(sample.title, title) == 0)
            return sample;
    }
    qFatal("no sample %s", title);
}

} // namespace

Q_DECLARE_METATYPE(Qt::LayoutDirection)

class TestDelegateLooks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aListLooksAsItsComboBox_data();
    void aListLooksAsItsComboBox();
    void aSwitchLooksAsItsCheckBox_data();
    void aSwitchLooksAsItsCheckBox();
    void aNumberLooksAsAReadOnlySpinBox_data();
    void aNumberLooksAsAReadOnlySpinBox();
    void aValueIsSeen_data();
    void aValueIsSeen();
    void anOpenSwitchHidesTheCellBelow_data();
    void anOpenSwitchHidesTheCellBelow();
};

void TestDelegateLooks::initTestCase()
{
    QLocale::setDefault(QLocale::c());
    QApplication::setStyle(QStyleFactory::create("fusion"));
    QCOMPARE(qRound(qApp->devicePixelRatio()), expectedScale());
}

void TestDelegateLooks::aListLooksAsItsComboBox_data()
{
    QTest::addColumn<const DelegateSample *>("sample");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    for (const char *title : {"filter", "enumeration"}) {
        QTest::addRow("%s", title) << &sampleNamed(title) << Qt::LeftToRight;
        QTest::addRow("%s, right to left", title) << &sampleNamed(title) << Qt::RightToLeft;
    }
}

void TestDelegateLooks::aListLooksAsItsComboBox()
{
    QFETCH(const DelegateSample *, sample);
    QFETCH(Qt::LayoutDirection, direction);
    CellView view(*sample, direction);
    LoneEditor lone(view);
    const QImage painted = view.painted();
    const QImage editor = lone.look();
    keepPicture(QPixmap::fromImage(painted), pictureName(sample->title, direction, "painted"));
    keepPicture(QPixmap::fromImage(editor), pictureName(sample->title, direction, "editor"));
    QCOMPARE(painted.size(), QSize(kWidth, kHeight) * expectedScale());
    QCOMPARE(editor.size(), painted.size());
    QCOMPARE(difference(painted, editor), QRect());
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
    CellView view(changed, direction);
    LoneEditor lone(view);
    auto *box = qobject_cast<QCheckBox *>(lone.editor);
    QVERIFY(box);
    QCOMPARE(box->isChecked(), value.toBool());
    box->setText(text); // which the editor of a variable lacks
    const QImage painted = view.painted();
    const QImage editor = lone.look();
    const QByteArray title = QByteArray(sample->title) + ' ' + text.toLatin1();
    keepPicture(QPixmap::fromImage(painted), pictureName(title, direction, "painted"));
    keepPicture(QPixmap::fromImage(editor), pictureName(title, direction, "editor"));
    QCOMPARE(painted.size(), QSize(kWidth, kHeight) * expectedScale());
    QCOMPARE(difference(painted, editor), QRect());
}

void TestDelegateLooks::aNumberLooksAsAReadOnlySpinBox_data()
{
    QTest::addColumn<const DelegateSample *>("sample");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    for (const char *title : {"frequency", "device frequency", "milliseconds", "seconds", "number"}) {
        QTest::addRow("%s", title) << &sampleNamed(title) << Qt::LeftToRight;
        QTest::addRow("%s, right to left", title) << &sampleNamed(title) << Qt::RightToLeft;
    }
}

void TestDelegateLooks::aNumberLooksAsAReadOnlySpinBox()
{
    QFETCH(const DelegateSample *, sample);
    QFETCH(Qt::LayoutDirection, direction);
    CellView view(*sample, direction);
    // The frequency delegate edits in a line edit: what its cells imitate is the spin box of another.
    const bool isLineEdit = qstrcmp(sample->editor, "QLineEdit") == 0;
    CellView other(isLineEdit ? sampleNamed("number") : *sample, direction);
    LoneEditor lone(other);
    auto *box = qobject_cast<QDoubleSpinBox *>(lone.editor);
    QVERIFY(box);
    box->setReadOnly(true);

    const QImage painted = view.painted();
    keepPicture(QPixmap::fromImage(painted), pictureName(sample->title, direction, "painted"));
    keepPicture(QPixmap::fromImage(lone.look()), pictureName(sample->title, direction, "editor"));
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
        CellView before(*sample, direction);
        CellView after(changed, direction);
        const QImage painted = before.painted();
        keepPicture(QPixmap::fromImage(painted), pictureName(sample->title, direction, "cell"));
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
    CellView view(*sample, Qt::LeftToRight);
    view.show();
    QVERIFY(QTest::qWaitForWindowActive(&view));
    view.edit(view.cell());
    QWidget *editor = view.indexWidget(view.cell());
    QVERIFY(editor);
    const QImage over = view.painted();
    keepPicture(QPixmap::fromImage(over), pictureName(sample->title, Qt::LeftToRight, "open"));
    view.model()->setData(view.cell(), sample->committed);
    qobject_cast<QCheckBox *>(editor)->setChecked(sample->value.toBool()); // as before: only the cell below differs
    QCOMPARE(difference(over, view.painted()), QRect());
}

QTEST_MAIN(TestDelegateLooks)
#include "tst_delegatelooks.moc"
