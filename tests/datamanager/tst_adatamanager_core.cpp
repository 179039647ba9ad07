#include "datamanager/adatamanager.h"

#include "channel/achannelinfo.h"
#include "registryfixture.h"

#include <QtTest/QtTest>

using namespace registrytest;

class TestADataManagerCore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void instanceIsMadeOnFirstUseAndKept();
    void deletingTheInstanceGivesAFreshOne();
    void aManagerOfOnesOwnIsNotTheInstance();
    void destroyingAnyManagerForgetsTheInstance();
    void theInstanceStandsUntilItsLastSignalIsOut();
    void aFreshManagerIsEmpty();
    void aFreshRootIsAPlainEmptyNode();
    void aManagerIsAnObjectAndOnePointer();
    void signalsAndSlotsHaveTheirSignatures_data();
    void signalsAndSlotsHaveTheirSignatures();
    void onlyTheTreeBuilderIsAPublicSlot();
    void clearingEmptyLimitsSignals();
    void clearingEmptyCalibrationsIsSilent_data();
    void clearingEmptyCalibrationsIsSilent();
    void clearingAnEmptyTreeSignals();
    void destructionClearsLimitsThenTheTree();
    void destructionOfAnEmptyManagerSignalsToo();
    void destructionFollowsTheStateStepByStep();
    void destructionLeavesTheProfilesAlone();
    void destructionAfterClearProfilesLeavesNothing();
    void destructionEndsEveryWatch();
    void watchingTwiceLeavesOneWatch();
    void watchedNamesAreCaseSensitive();
    void aFileThatDoesNotExistIsNotWatched();
    void anEmptyNameIsNotWatched();
    void changesOfAFileThatNoStoreKnowsAreIgnored();
    void aWatchedNameIsTakenAsItWasGiven();
    void aFailureThrowsNothingAndLeavesTheStoreInOrder();
};

void TestADataManagerCore::instanceIsMadeOnFirstUseAndKept()
{
    ADataManager *first = ADataManager::instance();
    QVERIFY(first);
    QCOMPARE(ADataManager::instance(), first);
    QVERIFY(!first->parent());
    delete first;
}

void TestADataManagerCore::deletingTheInstanceGivesAFreshOne()
{
    QTemporaryDir directory;
    const QString fileName = directory.filePath(QStringLiteral("a.profile"));
    writeText(fileName, profileText(QStringLiteral("a"), QStringLiteral("A")));

    QPointer<ADataManager> first = ADataManager::instance();
    QVERIFY(first->addProfileFile(fileName, AProfile::UserProfile));
    first->createChannelInfoFromProfiles();
    const std::unique_ptr<AProfile> survivor(first->getProfileForId(QStringLiteral("a")));
    delete first.data();

    ADataManager *second = ADataManager::instance();
    QVERIFY(!first);
    QVERIFY(second->getProfiles().isEmpty());
    QVERIFY(second->getChannelInfoRoot());
    QCOMPARE(second->getChannelInfoRoot()->childCount(), 0);

    // Not armed either: the connection was the first one's.
    int rebuilds = 0;
    connect(second, &ADataManager::channelInfoDataChanged, this, [&rebuilds] { ++rebuilds; });
    second->clearProfiles();
    QCOMPARE(rebuilds, 0);
    second->disconnect(this);
    delete second;
}

void TestADataManagerCore::aManagerOfOnesOwnIsNotTheInstance()
{
    ADataManager own;
    ADataManager *instance = ADataManager::instance();
    QVERIFY(instance != &own);
    QCOMPARE(ADataManager::instance(), instance);
    delete instance;
}

// The destructor does not ask whose pointer it is that it sets to null.
void TestADataManagerCore::destroyingAnyManagerForgetsTheInstance()
{
    const std::unique_ptr<ADataManager> first(ADataManager::instance());
    {
        ADataManager own;
    }
    const std::unique_ptr<ADataManager> second(ADataManager::instance());
    QVERIFY(second.get() != first.get());
}

void TestADataManagerCore::theInstanceStandsUntilItsLastSignalIsOut()
{
    ADataManager *manager = ADataManager::instance();
    QList<ADataManager *> seen;
    connect(manager, &ADataManager::limitDataChanged, this, [&seen] { seen << ADataManager::instance(); });
    connect(manager, &ADataManager::channelInfoDataChanged, this, [&seen] { seen << ADataManager::instance(); });
    delete manager;
    QCOMPARE(seen, (QList<ADataManager *>{manager, manager}));
}

void TestADataManagerCore::aFreshManagerIsEmpty()
{
    const ADataManager manager;
    QVERIFY(!manager.parent());
    QVERIFY(manager.getProfiles().isEmpty());
    QVERIFY(manager.getChannelInfoRoot());
    QCOMPARE(manager.getChannelInfoRoot()->childCount(), 0);
    QVERIFY(!manager.getProfileForId(QString()));
    QVERIFY(!manager.getProfileForLabel(QString(), true));
    QVERIFY(!manager.getProfileForLabel(QString(), false));
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerCore::aFreshRootIsAPlainEmptyNode()
{
    const ADataManager manager;
    const AChannelInfo *root = manager.getChannelInfoRoot();
    QVERIFY(!root->parent());
    QCOMPARE(root->type(), AChannelInfo::Generic);
    QVERIFY(root->beginFrequency().isNull());
    QVERIFY(root->endFrequency().isNull());
    QVERIFY(root->label().isEmpty());
    QVERIFY(!root->selectable());
}

void TestADataManagerCore::aManagerIsAnObjectAndOnePointer()
{
    QCOMPARE(sizeof(ADataManager), sizeof(QObject) + sizeof(void *));
    QVERIFY((std::is_base_of<QObject, ADataManager>::value));
}

void TestADataManagerCore::signalsAndSlotsHaveTheirSignatures_data()
{
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<int>("methodType");
    QTest::addColumn<int>("access");
    QTest::addColumn<QList<QByteArray>>("parameters");
    const auto row = [](const char *signature, QMetaMethod::MethodType type, QMetaMethod::Access access,
                        const QList<QByteArray> &parameters = {}) {
        QTest::newRow(signature) << QByteArray(signature) << int(type) << int(access) << parameters;
    };
    row("channelInfoDataChanged()", QMetaMethod::Signal, QMetaMethod::Public);
    row("calibrationDataChanged(ACalibrationData::CalibrationType)", QMetaMethod::Signal, QMetaMethod::Public,
        {"type"});
    row("limitDataChanged()", QMetaMethod::Signal, QMetaMethod::Public);
    row("profilesChanged()", QMetaMethod::Signal, QMetaMethod::Public);
    row("error(QString)", QMetaMethod::Signal, QMetaMethod::Public, {"errorMsg"});
    row("createChannelInfoFromProfiles()", QMetaMethod::Slot, QMetaMethod::Public);
    row("updateFile(QString)", QMetaMethod::Slot, QMetaMethod::Protected, {"filename"});
    row("watchFile(QString)", QMetaMethod::Slot, QMetaMethod::Protected, {"filename"});
}

void TestADataManagerCore::signalsAndSlotsHaveTheirSignatures()
{
    QFETCH(QByteArray, signature);
    QFETCH(int, methodType);
    QFETCH(int, access);
    QFETCH(QList<QByteArray>, parameters);
    const QMetaObject &meta = ADataManager::staticMetaObject;
    const QMetaMethod method = meta.method(meta.indexOfMethod(signature));
    QVERIFY(method.isValid());
    QCOMPARE(int(method.methodType()), methodType);
    QCOMPARE(int(method.access()), access);
    QCOMPARE(method.parameterNames(), parameters);
    QCOMPARE(QByteArray(method.typeName()), QByteArray("void"));
}

void TestADataManagerCore::onlyTheTreeBuilderIsAPublicSlot()
{
    const QMetaObject &meta = ADataManager::staticMetaObject;
    QList<QByteArray> publicSlots;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        if (meta.method(i).methodType() == QMetaMethod::Slot && meta.method(i).access() == QMetaMethod::Public)
            publicSlots << meta.method(i).methodSignature();
    QCOMPARE(publicSlots, QList<QByteArray>{"createChannelInfoFromProfiles()"});
}

void TestADataManagerCore::clearingEmptyLimitsSignals()
{
    Registry registry;
    registry->clearLimitData();
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("limits")});
    registry->clearLimitData();
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("limits")});
}

void TestADataManagerCore::clearingEmptyCalibrationsIsSilent_data()
{
    QTest::addColumn<int>("type");
    for (int type : {0, 1, 2, 3, 5, 6})
        QTest::newRow(qPrintable(QString::number(type))) << type;
}

void TestADataManagerCore::clearingEmptyCalibrationsIsSilent()
{
    QFETCH(int, type);
    Registry registry;
    registry->clearCalibrationData(ACalibrationData::CalibrationType(type));
    registry->clearCalibrationData(ACalibrationData::CalibrationType(type));
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCore::clearingAnEmptyTreeSignals()
{
    Registry registry;
    registry->clearChannelInfoData();
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("channels")});
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 0);
}

void TestADataManagerCore::destructionClearsLimitsThenTheTree()
{
    Registry registry;
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("A")));
    registry->createChannelInfoFromProfiles();
    registry.takeLog();
    registry.manager.reset();
    QCOMPARE(registry.takeLog(), (QStringList{QStringLiteral("limits"), QStringLiteral("channels")}));
}

void TestADataManagerCore::destructionOfAnEmptyManagerSignalsToo()
{
    Registry registry;
    registry.manager.reset();
    QCOMPARE(registry.takeLog(), (QStringList{QStringLiteral("limits"), QStringLiteral("channels")}));
}

void TestADataManagerCore::destructionFollowsTheStateStepByStep()
{
    Registry registry;
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("A")));
    registry->createChannelInfoFromProfiles();

    ADataManager *manager = registry.manager.get();
    int limitSignals = 0;
    int channelSignals = 0;
    connect(manager, &ADataManager::limitDataChanged, this, [&] {
        ++limitSignals;
        QCOMPARE(manager->getChannelInfoRoot()->childCount(), 1);
        QVERIFY(manager->getChannelInfoForProfile(QStringLiteral("a")));
        QCOMPARE(manager->getProfiles().size(), 1);
    });
    connect(manager, &ADataManager::channelInfoDataChanged, this, [&] {
        ++channelSignals;
        QVERIFY(manager->getChannelInfoRoot());
        QCOMPARE(manager->getChannelInfoRoot()->childCount(), 0);
        QVERIFY(!manager->getChannelInfoForProfile(QStringLiteral("a")));
        QCOMPARE(manager->getProfiles().size(), 1);
    });
    registry.manager.reset();
    QCOMPARE(limitSignals, 1);
    QCOMPARE(channelSignals, 1);
}

void TestADataManagerCore::destructionLeavesTheProfilesAlone()
{
    Registry registry;
    const QPointer<AProfile> first = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    const QPointer<AProfile> second = registry.add(QStringLiteral("b"), QStringLiteral("B"));
    registry.takeLog();
    registry.manager.reset();
    QVERIFY(!registry.takeLog().contains(QStringLiteral("profiles")));
    settle();
    runDeferredDeletes();
    QVERIFY(first);
    QVERIFY(second);
    QCOMPARE(first->label(QString()), QStringLiteral("A"));
    QVERIFY(!first->parent());
}

void TestADataManagerCore::destructionAfterClearProfilesLeavesNothing()
{
    Registry registry;
    const QPointer<AProfile> profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QVERIFY(profile);
    registry->clearProfiles();
    registry.manager.reset();
    runDeferredDeletes();
    QVERIFY(!profile);
}

void TestADataManagerCore::destructionEndsEveryWatch()
{
    Registry registry;
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("A")));
    registry.watchFile(registry.write(QStringLiteral("other"), QStringLiteral("text")));
    QCOMPARE(watchedInodes().size(), 2);
    registry.manager.reset();
    QVERIFY(watchedInodes().isEmpty());
    // Nothing is left that could receive this.
    registry.shell(QStringLiteral("rm a.profile other"));
    settle();
}

void TestADataManagerCore::watchingTwiceLeavesOneWatch()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QVERIFY(profile);
    registry.watchFile(profile->source());
    registry.watchFile(profile->source());
    QCOMPARE(watchedInodes().size(), 1);
    registry.takeLog();

    registry.updateFile(profile->source());
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("profiles")});

    // One removal ends it.
    registry->removeProfile(registry->getProfileForId(QStringLiteral("a")));
    QVERIFY(watchedInodes().isEmpty());
    QVERIFY(!isWatched(profile->source()));
}

void TestADataManagerCore::watchedNamesAreCaseSensitive()
{
    Registry registry;
    const QString lower = registry.write(QStringLiteral("a.profile"), QStringLiteral("1"));
    const QString upper = registry.write(QStringLiteral("A.PROFILE"), QStringLiteral("2"));
    registry.watchFile(lower);
    QVERIFY(isWatched(lower));
    QVERIFY(!isWatched(upper));
    registry.watchFile(upper);
    QVERIFY(isWatched(lower));
    QVERIFY(isWatched(upper));
}

void TestADataManagerCore::aFileThatDoesNotExistIsNotWatched()
{
    Registry registry;
    const QString fileName = registry.path(QStringLiteral("later.profile"));
    registry.watchFile(fileName);
    QVERIFY(watchedInodes().isEmpty());
    registry.write(QStringLiteral("later.profile"), QStringLiteral("text"));
    settle();
    QVERIFY(!isWatched(fileName));
    // The failed attempt has not made the name known.
    registry.watchFile(fileName);
    QVERIFY(isWatched(fileName));
}

void TestADataManagerCore::anEmptyNameIsNotWatched()
{
    Registry registry;
    registry.watchFile(QString());
    registry.updateFile(QString());
    QVERIFY(watchedInodes().isEmpty());
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCore::changesOfAFileThatNoStoreKnowsAreIgnored()
{
    Registry registry;
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("A")));
    registry->createChannelInfoFromProfiles();
    registry.watchFile(registry.write(QStringLiteral("other"), QStringLiteral("text")));
    registry.takeLog();
    registry.shell(QStringLiteral("echo more >> other"));
    settle();
    registry.shell(QStringLiteral("rm other"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("a|A")});
}

void TestADataManagerCore::aWatchedNameIsTakenAsItWasGiven()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    QVERIFY(profile);
    registry.takeLog();
    registry.updateFile(registry.path(QStringLiteral("./a.profile")));
    registry.updateFile(registry.path(QStringLiteral("A.profile")));
    registry.updateFile(registry.path(QStringLiteral("a.profile ")));
    registry.updateFile(QStringLiteral("a.profile"));
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry->getProfileForId(QStringLiteral("a")), profile);
}

void TestADataManagerCore::aFailureThrowsNothingAndLeavesTheStoreInOrder()
{
    Registry registry;
    const QString missing = registry.path(QStringLiteral("missing"));
    for (int i = 0; i < 3; ++i)
        QVERIFY(!registry->addProfileFile(missing, AProfile::UserProfile));
    QCOMPARE(registry.takeLog(),
             repeated(QStringLiteral("error: Could not create profile from file '%1'").arg(missing), 3));
    QVERIFY(registry.add(QStringLiteral("a"), QStringLiteral("A")));
    QCOMPARE(registry.takeLog(), QStringList{QStringLiteral("profiles")});
}

QTEST_GUILESS_MAIN(TestADataManagerCore)
#include "tst_adatamanager_core.moc"
