#include "core/profilefiles.h"
#include "limitregistry.h"

#include <QtTest/QtTest>

using namespace registrytest;

class TestADataManagerLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshStoreIsEmpty();
    void aFileGivesItsLimitsInOrder();
    void aFileIsWatchedUnderTheGivenName();
    void aFileWithoutLimitsIsTakenToo();
    void whatIsNoLimitFileIsReported_data();
    void whatIsNoLimitFileIsReported();
    void addingAFileTwiceReplacesItsLimits();
    void theOldLimitsAreGoneBeforeTheSignal();
    void aFileThatFailsTheSecondTimeKeepsItsLimits();
    void namesComeInTheOrderOfTheKeys();
    void theLowestKeyWinsALookUp();
    void namesAreComparedExactly();
    void internalLimitsAreAppended();
    void internalLimitsStandBeforeFiles();
    void aRelativeNameMayStandBeforeTheInternalLimits();
    void limitsAreAskedForTheirNameAndDeletedVirtually();
    void aNullLimitIsPassedOver();
    void aFileMayBeCalledLikeTheInternalGroup();
    void aPathOfAFileIsThatFile();
    void anEmptyDirectoryGivesNothing();
    void aTreeGivesTheTotalOfAllLevels();
    void everyFileOfADirectoryIsTried();
    void entriesComeByNameIgnoringCase();
    void hiddenFilesAndWhatIsNoFileArePassedOver();
    void unreadableEntriesArePassedOver();
    void linksAreFollowed();
    void linksInACircleEnd();
    void aDirectoryFullOfLinksToOthersIsScannedOnce();
    void aDeepTreeIsScanned();
    void clearingDeletesAllAndEndsTheWatch();
    void theManagerDeletesItsLimits();
};

void TestADataManagerLimits::aFreshStoreIsEmpty()
{
    Registry registry;
    QVERIFY(registry->getLimitNames().isEmpty());
    QVERIFY(!registry->getLimitForName(QString()));
    QVERIFY(!registry->getLimitForName(QStringLiteral("a")));
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerLimits::aFileGivesItsLimitsInOrder()
{
    Registry registry;
    const QStringList names = {QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b"), QString()};
    QVERIFY(registry->addLimitFile(registry.write(QStringLiteral("a.xml"), limitText(names))));
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QCOMPARE(registry->getLimitNames(), names);
    QCOMPARE(registry->getLimitForName(QStringLiteral("b"))->valueAt(AFrequency("1 kHz"), nullptr), 0.0);
    QCOMPARE(registry->getLimitForName(QString())->valueAt(AFrequency("1 kHz"), nullptr), 3.0);
}

void TestADataManagerLimits::aFileIsWatchedUnderTheGivenName()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    bool isWatchedAtTheSignal = false;
    connect(registry.manager.get(), &ADataManager::limitDataChanged, this,
            [&] { isWatchedAtTheSignal = isWatched(name); });
    QVERIFY(registry->addLimitFile(name));
    QVERIFY(isWatchedAtTheSignal);
    QVERIFY(registry->addLimitFile(name));
    QCOMPARE(watchedInodes().size(), 1);
    // One file under two names is two entries.
    QVERIFY(registry->addLimitFile(registry.path(QStringLiteral("./a.xml"))));
    QCOMPARE(registry->getLimitNames(), (QStringList{QStringLiteral("a"), QStringLiteral("a")}));
}

void TestADataManagerLimits::aFileWithoutLimitsIsTakenToo()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    registry.write(QStringLiteral("a.xml"), limitText({}));
    QVERIFY(registry->addLimitFile(name));
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, kLimits}));
    QVERIFY(registry->getLimitNames().isEmpty());
    QVERIFY(isWatched(name));
}

void TestADataManagerLimits::whatIsNoLimitFileIsReported_data()
{
    QTest::addColumn<QString>("content");
    QTest::newRow("missing") << QString();
    QTest::newRow("no XML") << QStringLiteral("Hello");
    QTest::newRow("cut") << QStringLiteral("<data><limit name='a'/>");
    QTest::newRow("other XML") << QStringLiteral("<calibrations/>");
}

void TestADataManagerLimits::whatIsNoLimitFileIsReported()
{
    QFETCH(QString, content);
    Registry registry;
    const QString name = registry.path(QStringLiteral("a.xml"));
    if (!content.isEmpty())
        writeText(name, content);
    QVERIFY(!registry->addLimitFile(name));
    const QString expected = errorText(name);
    QVERIFY(expected.contains(name));
    QCOMPARE(registry.takeLog(), QStringList{expected});
    QVERIFY(registry->getLimitNames().isEmpty());
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerLimits::addingAFileTwiceReplacesItsLimits()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a"), QStringLiteral("b")}));
    QVERIFY(registry->addLimitFile(name));
    const QPointer<const ALimit> old = registry->getLimitForName(QStringLiteral("b"));
    registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("b"), QStringLiteral("c")}));
    QVERIFY(registry->addLimitFile(name));
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, kLimits}));
    QCOMPARE(registry->getLimitNames(), (QStringList{QStringLiteral("b"), QStringLiteral("c")}));
    QVERIFY(!old);
}

void TestADataManagerLimits::theOldLimitsAreGoneBeforeTheSignal()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    const QPointer<const ALimit> old = registry->getLimitForName(QStringLiteral("a"));
    QVERIFY(old);
    bool isGone = false;
    QStringList names;
    connect(registry.manager.get(), &ADataManager::limitDataChanged, this, [&] {
        isGone = !old;
        names = registry->getLimitNames();
    });
    registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("new")}));
    QVERIFY(registry->addLimitFile(name));
    QVERIFY(isGone);
    QCOMPARE(names, QStringList{QStringLiteral("new")});
}

void TestADataManagerLimits::aFileThatFailsTheSecondTimeKeepsItsLimits()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    QVERIFY(registry->addLimitFile(name));
    const ALimit *limit = registry->getLimitForName(QStringLiteral("a"));
    registry.takeLog();
    registry.write(QStringLiteral("a.xml"), QStringLiteral("<data>"));
    QVERIFY(!registry->addLimitFile(name));
    QCOMPARE(registry.takeLog(), QStringList{errorText(name)});
    QCOMPARE(registry->getLimitForName(QStringLiteral("a")), limit);
    QVERIFY(isWatched(name));
}

void TestADataManagerLimits::namesComeInTheOrderOfTheKeys()
{
    Registry registry;
    const auto add = [&](const char *file, const QStringList &names) {
        QVERIFY(registry->addLimitFile(registry.write(QLatin1String(file), limitText(names))));
    };
    add("b.xml", {QStringLiteral("b2"), QStringLiteral("b1")});
    add("B.xml", {QStringLiteral("B")});
    registry->addInternalLimit(namedLimit(QStringLiteral("z")));
    add("a.xml", {QStringLiteral("b1")});
    QCOMPARE(registry->getLimitNames().join(QLatin1Char(' ')), QStringLiteral("z B b1 b2 b1"));
}

void TestADataManagerLimits::theLowestKeyWinsALookUp()
{
    Registry registry;
    const QString name = QStringLiteral("x");
    const auto value = [&] { return registry->getLimitForName(name)->valueAt(AFrequency("1 kHz"), nullptr); };
    QVERIFY(registry->addLimitFile(
        registry.write(QStringLiteral("c.xml"), limitText({QString(), QString(), name, name})))); // 2 and 3
    QCOMPARE(value(), 2.0);
    QVERIFY(registry->addLimitFile(registry.write(QStringLiteral("b.xml"), limitText({QString(), name})))); // 1
    QCOMPARE(value(), 1.0);
    QVERIFY(registry->addLimitFile(registry.write(QStringLiteral("d.xml"), limitText({name})))); // 0, out of reach
    QCOMPARE(value(), 1.0);
    QCOMPARE(registry->getLimitNames().count(name), 4);
}

void TestADataManagerLimits::namesAreComparedExactly()
{
    Registry registry;
    registry->addInternalLimit(namedLimit(QStringLiteral("Mask ")));
    QVERIFY(registry->getLimitForName(QStringLiteral("Mask ")));
    QVERIFY(!registry->getLimitForName(QStringLiteral("Mask")));
    QVERIFY(!registry->getLimitForName(QStringLiteral("mask ")));
}

void TestADataManagerLimits::internalLimitsAreAppended()
{
    Registry registry;
    const ALimit *first = namedLimit(QStringLiteral("a"));
    QVERIFY(registry->addInternalLimit(first));
    QVERIFY(registry->addInternalLimit(namedLimit(QStringLiteral("a"))));
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, kLimits}));
    QCOMPARE(registry->getLimitNames(), (QStringList{QStringLiteral("a"), QStringLiteral("a")}));
    QCOMPARE(registry->getLimitForName(QStringLiteral("a")), first);
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerLimits::internalLimitsStandBeforeFiles()
{
    Registry registry;
    const QString name = QStringLiteral("a");
    QVERIFY(registry->addLimitFile(registry.write(QStringLiteral("a.xml"), limitText({name, QStringLiteral("b")}))));
    const ALimit *internal = namedLimit(name);
    registry->addInternalLimit(internal);
    QCOMPARE(registry->getLimitForName(name), internal);
    QCOMPARE(registry->getLimitNames(), (QStringList{name, name, QStringLiteral("b")}));
}

void TestADataManagerLimits::aRelativeNameMayStandBeforeTheInternalLimits()
{
    Registry registry;
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    registry.write(QStringLiteral("#a.xml"), limitText({QStringLiteral("a"), QStringLiteral("file")}));
    registry->addInternalLimit(namedLimit(QStringLiteral("a")));
    const bool added = registry->addLimitFile(QStringLiteral("#a.xml"));
    QVERIFY(QDir::setCurrent(old));
    QVERIFY(added);
    QCOMPARE(registry->getLimitNames(),
             (QStringList{QStringLiteral("a"), QStringLiteral("file"), QStringLiteral("a")}));
}

void TestADataManagerLimits::limitsAreAskedForTheirNameAndDeletedVirtually()
{
    int deletions = 0;
    Registry registry;
    auto *limit = new RenamedLimit(&deletions);
    limit->setName(QStringLiteral("own"));
    registry->addInternalLimit(limit);
    QCOMPARE(registry->getLimitNames(), QStringList{QStringLiteral("renamed")});
    QCOMPARE(registry->getLimitForName(QStringLiteral("renamed")), limit);
    QVERIFY(!registry->getLimitForName(QStringLiteral("own")));
    registry->clearLimitData();
    QCOMPARE(deletions, 1);
}

void TestADataManagerLimits::aNullLimitIsPassedOver()
{
    Registry registry;
    QVERIFY(registry->addInternalLimit(nullptr));
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QVERIFY(registry->addInternalLimit(namedLimit(QStringLiteral("a"))));
    QVERIFY(registry->addInternalLimit(nullptr));
    QCOMPARE(registry->getLimitNames(), QStringList{QStringLiteral("a")});
    QVERIFY(registry->getLimitForName(QStringLiteral("a")));
    QVERIFY(!registry->getLimitForName(QString()));
    registry->clearLimitData();
    QVERIFY(registry->getLimitNames().isEmpty());
}

// There is one map: such a relative name shares the key of the application's own limits.
void TestADataManagerLimits::aFileMayBeCalledLikeTheInternalGroup()
{
    Registry registry;
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    registry.write(QStringLiteral("(internal)"), limitText({QStringLiteral("file")}));
    int deletions = 0;
    registry->addInternalLimit(new RenamedLimit(&deletions));
    const bool added = registry->addLimitFile(QStringLiteral("(internal)"));
    registry->addInternalLimit(namedLimit(QStringLiteral("later")));
    QVERIFY(QDir::setCurrent(old));
    QVERIFY(added);
    QCOMPARE(deletions, 1);
    QCOMPARE(registry->getLimitNames(), (QStringList{QStringLiteral("file"), QStringLiteral("later")}));
}

void TestADataManagerLimits::aPathOfAFileIsThatFile()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.any"), limitText({QStringLiteral("a")}));
    QCOMPARE(registry->addLimitPath(name), 1);
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    const QString missing = registry.path(QStringLiteral("missing"));
    QCOMPARE(registry->addLimitPath(missing), 0);
    QCOMPARE(registry->addLimitPath(QString()), 0);
    QCOMPARE(registry.takeLog(), (QStringList{errorText(missing), errorText(QString())}));
}

void TestADataManagerLimits::anEmptyDirectoryGivesNothing()
{
    Registry registry;
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 0);
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerLimits::aTreeGivesTheTotalOfAllLevels()
{
    Registry registry;
    registry.shell(QStringLiteral("mkdir -p sub/deeper empty"));
    for (const char *name : {"a.xml", "sub/b.xml", "sub/c.xml", "sub/deeper/d", "z"})
        registry.write(QLatin1String(name), limitText({QLatin1String(name), QStringLiteral("second")}));
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 5);
    QCOMPARE(registry.takeLog(), repeated(kLimits, 5));
    QCOMPARE(registry->getLimitNames().size(), 10);
    QVERIFY(registry->getLimitForName(QStringLiteral("sub/deeper/d")));
    // Under their absolute names, so that a second scan replaces them.
    QCOMPARE(registry->addLimitPath(registry.path(QStringLiteral("sub/"))), 3);
    QCOMPARE(registry->getLimitNames().size(), 10);
}

void TestADataManagerLimits::everyFileOfADirectoryIsTried()
{
    Registry registry;
    registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}));
    const QString text = registry.write(QStringLiteral("notes.txt"), QStringLiteral("Buy milk"));
    const QString other = registry.write(QStringLiteral("other.xml"), QStringLiteral("<calibrations/>"));
    registry.write(QStringLiteral("z.xml"), limitText({QStringLiteral("z")}));
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 2);
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, errorText(text), errorText(other), kLimits}));
}

void TestADataManagerLimits::entriesComeByNameIgnoringCase()
{
    Registry registry;
    for (const char *name : {"B", "a", "C", "d"})
        registry.write(QLatin1String(name), QStringLiteral("no XML"));
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 0);
    QStringList expected;
    for (const char *name : {"a", "B", "C", "d"})
        expected << errorText(registry.path(QLatin1String(name)));
    QCOMPARE(registry.takeLog(), expected);
}

void TestADataManagerLimits::hiddenFilesAndWhatIsNoFileArePassedOver()
{
    Registry registry;
    registry.write(QStringLiteral(".hidden.xml"), limitText({QStringLiteral("a")}));
    registry.shell(QStringLiteral("mkdir .dir; cp .hidden.xml .dir/a.xml; mkfifo pipe; ln -s nowhere dead"));
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 0);
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerLimits::unreadableEntriesArePassedOver()
{
    Registry registry;
    registry.shell(QStringLiteral("chmod 755 .; mkdir closed; mkdir open"));
    for (const char *name : {"a.xml", "closed/b.xml", "open/c.xml", "secret.xml"})
        registry.write(QLatin1String(name), limitText({QLatin1String(name)}));
    registry.shell(QStringLiteral("chmod 000 closed secret.xml"));
    const QString path = registry.path(QString());
    const profilefiles::ChildResult result = profilefiles::inUnprivilegedChild([&] {
        ADataManager manager;
        bool hasFailed = false;
        connect(&manager, &ADataManager::error, &manager, [&hasFailed] { hasFailed = true; });
        const int added = manager.addLimitPath(path);
        return hasFailed ? 50 : added;
    });
    QCOMPARE(result.status, 2);
    // Named outright, it is reported.
    const profilefiles::ChildResult file = profilefiles::inUnprivilegedChild([&] {
        ADataManager manager;
        bool hasFailed = false;
        connect(&manager, &ADataManager::error, &manager, [&hasFailed] { hasFailed = true; });
        const int added = manager.addLimitPath(path + QStringLiteral("/secret.xml"));
        return hasFailed ? added : 50;
    });
    QCOMPARE(file.status, 0);
    registry.shell(QStringLiteral("chmod 755 closed"));
}

void TestADataManagerLimits::linksAreFollowed()
{
    Registry registry;
    registry.shell(QStringLiteral("mkdir -p tree elsewhere"));
    registry.write(QStringLiteral("elsewhere/a.xml"), limitText({QStringLiteral("a")}));
    registry.write(QStringLiteral("b.xml"), limitText({QStringLiteral("b")}));
    registry.shell(QStringLiteral("ln -s ../elsewhere tree/dir; ln -s ../b.xml tree/file"));
    QCOMPARE(registry->addLimitPath(registry.path(QStringLiteral("tree"))), 2);
    QCOMPARE(registry->getLimitNames(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

void TestADataManagerLimits::linksInACircleEnd()
{
    Registry registry;
    registry.shell(QStringLiteral("mkdir -p a/b; ln -s . self; ln -s .. a/up; ln -s ../../a a/b/top; ln -s loop loop;"
                                  "ln -s two one; ln -s one two"));
    registry.write(QStringLiteral("a/b/a.xml"), limitText({QStringLiteral("a")}));
    registry.write(QStringLiteral("b.xml"), limitText({QStringLiteral("b")}));
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 2);
    QCOMPARE(registry.takeLog(), repeated(kLimits, 2));
    QCOMPARE(registry->getLimitNames(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

// Thirty directories with links to all others have more ways through them than could ever be walked.
void TestADataManagerLimits::aDirectoryFullOfLinksToOthersIsScannedOnce()
{
    Registry registry;
    registry.shell(QStringLiteral("for i in $(seq 30); do mkdir $i; echo '<data/>' > $i/file; done\n"
                                  "for i in $(seq 30); do for k in $(seq 30); do ln -s ../$k $i/to$k; done; done"));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 30);
    QVERIFY(timer.elapsed() < 10000);
}

void TestADataManagerLimits::aDeepTreeIsScanned()
{
    Registry registry;
    registry.shell(QStringLiteral("d=$(printf 'd/%.0s' $(seq 1900)); mkdir -p $d; echo '<data/>' > ${d}file"));
    QCOMPARE(registry->addLimitPath(registry.path(QString())), 1);
}

void TestADataManagerLimits::clearingDeletesAllAndEndsTheWatch()
{
    Registry registry;
    const QString name = registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a"), QStringLiteral("b")}));
    QVERIFY(registry->addLimitFile(name));
    int deletions = 0;
    registry->addInternalLimit(new RenamedLimit(&deletions));
    const QPointer<const ALimit> limit = registry->getLimitForName(QStringLiteral("a"));
    registry.takeLog();

    QStringList namesAtTheSignal = {QStringLiteral("none came")};
    connect(registry.manager.get(), &ADataManager::limitDataChanged, this,
            [&] { namesAtTheSignal = registry->getLimitNames(); });
    registry->clearLimitData();
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QVERIFY(namesAtTheSignal.isEmpty());
    QVERIFY(registry->getLimitNames().isEmpty());
    QVERIFY(!registry->getLimitForName(QStringLiteral("a")));
    QVERIFY(!limit);
    QCOMPARE(deletions, 1);
    QVERIFY(watchedInodes().isEmpty());

    registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("c")}));
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
    registry->clearLimitData();
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
}

void TestADataManagerLimits::theManagerDeletesItsLimits()
{
    int deletions = 0;
    Registry registry;
    registry->addInternalLimit(new RenamedLimit(&deletions));
    QVERIFY(registry->addLimitFile(registry.write(QStringLiteral("a.xml"), limitText({QStringLiteral("a")}))));
    const QPointer<const ALimit> limit = registry->getLimitForName(QStringLiteral("a"));
    registry.takeLog();
    registry.manager.reset();
    QCOMPARE(deletions, 1);
    QVERIFY(!limit);
    QCOMPARE(registry.takeLog(), (QStringList{kLimits, QStringLiteral("channels")}));
}

QTEST_GUILESS_MAIN(TestADataManagerLimits)
#include "tst_adatamanager_limits.moc"
