#include "calibrationregistry.h"

#include <QtTest/QtTest>

using namespace registrytest;

// What a change of a watched calibration file does to the store, by single calls and with a second process.
class TestADataManagerCalibrationReload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aChangedFileReplacesTheListAndNotTheLabels();
    void aDeletedFileLeavesTheLabels();
    void aFileThatCannotBeReadLeavesAnEmptyList();
    void aLinkThatLeadsNowhereLeavesAnEmptyList();
    void onlyTheFirstTypeOfAFileIsHandled();
    void aDeletedFileOfSeveralTypesStaysInTheOtherLists();
    void aFileLoadedForAllTypesAloneIsNotReloaded();
    void objectsInMemoryAreTakenForAMissingFile();
    void anEditAfterAChangeFromOutsideStartsFromTheLabel();
    void theCalibrationBranchComesFirst();

    void editsOfASecondProcess_data();
    void editsOfASecondProcess();
    void aFileReplacedAgainAndAgainIsFollowed();
    void aBurstOfEditsEndsInTheLastState();
    void aBurstOfReplacementsShowsWholeStates();
    void deletingAndRecreatingAgainAndAgain();
    void ownEditsComeBackOnce();
    void aBurstOfOwnEditsEnds();
    void aDuplicateLabelDoesNotLoop();
    void aSecondProcessAndOwnEditsEndInOneState();
};

void TestADataManagerCalibrationReload::aChangedFileReplacesTheListAndNotTheLabels()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry.save(file, {flat("a", kCable, 3), flat("c", kCable, 4)});
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), (QStringList{"a|2|3", "c|2|4"}));
    QCOMPARE(registry.names(kCable), (QStringList{"a", "b", "c"}));
    QCOMPARE(registry.found("a", kCable), QString("a|2|1")); // still what was loaded
    QCOMPARE(registry.found("b", kCable), QString("b|2|2"));
    QCOMPARE(registry.found("c", kCable), QString("c|2|4")); // through its file
    settle();
    QVERIFY(isWatched(file)); // the new one: the old one's watch went with it
}

void TestADataManagerCalibrationReload::aDeletedFileLeavesTheLabels()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    QVERIFY(QFile::remove(file));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), QStringList());
    QCOMPARE(registry.held(kAllTypes), QStringList());
    QCOMPARE(registry.names(kCable), QStringList{"a"});
    QCOMPARE(registry.found("a", kCable), QString("a|2|1"));
    // The name is forgotten, also after look-ups.
    registry.updateFile(file);
    registry.save(file, {flat("a", kCable, 2)});
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCalibrationReload::aFileThatCannotBeReadLeavesAnEmptyList()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    writeText(file, "garbage");
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)}); // and no error
    QCOMPARE(registry.held(kCable), QStringList());
    QCOMPARE(registry.names(kCable), QStringList{"a"});
    registry.save(file, {flat("a", kCable, 2)});
    registry.updateFile(file);
    QCOMPARE(registry.held(kCable), QStringList{"a|2|2"});
}

void TestADataManagerCalibrationReload::aLinkThatLeadsNowhereLeavesAnEmptyList()
{
    CalibrationRegistry registry;
    const QString target = registry.save("target.xml", {flat("a", kCable, 1)});
    const QString file = registry.path("a.xml");
    QVERIFY(QFile::link(target, file));
    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList{"a"});
    registry.takeLog();
    QVERIFY(QFile::remove(target));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)}); // and no error
    QCOMPARE(registry.held(kCable), QStringList());
    // The file is still listed, and followed once it leads somewhere again.
    registry.save("target.xml", {flat("a", kCable, 2)});
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), QStringList{"a|2|2"});
    QCOMPARE(registry.held(kAllTypes), QStringList{"a|2|2"});
}

void TestADataManagerCalibrationReload::onlyTheFirstTypeOfAFileIsHandled()
{
    CalibrationRegistry registry;
    const QString file = registry.write("a.xml", "<calibrations><calibration label='a'/></calibrations>");
    registry->addCalibrationFile(file, kCable);
    registry->addCalibrationData(flat("b", kAntenna, 1), file);
    registry.write("a.xml", "<calibrations><calibration label='a'/></calibrations>");
    settle();
    registry.takeLog();
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kAntenna)}); // 1 before 2, whatever was first
    QCOMPARE(registry.held(kCable), QStringList{"a|1|0"});         // and read as such
}

void TestADataManagerCalibrationReload::aDeletedFileOfSeveralTypesStaysInTheOtherLists()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    registry->addCalibrationData(flat("b", kAntenna, 2), file);
    settle();
    QVERIFY(QFile::remove(file));
    settle();
    registry.takeLog();
    QCOMPARE(registry.held(kAntenna), QStringList());
    registry.save(file, {flat("c", kCable, 3)});
    registry.updateFile(file); // not known
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList()); // by which it is known again
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), QStringList{"c|2|3"});
    QCOMPARE(registry.held(kAllTypes), QStringList());
}

void TestADataManagerCalibrationReload::aFileLoadedForAllTypesAloneIsNotReloaded()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kAllTypes);
    registry.save(file, {flat("b", kCable, 2)});
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kAllTypes), QStringList{"a|2|1"});
    QVERIFY(QFile::remove(file));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kAllTypes), QStringList());
    QCOMPARE(registry.names(kAllTypes), QStringList{"a"});
}

// No watch reports such a name; a receiver of a signal of its own might.
void TestADataManagerCalibrationReload::objectsInMemoryAreTakenForAMissingFile()
{
    CalibrationRegistry registry;
    registry->addCalibrationData(flat("a", kCable, 1), "-");
    registry.takeLog();
    registry.updateFile("-");
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), QStringList());
    QCOMPARE(registry.names(kCable), QStringList{"a"});
}

// A label keeps the object that was loaded, so that its next edit writes over what somebody else wrote.
void TestADataManagerCalibrationReload::anEditAfterAChangeFromOutsideStartsFromTheLabel()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    registry.save(file, {object("a", kCable, {{"1 MHz", 1}, {"2 MHz", 50}})});
    settle();
    ACalibrationData edited = registry->getCalibrationForName("a", kCable);
    QCOMPARE(edited.level().size(), 1);
    edited.addLevel(AFrequency("3 MHz"), 3);
    registry->updateCalibrationData(edited, QString());
    Objects written;
    QVERIFY(ACalibrationData::readAll(file, written, kAnyType));
    QCOMPARE(written, Objects{edited});
}

void TestADataManagerCalibrationReload::theCalibrationBranchComesFirst()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    writeText(file, "<data><limit name='l'/></data>");
    QVERIFY(registry->addLimitFile(file));
    settle();
    registry.takeLog();
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), (QStringList{signalOf(kCable), "limits", "limits"}));
    QVERIFY(QFile::remove(file));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), (QStringList{signalOf(kCable), "limits"}));
}

void TestADataManagerCalibrationReload::editsOfASecondProcess_data()
{
    // The scripts find a whole new file in "new". While a script runs no event is delivered, so the counts are exact:
    // they are those of one reload each.
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("calibrations");
    QTest::addColumn<QStringList>("limits");
    QTest::addColumn<QStringList>("profiles");
    QTest::addColumn<int>("calibrationSignals");
    QTest::addColumn<int>("limitSignals");
    QTest::addColumn<int>("profileSignals");
    QTest::addColumn<QString>("watched"); // c, l, p: what is followed afterwards
    const auto row = [](const char *name, const char *script, const char *state, int calibrations, int limits,
                        int profiles, const char *watched) {
        const QString text(state);
        const auto each = [&](const char *fresh, const char *old, const char *damaged) {
            return text == "new"       ? QStringList{fresh}
                   : text == "old"     ? QStringList{old}
                   : text == "damaged" ? (*damaged ? QStringList{damaged} : QStringList())
                                       : QStringList();
        };
        QTest::newRow(name) << script << each("new|2|2", "old|2|1", "") << each("new", "old", "old")
                            << each("id|new", "id|old", "|") << calibrations << limits << profiles << watched;
    };
    row("overwritten", "cat new > a", "new", 1, 2, 1, "clp");
    row("overwritten three times", "cat new > a; : > a; cat new > a", "new", 1, 2, 1, "clp");
    row("touched", "touch a", "old", 1, 2, 1, "clp");
    row("truncated", ": > a", "damaged", 1, 1, 1, "clp");
    row("replaced by rename", "mv new a", "new", 1, 2, 1, "cl");
    row("replaced twice", "cp a b; mv b a; mv new a", "new", 1, 2, 1, "cl");
    row("replaced by garbage", "echo text > b; mv b a", "damaged", 1, 1, 1, "c");
    row("replaced with a backup", "mv a a~; cp new a", "new", 1, 2, 1, "cl");
    row("deleted and recreated", "rm a; cp new a", "new", 1, 2, 1, "cl");
    row("deleted", "rm a", "gone", 1, 1, 2, "");
    row("changed and deleted", "cat new > a; rm a", "gone", 1, 1, 2, "");
    row("moved away", "mv a b", "gone", 1, 1, 2, "");
    row("only read", "cat a > copy", "old", 0, 0, 0, "clp");
}

void TestADataManagerCalibrationReload::editsOfASecondProcess()
{
    QFETCH(QString, script);
    QFETCH(QStringList, calibrations);
    QFETCH(QStringList, limits);
    QFETCH(QStringList, profiles);
    QFETCH(int, calibrationSignals);
    QFETCH(int, limitSignals);
    QFETCH(int, profileSignals);
    QFETCH(QString, watched);
    CalibrationRegistry registry;
    registry.save("calibration/new", {flat("new", kCable, 2)});
    const QString calibration = registry.load("calibration/a", {flat("old", kCable, 1)}, kCable);
    QVERIFY(QDir().mkdir(registry.path("limit")) && QDir().mkdir(registry.path("profile")));
    registry.write("limit/new", "<data><limit name='new'/></data>");
    const QString limit = registry.write("limit/a", "<data><limit name='old'/></data>");
    QVERIFY(registry->addLimitFile(limit));
    registry.writeProfile("profile/new", "id", "new");
    const QString profile = registry.writeProfile("profile/a", "id", "old");
    QVERIFY(registry->addProfileFile(profile, AProfile::UserProfile));
    settle();
    registry.takeLog();

    registry.shell(QStringLiteral("for d in calibration limit profile; do (cd $d; ") + script + "); done");
    settle();
    QCOMPARE(registry.held(kCable), calibrations);
    QCOMPARE(registry->getLimitNames(), limits);
    QCOMPARE(registry.contents(), profiles);
    const QStringList log = registry.takeLog();
    QCOMPARE(log.count(signalOf(kCable)), calibrationSignals);
    QCOMPARE(log.count("limits"), limitSignals);
    QCOMPARE(log.count("profiles"), profileSignals);
    QCOMPARE(log.filter("error").size(), limitSignals == 1 && limits.size() == 1 ? 1 : 0);
    QCOMPARE(isWatched(calibration), watched.contains('c'));
    QCOMPARE(isWatched(limit), watched.contains('l'));
    QCOMPARE(isWatched(profile), watched.contains('p'));
}

void TestADataManagerCalibrationReload::aFileReplacedAgainAndAgainIsFollowed()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("0", kCable, 0)}, kCable);
    for (int i = 1; i <= 5; ++i) {
        registry.save("new", {flat(QString::number(i), kCable, i)});
        registry.shell("mv new a.xml");
        settle();
        QCOMPARE(registry.held(kCable), QStringList{QStringLiteral("%1|2|%1").arg(i)});
        QVERIFY(isWatched(file));
    }
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 5));
}

void TestADataManagerCalibrationReload::aBurstOfEditsEndsInTheLastState()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.caldata", {flat("x", kCable, 0)}, kCable);
    registry.shellBeside("i=0; while [ $i -lt 200 ]; do i=$((i + 1)); : > a.caldata;"
                         " printf \"caldata 1\\n[cable] x\\n1 MHz $i\\n\" > a.caldata; done");
    QTRY_COMPARE(registry.held(kCable), QStringList{"x|2|200"});
    settle();
    QCOMPARE(registry.held(kCable), QStringList{"x|2|200"});
    const QStringList log = registry.takeLog();
    // Three events of the file in each round, each of which gives one signal at most.
    QVERIFY2(log.size() >= 1 && log.size() <= 3 * 200, qPrintable(QString::number(log.size())));
    QCOMPARE(log.count(signalOf(kCable)), log.size());
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibrationReload::aBurstOfReplacementsShowsWholeStates()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("old", kCable, 1)}, kCable);
    registry.save("new", {flat("new", kCable, 2)});
    QStringList seen;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this,
            [&] { seen << registry.held(kCable).join('/'); });
    registry.shellBeside("i=0; while [ $i -lt 100 ]; do i=$((i + 1)); cp new b; mv b a.xml; done");
    QTRY_COMPARE(registry.held(kCable), QStringList{"new|2|2"});
    settle();
    // One signal for each file that took the place of another, at most.
    QVERIFY2(seen.size() >= 1 && seen.size() <= 100, qPrintable(QString::number(seen.size())));
    QCOMPARE(seen.count("new|2|2"), seen.size());
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibrationReload::deletingAndRecreatingAgainAndAgain()
{
    CalibrationRegistry registry;
    registry.save("new", {flat("new", kCable, 2)});
    const QString file = registry.load("a.xml", {flat("old", kCable, 1)}, kCable);
    for (int round = 0; round < 3; ++round) {
        registry->addCalibrationFile(file, kCable);
        registry.shellBeside(
            "i=0; while [ $i -lt 20 ]; do i=$((i + 1)); rm a.xml; sleep 0.00$((i % 4)); cp new b; mv b a.xml; done");
        settle();
        // Gone or the whole new one, as the events fell, and under its label in any case.
        const QStringList held = registry.held(kCable);
        QVERIFY(held.isEmpty() || held == QStringList{"new|2|2"});
        QCOMPARE(registry.held(kAllTypes), held);
        QVERIFY(registry.names(kCable).contains("old"));
    }
    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList{"new"});
    QCOMPARE(registry.held(kCable), QStringList{"new|2|2"});
}

void TestADataManagerCalibrationReload::ownEditsComeBackOnce()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    registry->updateCalibrationData(flat("a", kCable, 2), QString());
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    settle();
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)}); // the reload
    QTest::qWait(100);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList{"a|2|2"});
    QVERIFY(isWatched(file));

    registry->updateCalibrationData(flat("b", kCable, 3), "a"); // deletes and writes
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    settle();
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QTest::qWait(100);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList{"b|2|3"});
    QCOMPARE(registry.held(kAllTypes), QStringList{"b|2|3"});
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibrationReload::aBurstOfOwnEditsEnds()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 0)}, kCable);
    constexpr int kEdits = 30;
    for (int i = 1; i <= kEdits; ++i) {
        registry->updateCalibrationData(flat("a", kCable, i), QString());
        if (i % 3 == 0)
            settle();
    }
    settle();
    QTest::qWait(100);
    const QStringList log = registry.takeLog();
    QVERIFY(log.size() > kEdits && log.size() <= 2 * kEdits);
    QTest::qWait(100);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList{QStringLiteral("a|2|%1").arg(kEdits)});
    QCOMPARE(onDisk(file), registry.held(kCable));
    QVERIFY(isWatched(file));
}

// Loading writes the file of the first label, which the watch reports; the reload writes nothing.
void TestADataManagerCalibrationReload::aDuplicateLabelDoesNotLoop()
{
    CalibrationRegistry registry;
    const QString first = registry.load("a.xml", {flat("x", kCable, 1)}, kCable);
    registry.load("b.xml", {flat("x", kCable, 2)}, kCable);
    QTest::qWait(100);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(onDisk(first), QStringList{"x|2|2"});
    registry.shell("touch a.xml b.xml");
    settle();
    QTest::qWait(100);
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
}

void TestADataManagerCalibrationReload::aSecondProcessAndOwnEditsEndInOneState()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 0)}, kCable);
    registry.save("new", {flat("a", kCable, 1000)});
    QProcess other;
    other.setWorkingDirectory(registry.path(QString()));
    other.start("sh", {"-euc", "i=0; while [ $i -lt 50 ]; do i=$((i + 1)); cp new b; mv b a.xml; done"});
    for (int i = 1; other.state() != QProcess::NotRunning; ++i) {
        registry->updateCalibrationData(flat("a", kCable, i), QString());
        settle();
        QVERIFY(onDisk(file).size() == 1);
    }
    QCOMPARE(other.exitCode(), 0);
    settle();
    QCOMPARE(registry.held(kCable), onDisk(file));
    registry->updateCalibrationData(flat("a", kCable, -1), QString());
    settle();
    QCOMPARE(onDisk(file), QStringList{"a|2|-1"});
    QCOMPARE(registry.held(kCable), onDisk(file));
}

QTEST_GUILESS_MAIN(TestADataManagerCalibrationReload)
#include "tst_adatamanager_calibration_reload.moc"
