#include "core/ameasurementvalue.h"

#include <QtTest/QtTest>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <type_traits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Units of each sort, by their ids.
enum UnitId
{
    dBm = 0,
    dBuV = 4,
    V = 5,
    V_m = 9,
    W = 10,
    W_m2 = 11,
    dB = 16,
    Times = 17
};

AMeasurementValue value(double level, int unit)
{
    return AMeasurementValue(level, static_cast<unsigned char>(unit), AFrequency("100 MHz"), 0, 0.0);
}

QByteArray bits(double number)
{
    return QByteArray(reinterpret_cast<const char *>(&number), sizeof number).toHex();
}

} // namespace

class TestAMeasurementValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QLocale::setDefault(QLocale::c()); }

    void theRecordIsPlainAndInOrder();
    void theConstructorSetsEveryMember();
    void aDefaultValueIsEmptyLikeZeroedMemory();
    void emptyIsLeadingFrequencyAndLevel_data();
    void emptyIsLeadingFrequencyAndLevel();
    void equalityComparesAllMembers();
    void operatorsActOnTheLevelAlone();
    void formatting_data();
    void formatting();
    void travelsInAVariant();
};

void TestAMeasurementValue::theRecordIsPlainAndInOrder()
{
    QVERIFY(std::is_trivially_copyable_v<AMeasurementValue>);
    QVERIFY(std::is_standard_layout_v<AMeasurementValue>);
    QCOMPARE(offsetof(AMeasurementValue, leading), size_t(0));
    QCOMPARE(offsetof(AMeasurementValue, unit), size_t(8));
    QCOMPARE(offsetof(AMeasurementValue, reserved), size_t(9));
    QCOMPARE(offsetof(AMeasurementValue, frequency), size_t(16));
    QCOMPARE(offsetof(AMeasurementValue, level), size_t(32));
    QCOMPARE(offsetof(AMeasurementValue, trailing), size_t(40));
    QCOMPARE(sizeof(AMeasurementValue), size_t(48));
}

void TestAMeasurementValue::theConstructorSetsEveryMember()
{
    const AMeasurementValue v(-73.5, 8, AFrequency("88.1 MHz"), 0xfffffff0u, 2.25);
    QCOMPARE(v.level, -73.5);
    QCOMPARE(int(v.unit), 8);
    QCOMPARE(int(v.reserved), 0);
    QCOMPARE(v.frequency, AFrequency("88.1 MHz"));
    QCOMPARE(v.leading, Q_UINT64_C(0xfffffff0)); // unsigned: no sign reaches the upper half
    QCOMPARE(v.trailing, 2.25);
}

void TestAMeasurementValue::aDefaultValueIsEmptyLikeZeroedMemory()
{
    const AMeasurementValue v;
    QVERIFY(v.isEmpty());
    QCOMPARE(v.leading, quint64(0));
    QCOMPARE(int(v.unit), 0);
    QCOMPARE(int(v.reserved), 0);
    QVERIFY(v.frequency.isNull());
    QCOMPARE(bits(v.level), bits(0.0));
    QCOMPARE(bits(v.trailing), bits(0.0));
    QVERIFY(v == AMeasurementValue(0.0, 0, AFrequency("0"), 0, 0.0));

    AMeasurementValue zeroed(1.0, 5, AFrequency("1 MHz"), 3, 4.0);
    std::memset(static_cast<void *>(&zeroed), 0, sizeof zeroed);
    QVERIFY(zeroed == v);
    QVERIFY(zeroed.isEmpty());
    QVERIFY(QVector<AMeasurementValue>(3).at(2) == v);
}

void TestAMeasurementValue::emptyIsLeadingFrequencyAndLevel_data()
{
    QTest::addColumn<AMeasurementValue>("value");
    QTest::addColumn<bool>("empty");
    const auto row = [](const char *name, const AMeasurementValue &v, bool empty) {
        QTest::newRow(name) << v << empty;
    };
    const AFrequency zero;
    row("unit alone", AMeasurementValue(0.0, 8, zero, 0, 0.0), true);
    row("trailing alone", AMeasurementValue(0.0, 0, zero, 0, 7.0), true);
    AMeasurementValue reserved;
    reserved.reserved = 9;
    row("reserved alone", reserved, true);
    row("minus zero", AMeasurementValue(-0.0, 0, zero, 0, 0.0), true);
    row("leading", AMeasurementValue(0.0, 0, zero, 1, 0.0), false);
    AMeasurementValue upper;
    upper.leading = Q_UINT64_C(1) << 32;
    row("upper half of the leading word", upper, false);
    row("frequency", AMeasurementValue(0.0, 0, AFrequency("1 Hz"), 0, 0.0), false);
    row("negative frequency", AMeasurementValue(0.0, 0, AFrequency("-1 Hz"), 0, 0.0), false);
    row("fraction of a hertz", AMeasurementValue(0.0, 0, AFrequency("0.5 Hz"), 0, 0.0), false);
    row("level", AMeasurementValue(-1e-300, 0, zero, 0, 0.0), false);
    row("NaN", AMeasurementValue(kNaN, 0, zero, 0, 0.0), false);
    row("infinity", AMeasurementValue(-kInfinity, 0, zero, 0, 0.0), false);
}

void TestAMeasurementValue::emptyIsLeadingFrequencyAndLevel()
{
    QFETCH(AMeasurementValue, value);
    QTEST(value.isEmpty(), "empty");
}

void TestAMeasurementValue::equalityComparesAllMembers()
{
    AMeasurementValue original(1.0, 5, AFrequency("1 MHz"), 3, 4.0);
    original.reserved = 7;
    AMeasurementValue copy = original;
    QVERIFY(copy == original);
    QVERIFY(!(copy != original));

    const auto differsAfter = [&original](auto change) {
        AMeasurementValue changed = original;
        change(changed);
        return changed != original && !(changed == original);
    };
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.leading |= Q_UINT64_C(1) << 63; }));
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.unit = 6; }));
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.reserved = 0; }));
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.frequency = AFrequency("1000001 Hz"); }));
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.level = std::nextafter(1.0, 2.0); }));
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.trailing = -4.0; }));
    QVERIFY(differsAfter([](AMeasurementValue &v) { v.level = kNaN; }));

    copy.level = kNaN;
    QVERIFY(copy != AMeasurementValue(copy));
}

void TestAMeasurementValue::operatorsActOnTheLevelAlone()
{
    AMeasurementValue a(10.0, dBm, AFrequency("1 MHz"), 3, 4.0);
    a.reserved = 5;
    AMeasurementValue b(-2.5, V, AFrequency("2 MHz"), 6, 7.0);
    b.reserved = 8;

    AMeasurementValue expected = a;
    expected.level = 12.5;
    QVERIFY(a - b == expected);
    expected.level = 7.5;
    QVERIFY(a + b == expected);
    QCOMPARE(a.level, 10.0);

    AMeasurementValue sum = a;
    AMeasurementValue &reference = (sum += 0.25);
    QCOMPARE(&reference, &sum);
    expected.level = 10.25;
    QVERIFY(sum == expected);
    QCOMPARE((a - a).level, 0.0);
    QVERIFY(std::isnan((a + value(kNaN, dBm)).level));
}

void TestAMeasurementValue::formatting_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("unit");
    QTest::addColumn<QString>("withUnit");
    QTest::addColumn<QString>("bare");
    QTest::addColumn<QString>("inGerman");
    const auto row = [](const char *name, double level, int unit, const char *withUnit, const char *bare,
                        const char *german) {
        QTest::newRow(name) << level << unit << QString::fromUtf8(withUnit) << QString::fromUtf8(bare)
                            << QString::fromUtf8(german);
    };
    row("decibels", -73.456, dBm, "-73.46 dBm", "-73.46", "-73,46 dBm");
    row("decibels are not scaled", 1234.5, dBuV, "1,234.50 dB\xc2\xb5V", "1,234.50", "1.234,50 dB\xc2\xb5V");
    row("small decibels are not scaled", 0.001, dB, "0.00 dB", "0.00", "0,00 dB");
    row("millivolt", 0.0015, V, "1.50 mV", "0.00", "1,50 mV");
    row("microvolt", 1e-6, V, "1.00 \xc2\xb5V", "0.00", "1,00 \xc2\xb5V");
    row("volt", 999.0, V, "999.00 V", "999.00", "999,00 V");
    row("kilovolt", 1000.0, V, "1.00 kV", "1,000.00", "1,00 kV");
    row("negative", -0.25, V_m, "-250.00 mV/m", "-0.25", "-250,00 mV/m");
    row("power density", 2.5e-9, W_m2, "2.50 nW/m\xc2\xb2", "0.00", "2,50 nW/m\xc2\xb2");
    row("below femto", 1e-18, W, "0.00 fW", "0.00", "0,00 fW");
    row("above tera", 1e16, W, "10,000.00 TW", "10,000,000,000,000,000.00", "10.000,00 TW");
    row("zero", 0.0, W, "0.00 W", "0.00", "0,00 W");
    row("ratio", 2.0, Times, "2.00 \xc3\x97", "2.00", "2,00 \xc3\x97");
    row("NaN", kNaN, V, "nan V", "nan", "nan V");
    row("infinity", -kInfinity, dBm, "-inf dBm", "-inf", "-inf dBm");
    row("unknown unit", 12345.678, 18, "12,345.68", "12,345.68", "12.345,68");
    row("unknown unit 255", 0.0, 255, "0.00", "0.00", "0,00");
}

void TestAMeasurementValue::formatting()
{
    QFETCH(double, level);
    QFETCH(int, unit);
    const AMeasurementValue v = value(level, unit);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    QTEST(v.formatValueString(true), "withUnit");
    QTEST(v.formatValueString(false), "bare");
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QTEST(v.formatValueString(true), "inGerman");
    QCOMPARE(AMeasurementValue().formatValueString(true), QStringLiteral("0,00 dBm"));
}

void TestAMeasurementValue::travelsInAVariant()
{
    const AMeasurementValue v = value(1.5, V);
    QVERIFY(QVariant::fromValue(v).value<AMeasurementValue>() == v);
}

QTEST_APPLESS_MAIN(TestAMeasurementValue)
#include "tst_ameasurementvalue.moc"
