#include "core/nmeareceiver.h"

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <random>

#include <sys/resource.h>

// Where content comes from, in which pieces, and what bad content does.
class TestAGpsLoggerDeviceIo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initWithoutAnInput();
    void initOfAFile_data();
    void initOfAFile();
    void initTwiceReadsOnce();
    void onlyAFileOnDiskIsAFile();
    void aFileWaitsForStreaming();
    void aFileStandsStillWhileHalted();
    void aFileIsReadFromWhereItStands();
    void nothingIsDeliveredFromWithinACall();
    void takesAnInputWithoutAParent();
    void leavesAnInputWithAParent();
    void anInputThatIsDeletedEndsTheReading();
    void aReceiverOfARecordMayDeleteTheLogger();
    void aReceiverOfARecordMayRunAnEventLoop();
    void theChipIsWhatTheApplicationSets();
    void sentencesCutAnywhereReadTheSame();
    void sentencesInRandomPiecesReadTheSame();
    void noiseBetweenSentences_data();
    void noiseBetweenSentences();
    void aMillionSentencesOfOneTimeAreOneRecord();
    void endlessBytesNeedNoMemory_data();
    void endlessBytesNeedNoMemory();
    void everyDamagedByteIsSurvived();

private:
    QString write(const QByteArray &content);

    QTemporaryDir m_directory;
    int m_fileCount = 0;
};

namespace {

// Gives a block again and again, as often as is wanted.
class Repeated : public QIODevice
{
public:
    Repeated(const QByteArray &block, qint64 count)
        : m_block(block)
        , m_left(block.size() * count)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        if (m_left == 0)
            return -1;
        const qint64 size = std::min(maximum, m_left);
        for (qint64 i = 0; i < size; ++i)
            data[i] = m_block.at(static_cast<int>((m_position + i) % m_block.size()));
        m_position += size;
        m_left -= size;
        return size;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_block;
    qint64 m_position = 0;
    qint64 m_left;
};

long residentKilobytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

QString TestAGpsLoggerDeviceIo::write(const QByteArray &content)
{
    QFile file(m_directory.filePath(QStringLiteral("log-%1.nmea").arg(++m_fileCount)));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        QTest::qFail("the log could not be written", __FILE__, __LINE__);
    return file.fileName();
}

void TestAGpsLoggerDeviceIo::initWithoutAnInput()
{
    AGpsLoggerDevice logger(nullptr, nullptr);
    QVERIFY(!logger.init());
    QVERIFY(!logger.ioIsFile());
    QVERIFY(!logger.loadFile(1));
    logger.setStreaming(true);
    QCoreApplication::processEvents();
}

void TestAGpsLoggerDeviceIo::initOfAFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("ok");
    QTest::newRow("a log") << write(kThreeTimes) << true;
    QTest::newRow("an empty one") << write(QByteArray()) << true;
    QTest::newRow("a missing one") << m_directory.filePath(QStringLiteral("missing.nmea")) << false;
    QTest::newRow("a directory") << m_directory.path() << false;
    QTest::newRow("no name") << QString() << false;
}

void TestAGpsLoggerDeviceIo::initOfAFile()
{
    QFETCH(QString, name);
    AGpsLoggerDevice logger(nullptr, new QFile(name));
    QTEST(logger.init(), "ok");
    QVERIFY(logger.ioIsFile());
    QVERIFY(!QFile::exists(m_directory.filePath(QStringLiteral("missing.nmea"))));
}

void TestAGpsLoggerDeviceIo::initTwiceReadsOnce()
{
    AGpsLoggerDevice logger(nullptr, new QFile(write(kThreeTimes)));
    RecordList list(logger);
    QVERIFY(logger.init());
    QVERIFY(logger.init());
    logger.setStreaming(true);
    logger.setStreaming(true);
    QVERIFY(list.waitForEnd());
    logger.setStreaming(true);
    QCoreApplication::processEvents();
    QCOMPARE(list.records.size(), 3);
    QCOMPARE(list.finishedCount, 1);
}

void TestAGpsLoggerDeviceIo::onlyAFileOnDiskIsAFile()
{
    const AGpsLoggerDevice buffer(nullptr, new QBuffer);
    QVERIFY(!buffer.ioIsFile());
    const AGpsLoggerDevice receiver(nullptr, new Receiver);
    QVERIFY(!receiver.ioIsFile());
    const AGpsLoggerDevice terminal(nullptr, new QFile(QStringLiteral("/dev/null")));
    QVERIFY(!terminal.ioIsFile());
    const AGpsLoggerDevice file(nullptr, new QFile(write(kThreeTimes)));
    QVERIFY(file.ioIsFile());
}

void TestAGpsLoggerDeviceIo::aFileWaitsForStreaming()
{
    AGpsLoggerDevice logger(nullptr, new QFile(write(kThreeTimes)));
    RecordList list(logger);
    QVERIFY(logger.init());
    QVERIFY(!logger.isStreaming());
    QTest::qWait(50);
    QCOMPARE(list.records.size(), 0);
    logger.setStreaming(true);
    QVERIFY(logger.isStreaming());
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 3);
}

void TestAGpsLoggerDeviceIo::aFileStandsStillWhileHalted()
{
    constexpr int kCount = 5000;
    QByteArray content;
    for (int i = 0; i < kCount; ++i)
        content += rmc(QTime(0, 0).addSecs(i).toString(QStringLiteral("hhmmss")).toLatin1());
    AGpsLoggerDevice logger(nullptr, new QFile(write(content)));
    RecordList list(logger);
    const int halts[] = {1, 2, 700, 2500, kCount - 1};
    connect(&logger, &AGpsLoggerDevice::gpsRecordRead, this, [&] {
        if (std::find(std::begin(halts), std::end(halts), list.records.size()) != std::end(halts))
            logger.setStreaming(false);
    });
    QVERIFY(logger.init());
    for (const int halt : halts) {
        logger.setStreaming(true);
        QVERIFY(list.waitForCount(halt));
        QTest::qWait(20);
        QCOMPARE(list.records.size(), halt);
    }
    logger.setStreaming(true);
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), kCount);
    for (int i = 0; i < kCount; ++i)
        QCOMPARE(list.records.at(i).recordTime, utc(2024, 5, 17, 0, 0, 0).addSecs(i));
}

void TestAGpsLoggerDeviceIo::aFileIsReadFromWhereItStands()
{
    auto *file = new QFile(write(rmc("123519", "010124") + gga("123520") + rmc("123521", "170524")));
    QVERIFY(file->open(QIODevice::ReadOnly));
    QVERIFY(file->seek(rmc("123519").size()));
    AGpsLoggerDevice logger(nullptr, file);
    RecordList list(logger);
    QVERIFY(logger.init());
    logger.setStreaming(true);
    QVERIFY(list.waitForEnd());
    QCOMPARE(timesOf(list.records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 20), utc(2024, 5, 17, 12, 35, 21)}));
}

void TestAGpsLoggerDeviceIo::nothingIsDeliveredFromWithinACall()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    receiver->send(kThreeTimes);
    QVERIFY(logger.init());
    receiver->send(kThreeTimes);
    logger.setStreaming(false);
    logger.setStreaming(true);
    QCOMPARE(list.records.size(), 0);
    QVERIFY(list.waitForCount(5));
}

void TestAGpsLoggerDeviceIo::takesAnInputWithoutAParent()
{
    QPointer<QIODevice> io = new QBuffer;
    {
        const AGpsLoggerDevice logger(nullptr, io);
        QCOMPARE(io->parent(), &logger);
    }
    QVERIFY(!io);
}

void TestAGpsLoggerDeviceIo::leavesAnInputWithAParent()
{
    QObject owner;
    QPointer<QIODevice> io = new QFile(write(kThreeTimes), &owner);
    {
        AGpsLoggerDevice logger(nullptr, io);
        QVERIFY(logger.init());
        QCOMPARE(io->parent(), &owner);
    }
    QVERIFY(io);
}

void TestAGpsLoggerDeviceIo::anInputThatIsDeletedEndsTheReading()
{
    QObject owner;
    auto *receiver = new Receiver;
    receiver->setParent(&owner);
    AGpsLoggerDevice logger(nullptr, receiver);
    RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(rmc("123519"));
    QCoreApplication::processEvents();
    delete receiver;
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 1);
    QVERIFY(!logger.loadFile(1));
    QVERIFY(!logger.ioIsFile());
}

void TestAGpsLoggerDeviceIo::aReceiverOfARecordMayDeleteTheLogger()
{
    for (int deletedAt = 1; deletedAt <= 3; ++deletedAt) {
        auto *logger = new AGpsLoggerDevice(nullptr, new QFile(write(kThreeTimes)));
        int count = 0;
        connect(logger, &AGpsLoggerDevice::gpsRecordRead, this, [&] {
            if (++count == deletedAt)
                delete logger;
        });
        QVERIFY(logger->init());
        logger->setStreaming(true);
        QVERIFY(QTest::qWaitFor([&] { return count == deletedAt; }));
        QTest::qWait(10);
        QCOMPARE(count, deletedAt);
    }
}

void TestAGpsLoggerDeviceIo::aReceiverOfARecordMayRunAnEventLoop()
{
    AGpsLoggerDevice logger(nullptr, new QFile(write(kThreeTimes)));
    RecordList list(logger);
    int depth = 0;
    connect(&logger, &AGpsLoggerDevice::gpsRecordRead, this, [&] {
        ++depth;
        QVERIFY(depth == 1);
        QCoreApplication::processEvents();
        --depth;
    });
    QVERIFY(logger.init());
    logger.setStreaming(true);
    QVERIFY(list.waitForEnd());
    QCOMPARE(timesOf(list.records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19), utc(2024, 5, 17, 12, 35, 20),
                                                      utc(2024, 5, 17, 12, 35, 21)}));
}

void TestAGpsLoggerDeviceIo::theChipIsWhatTheApplicationSets()
{
    AGpsLoggerDevice logger(nullptr, nullptr);
    QVERIFY(logger.chipinfo() == AVeldoranChipInformation());
    AVeldoranChipInformation chip;
    chip.id = 7;
    chip.name = QStringLiteral("GPS 1");
    logger.setChipinfo(chip);
    QVERIFY(logger.chipinfo() == chip);
}

void TestAGpsLoggerDeviceIo::sentencesCutAnywhereReadTheSame()
{
    const QByteArray content = "\x80noise" + rmc("123519") + nmea("HCHDG,101.1,,,,", "\n") + gga("123519") +
                               "$GPRMC,1235" + rmc("123520") + "$$" + rmc("123521").chopped(2) + rmc("123522");
    const QList<AGeoData> expected = recordsOf(content);
    QCOMPARE(expected.size(), 4);
    for (int cut = 0; cut <= content.size(); ++cut) {
        auto *receiver = new Receiver;
        AGpsLoggerDevice logger(nullptr, receiver);
        RecordList list(logger);
        QVERIFY(logger.init());
        receiver->send(content.left(cut));
        QCoreApplication::processEvents();
        receiver->send(content.mid(cut));
        QCoreApplication::processEvents();
        receiver->close();
        QVERIFY(list.waitForEnd());
        QVERIFY2(list.records == expected, qPrintable(QString::number(cut)));
    }
}

void TestAGpsLoggerDeviceIo::sentencesInRandomPiecesReadTheSame()
{
    QByteArray content;
    for (int i = 0; i < 50; ++i)
        content += rmc(QTime(8, 0).addSecs(i).toString(QStringLiteral("hhmmss")).toLatin1()) + QByteArray(i * 150, 'x');
    const QList<AGeoData> expected = recordsOf(content);
    QCOMPARE(expected.size(), 50);
    std::mt19937 random(1);
    for (const int longest : {1, 7, 100, 5000}) {
        auto *receiver = new Receiver;
        AGpsLoggerDevice logger(nullptr, receiver);
        RecordList list(logger);
        QVERIFY(logger.init());
        for (int position = 0; position < content.size();) {
            const int size = std::uniform_int_distribution<int>(1, longest)(random);
            receiver->send(content.mid(position, size));
            position += size;
            QCoreApplication::processEvents();
        }
        receiver->close();
        QVERIFY(list.waitForEnd());
        QVERIFY(list.records == expected);
    }
}

void TestAGpsLoggerDeviceIo::noiseBetweenSentences_data()
{
    QTest::addColumn<QByteArray>("noise");
    QTest::newRow("zeros") << QByteArray(100, '\0');
    QTest::newRow("all bytes but the dollar") << [] {
        QByteArray bytes;
        for (int i = 0; i < 256; ++i) {
            if (i != '$')
                bytes.append(static_cast<char>(i));
        }
        return bytes;
    }();
    QTest::newRow("dollars") << QByteArray(1000, '$');
    QTest::newRow("a sentence that was cut") << QByteArray("$GPRMC,123519,A,4807.038,N,011");
    QTest::newRow("text") << QByteArray("\r\nLog of 17.05.2024; ");
    QTest::newRow("a sentence of ships") << QByteArray("!AIVDM,1,1,,A,14eG;o@034o8sd<L9i:a;WF>062D,0*7D\r\n");
    QTest::newRow("longer than a turn reads") << QByteArray(200000, 'U');
    QTest::newRow("a sentence longer than any") << "$GPGGA," + QByteArray(200000, '1');
    QTest::newRow("a sentence a little longer than any") << nmea("GPGGA," + QByteArray(4100, ','));
}

void TestAGpsLoggerDeviceIo::noiseBetweenSentences()
{
    QFETCH(QByteArray, noise);
    const QList<AGeoData> records =
        recordsOf(noise + rmc("123519") + noise + gga("123519") + noise + rmc("123520") + noise);
    QCOMPARE(timesOf(records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19), utc(2024, 5, 17, 12, 35, 20)}));
    QCOMPARE(records.first().altitude, 545.4F);
}

void TestAGpsLoggerDeviceIo::aMillionSentencesOfOneTimeAreOneRecord()
{
    AGpsLoggerDevice logger(nullptr, new Repeated(rmc("123519") + gga("123519"), 500000));
    RecordList list(logger);
    const long before = residentKilobytes();
    QVERIFY(logger.init());
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 1);
    QVERIFY(residentKilobytes() - before < 4096);
}

void TestAGpsLoggerDeviceIo::endlessBytesNeedNoMemory_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("no end of line") << QByteArray("GPGGA,");
    QTest::newRow("a dollar and no end of line") << "$GPGGA," + QByteArray(50000, '1');
    QTest::newRow("dollars") << QByteArray("$");
    QTest::newRow("sensors") << nmea("YXXDR,A,7.5,D,PITCH");
    QTest::newRow("transducers without an end") << "$YXXDR," + QByteArray("A,7.5,D,PITCH,").repeated(5000);
}

void TestAGpsLoggerDeviceIo::endlessBytesNeedNoMemory()
{
    QFETCH(QByteArray, block);
    constexpr int kBytes = 30 * 1000 * 1000;
    AGpsLoggerDevice logger(nullptr, new Repeated(block, kBytes / block.size()));
    RecordList list(logger);
    const long before = residentKilobytes();
    QVERIFY(logger.init());
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 0);
    QVERIFY(residentKilobytes() - before < 4096);
}

void TestAGpsLoggerDeviceIo::everyDamagedByteIsSurvived()
{
    const QByteArray content = kThreeTimes + nmea("YXXDR,A,7.5,D,PITCH") + rmc("123522");
    for (int i = 0; i < content.size(); ++i) {
        for (const int bit : {1, 4, 16, 128}) {
            QByteArray damaged = content;
            damaged[i] = static_cast<char>(damaged.at(i) ^ bit);
            const QList<AGeoData> records = recordsOf(damaged);
            QVERIFY(records.size() >= 3 && records.size() <= 4);
            for (const AGeoData &record : records) {
                QCOMPARE(record.latitude, 4807.038F);
                QCOMPARE(record.recordTime.date(), QDate(2024, 5, 17));
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestAGpsLoggerDeviceIo)
#include "tst_agpsloggerdevice_io.moc"
