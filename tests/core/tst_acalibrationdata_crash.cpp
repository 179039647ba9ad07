#include "calibrationobjects.h"

#include "core/acalibrationdata.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <csignal>
#include <random>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

Objects list(const QString &label, int objects, int entries)
{
    Objects result;
    for (int i = 0; i < objects; ++i) {
        result << object(label + QString::number(i), ACalibrationData::Cable);
        for (int k = 0; k < entries; ++k)
            result.last().addLevel(hertz(k), k / 8.0);
    }
    return result;
}

Objects readBack(const QString &name)
{
    Objects objects;
    return ACalibrationData::readAll(name, objects, ACalibrationData::AnyType) ? objects : Objects();
}

// A process that writes one list after the other until it is killed.
pid_t startRewriting(const QString &name, const Objects &first, const Objects &second)
{
    bool isFirst = false;
    return startWriter([] { return true; },
                       [&] {
                           isFirst = !isFirst;
                           return ACalibrationData::saveAll(name, isFirst ? first : second);
                       });
}

} // namespace

// A calibration file is whole, old or new, whatever happens to the process that writes it or to the disk.
class TestACalibrationDataCrash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledWriterLeavesAWholeFile();
    void aFileSizeLimitThatEndsTheWriterLeavesTheOldFile_data() { addForms(); }
    void aFileSizeLimitThatEndsTheWriterLeavesTheOldFile();
    void aFullDiskLeavesTheOldFile_data() { addForms(); }
    void aFullDiskLeavesTheOldFile();
};

void TestACalibrationDataCrash::aKilledWriterLeavesAWholeFile()
{
    constexpr int kKills = 100;
    constexpr int kLongestMicroseconds = 40000;
    const Objects first = list("first", 3, 10);
    const Objects second = list("second", 20, 300);
    std::mt19937 random(std::random_device{}());
    QTemporaryDir dir;
    int firsts = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        const QString name = dir.filePath(QStringLiteral("a.") + kForms[kill % 3]);
        if (!QFile::exists(name))
            QVERIFY(ACalibrationData::saveAll(name, first));
        const pid_t child = startRewriting(name, first, second);
        QVERIFY(child > 0);
        ::usleep(random() % kLongestMicroseconds);
        QCOMPARE(::kill(child, SIGKILL), 0);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL); // and no failed save
        const Objects found = readBack(name);
        QVERIFY2(found == first || found == second, qPrintable(name));
        firsts += found == first ? 1 : 0;
    }
    QVERIFY(firsts > 0 && firsts < kKills); // the kills came at different moments
    // What a killed writer leaves behind is not taken for a calibration file.
    const QStringList files = QDir(dir.path()).entryList({"*.xml", "*.caldata", "*.offsets"}, QDir::Files);
    QCOMPARE(files, (QStringList{"a.caldata", "a.offsets", "a.xml"}));
}

// The signal that comes with the limit is not ignored here, so the process dies in the middle of a write.
void TestACalibrationDataCrash::aFileSizeLimitThatEndsTheWriterLeavesTheOldFile()
{
    QFETCH(QString, form);
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("a.") + form);
    const Objects old = list("old", 2, 5);
    const Objects large = list("large", 20, 500);
    QVERIFY(ACalibrationData::saveAll(name, old));
    const QByteArray before = readFile(name);
    for (const rlim_t limit : {rlim_t(0), rlim_t(1000), rlim_t(65536), rlim_t(100000)}) {
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_DFL);
            const rlimit fileSize = {limit, limit};
            const rlimit noCore = {0, 0};
            ::setrlimit(RLIMIT_CORE, &noCore);
            ::setrlimit(RLIMIT_FSIZE, &fileSize);
            ACalibrationData::saveAll(name, large);
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ);
        QCOMPARE(readFile(name), before);
    }
    QCOMPARE(readBack(name), old);
}

void TestACalibrationDataCrash::aFullDiskLeavesTheOldFile()
{
    QFETCH(QString, form);
    QTemporaryDir dir;
    const QString disk = dir.filePath("disk");
    QVERIFY(QDir().mkdir(disk));
    if (QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=128k", "tmpfs", disk}) != 0)
        QSKIP("no file system can be mounted here");
    const QString name = disk + QStringLiteral("/a.") + form;
    const Objects old = list("old", 2, 5);
    const Objects large = list("large", 20, 500);
    const bool isSaved = ACalibrationData::saveAll(name, old);
    const QByteArray before = readFile(name);
    bool isRefused = true;
    bool isWhole = true;
    // Room for a part of the file, then for less and less of it, at last for none.
    for (int size : {0, 30000, 30000, 20000, 10000, 100000}) {
        QFile filler(disk + QStringLiteral("/filler"));
        filler.open(QIODevice::WriteOnly | QIODevice::Append);
        filler.write(QByteArray(size, 'x'));
        filler.close();
        isRefused = isRefused && !ACalibrationData::saveAll(name, large);
        isWhole = isWhole && readFile(name) == before;
    }
    const int files = QDir(disk).entryList(QDir::Files | QDir::Hidden).size();
    QCOMPARE(QProcess::execute("umount", {disk}), 0);
    QVERIFY(isSaved && !before.isEmpty());
    QVERIFY(isRefused);
    QVERIFY(isWhole);
    QCOMPARE(files, 2); // the table and the filler, nothing half written
}

QTEST_GUILESS_MAIN(TestACalibrationDataCrash)
#include "tst_acalibrationdata_crash.moc"
