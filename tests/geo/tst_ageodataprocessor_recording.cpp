#include "core/amdrdocument.h"
#include "core/areplayprocessor.h"
#include "core/asettings.h"
#include "core/astoragelocation.h"
#include "core/aveldorandevice.h"
#include "core/emu.h"

#include "geo/processor.h"

#include <QtCore/QSettings>
#include <QtTest/QtTest>

#include <cmath>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Says alone whether it suppresses peaks by the noise floor.
class Device : public AVeldoranDevice
{
public:
    explicit Device(bool hasNoiseFloor)
        : m_hasNoiseFloor(hasNoiseFloor)
    {}
    bool hasCapability(int capability) const override { return m_hasNoiseFloor && capability == NoiseFloorSuppression; }

private:
    bool m_hasNoiseFloor;
};

ASweep sweepAt(qint64 milliseconds, const QList<AMeasurementValue> &values = levels({-50.0, -40.0, -60.0}))
{
    return ASweep(values, at(milliseconds), at(milliseconds + 100));
}

ASweep positionedSweep(const QList<AMeasurementValue> &values, qint64 milliseconds = 0, float airPressure = 0.0F)
{
    ASweep sweep = sweepAt(milliseconds, values);
    AGeoData record = nmeaPosition(milliseconds);
    record.airPressure = airPressure;
    sweep.setGeoData(record);
    return sweep;
}

void add(Processor *processor, ASweep sweep)
{
    processor->addSweep(sweep);
}

} // namespace

class TestAGeoDataProcessorRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void withoutSweepsNothingHappens();
    void aRecordingIsReplayed();
    void theReplayStaysAChild();
    void thePeakSuppressionFollowsTheSettings_data();
    void thePeakSuppressionFollowsTheSettings();
    void thePeakSuppressionFileIsSetByItsName();
    void aMissingPeakSuppressionFileIsPassedOver();
    void theEndOfTheReplayIsPassedOn();
    void aPositionedSweepIsConvertedInPlace();
    void aSweepWithADescriptionKeepsIt();
    void aSweepWithoutAPositionIsKept();
    void thePreferenceOfRecords_data();
    void thePreferenceOfRecords();
    void oneWaypointServesManySweeps();
    void progressIsSignalledBeforeEachSweep();
    void receiversOfTheProgressMayAddToTheProcessor();
    void withoutSweepsNoneHasAPosition();
    void measurementsAreReducedToAnEntry();
    void theBalloonStaysOpen_data();
    void theBalloonStaysOpen();
    void theAverage_data();
    void theAverage();
    void theUnitOfTheFirstValueIsTheDefault();
    void valuesAreConvertedToTheUnit();
    void theExtremesAreThoseOfTheRecording();
    void sweepsWithoutPositionOrValuesArePassedOver();
    void sweepsWithoutAnyNumberArePassedOver();
    void aNumberAmidOthersThatAreNone();
    void withoutAFirstValueNothingChanges();
    void aSecondCallAppendsTheSameSweepsAgain();
    void unknownUnitsWarnForEachConversion();
    void valuesOfAnotherFamilyAreNoNumbers();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<QSettings> m_settings;
};

void TestAGeoDataProcessorRecording::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_settings = std::make_unique<QSettings>(m_dir->filePath("settings.ini"), QSettings::IniFormat);
    ASettings::setApplicationSettings(m_settings.get());
    AStorageLocation::setRoot(AStorageLocation::User, m_dir->path());
    AStorageLocation::setRoot(AStorageLocation::Installed, m_dir->path() + "/installed");
}

void TestAGeoDataProcessorRecording::cleanup()
{
    ASettings::setApplicationSettings(nullptr);
}

void TestAGeoDataProcessorRecording::withoutSweepsNothingHappens()
{
    Processor processor(nullptr);
    QVERIFY(!processor.processMdrData(nullptr));
    AMdrDocument document;
    document.addGeoData(nmeaPosition(0));
    QVERIFY(!processor.processMdrData(&document));
    QVERIFY(processor.findChildren<AReplayProcessor *>().isEmpty());
    QVERIFY(!processor.m_mdrRunning);
}

void TestAGeoDataProcessorRecording::aRecordingIsReplayed()
{
    AMdrDocument document;
    document.addGeoData(nmeaPosition(0));
    document.addSweep(sweepAt(10));
    document.addSweep(positionedSweep(levels({-70.0}), 20));
    document.addGeoData(nmeaPosition(30));

    Processor processor(nullptr);
    QSignalSpy loaded(&processor, &AGeoDataProcessor::sweepLoaded);
    QSignalSpy stored(&processor, &AGeoDataProcessor::nmeaRecordProcessed);
    QSignalSpy finished(&processor, &AGeoDataProcessor::mdrProcessingFinished);
    QVERIFY(processor.processMdrData(&document));
    QVERIFY(processor.m_mdrRunning);
    QCOMPARE(loaded.count() + stored.count() + finished.count(), 0);
    QVERIFY(finished.wait());
    QCOMPARE(finished, (QList<QVariantList>{{true}}));
    QVERIFY(!processor.m_mdrRunning);
    QCOMPARE(loaded.count(), 2);
    QCOMPARE(stored.count(), 2);
    QCOMPARE(processor.m_sweeps.size(), 2);
    QCOMPARE(processor.m_sweeps.at(0).values, levels({-50.0, -40.0, -60.0}));
    QVERIFY(processor.m_sweeps.at(0).geoData().isEmpty());
    QCOMPARE(processor.m_sweeps.at(1).geoData().latitude, 48.5F);
    QCOMPARE(processor.m_waypoints.uniqueKeys(), (QList<QDateTime>{at(0), at(30)}));
    QCOMPARE(processor.m_waypoints.first()->latitude, 48.5F);
}

void TestAGeoDataProcessorRecording::theReplayStaysAChild()
{
    AMdrDocument document;
    document.addSweep(sweepAt(0));
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::mdrProcessingFinished);
    for (int i = 1; i <= 2; ++i) {
        QVERIFY(processor.processMdrData(&document));
        QVERIFY(finished.wait());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(processor.findChildren<AReplayProcessor *>().size(), i);
        QCOMPARE(processor.m_sweeps.size(), i);
    }
}

void TestAGeoDataProcessorRecording::thePeakSuppressionFollowsTheSettings_data()
{
    QTest::addColumn<QStringList>("set");
    QTest::addColumn<int>("device"); // -1: the recording names none, else whether it has a noise floor
    QTest::addColumn<int>("mode");

    const QString custom = "Custom";
    QTest::newRow("nothing") << QStringList{} << 0 << 4;
    QTest::newRow("custom wins over 10") << QStringList{custom, "10"} << 0 << 3;
    QTest::newRow("custom wins over all") << QStringList{custom, "NF", "20", "10"} << 1 << 3;
    QTest::newRow("NF") << QStringList{"NF"} << 1 << 2;
    QTest::newRow("NF on a device without") << QStringList{"NF"} << 0 << 4;
    QTest::newRow("NF without a device") << QStringList{"NF"} << -1 << 4;
    QTest::newRow("NF and 10 on a device with") << QStringList{"NF", "10"} << 1 << 2;
    QTest::newRow("NF and 10 on a device without") << QStringList{"NF", "10"} << 0 << 0;
    QTest::newRow("20 wins over 10") << QStringList{"20", "10"} << 0 << 1;
    QTest::newRow("20 without a device") << QStringList{"20"} << -1 << 1;
    QTest::newRow("10") << QStringList{"10"} << 0 << 0;
    QTest::newRow("20 and 10 on a device with") << QStringList{"20", "10"} << 1 << 4;
}

void TestAGeoDataProcessorRecording::thePeakSuppressionFollowsTheSettings()
{
    QFETCH(QStringList, set);
    QFETCH(int, device);
    QFETCH(int, mode);
    for (const QString &key : set)
        m_settings->setValue("SweepProcessor/PeakSuppression" + key, true);
    AMdrDocument document;
    document.addSweep(sweepAt(0));
    if (device >= 0)
        document.setDevice(Device(device == 1));
    Processor processor(nullptr);
    QVERIFY(processor.processMdrData(&document));
    const auto *replay = processor.findChild<AReplayProcessor *>();
    QCOMPARE(int(replay->peakSuppressionMode()), mode);
    QCOMPARE(replay->peakSuppressionFile(), QString());
}

void TestAGeoDataProcessorRecording::thePeakSuppressionFileIsSetByItsName()
{
    QFile file(m_dir->filePath("peaks.caldata"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("caldata 1\n[antenna] x\n1 MHz 3\n");
    file.close();
    m_settings->setValue("SweepProcessor/PeakSuppressionFile", "peaks.caldata");
    AMdrDocument document;
    document.addSweep(sweepAt(0));
    Processor processor(nullptr);
    QVERIFY(processor.processMdrData(&document));
    const auto *replay = processor.findChild<AReplayProcessor *>();
    QCOMPARE(replay->peakSuppressionFile(), QString("peaks.caldata"));
    QCOMPARE(int(replay->peakSuppressionMode()), 4);
}

void TestAGeoDataProcessorRecording::aMissingPeakSuppressionFileIsPassedOver()
{
    m_settings->setValue("SweepProcessor/PeakSuppressionFile", "missing.caldata");
    m_settings->setValue("SweepProcessor/PeakSuppressionCustom", true);
    AMdrDocument document;
    document.addSweep(sweepAt(0));
    Processor processor(nullptr);
    QVERIFY(processor.processMdrData(&document));
    const auto *replay = processor.findChild<AReplayProcessor *>();
    QCOMPARE(replay->peakSuppressionFile(), QString());
    QCOMPARE(int(replay->peakSuppressionMode()), 3);
}

void TestAGeoDataProcessorRecording::theEndOfTheReplayIsPassedOn()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::mdrProcessingFinished);
    processor.m_mdrRunning = true;
    processor.mdrFinished(false);
    QVERIFY(!processor.m_mdrRunning);
    processor.mdrFinished(true);
    QCOMPARE(finished, (QList<QVariantList>{{false}, {true}}));
}

void TestAGeoDataProcessorRecording::aPositionedSweepIsConvertedInPlace()
{
    Processor processor(nullptr);
    ASweep sweep = positionedSweep(levels({-50.0}));
    AGeoData atSignal;
    connect(&processor, &AGeoDataProcessor::sweepLoaded, this, [&](const ASweep &loaded) {
        atSignal = loaded.geoData();
        QVERIFY(processor.m_sweeps.isEmpty()); // it is appended later
    });
    processor.addSweep(sweep);
    QCOMPARE(sweep.geoData().latitude, 48.5F);
    QCOMPARE(sweep.geoData().longitude, 11.25F);
    QCOMPARE(sweep.geoData().description, QString("<table>\n<tr><td>Date:</td><td>2024-05-17</td></tr>\n"
                                                  "<tr><td>Time:</td><td>12:30:00</td></tr>\n"
                                                  "<tr><td>Latitude:</td><td>48.5</td></tr>\n"
                                                  "<tr><td>Longitude:</td><td>11.25</td></tr>\n"
                                                  "<tr><td>Altitude:</td><td>500 m</td></tr>\n</table>"));
    QCOMPARE(atSignal.latitude, 48.5F);
    QCOMPARE(processor.m_sweeps.first().geoData().description, sweep.geoData().description);
    QVERIFY(!processor.hasGeoData());
}

void TestAGeoDataProcessorRecording::aSweepWithADescriptionKeepsIt()
{
    Processor processor(nullptr);
    ASweep sweep = sweepAt(0);
    AGeoData record = nmeaPosition(0);
    record.description = "kept";
    sweep.setGeoData(record);
    processor.addSweep(sweep);
    QCOMPARE(processor.m_sweeps.first().geoData().description, QString("kept"));
    QCOMPARE(processor.m_sweeps.first().geoData().latitude, 48.5F);
}

void TestAGeoDataProcessorRecording::aSweepWithoutAPositionIsKept()
{
    Processor processor(nullptr);
    QSignalSpy loaded(&processor, &AGeoDataProcessor::sweepLoaded);
    ASweep sweep = sweepAt(0);
    processor.addSweep(sweep);
    QCOMPARE(loaded.count(), 1);
    QCOMPARE(processor.m_sweeps.size(), 1);
    QVERIFY(sweep.geoData().description.isEmpty());
}

void TestAGeoDataProcessorRecording::thePreferenceOfRecords_data()
{
    QTest::addColumn<double>("own"); // air pressure of the sweep's record; below 0: it has no record
    QTest::addColumn<double>("waypoint");
    QTest::addColumn<QString>("result"); // whose record the sweep has then

    const double nan = kNaN;
    QTest::newRow("neither") << -1.0 << -1.0 << "";
    QTest::newRow("own without pressure") << 0.0 << -1.0 << "own";
    QTest::newRow("own with pressure") << 990.0 << -1.0 << "own";
    QTest::newRow("waypoint without pressure") << -1.0 << 0.0 << "waypoint";
    QTest::newRow("waypoint with pressure") << -1.0 << 990.0 << "waypoint";
    QTest::newRow("both without pressure") << 0.0 << 0.0 << "own";
    QTest::newRow("only the waypoint with pressure") << 0.0 << 990.0 << "waypoint";
    QTest::newRow("only the own with pressure") << 990.0 << 0.0 << "own";
    QTest::newRow("both with pressure") << 990.0 << 980.0 << "own";
    QTest::newRow("NaN counts as a pressure of the own") << nan << 980.0 << "own";
    QTest::newRow("NaN counts as a pressure of the waypoint") << 0.0 << nan << "waypoint";
}

void TestAGeoDataProcessorRecording::thePreferenceOfRecords()
{
    QFETCH(double, own);
    QFETCH(double, waypoint);
    QFETCH(QString, result);
    Processor processor(nullptr);
    ASweep sweep = sweepAt(0);
    AGeoData record = nmeaPosition(0);
    if (!(own < 0.0)) {
        record.recordName = "own";
        record.airPressure = static_cast<float>(own);
        sweep.setGeoData(record);
    }
    processor.addSweep(sweep);
    if (!(waypoint < 0.0)) {
        record.recordName = "waypoint";
        record.airPressure = static_cast<float>(waypoint);
        processor.addNmeaRecord(record);
    }
    QCOMPARE(processor.assignWaypoints(0), result.isEmpty() ? 0 : 1);
    QCOMPARE(processor.m_sweeps.first().geoData().recordName, result);
}

void TestAGeoDataProcessorRecording::oneWaypointServesManySweeps()
{
    Processor processor(nullptr);
    processor.addNmeaRecord(nmeaPosition(150));
    for (int i = 0; i < 4; ++i)
        add(&processor, sweepAt(i * 100)); // each 100 ms long
    QCOMPARE(processor.assignWaypoints(0), 1);
    QCOMPARE(processor.assignWaypoints(50), 3);
    QVERIFY(processor.m_sweeps.last().geoData().isEmpty());
}

void TestAGeoDataProcessorRecording::progressIsSignalledBeforeEachSweep()
{
    Processor processor(nullptr);
    processor.addNmeaRecord(nmeaPosition(0));
    for (int i = 0; i < 3; ++i)
        add(&processor, sweepAt(0));
    QStringList progress;
    connect(&processor, &AGeoDataProcessor::assigningSweepWaypoint, this, [&](int sweep, int count) {
        int assigned = 0;
        for (const ASweep &each : qAsConst(processor.m_sweeps))
            assigned += each.geoData().isEmpty() ? 0 : 1;
        progress.append(QString("%1/%2: %3").arg(sweep).arg(count).arg(assigned));
    });
    QCOMPARE(processor.assignWaypoints(0), 3);
    QCOMPARE(progress, (QStringList{"0/3: 0", "1/3: 1", "2/3: 2"}));
}

void TestAGeoDataProcessorRecording::receiversOfTheProgressMayAddToTheProcessor()
{
    Processor processor(nullptr);
    add(&processor, sweepAt(0));
    add(&processor, sweepAt(1000));
    connect(&processor, &AGeoDataProcessor::assigningSweepWaypoint, this, [&](int sweep, int) {
        processor.addNmeaRecord(nmeaPosition(sweep * 1000));
        add(&processor, sweepAt(5000));
    });
    QCOMPARE(processor.assignWaypoints(0), 2);
    QCOMPARE(processor.m_sweeps.size(), 4);
}

void TestAGeoDataProcessorRecording::withoutSweepsNoneHasAPosition()
{
    Processor processor(nullptr);
    processor.addNmeaRecord(nmeaPosition(0));
    QCOMPARE(processor.assignWaypoints(1000), 0);
}

void TestAGeoDataProcessorRecording::measurementsAreReducedToAnEntry()
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

void TestAGeoDataProcessorRecording::theBalloonStaysOpen_data()
{
    QTest::addColumn<bool>("hasHeading");
    QTest::addColumn<QString>("name");
    QTest::newRow("without a heading") << false << "P";
    QTest::newRow("with a heading") << true << "P";
}

void TestAGeoDataProcessorRecording::theBalloonStaysOpen()
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

void TestAGeoDataProcessorRecording::theAverage_data()
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

void TestAGeoDataProcessorRecording::theAverage()
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

void TestAGeoDataProcessorRecording::theUnitOfTheFirstValueIsTheDefault()
{
    Processor processor(nullptr);
    add(&processor, sweepAt(0, levels({1.0}, kW))); // has no position, and yet names the unit
    add(&processor, positionedSweep(levels({30.0})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(int(processor.m_kmlData.first().maximum.unit), kW);
    QCOMPARE(processor.m_kmlData.first().maximum.level, 1.0);
}

void TestAGeoDataProcessorRecording::valuesAreConvertedToTheUnit()
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

void TestAGeoDataProcessorRecording::theExtremesAreThoseOfTheRecording()
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

void TestAGeoDataProcessorRecording::sweepsWithoutPositionOrValuesArePassedOver()
{
    Processor processor(nullptr);
    add(&processor, sweepAt(0));
    add(&processor, positionedSweep({}));
    add(&processor, positionedSweep(levels({-1.0})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 1);
    QCOMPARE(processor.m_kmlData.first().maximum.level, -1.0);
}

// Their extremes are empty values, and would take the place of those of other sweeps.
void TestAGeoDataProcessorRecording::sweepsWithoutAnyNumberArePassedOver()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({-50.0})));
    add(&processor, positionedSweep(levels({kNaN, kNaN})));
    add(&processor, positionedSweep(levels({-70.0})));
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 2);
    QCOMPARE(processor.m_maximum.level, -50.0);
    QCOMPARE(processor.m_minimum.level, -70.0);
}

void TestAGeoDataProcessorRecording::aNumberAmidOthersThatAreNone()
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

void TestAGeoDataProcessorRecording::withoutAFirstValueNothingChanges()
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

void TestAGeoDataProcessorRecording::aSecondCallAppendsTheSameSweepsAgain()
{
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({-50.0, -40.0})));
    processor.processMeasurementData(nullptr);
    processor.processMeasurementData(nullptr);
    QCOMPARE(processor.m_kmlData.size(), 2);
    QCOMPARE(processor.m_kmlData.at(0).geoData.description, processor.m_kmlData.at(1).geoData.description);
    QCOMPARE(processor.m_maximum.level, -40.0);
}

void TestAGeoDataProcessorRecording::unknownUnitsWarnForEachConversion()
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

void TestAGeoDataProcessorRecording::valuesOfAnotherFamilyAreNoNumbers()
{
    constexpr int kVm = 9; // V/m
    Processor processor(nullptr);
    add(&processor, positionedSweep(levels({1.0}, kVm)));
    processor.processMeasurementData(emu_find(kdBm));
    QCOMPARE(processor.m_kmlData.size(), 1);
    QVERIFY(std::isnan(processor.m_kmlData.first().maximum.level));
    QVERIFY(std::isnan(processor.m_maximum.level));
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorRecording)
#include "tst_ageodataprocessor_recording.moc"
