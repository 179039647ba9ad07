#include "limitregistry.h"

#include <QtTest/QtTest>

using namespace registrytest;

class TestADataManagerLimitsReload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangedFileSignalsTwice();
    void aDeletedFileSignalsOnce();
    void aFailedReloadReportsAndSignalsOnce();
    void aLinkThatLeadsNowhereFailsToBeRead();
    void aFileThatIsReplacedAgainAndAgainIsFollowed();
    void aFileThatIsRewrittenInPlaceIsFollowed();
    void aNameThatNoStoreKnowsIsIgnored();
    void theLimitBranchComesBeforeTheProfileBranch();
    void internalLimitsDoNotOutliveAnUpdateUnderTheirName();
};

void TestADataManagerLimitsReload::aChangedFileSignalsTwice()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    registry.takeLog();
    registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("b")}));
    registry.updateFile(name);
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, kLimits}));
    QCOMPARE(registry->getLimitNames(), QStringList{QStringLiteral("b")});
}

void TestADataManagerLimitsReload::aDeletedFileSignalsOnce()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    const QPointer<const ALimit> limit = registry->getLimitForName(QStringLiteral("a"));
    registry->addInternalLimit(namedLimit(QStringLiteral("kept")));
    registry.takeLog();
    registry.shell(QStringLiteral("rm a.xml"));
    settle();
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QCOMPARE(registry->getLimitNames(), QStringList{QStringLiteral("kept")});
    QVERIFY(!limit);
    // The name is forgotten.
    registry.updateFile(name);
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerLimitsReload::aFailedReloadReportsAndSignalsOnce()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    const ALimit *limit = registry->getLimitForName(QStringLiteral("a"));
    registry.takeLog();
    registry.shell(QStringLiteral("printf '<data>' > other; mv other a.xml"));
    settle();
    QCOMPARE(registry.takeLog(), (QStringList{errorText(name), kLimits}));
    QCOMPARE(registry->getLimitForName(QStringLiteral("a")), limit);
    QVERIFY(!isWatched(name)); // the watch went with the old file, and only a success brings a new one
}

void TestADataManagerLimitsReload::aLinkThatLeadsNowhereFailsToBeRead()
{
    Registry registry;
    const QString target = registry.write(QStringLiteral("target.xml"), limitText({QStringLiteral("a")}));
    const QString name = registry.path(QStringLiteral("a.xml"));
    QVERIFY(QFile::link(target, name));
    QVERIFY(registry->addLimitFile(name));
    const ALimit *limit = registry->getLimitForName(QStringLiteral("a"));
    registry.takeLog();
    QVERIFY(QFile::remove(target));
    registry.updateFile(name);
    QCOMPARE(registry.takeLog(), (QStringList{errorText(name), kLimits}));
    QCOMPARE(registry->getLimitForName(QStringLiteral("a")), limit);
    // Of the link itself it is a deletion.
    QVERIFY(QFile::remove(name));
    registry.updateFile(name);
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QVERIFY(registry->getLimitNames().isEmpty());
}

void TestADataManagerLimitsReload::aFileThatIsReplacedAgainAndAgainIsFollowed()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("0")}));
    QVERIFY(registry->addLimitFile(name));
    registry.takeLog();
    for (int i = 1; i <= 5; ++i) {
        const QString text = QString::number(i);
        registry.write(QStringLiteral("new"), limitText({text}));
        registry.shell(QStringLiteral("mv new a.xml"));
        settle();
        QCOMPARE(registry->getLimitNames(), QStringList{text});
        QVERIFY(isWatched(name));
    }
    QCOMPARE(registry.takeLog(), repeated(kLimits, 10));
}

void TestADataManagerLimitsReload::aFileThatIsRewrittenInPlaceIsFollowed()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    registry.shellBeside(
        QStringLiteral("printf '<data><limit name=\"b' > a.xml; sleep 0.2; printf '\"/></data>' >> a.xml"));
    QTRY_COMPARE(registry->getLimitNames(), QStringList{QStringLiteral("b")});
    QVERIFY(registry.takeLog().contains(kLimits));
    QVERIFY(isWatched(name));
}

void TestADataManagerLimitsReload::aNameThatNoStoreKnowsIsIgnored()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    registry->addInternalLimit(namedLimit(QStringLiteral("a")));
    registry.takeLog();
    registry.updateFile(name);
    registry.updateFile(registry.path(QStringLiteral("missing")));
    QCOMPARE(registry.takeLog(), QStringList());
    QVERIFY(registry->getLimitForName(QStringLiteral("a")));
}

void TestADataManagerLimitsReload::theLimitBranchComesBeforeTheProfileBranch()
{
    Registry registry;
    const QString limit = QStringLiteral("<limit name='a'/>");
    const AProfile *profile = registry.add(QStringLiteral("p"), QStringLiteral("P"), limit);
    QVERIFY(profile);
    const QString name = profile->source();
    QVERIFY(registry->addLimitFile(name));
    registry.takeLog();
    registry.writeProfile(QStringLiteral("p.profile"), QStringLiteral("p"), QStringLiteral("Q"), limit + limit);
    registry.updateFile(name);
    const QString profiles = QStringLiteral("profiles");
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, kLimits, profiles}));
    QCOMPARE(registry->getLimitNames().size(), 2);
    QCOMPARE(registry.contents(), QStringList{QStringLiteral("p|Q")});

    registry.shell(QStringLiteral("rm p.profile"));
    settle();
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, profiles, profiles}));
    QVERIFY(registry->getLimitNames().isEmpty());
    QVERIFY(registry.contents().isEmpty());
}

// No watch reports such a name; a receiver of a signal of its own might.
void TestADataManagerLimitsReload::internalLimitsDoNotOutliveAnUpdateUnderTheirName()
{
    Registry registry;
    int deletions = 0;
    registry->addInternalLimit(new RenamedLimit(&deletions));
    registry.takeLog();
    registry.updateFile(QStringLiteral("(internal)"));
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QCOMPARE(deletions, 1);
}

QTEST_GUILESS_MAIN(TestADataManagerLimitsReload)
#include "tst_adatamanager_limits_reload.moc"
