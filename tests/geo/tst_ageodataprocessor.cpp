#include "core/agpsloggerdevice.h"

#include "core/nmealog.h"
#include "geo/processor.h"

#include <QtTest/QtTest>

namespace {

constexpr int kTimeoutMs = 60;

const char kBalloon[] = "<table>\n<tr><td>Date:</td><td>%1</td></tr>\n"
                        "<tr><td>Time:</td><td>%2</td></tr>\n"
                        "<tr><td>Latitude:</td><td>%3</td></tr>\n"
                        "<tr><td>Longitude:</td><td>%4</td></tr>\n"
                        "<tr><td>Altitude:</td><td>%5 m</td></tr>\n</table>";

// A receiver that sends nothing of its own, and takes down what is asked of it.
class Receiver : public QIODevice
{
    Q_OBJECT

public:
    bool isSequential() const override { return true; }
    QByteArray asked;

protected:
    qint64 readData(char *, qint64) override { return 0; }
    qint64 writeData(const char *data, qint64 size) override
    {
        asked.append(data, static_cast<int>(size));
        return size;
    }
};

} // namespace

class TestAGeoDataProcessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshProcessorIsEmpty();
    void theSignalsAndSlotsHaveTheirSignaturesAndOrder();
    void aRecordIsStoredInDecimalDegrees();
    void allOtherMembersAreCarriedAlong();
    void theBalloonTellsTimeAndPosition_data();
    void theBalloonTellsTimeAndPosition();
    void aDescriptionThatIsThereStays();
    void recordsOfOneTimeAllStay();
    void nothingIsFiltered();
    void everyRecordRestartsTheTimer();
    void aFileIsReadToItsEnd();
    void fiveSentencesASecondMakeOneRecord();
    void aSilentLoggerEndsAfterTheTimeout();
    void anyFileNumberAboveZeroIsAskedFor_data();
    void anyFileNumberAboveZeroIsAskedFor();
    void aFailingDeviceOfTheProcessorIsDeleted();
    void aFailingDeviceOfAnotherParentStaysAlive();
    void aMissingFileGivesFalse();
    void noDeviceGivesFalse();
    void aTimeoutBelowZeroEndsAtOnce();
    void theEndDeletesEveryLoggerBelowTheProcessor();
    void anIntakeAfterAFailureEndsOnce();
    void aRecordAfterAFailureIsFollowedByAnEnd();
    void aForeignDeviceDeliversTwiceAfterTwoIntakes();
    void sourcesAddUp();
    void theProcessorMayBeDeletedDuringTheIntake();
};

void TestAGeoDataProcessor::aFreshProcessorIsEmpty()
{
    Processor processor(nullptr);
    QVERIFY(!processor.hasGeoData());
    QVERIFY(processor.m_waypoints.isEmpty());
    QVERIFY(processor.m_sweeps.isEmpty());
    QVERIFY(processor.m_kmlData.isEmpty());
    QVERIFY(processor.m_minimum.isEmpty());
    QVERIFY(processor.m_maximum.isEmpty());
    QVERIFY(!processor.m_mdrRunning);
    QVERIFY(!processor.m_nmeaTimer.isActive());
    QVERIFY(processor.m_nmeaTimer.isSingleShot());
    QVERIFY(processor.m_gpxDocument.documentElement().isNull());
    QVERIFY(!processor.findWaypoint(at(0), at(1000), 1000000));
}

void TestAGeoDataProcessor::theSignalsAndSlotsHaveTheirSignaturesAndOrder()
{
    const QMetaObject &meta = AGeoDataProcessor::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const bool isSignal = method.methodType() == QMetaMethod::Signal;
        QCOMPARE(method.access(), isSignal ? QMetaMethod::Public : QMetaMethod::Protected);
        methods.append((isSignal ? "signal " : "slot ") + method.methodSignature());
    }
    QCOMPARE(methods, (QStringList{"signal nmeaRecordProcessed()", "signal sweepLoaded(ASweep)",
                                   "signal nmeaProcessingFinished()", "signal mdrProcessingFinished(bool)",
                                   "signal assigningSweepWaypoint(int,int)", "slot addNmeaRecord(AGeoData)",
                                   "slot finishNmeaProcessing()", "slot addSweep(ASweep&)", "slot mdrFinished(bool)"}));
}

void TestAGeoDataProcessor::aRecordIsStoredInDecimalDegrees()
{
    Processor processor(nullptr);
    QSignalSpy stored(&processor, &AGeoDataProcessor::nmeaRecordProcessed);
    AGeoData record = position(0, -4830.0F, -1115.6F);
    processor.addNmeaRecord(record);
    QCOMPARE(stored.count(), 1);
    QVERIFY(processor.hasGeoData());
    QCOMPARE(processor.m_waypoints.size(), 1);
    const AGeoData &waypoint = *processor.m_waypoints.first();
    QCOMPARE(processor.m_waypoints.firstKey(), at(0));
    QCOMPARE(waypoint.latitude, -48.5F);
    QCOMPARE(waypoint.longitude, static_cast<float>(record.convertNmeaLatLonToDecimal(double(-1115.6F))));
    QCOMPARE(record.latitude, -4830.0F);
}

void TestAGeoDataProcessor::allOtherMembersAreCarriedAlong()
{
    Processor processor(nullptr);
    AGeoData record = nmeaPosition(5);
    record.source = 7;
    record.fix = 3;
    record.speed = 1.5F;
    record.course = 2.5F;
    record.airPressure = 987.5F;
    record.accelerometer[1] = 4.0F;
    record.magnetometer[2] = 5.0F;
    record.gyroscope[0] = 6.0F;
    record.recordName = "P";
    processor.addNmeaRecord(record);
    const AGeoData &waypoint = *processor.m_waypoints.first();
    QCOMPARE(waypoint.source, 7);
    QCOMPARE(waypoint.fix, quint8(3));
    QCOMPARE(waypoint.speed, 1.5F);
    QCOMPARE(waypoint.course, 2.5F);
    QCOMPARE(waypoint.altitude, 500.0F);
    QCOMPARE(waypoint.airPressure, 987.5F);
    QCOMPARE(waypoint.accelerometer[1], 4.0F);
    QCOMPARE(waypoint.magnetometer[2], 5.0F);
    QCOMPARE(waypoint.gyroscope[0], 6.0F);
    QCOMPARE(waypoint.recordName, QString("P"));
}

void TestAGeoDataProcessor::theBalloonTellsTimeAndPosition_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<float>("latitude");
    QTest::addColumn<float>("altitude");
    QTest::addColumn<QStringList>("texts");

    QTest::newRow("six digits") << at(1234) << 4807.4068F << 1234567.0F
                                << QStringList{"2024-05-17", "12:30:01", "48.1234", "11.25", "1.23457e+06"};
    QTest::newRow("below zero") << at(0) << -4830.0F << -12.5F
                                << QStringList{"2024-05-17", "12:30:00", "-48.5", "11.25", "-12.5"};
    QTest::newRow("no altitude") << at(0) << 4830.0F << 0.0F
                                 << QStringList{"2024-05-17", "12:30:00", "48.5", "11.25", "0"};
    QTest::newRow("not a number") << at(0) << 4830.0F << std::numeric_limits<float>::quiet_NaN()
                                  << QStringList{"2024-05-17", "12:30:00", "48.5", "11.25", "nan"};
    QTest::newRow("no time") << QDateTime() << 4830.0F << 1.0F << QStringList{"", "", "48.5", "11.25", "1"};
    QTest::newRow("an offset stays as it is")
        << QDateTime(QDate(1, 2, 3), QTime(4, 5, 6), Qt::OffsetFromUTC, 7200) << 4830.0F << 1.0F
        << QStringList{"0001-02-03", "04:05:06", "48.5", "11.25", "1"};
    QTest::newRow("five digits of a year")
        << QDateTime(QDate(12345, 2, 3), QTime(4, 5, 6), Qt::UTC) << 4830.0F << 1.0F
        << QStringList{QDate(12345, 2, 3).toString(Qt::ISODate), "04:05:06", "48.5", "11.25", "1"};
    QTest::newRow("before our era") << QDateTime(QDate(-1, 2, 3), QTime(4, 5, 6), Qt::UTC) << 4830.0F << 1.0F
                                    << QStringList{QDate(-1, 2, 3).toString(Qt::ISODate), "04:05:06", "48.5", "11.25",
                                                   "1"};
}

void TestAGeoDataProcessor::theBalloonTellsTimeAndPosition()
{
    QFETCH(QDateTime, time);
    QFETCH(float, latitude);
    QFETCH(float, altitude);
    QFETCH(QStringList, texts);
    Processor processor(nullptr);
    AGeoData record = nmeaPosition(0);
    record.recordTime = time;
    record.latitude = latitude;
    record.altitude = altitude;
    processor.addNmeaRecord(record);
    QString expected = QString::fromLatin1(kBalloon);
    for (const QString &text : texts)
        expected = expected.arg(text);
    QCOMPARE(processor.m_waypoints.first()->description, expected);
}

void TestAGeoDataProcessor::aDescriptionThatIsThereStays()
{
    Processor processor(nullptr);
    AGeoData record = nmeaPosition(0);
    record.description = "kept";
    processor.addNmeaRecord(record);
    QCOMPARE(processor.m_waypoints.first()->description, QString("kept"));
}

void TestAGeoDataProcessor::recordsOfOneTimeAllStay()
{
    Processor processor(nullptr);
    for (const char *name : {"first", "second", "third"}) {
        AGeoData record = nmeaPosition(0);
        record.recordName = name;
        processor.addNmeaRecord(record);
    }
    QCOMPARE(processor.m_waypoints.size(), 3);
    QCOMPARE(processor.waypointTimes(), QList<QDateTime>{at(0)});
    QStringList names;
    for (const AGeoData *record : qAsConst(processor.m_waypoints))
        names.append(record->recordName);
    QCOMPARE(names, (QStringList{"third", "second", "first"}));
    QCOMPARE(processor.findWaypoint(at(0), at(0), 0)->recordName, QString("third"));
}

void TestAGeoDataProcessor::nothingIsFiltered()
{
    Processor processor(nullptr);
    processor.addNmeaRecord(AGeoData());
    processor.addNmeaRecord(position(0, 1e30F, std::numeric_limits<float>::infinity()));
    processor.addNmeaRecord(position(0, std::numeric_limits<float>::quiet_NaN(), 0.0F));
    QCOMPARE(processor.m_waypoints.size(), 3);
}

void TestAGeoDataProcessor::everyRecordRestartsTheTimer()
{
    Processor processor(nullptr);
    processor.m_nmeaTimer.setInterval(100000);
    processor.addNmeaRecord(nmeaPosition(0));
    QVERIFY(processor.m_nmeaTimer.isActive());
    QVERIFY(processor.m_nmeaTimer.remainingTime() > 50000);
}

void TestAGeoDataProcessor::aFileIsReadToItsEnd()
{
    QTemporaryDir directory;
    const QString name = directory.filePath("drive.nmea");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(rmc("123519") + gga("123519") + rmc("123520") + gga("123520", "546.5") + rmc("123521"));
    file.close();

    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QSignalSpy stored(&processor, &AGeoDataProcessor::nmeaRecordProcessed);
    QVERIFY(processor.loadStoredNmeaContent(name, kTimeoutMs));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(stored.count(), 3);
    QCOMPARE(processor.waypointTimes(), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19), utc(2024, 5, 17, 12, 35, 20),
                                                          utc(2024, 5, 17, 12, 35, 21)}));
    const AGeoData &second = *processor.m_waypoints.value(utc(2024, 5, 17, 12, 35, 20));
    QCOMPARE(second.latitude, 48.1173F);
    QCOMPARE(second.longitude, 11.516667F);
    QCOMPARE(second.altitude, 546.5F);
    QVERIFY(second.description.contains("<td>48.1173</td>"));
    QVERIFY(!processor.m_nmeaTimer.isActive());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(processor.findChildren<AGpsLoggerDevice *>().isEmpty());
}

// A drive of a thousand seconds, as a receiver writes it: five sentences for each.
void TestAGeoDataProcessor::fiveSentencesASecondMakeOneRecord()
{
    QByteArray log;
    for (int i = 0; i < 1000; ++i) {
        const QByteArray time = QTime(8, 0).addSecs(i).toString("hhmmss").toLatin1() + ".00";
        log += nmea("GPZDA," + time + ",17,05,2024,00,00") + gga(time) +
               nmea("GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1") + rmc(time) +
               nmea("GPVTG,054.7,T,034.4,M,005.5,N,010.2,K");
    }
    QTemporaryDir directory;
    const QString name = directory.filePath("drive.nmea");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(log);
    file.close();
    Processor processor(nullptr);
    QVERIFY(processor.loadStoredNmeaContent(name, kTimeoutMs));
    QCOMPARE(processor.waypointTimes().size(), 1000);
    QCOMPARE(processor.m_waypoints.firstKey(), utc(2024, 5, 17, 8, 0, 0));
    QCOMPARE(processor.m_waypoints.lastKey(), utc(2024, 5, 17, 8, 16, 39));
}

void TestAGeoDataProcessor::aSilentLoggerEndsAfterTheTimeout()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(processor.loadStoredNmeaContent(new AGpsLoggerDevice(&processor, new Receiver), 0, kTimeoutMs));
    QVERIFY(clock.elapsed() >= kTimeoutMs - 5);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!processor.hasGeoData());
}

void TestAGeoDataProcessor::anyFileNumberAboveZeroIsAskedFor_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("-1") << -1 << false;
    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("12") << 12 << true;
}

void TestAGeoDataProcessor::anyFileNumberAboveZeroIsAskedFor()
{
    QFETCH(int, number);
    QFETCH(bool, isAsked);
    Receiver io;
    QObject keeper; // so that the logger doesn't own the receiver
    io.setParent(&keeper);
    Processor processor(nullptr);
    const bool opened = io.open(QIODevice::ReadWrite);
    QVERIFY(opened);
    AGpsLoggerDevice device(nullptr, &io);
    QVERIFY(processor.loadStoredNmeaContent(&device, number, 1));
    QCOMPARE(!io.asked.isEmpty(), isAsked);
    if (isAsked)
        QVERIFY2(io.asked.contains(QByteArray::number(number)), io.asked.constData());
    io.setParent(nullptr);
}

void TestAGeoDataProcessor::aFailingDeviceOfTheProcessorIsDeleted()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    const QPointer<AGpsLoggerDevice> device = new AGpsLoggerDevice(&processor, nullptr);
    QVERIFY(!processor.loadStoredNmeaContent(device, -1, 10000));
    QVERIFY(!processor.m_nmeaTimer.isActive());
    QVERIFY(device);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!device);
    QCOMPARE(finished.count(), 0);
}

void TestAGeoDataProcessor::aFailingDeviceOfAnotherParentStaysAlive()
{
    Processor processor(nullptr);
    QObject other;
    const QPointer<AGpsLoggerDevice> device = new AGpsLoggerDevice(&other, nullptr);
    QVERIFY(!processor.loadStoredNmeaContent(device, -1, 10000));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(device);
}

void TestAGeoDataProcessor::aMissingFileGivesFalse()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(!processor.loadStoredNmeaContent(QStringLiteral("/nonexistent/file"), 10000));
    QCOMPARE(finished.count(), 0);
    QVERIFY(!processor.hasGeoData());
}

void TestAGeoDataProcessor::noDeviceGivesFalse()
{
    Processor processor(nullptr);
    QVERIFY(!processor.loadStoredNmeaContent(static_cast<AGpsLoggerDevice *>(nullptr), -1, 10000));
    QVERIFY(!processor.m_nmeaTimer.isActive());
}

void TestAGeoDataProcessor::aTimeoutBelowZeroEndsAtOnce()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(processor.loadStoredNmeaContent(new AGpsLoggerDevice(&processor, new Receiver), -1, -5));
    QCOMPARE(finished.count(), 1);
}

void TestAGeoDataProcessor::theEndDeletesEveryLoggerBelowTheProcessor()
{
    Processor processor(nullptr);
    QObject middle(&processor);
    const QPointer<AGpsLoggerDevice> child = new AGpsLoggerDevice(&processor, nullptr);
    const QPointer<AGpsLoggerDevice> grandchild = new AGpsLoggerDevice(&middle, nullptr);
    grandchild->setObjectName("named");
    AGpsLoggerDevice foreign(nullptr, nullptr);
    processor.finishNmeaProcessing();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!child);
    QVERIFY(!grandchild);
}

// The connections of the failed one stay, but the end cuts all of them.
void TestAGeoDataProcessor::anIntakeAfterAFailureEndsOnce()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(!processor.loadStoredNmeaContent(QStringLiteral("/nonexistent/file"), 1));
    QVERIFY(processor.loadStoredNmeaContent(new AGpsLoggerDevice(&processor, new Receiver), -1, 1));
    QCOMPARE(finished.count(), 1);
    processor.m_nmeaTimer.start();
    QTRY_VERIFY(!processor.m_nmeaTimer.isActive());
    QCOMPARE(finished.count(), 1);
}

void TestAGeoDataProcessor::aRecordAfterAFailureIsFollowedByAnEnd()
{
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(!processor.loadStoredNmeaContent(QStringLiteral("/nonexistent/file"), 1));
    processor.addNmeaRecord(nmeaPosition(0));
    QCOMPARE(finished.count(), 0);
    QTRY_COMPARE(finished.count(), 1);
    processor.addNmeaRecord(nmeaPosition(1));
    QTRY_VERIFY(!processor.m_nmeaTimer.isActive());
    QCOMPARE(finished.count(), 1);
}

// Its connection dies with the device alone.
void TestAGeoDataProcessor::aForeignDeviceDeliversTwiceAfterTwoIntakes()
{
    Processor processor(nullptr);
    AGpsLoggerDevice device(nullptr, new Receiver);
    QVERIFY(processor.loadStoredNmeaContent(&device, -1, 1));
    Q_EMIT device.gpsRecordRead(nmeaPosition(0));
    QCOMPARE(processor.m_waypoints.size(), 1);
    QVERIFY(processor.loadStoredNmeaContent(&device, -1, 1));
    Q_EMIT device.gpsRecordRead(nmeaPosition(1));
    QCOMPARE(processor.m_waypoints.size(), 3);
}

void TestAGeoDataProcessor::sourcesAddUp()
{
    Processor processor(nullptr);
    processor.addNmeaRecord(nmeaPosition(0));
    QVERIFY(processor.loadGpx("<gpx><trk><trkpt><time>2024-05-17T12:30:00Z</time></trkpt></trk></gpx>"));
    QCOMPARE(processor.m_waypoints.size(), 2);
    QCOMPARE(processor.waypointTimes().size(), 1);
}

void TestAGeoDataProcessor::theProcessorMayBeDeletedDuringTheIntake()
{
    auto *processor = new Processor(nullptr);
    QTimer::singleShot(5, processor, [processor] { delete processor; });
    AGpsLoggerDevice device(nullptr, new Receiver);
    QVERIFY(processor->loadStoredNmeaContent(&device, -1, 10000));
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessor)
#include "tst_ageodataprocessor.moc"
