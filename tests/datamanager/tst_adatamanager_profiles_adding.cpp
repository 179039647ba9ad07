#include "datamanager/adatamanager.h"

#include "registryfixture.h"

#include <QtCore/QTranslator>
#include <QtTest/QtTest>

using namespace registrytest;

namespace {

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

// How profiles come in, from a file or from a path, and the flags that they come in with.
class TestADataManagerProfilesAdding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
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

private:
    const QString m_id = QStringLiteral("id");
    const QStringList m_oneChange{QStringLiteral("profiles")};
};

void TestADataManagerProfilesAdding::aFileIsTakenOver()
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

void TestADataManagerProfilesAdding::theSignalFindsTheNewState()
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

void TestADataManagerProfilesAdding::anUnreadableFileIsReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing.profile");
    QTest::newRow("directory") << QStringLiteral("directory");
    QTest::newRow("placeholders in the name") << QStringLiteral("100%1 %2 %L3.profile");
    QTest::newRow("not latin") << QString::fromUtf8("\xc3\xa4\xe2\x82\xac.profile");
    QTest::newRow("below a file") << QStringLiteral("file/a.profile");
}

void TestADataManagerProfilesAdding::anUnreadableFileIsReported()
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

void TestADataManagerProfilesAdding::anErrorStandsInPlaceOfTheChange()
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

void TestADataManagerProfilesAdding::theErrorTextIsTranslatedInTheClassContext()
{
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    Registry registry;
    QVERIFY(!registry->addProfileFile(QStringLiteral("/missing"), AProfile::UserProfile));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(registry.takeLog(),
             QStringList{QStringLiteral("error: [Could not create profile from file '1'] /missing")});
}

void TestADataManagerProfilesAdding::anInvalidFileIsPassedOverInSilence_data()
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
void TestADataManagerProfilesAdding::anInvalidFileIsPassedOverInSilence()
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

void TestADataManagerProfilesAdding::addingAFileTwiceReplacesTheProfile()
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

void TestADataManagerProfilesAdding::theOldProfileOutlivesTheSignalOfOneFile()
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
void TestADataManagerProfilesAdding::theNewFileIsWatchedAfterTheSignal()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    connect(registry.manager.get(), &ADataManager::profilesChanged, this,
            [&fileName] { QVERIFY(!isWatched(fileName)); });
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfilesAdding::theOldProfileIsDeletedBeforeTheNewFileIsWatched()
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

void TestADataManagerProfilesAdding::theOldSourceStaysWatched()
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

void TestADataManagerProfilesAdding::aRefusedFileIsNotWatched()
{
    Registry registry;
    const QString fileName = registry.write(QStringLiteral("a"), QStringLiteral("no profile"));
    QVERIFY(!registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerProfilesAdding::addingAWatchedFileAgainKeepsItWatched()
{
    Registry registry;
    QVERIFY(registry.add(m_id, QStringLiteral("A")));
    QVERIFY(registry.add(m_id, QStringLiteral("B")));
    QVERIFY(registry.add(m_id, QStringLiteral("C")));
    QCOMPARE(watchedInodes().size(), 1);
    QVERIFY(isWatched(registry.path(QStringLiteral("id.profile"))));
}

void TestADataManagerProfilesAdding::aDirectoryIsTakenOverWithOneSignal()
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

void TestADataManagerProfilesAdding::aSingleFileIsAPathToo()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.txt"), m_id, QStringLiteral("A"));
    QCOMPARE(registry->addProfilePath(fileName, AProfile::UserProfile), 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|A")});
    QCOMPARE(registry->getProfileForId(m_id)->source(), fileName);
    QVERIFY(isWatched(fileName));
}

void TestADataManagerProfilesAdding::aPathWithoutProfilesGivesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing");
    QTest::newRow("empty directory") << QStringLiteral("empty");
    QTest::newRow("invalid files only") << QStringLiteral("invalid");
    QTest::newRow("invalid file") << QStringLiteral("invalid/a.profile");
    QTest::newRow("missing file") << QStringLiteral("missing.profile");
}

void TestADataManagerProfilesAdding::aPathWithoutProfilesGivesNothing()
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

void TestADataManagerProfilesAdding::invalidEntriesOfAPathAreSkipped()
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

void TestADataManagerProfilesAdding::theSignalOfAPathFindsTheNewState()
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

void TestADataManagerProfilesAdding::theOldProfilesAreGoneBeforeTheSignalOfAPath()
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

void TestADataManagerProfilesAdding::theLastOfOneIdInAScanWins()
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

void TestADataManagerProfilesAdding::theFilesOfAPathAreWatchedBeforeTheSignal()
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

void TestADataManagerProfilesAdding::aScanEndsTheWatchOfTheReplacedSource()
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
void TestADataManagerProfilesAdding::aSecondScanLeavesTheFilesUnwatched()
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

void TestADataManagerProfilesAdding::flagsOfAReplacement_data()
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

void TestADataManagerProfilesAdding::flagsOfAReplacement()
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

void TestADataManagerProfilesAdding::theInstalledBitIsHandedOnFromUserToUser()
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

void TestADataManagerProfilesAdding::theInstalledBitIsHandedOnWithinAScan()
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

void TestADataManagerProfilesAdding::aFirstLoadHasTheGivenFlagAlone_data()
{
    QTest::addColumn<unsigned int>("flag");
    QTest::addColumn<bool>("byPath");
    QTest::newRow("installed file") << kInstalled << false;
    QTest::newRow("user file") << kUser << false;
    QTest::newRow("installed path") << kInstalled << true;
    QTest::newRow("user path") << kUser << true;
}

void TestADataManagerProfilesAdding::aFirstLoadHasTheGivenFlagAlone()
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

QTEST_GUILESS_MAIN(TestADataManagerProfilesAdding)
#include "tst_adatamanager_profiles_adding.moc"
