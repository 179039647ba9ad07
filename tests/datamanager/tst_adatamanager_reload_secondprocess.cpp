#include "datamanager/adatamanager.h"

#include "channel/achannelinfo.h"
#include "registryfixture.h"

#include <QtTest/QtTest>

using namespace registrytest;

// A second process edits the files that the registry watches.
class TestADataManagerReloadSecondProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_currentPath = QDir::currentPath(); }
    void cleanup() { QDir::setCurrent(m_currentPath); }

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
    QString m_currentPath;
};

void TestADataManagerReloadSecondProcess::editsOfASecondProcess_data()
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

void TestADataManagerReloadSecondProcess::editsOfASecondProcess()
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

void TestADataManagerReloadSecondProcess::aDeletedFileSignalsExactlyTwice()
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

void TestADataManagerReloadSecondProcess::aDeletedFileThatComesBackGoesUnnoticed()
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

void TestADataManagerReloadSecondProcess::aFileDeletedAndRecreatedAtOnceIsReloaded()
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

void TestADataManagerReloadSecondProcess::aFileReplacedBySomethingUnreadableBecomesANullEntry_data()
{
    QTest::addColumn<QString>("script");
    QTest::newRow("directory") << QStringLiteral("rm a; mkdir a");
    QTest::newRow("pipe that nobody writes") << QStringLiteral("rm a; mkfifo a");
    QTest::newRow("endless device") << QStringLiteral("ln -s /dev/zero b; mv b a");
    QTest::newRow("dangling link") << QStringLiteral("ln -s nowhere b; mv b a");
    QTest::newRow("link to itself") << QStringLiteral("rm a; ln -s a a");
}

void TestADataManagerReloadSecondProcess::aFileReplacedBySomethingUnreadableBecomesANullEntry()
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

void TestADataManagerReloadSecondProcess::aBurstOfEditsEndsInTheLastState()
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

void TestADataManagerReloadSecondProcess::aBurstOfTruncationsEndsInTheLastState()
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

void TestADataManagerReloadSecondProcess::aBurstOfReplacementsEndsInAWholeState()
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

void TestADataManagerReloadSecondProcess::deletingAndRecreatingAgainAndAgainKeepsTheRegistryInOrder()
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

void TestADataManagerReloadSecondProcess::manyFilesAtOnce()
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

void TestADataManagerReloadSecondProcess::aDirectoryRemovedAsAWholeEmptiesTheStore()
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

void TestADataManagerReloadSecondProcess::theFilesOfASecondScanAreNotFollowed()
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

void TestADataManagerReloadSecondProcess::theOldSourceOfAProfileIsNoLongerFollowed()
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
void TestADataManagerReloadSecondProcess::aSaveOverTheWatchedSourceIsReloaded()
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

void TestADataManagerReloadSecondProcess::theTargetOfASaveIsNotFollowed()
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

void TestADataManagerReloadSecondProcess::aRelativeNameIsFollowed()
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

void TestADataManagerReloadSecondProcess::aLinkedFileIsFollowed()
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

void TestADataManagerReloadSecondProcess::theTreeFollowsASecondProcess()
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

void TestADataManagerReloadSecondProcess::aManagerDestroyedWithEventsUnderwayIsGone()
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

QTEST_GUILESS_MAIN(TestADataManagerReloadSecondProcess)
#include "tst_adatamanager_reload_secondprocess.moc"
