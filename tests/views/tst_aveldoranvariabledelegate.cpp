#include "views/aveldoranvariabledelegate.h"

#include "variabletable.h"

#include "views/filtertable.h"

#include <QtTest/QtTest>

#include <limits>

namespace {

using Labels = QMap<float, QString>;

} // namespace

Q_DECLARE_METATYPE(Labels)

class TestAVeldoranVariableDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNumberIsShownAsTheNameOfAVariable_data();
    void aNumberIsShownAsTheNameOfAVariable();
    void bothColumnsLeadToTheVariable_data();
    void bothColumnsLeadToTheVariable();
    void everyVariableIsFoundByNameAndByNumber();
    void otherColumnsAndIndexesLeadToNone();
    void theColumnsCanBeChosen();
    void theDeviceDecidesWhichNumbersAreKnown();
    void theFilterTablesAreThoseOfTheDevices();
    void enumerationsAreParsed_data();
    void enumerationsAreParsed();
    void theEnumerationsOfTheTableAreWhole();
};

void TestAVeldoranVariableDelegate::aNumberIsShownAsTheNameOfAVariable_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("name");
    QTest::newRow("number") << int(SpectrumAnalyser) << QVariant(4) << "Span";
    QTest::newRow("text of a number") << int(SpectrumAnalyser) << QVariant("4") << "Span";
    QTest::newRow("a real") << int(SpectrumAnalyser) << QVariant(4.0) << "Span";
    QTest::newRow("name") << int(SpectrumAnalyser) << QVariant("Span") << "Span";
    QTest::newRow("the last") << int(SpectrumAnalyser) << QVariant(53) << "LevelOffset";
    QTest::newRow("internal") << int(SpectrumAnalyser) << QVariant(49) << "ServiceMode";
    QTest::newRow("of another device") << int(SpectrumAnalyser) << QVariant(42) << "42";
    QTest::newRow("of this device") << int(LowFrequencyAnalyser) << QVariant(42) << "SensorAxis";
    QTest::newRow("of no device") << int(NoDeviceType) << QVariant(4) << "4";
    QTest::newRow("of one of two devices") << int(PowerMeter | SignalGenerator) << QVariant(51) << "OutputLevel";
    QTest::newRow("unknown") << int(SpectrumAnalyser) << QVariant(54) << "54";
    QTest::newRow("beyond 16 bits") << int(SpectrumAnalyser) << QVariant(65536 + 4) << "65540";
    QTest::newRow("negative") << int(SpectrumAnalyser) << QVariant(-1) << "-1";
    QTest::newRow("zero") << int(SpectrumAnalyser) << QVariant(0) << "0";
    QTest::newRow("any text") << int(SpectrumAnalyser) << QVariant("any text") << "any text";
    QTest::newRow("empty") << int(SpectrumAnalyser) << QVariant("") << "";
    QTest::newRow("nothing") << int(SpectrumAnalyser) << QVariant() << "";
}

void TestAVeldoranVariableDelegate::aNumberIsShownAsTheNameOfAVariable()
{
    QFETCH(int, type);
    QFETCH(QVariant, value);
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(VeldoranDeviceType(type), true, true);
    QTEST(delegate.variableName(value), "name");
}

void TestAVeldoranVariableDelegate::bothColumnsLeadToTheVariable_data()
{
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<QByteArray>("found");
    QTest::newRow("name") << QVariant("Span") << QByteArray("Span");
    QTest::newRow("number") << QVariant(4) << QByteArray("Span");
    QTest::newRow("text of a number") << QVariant("4") << QByteArray("Span");
    // A name is known whatever the device, a number that the device lacks is the last variable: deliberate.
    QTest::newRow("name of another device") << QVariant("SensorAxis") << QByteArray("SensorAxis");
    QTest::newRow("number of another device") << QVariant(42) << QByteArray("LevelOffset");
    QTest::newRow("unknown number") << QVariant(999) << QByteArray("LevelOffset");
    QTest::newRow("negative number") << QVariant(-1) << QByteArray("LevelOffset");
    QTest::newRow("unknown name") << QVariant("Nonsense") << QByteArray();
    QTest::newRow("another case") << QVariant("span") << QByteArray();
    QTest::newRow("part of a name") << QVariant("Spa") << QByteArray();
    QTest::newRow("blanks") << QVariant(" Span ") << QByteArray();
    QTest::newRow("zero byte") << QVariant(QString("Span").append(QChar(0)).append("x")) << QByteArray("Span");
    QTest::newRow("no Latin letters") << QVariant(QString(QChar(0x3a9))) << QByteArray();
    QTest::newRow("zero") << QVariant(0) << QByteArray();
    QTest::newRow("empty") << QVariant("") << QByteArray();
    QTest::newRow("nothing") << QVariant() << QByteArray();
}

void TestAVeldoranVariableDelegate::bothColumnsLeadToTheVariable()
{
    QFETCH(QVariant, name);
    const AVeldoranVariableDelegate delegate;
    const VariableTable table(name, 7);
    QTEST(nameOf(delegate.variableInfo(table.nameCell())), "found");
    QTEST(nameOf(delegate.variableInfo(table.valueCell())), "found");
}

void TestAVeldoranVariableDelegate::everyVariableIsFoundByNameAndByNumber()
{
    AVeldoranVariableDelegate delegate;
    delegate.setOptions(VeldoranDeviceType(0x0f), true, true);
    int count = 0;
    for (; const device_variable_desc *desc = get_vardesc(count); ++count) {
        QCOMPARE(delegate.variableInfo(VariableTable(desc->name).valueCell()), desc);
        QCOMPARE(delegate.variableInfo(VariableTable(desc->identifier).valueCell()), desc);
        QCOMPARE(delegate.variableName(desc->identifier), QString(desc->name));
    }
    QCOMPARE(count, 53);
}

void TestAVeldoranVariableDelegate::otherColumnsAndIndexesLeadToNone()
{
    AVeldoranVariableDelegate delegate;
    const VariableTable table("Span", 7);
    QVERIFY(!delegate.variableInfo(table.otherCell()));
    QVERIFY(!delegate.variableInfo(table.index(0, 3)));
    QVERIFY(!delegate.variableInfo(table.index(1, 0)));
    QVERIFY(!delegate.variableInfo(QModelIndex()));
    delegate.setColumns(-1, -1); // the columns of an invalid index
    QVERIFY(!delegate.variableInfo(QModelIndex()));
    delegate.setColumns(-1, 0);
    QVERIFY(!delegate.variableInfo(QModelIndex()));
    delegate.setColumns(17, 1); // beyond the model
    QVERIFY(!delegate.variableInfo(table.valueCell()));
}

void TestAVeldoranVariableDelegate::theColumnsCanBeChosen()
{
    AVeldoranVariableDelegate delegate;
    delegate.setColumns(2, 0);
    QStandardItemModel model(2, 3);
    model.setData(model.index(1, 2), "Squelch");
    QCOMPARE(nameOf(delegate.variableInfo(model.index(1, 0))), QByteArray("Squelch"));
    QCOMPARE(nameOf(delegate.variableInfo(model.index(1, 2))), QByteArray("Squelch"));
    QVERIFY(!delegate.variableInfo(model.index(1, 1)));
    QVERIFY(!delegate.variableInfo(model.index(0, 0)));
    delegate.setColumns(2, 2);
    QCOMPARE(nameOf(delegate.variableInfo(model.index(1, 2))), QByteArray("Squelch"));
}

void TestAVeldoranVariableDelegate::theDeviceDecidesWhichNumbersAreKnown()
{
    AVeldoranVariableDelegate delegate;
    const VariableTable table(50);
    QCOMPARE(nameOf(delegate.variableInfo(table.nameCell())), QByteArray("LevelOffset"));
    QCOMPARE(delegate.variableName(50), QString("50"));
    delegate.setOptions(SignalGenerator, true, true);
    QCOMPARE(nameOf(delegate.variableInfo(table.nameCell())), QByteArray("OutputFrequency"));
    QCOMPARE(delegate.variableName(50), QString("OutputFrequency"));
}

void TestAVeldoranVariableDelegate::theFilterTablesAreThoseOfTheDevices()
{
    using namespace filtertable;
    QCOMPARE(filterCount(LowFrequencyAnalyser), 16);
    for (const auto type : {NoDeviceType, SignalGenerator, PowerMeter, SpectrumAnalyser})
        QCOMPARE(filterCount(type), 15);
    for (const auto type : {LowFrequencyAnalyser, SpectrumAnalyser}) {
        for (int row = 0; row < filterCount(type); ++row) {
            const Filter *filter = filterAt(type, row);
            QVERIFY(filter);
            const bool isFull = type == SpectrumAnalyser && row == 0;
            const bool isFraction = type == LowFrequencyAnalyser && row == 15;
            QCOMPARE(filter->frequency(), isFull       ? AFrequency("50 MHz")
                                          : isFraction ? AFrequency("1 Hz")
                                                       : AFrequency(filter->label));
        }
        for (const int row : {filterCount(type), 1000, -2, std::numeric_limits<int>::min()})
            QVERIFY(!filterAt(type, row));
    }
    QCOMPARE(filterAt(SpectrumAnalyser, 0)->label, "Full");
    QCOMPARE(filterAt(LowFrequencyAnalyser, 15)->label, "0.3 Hz");
    QCOMPARE(filterAt(SpectrumAnalyser, -1)->label, "(unspecified)");
    QCOMPARE(filterAt(SpectrumAnalyser, -1)->frequency(), AFrequency("300 kHz"));
    QVERIFY(!filterAt(LowFrequencyAnalyser, -1));
}

void TestAVeldoranVariableDelegate::enumerationsAreParsed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<Labels>("labels");
    const auto row = [](const char *name, const QByteArray &text, const Labels &labels) {
        QTest::newRow(name) << text << labels;
    };
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    row("two pairs", "1:On;2:Off", {{1, "On"}, {2, "Off"}});
    row("parts that are no pairs", "1:On;2:Off;x:Bad;3", {{1, "On"}, {2, "Off"}});
    row("key order", "2:b;-1:a;0.5:c", {{-1, "a"}, {0.5, "c"}, {2, "b"}});
    row("a key again", "1:first;1:second", {{1, "second"}});
    row("a key in another form", "1:first;1.0:second;+1e0:third", {{1, "third"}});
    row("both zeros", "0:first;-0:second", {{0, "second"}});
    row("three pieces", "1:a:b;2:c", {{2, "c"}});
    row("empty pieces", "1:;:x;:;;2:y", {{1, ""}, {2, "y"}});
    row("empty", "", {});
    row("separators alone", ";;;:::;", {});
    row("a text alone", "text", {});
    row("blanks", " 1 : On ", {{1, " On "}});
    row("decimal comma", "1,5:a", {});
    row("hexadecimal", "0x10:a", {});
    row("beyond a float", "1e99:a;-1e99:b;1e-99:c;2:d", {{2, "d"}});
    row("infinite", "inf:a;-inf:b", {{-kInfinity, "b"}, {kInfinity, "a"}});
    row("no number among keys", "1:a;nan:x;2:b", {{1, "a"}, {2, "b"}});
    row("other letters", "1:\xc2\xb5V", {{1, QString::fromUtf8("\xc2\xb5V")}});
    row("damaged letters", "1:\xff;2:b", {{1, QString(QChar(QChar::ReplacementCharacter))}, {2, "b"}});
}

void TestAVeldoranVariableDelegate::enumerationsAreParsed()
{
    QFETCH(QByteArray, text);
    const AVeldoranVariableDelegate delegate;
    device_variable_desc desc = {};
    desc.enumeration = text.constData();
    QTEST(delegate.parseEnumValues(&desc), "labels");
}

void TestAVeldoranVariableDelegate::theEnumerationsOfTheTableAreWhole()
{
    const AVeldoranVariableDelegate delegate;
    QVERIFY(delegate.parseEnumValues(nullptr).isEmpty());
    int enumerations = 0;
    for (int i = 0; const device_variable_desc *desc = get_vardesc(i); ++i) {
        const QByteArray text = desc->enumeration;
        enumerations += text.isNull() ? 0 : 1;
        QCOMPARE(delegate.parseEnumValues(desc).size(), text.isNull() ? 0 : text.count(';') + 1);
    }
    QVERIFY(enumerations > 5);
    QCOMPARE(delegate.parseEnumValues(find_vardesc("Attenuator")).value(-1), QString("Auto"));
}

QTEST_MAIN(TestAVeldoranVariableDelegate)
#include "tst_aveldoranvariabledelegate.moc"
