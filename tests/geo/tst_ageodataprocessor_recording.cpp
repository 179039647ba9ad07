#include "core/amdrdocument.h"
#include "core/areplayprocessor.h"
#include "core/asettings.h"
#include "core/astoragelocation.h"
#include "core/aveldorandevice.h"

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
    void eachRecordingHasTheSettingsOfItsTime();
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
    void theProcessorMayBeDeletedByReceivers_data();
    void theProcessorMayBeDeletedByReceivers();
    void sweepsMayVanishWhileTheyArePaired();
    void recordsOfAReplayRestartTheTimerWithoutEffect();

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
    QCOMPARE(processor.waypointTimes(), (QList<QDateTime>{at(0), at(30)}));
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

void TestAGeoDataProcessorRecording::eachRecordingHasTheSettingsOfItsTime()
{
    AMdrDocument document;
    document.addSweep(sweepAt(0));
    Processor processor(nullptr);
    QVERIFY(processor.processMdrData(&document));
    m_settings->setValue("SweepProcessor/PeakSuppressionCustom", true);
    QVERIFY(processor.processMdrData(&document));
    m_settings->setValue("SweepProcessor/PeakSuppressionCustom", false);
    m_settings->setValue("SweepProcessor/PeakSuppression20", true);
    QVERIFY(processor.processMdrData(&document));

    QList<int> modes;
    for (const AReplayProcessor *replay : processor.findChildren<AReplayProcessor *>())
        modes.append(int(replay->peakSuppressionMode()));
    QCOMPARE(modes, (QList<int>{4, 3, 1}));
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

void TestAGeoDataProcessorRecording::theProcessorMayBeDeletedByReceivers_data()
{
    QTest::addColumn<bool>("whilePairing");
    QTest::newRow("when a sweep comes") << false;
    QTest::newRow("while sweeps are paired") << true;
}

void TestAGeoDataProcessorRecording::theProcessorMayBeDeletedByReceivers()
{
    QFETCH(bool, whilePairing);
    AMdrDocument document;
    document.addSweep(sweepAt(0));
    document.addSweep(sweepAt(1000));
    auto *processor = new Processor(nullptr);
    const QPointer<Processor> alive(processor);
    if (whilePairing) {
        add(processor, positionedSweep(levels({-50.0}), 0, 990.0F));
        add(processor, sweepAt(1000));
        connect(processor, &AGeoDataProcessor::assigningSweepWaypoint, this, [processor](int sweep, int) {
            if (sweep == 1)
                delete processor;
        });
        QCOMPARE(processor->assignWaypoints(0), 1); // those before
    } else {
        connect(processor, &AGeoDataProcessor::sweepLoaded, this, [processor] { delete processor; });
        QVERIFY(processor->processMdrData(&document));
        QTRY_VERIFY(!alive);
    }
    QVERIFY(!alive);
}

void TestAGeoDataProcessorRecording::sweepsMayVanishWhileTheyArePaired()
{
    Processor processor(nullptr);
    for (int i = 0; i < 3; ++i)
        add(&processor, positionedSweep(levels({-50.0})));
    connect(&processor, &AGeoDataProcessor::assigningSweepWaypoint, this, [&processor](int sweep, int) {
        if (sweep == 1)
            processor.m_sweeps.erase(processor.m_sweeps.begin() + 1, processor.m_sweeps.end());
    });
    QCOMPARE(processor.assignWaypoints(0), 1);
}

void TestAGeoDataProcessorRecording::recordsOfAReplayRestartTheTimerWithoutEffect()
{
    AMdrDocument document;
    document.addGeoData(nmeaPosition(0));
    document.addSweep(sweepAt(10));
    Processor processor(nullptr);
    QSignalSpy intake(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QSignalSpy finished(&processor, &AGeoDataProcessor::mdrProcessingFinished);
    bool isRestarted = false;
    connect(&processor, &AGeoDataProcessor::nmeaRecordProcessed, this,
            [&] { isRestarted = processor.m_nmeaTimer.isActive(); });
    QVERIFY(processor.processMdrData(&document));
    QVERIFY(finished.wait());
    QVERIFY(isRestarted);
    QTRY_VERIFY(!processor.m_nmeaTimer.isActive());
    QCOMPARE(intake.count(), 0);
    QCOMPARE(processor.findChildren<AReplayProcessor *>().size(), 1);
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorRecording)
#include "tst_ageodataprocessor_recording.moc"
