#include "calibrationregistry.h"

#include <QtTest/QtTest>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <random>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace registrytest;

namespace {

// As long as it lives, no file can be renamed back from a name that ends in ".old": other renames work.
class BlockedRestoring
{
public:
    BlockedRestoring() { s_isActive = true; }
    ~BlockedRestoring() { s_isActive = false; }
    static bool concerns(const char *from) { return s_isActive && QByteArray(from).endsWith(".old"); }

private:
    static inline bool s_isActive = false;
};

} // namespace

// In place of the one of the C library, for the libraries too.
extern "C" Q_DECL_EXPORT int rename(const char *from, const char *to) noexcept
{
    if (BlockedRestoring::concerns(from)) {
        errno = ENOSPC;
        return -1;
    }
    return ::renameat(AT_FDCWD, from, AT_FDCWD, to);
}

namespace {

// As long as it lives, no file of this process can grow beyond so many bytes, as on a disk that is full.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit = {bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before = {};
    void (*m_handler)(int);
};

QStringList filesBeside(const QString &file)
{
    return QFileInfo(file).dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QString hiddenName(const QString &file)
{
    return QFileInfo(file).path() + "/." + QFileInfo(file).fileName() + ".old";
}

void expectFailedSave(const QString &file)
{
    const QByteArray message = "save failed: " + file.toLatin1();
    QTest::ignoreMessage(QtDebugMsg, message.constData());
}

ACalibrationData wide(const QString &label, int entries)
{
    ACalibrationData object(label, kCable);
    for (int i = 0; i < entries; ++i)
        object.addLevel(hertz(i), i / 8.0);
    return object;
}

// Renames the object of a file to and fro, until it is killed.
pid_t startRenaming(const QString &file, const Objects &objects)
{
    ADataManager *manager = nullptr;
    ACalibrationData object = objects.last();
    return startWriter(
        [&] {
            manager = new ADataManager;
            return manager->addCalibrationFile(file, kCable).contains(object.label());
        },
        [&] {
            const QString label = object.label();
            object.setLabel(label == QLatin1String("a") ? QStringLiteral("b") : QStringLiteral("a"));
            manager->updateCalibrationData(object, label);
            return true;
        });
}

} // namespace

// What is left of calibration files when they can't be written, and when the program is killed at it.
class TestADataManagerCalibrationFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRenameThatCannotBeWrittenKeepsTheFile_data();
    void aRenameThatCannotBeWrittenKeepsTheFile();
    void aRenameThroughALinkThatCannotBeWrittenKeepsTheFile_data();
    void aRenameThroughALinkThatCannotBeWrittenKeepsTheFile();
    void aRenameLeavesNothingBehind_data();
    void aRenameLeavesNothingBehind();
    void aFileThatCannotBePutBackComesWithTheNextLoad();
    void whatSomebodyElseWroteMeanwhileStays_data();
    void whatSomebodyElseWroteMeanwhileStays();
    void aLoadWithinARenameFindsTheFileMissing_data();
    void aLoadWithinARenameFindsTheFileMissing();
    void aFileThatCannotStandAsideIsReplaced();
    void aRemovalThatCannotBeWrittenHoldsTheNewState();

    void aKilledRenameLosesNoObject_data();
    void aKilledRenameLosesNoObject();
    void aFileThatAKilledRenameTookAwayComesBack_data();
    void aFileThatAKilledRenameTookAwayComesBack();
    void remainsOfAKilledRenameChangeNoFile();
    void otherHiddenFilesStay();
    void hiddenFilesOutsideOfTheUsersLocationStay_data();
    void hiddenFilesOutsideOfTheUsersLocationStay();
};

void TestADataManagerCalibrationFailures::aRenameThatCannotBeWrittenKeepsTheFile_data()
{
    QTest::addColumn<Objects>("objects");
    QTest::addColumn<qint64>("limit");
    for (const qint64 limit : {0, 300}) { // nothing, or all but the new object can be written
        QTest::addRow("only object, %d bytes", int(limit)) << Objects{wide("a", 3)} << limit;
        QTest::addRow("first of three, %d bytes", int(limit))
            << Objects{wide("a", 3), flat("b", kCable, 1), flat("c", kCable, 2)} << limit;
    }
}

void TestADataManagerCalibrationFailures::aRenameThatCannotBeWrittenKeepsTheFile()
{
    QFETCH(Objects, objects);
    QFETCH(qint64, limit);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), objects, kCable);
    const QByteArray before = readFile(file);
    const ACalibrationData renamed = wide("new", 100);
    expectFailedSave(file);
    {
        const FileSizeLimit full(static_cast<rlim_t>(limit));
        registry->updateCalibrationData(renamed, "a");
    }
    QCOMPARE(readFile(file), before);
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    // Memory holds the new state, and goes on doing so: nothing comes back through the watch.
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    Objects expected = objects.mid(1);
    expected << renamed;
    QCOMPARE(registry->getCalibrationsForType(kCable), expected);
    QVERIFY(!registry.names(kAllTypes).contains("a"));
    QVERIFY(isWatched(file));
    // The next edit writes all of it.
    registry->updateCalibrationData(renamed, QString());
    Objects written;
    QVERIFY(ACalibrationData::readAll(file, written, kAnyType));
    QCOMPARE(written, expected);
}

void TestADataManagerCalibrationFailures::aRenameThroughALinkThatCannotBeWrittenKeepsTheFile_data()
{
    QTest::addColumn<Objects>("objects");
    QTest::newRow("only object") << Objects{flat("a", kCable, 1)};
    QTest::newRow("two objects") << Objects{flat("a", kCable, 1), flat("b", kCable, 2)};
}

void TestADataManagerCalibrationFailures::aRenameThroughALinkThatCannotBeWrittenKeepsTheFile()
{
    QFETCH(Objects, objects);
    CalibrationRegistry registry;
    const QString target = registry.save("elsewhere/target.xml", objects);
    const QString file = registry.user(kCable, "a.xml");
    QVERIFY(QDir().mkpath(QFileInfo(file).path()) && QFile::link("../../../elsewhere/target.xml", file));
    QCOMPARE(registry->addCalibrationFile(file, kCable).size(), objects.size());
    const QByteArray before = readFile(target);
    expectFailedSave(file);
    {
        const FileSizeLimit full(300);
        registry->updateCalibrationData(wide("new", 100), "a");
    }
    QVERIFY(QFileInfo(file).isSymLink());
    QCOMPARE(readFile(file), before);
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
    QCOMPARE(filesBeside(target), QStringList{"target.xml"});
}

void TestADataManagerCalibrationFailures::aRenameLeavesNothingBehind_data()
{
    aRenameThroughALinkThatCannotBeWrittenKeepsTheFile_data();
}

void TestADataManagerCalibrationFailures::aRenameLeavesNothingBehind()
{
    QFETCH(Objects, objects);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), objects, kCable);
    QStringList disk;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this,
            [&] { disk << (QFile::exists(file) ? onDisk(file).join('/') : QString("gone")); });
    registry->updateCalibrationData(flat("new", kCable, 5), "a");
    QCOMPARE(disk, repeated(objects.size() == 1 ? "gone" : "b|2|2", 2)); // deleted or shortened, then written
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
    QCOMPARE(onDisk(file).last(), QString("new|2|5"));
    registry->removeCalibrationData("b", kCable, true);
    registry->removeCalibrationData("new", kCable, true);
    QCOMPARE(filesBeside(file), QStringList());
}

void TestADataManagerCalibrationFailures::aFileThatCannotBePutBackComesWithTheNextLoad()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    const QByteArray before = readFile(file);
    expectFailedSave(file);
    {
        const FileSizeLimit full(0);
        const BlockedRestoring blocked;
        registry->updateCalibrationData(flat("new", kCable, 2), "a");
    }
    QVERIFY(!QFile::exists(file));
    QCOMPARE(readFile(hiddenName(file)), before);

    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList{"a"});
    QCOMPARE(readFile(file), before);
    QCOMPARE(filesBeside(file), QStringList{QFileInfo(file).fileName()});
}

void TestADataManagerCalibrationFailures::whatSomebodyElseWroteMeanwhileStays_data()
{
    aRenameThroughALinkThatCannotBeWrittenKeepsTheFile_data();
}

void TestADataManagerCalibrationFailures::whatSomebodyElseWroteMeanwhileStays()
{
    QFETCH(Objects, objects);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), objects, kCable);
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this,
            [&] { registry.save(file, {flat("other", kCable, 9)}); });
    expectFailedSave(file);
    {
        const FileSizeLimit full(1000); // enough for the other one
        registry->updateCalibrationData(wide("new", 100), "a");
    }
    QCOMPARE(onDisk(file), QStringList{"other|2|9"});
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
}

void TestADataManagerCalibrationFailures::aLoadWithinARenameFindsTheFileMissing_data()
{
    QTest::addColumn<bool>("isPath");
    QTest::addColumn<bool>("isFull");
    QTest::newRow("file") << false << false;
    QTest::newRow("directory") << true << false;
    QTest::newRow("file, full disk") << false << true;
    QTest::newRow("directory, full disk") << true << true;
}

void TestADataManagerCalibrationFailures::aLoadWithinARenameFindsTheFileMissing()
{
    QFETCH(bool, isPath);
    QFETCH(bool, isFull);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("old", kCable, 1)}, kCable);
    const QByteArray before = readFile(file);
    QStringList labels;
    bool isLoading = false;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] {
        if (isLoading)
            return;
        isLoading = true;
        labels << (isPath ? registry->addCalibrationPath(registry.user(kCable, QString()), kAllTypes)
                          : registry->addCalibrationFile(file, kCable));
        isLoading = false;
    });
    if (isFull) {
        expectFailedSave(file);
        const FileSizeLimit full(0);
        registry->updateCalibrationData(flat("new", kCable, 2), "old");
        QCOMPARE(readFile(file), before);
    } else {
        registry->updateCalibrationData(flat("new", kCable, 2), "old");
        QCOMPARE(onDisk(file), QStringList{"new|2|2"});
    }
    QCOMPARE(labels, QStringList());
    const QString error = "error: Could not read calibration data from file '" + file + '\'';
    QCOMPARE(registry.takeLog(),
             isPath ? repeated(signalOf(kCable), 2) : (QStringList{signalOf(kCable), error, signalOf(kCable), error}));
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
    QCOMPARE(registry.held(kAllTypes), QStringList{"new|2|2"});
    QCOMPARE(registry.names(kAllTypes), QStringList{"new"});
}

// A name without room for more. The write replaces the file in one step then.
void TestADataManagerCalibrationFailures::aFileThatCannotStandAsideIsReplaced()
{
    CalibrationRegistry registry;
    // QSaveFile needs seven characters for a name of its own; what is added to a hidden name is five.
    const QString longName = QString(244, QLatin1Char('n')) + ".xml";
    const QString file = registry.load(registry.user(kCable, longName), {flat("a", kCable, 1)}, kCable);
    QVERIFY(QDir().mkdir(hiddenName(file))); // in the way
    registry->updateCalibrationData(flat("b", kCable, 2), "a");
    QCOMPARE(onDisk(file), QStringList{"b|2|2"});
    const QByteArray before = readFile(file);
    expectFailedSave(file);
    {
        const FileSizeLimit full(0);
        registry->updateCalibrationData(flat("c", kCable, 3), "b");
    }
    QCOMPARE(readFile(file), before);
    QCOMPARE(registry.names(kAllTypes), QStringList{"c"});
}

void TestADataManagerCalibrationFailures::aRemovalThatCannotBeWrittenHoldsTheNewState()
{
    CalibrationRegistry registry;
    const QString file =
        registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    const QByteArray before = readFile(file);
    {
        const FileSizeLimit full(0);
        registry->removeCalibrationData("a", kCable, true);
    }
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)}); // and no word of it
    QCOMPARE(registry.held(kCable), QStringList{"b|2|2"});
    QCOMPARE(registry.names(kAllTypes), QStringList{"b"});
    QCOMPARE(readFile(file), before);
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
}

void TestADataManagerCalibrationFailures::aKilledRenameLosesNoObject_data()
{
    QTest::addColumn<Objects>("objects");
    QTest::newRow("only object") << Objects{wide("a", 300)};
    QTest::newRow("two objects") << Objects{wide("kept", 10), wide("a", 300)};
}

void TestADataManagerCalibrationFailures::aKilledRenameLosesNoObject()
{
    QFETCH(Objects, objects);
    constexpr int kKills = 40;
    constexpr int kLongestMicroseconds = 20000;
    const int seed = int(std::random_device{}());
    std::mt19937 random{unsigned(seed)};
    int recovered = 0;
    int remains = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        CalibrationRegistry registry;
        const QString file = registry.save(registry.user(kCable, "a.caldata"), objects);
        const pid_t child = startRenaming(file, objects);
        QVERIFY(child > 0);
        ::usleep(random() % kLongestMicroseconds);
        QCOMPARE(::kill(child, SIGKILL), 0);
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

        const bool isThere = QFile::exists(file);
        const bool hasRemains = QFile::exists(hiddenName(file));
        QVERIFY(isThere || hasRemains);
        recovered += isThere ? 0 : 1;
        remains += hasRemains ? 1 : 0;
        // The next start of the program finds the file whole, old or new. That of several objects may lack the one that
        // was being renamed, and then it is whole in what stands beside it.
        registry->addCalibrationPath(QFileInfo(file).path(), kCable);
        Objects held = registry->getCalibrationsForType(kCable);
        if (objects.size() == 2 && held == objects.mid(0, 1)) {
            QVERIFY(hasRemains);
            held.clear();
            QVERIFY(ACalibrationData::readAll(hiddenName(file), held, kAnyType));
        }
        QCOMPARE(held.size(), objects.size());
        QCOMPARE(held.first().level(), objects.first().level());
        QCOMPARE(held.last().level(), objects.last().level());
        QVERIFY(held.last().label() == "a" || held.last().label() == "b");
    }
    qInfo("%d kills, seed %d: %d files came back, %d with remains", kKills, seed, recovered, remains);
}

void TestADataManagerCalibrationFailures::aFileThatAKilledRenameTookAwayComesBack_data()
{
    QTest::addColumn<QString>("directory"); // of the user's; none for the file alone
    QTest::addColumn<ACalibrationData::CalibrationType>("objectType");
    QTest::addColumn<ACalibrationData::CalibrationType>("type");
    QTest::newRow("file") << QString() << kCable << kCable;
    QTest::newRow("directory") << "calibration/cable" << kCable << kCable;
    QTest::newRow("directory, by another way") << "calibration/../calibration/cable/sub" << kCable << kCable;
    QTest::newRow("directory, of another type") << "calibration/cable" << kCable << kAntenna;
    QTest::newRow("directory, of objects of no particular type") << "calibration/other" << kAnyType << kAnyType;
    QTest::newRow("all directories") << "calibration" << kPreamplifier << kAllTypes;
    QTest::newRow("file, for all types") << QString() << kAttenuator << kAllTypes;
}

void TestADataManagerCalibrationFailures::aFileThatAKilledRenameTookAwayComesBack()
{
    QFETCH(QString, directory);
    QFETCH(ACalibrationData::CalibrationType, objectType);
    QFETCH(ACalibrationData::CalibrationType, type);
    CalibrationRegistry registry;
    const QString file = registry.save(registry.user(objectType, "sub/a.xml"), {flat("a", objectType, 1)});
    QVERIFY(QFile::rename(file, hiddenName(file)));
    const QStringList labels = directory.isEmpty()
                                   ? registry->addCalibrationFile(file, type)
                                   : registry->addCalibrationPath(registry.path("user/" + directory), type);
    QCOMPARE(labels, QStringList{"a"});
    QCOMPARE(registry.takeLog(), QStringList{signalOf(type)});
    QCOMPARE(filesBeside(file), QStringList{"a.xml"});
}

void TestADataManagerCalibrationFailures::remainsOfAKilledRenameChangeNoFile()
{
    CalibrationRegistry registry;
    const QString file = registry.save(registry.user(kCable, "a.xml"), {flat("b", kCable, 2)});
    QVERIFY(QFile::copy(registry.save("old.xml", {flat("a", kCable, 1)}), hiddenName(file)));
    QCOMPARE(registry->addCalibrationPath(QFileInfo(file).path(), kCable), QStringList{"b"});
    QCOMPARE(onDisk(file), QStringList{"b|2|2"});
    QCOMPARE(onDisk(hiddenName(file)), QStringList{"a|2|1"});
    // A deletion means them, too: nothing comes back of it.
    registry->removeCalibrationData("b", kCable, true);
    QCOMPARE(filesBeside(file), QStringList());
}

void TestADataManagerCalibrationFailures::otherHiddenFilesStay()
{
    CalibrationRegistry registry;
    const QString file = registry.save(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)});
    const QStringList names{".a.txt.old", ".old", ".b.xml.bak", ".b.xml"};
    for (const QString &name : names)
        writeText(QFileInfo(file).path() + '/' + name, "text");
    QCOMPARE(registry->addCalibrationPath(QFileInfo(file).path(), kCable), QStringList{"a"});
    registry->updateCalibrationData(flat("b", kCable, 1), "a");
    QStringList expected = names + QStringList{"a.xml"};
    QStringList found = filesBeside(file);
    expected.sort();
    found.sort();
    QCOMPARE(found, expected);
}

void TestADataManagerCalibrationFailures::hiddenFilesOutsideOfTheUsersLocationStay_data()
{
    QTest::addColumn<QString>("directory");
    QTest::newRow("installed") << "installed/calibration/cable";
    QTest::newRow("elsewhere") << "elsewhere";
    QTest::newRow("above the user's directories") << "user/calibration";
    QTest::newRow("a directory that begins like the user's") << "user/calibration/cables";
}

void TestADataManagerCalibrationFailures::hiddenFilesOutsideOfTheUsersLocationStay()
{
    QFETCH(QString, directory);
    CalibrationRegistry registry;
    const QString file = registry.save(directory + "/a.xml", {flat("a", kCable, 1)});
    QVERIFY(QFile::rename(file, hiddenName(file)));
    QCOMPARE(registry->addCalibrationPath(registry.path(directory), kCable), QStringList());
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList());
    QCOMPARE(registry.takeLog(), QStringList{"error: Could not read calibration data from file '" + file + '\''});
    QCOMPARE(filesBeside(file), QStringList{QFileInfo(hiddenName(file)).fileName()});
}

QTEST_GUILESS_MAIN(TestADataManagerCalibrationFailures)
#include "tst_adatamanager_calibration_failures.moc"
