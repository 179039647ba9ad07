#include "datamanager/adatamanager.h"

#include "channel/achannelinfo.h"
#include "registryfixture.h"

#include <QtTest/QtTest>

using namespace registrytest;

class TestADataManagerReload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_currentPath = QDir::currentPath(); }
    void cleanup() { QDir::setCurrent(m_currentPath); }

    // one call of the slot
    void anUnknownNameDoesNothing_data();
    void anUnknownNameDoesNothing();
    void aChangedFileReplacesTheProfile();
    void aReplacementHasNoFlagsOfItsOwn_data();
    void aReplacementHasNoFlagsOfItsOwn();
    void theKeyStaysWhateverIdTheFileNames();
    void aFileThatIsNoProfileAnyMoreLeavesAnInvalidEntry_data();
    void aFileThatIsNoProfileAnyMoreLeavesAnInvalidEntry();
    void anInvalidEntryIsReplacedByTheNextReload();
    void anUnreadableFileLeavesANullEntry();
    void aReloadReportsNoError();
    void aDeletedFileTakesTheProfileOut();
    void aDeletedFileOfARenamedProfileLeavesTheKey();
    void aDanglingLinkIsNoMissingFile();
    void onlyTheFirstProfileOfAFileIsReloaded();
    void onlyTheFirstProfileOfADeletedFileIsTakenOut();
    void namesAreComparedAsTheyWereGiven();
    void aReloadDoesNotRenewTheWatch();
    void theTreeFollowsAReload();
    void aSecondDeletionOfTheSameFileIsSilent();
    void unsavedChangesAreLostByAReload();

    // null entries
    void everyOperationPassesOverNullEntries();
    void aNullEntryIsReplacedByItsId_data();
    void aNullEntryIsReplacedByItsId();
    void aNullEntryIsNeverReloaded();
    void clearingTakesNullEntriesOut();
    void aManagerGoesWithNullEntries();

    // a second process edits the files
    void editsOfASecondProcess_data();
    void editsOfASecondProcess();
    void aDeletedFileSignalsExactlyTwice();
    void aDeletedFileThatComesBackGoesUnnoticed();
    void aFileDeletedAndRecreatedAtOnceIsReloaded();
    void aFileReplacedBySomethingUnreadableBecomesANullEntry_data();
    void aFileReplacedBySomethingUnreadableBecomesANullEntry();
    void aBurstOfEditsEndsInTheLastState();
    void aBurstOfTruncationsEndsInTheLastState();
    void aBurstOfReplacementsEndsInAWholeState();
    void deletingAndRecreatingAgainAndAgainKeepsTheRegistryInOrder();
    void manyFilesAtOnce();
    void aDirectoryRemovedAsAWholeEmptiesTheStore();
    void theFilesOfASecondScanAreNotFollowed();
    void theOldSourceOfAProfileIsNoLongerFollowed();
    void aSaveOverTheWatchedSourceIsReloaded();
    void theTargetOfASaveIsNotFollowed();
    void aRelativeNameIsFollowed();
    void aLinkedFileIsFollowed();
    void theTreeFollowsASecondProcess();
    void aManagerDestroyedWithEventsUnderwayIsGone();

private:
    const QString m_id = QStringLiteral("id");
    const QStringList m_oneChange{QStringLiteral("profiles")};
    QString m_currentPath;
};

void TestADataManagerReload::anUnknownNameDoesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << QString();
    QTest::newRow("missing") << QStringLiteral("/missing");
    QTest::newRow("the key of other limits") << QStringLiteral("(internal)");
    QTest::newRow("the calibrations in memory") << QStringLiteral("-");
    QTest::newRow("an id") << QStringLiteral("id");
    QTest::newRow("root") << QStringLiteral("/");
}

void TestADataManagerReload::anUnknownNameDoesNothing()
{
    QFETCH(QString, name);
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("A"));
    registry.takeLog();
    registry.updateFile(name);
    // Nor does a file that exists and was never added.
    registry.updateFile(registry.writeProfile(QStringLiteral("other.profile"), m_id, QStringLiteral("B")));
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
    QCOMPARE(watchedInodes().size(), 1);
}

void TestADataManagerReload::aChangedFileReplacesTheProfile()
{
    Registry registry;
    const QPointer<AProfile> old = registry.add(m_id, QStringLiteral("Old"));
    AProfile *other = registry.add(QStringLiteral("other"), QStringLiteral("Other"));
    const QString fileName = old->source();
    writeText(fileName, profileText(m_id, QStringLiteral("New")));
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QCOMPARE(registry.contents(), (QStringList{QStringLiteral("id|New"), QStringLiteral("other|Other")}));
        QVERIFY(old);
    });
    registry.updateFile(fileName);
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry->getProfileForId(m_id)->source(), fileName);
    QCOMPARE(registry->getProfileForId(QStringLiteral("other")), other);

    // The old object is nobody's: whoever holds a pointer may still use it.
    runDeferredDeletes();
    QVERIFY(old);
    QVERIFY(registry->getProfileForId(m_id) != old);
    QCOMPARE(old->label(QString()), QStringLiteral("Old"));
}

void TestADataManagerReload::aReplacementHasNoFlagsOfItsOwn_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<unsigned int>("expected");
    QTest::newRow("plain") << QStringLiteral("id") << 0U;
    QTest::newRow("derived") << QStringLiteral("id:x") << 4U;
}

void TestADataManagerReload::aReplacementHasNoFlagsOfItsOwn()
{
    QFETCH(QString, id);
    QFETCH(unsigned int, expected);
    for (unsigned int oldFlags : {1U, 2U, 3U, 0x1000U, 0x1003U}) {
        Registry registry;
        const QString fileName = registry.writeProfile(QStringLiteral("a"), id, QStringLiteral("A"));
        QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
        AProfile *old = registry->getProfileForId(id);
        old->setFlags((old->flags() & 4U) | oldFlags);
        unsigned int inSlot = 0xffffffff;
        connect(registry.manager.get(), &ADataManager::profilesChanged, this,
                [&] { inSlot = registry->getProfileForId(id)->flags(); });
        registry.updateFile(fileName);
        QCOMPARE(inSlot, expected);
        QVERIFY(registry->getProfileForId(id) != old);
        QCOMPARE(registry->getProfileForId(id)->flags(), expected);
        // So the installed mark is lost on a user's copy that comes next.
        QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
        QCOMPARE(registry->getProfileForId(id)->flags(), expected | 2U);
    }
}

void TestADataManagerReload::theKeyStaysWhateverIdTheFileNames()
{
    Registry registry;
    AProfile *profile = registry.add(m_id, QStringLiteral("A"));
    const QString fileName = profile->source();
    writeText(fileName, profileText(QStringLiteral("zz"), QStringLiteral("B")));
    registry.updateFile(fileName);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("zz|B")});
    QVERIFY(registry->getProfileForId(m_id));
    QCOMPARE(registry->getProfileForId(m_id)->id(), QStringLiteral("zz"));
    QVERIFY(!registry->getProfileForId(QStringLiteral("zz")));

    // A profile of the new id is another one, and one of the old id replaces it.
    QVERIFY(registry.add(QStringLiteral("zz"), QStringLiteral("C")));
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("zz|B"), QStringLiteral("zz|C")}));
    QVERIFY(registry.add(m_id, QStringLiteral("D")));
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("id|D"), QStringLiteral("zz|C")}));
}

void TestADataManagerReload::aFileThatIsNoProfileAnyMoreLeavesAnInvalidEntry_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("no XML") << QStringLiteral("text");
    QTest::newRow("no id") << profileText(QString(), QStringLiteral("A"));
    QTest::newRow("end below begin") << QStringLiteral("<profile id=\"id\"><begin>2</begin><end>1</end></profile>");
}

void TestADataManagerReload::aFileThatIsNoProfileAnyMoreLeavesAnInvalidEntry()
{
    QFETCH(QString, text);
    Registry registry;
    const QPointer<AProfile> old = registry.add(m_id, QStringLiteral("A"));
    const QString fileName = old->source();
    writeText(fileName, text);
    registry.takeLog();
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry->getProfiles().size(), 1);
    AProfile *entry = registry->getProfileForId(m_id);
    QVERIFY(entry && entry != old);
    QVERIFY(!entry->isValid());
    QVERIFY(old);
}

void TestADataManagerReload::anInvalidEntryIsReplacedByTheNextReload()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("Old"))->source();
    writeText(fileName, QString());
    registry.updateFile(fileName);
    QVERIFY(!registry->getProfileForId(m_id)->isValid());
    writeText(fileName, profileText(m_id, QStringLiteral("New")));
    registry.takeLog();
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
}

void TestADataManagerReload::anUnreadableFileLeavesANullEntry()
{
    Registry registry;
    const QPointer<AProfile> old = registry.add(m_id, QStringLiteral("A"));
    const QString fileName = old->source();
    QVERIFY(QFile::remove(fileName) && QDir().mkdir(fileName));
    registry.takeLog();
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{nullptr});
    QVERIFY(!registry->getProfileForId(m_id));
    QVERIFY(old);
}

void TestADataManagerReload::aReloadReportsNoError()
{
    Registry registry;
    const QString first = registry.add(QStringLiteral("a"), QStringLiteral("A"))->source();
    const QString second = registry.add(QStringLiteral("b"), QStringLiteral("B"))->source();
    writeText(first, QStringLiteral("no profile"));
    QVERIFY(QFile::remove(second) && QDir().mkdir(second));
    registry.takeLog();
    registry.updateFile(first);
    registry.updateFile(second);
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 2));
}

void TestADataManagerReload::aDeletedFileTakesTheProfileOut()
{
    Registry registry;
    const QPointer<AProfile> profile = registry.add(m_id, QStringLiteral("A"));
    AProfile *other = registry.add(QStringLiteral("other"), QStringLiteral("Other"));
    const QString fileName = profile->source();
    QVERIFY(QFile::remove(fileName));
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QCOMPARE(registry->getProfiles(), QList<AProfile *>{other});
        QVERIFY(profile);
    });
    registry.updateFile(fileName);
    QCOMPARE(calls, 2);
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 2));
    runDeferredDeletes();
    QVERIFY(profile);
}

// The profile is taken out by its id, which is no longer the key it stands under.
void TestADataManagerReload::aDeletedFileOfARenamedProfileLeavesTheKey()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("A"))->source();
    registry.add(QStringLiteral("new"), QStringLiteral("Other"));
    writeText(fileName, profileText(QStringLiteral("new"), QStringLiteral("B")));
    registry.updateFile(fileName);
    QVERIFY(QFile::remove(fileName));
    registry.takeLog();
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 2));
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("new|B")});
    QVERIFY(registry->getProfileForId(m_id));
    QVERIFY(!registry->getProfileForId(QStringLiteral("new")));
}

// The link itself is there for QFile::exists() of an object, unlike for the static one.
void TestADataManagerReload::aDanglingLinkIsNoMissingFile()
{
    Registry registry;
    const QString target = registry.writeProfile(QStringLiteral("target"), m_id, QStringLiteral("A"));
    const QString link = registry.path(QStringLiteral("link"));
    QVERIFY(QFile::link(target, link));
    QVERIFY(registry->addProfileFile(link, AProfile::UserProfile));
    QVERIFY(QFile::remove(target));
    registry.takeLog();
    registry.updateFile(link);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("null")});
}

void TestADataManagerReload::onlyTheFirstProfileOfAFileIsReloaded()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("file"), QStringLiteral("b"), QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    writeText(fileName, profileText(QStringLiteral("a"), QStringLiteral("A")));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    AProfile *second = registry->getProfileForId(QStringLiteral("b"));
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("a|A"), QStringLiteral("b|B")}));
    registry.takeLog();

    writeText(fileName, profileText(QStringLiteral("b"), QStringLiteral("New")));
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("b|New"), QStringLiteral("b|B")}));
    QCOMPARE(registry->getProfileForId(QStringLiteral("b")), second);
}

void TestADataManagerReload::onlyTheFirstProfileOfADeletedFileIsTakenOut()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("file"), QStringLiteral("b"), QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    writeText(fileName, profileText(QStringLiteral("a"), QStringLiteral("A")));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QVERIFY(QFile::remove(fileName));
    registry.takeLog();
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 2));
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("b|B")});
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 2));
    QVERIFY(registry->getProfiles().isEmpty());
}

void TestADataManagerReload::namesAreComparedAsTheyWereGiven()
{
    Registry registry;
    registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("A"));
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    QVERIFY(registry->addProfileFile(QStringLiteral("./a.profile"), AProfile::UserProfile));
    registry.takeLog();
    registry.updateFile(registry.path(QStringLiteral("a.profile")));
    registry.updateFile(QStringLiteral("a.profile"));
    registry.updateFile(QStringLiteral("./A.profile"));
    registry.updateFile(QStringLiteral("././a.profile"));
    QCOMPARE(registry.takeLog(), QStringList());
    registry.updateFile(QStringLiteral("./a.profile"));
    QCOMPARE(registry.takeLog(), m_oneChange);
    QCOMPARE(registry->getProfileForId(m_id)->source(), QStringLiteral("./a.profile"));
}

void TestADataManagerReload::aReloadDoesNotRenewTheWatch()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("A"));
    for (int scan = 0; scan < 2; ++scan)
        QCOMPARE(registry->addProfilePath(fileName, AProfile::UserProfile), 1);
    QVERIFY(!isWatched(fileName));
    registry.updateFile(fileName);
    QVERIFY(!isWatched(fileName));
}

void TestADataManagerReload::theTreeFollowsAReload()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("Old"))->source();
    registry->createChannelInfoFromProfiles();
    writeText(fileName, profileText(QStringLiteral("other"), QStringLiteral("New")));
    registry.updateFile(fileName);
    QVERIFY(!registry->getChannelInfoForProfile(m_id));
    QCOMPARE(registry->getChannelInfoForProfile(QStringLiteral("other"))->label(), QStringLiteral("New"));
    writeText(fileName, QString());
    registry.updateFile(fileName);
    QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), 0);
}

void TestADataManagerReload::aSecondDeletionOfTheSameFileIsSilent()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("A"))->source();
    QVERIFY(QFile::remove(fileName));
    registry.updateFile(fileName);
    registry.takeLog();
    registry.updateFile(fileName);
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerReload::unsavedChangesAreLostByAReload()
{
    Registry registry;
    AProfile *old = registry.add(m_id, QStringLiteral("In the file"));
    old->setLabel(QStringLiteral("Unsaved"), QString());
    registry.updateFile(old->source());
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|In the file")});
    QCOMPARE(old->label(QString()), QStringLiteral("Unsaved"));
    QVERIFY(!registry->saveProfile(m_id, registry.path(QString()), QStringLiteral("/none")));
}

void TestADataManagerReload::everyOperationPassesOverNullEntries()
{
    Registry registry;
    const QString firstFile = registry.add(QStringLiteral("a"), QStringLiteral("A"))->source();
    AProfile *second = registry.add(QStringLiteral("b"), QStringLiteral("B"));
    const QString thirdFile = registry.add(QStringLiteral("c"), QStringLiteral("C"))->source();
    registry->createChannelInfoFromProfiles();
    registry.makeNull(QStringLiteral("a"));
    registry.makeNull(QStringLiteral("c"));
    const QStringList contents{QStringLiteral("null"), QStringLiteral("b|B"), QStringLiteral("null")};
    QCOMPARE(registry.contents(), contents);
    registry.takeLog();

    QVERIFY(!registry->getProfileForId(QStringLiteral("a")));
    QCOMPARE(registry->getProfileForLabel(QStringLiteral("B"), true), second);
    QCOMPARE(registry->getProfileForLabel(QString(), false), second);
    QVERIFY(!registry->getProfileForLabel(QString(), true));
    QVERIFY(!registry->saveProfile(QStringLiteral("a"), registry.path(QStringLiteral("save")), QString()));
    QVERIFY(!QFile::exists(registry.path(QStringLiteral("save"))));
    registry->removeProfile(registry->getProfileForId(QStringLiteral("a")));
    QVERIFY(!registry->getChannelInfoForProfile(registry->getProfileForId(QStringLiteral("a"))));
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("a")));
    registry.updateFile(firstFile);
    registry.updateFile(thirdFile);
    registry.updateFile(QString());
    registry.watchFile(firstFile);
    registry->clearLimitData();
    registry->clearCalibrationData(ACalibrationData::AllTypes);
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("limits")});
    QCOMPARE(registry.contents(), contents);

    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), 1);
    QVERIFY(registry->getChannelInfoForName(QStringLiteral("B")));
    registry->clearChannelInfoData();
    QVERIFY(registry.add(QStringLiteral("d"), QStringLiteral("D")));
    QCOMPARE(registry.contents(), contents + QStringList{QStringLiteral("d|D")});
    QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), 2);

    // A profile behind a null entry is still reloaded, and taken out.
    writeText(second->source(), profileText(QStringLiteral("b"), QStringLiteral("New")));
    registry.updateFile(second->source());
    QCOMPARE(registry.contents().at(1), QStringLiteral("b|New"));
    QVERIFY(QFile::remove(second->source()));
    registry.updateFile(second->source());
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("null"), QStringLiteral("null"), QStringLiteral("d|D")}));
}

void TestADataManagerReload::aNullEntryIsReplacedByItsId_data()
{
    QTest::addColumn<bool>("byPath");
    QTest::newRow("file") << false;
    QTest::newRow("path") << true;
}

void TestADataManagerReload::aNullEntryIsReplacedByItsId()
{
    QFETCH(bool, byPath);
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::InstalledProfile));
    registry->createChannelInfoFromProfiles();
    registry.makeNull(m_id);
    QVERIFY(QDir().rmdir(fileName));
    registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Back"));
    registry.takeLog();
    if (byPath)
        QCOMPARE(registry->addProfilePath(fileName, AProfile::UserProfile), 1);
    else
        QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(registry.takeLog(),
             (QStringList{QStringLiteral("profiles"), QStringLiteral("channels"), QStringLiteral("channels")}));
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|Back")});
    QCOMPARE(registry->getProfileForId(m_id)->flags(), 2U);
    QVERIFY(isWatched(fileName));
    QVERIFY(registry->getChannelInfoForProfile(m_id));
}

void TestADataManagerReload::aNullEntryIsNeverReloaded()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("A"))->source();
    registry.makeNull(m_id);
    QVERIFY(QDir().rmdir(fileName));
    writeText(fileName, profileText(m_id, QStringLiteral("Back")));
    registry.takeLog();
    // It has no source, so no file leads back to it.
    registry.updateFile(fileName);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("null")});
}

void TestADataManagerReload::clearingTakesNullEntriesOut()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    const QPointer<AProfile> other = registry.add(QStringLiteral("b"), QStringLiteral("B"));
    registry.makeNull(QStringLiteral("a"));
    registry.takeLog();
    registry->clearProfiles();
    QCOMPARE(registry.takeLog(), m_oneChange);
    QVERIFY(registry->getProfiles().isEmpty());
    runDeferredDeletes();
    QVERIFY(!other);
}

void TestADataManagerReload::aManagerGoesWithNullEntries()
{
    Registry registry;
    registry.add(m_id, QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    registry.makeNull(m_id);
    registry.takeLog();
    registry.manager.reset();
    QCOMPARE(registry.takeLog(), (QStringList{QStringLiteral("limits"), QStringLiteral("channels")}));
}

void TestADataManagerReload::editsOfASecondProcess_data()
{
    // The scripts find a whole new profile in "new" and another one in "newer".
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("contents");
    QTest::addColumn<bool>("replaced"); // another object than before
    QTest::addColumn<bool>("watched");  // so that later changes are followed
    const QStringList fresh{QStringLiteral("id|New")};
    const QStringList same{QStringLiteral("id|Old")};
    const QStringList invalid{QStringLiteral("|")};
    const QStringList none;
    QTest::newRow("overwritten") << QStringLiteral("cat new > a") << fresh << true << true;
    QTest::newRow("overwritten twice") << QStringLiteral("cat newer > a; cat new > a") << fresh << true << true;
    QTest::newRow("appended to") << QStringLiteral("echo '<!-- -->' >> a") << same << true << true;
    QTest::newRow("truncated") << QStringLiteral(": > a") << invalid << true << true;
    QTest::newRow("truncated and written late")
        << QStringLiteral(": > a; sleep 0.1; cat new > a") << fresh << true << true;
    QTest::newRow("written in two parts")
        << QStringLiteral("head -c 20 new > a; sleep 0.1; tail -c +21 new >> a") << fresh << true << true;
    QTest::newRow("garbage") << QStringLiteral("echo text > a") << invalid << true << true;
    QTest::newRow("touched") << QStringLiteral("touch a") << same << true << true;
    QTest::newRow("replaced by rename") << QStringLiteral("mv new a") << fresh << true << false;
    QTest::newRow("replaced by rename twice") << QStringLiteral("mv newer a; mv new a") << fresh << true << false;
    QTest::newRow("replaced by garbage") << QStringLiteral("echo text > b; mv b a") << invalid << true << false;
    QTest::newRow("replaced with a backup") << QStringLiteral("mv a a~; cp new a") << fresh << true << false;
    QTest::newRow("deleted") << QStringLiteral("rm a") << none << true << false;
    QTest::newRow("moved away") << QStringLiteral("mv a b") << none << true << false;
    QTest::newRow("changed and deleted") << QStringLiteral("cat new > a; rm a") << none << true << false;
    QTest::newRow("deleted and recreated") << QStringLiteral("rm a; cat new > a") << fresh << true << false;
    QTest::newRow("moved away and back") << QStringLiteral("mv a b; mv b a") << same << true << false;
    QTest::newRow("other files only") << QStringLiteral("cat new > b; mv b c; rm c; mkdir d") << same << false << true;
    QTest::newRow("only read") << QStringLiteral("cat a > /dev/null") << same << false << true;
}

void TestADataManagerReload::editsOfASecondProcess()
{
    QFETCH(QString, script);
    QFETCH(QStringList, contents);
    QFETCH(bool, replaced);
    QFETCH(bool, watched);
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    registry.writeProfile(QStringLiteral("newer"), m_id, QStringLiteral("Newer"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    const AProfile *old = registry->getProfileForId(m_id);
    registry.takeLog();

    registry.shell(script);
    QTRY_COMPARE(registry.contents(), contents);
    settle();
    QCOMPARE(registry.contents(), contents);
    const AProfile *entry = registry->getProfileForId(m_id);
    QCOMPARE(entry != old, replaced);
    const QStringList log = registry.takeLog();
    QCOMPARE(log.isEmpty(), !replaced);
    QCOMPARE(log.count(QStringLiteral("profiles")), log.size());
    QCOMPARE(isWatched(fileName), watched);

    // What a later change does shows whether the file is still watched.
    writeText(registry.path(QStringLiteral("later")), profileText(m_id, QStringLiteral("Later")));
    registry.shell(QStringLiteral("cat later > a"));
    if (watched)
        QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|Later")});
    settle();
    QCOMPARE(registry.takeLog().isEmpty(), !watched);
    if (!watched) {
        QCOMPARE(registry.contents(), contents);
        QCOMPARE(registry->getProfileForId(m_id), entry);
    }
}

void TestADataManagerReload::aDeletedFileSignalsExactlyTwice()
{
    // However many events the system makes of it, only the first finds the profile.
    for (const char *script : {"rm a", "mv a b", "cat b > a; rm a", "ln a c; rm a; rm c"}) {
        Registry registry;
        const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
        registry.write(QStringLiteral("b"), QStringLiteral("text"));
        QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
        registry.takeLog();
        registry.shell(QLatin1String(script));
        QTRY_VERIFY2(registry->getProfiles().isEmpty(), script);
        settle();
        QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 2));
    }
}

void TestADataManagerReload::aDeletedFileThatComesBackGoesUnnoticed()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("A"))->source();
    registry.shell(QStringLiteral("mv id.profile away"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
    registry.takeLog();
    registry.shell(QStringLiteral("cp away id.profile; echo >> id.profile"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    QVERIFY(registry->getProfiles().isEmpty());
    QVERIFY(!isWatched(fileName));

    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    registry.shell(QStringLiteral("rm id.profile"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
}

void TestADataManagerReload::aFileDeletedAndRecreatedAtOnceIsReloaded()
{
    Registry registry;
    const QString fileName = registry.add(m_id, QStringLiteral("Old"))->source();
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    registry.takeLog();
    registry.shell(QStringLiteral("for i in 1 2 3; do rm id.profile; cp new id.profile; done"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    settle();
    QVERIFY(registry.takeLog().size() >= 1);
    QVERIFY(!isWatched(fileName));
}

void TestADataManagerReload::aFileReplacedBySomethingUnreadableBecomesANullEntry_data()
{
    QTest::addColumn<QString>("script");
    QTest::newRow("directory") << QStringLiteral("rm a; mkdir a");
    QTest::newRow("pipe that nobody writes") << QStringLiteral("rm a; mkfifo a");
    QTest::newRow("endless device") << QStringLiteral("ln -s /dev/zero b; mv b a");
    QTest::newRow("dangling link") << QStringLiteral("ln -s nowhere b; mv b a");
    QTest::newRow("link to itself") << QStringLiteral("rm a; ln -s a a");
}

void TestADataManagerReload::aFileReplacedBySomethingUnreadableBecomesANullEntry()
{
    QFETCH(QString, script);
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    registry->createChannelInfoFromProfiles();
    registry.takeLog();
    registry.shell(script);
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("null")});
    settle();
    QCOMPARE(registry.takeLog(),
             (QStringList{QStringLiteral("profiles"), QStringLiteral("channels"), QStringLiteral("channels")}));
    QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), 0);

    // Nothing leads back from here.
    registry.shell(QStringLiteral("rm -r a"));
    registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("B"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("null")});
}

void TestADataManagerReload::aBurstOfEditsEndsInTheLastState()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("0"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    registry.takeLog();
    registry.shellBeside(QStringLiteral("i=0; while [ $i -lt 300 ]; do i=$((i + 1)); echo \"<profile id='id'>"
                                        "<label>$i</label><begin>1</begin><end>2</end></profile>\" > a; done"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|300")});
    settle();
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|300")});
    QCOMPARE(registry->getChannelInfoForProfile(m_id)->label(), QStringLiteral("300"));
    const QStringList log = registry.takeLog();
    QVERIFY(log.size() >= 3);
    QCOMPARE(log.count(QStringLiteral("channels")), 2 * log.count(QStringLiteral("profiles")));
    QVERIFY(isWatched(fileName));
}

void TestADataManagerReload::aBurstOfTruncationsEndsInTheLastState()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    registry.shellBeside(QStringLiteral("i=0; while [ $i -lt 50 ]; do i=$((i + 1)); : > a; head -c $i new > a;"
                                        " sleep 0.002; : > a; done; cat new > a"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    registry.shellBeside(QStringLiteral("cat new > a; sleep 0.05; : > a"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("|")});
    registry.shellBeside(QStringLiteral("cat new > a"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    QVERIFY(isWatched(fileName));
}

void TestADataManagerReload::aBurstOfReplacementsEndsInAWholeState()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    // A reader never sees a part of such a file, so every state is a whole one.
    QStringList seen;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] { seen << registry.contents(); });
    registry.shellBeside(QStringLiteral("i=0; while [ $i -lt 100 ]; do i=$((i + 1)); cp new b; mv b a; done"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    settle();
    QVERIFY(!seen.isEmpty());
    QCOMPARE(seen.count(QStringLiteral("id|New")), seen.size());
    QVERIFY(!isWatched(fileName));
}

void TestADataManagerReload::deletingAndRecreatingAgainAndAgainKeepsTheRegistryInOrder()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    const QString bystander = registry.writeProfile(QStringLiteral("z"), QStringLiteral("z"), QStringLiteral("Z"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    QVERIFY(registry->addProfileFile(bystander, AProfile::UserProfile));
    const AProfile *other = registry->getProfileForId(QStringLiteral("z"));
    for (int round = 0; round < 5; ++round) {
        QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
        registry.shellBeside(QStringLiteral(
            "i=0; while [ $i -lt 20 ]; do i=$((i + 1)); rm a; sleep 0.00$((i % 4)); cp new b; mv b a; done"));
        settle();
        // Taken out, or replaced by the whole new one, as the events fell.
        const QStringList contents = registry.contents();
        if (contents.size() == 2)
            QCOMPARE(contents, (QStringList{QStringLiteral("id|New"), QStringLiteral("z|Z")}));
        else
            QCOMPARE(contents, QStringList{QStringLiteral("z|Z")});
        QCOMPARE(registry->getProfileForId(QStringLiteral("z")), other);
        QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), contents.size());
    }
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    QCOMPARE(registry.contents(), (QStringList{QStringLiteral("id|New"), QStringLiteral("z|Z")}));
}

void TestADataManagerReload::manyFilesAtOnce()
{
    constexpr int kFiles = 60;
    Registry registry;
    for (int i = 0; i < kFiles; ++i)
        registry.writeProfile(QStringLiteral("%1.profile").arg(i), QString::number(i), QStringLiteral("Old"));
    QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), kFiles);
    registry->createChannelInfoFromProfiles();
    QCOMPARE(watchedInodes().size(), kFiles);
    const AProfile *untouched = registry->getProfileForId(QStringLiteral("4"));
    registry.takeLog();
    registry.shellBeside(QStringLiteral(
        "profile() { echo \"<profile id='$1'><label>New $1</label><begin>1</begin><end>2</end></profile>\"; }\n"
        "i=0\n"
        "while [ $i -lt 60 ]; do\n"
        "  case $((i % 5)) in\n"
        "  0) profile $i > $i.profile ;;\n"
        "  1) profile $i > tmp; mv tmp $i.profile ;;\n"
        "  2) rm $i.profile ;;\n"
        "  3) : > $i.profile ;;\n"
        "  esac\n"
        "  i=$((i + 1))\n"
        "done\n"));
    QMap<QString, QString> expected;
    for (int i = 0; i < kFiles; ++i) {
        const QString id = QString::number(i);
        switch (i % 5) {
        case 0:
        case 1:
            expected.insert(id, id + QStringLiteral("|New ") + id);
            break;
        case 3:
            expected.insert(id, QStringLiteral("|"));
            break;
        case 4:
            expected.insert(id, id + QStringLiteral("|Old"));
            break;
        }
    }
    QTRY_COMPARE(registry.contents(), QStringList(expected.values()));
    settle();
    QCOMPARE(registry.contents(), QStringList(expected.values()));
    QCOMPARE(registry->getProfileForId(QStringLiteral("4")), untouched);
    QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), 3 * kFiles / 5);
    // Twice for each file deleted, at least once for each changed.
    const QStringList log = registry.takeLog();
    QVERIFY(log.count(QStringLiteral("profiles")) >= kFiles);
    QCOMPARE(log.count(QStringLiteral("channels")), 2 * log.count(QStringLiteral("profiles")));
    QCOMPARE(watchedInodes().size(), 3 * kFiles / 5);
}

void TestADataManagerReload::aDirectoryRemovedAsAWholeEmptiesTheStore()
{
    Registry registry;
    QVERIFY(QDir().mkdir(registry.path(QStringLiteral("sub"))));
    for (int i = 0; i < 10; ++i)
        registry.writeProfile(QStringLiteral("sub/%1.profile").arg(i), QString::number(i), QStringLiteral("A"));
    QCOMPARE(registry->addProfilePath(registry.path(QStringLiteral("sub")), AProfile::UserProfile), 10);
    registry.takeLog();
    registry.shellBeside(QStringLiteral("rm -r sub"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
    settle();
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 20));
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerReload::theFilesOfASecondScanAreNotFollowed()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a.profile"), m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    for (int scan = 0; scan < 2; ++scan)
        QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 1);
    registry.takeLog();
    registry.shell(QStringLiteral("cat new > a.profile"));
    settle();
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|Old")});
    registry.shell(QStringLiteral("rm a.profile"));
    settle();
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|Old")});
    QCOMPARE(registry.takeLog(), QStringList());

    registry.shell(QStringLiteral("cp new a.profile"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    registry.shell(QStringLiteral("rm a.profile"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
}

void TestADataManagerReload::theOldSourceOfAProfileIsNoLongerFollowed()
{
    Registry registry;
    registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("A"));
    registry.writeProfile(QStringLiteral("b"), m_id, QStringLiteral("B"));
    QVERIFY(registry->addProfileFile(registry.path(QStringLiteral("a")), AProfile::UserProfile));
    QVERIFY(registry->addProfileFile(registry.path(QStringLiteral("b")), AProfile::UserProfile));
    const AProfile *current = registry->getProfileForId(m_id);
    registry.takeLog();
    registry.shell(QStringLiteral("rm a"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfileForId(m_id), current);
    registry.shell(QStringLiteral("rm b"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
}

// The write comes back through the watch: what stands in the store afterwards was read from the file.
void TestADataManagerReload::aSaveOverTheWatchedSourceIsReloaded()
{
    Registry registry;
    const QPointer<AProfile> profile = registry.add(m_id, QStringLiteral("Old"));
    const QString fileName = profile->source();
    profile->setLabel(QStringLiteral("New"), QString());
    registry.takeLog();
    QVERIFY(registry->saveProfile(m_id, registry.path(QString()), QStringLiteral("/none")));
    QCOMPARE(registry.takeLog(), QStringList());
    QTRY_VERIFY(registry->getProfileForId(m_id) != profile);
    settle();
    QVERIFY(profile);
    QVERIFY(registry.takeLog().size() >= 1);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    QCOMPARE(registry->getProfileForId(m_id)->flags(), 0U);
    // The save replaces the file in one step, and its watch goes with the old one.
    QVERIFY(!isWatched(fileName));
}

void TestADataManagerReload::theTargetOfASaveIsNotFollowed()
{
    Registry registry;
    const QString fileName = registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::InstalledProfile));
    const QPointer<AProfile> profile = registry->getProfileForId(m_id);
    profile->setLabel(QStringLiteral("New"), QString());
    QVERIFY(registry->saveProfile(m_id, registry.path(QString()), QStringLiteral("/none")));
    registry.takeLog();
    registry.shell(QStringLiteral("echo >> id.profile; rm id.profile"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfileForId(m_id), profile.data());
    // The source is followed as before.
    registry.shell(QStringLiteral("rm a"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
    QVERIFY(profile);
}

void TestADataManagerReload::aRelativeNameIsFollowed()
{
    Registry registry;
    registry.writeProfile(QStringLiteral("a"), m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    QVERIFY(registry->addProfileFile(QStringLiteral("./a"), AProfile::UserProfile));
    registry.shell(QStringLiteral("cat new > a"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    QCOMPARE(registry->getProfileForId(m_id)->source(), QStringLiteral("./a"));
    registry.shell(QStringLiteral("rm a"));
    QTRY_VERIFY(registry->getProfiles().isEmpty());
}

void TestADataManagerReload::aLinkedFileIsFollowed()
{
    Registry registry;
    const QString target = registry.writeProfile(QStringLiteral("target"), m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    const QString link = registry.path(QStringLiteral("link"));
    QVERIFY(QFile::link(target, link));
    QVERIFY(registry->addProfileFile(link, AProfile::UserProfile));
    registry.shell(QStringLiteral("cat new > target"));
    QTRY_COMPARE(registry.contents(), QStringList{QStringLiteral("id|New")});
    QCOMPARE(registry->getProfileForId(m_id)->source(), link);
}

void TestADataManagerReload::theTreeFollowsASecondProcess()
{
    Registry registry;
    registry.add(m_id, QStringLiteral("Old"));
    registry.writeProfile(QStringLiteral("new"), m_id, QStringLiteral("New"));
    registry->createChannelInfoFromProfiles();
    registry.shell(QStringLiteral("mv new id.profile"));
    QTRY_VERIFY(registry->getChannelInfoForName(QStringLiteral("New")));
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("Old")));

    QVERIFY(registry->addProfileFile(registry.path(QStringLiteral("id.profile")), AProfile::UserProfile));
    registry.takeLog();
    registry.shell(QStringLiteral("rm id.profile"));
    QTRY_VERIFY(!registry->getChannelInfoForProfile(m_id));
    settle();
    const QStringList once{QStringLiteral("profiles"), QStringLiteral("channels"), QStringLiteral("channels")};
    QCOMPARE(registry.takeLog(), once + once);
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 1);
}

void TestADataManagerReload::aManagerDestroyedWithEventsUnderwayIsGone()
{
    Registry registry;
    const QPointer<AProfile> profile = registry.add(m_id, QStringLiteral("A"));
    registry.shell(QStringLiteral("echo >> id.profile; rm id.profile"));
    registry.takeLog();
    registry.manager.reset();
    settle();
    QCOMPARE(registry.takeLog(), (QStringList{QStringLiteral("limits"), QStringLiteral("channels")}));
    QVERIFY(profile);
}

QTEST_GUILESS_MAIN(TestADataManagerReload)
#include "tst_adatamanager_reload.moc"
