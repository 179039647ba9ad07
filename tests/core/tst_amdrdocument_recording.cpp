#include "core/profilefiles.h"
#include "core/recordings.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtTest/QtTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

// Recording as the sweeps arrive: what stands in the file whatever happens.

namespace {

using profilefiles::ChildResult;
using profilefiles::inChild;
using profilefiles::limitFileSize;

// Of the chunks of records without texts.
constexpr int kSweepBytes = 258; // of three points
constexpr int kPositionBytes = 102;

// The descriptor through which this process writes to a file; -1 if there is none.
int descriptorForWriting(const QString &fileName)
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString &name : descriptors.entryList(QDir::Files | QDir::System)) {
        const int descriptor = name.toInt();
        if (QFile::symLinkTarget(descriptors.filePath(name)) == fileName &&
            (::fcntl(descriptor, F_GETFL) & O_ACCMODE) != O_RDONLY)
            return descriptor;
    }
    return -1;
}

} // namespace

class TestAMdrDocumentRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRecordingHasWhatWasAddedBeforeAndAfterItsStart();
    void recordsCanBeReadWhileTheyAreRecorded();
    void aRecordingInMemoryAndOnDiskAreTheSameBytes();
    void deletingTheDocumentEndsTheRecording();
    void aCrashLeavesAllOfTheTurnsBefore_data();
    void aCrashLeavesAllOfTheTurnsBefore();
    void withoutAnEventLoopFullBlocksAreWritten();
    void theRecordsOfATurnAreWrittenTogether();
    void recordingNeedsNoMemoryForItsRecords();
    void replayingALargeFileNeedsNoMemoryForIt();
    void aDeviceMayComeLate();
    void aFullDiskWhileRecordingLosesNothing_data();
    void aFullDiskWhileRecordingLosesNothing();
    void aFullDiskIsSeenByWhoReads();
    void aFileThatCannotBeFlushedToTheDiskFails();
    void aRecordingThatCannotBeginLeavesTheDocument();
    void theFileThatIsRecordedCannotBeSavedOver();
    void aRenamedRecordingStaysProtected();
    void aRecordingWhoseFileIsGoneFails_data();
    void aRecordingWhoseFileIsGoneFails();
    void loadEndsTheRecording();
    void aNewRecordingEndsTheOneBefore();
    void finishingWithoutARecordingFails();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_dir;
};

void TestAMdrDocumentRecording::aRecordingHasWhatWasAddedBeforeAndAfterItsStart()
{
    AMdrDocument document;
    document.setDevice(OtherDevice());
    document.addSweep(markedSweep(1));
    document.addGeoData(markedPosition(10));
    QVERIFY(document.startRecording(path("r.mdr")));
    QVERIFY(document.isRecording());
    document.addSweep(markedSweep(2, 100, 10000));
    document.addGeoData(markedPosition(20));
    QString errorText;
    QVERIFY2(document.finishRecording(&errorText), qPrintable(errorText));
    QVERIFY(!document.isRecording());
    QVERIFY(document.recordingError().isEmpty());
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2 p20"));

    AMdrDocument loaded;
    QVERIFY2(loaded.load(path("r.mdr"), &errorText), qPrintable(errorText));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 p10 s2 p20"));
    QVERIFY(std::unique_ptr<AVeldoranDevice>(loaded.createDevice()));

    // What comes after the end is in memory again.
    document.addSweep(markedSweep(3));
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2 p20 s3"));
    QVERIFY(loaded.load(path("r.mdr")));
    QCOMPARE(loaded.recordCount(), 4);
}

void TestAMdrDocumentRecording::recordsCanBeReadWhileTheyAreRecorded()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    QString expected;
    for (int i = 1; i <= 20; ++i) {
        document.addSweep(markedSweep(i, 0, i % 3 == 0 ? 8000 : 5));
        expected += (expected.isEmpty() ? QStringLiteral("s%1") : QStringLiteral(" s%1")).arg(i);
        QCOMPARE(recordsText(document), expected);
    }
    QVERIFY(document.finishRecording());
    QCOMPARE(recordsText(document), expected);
}

void TestAMdrDocumentRecording::aRecordingInMemoryAndOnDiskAreTheSameBytes()
{
    AMdrDocument inMemory;
    inMemory.setDevice(OtherDevice());
    fillWithFive(&inMemory);
    QVERIFY(inMemory.save(path("memory.mdr")));
    AMdrDocument onDisk;
    onDisk.setDevice(OtherDevice());
    QVERIFY(onDisk.startRecording(path("disk.mdr")));
    fillWithFive(&onDisk);
    QVERIFY(onDisk.save(path("copy.mdr"))); // also while it is going on
    QVERIFY(onDisk.finishRecording());
    QCOMPARE(readFile(path("disk.mdr")), readFile(path("memory.mdr")));
    QCOMPARE(readFile(path("copy.mdr")), readFile(path("memory.mdr")));
}

void TestAMdrDocumentRecording::deletingTheDocumentEndsTheRecording()
{
    {
        AMdrDocument document;
        QVERIFY(document.startRecording(path("r.mdr")));
        fillWithFive(&document);
    }
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("r.mdr")));
    QCOMPARE(loaded.recordCount(), 5);
}

void TestAMdrDocumentRecording::aCrashLeavesAllOfTheTurnsBefore_data()
{
    QTest::addColumn<int>("sweeps");
    QTest::addColumn<int>("points");
    QTest::addColumn<int>("added"); // in the turn that is broken off
    QTest::newRow("nothing") << 0 << 3 << 0;
    QTest::newRow("one sweep") << 1 << 100 << 0;
    QTest::newRow("many sweeps") << 100 << 100 << 0;
    QTest::newRow("many sweeps, and a turn broken off") << 100 << 100 << 3;
    QTest::newRow("sweeps longer than a block") << 3 << 5000 << 0;
    QTest::newRow("a broken first turn") << 0 << 3 << 5;
}

void TestAMdrDocumentRecording::aCrashLeavesAllOfTheTurnsBefore()
{
    QFETCH(int, sweeps);
    QFETCH(int, points);
    QFETCH(int, added);
    const QString name = path("crash.mdr");
    const ChildResult result = inChild([&] {
        AMdrDocument document;
        document.setDevice(OtherDevice());
        if (!document.startRecording(name))
            return 1;
        for (int i = 0; i < sweeps; ++i) {
            document.addSweep(markedSweep(i, i, points));
            if (i % 10 == 9)
                QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
        for (int i = 0; i < added; ++i)
            document.addSweep(markedSweep(1000));
        kill(getpid(), SIGKILL);
        return 2;
    });
    QCOMPARE(result.status, -1);
    AMdrDocument document;
    QString errorText;
    QVERIFY(!document.load(name, &errorText));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(document.sweepCount(), sweeps);
    QVERIFY(std::unique_ptr<AVeldoranDevice>(document.createDevice()));
    ASweep sweep;
    for (int i = 0; i < sweeps; ++i) {
        QVERIFY(document.readSweep(i, &sweep));
        QVERIFY(same(sweep, markedSweep(i, i, points)));
    }
    QVERIFY(document.save(name));
    QVERIFY(document.load(name));
    QCOMPARE(document.sweepCount(), sweeps);
}

void TestAMdrDocumentRecording::withoutAnEventLoopFullBlocksAreWritten()
{
    constexpr int kSweeps = 100;
    constexpr int kBlocksSweeps = 15; // of 4,348 bytes
    const QString name = path("crash.mdr");
    const ChildResult result = inChild([&] {
        AMdrDocument document;
        if (!document.startRecording(name))
            return 1;
        for (int i = 0; i < kSweeps; ++i)
            document.addSweep(markedSweep(i, i, 100));
        kill(getpid(), SIGKILL);
        return 2;
    });
    QCOMPARE(result.status, -1);
    AMdrDocument document;
    QVERIFY(!document.load(name));
    QVERIFY2(document.sweepCount() >= kSweeps - kBlocksSweeps, qPrintable(QString::number(document.sweepCount())));
    QVERIFY(document.sweepCount() < kSweeps);
}

// Small records need no call of the system each.
void TestAMdrDocumentRecording::theRecordsOfATurnAreWrittenTogether()
{
    const QString name = path("r.mdr");
    AMdrDocument document;
    QVERIFY(document.startRecording(name));
    const qint64 before = QFileInfo(name).size();
    for (int i = 0; i < 10; ++i)
        document.addGeoData(markedPosition(static_cast<float>(i + 1)));
    QCOMPARE(QFileInfo(name).size(), before);
    QCoreApplication::processEvents();
    QCOMPARE(QFileInfo(name).size(), before + 10 * kPositionBytes);
    AMdrDocument loaded;
    QVERIFY(!loaded.load(name)); // goes on
    QCOMPARE(loaded.recordCount(), 10);
    document.addGeoData(markedPosition(11));
    QCoreApplication::processEvents();
    QCOMPARE(QFileInfo(name).size(), before + 11 * kPositionBytes);
}

// 400 sweeps of 10000 points: 170 MB in the file, and twice that in memory.
void TestAMdrDocumentRecording::recordingNeedsNoMemoryForItsRecords()
{
    const QString name = path("large.mdr");
    const auto record = [&name](int sweeps) {
        return inChild([&] {
            AMdrDocument document;
            if (!document.startRecording(name))
                return 1;
            ASweep sweep = markedSweep(0, 0, 10000);
            for (int i = 0; i < sweeps; ++i) {
                sweep.values[0].level = i;
                document.addSweep(sweep);
            }
            return document.finishRecording() && document.sweepCount() == sweeps ? 0 : 1;
        });
    };
    const ChildResult few = record(4);
    const ChildResult many = record(400);
    QCOMPARE(few.status, 0);
    QCOMPARE(many.status, 0);
    QVERIFY(QFileInfo(name).size() > 160000000);
    QVERIFY2(many.megabytes < few.megabytes + 30, qPrintable(QString::number(many.megabytes - few.megabytes)));
}

// The file of the test before.
void TestAMdrDocumentRecording::replayingALargeFileNeedsNoMemoryForIt()
{
    const QString name = path("large.mdr");
    if (!QFile::exists(name))
        QSKIP("needs the file that recordingNeedsNoMemoryForItsRecords writes");
    const ChildResult nothing = inChild([] { return 0; });
    const ChildResult result = inChild([&name] {
        AMdrDocument document;
        if (!document.load(name))
            return 1;
        ASweep sweep;
        for (int i = 0; i < document.recordCount(); ++i) {
            if (!document.readSweep(i, &sweep) || sweep.values.size() != 10000 || sweep.values.first().level != i)
                return 2;
        }
        return 0;
    });
    QVERIFY(QFile::remove(name));
    QCOMPARE(result.status, 0);
    QVERIFY2(result.megabytes < nothing.megabytes + 30,
             qPrintable(QString::number(result.megabytes - nothing.megabytes)));
}

void TestAMdrDocumentRecording::aDeviceMayComeLate()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    document.setDevice(OtherDevice());
    document.addSweep(markedSweep(2));
    QVERIFY(document.finishRecording());
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("r.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 s2"));
    QVERIFY(std::unique_ptr<AVeldoranDevice>(loaded.createDevice()));
}

void TestAMdrDocumentRecording::aFullDiskWhileRecordingLosesNothing_data()
{
    QTest::addColumn<int>("room");   // bytes beyond the first sweep
    QTest::addColumn<int>("points"); // of the last sweep
    QTest::addColumn<QString>("inFile");
    const QString one = QStringLiteral("s1");
    const QString two = QStringLiteral("s1 s2");
    const QString three = QStringLiteral("s1 s2 p10");
    const auto row = [](int room, int points, const QString &inFile) {
        QTest::addRow("%d bytes, %d points", room, points) << room << points << inFile;
    };
    for (const int points : {500, 1000, 1600, 4000}) { // within a block, and beyond one
        for (const int room : {0, 1, 100, kSweepBytes - 1})
            row(room, points, one);
        for (const int room : {kSweepBytes, kSweepBytes + kPositionBytes - 1})
            row(room, points, two);
        for (const int room : {kSweepBytes + kPositionBytes, 400, 20000})
            row(room, points, three);
    }
}

void TestAMdrDocumentRecording::aFullDiskWhileRecordingLosesNothing()
{
    QFETCH(int, room);
    QFETCH(int, points);
    QFETCH(QString, inFile);
    const QString name = path("full.mdr");
    const QString copy = path("copy.mdr");
    const int status = inChild([&] {
                           AMdrDocument document;
                           if (!document.startRecording(name))
                               return 1;
                           document.addSweep(markedSweep(1));
                           QCoreApplication::processEvents();
                           if (!limitFileSize(static_cast<rlim_t>(QFileInfo(name).size() + room)))
                               return 2;
                           document.addSweep(markedSweep(2));
                           document.addGeoData(markedPosition(10));
                           document.addSweep(markedSweep(3, 0, points));
                           QCoreApplication::processEvents();
                           if (document.recordingError().isEmpty() || !document.isRecording())
                               return 3;
                           limitFileSize(RLIM_INFINITY); // there is room again, but nothing may follow a gap
                           document.addSweep(markedSweep(4));
                           QCoreApplication::processEvents();
                           if (recordsText(document) != QStringLiteral("s1 s2 p10 s3 s4"))
                               return 4;
                           QString errorText;
                           if (document.finishRecording(&errorText) || errorText.isEmpty())
                               return 5;
                           if (recordsText(document) != QStringLiteral("s1 s2 p10 s3 s4"))
                               return 6;
                           return document.save(copy) ? 0 : 7;
                       }).status;
    QCOMPARE(status, 0);

    AMdrDocument loaded;
    QVERIFY(!loaded.load(name));
    QCOMPARE(recordsText(loaded), inFile);
    const QList<Chunk> chunks = chunksOf(readFile(name)); // the part of a chunk was cut off
    QCOMPARE(qint64(chunks.last().end), QFileInfo(name).size());
    QCOMPARE(chunks.size(), loaded.recordCount());
    QVERIFY(loaded.load(copy));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 s2 p10 s3 s4"));
}

void TestAMdrDocumentRecording::aFullDiskIsSeenByWhoReads()
{
    const QString name = path("full.mdr");
    const int status = inChild([&] {
                           AMdrDocument document;
                           if (!document.startRecording(name) || !limitFileSize(100))
                               return 1;
                           fillWithFive(&document);
                           document.setDevice(OtherDevice());
                           if (!document.recordingError().isEmpty())
                               return 2;
                           if (recordsText(document) != QStringLiteral("s1 p10 s2 s3 p20"))
                               return 3;
                           return document.recordingError().isEmpty() ? 4 : 0;
                       }).status;
    QCOMPARE(status, 0);
}

void TestAMdrDocumentRecording::aFileThatCannotBeFlushedToTheDiskFails()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    QCoreApplication::processEvents();
    const int descriptor = descriptorForWriting(path("r.mdr"));
    QVERIFY(descriptor >= 0);
    int ends[2] = {};
    QCOMPARE(::pipe(ends), 0);
    QCOMPARE(::dup2(ends[1], descriptor), descriptor); // takes bytes like the file, but has no disk
    QString errorText;
    const bool isFinished = document.finishRecording(&errorText);
    for (const int end : ends)
        ::close(end);

    QVERIFY(!isFinished);
    QCOMPARE(errorText, qt_error_string(EINVAL));
    QCOMPARE(document.recordingError(), errorText);
    QVERIFY(!document.isRecording());
    QCOMPARE(recordsText(document), QStringLiteral("s1"));
    QVERIFY(document.save(path("copy.mdr")));
}

void TestAMdrDocumentRecording::aRecordingThatCannotBeginLeavesTheDocument()
{
    AMdrDocument document;
    fillWithFive(&document);
    QVERIFY(!document.startRecording(path("missing/r.mdr")));
    QVERIFY(!document.isRecording());
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2 s3 p20"));
}

void TestAMdrDocumentRecording::theFileThatIsRecordedCannotBeSavedOver()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    QVERIFY(QFile::link(path("r.mdr"), path("link.mdr")));
    for (const QString &name : {path("r.mdr"), m_dir.path() + QStringLiteral("/./r.mdr"), path("link.mdr")}) {
        QString errorText;
        QVERIFY2(!document.save(name, &errorText), qPrintable(name));
        QVERIFY(!errorText.isEmpty());
    }
    document.addSweep(markedSweep(2));
    QVERIFY(document.finishRecording());
    QVERIFY(document.save(path("r.mdr")));
    QVERIFY(document.load(path("r.mdr")));
    QCOMPARE(recordsText(document), QStringLiteral("s1 s2"));
}

void TestAMdrDocumentRecording::aRenamedRecordingStaysProtected()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    QFile::remove(path("other.mdr"));
    QVERIFY(QFile::rename(path("r.mdr"), path("other.mdr")));
    QString errorText;
    QVERIFY2(document.save(path("new.mdr"), &errorText), qPrintable(errorText));
    QVERIFY2(document.save(path("r.mdr"), &errorText), qPrintable(errorText));
    QVERIFY(!document.save(path("other.mdr"), &errorText));
    document.addSweep(markedSweep(2));
    QVERIFY(document.finishRecording());
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("other.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 s2"));
    QVERIFY(loaded.load(path("r.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1"));
}

void TestAMdrDocumentRecording::aRecordingWhoseFileIsGoneFails_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("deleted") << false;
    QTest::newRow("replaced") << true;
}

void TestAMdrDocumentRecording::aRecordingWhoseFileIsGoneFails()
{
    QFETCH(bool, isReplaced);
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    if (isReplaced)
        QVERIFY(AMdrDocument().save(path("r.mdr")));
    else
        QVERIFY(QFile::remove(path("r.mdr")));
    document.addSweep(markedSweep(2));
    QString errorText;
    QVERIFY2(document.save(path("new.mdr"), &errorText), qPrintable(errorText));
    QVERIFY(!document.finishRecording(&errorText));
    QVERIFY(!errorText.isEmpty());
    QCOMPARE(document.recordingError(), errorText);
    QCOMPARE(recordsText(document), QStringLiteral("s1 s2"));
    QVERIFY(document.save(path("r.mdr")));
    QVERIFY(document.load(path("r.mdr")));
    QCOMPARE(recordsText(document), QStringLiteral("s1 s2"));
}

void TestAMdrDocumentRecording::loadEndsTheRecording()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    QVERIFY(document.load(path("r.mdr")));
    QVERIFY(!document.isRecording());
    QCOMPARE(recordsText(document), QStringLiteral("s1"));
}

void TestAMdrDocumentRecording::aNewRecordingEndsTheOneBefore()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("first.mdr")));
    document.addSweep(markedSweep(1));
    QVERIFY(document.startRecording(path("second.mdr")));
    document.addSweep(markedSweep(2));
    QVERIFY(document.startRecording(path("second.mdr"))); // its own file
    document.addSweep(markedSweep(3));
    QVERIFY(document.finishRecording());
    AMdrDocument loaded;
    QVERIFY(loaded.load(path("first.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1"));
    QVERIFY(loaded.load(path("second.mdr")));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 s2 s3"));
}

void TestAMdrDocumentRecording::finishingWithoutARecordingFails()
{
    AMdrDocument document;
    QString errorText;
    QVERIFY(!document.finishRecording(&errorText));
    QVERIFY(!errorText.isEmpty());
}

QTEST_GUILESS_MAIN(TestAMdrDocumentRecording)
#include "tst_amdrdocument_recording.moc"
