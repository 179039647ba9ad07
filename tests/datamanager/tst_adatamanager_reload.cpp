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

QTEST_GUILESS_MAIN(TestADataManagerReload)
#include "tst_adatamanager_reload.moc"
