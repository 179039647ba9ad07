#include "datamanager/adatamanager.h"

#include "channelprofiles.h"

#include <QtTest/QtTest>

using namespace registrytest;

namespace {

// The tree below the "(profiles)" node, depth first, each node as its label.
QStringList labelsBelowGroup(const ADataManager *manager)
{
    QStringList labels;
    AChannelInfo *root = manager->getChannelInfoRoot();
    for (int row = 0; row < root->childCount(); ++row)
        for (const auto &node : root->child(row)->channels(0))
            if (node.first != root->child(row))
                labels << node.first->label();
    return labels;
}

} // namespace

class TestADataManagerChannels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUnbuiltTreeFindsNothingButTheRoot();
    void anUnbuiltTreeDoesNotFollowTheProfiles();
    void clearingAnUnbuiltTreeDoesNotArmIt();

    // building
    void buildingWithoutProfilesMakesTheEmptyGroup();
    void theGroupNodeIsPlain();
    void profilesHangBelowTheGroupByAscendingId();
    void aProfileNodeShowsItsProfile();
    void mirrorsAreExpandedAndDefinitionsAreNot();
    void theFirstBuildSignalsOnce();
    void everyLaterBuildSignalsTwice();
    void theRootIsNeverReplaced();
    void buildingReplacesTheGroupNode();
    void buildingTwiceLeavesOneGroupAndOneConnection();
    void theFirstBuildArmsAtItsEnd();
    void aBuildWithinTheFirstBuildLeavesOneGroupAndOneConnection();
    void profilesOfNoUseMakeNoNode();

    // following the profiles
    void rebuildsPerOperation_data();
    void rebuildsPerOperation();
    void aRebuildIsDoneBeforeTheOperationReturns();
    void aReceiverConnectedBeforeTheFirstBuildSeesTheOldTree();

    // clearing
    void clearingLeavesTheRootAlone();
    void aClearedTreeIsBuiltAgainByTheNextChange();
    void aClearedTreeIsBuiltAgainByHand();
    void clearingTwiceSignalsTwice();
    void nodesOfAnApplicationSurvive();
};

void TestADataManagerChannels::anUnbuiltTreeFindsNothingButTheRoot()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QVERIFY(profile);
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("a")));
    QVERIFY(!registry->getChannelInfoForProfile(QString()));
    QVERIFY(!registry->getChannelInfoForProfile(profile));
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("A")));
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("(profiles)")));
    QCOMPARE(registry->getChannelInfoForName(QString()), registry->getChannelInfoRoot());
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 0);
}

void TestADataManagerChannels::anUnbuiltTreeDoesNotFollowTheProfiles()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry.add(QStringLiteral("a"), QStringLiteral("B"));
    profile = registry->getProfileForId(QStringLiteral("a"));
    registry.updateFile(profile->source());
    registry->removeProfile(registry->getProfileForId(QStringLiteral("a")));
    registry->clearProfiles();
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("profiles"), 5));
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 0);
}

void TestADataManagerChannels::clearingAnUnbuiltTreeDoesNotArmIt()
{
    Registry registry;
    registry->clearChannelInfoData();
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("channels")});
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("profiles")});
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 0);
    // And the first build is still a first one.
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("channels")});
}

void TestADataManagerChannels::buildingWithoutProfilesMakesTheEmptyGroup()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 1);
    QCOMPARE(registry->getChannelInfoRoot()->child(0)->childCount(), 0);
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("a")));
}

void TestADataManagerChannels::theGroupNodeIsPlain()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    AChannelInfo *root = registry->getChannelInfoRoot();
    QCOMPARE(root->childCount(), 1);
    const AChannelInfo *group = root->child(0);
    QCOMPARE(group->parent(), root);
    QCOMPARE(group->type(), AChannelInfo::Generic);
    QVERIFY(group->beginFrequency().isNull());
    QVERIFY(group->endFrequency().isNull());
    QVERIFY(group->label().isEmpty());
    QVERIFY(!group->selectable());
    QCOMPARE(profileId(group), QString());
    // The group's name is a key and no label.
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("(profiles)")));
}

void TestADataManagerChannels::profilesHangBelowTheGroupByAscendingId()
{
    Registry registry;
    for (const char *id : {"b", "a:x", "Z", "10", "9", "a"})
        QVERIFY(registry.add(QLatin1String(id), QStringLiteral("label of ") + QLatin1String(id)));
    registry->createChannelInfoFromProfiles();
    AChannelInfo *group = registry->getChannelInfoRoot()->child(0);
    QStringList found;
    for (int row = 0; row < group->childCount(); ++row)
        found << profileId(group->child(row));
    QCOMPARE(found, (QStringList{QStringLiteral("10"), QStringLiteral("9"), QStringLiteral("Z"), QStringLiteral("a"),
                                 QStringLiteral("a:x"), QStringLiteral("b")}));
}

void TestADataManagerChannels::aProfileNodeShowsItsProfile()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"), channels(range(QStringLiteral("R"))));
    registry->createChannelInfoFromProfiles();
    AChannelInfo *group = registry->getChannelInfoRoot()->child(0);
    QCOMPARE(group->childCount(), 1);
    AChannelInfo *node = group->child(0);
    QCOMPARE(node->parent(), group);
    QCOMPARE(node->label(), QStringLiteral("A"));
    QCOMPARE(node->beginFrequency(), megahertz(100));
    QCOMPARE(node->endFrequency(), megahertz(200));
    QVERIFY(node->selectable());
    QCOMPARE(node->childCount(), 1);
    QCOMPARE(node->child(0)->label(), QStringLiteral("R"));
    QCOMPARE(profileId(node->child(0)), QString());
}

void TestADataManagerChannels::mirrorsAreExpandedAndDefinitionsAreNot()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"),
                 channels(QStringLiteral("<mirror>50 MHz</mirror><channels width=\"1 MHz\" count=\"10\"/>")));
    registry->createChannelInfoFromProfiles();
    AChannelInfo *group = registry->getChannelInfoRoot()->child(0);
    QCOMPARE(group->childCount(), 2);
    for (int row = 0; row < 2; ++row) {
        QCOMPARE(profileId(group->child(row)), QStringLiteral("a"));
        QCOMPARE(group->child(row)->channelDefinitions().size(), 1);
        QCOMPARE(group->child(row)->childCount(), 0);
        QVERIFY(group->child(row)->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong() == 0);
    }
    QCOMPARE(group->child(0)->beginFrequency(), megahertz(150));
    QCOMPARE(group->child(1)->beginFrequency(), megahertz(100));
}

void TestADataManagerChannels::theFirstBuildSignalsOnce()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::channelInfoDataChanged, this, [&] {
        ++calls;
        QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList{QStringLiteral("A")});
        QVERIFY(registry->getChannelInfoForProfile(QStringLiteral("a")));
    });
    registry->createChannelInfoFromProfiles();
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("channels")});
}

void TestADataManagerChannels::everyLaterBuildSignalsTwice()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    registry.takeLog();
    QList<int> groups;
    QList<bool> found;
    connect(registry.manager.get(), &ADataManager::channelInfoDataChanged, this, [&] {
        groups << registry->getChannelInfoRoot()->childCount();
        found << (registry->getChannelInfoForProfile(QStringLiteral("a")) != nullptr);
    });
    registry->createChannelInfoFromProfiles();
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("channels"), 4));
    QCOMPARE(groups, (QList<int>{0, 1, 0, 1}));
    QCOMPARE(found, (QList<bool>{false, true, false, true}));
}

void TestADataManagerChannels::theRootIsNeverReplaced()
{
    Registry registry;
    const AChannelInfo *root = registry->getChannelInfoRoot();
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoRoot(), root);
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QCOMPARE(registry->getChannelInfoRoot(), root);
    registry->clearChannelInfoData();
    QCOMPARE(registry->getChannelInfoRoot(), root);
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoRoot(), root);
}

void TestADataManagerChannels::buildingReplacesTheGroupNode()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    registry->getChannelInfoRoot()->child(0)->setData(AChannelInfo::ColumnName, QStringLiteral("marked"));
    QVERIFY(registry->getChannelInfoForName(QStringLiteral("marked")));
    registry->createChannelInfoFromProfiles();
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("marked")));
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 1);
}

void TestADataManagerChannels::buildingTwiceLeavesOneGroupAndOneConnection()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    registry->createChannelInfoFromProfiles();
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 1);
    registry.takeLog();
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QCOMPARE(registry.takeLog(),
             (QStringList{QStringLiteral("profiles"), QStringLiteral("channels"), QStringLiteral("channels")}));
    QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList{QStringLiteral("A")});
}

// The signal of the first build is out before the tree follows the profiles.
void TestADataManagerChannels::theFirstBuildArmsAtItsEnd()
{
    Registry registry;
    bool added = false;
    connect(registry.manager.get(), &ADataManager::channelInfoDataChanged, this, [&] {
        if (added)
            return;
        added = true;
        registry.add(QStringLiteral("a"), QStringLiteral("A"));
        QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList());
    });
    registry->createChannelInfoFromProfiles();
    QVERIFY(added);
    QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList());
    QCOMPARE(registry.takeLog(), (QStringList{QStringLiteral("channels"), QStringLiteral("profiles")}));

    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QCOMPARE(labelsBelowGroup(registry.manager.get()), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

void TestADataManagerChannels::aBuildWithinTheFirstBuildLeavesOneGroupAndOneConnection()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    bool nested = false;
    connect(registry.manager.get(), &ADataManager::channelInfoDataChanged, this, [&] {
        if (nested)
            return;
        nested = true;
        registry->createChannelInfoFromProfiles();
    });
    registry.takeLog();
    registry->createChannelInfoFromProfiles();
    QVERIFY(nested);
    // The inner one is a first build too, and replaces the node that the outer one has made.
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("channels"), 2));
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 1);
    QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList{QStringLiteral("A")});

    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QCOMPARE(registry.takeLog(),
             (QStringList{QStringLiteral("profiles"), QStringLiteral("channels"), QStringLiteral("channels")}));
    QCOMPARE(labelsBelowGroup(registry.manager.get()), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

void TestADataManagerChannels::profilesOfNoUseMakeNoNode()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    registry.add(QStringLiteral("c"), QStringLiteral("C"));
    registry.makeNull(QStringLiteral("a"));
    const QString invalid = registry.write(QStringLiteral("b.profile"), QStringLiteral("no profile"));
    registry.updateFile(invalid);
    QVERIFY(!registry->getProfileForId(QStringLiteral("b"))->isValid());
    registry->createChannelInfoFromProfiles();
    QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList{QStringLiteral("C")});
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("a")));
    QVERIFY(!registry->getChannelInfoForProfile(registry->getProfileForId(QStringLiteral("a"))));
    QVERIFY(!registry->getChannelInfoForProfile(registry->getProfileForId(QStringLiteral("b"))));
}

void TestADataManagerChannels::rebuildsPerOperation_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<QStringList>("labels");
    const QString p = QStringLiteral("profiles");
    const QString c = QStringLiteral("channels");
    QTest::newRow("add a file") << QStringLiteral("add") << QStringList{p, c, c}
                                << QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("New")};
    QTest::newRow("add three files") << QStringLiteral("add three") << QStringList{p, c, c, p, c, c, p, c, c}
                                     << QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("0"),
                                                    QStringLiteral("1"), QStringLiteral("2")};
    QTest::newRow("refused file") << QStringLiteral("refused") << QStringList()
                                  << QStringList{QStringLiteral("A"), QStringLiteral("B")};
    QTest::newRow("scan") << QStringLiteral("scan") << QStringList{p, c, c}
                          << QStringList{QStringLiteral("A"), QStringLiteral("B")};
    QTest::newRow("scan without profiles")
        << QStringLiteral("empty scan") << QStringList() << QStringList{QStringLiteral("A"), QStringLiteral("B")};
    QTest::newRow("remove") << QStringLiteral("remove") << QStringList{p, c, c} << QStringList{QStringLiteral("B")};
    QTest::newRow("remove null") << QStringLiteral("remove null") << QStringList()
                                 << QStringList{QStringLiteral("A"), QStringLiteral("B")};
    QTest::newRow("clear") << QStringLiteral("clear") << QStringList{p, c, c} << QStringList();
    QTest::newRow("save") << QStringLiteral("save") << QStringList()
                          << QStringList{QStringLiteral("A"), QStringLiteral("B")};
    QTest::newRow("changed file") << QStringLiteral("changed") << QStringList{p, c, c}
                                  << QStringList{QStringLiteral("Changed"), QStringLiteral("B")};
    QTest::newRow("deleted file") << QStringLiteral("deleted") << QStringList{p, c, c, p, c, c}
                                  << QStringList{QStringLiteral("B")};
    QTest::newRow("unknown file") << QStringLiteral("unknown") << QStringList()
                                  << QStringList{QStringLiteral("A"), QStringLiteral("B")};
}

void TestADataManagerChannels::rebuildsPerOperation()
{
    QFETCH(QString, operation);
    QFETCH(QStringList, log);
    QFETCH(QStringList, labels);
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    registry->createChannelInfoFromProfiles();
    registry.takeLog();

    const QString fileName = profile->source();
    if (operation == QLatin1String("add")) {
        registry.add(QStringLiteral("c"), QStringLiteral("New"));
    } else if (operation == QLatin1String("add three")) {
        for (int i = 0; i < 3; ++i)
            registry.add(QStringLiteral("new%1").arg(i), QString::number(i));
    } else if (operation == QLatin1String("refused")) {
        registry->addProfileFile(registry.write(QStringLiteral("x"), QStringLiteral("none")), AProfile::UserProfile);
    } else if (operation == QLatin1String("scan")) {
        QCOMPARE(registry->addProfilePath(registry.path(QString()), AProfile::UserProfile), 2);
    } else if (operation == QLatin1String("empty scan")) {
        QCOMPARE(registry->addProfilePath(registry.path(QStringLiteral("none")), AProfile::UserProfile), 0);
    } else if (operation == QLatin1String("remove")) {
        registry->removeProfile(profile);
    } else if (operation == QLatin1String("remove null")) {
        registry->removeProfile(nullptr);
    } else if (operation == QLatin1String("clear")) {
        registry->clearProfiles();
    } else if (operation == QLatin1String("save")) {
        profile->setLabel(QStringLiteral("Saved"), QString());
        QVERIFY(registry->saveProfile(profile, registry.path(QString()), QStringLiteral("/none")));
    } else if (operation == QLatin1String("changed")) {
        writeText(fileName, profileText(QStringLiteral("a"), QStringLiteral("Changed")));
        registry.updateFile(fileName);
    } else if (operation == QLatin1String("deleted")) {
        QVERIFY(QFile::remove(fileName));
        registry.updateFile(fileName);
    } else {
        QCOMPARE(operation, QStringLiteral("unknown"));
        registry.updateFile(registry.path(QStringLiteral("unknown")));
    }
    // Receivers in the order of their connection: this log first, then the tree.
    QCOMPARE(registry.takeLog(), log);
    QCOMPARE(labelsBelowGroup(registry.manager.get()), labels);
}

void TestADataManagerChannels::aRebuildIsDoneBeforeTheOperationReturns()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    // Connected after the tree's own connection, so the tree is new already.
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(registry->getChannelInfoForProfile(QStringLiteral("a")));
    });
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QCOMPARE(calls, 1);
    registry.takeLog();
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerChannels::aReceiverConnectedBeforeTheFirstBuildSeesTheOldTree()
{
    Registry registry;
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::profilesChanged, this, [&] {
        ++calls;
        QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("a")));
    });
    registry->createChannelInfoFromProfiles();
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QCOMPARE(calls, 1);
    QVERIFY(registry->getChannelInfoForProfile(QStringLiteral("a")));
}

void TestADataManagerChannels::clearingLeavesTheRootAlone()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    registry.takeLog();
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::channelInfoDataChanged, this, [&] {
        ++calls;
        QCOMPARE(registry->getChannelInfoRoot()->childCount(), 0);
    });
    registry->clearChannelInfoData();
    QCOMPARE(calls, 1);
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("channels")});
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("a")));
    QVERIFY(!registry->getChannelInfoForProfile(profile));
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("A")));
    QCOMPARE(registry->getChannelInfoForName(QString()), registry->getChannelInfoRoot());
    QCOMPARE(registry->getProfiles(), QList<AProfile *>{profile});
}

void TestADataManagerChannels::aClearedTreeIsBuiltAgainByTheNextChange()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    registry->clearChannelInfoData();
    registry.takeLog();
    registry.add(QStringLiteral("b"), QStringLiteral("B"));
    QCOMPARE(registry.takeLog(),
             (QStringList{QStringLiteral("profiles"), QStringLiteral("channels"), QStringLiteral("channels")}));
    QCOMPARE(labelsBelowGroup(registry.manager.get()), (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

void TestADataManagerChannels::aClearedTreeIsBuiltAgainByHand()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    registry->clearChannelInfoData();
    registry.takeLog();
    // It was built before, so this clears first.
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("channels"), 2));
    QCOMPARE(labelsBelowGroup(registry.manager.get()), QStringList{QStringLiteral("A")});
}

void TestADataManagerChannels::clearingTwiceSignalsTwice()
{
    Registry registry;
    registry->createChannelInfoFromProfiles();
    registry.takeLog();
    registry->clearChannelInfoData();
    registry->clearChannelInfoData();
    QCOMPARE(registry.takeLog(), repeated(QStringLiteral("channels"), 2));
}

void TestADataManagerChannels::nodesOfAnApplicationSurvive()
{
    Registry registry;
    AChannelInfo *root = registry->getChannelInfoRoot();
    auto *own = new AChannelInfo(root, AChannelInfo::Provider, megahertz(1), megahertz(2), QStringLiteral("Own"), true);
    root->appendChild(own);
    registry->createChannelInfoFromProfiles();
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(root->child(0), own);
    registry->createChannelInfoFromProfiles();
    QCOMPARE(root->childCount(), 2);
    registry->clearChannelInfoData();
    QCOMPARE(root->childCount(), 1);
    QCOMPARE(root->child(0), own);
    QCOMPARE(registry->getChannelInfoForName(QStringLiteral("Own")), own);
}

QTEST_GUILESS_MAIN(TestADataManagerChannels)
#include "tst_adatamanager_channels.moc"
