#include "channel/achannelinfo.h"
#include "channel/efisimport.h"

#include "channel/efisfiles.h"

#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtNetwork/QLocalServer>
#include <QtNetwork/QLocalSocket>
#include <QtTest/QtTest>

#include <algorithm>
#include <functional>

#include <fcntl.h>
#include <unistd.h>

using namespace efisfiles;

// The EFIS import on devices of every sort and on content that is no export.

namespace {

const char kEmptyList[] = "entries list is empty";
const char kNotReadable[] = "io is not readable";

// Hands out one portion after the other: what is available is what is left of the current one, so it shrinks, and
// grows when the next arrives, which happens when the reader asks while fewer than `arrivesBelow` bytes are left.
class PortionDevice : public QIODevice
{
public:
    PortionDevice(const QByteArrayList &portions, int arrivesBelow)
        : m_portions(portions)
        , m_arrivesBelow(arrivesBelow)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override
    {
        auto *self = const_cast<PortionDevice *>(this);
        if (m_current.size() < m_arrivesBelow && !m_portions.isEmpty())
            self->m_current += self->m_portions.takeFirst();
        return m_current.size() + QIODevice::bytesAvailable();
    }
    std::function<void()> beforeReading;

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (beforeReading)
            beforeReading();
        if (!isOpen())
            return -1;
        const int count = int(std::min<qint64>(maxSize, m_current.size()));
        std::copy_n(m_current.constData(), count, data);
        m_current.remove(0, count);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArrayList m_portions;
    QByteArray m_current;
    int m_arrivesBelow;
};

// Tells of bytes and never gives them.
class BrokenDevice : public QIODevice
{
public:
    explicit BrokenDevice(bool sequential, qint64 answer)
        : m_sequential(sequential)
        , m_answer(answer)
    {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return m_sequential; }
    qint64 bytesAvailable() const override { return 1000; }
    qint64 size() const override { return 1000; }

protected:
    qint64 readData(char *, qint64) override { return m_answer; }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    bool m_sequential;
    qint64 m_answer;
};

QByteArray utf16(const QByteArray &text, bool bigEndian)
{
    QByteArray result = bigEndian ? "\xfe\xff" : "\xff\xfe";
    for (const char c : text) {
        result += bigEndian ? '\0' : c;
        result += bigEndian ? c : '\0';
    }
    return result;
}

} // namespace

class TestEfisImportDevices : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeviceThatCanNotBeReadIsRefused();
    void aNullParentIsReported();
    void aFileIsReadFromWhereItStands();
    void aFileThatGrowsWhileItIsReadIsReadToItsEnd();
    void theLastBytesOfAFileInTextModeAreLeftUnread();
    void aSocketGivesWhatHasArrived();
    void aPipeGivesWhatWasReadAhead();
    void aProcessGivesWhatItWrote();
    void portionsAreReadAsTheyArrive();
    void fiveBytesLeftEndTheReadingThoughMoreWouldCome();
    void aLineCutByItsDeviceIsTwoLines();
    void aDeviceThatClosesMidwayKeepsWhatItGave();
    void aDeviceThatTellsOfBytesAndGivesNoneIsLeft_data();
    void aDeviceThatTellsOfBytesAndGivesNoneIsLeft();
    void directoriesAndEndlessFilesGiveNothing();

    void contentThatIsNoExportGivesNothing_data();
    void contentThatIsNoExportGivesNothing();
    void aFileWithoutLineEndsIsOneLine();
    void zeroBytesStandInFieldsAsAnyOther();
    void aMillionSemicolonsInALineAreNoHarm();
    void aLineOf200MegabytesIsReadAndPassedOver();
    void everyCutOfAnExportIsRead();
    void everyFlippedByteIsRead();
};

void TestEfisImportDevices::aDeviceThatCanNotBeReadIsRefused()
{
    QTest::ignoreMessage(QtDebugMsg, kNotReadable);
    const Import null = importFrom(nullptr);
    QVERIFY(!null.result);
    QCOMPARE(null.root->childCount(), 0);

    QByteArray content = oneWay("5-6", "a");
    QBuffer buffer(&content);
    QTest::ignoreMessage(QtDebugMsg, kNotReadable);
    QVERIFY(!importFrom(&buffer).result);
    QVERIFY(buffer.open(QIODevice::WriteOnly | QIODevice::Append));
    QTest::ignoreMessage(QtDebugMsg, kNotReadable);
    QVERIFY(!importFrom(&buffer).result);
    buffer.close();
    QTest::ignoreMessage(QtDebugMsg, kNotReadable);
    QVERIFY(!importFrom(&buffer).result);

    QTest::ignoreMessage(QtDebugMsg, kNotReadable); // before the parent is looked at
    QVERIFY(!AChannelInfo::fromEfisCSV(nullptr, nullptr));
}

void TestEfisImportDevices::aNullParentIsReported()
{
    QByteArray content = oneWay("5-6", "a");
    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QTest::ignoreMessage(QtWarningMsg, "fromEfisCSV: the parent is null");
    QVERIFY(!AChannelInfo::fromEfisCSV(&buffer, nullptr));
    QCOMPARE(buffer.pos(), qint64(0));
}

void TestEfisImportDevices::aFileIsReadFromWhereItStands()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    const QByteArray first = oneWay("5-6", "a");
    file.write(first + oneWay("7-8", "b"));
    QVERIFY(file.seek(first.size()));
    QCOMPARE(outline(importFrom(&file)), QStringLiteral("7-8 { b 7-8 }"));
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(&file).result);
    file.write(oneWay("9-10", "c")); // a file that was read to its end, and has grown
    QVERIFY(file.seek(2 * first.size()));
    QCOMPARE(outline(importFrom(&file)), QStringLiteral("9-10 { c 9-10 }"));
}

void TestEfisImportDevices::aFileThatGrowsWhileItIsReadIsReadToItsEnd()
{
    // A file whose first line arrives when it is opened, and a second when that one is being read.
    class GrowingFile : public QFile
    {
    public:
        using QFile::QFile;

    protected:
        qint64 readLineData(char *data, qint64 maxSize) override
        {
            if (!m_hasGrown) {
                m_hasGrown = true;
                QFile other(fileName());
                other.open(QIODevice::Append);
                other.write(oneWay("7-8", "b"));
            }
            return QFile::readLineData(data, maxSize);
        }

    private:
        bool m_hasGrown = false;
    };
    const QTemporaryDir directory;
    GrowingFile file(directory.filePath("efis.csv"));
    QVERIFY(file.open(QIODevice::ReadWrite));
    file.write(oneWay("5-6", "a"));
    QVERIFY(file.flush() && file.seek(0));
    QCOMPARE(outline(importFrom(&file)), QStringLiteral("5-8 { a 5-6, b 7-8 }"));
}

void TestEfisImportDevices::theLastBytesOfAFileInTextModeAreLeftUnread()
{
    constexpr int kLines = 50; // each is a byte shorter than the file moves
    const QByteArray content = oneWay("5-6", "a").replace('\n', "\r\n").repeated(kLines) + "abc";
    QTemporaryFile written;
    QVERIFY(written.open());
    QCOMPARE(written.write(content), qint64(content.size()));
    written.close();
    for (const QIODevice::OpenMode mode :
         {QIODevice::OpenMode(QIODevice::NotOpen), QIODevice::OpenMode(QIODevice::Text),
          QIODevice::Text | QIODevice::Unbuffered}) {
        QFile file(written.fileName());
        QVERIFY(file.open(QIODevice::ReadOnly | mode));
        const Import import = importFrom(&file);
        QVERIFY(import.result);
        QCOMPARE(import.root->childCount(), kLines);
        QCOMPARE(file.bytesAvailable(), 3);
    }
}

void TestEfisImportDevices::aSocketGivesWhatHasArrived()
{
    const QTemporaryDir directory;
    QLocalServer server;
    QVERIFY(server.listen(directory.filePath(QStringLiteral("s"))));
    QLocalSocket socket;
    socket.connectToServer(server.fullServerName());
    QVERIFY(server.waitForNewConnection(5000) && socket.waitForConnected(5000));
    QLocalSocket *peer = server.nextPendingConnection();

    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(&socket).result); // nothing has arrived, and it doesn't wait
    const QByteArray content = oneWay("5-6", "a") + twoWay("20-21", "10-11", "b");
    peer->write(content);
    QTRY_COMPARE(socket.bytesAvailable(), qint64(content.size()));
    QCOMPARE(outline(importFrom(&socket)),
             QStringLiteral("5-21 { a 5-6, Uplink 10-11 { b 10-11 }, Downlink 20-21 { b 20-21 } }"));
    QCOMPARE(socket.bytesAvailable(), qint64(0));

    peer->write(oneWay("7-8", "c")); // the same device goes on, and what has arrived outlives the connection
    QVERIFY(peer->waitForBytesWritten(5000));
    peer->disconnectFromServer();
    QTRY_COMPARE(socket.state(), QLocalSocket::UnconnectedState);
    QCOMPARE(outline(importFrom(&socket)), QStringLiteral("7-8 { c 7-8 }"));
}

// A QFile can't tell how much waits in a pipe: nothing is available, so nothing is read, and nothing waits.
void TestEfisImportDevices::aPipeGivesWhatWasReadAhead()
{
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const QByteArray content = oneWay("5-6", "a") + oneWay("7-8", "b");
    QCOMPARE(::write(ends[1], content.constData(), size_t(content.size())), ssize_t(content.size()));
    QFile pipe;
    QVERIFY(pipe.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(&pipe).result);

    // What was read ahead of it is available.
    ::close(ends[1]);
    QCOMPARE(pipe.peek(1), QByteArray("n"));
    QCOMPARE(outline(importFrom(&pipe)), QStringLiteral("5-8 { a 5-6, b 7-8 }"));
}

void TestEfisImportDevices::aProcessGivesWhatItWrote()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    QByteArray content;
    for (int i = 0; i < 5000; ++i)
        content += oneWay(QByteArray::number(i) + '-' + QByteArray::number(i + 1), QByteArray::number(i));
    file.write(content);
    QVERIFY(file.flush());
    QProcess process;
    process.start(QStringLiteral("cat"), {file.fileName()});
    QVERIFY(process.waitForFinished());
    const Import import = importFrom(&process);
    QVERIFY(import.result);
    QCOMPARE(import.root->childCount(), 5000);
}

void TestEfisImportDevices::portionsAreReadAsTheyArrive()
{
    const QByteArrayList lines{oneWay("5-6", "a"), oneWay("7-8", "b"), oneWay("9-10", "c")};
    PortionDevice device(lines, 6);
    QCOMPARE(outline(importFrom(&device)), QStringLiteral("5-10 { a 5-6, b 7-8, c 9-10 }"));

    PortionDevice uneven({lines.at(0) + lines.at(1).left(20), lines.at(1).mid(20) + lines.at(2)}, 30);
    QCOMPARE(outline(importFrom(&uneven)), QStringLiteral("5-10 { a 5-6, b 7-8, c 9-10 }"));
}

void TestEfisImportDevices::fiveBytesLeftEndTheReadingThoughMoreWouldCome()
{
    const QByteArray second = oneWay("7-8", "b");
    PortionDevice device({oneWay("5-6", "a") + second.left(5), second.mid(5)}, 1);
    QCOMPARE(outline(importFrom(&device)), QStringLiteral("5-6 { a 5-6 }"));
    QCOMPARE(device.bytesAvailable(), qint64(5));
    device.read(5);
    QCOMPARE(device.bytesAvailable(), qint64(second.size() - 5));
}

void TestEfisImportDevices::aLineCutByItsDeviceIsTwoLines()
{
    const QByteArray second = oneWay("7-8", "bb");
    PortionDevice device({oneWay("5-6", "a") + second.left(12), second.mid(12), oneWay("9-10", "c")}, 1);
    QCOMPARE(outline(importFrom(&device)), QStringLiteral("5-10 { a 5-6, c 9-10 }"));
}

void TestEfisImportDevices::aDeviceThatClosesMidwayKeepsWhatItGave()
{
    QByteArrayList lines;
    for (int i = 0; i < 20; ++i)
        lines.append(oneWay(QByteArray::number(i), QByteArray::number(i)));
    // Without a buffer, each read asks for one byte.
    for (const int closedAtRead : {1, 2, lines.first().size() - 3, 100, 200, 500}) {
        PortionDevice device(lines, 6);
        int reads = 0;
        device.beforeReading = [&] {
            if (++reads == closedAtRead)
                device.close();
        };
        if (closedAtRead <= lines.first().size())
            QTest::ignoreMessage(QtDebugMsg, kEmptyList);
        const Import import = importFrom(&device);
        QVERIFY2(import.root->childCount() < 20, qPrintable(QString::number(closedAtRead)));
        QCOMPARE(import.result, closedAtRead > lines.first().size());
        QVERIFY(!device.isOpen());
    }
}

void TestEfisImportDevices::aDeviceThatTellsOfBytesAndGivesNoneIsLeft_data()
{
    QTest::addColumn<bool>("sequential");
    QTest::addColumn<qint64>("answer");
    QTest::newRow("error") << false << qint64(-1);
    QTest::newRow("nothing") << false << qint64(0);
    QTest::newRow("error of a stream") << true << qint64(-1);
    QTest::newRow("nothing of a stream") << true << qint64(0);
}

void TestEfisImportDevices::aDeviceThatTellsOfBytesAndGivesNoneIsLeft()
{
    QFETCH(bool, sequential);
    QFETCH(qint64, answer);
    BrokenDevice device(sequential, answer);
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(&device).result);
}

void TestEfisImportDevices::directoriesAndEndlessFilesGiveNothing()
{
    for (const char *name : {"/dev/zero", "/dev/null"}) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QTest::ignoreMessage(QtDebugMsg, kEmptyList);
        QVERIFY(!importFrom(&file).result);
    }
    const int descriptor = ::open("/", O_RDONLY | O_DIRECTORY);
    QFile directory;
    if (!directory.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        QSKIP("Qt refuses to open a directory");
    }
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(&directory).result);
}

void TestEfisImportDevices::contentThatIsNoExportGivesNothing_data()
{
    const QByteArray lines = oneWay("5-6", "a") + twoWay("7-8", "9-10", "b");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("UTF-16, little endian") << utf16(lines, false);
    QTest::newRow("UTF-16, big endian") << utf16(lines, true);
    QTest::newRow("commas") << QByteArray(lines).replace(';', ',');
    QTest::newRow("tabs") << QByteArray(lines).replace(';', '\t');
    QTest::newRow("line ends of another system") << QByteArray("header\r") + QByteArray(lines).replace('\n', '\r');
    QTest::newRow("zero bytes") << QByteArray(100000, '\0');
    QTest::newRow("line ends") << QByteArray(100000, '\n');
    QTest::newRow("semicolons") << QByteArray(100000, ';');
    QTest::newRow("quotes") << QByteArray(100000, '"');
    QTest::newRow("XML") << QByteArray("<?xml version=\"1.0\"?>\n<profile id=\"a\"/>\n");
    QTest::newRow("binary") << QByteArray::fromHex("89504e470d0a1a0a0000000d4948445200000001").repeated(1000);
}

void TestEfisImportDevices::contentThatIsNoExportGivesNothing()
{
    QFETCH(QByteArray, content);
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    const Import import = importFrom(content);
    QVERIFY(!import.result);
    QCOMPARE(import.root->childCount(), 0);
}

void TestEfisImportDevices::aFileWithoutLineEndsIsOneLine()
{
    QByteArray content = oneWay("5-6", "a") + oneWay("7-8", "b") + oneWay("9-10", "c");
    content.replace("\n", "");
    QCOMPARE(outline(importFrom(content)), QStringLiteral("5-6 { a 5-6 }"));
    QByteArray otherLineEnds = content;
    otherLineEnds.replace("no;", "\rno;");
    QCOMPARE(outline(importFrom(otherLineEnds.mid(1))), QStringLiteral("5-6 { a 5-6 }"));
}

void TestEfisImportDevices::zeroBytesStandInFieldsAsAnyOther()
{
    const QByteArray zero(1, '\0');
    const Import named = importFrom(oneWay("5-6", "a" + zero + "b"));
    QVERIFY(named.result);
    QCOMPARE(named.root->child(0)->label(), QStringLiteral("a") + QChar(0) + QLatin1Char('b'));
    QCOMPARE(outline(importFrom(oneWay("5" + zero + "-6 MHz" + zero, "a"))), QStringLiteral("0-6 { a 0-6 }"));
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(line("no", "5-6", "", "a", day(0), day(0) + zero)).result);
}

void TestEfisImportDevices::aMillionSemicolonsInALineAreNoHarm()
{
    const QByteArray many(1000000, ';');
    const QByteArray taken = oneWay("5-6", "a");
    QCOMPARE(outline(importFrom(taken.chopped(1) + many + '\n' + oneWay("7-8", "b"))),
             QStringLiteral("5-8 { a 5-6, b 7-8 }"));
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom(many).result);
    QTest::ignoreMessage(QtDebugMsg, kEmptyList);
    QVERIFY(!importFrom("no" + many).result);
    QCOMPARE(outline(importFrom(oneWay(many.mid(1).replace(';', '-'), "a"))), QStringLiteral("0-0 { a 0-0 }"));
}

void TestEfisImportDevices::aLineOf200MegabytesIsReadAndPassedOver()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    const QByteArray block(1 << 20, 'x');
    for (int i = 0; i < 200; ++i)
        QCOMPARE(file.write(block), qint64(block.size()));
    file.write("\n" + oneWay("5-6", "a"));
    QVERIFY(file.seek(0));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(outline(importFrom(&file)), QStringLiteral("5-6 { a 5-6 }"));
    QVERIFY2(timer.elapsed() < 30000, qPrintable(QString::number(timer.elapsed())));
}

void TestEfisImportDevices::everyCutOfAnExportIsRead()
{
    const QByteArray content = "a;b\n" + twoWay("20-30 MHz", "5 - 6 kHz", "\"a\"") + oneWay("7-8", "ä");
    for (int size = 0; size <= content.size(); ++size) {
        const QByteArray cut = content.left(size);
        const int whole = cut.count('\n') - 1;
        const bool ended = size > 10 && parseEfisLine(cut.mid(cut.lastIndexOf('\n') + 1)).size() >= 10;
        const int lines = std::max(whole, 0) + (ended ? 1 : 0);
        if (lines == 0)
            QTest::ignoreMessage(QtDebugMsg, kEmptyList);
        const Import import = importFrom(cut);
        QCOMPARE(import.result, lines > 0);
        QCOMPARE(import.root->childCount(), lines == 0 ? 0 : lines + 1);
    }
}

void TestEfisImportDevices::everyFlippedByteIsRead()
{
    const QByteArray content = twoWay("20-30 MHz", "5 - 6 kHz", "\"a\"") + oneWay("7-8", "b");
    int taken = 0;
    for (int i = 0; i < content.size(); ++i) {
        for (const int bit : {0, 3, 7}) {
            QByteArray flipped = content;
            flipped[i] = char(uchar(flipped.at(i)) ^ (1u << bit));
            const Import import = importFrom(flipped); // one of the two lines is whole
            QVERIFY2(import.result, flipped.constData());
            taken += import.root->childCount();
        }
    }
    QVERIFY(taken > content.size() * 3);
}

QTEST_GUILESS_MAIN(TestEfisImportDevices)
#include "tst_efisimport_devices.moc"
