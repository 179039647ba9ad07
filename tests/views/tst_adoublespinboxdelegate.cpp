#include "views/adoublespinboxdelegate.h"

#include "delegatecell.h"
#include "editorkeys.h"

#include "channel/achannelinfo.h"
#include "channel/achannelinfomodel.h"

#include <QtWidgets/QSpinBox>

#include <limits>

class TestADoubleSpinBoxDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void theEditorIsASpinBoxForMegahertz();
    void theEditorShowsTheCellsNumber_data();
    void theEditorShowsTheCellsNumber();
    void whatIsTypedStaysInTheRange_data();
    void whatIsTypedStaysInTheRange();
    void aDoubleIsCommitted();
    void aNumberThatIsStillBeingTypedIsCommitted();
    void theEditorFillsTheCell();
    void otherEditorsAreServedByTheBaseClass();
    void aChannelTakesTheNumberAsMegahertz();
};

namespace {

QDoubleSpinBox *makeEditor(const ADoubleSpinBoxDelegate &delegate, QWidget *parent, const QModelIndex &index)
{
    auto *box = qobject_cast<QDoubleSpinBox *>(delegate.createEditor(parent, {}, index));
    delegate.setEditorData(box, index);
    return box;
}

} // namespace

void TestADoubleSpinBoxDelegate::theEditorIsASpinBoxForMegahertz()
{
    QWidget parent;
    const ADoubleSpinBoxDelegate delegate(&parent);
    QCOMPARE(delegate.parent(), &parent);
    const Cell cell(1);
    const auto *box = qobject_cast<QDoubleSpinBox *>(delegate.createEditor(&parent, {}, cell.index()));
    QVERIFY(box);
    QCOMPARE(box->parentWidget(), &parent);
    QCOMPARE(box->minimum(), 0.0);
    QCOMPARE(box->maximum(), 20000.0);
    QCOMPARE(box->decimals(), 3);
    QCOMPARE(box->suffix(), QString("MHz"));
    QCOMPARE(box->prefix(), QString());
    QCOMPARE(box->value(), 0.0); // the cell is read by setEditorData
}

void TestADoubleSpinBoxDelegate::theEditorShowsTheCellsNumber_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("number") << QVariant(100.5) << "100.500MHz";
    QTest::newRow("whole number") << QVariant(7) << "7.000MHz";
    QTest::newRow("text") << QVariant("433.92") << "433.920MHz";
    QTest::newRow("too many decimals") << QVariant(1.23456) << "1.235MHz";
    QTest::newRow("beyond") << QVariant(20000.5) << "20000.000MHz";
    QTest::newRow("below") << QVariant(-1.0) << "0.000MHz";
    QTest::newRow("no number") << QVariant("x") << "0.000MHz";
    QTest::newRow("with a unit") << QVariant("5 MHz") << "0.000MHz";
    QTest::newRow("nothing") << QVariant() << "0.000MHz";
    QTest::newRow("infinite") << QVariant(std::numeric_limits<double>::infinity()) << "20000.000MHz";
    QTest::newRow("infinite below") << QVariant(-std::numeric_limits<double>::infinity()) << "0.000MHz";
    QTest::newRow("not a number") << QVariant(std::numeric_limits<double>::quiet_NaN()) << "20000.000MHz";
}

void TestADoubleSpinBoxDelegate::theEditorShowsTheCellsNumber()
{
    QFETCH(QVariant, value);
    QWidget parent;
    const ADoubleSpinBoxDelegate delegate;
    Cell cell(value);
    auto *box = makeEditor(delegate, &parent, cell.index());
    QTEST(box->text(), "text");
    const double shown = box->value();
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(cell.value(), QVariant(shown)); // also where the cell held something else
}

void TestADoubleSpinBoxDelegate::whatIsTypedStaysInTheRange_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("committed");
    QTest::newRow("the maximum") << "20000" << 20000.0;
    QTest::newRow("beyond the maximum") << "20000.001" << 20000.0;
    QTest::newRow("another digit") << "200001" << 20000.0;
    QTest::newRow("negative") << "-5" << 1.0; // the sign is refused, and the 5 with it
    QTest::newRow("four decimals") << "1.2345" << 1.234;
    QTest::newRow("letters") << "x7y" << 7.0;
}

void TestADoubleSpinBoxDelegate::whatIsTypedStaysInTheRange()
{
    QFETCH(QString, typed);
    QWidget parent;
    const ADoubleSpinBoxDelegate delegate;
    Cell cell(1);
    auto *box = makeEditor(delegate, &parent, cell.index());
    editorkeys::type(box, typed);
    delegate.setModelData(box, &cell.model, cell.index());
    QTEST(cell.value().toDouble(), "committed");
}

void TestADoubleSpinBoxDelegate::aDoubleIsCommitted()
{
    QWidget parent;
    const ADoubleSpinBoxDelegate delegate;
    Cell cell("7");
    auto *box = makeEditor(delegate, &parent, cell.index());
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(cell.value(), QVariant(7.0));
    QCOMPARE(cell.value().type(), QVariant::Double);
}

void TestADoubleSpinBoxDelegate::aNumberThatIsStillBeingTypedIsCommitted()
{
    QWidget parent;
    const ADoubleSpinBoxDelegate delegate;
    Cell cell(1);
    auto *box = makeEditor(delegate, &parent, cell.index());
    box->setKeyboardTracking(false); // so that the value follows only when it is asked to
    editorkeys::type(box, "42.5");
    QCOMPARE(box->value(), 1.0);
    delegate.setModelData(box, &cell.model, cell.index());
    QCOMPARE(cell.value().toDouble(), 42.5);
}

void TestADoubleSpinBoxDelegate::theEditorFillsTheCell()
{
    compareEditorToItsCell(ADoubleSpinBoxDelegate(), 1);
}

void TestADoubleSpinBoxDelegate::otherEditorsAreServedByTheBaseClass()
{
    QSpinBox editor;
    compareForeignEditor(ADoubleSpinBoxDelegate(), &editor, 7, 8);
}

void TestADoubleSpinBoxDelegate::aChannelTakesTheNumberAsMegahertz()
{
    QWidget parent;
    const ADoubleSpinBoxDelegate delegate;
    auto *root = new AChannelInfo(nullptr, AChannelInfo::Generic, {}, {}, "root", false);
    auto *range =
        new AChannelInfo(root, AChannelInfo::Generic, AFrequency("1 MHz"), AFrequency("1 GHz"), "range", true);
    root->appendChild(range);
    AChannelInfoModel model(nullptr, root);
    const QModelIndex index = model.index(0, AChannelInfo::ColumnStartFreq);
    QVERIFY(index.isValid());
    auto *box = makeEditor(delegate, &parent, index);
    editorkeys::type(box, "433.92");
    delegate.setModelData(box, &model, index);
    QCOMPARE(range->beginFrequency().canonicalText(), QString("433.920000 MHz"));
}

QTEST_MAIN(TestADoubleSpinBoxDelegate)
#include "tst_adoublespinboxdelegate.moc"
