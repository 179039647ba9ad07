#include "core/nmeareceiver.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <cstdlib>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Receivers that send as they like: sockets, terminals and pipes, their pauses and their ends.
class TestAGpsLoggerDeviceReceivers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSocketDeliversWhenTheNextTimeBegins();
    void aSocketDeliversAtAPause();
    void whatFollowsAPauseStillBelongsToItsTime();
    void aSocketDeliversAtItsEnd();
    void whatAReceiverSendsWhileHaltedIsPassedOver();
    void aPseudoTerminal();
    void aNamedPipeIsOpenedWithoutWaiting();
    void anUnconnectedSocketIsNoInput();
    void asksAReceiverForAStoredFile();
    void aSocketMayStillBeConnecting_data();
    void aSocketMayStillBeConnecting();
    void aSocketThatCannotConnectEnds_data();
    void aSocketThatCannotConnectEnds();
    void aSocketsTimeoutIsNoEnd();
    void whatCameWhileTheLoopWasBlockedBelongsToItsRecord();
    void whatASocketGotWhileTheLoopWasBlockedBelongsToItsRecord();
    void aFirstFixWithoutADateWaitsForIt();
    void aFirstFixIsDatedByTheTimeAfterIt();
    void withoutAnyDateAPauseDeliversToo();
    void sensorsAfterARedeliveryBelongToIt();
    void anInputMayEndWithoutClosing();
    void anInputThatInitOpensCanBeWritten();
    void aPauseInAReceiversEventLoopDeliversNothing();

private:
    QTemporaryDir m_directory;
};

namespace {

// Two sockets that are connected.
class SocketPair
{
public:
    SocketPair()
    {
        m_server.listen(QHostAddress::LocalHost);
        near->connectToHost(QHostAddress::LocalHost, m_server.serverPort());
        if (!m_server.waitForNewConnection(10000) || !near->waitForConnected(10000))
            QTest::qFail("no connection", __FILE__, __LINE__);
        far = m_server.nextPendingConnection();
    }

    void send(const QByteArray &bytes) const
    {
        far->write(bytes);
        far->flush();
    }

private:
    QTcpServer m_server;

public:
    QTcpSocket *near = new QTcpSocket(&m_server);
    QTcpSocket *far = nullptr;
};

} // namespace

void TestAGpsLoggerDeviceReceivers::aSocketDeliversWhenTheNextTimeBegins()
{
    const SocketPair pair;
    AGpsLoggerDevice logger(nullptr, pair.near);
    const RecordList list(logger);
    QVERIFY(logger.init());
    pair.send(rmc("123519") + gga("123519") + rmc("123520").left(30));
    QVERIFY(list.waitForCount(1)); // at the pause
    pair.send(rmc("123520").mid(30) + rmc("123521") + rmc("123522"));
    QVERIFY(list.waitForCount(3));
    QCOMPARE(list.records.at(0).altitude, 545.4F);
    QCOMPARE(list.records.at(1).recordTime, utc(2024, 5, 17, 12, 35, 20));
    QVERIFY(list.waitForCount(4));
}

void TestAGpsLoggerDeviceReceivers::aSocketDeliversAtAPause()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    QVERIFY(logger.isStreaming());
    receiver->send(rmc("123519"));
    QVERIFY(list.waitForCount(1));
    receiver->send(rmc("123520").chopped(2)); // without its end of line, as some send it before the next sentence
    QVERIFY(list.waitForCount(2));
    receiver->send("\r\n" + rmc("123521") + gga("123521"));
    QVERIFY(list.waitForCount(3));
    QTest::qWait(500);
    QCOMPARE(list.records.size(), 3);
    QCOMPARE(list.records.at(2).altitude, 545.4F);
    QCOMPARE(list.finishedCount, 0);
}

void TestAGpsLoggerDeviceReceivers::whatFollowsAPauseStillBelongsToItsTime()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(rmc("123519") + nmea("HCHDG,90,,,,"));
    QVERIFY(list.waitForCount(1));
    receiver->send(nmea("YXXDR,P,1.0,B,BARO"));
    receiver->send(gga("123519"));
    QVERIFY(list.waitForCount(2));
    receiver->send(nmea("YXXDR,P,0.9,B,BARO"));
    receiver->send(rmc("123520"));
    QVERIFY(list.waitForCount(3));
    QCOMPARE(timesOf(list.records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19), utc(2024, 5, 17, 12, 35, 19),
                                                      utc(2024, 5, 17, 12, 35, 20)}));
    QCOMPARE(list.records.at(1).speed, 22.4F);
    QCOMPARE(list.records.at(1).altitude, 545.4F);
    QVERIFY(list.records.at(1).estimateHeading(true) > 89.0);
    QCOMPARE(list.records.at(1).airPressure, 0.0F);
    QCOMPARE(list.records.at(2).airPressure, 900.0F); // the last one before the time begins
}

void TestAGpsLoggerDeviceReceivers::aSocketDeliversAtItsEnd()
{
    const SocketPair pair;
    AGpsLoggerDevice logger(nullptr, pair.near);
    RecordList list(logger);
    QVERIFY(logger.init());
    pair.send(kThreeTimes);
    pair.far->disconnectFromHost();
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 3);
}

void TestAGpsLoggerDeviceReceivers::whatAReceiverSendsWhileHaltedIsPassedOver()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    logger.setStreaming(false);
    receiver->send(kThreeTimes);
    QTest::qWait(20);
    logger.setStreaming(true);
    QTest::qWait(400);
    QCOMPARE(list.records.size(), 0);
    receiver->send(gga("123522"));
    QVERIFY(list.waitForCount(1));
    QCOMPARE(timesOf(list.records), QList<QDateTime>{utc(2024, 5, 17, 12, 35, 22)});
}

void TestAGpsLoggerDeviceReceivers::aPseudoTerminal()
{
    for (const bool openedBefore : {false, true}) {
        const int master = posix_openpt(O_RDWR | O_NOCTTY);
        QVERIFY(master >= 0);
        QVERIFY(grantpt(master) == 0 && unlockpt(master) == 0);
        auto *terminal = new QFile(QString::fromLocal8Bit(ptsname(master)));
        if (openedBefore)
            QVERIFY(terminal->open(QIODevice::ReadOnly));
        AGpsLoggerDevice logger(nullptr, terminal);
        RecordList list(logger);
        QVERIFY(logger.init());
        QVERIFY(!logger.ioIsFile());
        const auto send = [master](const QByteArray &bytes) {
            return ::write(master, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size();
        };
        QVERIFY(send(rmc("123519") + gga("123519") + rmc("123520").left(20)));
        QVERIFY(list.waitForCount(1));
        QVERIFY(send(rmc("123520").mid(20)));
        QVERIFY(list.waitForCount(2));
        QVERIFY(send(rmc("123521")));
        QTest::qWait(20);
        ::close(master);
        QVERIFY(list.waitForEnd());
        QCOMPARE(timesOf(list.records), (QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19), utc(2024, 5, 17, 12, 35, 20),
                                                          utc(2024, 5, 17, 12, 35, 21)}));
        QCOMPARE(list.records.first().altitude, 545.4F);
    }
}

void TestAGpsLoggerDeviceReceivers::aNamedPipeIsOpenedWithoutWaiting()
{
    const QString name = m_directory.filePath(QStringLiteral("pipe"));
    const QByteArray encoded = QFile::encodeName(name);
    QVERIFY(mkfifo(encoded.constData(), 0600) == 0);
    AGpsLoggerDevice logger(nullptr, new QFile(name));
    RecordList list(logger);
    QVERIFY(logger.init());
    QTest::qWait(20);
    QCOMPARE(list.finishedCount, 0); // nobody has written yet
    const int writer = ::open(encoded.constData(), O_WRONLY | O_CLOEXEC);
    QVERIFY(writer >= 0);
    QVERIFY(::write(writer, kThreeTimes.constData(), static_cast<std::size_t>(kThreeTimes.size())) ==
            kThreeTimes.size());
    QVERIFY(list.waitForCount(3));
    ::close(writer);
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 3);
}

void TestAGpsLoggerDeviceReceivers::anUnconnectedSocketIsNoInput()
{
    AGpsLoggerDevice logger(nullptr, new QTcpSocket);
    QVERIFY(!logger.init());
}

void TestAGpsLoggerDeviceReceivers::asksAReceiverForAStoredFile()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    QVERIFY(logger.init());
    QVERIFY(!logger.loadFile(0));
    QVERIFY(!logger.loadFile(-1));
    QCOMPARE(receiver->written, QByteArray());
    QVERIFY(logger.loadFile(12));
    QCOMPARE(receiver->written, nmea("PAVLOAD,12"));

    QFile log(m_directory.filePath(QStringLiteral("log.nmea")));
    QVERIFY(log.open(QIODevice::WriteOnly));
    AGpsLoggerDevice ofFile(nullptr, new QFile(log.fileName()));
    QVERIFY(ofFile.init());
    QVERIFY(!ofFile.loadFile(1));
    auto *buffer = new QBuffer;
    QVERIFY(buffer->open(QIODevice::ReadOnly));
    AGpsLoggerDevice ofReadOnly(nullptr, buffer);
    QVERIFY(!ofReadOnly.loadFile(1));
}

void TestAGpsLoggerDeviceReceivers::aSocketMayStillBeConnecting_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("by address") << QStringLiteral("127.0.0.1");
    QTest::newRow("by name") << QStringLiteral("localhost");
}

void TestAGpsLoggerDeviceReceivers::aSocketMayStillBeConnecting()
{
    QFETCH(QString, host);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    auto *socket = new QTcpSocket;
    socket->connectToHost(host, server.serverPort(), QIODevice::ReadWrite, QAbstractSocket::IPv4Protocol);
    QVERIFY(socket->state() != QAbstractSocket::ConnectedState);
    AGpsLoggerDevice logger(nullptr, socket);
    RecordList list(logger);
    QVERIFY(logger.init());
    QVERIFY(QTest::qWaitFor([&server] { return server.hasPendingConnections(); }));
    QTcpSocket *far = server.nextPendingConnection();
    QVERIFY(QTest::qWaitFor([socket] { return socket->state() == QAbstractSocket::ConnectedState; }));
    QTest::qWait(20);
    QCOMPARE(list.finishedCount, 0);
    far->write(kThreeTimes);
    QVERIFY(list.waitForCount(3));
    far->disconnectFromHost();
    QVERIFY(list.waitForEnd());
    QCOMPARE(list.records.size(), 3);
}

void TestAGpsLoggerDeviceReceivers::aSocketThatCannotConnectEnds_data()
{
    QTest::addColumn<QString>("host");
    QTest::newRow("nobody listens") << QStringLiteral("127.0.0.1");
    QTest::newRow("no such host") << QStringLiteral("no.such.host.invalid");
}

void TestAGpsLoggerDeviceReceivers::aSocketThatCannotConnectEnds()
{
    QFETCH(QString, host);
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const quint16 port = server.serverPort();
    server.close();
    auto *socket = new QTcpSocket;
    socket->connectToHost(host, port);
    AGpsLoggerDevice logger(nullptr, socket);
    RecordList list(logger);
    QVERIFY(logger.init());
    QCOMPARE(list.finishedCount, 0);
    QVERIFY(list.waitForEnd());
    QTest::qWait(20);
    QCOMPARE(list.finishedCount, 1);
    QCOMPARE(list.records.size(), 0);
}

void TestAGpsLoggerDeviceReceivers::aSocketsTimeoutIsNoEnd()
{
    const SocketPair pair;
    AGpsLoggerDevice logger(nullptr, pair.near);
    const RecordList list(logger);
    QVERIFY(logger.init());
    QVERIFY(!pair.near->waitForReadyRead(1));
    QTest::qWait(20);
    QCOMPARE(list.finishedCount, 0);
    pair.send(kThreeTimes);
    QVERIFY(list.waitForCount(3));
}

void TestAGpsLoggerDeviceReceivers::whatCameWhileTheLoopWasBlockedBelongsToItsRecord()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(rmc("123519"));
    QTest::qWait(20);
    receiver->sendUnnoticed(gga("123519"));
    QVERIFY(list.waitForCount(1));
    QTest::qWait(400);
    QCOMPARE(list.records.size(), 1);
    QCOMPARE(list.records.first().altitude, 545.4F);
    QCOMPARE(list.records.first().speed, 22.4F);
}

void TestAGpsLoggerDeviceReceivers::whatASocketGotWhileTheLoopWasBlockedBelongsToItsRecord()
{
    const SocketPair pair;
    AGpsLoggerDevice logger(nullptr, pair.near);
    const RecordList list(logger);
    QVERIFY(logger.init());
    pair.send(rmc("123519"));
    QTest::qWait(50);
    pair.send(gga("123519"));
    QThread::msleep(400);
    QVERIFY(list.waitForCount(1));
    QTest::qWait(400);
    QCOMPARE(list.records.size(), 1);
    QCOMPARE(list.records.first().altitude, 545.4F);
}

void TestAGpsLoggerDeviceReceivers::aFirstFixWithoutADateWaitsForIt()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(gga("123519"));
    QTest::qWait(500);
    QCOMPARE(list.records.size(), 0);
    receiver->send(rmc("123519"));
    QVERIFY(list.waitForCount(1));
    QTest::qWait(400);
    QCOMPARE(timesOf(list.records), QList<QDateTime>{utc(2024, 5, 17, 12, 35, 19)});
    QCOMPARE(list.records.first().altitude, 545.4F);
}

void TestAGpsLoggerDeviceReceivers::aFirstFixIsDatedByTheTimeAfterIt()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(gll("235959"));
    QTest::qWait(500);
    receiver->send(rmc("000000"));
    QVERIFY(list.waitForCount(2));
    QCOMPARE(timesOf(list.records), (QList<QDateTime>{utc(2024, 5, 16, 23, 59, 59), utc(2024, 5, 17, 0, 0, 0)}));
}

void TestAGpsLoggerDeviceReceivers::withoutAnyDateAPauseDeliversToo()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    const QDate before = QDateTime::currentDateTimeUtc().date();
    receiver->send(gga("123519"));
    QVERIFY(list.waitForCount(1));
    receiver->send(gga("123520"));
    QElapsedTimer waiting;
    waiting.start();
    QVERIFY(list.waitForCount(2));
    QVERIFY(waiting.elapsed() < 1000); // only the first one waits for a date
    const QDate date = list.records.first().recordTime.date();
    QVERIFY(date >= before && date <= QDateTime::currentDateTimeUtc().date());
}

void TestAGpsLoggerDeviceReceivers::sensorsAfterARedeliveryBelongToIt()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(rmc("123519"));
    QVERIFY(list.waitForCount(1));
    receiver->send(gga("123519") + nmea("YXXDR,P,0.9,B,BARO"));
    QVERIFY(list.waitForCount(2));
    QCOMPARE(list.records.last().airPressure, 900.0F);
    receiver->send(rmc("123520"));
    QVERIFY(list.waitForCount(3));
    QCOMPARE(list.records.last().airPressure, 0.0F);
}

void TestAGpsLoggerDeviceReceivers::anInputMayEndWithoutClosing()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    RecordList list(logger);
    QVERIFY(logger.init());
    receiver->send(kThreeTimes);
    QTest::qWait(20);
    Q_EMIT receiver->readChannelFinished();
    QVERIFY(list.waitForEnd());
    QVERIFY(receiver->isOpen());
    QCOMPARE(list.records.size(), 3);
}

void TestAGpsLoggerDeviceReceivers::anInputThatInitOpensCanBeWritten()
{
    auto *receiver = new Receiver(false);
    AGpsLoggerDevice logger(nullptr, receiver);
    QVERIFY(!logger.loadFile(7));
    QVERIFY(logger.init());
    QVERIFY(logger.loadFile(7));
    QCOMPARE(receiver->written, nmea("PAVLOAD,7"));
}

void TestAGpsLoggerDeviceReceivers::aPauseInAReceiversEventLoopDeliversNothing()
{
    auto *receiver = new Receiver;
    AGpsLoggerDevice logger(nullptr, receiver);
    const RecordList list(logger);
    int depth = 0;
    connect(&logger, &AGpsLoggerDevice::gpsRecordRead, this, [&] {
        QCOMPARE(++depth, 1);
        if (list.records.size() == 1)
            receiver->send(rmc("123523"));
        QTest::qWait(500);
        --depth;
    });
    QVERIFY(logger.init());
    receiver->send(rmc("123519"));
    QTest::qWait(20); // the pause has begun
    receiver->send(rmc("123520") + rmc("123521") + rmc("123522"));
    QVERIFY(list.waitForCount(5));
    QTest::qWait(700);
    QCOMPARE(list.records.size(), 5);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(list.records.at(i).recordTime, utc(2024, 5, 17, 12, 35, 19 + i));
}

QTEST_GUILESS_MAIN(TestAGpsLoggerDeviceReceivers)
#include "tst_agpsloggerdevice_receivers.moc"
