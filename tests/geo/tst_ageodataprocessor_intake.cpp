#include "core/agpsloggerdevice.h"

#include "core/nmealog.h"
#include "geo/processor.h"

#include <QtTest/QtTest>

// How long an intake takes, and in which order it goes.

namespace {

// A receiver that sends what a test gives it.
class Receiver : public QIODevice
{
    Q_OBJECT

public:
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bytes.size() + QIODevice::bytesAvailable(); }
    void send(const QByteArray &bytes)
    {
        m_bytes += bytes;
        Q_EMIT readyRead();
    }
    bool open(OpenMode mode) override
    {
        Q_EMIT opening();
        return QIODevice::open(mode);
    }

Q_SIGNALS:
    void opening();

protected:
    qint64 readData(char *data, qint64 size) override
    {
        size = qMin<qint64>(size, m_bytes.size());
        std::copy_n(m_bytes.constData(), size, data);
        m_bytes.remove(0, static_cast<int>(size));
        return size;
    }
    qint64 writeData(const char *, qint64 size) override { return size; }

private:
    QByteArray m_bytes;
};

QByteArray fix(int second)
{
    return rmc(QTime(12, 0).addSecs(second).toString("hhmmss").toLatin1());
}

} // namespace

class TestAGeoDataProcessorIntake : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLongWayToARecordIsNoSilence_data();
    void aLongWayToARecordIsNoSilence();
    void aFileWithoutRecordsEndsTheIntake();
    void withoutATimeoutTheIntakeEndsByItself();
    void theLastRecordOfAReceiverIsStored_data();
    void theLastRecordOfAReceiverIsStored();
    void aReceiverHasItsOwnPauseAfterwards();
    void theTimerRunsBeforeTheDeviceIsInitialised();
    void aRecordIsStoredBeforeItIsSignalled();
    void theEndIsSignalledLast();
};

void TestAGeoDataProcessorIntake::aLongWayToARecordIsNoSilence_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("records");

    constexpr int kCount = 300000; // tens of milliseconds to read
    const QByteArray voidFix = rmc("115959", "170524", "V");
    QTest::newRow("sentences of one time") << fix(0).repeated(kCount) + fix(1) << 2;
    QTest::newRow("no fix yet") << voidFix.repeated(kCount) + fix(0) << 1;
    QTest::newRow("bytes that are no sentences") << fix(0) + QByteArray(20000000, '\x01') + "\r\n" + fix(1) << 2;
    QTest::newRow("a date at the end") << gga("120000").repeated(kCount) + gga("120001") +
                                              nmea("GPZDA,120001,17,05,2024")
                                       << 2;
}

void TestAGeoDataProcessorIntake::aLongWayToARecordIsNoSilence()
{
    QFETCH(QByteArray, content);
    QFETCH(int, records);
    QTemporaryDir directory;
    const QString name = directory.filePath("drive.nmea");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    file.close();
    Processor processor(nullptr);
    QVERIFY(processor.loadStoredNmeaContent(name, 1));
    QCOMPARE(processor.m_waypoints.size(), records);
}

void TestAGeoDataProcessorIntake::aFileWithoutRecordsEndsTheIntake()
{
    QTemporaryDir directory;
    const QString name = directory.filePath("drive.nmea");
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(rmc("120000", "170524", "V").repeated(1000));
    file.close();
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(processor.loadStoredNmeaContent(name, 1));
    QCOMPARE(finished.count(), 1);
    QVERIFY(!processor.hasGeoData());
}

void TestAGeoDataProcessorIntake::withoutATimeoutTheIntakeEndsByItself()
{
    AGpsLoggerDevice device(nullptr, new Receiver); // which sends nothing
    Processor processor(nullptr);
    QSignalSpy finished(&processor, &AGeoDataProcessor::nmeaProcessingFinished);
    QVERIFY(processor.loadStoredNmeaContent(&device, -1, 0));
    QCOMPARE(finished.count(), 1);
    QVERIFY(!processor.m_nmeaTimer.isActive());
    QVERIFY(!processor.hasGeoData());
}

void TestAGeoDataProcessorIntake::theLastRecordOfAReceiverIsStored_data()
{
    QTest::addColumn<int>("timeout");
    QTest::newRow("shorter than the logger's pause") << 100;
    QTest::newRow("little longer") << 250;
    QTest::newRow("much longer") << 500;
}

void TestAGeoDataProcessorIntake::theLastRecordOfAReceiverIsStored()
{
    QFETCH(int, timeout);
    auto *receiver = new Receiver;
    Processor processor(nullptr);
    auto *device = new AGpsLoggerDevice(&processor, receiver);
    QTimer::singleShot(0, receiver, [receiver] { receiver->send(fix(0) + fix(1) + fix(2) + fix(3) + fix(4)); });
    QVERIFY(processor.loadStoredNmeaContent(device, -1, timeout));
    QCOMPARE(processor.m_waypoints.size(), 5);
}

void TestAGeoDataProcessorIntake::aReceiverHasItsOwnPauseAfterwards()
{
    Processor processor(nullptr);
    AGpsLoggerDevice device(nullptr, new Receiver);
    QCOMPARE(device.pause(), 200);
    int during = -1;
    QTimer::singleShot(0, &device, [&] { during = device.pause(); });
    QVERIFY(processor.loadStoredNmeaContent(&device, -1, 20));
    QCOMPARE(during, 10);
    QCOMPARE(device.pause(), 200);

    AGpsLoggerDevice failing(nullptr, nullptr);
    QVERIFY(!processor.loadStoredNmeaContent(&failing, -1, 20));
    QCOMPARE(failing.pause(), 200);
}

void TestAGeoDataProcessorIntake::theTimerRunsBeforeTheDeviceIsInitialised()
{
    Processor processor(nullptr);
    auto *receiver = new Receiver;
    auto *device = new AGpsLoggerDevice(&processor, receiver);
    int interval = -1;
    connect(receiver, &Receiver::opening, this, [&] {
        if (processor.m_nmeaTimer.isActive() && processor.m_nmeaTimer.isSingleShot())
            interval = processor.m_nmeaTimer.interval();
    });
    QVERIFY(processor.loadStoredNmeaContent(device, -1, 30));
    QCOMPARE(interval, 30);
}

void TestAGeoDataProcessorIntake::aRecordIsStoredBeforeItIsSignalled()
{
    Processor processor(nullptr);
    QList<int> sizes;
    connect(&processor, &AGeoDataProcessor::nmeaRecordProcessed, this,
            [&] { sizes.append(processor.m_waypoints.size()); });
    processor.addNmeaRecord(nmeaPosition(0));
    processor.addNmeaRecord(nmeaPosition(0));
    QCOMPARE(sizes, (QList<int>{1, 2}));
}

void TestAGeoDataProcessorIntake::theEndIsSignalledLast()
{
    Processor processor(nullptr);
    const QPointer<AGpsLoggerDevice> device = new AGpsLoggerDevice(&processor, nullptr);
    processor.m_nmeaTimer.start(100000);
    bool wasActive = true;
    bool wasAlive = false;
    bool wasScheduled = false;
    connect(&processor, &AGeoDataProcessor::nmeaProcessingFinished, this, [&] {
        wasActive = processor.m_nmeaTimer.isActive();
        wasAlive = device;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        wasScheduled = !device;
    });
    processor.finishNmeaProcessing();
    QVERIFY(!wasActive);
    QVERIFY(wasAlive);
    QVERIFY(wasScheduled);
}

QTEST_GUILESS_MAIN(TestAGeoDataProcessorIntake)
#include "tst_ageodataprocessor_intake.moc"
