#include "core/profilefiles.h"
#include "core/recordings.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

// Saving in one step, and recording as the sweeps arrive: what stands in the file whatever happens.

namespace {

using profilefiles::ChildResult;
using profilefiles::inChild;
using profilefiles::inUnprivilegedChild;

bool limitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit size = {bytes, RLIM_INFINITY};
    return setrlimit(RLIMIT_FSIZE, &size) == 0;
}

QStringList filesIn(const QTemporaryDir &dir)
{
    return QDir(dir.path()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
}

} // namespace

class TestAMdrDocumentSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void savingTwiceGivesTheSameBytes();
    void savingLeavesNoOtherFile();
    void aFullDiskLeavesTheOldFile_data();
    void aFullDiskLeavesTheOldFile();
    void aCrashWhileSavingLeavesTheOldFile();
    void placesThatCannotHoldAFileFail();
    void aReadOnlyDirectoryFails();

    void aRecordingHasWhatWasAddedBeforeAndAfterItsStart();
    void recordsCanBeReadWhileTheyAreRecorded();
    void aRecordingInMemoryAndOnDiskAreTheSameBytes();
    void deletingTheDocumentEndsTheRecording();
    void aCrashLeavesAllThatWasAdded_data();
    void aCrashLeavesAllThatWasAdded();
    void recordingNeedsNoMemoryForItsRecords();
    void replayingALargeFileNeedsNoMemoryForIt();
    void aDeviceMayComeLate();
    void aFullDiskWhileRecordingLosesNothing_data();
    void aFullDiskWhileRecordingLosesNothing();
    void aRecordingThatCannotBeginLeavesTheDocument();
    void theFileThatIsRecordedCannotBeSavedOver();
    void loadEndsTheRecording();
    void aNewRecordingEndsTheOneBefore();
    void finishingWithoutARecordingFails();

private:
    QString path(const char *name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QTemporaryDir m_dir;
};

void TestAMdrDocumentSaving::savingTwiceGivesTheSameBytes()
{
    AMdrDocument document;
    fillWithFive(&document);
    QVERIFY(document.save(path("a.mdr")));
    QVERIFY(document.save(path("b.mdr")));
    QCOMPARE(readFile(path("a.mdr")), readFile(path("b.mdr")));
    QVERIFY(!readFile(path("a.mdr")).isEmpty());
}

void TestAMdrDocumentSaving::savingLeavesNoOtherFile()
{
    const QTemporaryDir dir;
    AMdrDocument document;
    fillWithFive(&document);
    for (int i = 0; i < 3; ++i)
        QVERIFY(document.save(dir.filePath(QStringLiteral("a.mdr"))));
    QCOMPARE(filesIn(dir), QStringList{QStringLiteral("a.mdr")});
}

void TestAMdrDocumentSaving::aFullDiskLeavesTheOldFile_data()
{
    QTest::addColumn<int>("limit"); // bytes, negative: below the size of the file
    for (const int limit : {0, 1, 100, 131072, 200000, -100, -1})
        QTest::addRow("%d", limit) << limit;
}

void TestAMdrDocumentSaving::aFullDiskLeavesTheOldFile()
{
    QFETCH(int, limit);
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("a.mdr"));
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0, 10000)); // several blocks
    fillWithFive(&document);
    QVERIFY(document.save(path("whole.mdr")));
    const QByteArray content = readFile(path("whole.mdr"));
    const auto save = [&](rlim_t bytes) {
        return inChild([&] {
                   if (!limitFileSize(bytes))
                       return 98;
                   QString errorText;
                   const bool ok = document.save(name, &errorText);
                   return ok == errorText.isEmpty() ? (ok ? 1 : 0) : 97;
               })
            .status;
    };
    const auto bytes = static_cast<rlim_t>(limit < 0 ? content.size() + limit : limit);

    QCOMPARE(save(bytes), 0);
    QVERIFY(filesIn(dir).isEmpty()); // no file appears where there was none
    QVERIFY(writeFile(name, "the old one"));
    QCOMPARE(save(bytes), 0);
    QCOMPARE(readFile(name), QByteArray("the old one"));
    QCOMPARE(filesIn(dir), QStringList{QStringLiteral("a.mdr")});
    QCOMPARE(save(static_cast<rlim_t>(content.size())), 1);
    QCOMPARE(readFile(name), content);
}

void TestAMdrDocumentSaving::aCrashWhileSavingLeavesTheOldFile()
{
    AMdrDocument document;
    document.addSweep(markedSweep(1, 0, 10000));
    QVERIFY(writeFile(path("old.mdr"), "the old one"));
    const ChildResult result = inChild([&] {
        std::signal(SIGXFSZ, SIG_DFL); // the child is killed inside of the write
        const struct rlimit size = {5000, 5000};
        setrlimit(RLIMIT_FSIZE, &size);
        return document.save(path("old.mdr")) ? 1 : 0;
    });
    QCOMPARE(result.status, -1);
    QCOMPARE(readFile(path("old.mdr")), QByteArray("the old one"));
}

void TestAMdrDocumentSaving::placesThatCannotHoldAFileFail()
{
    const QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("sub")));
    const QString pipe = dir.filePath(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    AMdrDocument document;
    fillWithFive(&document);
    const QStringList names = {QString(), dir.filePath(QStringLiteral("sub")),
                               dir.filePath(QStringLiteral("missing/a.mdr")), pipe,
                               dir.filePath(QString(300, QLatin1Char('n')))};
    for (const QString &name : names) {
        QString saveError;
        QString recordError;
        QVERIFY2(!document.save(name, &saveError), qPrintable(name));
        QVERIFY(!saveError.isEmpty());
        QVERIFY2(!document.startRecording(name, &recordError), qPrintable(name));
        QVERIFY(!recordError.isEmpty());
    }
    QCOMPARE(filesIn(dir), QStringList({QStringLiteral("pipe"), QStringLiteral("sub")}));
}

void TestAMdrDocumentSaving::aReadOnlyDirectoryFails()
{
    const QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("a.mdr"));
    QVERIFY(writeFile(name, "the old one"));
    QCOMPARE(chmod(qPrintable(dir.path()), 0555), 0);
    AMdrDocument document;
    fillWithFive(&document);
    const ChildResult result =
        inUnprivilegedChild([&] { return document.save(name) || document.startRecording(name) ? 1 : 0; });
    QCOMPARE(chmod(qPrintable(dir.path()), 0755), 0);
    QCOMPARE(result.status, 0);
    QCOMPARE(readFile(name), QByteArray("the old one"));
}

// --- recording ---

void TestAMdrDocumentSaving::aRecordingHasWhatWasAddedBeforeAndAfterItsStart()
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

void TestAMdrDocumentSaving::recordsCanBeReadWhileTheyAreRecorded()
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

void TestAMdrDocumentSaving::aRecordingInMemoryAndOnDiskAreTheSameBytes()
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

void TestAMdrDocumentSaving::deletingTheDocumentEndsTheRecording()
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

void TestAMdrDocumentSaving::aCrashLeavesAllThatWasAdded_data()
{
    QTest::addColumn<int>("sweeps");
    for (const int sweeps : {0, 1, 100})
        QTest::addRow("%d", sweeps) << sweeps;
}

void TestAMdrDocumentSaving::aCrashLeavesAllThatWasAdded()
{
    QFETCH(int, sweeps);
    const QString name = path("crash.mdr");
    const ChildResult result = inChild([&] {
        AMdrDocument document;
        document.setDevice(OtherDevice());
        if (!document.startRecording(name))
            return 1;
        for (int i = 0; i < sweeps; ++i)
            document.addSweep(markedSweep(i, i, 100));
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
        QVERIFY(same(sweep, markedSweep(i, i, 100)));
    }
    QVERIFY(document.save(name));
    QVERIFY(document.load(name));
    QCOMPARE(document.sweepCount(), sweeps);
}

// 400 sweeps of 10000 points: 170 MB in the file, and twice that in memory.
void TestAMdrDocumentSaving::recordingNeedsNoMemoryForItsRecords()
{
    const QString name = path("large.mdr");
    const auto record = [&name](int sweeps) {
        return inChild([&] {
            AMdrDocument document;
            if (!document.startRecording(name))
                return 1;
            for (int i = 0; i < sweeps; ++i)
                document.addSweep(markedSweep(i, i * 100, 10000));
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
void TestAMdrDocumentSaving::replayingALargeFileNeedsNoMemoryForIt()
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

void TestAMdrDocumentSaving::aDeviceMayComeLate()
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

void TestAMdrDocumentSaving::aFullDiskWhileRecordingLosesNothing_data()
{
    QTest::addColumn<int>("room"); // bytes beyond the first sweep
    for (const int room : {0, 1, 100, 139, 140, 400})
        QTest::addRow("%d", room) << room;
}

void TestAMdrDocumentSaving::aFullDiskWhileRecordingLosesNothing()
{
    QFETCH(int, room);
    const QString name = path("full.mdr");
    const QString copy = path("copy.mdr");
    const int status = inChild([&] {
                           AMdrDocument document;
                           if (!document.startRecording(name))
                               return 1;
                           document.addSweep(markedSweep(1));
                           if (!limitFileSize(static_cast<rlim_t>(QFileInfo(name).size() + room)))
                               return 2;
                           document.addSweep(markedSweep(2));
                           document.addGeoData(markedPosition(10));
                           document.addSweep(markedSweep(3, 0, 500));
                           if (document.recordingError().isEmpty() || !document.isRecording())
                               return 3;
                           limitFileSize(RLIM_INFINITY); // there is room again, but nothing may follow a gap
                           document.addSweep(markedSweep(4));
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
    QVERIFY(QStringLiteral("s1 s2 p10 s3").startsWith(recordsText(loaded)));
    QVERIFY(recordsText(loaded).startsWith(QStringLiteral("s1")));
    QVERIFY(loaded.load(copy));
    QCOMPARE(recordsText(loaded), QStringLiteral("s1 s2 p10 s3 s4"));
}

void TestAMdrDocumentSaving::aRecordingThatCannotBeginLeavesTheDocument()
{
    AMdrDocument document;
    fillWithFive(&document);
    QVERIFY(!document.startRecording(path("missing/r.mdr")));
    QVERIFY(!document.isRecording());
    QCOMPARE(recordsText(document), QStringLiteral("s1 p10 s2 s3 p20"));
}

void TestAMdrDocumentSaving::theFileThatIsRecordedCannotBeSavedOver()
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

void TestAMdrDocumentSaving::loadEndsTheRecording()
{
    AMdrDocument document;
    QVERIFY(document.startRecording(path("r.mdr")));
    document.addSweep(markedSweep(1));
    QVERIFY(document.load(path("r.mdr")));
    QVERIFY(!document.isRecording());
    QCOMPARE(recordsText(document), QStringLiteral("s1"));
}

void TestAMdrDocumentSaving::aNewRecordingEndsTheOneBefore()
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

void TestAMdrDocumentSaving::finishingWithoutARecordingFails()
{
    AMdrDocument document;
    QString errorText;
    QVERIFY(!document.finishRecording(&errorText));
    QVERIFY(!errorText.isEmpty());
}

QTEST_GUILESS_MAIN(TestAMdrDocumentSaving)
#include "tst_amdrdocument_saving.moc"
