#include "apps/aveldoran/valuetext.h"

#include <QtTest/QtTest>

#include <cmath>
#include <limits>

class TestValueText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frequenciesLoseTheirZeros();
    void levelsHaveTwoDecimals_data();
    void levelsHaveTwoDecimals();
    void levelsHaveTheirUnit();
    void countsStandBeforeWhatTheyCount();
    void timesAreInUtc();
    void sizesGoInThousands();
};

namespace {

constexpr int kDBm = 0;
constexpr int kVolt = 5;
constexpr int kUnknown = 99;

} // namespace

void TestValueText::frequenciesLoseTheirZeros()
{
    QCOMPARE(shortFrequency(AFrequency("87.5 MHz")), QString("87.5 MHz"));
    QCOMPARE(shortFrequency(AFrequency("100 MHz")), QString("100 MHz"));
    QCOMPARE(shortFrequency(AFrequency("3 GHz")), QString("3000 MHz"));
    QCOMPARE(shortFrequency(AFrequency()), QString("0 Hz"));
    QCOMPARE(frequencyRangeText(AFrequency("9 kHz"), AFrequency("1001 kHz")), QString("9 kHz to 1.001 MHz"));
}

void TestValueText::levelsHaveTwoDecimals_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<QString>("text");
    QTest::newRow("negative") << -38.7 << "-38.70";
    QTest::newRow("whole") << 40.0 << "40.00";
    QTest::newRow("zero") << 0.0 << "0.00";
    QTest::newRow("rounded") << 1.0 / 3.0 << "0.33";
    QTest::newRow("least with decimals") << 0.005 << "0.01";
    QTest::newRow("small") << -0.004 << "-0.004";
    QTest::newRow("tiny") << 1e-12 << "1e-12";
    QTest::newRow("large") << 999999.0 << "999999.00";
    QTest::newRow("too large") << -1e6 << "-1e+06";
    QTest::newRow("huge") << 1e300 << "1e+300";
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << "inf";
    QTest::newRow("none") << std::numeric_limits<double>::quiet_NaN() << "nan";
}

void TestValueText::levelsHaveTwoDecimals()
{
    QFETCH(double, level);
    QTEST(decibelText(level), "text");
}

void TestValueText::levelsHaveTheirUnit()
{
    QCOMPARE(levelText(-38.7, kDBm), QString("-38.70 dBm"));
    QCOMPARE(levelText(-1e300, kDBm), QString("-1e+300 dBm"));
    QCOMPARE(levelText(0.0015, kVolt), QString("1.50 mV"));
    QCOMPARE(levelText(12.0, kVolt), QString("12.00 V"));
    QCOMPARE(levelText(0.0, kVolt), QString("0.00 V"));
    QCOMPARE(levelText(12.0, kUnknown), QString("12.00"));
    QCOMPARE(measuredValueText(AMeasurementValue(-20.0, kDBm, AFrequency("98.1 MHz"), 0, 0.0)),
             QString("-20.00 dBm at 98.1 MHz"));
}

void TestValueText::countsStandBeforeWhatTheyCount()
{
    QCOMPARE(countText(0, "sweep"), QString("0 sweeps"));
    QCOMPARE(countText(1, "sweep"), QString("1 sweep"));
    QCOMPARE(countText(10000000000, "sweep"), QString("10000000000 sweeps"));
    QCOMPARE(countText(1, "entry"), QString("1 entry"));
    QCOMPARE(countText(2, "entry"), QString("2 entries"));
}

void TestValueText::timesAreInUtc()
{
    const QDateTime begin(QDate(2025, 3, 18), QTime(10, 12, 4, 250), Qt::OffsetFromUTC, 3600);
    QCOMPARE(timeText(begin), QString("2025-03-18T09:12:04Z"));
    QCOMPARE(exactTimeText(begin), QString("2025-03-18T09:12:04.250Z"));
    QCOMPARE(timeSpanText(begin, begin.addSecs(446)), QString("2025-03-18T09:12:04Z to 2025-03-18T09:19:30Z (7:26)"));
    QCOMPARE(timeSpanText(begin, begin.addSecs(100 * 3600)),
             QString("2025-03-18T09:12:04Z to 2025-03-22T13:12:04Z (100:00:00)"));
    QCOMPARE(timeText(QDateTime()), QString());
}

void TestValueText::sizesGoInThousands()
{
    QCOMPARE(sizeText(72344114), QString("72.3 MB"));
    QCOMPARE(sizeText(2000), QString("2.0 kB"));
    QCOMPARE(sizeText(17950000000), QString("17.9 GB"));
}

QTEST_GUILESS_MAIN(TestValueText)
#include "tst_valuetext.moc"
