#include "datamanager/adatamanager.h"

#include "channelprofiles.h"

#include <QtTest/QtTest>

using namespace registrytest;

class TestADataManagerChannelsLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // looking up by name
    void namesAreFound_data();
    void namesAreFound();
    void theEmptyNameIsTheRoot();
    void anEarlierQualifiedNameBeatsALaterLabel();
    void anEarlierLabelBeatsALaterQualifiedName();
    void amongEqualLabelsTheFirstByDepthWins();
    void qualifiedNamesBelowADefaultProfileBeginBelowIt();
    void allNodesBelowTheRootTakePart();

    // looking up by profile
    void profilesAreFoundByTheirId();
    void emptyAndNullProfilesAreNotFound();
    void aDerivedProfileFindsItsBase_data();
    void aDerivedProfileFindsItsBase();
    void anIdAsTextIsNotCut();
    void aMirroredProfileFindsTheCopyFirst();
    void aProfileNeedNotBeHeldToBeFound();
    void onlyTheProfilesGroupIsSearchedForProfiles();
    void aRemovedProfileIsNoLongerFound();
};

void TestADataManagerChannelsLookup::namesAreFound_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("label"); // of the node found
    const auto row = [](const char *name, const char *label) {
        QTest::newRow(name) << QString::fromUtf8(name) << QString::fromUtf8(label);
    };
    row("Alpha", "Alpha");
    row("Inner", "Inner");
    row("Alpha Inner", "Inner");
    row("Deep", "Deep");
    row("Alpha Inner Deep", "Deep");
    row("Inner Deep", "none");
    row("Beta", "Beta");
    row("alpha", "none");
    row("ALPHA INNER", "none");
    row("Alpha ", "none");
    row(" Alpha", "none");
    row("Alpha  Inner", "none");
    row("Alph", "none");
    row("a", "none");
    row("Alpha (100.000000 MHz - 200.000000 MHz)", "none");
}

void TestADataManagerChannelsLookup::namesAreFound()
{
    QFETCH(QString, name);
    QFETCH(QString, label);
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("Alpha"),
                 channels(range(QStringLiteral("Inner"), range(QStringLiteral("Deep")))));
    registry.add(QStringLiteral("b"), QStringLiteral("Beta"));
    registry->createChannelInfoFromProfiles();
    const AChannelInfo *found = registry->getChannelInfoForName(name);
    QCOMPARE(found ? found->label() : QStringLiteral("none"), label);
}

void TestADataManagerChannelsLookup::theEmptyNameIsTheRoot()
{
    Registry registry;
    const AChannelInfo *root = registry->getChannelInfoRoot();
    QCOMPARE(registry->getChannelInfoForName(QString()), root);
    registry.add(QStringLiteral("a"), QString());
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoForName(QString()), root);
    QCOMPARE(registry->getChannelInfoForName(QStringLiteral("")), root);
    registry->clearChannelInfoData();
    QCOMPARE(registry->getChannelInfoForName(QString()), root);
}

void TestADataManagerChannelsLookup::anEarlierQualifiedNameBeatsALaterLabel()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("X"), channels(range(QStringLiteral("Y"))));
    registry.add(QStringLiteral("b"), QStringLiteral("X Y"));
    registry->createChannelInfoFromProfiles();
    const AChannelInfo *found = registry->getChannelInfoForName(QStringLiteral("X Y"));
    QVERIFY(found);
    QCOMPARE(found->label(), QStringLiteral("Y"));
}

void TestADataManagerChannelsLookup::anEarlierLabelBeatsALaterQualifiedName()
{
    Registry registry;
    registry.add(QStringLiteral("b"), QStringLiteral("X"), channels(range(QStringLiteral("Y"))));
    registry.add(QStringLiteral("a"), QStringLiteral("X Y"));
    registry->createChannelInfoFromProfiles();
    const AChannelInfo *found = registry->getChannelInfoForName(QStringLiteral("X Y"));
    QVERIFY(found);
    QCOMPARE(profileId(found), QStringLiteral("a"));
}

void TestADataManagerChannelsLookup::amongEqualLabelsTheFirstByDepthWins()
{
    Registry registry;
    // Deep in the first profile comes before the top of the second.
    registry.add(QStringLiteral("a"), QStringLiteral("A"),
                 channels(range(QStringLiteral("B"), range(QStringLiteral("Same")))));
    registry.add(QStringLiteral("b"), QStringLiteral("Same"));
    registry->createChannelInfoFromProfiles();
    const AChannelInfo *found = registry->getChannelInfoForName(QStringLiteral("Same"));
    QVERIFY(found);
    QCOMPARE(found->name(false), QStringLiteral("A B Same"));
}

void TestADataManagerChannelsLookup::qualifiedNamesBelowADefaultProfileBeginBelowIt()
{
    Registry registry;
    registry.add(QStringLiteral("default-fm"), QStringLiteral("FM"),
                 channels(range(QStringLiteral("North"), range(QStringLiteral("One")))));
    registry->createChannelInfoFromProfiles();
    QVERIFY(registry->getChannelInfoForName(QStringLiteral("North One")));
    QCOMPARE(registry->getChannelInfoForName(QStringLiteral("North One"))->label(), QStringLiteral("One"));
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("FM North")));
    QCOMPARE(profileId(registry->getChannelInfoForName(QStringLiteral("FM"))), QStringLiteral("default-fm"));
}

void TestADataManagerChannelsLookup::allNodesBelowTheRootTakePart()
{
    Registry registry;
    AChannelInfo *root = registry->getChannelInfoRoot();
    auto *own = new AChannelInfo(root, AChannelInfo::Generic, megahertz(1), megahertz(2), QStringLiteral("A"), false);
    root->appendChild(own);
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    // It stands before the group of the profiles.
    QCOMPARE(registry->getChannelInfoForName(QStringLiteral("A")), own);
    delete own;
    QCOMPARE(profileId(registry->getChannelInfoForName(QStringLiteral("A"))), QStringLiteral("a"));
}

void TestADataManagerChannelsLookup::profilesAreFoundByTheirId()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("b"), channels(range(QStringLiteral("R"))));
    AProfile *second = registry.add(QStringLiteral("b"), QStringLiteral("a"));
    registry->createChannelInfoFromProfiles();
    const AChannelInfo *node = registry->getChannelInfoForProfile(QStringLiteral("a"));
    QVERIFY(node);
    QCOMPARE(node->label(), QStringLiteral("b"));
    QCOMPARE(registry->getChannelInfoForProfile(profile), node);
    QCOMPARE(registry->getChannelInfoForProfile(second)->label(), QStringLiteral("a"));
    for (const char *id : {"A", "a ", "R", "a:x", "(profiles)", "unknown"})
        QVERIFY2(!registry->getChannelInfoForProfile(QLatin1String(id)), id);
}

void TestADataManagerChannelsLookup::emptyAndNullProfilesAreNotFound()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"), channels(range(QStringLiteral("R"))));
    registry->createChannelInfoFromProfiles();
    QVERIFY(!registry->getChannelInfoForProfile(QString()));
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("")));
    QVERIFY(!registry->getChannelInfoForProfile(static_cast<const AProfile *>(nullptr)));
    const AProfile empty;
    QVERIFY(!registry->getChannelInfoForProfile(&empty));
}

void TestADataManagerChannelsLookup::aDerivedProfileFindsItsBase_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("found");
    QTest::newRow("suffix") << QStringLiteral("base:x") << QStringLiteral("base");
    QTest::newRow("two colons") << QStringLiteral("base:x:y") << QStringLiteral("base");
    QTest::newRow("empty suffix") << QStringLiteral("base:") << QStringLiteral("base");
    QTest::newRow("only a colon") << QStringLiteral(":") << QStringLiteral("none");
    QTest::newRow("empty base") << QStringLiteral(":base") << QStringLiteral("none");
    QTest::newRow("base not loaded") << QStringLiteral("other:x") << QStringLiteral("none");
    QTest::newRow("case of the base") << QStringLiteral("Base:x") << QStringLiteral("none");
    QTest::newRow("blank") << QStringLiteral("base :x") << QStringLiteral("none");
}

void TestADataManagerChannelsLookup::aDerivedProfileFindsItsBase()
{
    QFETCH(QString, id);
    QFETCH(QString, found);
    Registry registry;
    registry.add(QStringLiteral("base"), QStringLiteral("Base"));
    const QString fileName = registry.writeProfile(QStringLiteral("derived"), id, QStringLiteral("Derived"));
    QVERIFY(registry->addProfileFile(fileName, AProfile::UserProfile));
    registry->createChannelInfoFromProfiles();
    const AProfile *derived = registry->getProfileForId(id);
    QVERIFY(derived && (derived->flags() & AProfile::DerivedProfile));
    QCOMPARE(profileId(registry->getChannelInfoForProfile(derived)), found);
}

void TestADataManagerChannelsLookup::anIdAsTextIsNotCut()
{
    Registry registry;
    registry.add(QStringLiteral("base"), QStringLiteral("Base"));
    registry.add(QStringLiteral("base:x"), QStringLiteral("Derived"));
    registry->createChannelInfoFromProfiles();
    QCOMPARE(registry->getChannelInfoForProfile(QStringLiteral("base:x"))->label(), QStringLiteral("Derived"));
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("base:y")));
}

void TestADataManagerChannelsLookup::aMirroredProfileFindsTheCopyFirst()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"), channels(QStringLiteral("<mirror>50 MHz</mirror>")));
    registry->createChannelInfoFromProfiles();
    const AChannelInfo *found = registry->getChannelInfoForProfile(QStringLiteral("a"));
    QVERIFY(found);
    QCOMPARE(found->beginFrequency(), megahertz(150));
}

void TestADataManagerChannelsLookup::aProfileNeedNotBeHeldToBeFound()
{
    Registry registry;
    registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    AProfile stranger;
    stranger.setId(QStringLiteral("a"));
    QCOMPARE(profileId(registry->getChannelInfoForProfile(&stranger)), QStringLiteral("a"));
    stranger.setId(QStringLiteral("a:of mine"));
    QCOMPARE(profileId(registry->getChannelInfoForProfile(&stranger)), QStringLiteral("a"));
}

void TestADataManagerChannelsLookup::onlyTheProfilesGroupIsSearchedForProfiles()
{
    Registry registry;
    AChannelInfo *root = registry->getChannelInfoRoot();
    auto *own = new AChannelInfo(root, AChannelInfo::Generic, megahertz(1), megahertz(2), QStringLiteral("Own"), true);
    own->setData(AChannelInfo::ColumnProfileId, QStringLiteral("own"));
    root->appendChild(own);
    registry->createChannelInfoFromProfiles();
    QVERIFY(!registry->getChannelInfoForProfile(QStringLiteral("own")));

    // The group node itself is searched, and so is everything below it.
    AChannelInfo *group = root->child(1);
    group->setData(AChannelInfo::ColumnProfileId, QStringLiteral("group"));
    QCOMPARE(registry->getChannelInfoForProfile(QStringLiteral("group")), group);
}

void TestADataManagerChannelsLookup::aRemovedProfileIsNoLongerFound()
{
    Registry registry;
    AProfile *profile = registry.add(QStringLiteral("a"), QStringLiteral("A"));
    registry->createChannelInfoFromProfiles();
    QVERIFY(registry->getChannelInfoForProfile(profile));
    registry->removeProfile(profile);
    QVERIFY(!registry->getChannelInfoForProfile(profile));
    QVERIFY(!registry->getChannelInfoForName(QStringLiteral("A")));
}

QTEST_GUILESS_MAIN(TestADataManagerChannelsLookup)
#include "tst_adatamanager_channels_lookup.moc"
