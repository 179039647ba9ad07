#include "datamanager/adatamanager.h"

#include "registryfixture.h"

#include <QtCore/QTranslator>
#include <QtTest/QtTest>

#include <algorithm>

using namespace registrytest;

namespace {

constexpr unsigned int kInstalled = AProfile::InstalledProfile;
constexpr unsigned int kUser = AProfile::UserProfile;
constexpr unsigned int kDerived = AProfile::DerivedProfile;
constexpr unsigned int kModified = AProfile::ModifiedProfile;

QStringList ids(const ADataManager *manager)
{
    QStringList list;
    for (const AProfile *profile : manager->getProfiles())
        list << (profile ? profile->id() : QStringLiteral("null"));
    return list;
}

// A scan does not delete what it skips, and nobody else can reach it. tests/leaks.supp knows such a loss by this
// function in the call stack; all other scans stay under the eyes of the leak checker.
__attribute__((noinline)) int scanLosingInvalidProfiles(ADataManager *manager, const QString &path, AProfile::Flag flag)
{
    const QString keptToTheEnd = path; // its destructor keeps the call below from being a jump
    return manager->addProfilePath(keptToTheEnd, flag);
}

class ContextTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        if (qstrcmp(context, "ADataManager") != 0)
            return QString();
        return QStringLiteral("[%1] ").arg(QString::fromUtf8(sourceText).remove(QLatin1Char('%'))) +
               QStringLiteral("%1");
    }
};

} // namespace

class TestADataManagerProfiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_currentPath = QDir::currentPath(); }
    void cleanup() { QDir::setCurrent(m_currentPath); }

    // adding one file
    void aFileIsTakenOver();
    void theSignalFindsTheNewState();
    void anUnreadableFileIsReported_data();
    void anUnreadableFileIsReported();
    void anErrorStandsInPlaceOfTheChange();
    void theErrorTextIsTranslatedInTheClassContext();
    void anInvalidFileIsPassedOverInSilence_data();
    void anInvalidFileIsPassedOverInSilence();
    void addingAFileTwiceReplacesTheProfile();
    void theOldProfileOutlivesTheSignalOfOneFile();
    void theNewFileIsWatchedAfterTheSignal();
    void theOldProfileIsDeletedBeforeTheNewFileIsWatched();
    void theOldSourceStaysWatched();
    void aRefusedFileIsNotWatched();
    void addingAWatchedFileAgainKeepsItWatched();

    // adding a path
    void aDirectoryIsTakenOverWithOneSignal();
    void aSingleFileIsAPathToo();
    void aPathWithoutProfilesGivesNothing_data();
    void aPathWithoutProfilesGivesNothing();
    void invalidEntriesOfAPathAreSkipped();
    void theSignalOfAPathFindsTheNewState();
    void theOldProfilesAreGoneBeforeTheSignalOfAPath();
    void theLastOfOneIdInAScanWins();
    void theFilesOfAPathAreWatchedBeforeTheSignal();
    void aScanEndsTheWatchOfTheReplacedSource();
    void aSecondScanLeavesTheFilesUnwatched();

    // flags
    void flagsOfAReplacement_data();
    void flagsOfAReplacement();
    void theInstalledBitIsHandedOnFromUserToUser();
    void theInstalledBitIsHandedOnWithinAScan();
    void aFirstLoadHasTheGivenFlagAlone_data();
    void aFirstLoadHasTheGivenFlagAlone();

    // looking up
    void profilesComeByAscendingId();
    void idsAreLookedUpExactly();
    void labelsAreFound_data();
    void labelsAreFound();
    void theLowestIdWinsAmongEqualLabels();
    void theLabelWithoutALanguageCounts();
    void nullEntriesAreNoHit();

    // removing
    void removingTakesTheProfileOutAlive();
    void removingNullDoesNothing();
    void removingAnUnknownIdStillSignalsAndEndsTheWatch();
    void aStaleProfileTakesOutTheCurrentOne();
    void removingAProfileWithoutSource();
    void clearingSchedulesEveryDeletion();
    void clearingAnEmptyStoreSignals();
    void clearingEndsTheWatches();

    // saving
    void aSaveGoesToTheRightFile_data();
    void aSaveGoesToTheRightFile();
    void thePrefixIsComparedAsText_data();
    void thePrefixIsComparedAsText();
    void aUsersCopyOfAnInstalledProfileIsSavedInPlace();
    void anUnchangedProfileIsNotSaved();
    void nullIsNotSaved();
    void savingByIdLooksUpTheStore();
    void savingClearsOneBitAlone_data();
    void savingClearsOneBitAlone();
    void savingChangesNeitherStoreNorSource();
    void theDirectoryIsMadeEvenIfTheSourceIsWritten();
    void aFailedSaveKeepsTheChanges_data();
    void aFailedSaveKeepsTheChanges();
    void relativeDirectoriesAreTakenFromTheWorkingDirectory_data();
    void relativeDirectoriesAreTakenFromTheWorkingDirectory();
    void aProfileOutsideTheStoreIsSaved();
    void theTargetOfASaveIsNotWatched();
    void savingASecondTimeNeedsAChange();

private:
    const QString m_id = QStringLiteral("id");
    const QStringList m_oneChange{QStringLiteral("profiles")};
    QString m_currentPath;
};

void TestADataManagerProfiles::aFileIsTakenOver()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("some.name"), m_id, QStringLiteral("Label"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(registry.takeLog(), m_oneChange);
    const AProfile *profile = registry->getProfileForId(m_id);
    QVERIFY(profile);
    QCOMPARE(profile->source(), fileName);
    QCOMPARE(profile->label(QString()), QStringLiteral("Label"));
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{registry->getProfileForId(m_id)});
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfiles::theSignalFindsTheNewState()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("New"));
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
        QCOMPARE(registry->getProfileForId(m_id)->flags(), kInstalled);
    });
    QVERIFY(registry->addProfileFile(fileName, AProfile::InstalledProfile));
    QCOMPARE(calls, 1);
}

void TestADataManagerProfiles::anUnreadableFileIsReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing.profile");
    QTest::newRow("directory") << QStringLiteral("directory");
    QTest::newRow("placeholders in the name") << QStringLiteral("100%1 %2 %L3.profile");
    QTest::newRow("not latin") << QString::fromUtf8("\xc3\xa4\xe2\x82\xac.profile");
    QTest::newRow("below a file") << QStringLiteral("file/a.profile");
}

void TestADataManagerProfiles::anUnreadableFileIsReported()
{
    QFETCH(QString, name);
    Registry registry;
    QVERIFY(QDir().mkdir(registry.path(QStringLiteral("directory"))));
    registry.write(QStringLiteral("file"), QStringLiteral("text"));
    const QString fileName = registry.path(name);
    QVERIFY(!registry->addProfileFile(fileName, AProfile::UserProfile));
    const QStringList log = registry.takeLog();
    QCOMPARE(log, QStringList{QStringLiteral("error: Could not create profile from file '") + fileName +
                              QStringLiteral("'")});
    QVERIFY(registry->getProfiles().isEmpty());
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerProfiles::anErrorStandsInPlaceOfTheChange()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    QVERIFY(profile);
    const QString fileName = profile->source();
    QVERIFY(QFile::remove(fileName));
    registry.takeLog();

    int errors = 0;
    connect(registry.manager.get(), &ADataManager::error, this, [&](const QString &) {
        ++errors;
        QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
        QCOMPARE(profile->label(QString()), QStringLiteral("Old"));
    });
    QVERIFY(!registry->addProfileFile(fileName, AProfile::InstalledProfile));
    QCOMPARE(errors, 1);
    QCOMPARE(registry.takeLog().size(), 1);
    QCOMPARE(registry->getProfileForId(m_id), profile);
    QCOMPARE(profile->flags(), kUser);
}

void TestADataManagerProfiles::theErrorTextIsTranslatedInTheClassContext()
{
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    Registry registry;
    QVERIFY(!registry->addProfileFile(QStringLiteral("/missing"), AProfile::UserProfile));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(registry.takeLog(),
             QStringList{QStringLiteral("error: [Could not create profile from file '1'] /missing")});
}

void TestADataManagerProfiles::anInvalidFileIsPassedOverInSilence_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("no XML") << QStringLiteral("id=a\n");
    QTest::newRow("cut short") << QStringLiteral("<profile id=\"a\"><label>");
    QTest::newRow("other root") << QStringLiteral("<data id=\"a\"/>");
    QTest::newRow("no id") << QStringLiteral("<profile><label>A</label><begin>1</begin><end>2</end></profile>");
    QTest::newRow("end below begin") << QStringLiteral("<profile id=\"a\"><begin>2</begin><end>1</end></profile>");
}

// The refused object is deleted; the leak checker looks after that.
void TestADataManagerProfiles::anInvalidFileIsPassedOverInSilence()
{
    QFETCH(QString, text);
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("Old"));
    QVERIFY(profile);
    registry.takeLog();
    QVERIFY(!registry->addProfileFile(registry.write(QStringLiteral("b.profile"), text), AProfile::UserProfile));
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QVERIFY(!isWatched(registry.path(QStringLiteral("b.profile"))));
}

void TestADataManagerProfiles::addingAFileTwiceReplacesTheProfile()
{
    Registry registry;
    QVERIFY(registry.add(m_id, QStringLiteral("Same")));
    QCOMPARE(registry.takeLog(), m_oneChange);
    // The contents are not compared: an equal profile is a replacement too.
    const QPointer<AProfile> first = registry->getProfileForId(m_id);
    const QString fileName = first->source();
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(!first);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|Same")});
}

void TestADataManagerProfiles::theOldProfileOutlivesTheSignalOfOneFile()
{
    Registry registry;
    const QPointer<AProfile> old = registry.add(m_id, QStringLiteral("Old"));
    QVERIFY(old);
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(old);
        QCOMPARE(old->label(QString()), QStringLiteral("Old"));
        QVERIFY(registry->getProfileForId(m_id) != old);
        QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    });
    QVERIFY(registry->addProfileFile(registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("New")),
                                     AProfile::UserProfile));
    QCOMPARE(calls, 1);
    QVERIFY(!old);
}

// What a slot removes before the watch is set, nobody hears of.
void TestADataManagerProfiles::theNewFileIsWatchedAfterTheSignal()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    connect(registry.manager.get(), &ADataManager::profilesChanged, this,
            [&fileName] { QVERIFY(!isWatched(fileName)); });
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfiles::theOldProfileIsDeletedBeforeTheNewFileIsWatched()
{
    Registry registry;
    const AProfile *old = registry.add(m_id, QStringLiteral("Old"));
    const QString fileName = registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("New"));
    QStringList order;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] { order << QStringLiteral("signal"); });
    connect(old, &QObject::destroyed, this, [&] {
        order << QStringLiteral("deleted");
        QVERIFY(!isWatched(fileName));
    });
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(order, (QStringList{QStringLiteral("signal"), QStringLiteral("deleted")}));
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfiles::theOldSourceStaysWatched()
{
    Registry registry;
    const QString first = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    const QString second = registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(first, AProfile::UserProfile));
    QVERIFY(registry->addProfileFile(second, AProfile::UserProfile));
    QVERIFY(isWatched(first));
    QVERIFY(isWatched(second));
    registry.takeLog();

    // Its events come, but no profile has this source any more.
    registry.shell(QStringLiteral("echo >> a; rm a"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|B")});
}

void TestADataManagerProfiles::aRefusedFileIsNotWatched()
{
    Registry registry;
    const QString fileName = registry.write(QStringLiteral("a"), QStringLiteral("no profile"));
    QVERIFY(!registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerProfiles::addingAWatchedFileAgainKeepsItWatched()
{
    Registry registry;
    QVERIFY(registry.add(m_id, QStringLiteral("A")));
    QVERIFY(registry.add(m_id, QStringLiteral("B")));
    QVERIFY(registry.add(m_id, QStringLiteral("C")));
    QCOMPARE(watchedInodes().size(), 1);
    QVERIFY(isWatched(registry.path(QStringLiteral("id.profile"))));
}

void TestADataManagerProfiles::aDirectoryIsTakenOverWithOneSignal()
{
    Registry registry;
    for (const QString &id : {QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b:x")})
        registry.writeProfile(QString(id).replace(QLatin1Char(':'), QLatin1Char('-')) + QStringLiteral(".profile"), id,
                              id.toUpper());
    registry.writeProfile(QStringLiteral("other.xml"), QStringLiteral("d"), QStringLiteral("D"));
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::InstalledProfile), 3);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(),
             (QStringList{QStringLiteral("a|A"), QStringLiteral("b:x|B:X"), QStringLiteral("c|C")}));
    for (const AProfile *profile : registry->getProfiles()) {
        QCOMPARE(profile->flags() & ~kDerived, kInstalled);
        QVERIFY(QDir::isAbsolutePath(profile->source()));
        QVERIFY(isWatched(profile->source()));
    }
}

void TestADataManagerProfiles::aSingleFileIsAPathToo()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.txt"), m_id, QStringLiteral("A"));
    QCOMPARE(registry->addProfilePath(fileName, AProfile::UserProfile), 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|A")});
    QCOMPARE(registry->getProfileForId(m_id)->source(), fileName);
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfiles::aPathWithoutProfilesGivesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("empty directory") << QStringLiteral("empty");
    QTest::newRow("invalid files only") << QStringLiteral("invalid");
    QTest::newRow("invalid file") << QStringLiteral("invalid/a.profile");
    QTest::newRow("missing file") << QStringLiteral("missing.profile");
}

void TestADataManagerProfiles::aPathWithoutProfilesGivesNothing()
{
    QFETCH(QString, name);
    Registry registry;
    QVERIFY(QDir().mkdir(registry.path(QStringLiteral("empty"))));
    QVERIFY(QDir().mkdir(registry.path(QStringLiteral("invalid"))));
    registry.write(QStringLiteral("invalid/a.profile"), QStringLiteral("no profile"));
    registry.write(QStringLiteral("invalid/b.profile"), QString());
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    registry.takeLog();
    QCOMPARE(scanLosingInvalidProfiles(registry.manager.get(), registry.path(name), AProfile::UserProfile), 0);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QCOMPARE(watchedInodes().size(), 1);
}

void TestADataManagerProfiles::invalidEntriesOfAPathAreSkipped()
{
    Registry registry;
    registry.write(QStringLiteral("a.profile"), QStringLiteral("no profile"));
    registry.writeProfile(QStringLiteral("b.profile"), QStringLiteral("b"), QStringLiteral("B"));
    registry.writeProfile(QStringLiteral("c.profile"), QString(), QStringLiteral("no id"));
    registry.writeProfile(QStringLiteral("d.profile"), QStringLiteral("d"), QStringLiteral("D"));
    QCOMPARE(scanLosingInvalidProfiles(registry.manager.get(), registry.path(QString()), AProfile::UserProfile), 2);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("b|B"), QStringLiteral("d|D")}));
    QVERIFY(!isWatched(registry.path(QStringLiteral("a.profile"))));
    QVERIFY(isWatched(registry.path(QStringLiteral("b.profile"))));
    QVERIFY(!isWatched(registry.path(QStringLiteral("c.profile"))));
    QVERIFY(isWatched(registry.path(QStringLiteral("d.profile"))));
}

void TestADataManagerProfiles::theSignalOfAPathFindsTheNewState()
{
    Registry registry;
    registry.writeProfile(QStringLiteral("a.profile"), QStringLiteral("a"), QStringLiteral("A"));
    registry.writeProfile(QStringLiteral("b.profile"), QStringLiteral("b"), QStringLiteral("B"));
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QCOMPARE(registry.contents(), (QStringList{QStringLiteral("a|A"), QStringLiteral("b|B")}));
    });
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 2);
    QCOMPARE(calls, 1);
}

void TestADataManagerProfiles::theOldProfilesAreGoneBeforeTheSignalOfAPath()
{
    Registry registry;
    const QPointer<AProfile> first = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    const QPointer<AProfile> second = registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QVERIFY(first && second);
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(!first);
        QVERIFY(!second);
        QCOMPARE(registry.contents(), (QStringList{QStringLiteral("a|A"), QStringLiteral("b|B")}));
    });
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 2);
    QCOMPARE(calls, 1);
}

void TestADataManagerProfiles::theLastOfOneIdInAScanWins()
{
    Registry registry;
    for (const QString &name : {QStringLiteral("c"), QStringLiteral("a"), QStringLiteral("b")})
        registry.writeProfile(name + QStringLiteral(".profile"), m_id, name);
    registry.writeProfile(QStringLiteral("bb.profile"), QStringLiteral("other"), QStringLiteral("bb"));
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 4);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("id|c"), QStringLiteral("other|bb")}));
    QVERIFY(!isWatched(registry.path(QStringLiteral("a.profile"))));
    QVERIFY(!isWatched(registry.path(QStringLiteral("b.profile"))));
    QVERIFY(isWatched(registry.path(QStringLiteral("bb.profile"))));
    QVERIFY(isWatched(registry.path(QStringLiteral("c.profile"))));
}

void TestADataManagerProfiles::theFilesOfAPathAreWatchedBeforeTheSignal()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("A"));
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(isWatched(fileName));
    });
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 1);
    QCOMPARE(calls, 1);
}

void TestADataManagerProfiles::aScanEndsTheWatchOfTheReplacedSource()
{
    Registry registry;
    const QString first = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    const QString second = registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(first, AProfile::UserProfile));
    QCOMPARE(registry->addProfilePath(second, AProfile::UserProfile), 1);
    QVERIFY(!isWatched(first));
    QVERIFY(isWatched(second));
}

// The new watch is set before the old source's is removed, and here they are one.
void TestADataManagerProfiles::aSecondScanLeavesTheFilesUnwatched()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("A"));
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 1);
    QVERIFY(isWatched(fileName));
    for (int scan = 0; scan < 3; ++scan) {
        const QPointer<AProfile> old = registry->getProfileForId(m_id);
        registry.takeLog();
        QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 1);
        QCOMPARE(registry.takeLog(), m_oneChange);
        QVERIFY(!old);
        QVERIFY(!isWatched(fileName));
    }
    // One file added by itself is watched again.
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfiles::flagsOfAReplacement_data()
{
    QTest::addColumn<unsigned int>("oldFlags");
    QTest::addColumn<unsigned int>("flag");
    QTest::addColumn<bool>("byPath");
    QTest::addColumn<QString>("id");
    QTest::addColumn<unsigned int>("expected");
    for (unsigned int oldFlags : {0U, 1U, 2U, 3U, kModified, kModified | 1U, kModified | 2U, kModified | 3U}) {
        for (unsigned int flag : {kInstalled, kUser}) {
            for (bool byPath : {false, true}) {
                for (bool derived : {false, true}) {
                    unsigned int expected = flag;
                    if ((oldFlags & 1U) && flag == 2)
                        expected |= 1U;
                    if (derived)
                        expected |= 4U;
                    QTest::addRow("0x%x, %u%s%s", oldFlags, flag, byPath ? ", path" : "", derived ? ", derived" : "")
                        << oldFlags << flag << byPath << (derived ? QStringLiteral("id:x") : m_id) << expected;
                }
            }
        }
    }
}

void TestADataManagerProfiles::flagsOfAReplacement()
{
    QFETCH(unsigned int, oldFlags);
    QFETCH(unsigned int, flag);
    QFETCH(bool, byPath);
    QFETCH(QString, id);
    QFETCH(unsigned int, expected);
    Registry registry;
    const QString first = registry.writeProfile(QStringLiteral("a"), id, QStringLiteral("A"));
    const QString second = registry.writeProfile(QStringLiteral("b"), id, QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(first, AProfile::UserProfile));
    AProfile *old = registry->getProfileForId(id);
    old->setFlags((old->flags() & kDerived) | oldFlags);

    unsigned int inSlot = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this,
            [&] { inSlot = registry->getProfileForId(id)->flags(); });
    if (byPath)
        QCOMPARE(registry->addProfilePath(second, AProfile::Flag(flag)), 1);
    else
        QVERIFY(registry->addProfileFile(second, AProfile::Flag(flag)));
    QCOMPARE(registry->getProfileForId(id)->label(QString()), QStringLiteral("B"));
    QCOMPARE(registry->getProfileForId(id)->flags(), expected);
    QCOMPARE(inSlot, expected);
}

void TestADataManagerProfiles::theInstalledBitIsHandedOnFromUserToUser()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("A"));
    const auto flags = [&] { return registry->getProfileForId(m_id)->flags(); };
    QVERIFY(registry->addProfileFile(fileName, AProfile::InstalledProfile));
    QCOMPARE(flags(), kInstalled);
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(flags(), kInstalled | kUser);
    QCOMPARE(registry->addProfilePath(fileName, AProfile::UserProfile), 1);
    QCOMPARE(flags(), kInstalled | kUser);
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(flags(), kInstalled | kUser);
    QCOMPARE(registry->addProfilePath(fileName, AProfile::InstalledProfile), 1);
    QCOMPARE(flags(), kInstalled);

    // A user profile hands nothing on to an installed one.
    registry->clearProfiles();
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(registry->addProfileFile(fileName, AProfile::InstalledProfile));
    QCOMPARE(flags(), kInstalled);
}

void TestADataManagerProfiles::theInstalledBitIsHandedOnWithinAScan()
{
    Registry registry;
    const QString old = registry.writeProfile(QStringLiteral("old"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(old, AProfile::InstalledProfile));
    registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("A"));
    registry.writeProfile(QStringLiteral("b.profile"), m_id, QStringLiteral("B"));
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 2);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|B")});
    QCOMPARE(registry->getProfileForId(m_id)->flags(), kInstalled | kUser);
}

void TestADataManagerProfiles::aFirstLoadHasTheGivenFlagAlone_data()
{
    QTest::addColumn<unsigned int>("flag");
    QTest::addColumn<bool>("byPath");
    QTest::newRow("installed file") << kInstalled << false;
    QTest::newRow("user file") << kUser << false;
    QTest::newRow("installed path") << kInstalled << true;
    QTest::newRow("user path") << kUser << true;
}

void TestADataManagerProfiles::aFirstLoadHasTheGivenFlagAlone()
{
    QFETCH(unsigned int, flag);
    QFETCH(bool, byPath);
    Registry registry;
    const QString plain = registry.writeProfile(QStringLiteral("a"), QStringLiteral("a"), QStringLiteral("A"));
    const QString derived = registry.writeProfile(QStringLiteral("b"), QStringLiteral("a:b"), QStringLiteral("B"));
    for (const QString &fileName : {plain, derived}) {
        if (byPath)
            QCOMPARE(registry->addProfilePath(fileName, AProfile::Flag(flag)), 1);
        else
            QVERIFY(registry->addProfileFile(fileName, AProfile::Flag(flag)));
    }
    QCOMPARE(registry->getProfileForId(QStringLiteral("a"))->flags(), flag);
    QCOMPARE(registry->getProfileForId(QStringLiteral("a:b"))->flags(), flag | kDerived);
}

void TestADataManagerProfiles::profilesComeByAscendingId()
{
    Registry registry;
    const QStringList unsorted{QStringLiteral("b"),  QStringLiteral("a:1"), QStringLiteral("Z"),
                               QStringLiteral("10"), QStringLiteral("a"),   QStringLiteral("9"),
                               QStringLiteral("aa"), QStringLiteral("A"),   QString::fromUtf8("\xc3\xa4")};
    for (const QString &id : unsorted)
        QVERIFY(registry->addProfileFile(registry.writeProfile(QStringLiteral("file"), id, id), AProfile::UserProfile));
    QStringList sorted = unsorted;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(ids(registry.manager.get()), sorted);
    QCOMPARE(sorted.first(), QStringLiteral("10"));
    QCOMPARE(sorted.last(), QString::fromUtf8("\xc3\xa4"));
}

void TestADataManagerProfiles::idsAreLookedUpExactly()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("Band II"), QStringLiteral("Label"));
    QVERIFY(profile);
    QCOMPARE(registry->getProfileForId(QStringLiteral("Band II")), profile);
    for (const char *id : {"", "band ii", "Band", "Band II ", " Band II", "Label", "Band II:x"})
        QVERIFY2(!registry->getProfileForId(QLatin1String(id)), id);
    QVERIFY(!registry->getProfileForId(QString()));
    // Asking makes no entries.
    QCOMPARE(registry->getProfiles().size(), 1);
}

void TestADataManagerProfiles::labelsAreFound_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("exactId");
    QTest::addColumn<QString>("looseId");
    const auto row = [](const char *label, const char *exactId, const char *looseId) {
        QTest::newRow(label) << QString::fromUtf8(label) << QString::fromUtf8(exactId) << QString::fromUtf8(looseId);
    };
    row("UHF Band IV", "1", "1");
    row("uhf band iv", "", "1");
    row("UHF BAND IV", "", "1");
    row("band", "", "1");
    row("Band III", "", "2");
    row("band iii", "", "2");
    row("BAND III", "2", "2");
    row("nd i", "", "1");
    row("Stra\xc3\x9f"
        "e",
        "3", "3");
    row("STRASSE", "", "3");
    row("ss", "", "3");
    row("\xc3\x84rger", "", "4");
    row("\xc3\xa4rger", "4", "4");
    row("argER", "", "");
    row("none", "", "");
    row(" ", "", "1");
    row("", "5", "1");
    row("UHF Band IV ", "", "");
    row(".*", "", "");
}

void TestADataManagerProfiles::labelsAreFound()
{
    QFETCH(QString, label);
    QFETCH(QString, exactId);
    QFETCH(QString, looseId);
    Registry registry;
    registry.add(QStringLiteral("5"), QString());
    registry.add(QStringLiteral("4"), QString::fromUtf8("\xc3\xa4rger"));
    registry.add(QStringLiteral("3"), QString::fromUtf8("Stra\xc3\x9f"
                                                        "e"));
    registry.add(QStringLiteral("2"), QStringLiteral("BAND III"));
    registry.add(QStringLiteral("1"), QStringLiteral("UHF Band IV"));
    QCOMPARE(registry->getProfiles().size(), 5);
    const AProfile *exact = registry->getProfileForLabel(label, true);
    const AProfile *loose = registry->getProfileForLabel(label, false);
    QCOMPARE(exact ? exact->id() : QString(), exactId);
    QCOMPARE(loose ? loose->id() : QString(), looseId);
}

void TestADataManagerProfiles::theLowestIdWinsAmongEqualLabels()
{
    Registry registry;
    for (const QString &id : {QStringLiteral("c"), QStringLiteral("b"), QStringLiteral("B"), QStringLiteral("d")})
        QVERIFY(registry.add(id, QStringLiteral("Same")));
    QVERIFY(registry.add(QStringLiteral("A"), QStringLiteral("Not the same")));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("Same"), true)->id(), QStringLiteral("B"));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("Same"), false)->id(), QStringLiteral("A"));
    QCOMPARE(registry->getProfileForLabel(QString(), false)->id(), QStringLiteral("A"));
    QVERIFY(!registry->getProfileForLabel(QString(), true));
}

void TestADataManagerProfiles::theLabelWithoutALanguageCounts()
{
    Registry registry;
    const QString fileName = registry.write(
        QStringLiteral("a"), QStringLiteral("<profile id=\"id\"><label lang=\"de\">Deutsch</label><label>Plain</label>"
                                            "<begin>1</begin><end>2</end></profile>"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(registry->getProfileForLabel(QStringLiteral("Plain"), true));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("Deutsch"), true));
    QVERIFY(registry->getProfileForLabel(QStringLiteral("PLAIN"), false));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("deutsch"), false));
}

void TestADataManagerProfiles::nullEntriesAreNoHit()
{
    Registry registry;
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("Gone")));
    AProfile *other = registry.add(QStringLiteral("b"), QStringLiteral("Other"));
    registry.makeNull(QStringLiteral("a"));
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("null"), QStringLiteral("b|Other")}));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("Other"), true), other);
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("OTHER"), false), other);
    QCOMPARE(registry->getProfileForLabel(QString(), false), other);
    QVERIFY(!registry->getProfileForLabel(QString(), true));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("Gone"), true));
    QVERIFY(!registry->getProfileForLabel(QStringLiteral("gone"), false));
}

void TestADataManagerProfiles::removingTakesTheProfileOutAlive()
{
    Registry registry;
    const QPointer<AProfile> profile = registry.add(m_id, QStringLiteral("A"));
    AProfile *other = registry.add(QStringLiteral("other"), QStringLiteral("B"));
    QVERIFY(profile);
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(profile);
        QCOMPARE(registry->getProfiles(), QList<AProfile *>{other});
    });
    registry->removeProfile(profile);
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    runDeferredDeletes();
    QVERIFY(profile);
    QVERIFY(!registry->getProfileForId(m_id));
    QVERIFY(!isWatched(profile->source()));
    QVERIFY(isWatched(other->source()));
    delete profile.data();
}

void TestADataManagerProfiles::removingNullDoesNothing()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("A"));
    registry.takeLog();
    registry->removeProfile(nullptr);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QVERIFY(isWatched(profile->source()));
}

void TestADataManagerProfiles::removingAnUnknownIdStillSignalsAndEndsTheWatch()
{
    Registry registry;
    const QString shared = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(shared, AProfile::UserProfile));
    const std::unique_ptr<AProfile> stranger(AProfile::fromFile(shared));
    stranger->setId(QStringLiteral("unknown"));
    registry.takeLog();
    registry->removeProfile(stranger.get());
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|A")});
    QVERIFY(!isWatched(shared));

    registry->clearProfiles();
    registry.takeLog();
    registry->removeProfile(stranger.get());
    QCOMPARE(registry.takeLog(), m_oneChange);
}

void TestADataManagerProfiles::aStaleProfileTakesOutTheCurrentOne()
{
    Registry registry;
    const QString first = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    const QString second = registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(first, AProfile::UserProfile));
    const std::unique_ptr<AProfile> stale(registry->getProfileForId(m_id));
    registry->removeProfile(stale.get());
    QVERIFY(registry->addProfileFile(second, AProfile::UserProfile));
    const QPointer<AProfile> current = registry->getProfileForId(m_id);
    registry.watchFile(first);
    registry.takeLog();

    registry->removeProfile(stale.get());
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(registry->getProfiles().isEmpty());
    QVERIFY(current);
    // The watch that ends is that of the object handed in.
    QVERIFY(!isWatched(first));
    QVERIFY(isWatched(second));
}

void TestADataManagerProfiles::removingAProfileWithoutSource()
{
    Registry registry;
    AProfile *held = registry.add(m_id, QStringLiteral("A"));
    AProfile stranger;
    registry.takeLog();
    registry->removeProfile(&stranger);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{held});

    stranger.setId(m_id);
    registry->removeProfile(&stranger);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(registry->getProfiles().isEmpty());
    QVERIFY(isWatched(held->source()));
}

void TestADataManagerProfiles::clearingSchedulesEveryDeletion()
{
    Registry registry;
    const QPointer<AProfile> first = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    const QPointer<AProfile> second = registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QVERIFY(first && second);
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(registry->getProfiles().isEmpty());
        QVERIFY(first);
        QVERIFY(second);
        QCOMPARE(second->label(QString()), QStringLiteral("B"));
    });
    registry->clearProfiles();
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(!registry->getProfileForId(QStringLiteral("a")));
    QVERIFY(first);
    QVERIFY(second);
    runDeferredDeletes();
    QVERIFY(!first);
    QVERIFY(!second);
}

void TestADataManagerProfiles::clearingAnEmptyStoreSignals()
{
    Registry registry;
    registry->clearProfiles();
    QCOMPARE(registry.takeLog(), m_oneChange);
}

void TestADataManagerProfiles::clearingEndsTheWatches()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QCOMPARE(watchedInodes().size(), 2);
    registry->clearProfiles();
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerProfiles::aSaveGoesToTheRightFile_data()
{
    QTest::addColumn<unsigned int>("flags");
    QTest::addColumn<bool>("belowPrefix");
    QTest::addColumn<bool>("sourceExists");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<bool>("toDirectory");
    for (unsigned int flags : {0U, 1U, 2U, 3U}) {
        for (bool belowPrefix : {false, true}) {
            for (bool sourceExists : {false, true}) {
                for (const char *directory : {"existing", "new/and/nested"}) {
                    const bool toDirectory = flags == 1 || belowPrefix || !sourceExists;
                    QTest::addRow("flags %u%s%s, %s", flags, belowPrefix ? ", below the prefix" : "",
                                  sourceExists ? "" : ", source gone", directory)
                        << flags << belowPrefix << sourceExists << QString::fromUtf8(directory) << toDirectory;
                }
            }
        }
    }
}

void TestADataManagerProfiles::aSaveGoesToTheRightFile()
{
    QFETCH(unsigned int, flags);
    QFETCH(bool, belowPrefix);
    QFETCH(bool, sourceExists);
    QFETCH(QString, directory);
    QFETCH(bool, toDirectory);
    Registry registry;
    for (const QString &name : {QStringLiteral("installed"), QStringLiteral("own"), QStringLiteral("existing")})
        QVERIFY(QDir().mkdir(registry.path(name)));
    const QString source =
        registry.writeProfile(belowPrefix ? QStringLiteral("installed/file.xml") : QStringLiteral("own/file.xml"), m_id,
                              QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    profile->setFlags(flags | kModified);
    const QByteArray oldText = readBytes(source);
    if (!sourceExists)
        QVERIFY(QFile::remove(source));

    const QString path = registry.path(directory);
    QVERIFY(registry->saveProfile(profile, path, registry.path(QStringLiteral("installed"))));
    QCOMPARE(profile->flags(), flags);
    QCOMPARE(profile->source(), source);
    QVERIFY(QDir(path).exists());
    const QString inDirectory = path + QStringLiteral("/id.profile");
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(toDirectory ? inDirectory : source));
    QVERIFY(saved && saved->isValid());
    QCOMPARE(saved->id(), m_id);
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
    // Nothing else is written.
    QCOMPARE(QDir(path).entryList(QDir::Files),
             toDirectory ? QStringList{QStringLiteral("id.profile")} : QStringList());
    if (toDirectory && sourceExists)
        QCOMPARE(readBytes(source), oldText);
    else if (toDirectory)
        QVERIFY(!QFile::exists(source));
}

void TestADataManagerProfiles::thePrefixIsComparedAsText_data()
{
    QTest::addColumn<QString>("prefix"); // relative to the directory of the test
    QTest::addColumn<bool>("toDirectory");
    QTest::newRow("directory") << QStringLiteral("installed") << true;
    QTest::newRow("directory with slash") << QStringLiteral("installed/") << true;
    QTest::newRow("part of the name") << QStringLiteral("inst") << true;
    QTest::newRow("the file itself") << QStringLiteral("installed/file.xml") << true;
    QTest::newRow("upper case") << QStringLiteral("Installed") << false;
    QTest::newRow("other directory") << QStringLiteral("own") << false;
    QTest::newRow("longer") << QStringLiteral("installed/file.xml/") << false;
    QTest::newRow("unclean") << QStringLiteral("./installed") << false;
}

void TestADataManagerProfiles::thePrefixIsComparedAsText()
{
    QFETCH(QString, prefix);
    QFETCH(bool, toDirectory);
    Registry registry;
    QVERIFY(QDir().mkdir(registry.path(QStringLiteral("installed"))));
    const QString source = registry.writeProfile(QStringLiteral("installed/file.xml"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), registry.path(prefix)));
    QCOMPARE(QFile::exists(registry.path(QStringLiteral("save/id.profile"))), toDirectory);
    const std::unique_ptr<AProfile> atSource(AProfile::fromFile(source));
    QCOMPARE(atSource->label(QString()), toDirectory ? QStringLiteral("Old") : QStringLiteral("New"));
}

void TestADataManagerProfiles::aUsersCopyOfAnInstalledProfileIsSavedInPlace()
{
    Registry registry;
    const QString installed = registry.writeProfile(QStringLiteral("installed"), m_id, QStringLiteral("Installed"));
    const QString own = registry.writeProfile(QStringLiteral("own"), m_id, QStringLiteral("Own"));
    QVERIFY(registry->addProfileFile(installed, AProfile::InstalledProfile));
    QVERIFY(registry->addProfileFile(own, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QCOMPARE(profile->flags(), kInstalled | kUser | kModified);
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), installed));
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(own));
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
    QVERIFY(!QFile::exists(registry.path(QStringLiteral("save/id.profile"))));
    QCOMPARE(profile->flags(), kInstalled | kUser);
}

void TestADataManagerProfiles::anUnchangedProfileIsNotSaved()
{
    Registry registry;
    for (AProfile::Flag flag : {AProfile::InstalledProfile, AProfile::UserProfile}) {
        const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
        QVERIFY(registry->addProfileFile(source, flag));
        AProfile *profile = registry->getProfileForId(m_id);
        const QByteArray text = readBytes(source);
        const QString directory = registry.path(QStringLiteral("save"));
        QVERIFY(!registry->saveProfile(profile, directory, QStringLiteral("/none")));
        QVERIFY(!registry->saveProfile(m_id, directory, QStringLiteral("/none")));
        QVERIFY(!QFile::exists(directory));
        QCOMPARE(readBytes(source), text);

        QVERIFY(QFile::remove(source));
        QVERIFY(!registry->saveProfile(profile, directory, QStringLiteral("/none")));
        QVERIFY(!QFile::exists(directory));
        QVERIFY(!QFile::exists(source));
    }
}

void TestADataManagerProfiles::nullIsNotSaved()
{
    Registry registry;
    const QString directory = registry.path(QStringLiteral("save"));
    QVERIFY(!registry->saveProfile(static_cast<AProfile *>(nullptr), directory, QString()));
    QVERIFY(!QFile::exists(directory));
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerProfiles::savingByIdLooksUpTheStore()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    profile->setLabel(QStringLiteral("New"), QString());
    registry.takeLog();
    const QString directory = registry.path(QStringLiteral("save"));
    for (const char *id : {"", "ID", "unknown", "New"})
        QVERIFY2(!registry->saveProfile(QLatin1String(id), directory, QStringLiteral("/none")), id);
    QVERIFY(!QFile::exists(directory));
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});

    QVERIFY(registry->saveProfile(m_id, directory, QStringLiteral("/none")));
    QCOMPARE(profile->flags(), kUser);
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(profile->source()));
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerProfiles::savingClearsOneBitAlone_data()
{
    QTest::addColumn<unsigned int>("flags");
    for (unsigned int flags : {0U, 1U, 2U, 3U, 5U, 6U, 8U, 0x800U, 0x2000U, 0x80000000U, 0xffffeff8U, 0xffffefffU})
        QTest::addRow("0x%x", flags) << flags;
}

void TestADataManagerProfiles::savingClearsOneBitAlone()
{
    QFETCH(unsigned int, flags);
    Registry registry;
    // Bit 4 follows the id, so the id follows the bit.
    const QString id = (flags & kDerived) ? QStringLiteral("id:x") : m_id;
    const QString source = registry.writeProfile(QStringLiteral("a"), id, QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(id);
    profile->setFlags(flags | kModified);
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), QStringLiteral("/none")));
    QCOMPARE(profile->flags(), flags);
}

void TestADataManagerProfiles::savingChangesNeitherStoreNorSource()
{
    Registry registry;
    const QString source = registry.writeProfile(QStringLiteral("a"), QStringLiteral("old"), QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(source, AProfile::InstalledProfile));
    AProfile *profile = registry->getProfileForId(QStringLiteral("old"));
    profile->setId(QStringLiteral("new"));
    registry.takeLog();
    QVERIFY(registry->saveProfile(profile, registry.path(QStringLiteral("save")), QStringLiteral("/none")));
    // The file is named after the id, and the key stays.
    QVERIFY(QFile::exists(registry.path(QStringLiteral("save/new.profile"))));
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfileForId(QStringLiteral("old")), profile);
    QVERIFY(!registry->getProfileForId(QStringLiteral("new")));
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QCOMPARE(profile->source(), source);
    QVERIFY(isWatched(source));
}

void TestADataManagerProfiles::theDirectoryIsMadeEvenIfTheSourceIsWritten()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    profile->setLabel(QStringLiteral("New"), QString());
    const QString directory = registry.path(QStringLiteral("made/for nothing"));
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    QVERIFY(QDir(directory).exists());
    QVERIFY(QDir(directory).isEmpty());
}

void TestADataManagerProfiles::aFailedSaveKeepsTheChanges_data()
{
    QTest::addColumn<unsigned int>("flags");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<bool>("sourceIsDirectory");
    QTest::newRow("directory below a file") << kInstalled << QStringLiteral("file/save") << false;
    QTest::newRow("directory is a file") << kInstalled << QStringLiteral("file") << false;
    // A directory in its place exists, so the profile is still bound for its source.
    QTest::newRow("source is a directory") << kUser << QStringLiteral("save") << true;
    QTest::newRow("target is a directory") << kInstalled << QStringLiteral("blocked") << false;
}

void TestADataManagerProfiles::aFailedSaveKeepsTheChanges()
{
    QFETCH(unsigned int, flags);
    QFETCH(QString, directory);
    QFETCH(bool, sourceIsDirectory);
    Registry registry;
    registry.write(QStringLiteral("file"), QStringLiteral("text"));
    QVERIFY(QDir().mkpath(registry.path(QStringLiteral("blocked/id.profile"))));
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::UserProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    profile->setFlags(flags | kModified);
    if (sourceIsDirectory)
        QVERIFY(QFile::remove(source) && QDir().mkdir(source));
    registry.takeLog();

    QVERIFY(!registry->saveProfile(profile, registry.path(directory), QStringLiteral("/none")));
    QCOMPARE(profile->flags(), flags | kModified);
    QCOMPARE(profile->source(), source);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(readBytes(registry.path(QStringLiteral("file"))), QByteArray("text"));
    QVERIFY(!QFile::exists(registry.path(QStringLiteral("save/id.profile"))));
    if (!sourceIsDirectory)
        QCOMPARE(readBytes(source), profileText(m_id, QStringLiteral("Old")).toUtf8());
}

void TestADataManagerProfiles::relativeDirectoriesAreTakenFromTheWorkingDirectory_data()
{
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("file");
    QTest::newRow("empty") << QString() << QStringLiteral("id.profile");
    QTest::newRow("dot") << QStringLiteral(".") << QStringLiteral("id.profile");
    QTest::newRow("name") << QStringLiteral("sub/save") << QStringLiteral("sub/save/id.profile");
    QTest::newRow("name with slash") << QStringLiteral("save/") << QStringLiteral("save/id.profile");
}

void TestADataManagerProfiles::relativeDirectoriesAreTakenFromTheWorkingDirectory()
{
    QFETCH(QString, directory);
    QFETCH(QString, file);
    Registry registry;
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::InstalledProfile));
    AProfile *profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(registry.path(file)));
    QVERIFY(saved && saved->isValid());
    QCOMPARE(saved->label(QString()), QStringLiteral("New"));
}

void TestADataManagerProfiles::aProfileOutsideTheStoreIsSaved()
{
    Registry registry;
    AProfile profile;
    profile.setId(QStringLiteral("made"));
    profile.setLabel(QStringLiteral("Made"), QString());
    profile.setRange(AFrequency("1 MHz"), AFrequency("2 MHz"));
    // Without a source there is no file to go back to.
    QVERIFY(registry->saveProfile(&profile, registry.path(QStringLiteral("save")), QStringLiteral("/none")));
    QCOMPARE(profile.flags(), 0U);
    QVERIFY(profile.source().isEmpty());
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(registry.path(QStringLiteral("save/made.profile"))));
    QVERIFY(saved && saved->isValid());
    QCOMPARE(saved->label(QString()), QStringLiteral("Made"));
    QVERIFY(registry->getProfiles().isEmpty());
    QCOMPARE(registry.takeLog(), QStringList());

    // Every text begins with the empty one.
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    const std::unique_ptr<AProfile> other(AProfile::fromFile(source));
    other->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(other.get(), registry.path(QStringLiteral("save")), QString()));
    QVERIFY(QFile::exists(registry.path(QStringLiteral("save/id.profile"))));
    QCOMPARE(readBytes(source), profileText(m_id, QStringLiteral("Old")).toUtf8());
}

void TestADataManagerProfiles::theTargetOfASaveIsNotWatched()
{
    Registry registry;
    const QString source = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(source, AProfile::InstalledProfile));
    registry->getProfileForId(m_id)->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(m_id, registry.path(QString()), QStringLiteral("/none")));
    QVERIFY(QFile::exists(registry.path(QStringLiteral("id.profile"))));
    QVERIFY(!isWatched(registry.path(QStringLiteral("id.profile"))));
    QVERIFY(isWatched(source));
}

void TestADataManagerProfiles::savingASecondTimeNeedsAChange()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("Old"));
    profile->setLabel(QStringLiteral("New"), QString());
    const QString directory = registry.path(QString());
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    QVERIFY(!registry->saveProfile(profile, directory, QStringLiteral("/none")));
    profile->setLabel(QStringLiteral("Newer"), QString());
    QVERIFY(registry->saveProfile(profile, directory, QStringLiteral("/none")));
    const std::unique_ptr<AProfile> saved(AProfile::fromFile(profile->source()));
    QCOMPARE(saved->label(QString()), QStringLiteral("Newer"));
}

QTEST_GUILESS_MAIN(TestADataManagerProfiles)
#include "tst_adatamanager_profiles.moc"
