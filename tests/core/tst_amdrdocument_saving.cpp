#include "core/profilefiles.h"
#include "core/recordings.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

// Saving in one step: what stands in the file whatever happens.

namespace {

using profilefiles::ChildResult;
using profilefiles::inChild;
using profilefiles::inUnprivilegedChild;
using profilefiles::limitFileSize;

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

QTEST_GUILESS_MAIN(TestAMdrDocumentSaving)
#include "tst_amdrdocument_saving.moc"
