#include "core/emu.h"

#include "core/fieldorder.h"
#include "geo/processor.h"

#include <QtTest/QtTest>

#include <cmath>

// What processMeasurementData() makes of the sweeps.

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

class TestAGeoDataProcessorMeasurement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFieldsLieInTheAgreedOrder();
    void measurementsAreReducedToAnEntry();
    void theBalloonStaysOpen_data();
    void theBalloonStaysOpen();
    void theAverage_data();
    void theAverage();
    void theUnitOfTheFirstValueIsTheDefault();
    void valuesAreConvertedToTheUnit();
    void theExtremesAreThoseOfTheRecording();
    void sweepsWithoutPositionOrValuesArePassedOver();
    void aNumberAmidOthersThatAreNone();
    void withoutAFirstValueNothingChanges();
    void aSecondCallAppendsTheSameSweepsAgain();
    void unknownUnitsWarnForEachConversion();
    void valuesOfAnotherFamilyAreNoNumbers();
    void extremesAreComparedAsTheyStand();
    void aSecondCallComparesWithTheConvertedExtremes();
    void theExtremesAreConvertedEvenIfNoSweepHasAPosition();
    void theCompassRowHasSixDigits_data();
    void theCompassRowHasSixDigits();
    void aRecordWithoutNameAndTimeHasAnEmptyName();
    void aSweepWithoutAnyNumberCountsLikeAnyOther();
};

void TestAGeoDataProcessorMeasurement::theFieldsLieInTheAgreedOrder()
{
    const AGeoDataProcessor::KmlRelevantData entry;
    QCOMPARE(static_cast<const void *>(&entry.geoData), static_cast<const void *>(&entry));
    QVERIFY(areInOrder(entry.geoData, entry.heading, entry.minimum, entry.maximum, entry.average));

    const Processor processor(nullptr);
    QVERIFY(areInOrder(processor.m_gpxDocument, processor.m_waypoints, processor.m_sweeps, processor.m_kmlData,
                       processor.m_nmeaTimer, processor.m_minimum, processor.m_maximum, processor.m_mdrRunning));
}

void TestAGeoDataProcessorMeasurement::measurementsAreReducedToAnEntry()
{
    Processor processor(nullptr);
    ASweep sweep = sweepAt(0, levels({-50.0, -40.0, -60.0}));
    AGeoData record = nmeaPosition(0);
    record.source = 9;
    record.airPressure = 990.0F;
    record.magnetometer[0] = 1.0F;
    record.magnetometer[1] = -1.0F;
    record.accelerometer[2] = 1.0F;
    sweep.setGeoData(record);
    processor.addSweep(sweep);
    processor.processMeasurementData(nullptr);

    QCOMPARE(processor.m_kmlData.size(), 1);
    const AGeoDataProcessor::KmlRelevantData &entry = processor.m_kmlData.first();
    QCOMPARE(entry.maximum, AMeasurementValue(-40.0, kdBm, megahertz(101), 0, 0.0));
    QCOMPARE(entry.minimum, AMeasurementValue(-60.0, kdBm, megahertz(102), 0, 0.0));
    QCOMPARE(entry.average.frequency, megahertz(100));
    QCOMPARE(entry.average.unit, quint8(kdBm));
    QCOMPARE(entry.heading, static_cast<float>(record.estimateHeading(true)));
    QVERIFY(entry.heading > 0.0F);
    QCOMPARE(entry.geoData.source, 9);
    QCOMPARE(entry.geoData.airPressure, 990.0F);
    QCOMPARE(entry.geoData.latitude, 48.5F);
    QCOMPARE(entry.geoData.recordName, QString("2024-05-17T12:30:00Z"));
}

void TestAGeoDataProcessorMeasurement::theBalloonStaysOpen_data()
{
    QTest::addColumn<bool>("hasHeading");
    QTest::addColumn<QString>("name");
    QTest::newRow("without a heading") << false << "P";
    QTest::newRow("with a heading") << true << "P";
}

void TestAGeoDataProcessorMeasurement::theBalloonStaysOpen()
{
    QFETCH(bool, hasHeading);
    QFETCH(QString, name);
    ASweep sweep = sweepAt(1999);
    AGeoData record = nmeaPosition(1999);
    record.recordName = name;
    record.description = "replaced";
    if (hasHeading) {
        record.magnetometer[1] = -1.0F;
        record.accelerometer[2] = 1.0F;
    }
    sweep.setGeoData(record);
    Processor processor(nullptr);
    processor.addSweep(sweep);
    processor.processMeasurementData(nullptr);
    const AGeoDataProcessor::KmlRelevantData &entry = processor.m_kmlData.first();
    QCOMPARE(entry.heading, hasHeading ? 90.0F : 0.0F);
    QCOMPARE(entry.geoData.recordName, name);
    QCOMPARE(entry.geoData.description,
             QString("<table>\n<tr><td>Date:</td><td>2024-05-17</td></tr>\n"
                     "<tr><td>Time:</td><td>12:30:01</td></tr>\n"
                     "<tr><td>Latitude:</td><td>48.500000</td></tr>\n"
                     "<tr><td>Longitude:</td><td>11.250000</td></tr>\n") +
                 (hasHeading ? "<tr><td>Compass Heading:</td><td>90 &deg;</td></tr>\n" : ""));
}

void TestAGeoDataProcessorMeasurement::theAverage_data()
{
    QTest::addColumn<QList<AMeasurementValue>>("values");
    QTest::addColumn<int>("unit");
    QTest::addColumn<double>("level");

    QTest::newRow("one value") << levels({-47.5}) << kdBm << -47.5;
    QTest::newRow("dBm as power") << levels({-10.0, -20.0}) << kdBm << 10 * std::log10((0.1 + 0.01) / 2);
    QTest::newRow("watt as they are") << levels({1.0, 3.0}, kW) << kW << 2.0;
    QTest::newRow("dBm shown in watt") << levels({30.0, 40.0}) << kW << 5.5;
    QTest::newRow("watt shown in dBm") << levels({1.0, 3.0}, kW) << kdBm << 10 * std::log10(2000.0);
    QTest::newRow("volt as voltages") << levels({1.0, 3.0}, kV) << kV << 2.0;
}

void TestAGeoDataProcessorMeasurement::theAverage()
{
    QFETCH(QList<AMeasurementValue>, values);
    QFETCH(int, unit);
    QFETCH(double, level);
    Processor processor(nullptr);
    add(&processor, positionedSweep(values));
    processor.processMeasurementData(emu_find(unit));
    const AMeasurementValue average = processor.m_kmlData.first().average;
    QVERIFY2(std::fabs(average.level - level) < 1e-9, qPrintable(QString::number(average.level, 'g', 17)));
    QCOMPARE(int(average.unit), unit);
    QCOMPARE(average.frequency, megahertz(100));
}

void TestAGeoDataProcessorMeasurement::theUnitOfTheFirstValueIsTheDefault()
{
    Processor processor(nullptr);
    add(&processor, sweepAt(0, levels({1.0}, kW))); // has no position, and yet names the unit
    add(&processor, positionedSweep(levels({30.0})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(int(processor.m_kmlData.first().maximum.unit), kW);
    QCOMPARE(processor.m_kmlData.first().maximum.level, 1.0);
}

void TestAGeoDataProcessorMeasurement::valuesAreConvertedToTheUnit()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({30.0, 20.0})));
    processor.processMeasurementData(emu_find(kW));
    const AGeoDataProcessor::KmlRelevantData &entry = processor.m_kmlData.first();
    QCOMPARE(entry.maximum.level, 1.0);
    QCOMPARE(entry.minimum.level, 0.1);
    for (const AMeasurementValue &value :
         {entry.maximum, entry.minimum, entry.average, processor.m_maximum, processor.m_minimum})
        QCOMPARE(int(value.unit), kW);
    QCOMPARE(processor.m_maximum.level, 1.0);
    QCOMPARE(processor.m_minimum.level, 0.1);
}

void TestAGeoDataProcessorMeasurement::theExtremesAreThoseOfTheRecording()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({-50.0, -40.0})));
    add(&processor, sweepAt(1000, levels({0.0, -200.0}))); // without a position
    add(&processor, positionedSweep(levels({-90.0, -30.0})));
    add(&processor, positionedSweep(levels({-60.0})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 3);
    QCOMPARE(processor.m_maximum, AMeasurementValue(-30.0, kdBm, megahertz(101), 0, 0.0));
    QCOMPARE(processor.m_minimum, AMeasurementValue(-90.0, kdBm, megahertz(100), 0, 0.0));
}

void TestAGeoDataProcessorMeasurement::sweepsWithoutPositionOrValuesArePassedOver()
{
    Processor processor(nullptr);
    add(&processor, sweepAt(0));
    add(&processor, positionedSweep({}));
    add(&processor, positionedSweep(levels({-1.0})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 1);
    QCOMPARE(processor.m_kmlData.first().maximum.level, -1.0);
}

void TestAGeoDataProcessorMeasurement::aNumberAmidOthersThatAreNone()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({kNaN, -50.0, kNaN})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 1);
    QCOMPARE(processor.m_kmlData.first().maximum.level, -50.0);
    QCOMPARE(processor.m_kmlData.first().minimum.level, -50.0);
    QVERIFY(std::isnan(processor.m_kmlData.first().average.level));
    QCOMPARE(processor.m_maximum.level, -50.0);
}

void TestAGeoDataProcessorMeasurement::withoutAFirstValueNothingChanges()
{
    Processor processor(nullptr);
    processor.processMeasurementData(emu_find(kW));
    QCOMPARE(processor.m_maximum, AMeasurementValue());
    add(&processor, positionedSweep({}));
    add(&processor, positionedSweep(levels({-50.0})));
    processor.processMeasurementData(emu_find(kW));
    QVERIFY(processor.m_kmlData.isEmpty());
    QCOMPARE(processor.m_maximum, AMeasurementValue());
    QCOMPARE(processor.m_minimum, AMeasurementValue());
}

void TestAGeoDataProcessorMeasurement::aSecondCallAppendsTheSameSweepsAgain()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({-50.0, -40.0})));
    processor.processMeasurementData(nullptr);
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 2);
    QCOMPARE(processor.m_kmlData.at(0).geoData.description, processor.m_kmlData.at(1).geoData.description);
    QCOMPARE(processor.m_maximum.level, -40.0);
}

void TestAGeoDataProcessorMeasurement::unknownUnitsWarnForEachConversion()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({1.0, 3.0}, 99)));
    // two values and their average, the extremes of the sweep, and those of the recording
    for (int i = 0; i < 2 + 1 + 2 + 2; ++i)
        QTest::ignoreMessage(QtWarningMsg, "warning: converting to null-pointer unit is undefined");
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 1);
    QCOMPARE(processor.m_kmlData.first().average.level, 2.0);
    QCOMPARE(processor.m_kmlData.first().maximum.level, 3.0);
}

void TestAGeoDataProcessorMeasurement::valuesOfAnotherFamilyAreNoNumbers()
{
    constexpr int kVm = 9; // V/m
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({1.0}, kVm)));
    processor.processMeasurementData(emu_find(kdBm));
    QCOMPARE(processor.m_kmlData.size(), 1);
    QVERIFY(std::isnan(processor.m_kmlData.first().maximum.level));
    QVERIFY(std::isnan(processor.m_maximum.level));
}

void TestAGeoDataProcessorMeasurement::extremesAreComparedAsTheyStand()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({1.0}, kW)));
    add(&processor, positionedSweep(levels({20.0}, kdBm))); // 0.1 W, and yet the higher number
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_maximum, AMeasurementValue(20.0, kdBm, megahertz(100), 0, 0.0).convertTo(kW));
    QCOMPARE(processor.m_minimum, AMeasurementValue(1.0, kW, megahertz(100), 0, 0.0));
}

void TestAGeoDataProcessorMeasurement::aSecondCallComparesWithTheConvertedExtremes()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({-10.0, -20.0})));
    processor.processMeasurementData(emu_find(kW));
    QCOMPARE(int(processor.m_maximum.unit), kW);
    add(&processor, positionedSweep(levels({-5.0})));
    processor.processMeasurementData(emu_find(kdBm));
    QVERIFY(std::fabs(processor.m_maximum.level + 10.0) < 1e-9); // -5 isn't above 0.0001 W
    QCOMPARE(processor.m_minimum.level, -20.0);                  // 0.00001 W is above -20
    QCOMPARE(int(processor.m_maximum.unit), kdBm);
}

void TestAGeoDataProcessorMeasurement::theExtremesAreConvertedEvenIfNoSweepHasAPosition()
{
    Processor processor(nullptr);
    add(&processor, sweepAt(0));
    processor.processMeasurementData(emu_find(kW));
    QVERIFY(processor.m_kmlData.isEmpty());
    QCOMPARE(processor.m_maximum, AMeasurementValue().convertTo(kW));
    QCOMPARE(processor.m_minimum, AMeasurementValue().convertTo(kW));
    QCOMPARE(int(processor.m_maximum.unit), kW);
}

void TestAGeoDataProcessorMeasurement::theCompassRowHasSixDigits_data()
{
    QTest::addColumn<float>("ahead");
    QTest::addColumn<float>("right");
    QTest::addColumn<QString>("text"); // empty: no row
    QTest::newRow("six digits") << -0.3F << -0.7F << "113.199";
    QTest::newRow("a small one") << 1.0F << -1e-6F << "5.72958e-05";
    QTest::newRow("exactly 0") << 1.0F << 0.0F << "";
    QTest::newRow("no number") << 1.0F << std::numeric_limits<float>::quiet_NaN() << "";
}

void TestAGeoDataProcessorMeasurement::theCompassRowHasSixDigits()
{
    QFETCH(float, ahead);
    QFETCH(float, right);
    QFETCH(QString, text);
    ASweep sweep = positionedSweep(levels({-50.0}));
    AGeoData record = sweep.geoData();
    record.magnetometer[0] = ahead;
    record.magnetometer[1] = right;
    record.accelerometer[2] = 1.0F;
    sweep.setGeoData(record);
    Processor processor(nullptr);
    processor.addSweep(sweep);
    processor.processMeasurementData(nullptr);
    const QString description = processor.m_kmlData.first().geoData.description;
    const QString row = "<tr><td>Compass Heading:</td><td>" + text + " &deg;</td></tr>\n";
    QVERIFY2(text.isEmpty() ? !description.contains("Compass") : description.endsWith(row), qPrintable(description));
}

void TestAGeoDataProcessorMeasurement::aRecordWithoutNameAndTimeHasAnEmptyName()
{
    ASweep sweep = positionedSweep(levels({-50.0}));
    AGeoData record = sweep.geoData();
    record.recordTime = QDateTime();
    sweep.setGeoData(record);
    Processor processor(nullptr);
    processor.addSweep(sweep);
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.first().geoData.recordName, QString());
    QVERIFY(processor.m_kmlData.first().geoData.description.startsWith(
        "<table>\n<tr><td>Date:</td><td></td></tr>\n<tr><td>Time:</td><td></td></tr>\n"));
}

// Its extremes are empty values, which count as a level of 0 and then as none yet.
void TestAGeoDataProcessorMeasurement::aSweepWithoutAnyNumberCountsLikeAnyOther()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({-50.0})));
    add(&processor, positionedSweep(levels({kNaN, kNaN})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 2);
    QVERIFY(std::isnan(processor.m_kmlData.last().average.level));
    QCOMPARE(processor.m_kmlData.last().maximum, AMeasurementValue());
    QCOMPARE(processor.m_maximum, AMeasurementValue());
    QCOMPARE(processor.m_minimum.level, -50.0);

    Processor another(nullptr);
    for (const double level : {-50.0, kNaN, -70.0})
        add(&another, positionedSweep(levels({level})));
    another.processMeasurementData(nullptr);
    QCOMPARE(another.m_kmlData.size(), 3);
    QCOMPARE(another.m_maximum.level, -70.0);
    QCOMPARE(another.m_minimum.level, -70.0);
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorMeasurement)
#include "tst_ageodataprocessor_measurement.moc"
