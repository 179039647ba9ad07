#include "calibrationregistry.h"

#include <QtTest/QtTest>

#include <utility>

using namespace registrytest;

// Reading calibration files, adding objects, and looking them up.
class TestADataManagerCalibration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshStoreIsEmpty();

    void aFileGivesItsLabelsInFileOrder();
    void theFileIsHeldBeforeTheSignalAndWatchedAfterIt();
    void theGivenTypeIsForObjectsThatNameNone();
    void aFileIsListedUnderTheGivenTypeAndNotUnderItsObjects();
    void aFileLoadedForAllTypesIsListedOnce();
    void anEmptyFileIsTaken();
    void whatCannotBeReadIsReported_data();
    void whatCannotBeReadIsReported();
    void aFileThatFailsTheSecondTimeKeepsItsObjects();
    void loadingAFileTwiceReplacesItsListAndWritesIt();
    void aKnownLabelIsReplacedWhereItWasFound();
    void aKnownLabelOfALaterFileIsReplacedInTheNewFile();
    void aKnownLabelOfAnInstalledFileIsWrittenToTheUser();
    void aKnownLabelOfAnotherTypeIsReplacedInItsOwnFile();
    void equalLabelsInOneFileBecomeTheLastOfThem();
    void aFileOfADifferentTypeKeepsItsOtherObjects();

    void aPathGivesAllLabelsInOrder();
    void onlyCalibrationFilesOfADirectoryAreTried();
    void aPathThatIsNoDirectoryGivesNothing();
    void linksInACircleEnd();
    void aPathInsideTheProgramIsReadWithThoseBelowIt();

    void addingAnObjectCreatesItsFile();
    void theSignalOfAnAdditionComesBeforeTheFile();
    void addingAnObjectAppendsIt();
    void addingAnObjectOfAKnownLabelReplacesItWhateverItsType();
    void anObjectInMemoryHasNoFile();
    void aFileOfTheNameOfMemoryIsLeftAlone();
    void aFailedSaveIsLoggedAndTheObjectHeld();
    void whatAReceiverTakesOutIsNotWritten();
    void aReceiverThatClearsTheStoreEmptiesTheFile();

    void namesAreThoseOfTheirTypeSorted();
    void namesIncludeWhatOnlyAFileHas();
    void aLookUpGoesByLabelAndType();
    void aLookUpBehindTheLabelTakesTheLastMatch();
    void anObjectOfNoParticularTypeIsFoundForAnyType();
    void anObjectWithoutALabelIsFoundInItsFile();
    void namesOfLabelsAndOfFilesComeSortedAndOnce();
    void objectsOfATypeIncludeTheirNeighbours();
    void manyObjectsAreHeldAndFound();
};

void TestADataManagerCalibration::aFreshStoreIsEmpty()
{
    CalibrationRegistry registry;
    for (const auto type : {kPreamplifier, kAntenna, kCable, kAttenuator, kAnyType, kAllTypes}) {
        QCOMPARE(registry.held(type), QStringList());
        QCOMPARE(registry.names(type), QStringList());
        QCOMPARE(registry->getCalibrationForName(QStringLiteral("a"), type), ACalibrationData());
        QCOMPARE(registry->getCalibrationForName(QString(), type), ACalibrationData());
    }
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCalibration::aFileGivesItsLabelsInFileOrder()
{
    CalibrationRegistry registry;
    const QString file = registry.save("a.xml", {flat("z", kCable, 1), flat("a", kCable, 2), flat("m", kCable, 3)});
    QCOMPARE(registry->addCalibrationFile(file, kCable), (QStringList{"z", "a", "m"}));
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), (QStringList{"z|2|1", "a|2|2", "m|2|3"}));
    QCOMPARE(registry.held(kAllTypes), registry.held(kCable));
    QCOMPARE(registry.names(kCable), (QStringList{"a", "m", "z"}));
    QCOMPARE(registry.found("a", kCable), QString("a|2|2"));
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibration::theFileIsHeldBeforeTheSignalAndWatchedAfterIt()
{
    CalibrationRegistry registry;
    const QString file = registry.save("a.xml", {flat("a", kCable, 1)});
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] {
        ++calls;
        QCOMPARE(registry.held(kCable), QStringList{"a|2|1"});
        QCOMPARE(registry.names(kCable), QStringList{"a"});
        QVERIFY(!isWatched(file));
    });
    registry->addCalibrationFile(file, kCable);
    QCOMPARE(calls, 1);
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibration::theGivenTypeIsForObjectsThatNameNone()
{
    CalibrationRegistry registry;
    const QString file = registry.write("a.xml", "<calibrations><calibration label='a'/>"
                                                 "<calibration label='b' type='antenna'/></calibrations>");
    registry->addCalibrationFile(file, kCable);
    QCOMPARE(registry.held(kCable), (QStringList{"a|2|0", "b|1|0"}));
    registry->clearCalibrationData(kAllTypes);
    registry->addCalibrationFile(file, kAllTypes);
    QCOMPARE(registry.held(kAllTypes), (QStringList{"a|5|0", "b|1|0"}));
}

void TestADataManagerCalibration::aFileIsListedUnderTheGivenTypeAndNotUnderItsObjects()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("a", kAntenna, 1), flat("c", kCable, 2)}, kCable);
    QCOMPARE(registry.held(kCable), (QStringList{"a|1|1", "c|2|2"}));
    QCOMPARE(registry.held(kAntenna), QStringList());
    // By label it is an antenna all the same.
    QCOMPARE(registry.names(kAntenna), QStringList{"a"});
    QCOMPARE(registry.names(kCable), QStringList{"c"});
    QCOMPARE(registry.found("a", kAntenna), QString("a|1|1"));
}

void TestADataManagerCalibration::aFileLoadedForAllTypesIsListedOnce()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("a", kAntenna, 1)}, kAllTypes);
    QCOMPARE(registry.held(kAllTypes), QStringList{"a|1|1"});
    QCOMPARE(registry.held(kAntenna), QStringList());
    QCOMPARE(registry.names(kAntenna), QStringList{"a"});
}

void TestADataManagerCalibration::anEmptyFileIsTaken()
{
    CalibrationRegistry registry;
    const QString file = registry.save("a.xml", {});
    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList());
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibration::whatCannotBeReadIsReported_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << "missing.xml";
    QTest::newRow("directory") << "directory.xml";
    QTest::newRow("no calibration") << "garbage %2 \u00e4.xml";
}

void TestADataManagerCalibration::whatCannotBeReadIsReported()
{
    QFETCH(QString, name);
    CalibrationRegistry registry;
    QVERIFY(QDir().mkdir(registry.path("directory.xml")));
    registry.write("garbage %2 \u00e4.xml", "garbage");
    const QString file = registry.path(name);
    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList());
    QCOMPARE(registry.takeLog(),
             QStringList{QStringLiteral("error: Could not read calibration data from file '") + file + '\''});
    QVERIFY(registry.held(kAllTypes).isEmpty());
    QVERIFY(!isWatched(file));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCalibration::aFileThatFailsTheSecondTimeKeepsItsObjects()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    writeText(file, "garbage");
    QCOMPARE(registry->addCalibrationFile(file, kCable), QStringList());
    QCOMPARE(registry.takeLog().size(), 1);
    QCOMPARE(registry.held(kCable), QStringList{"a|2|1"});
}

// Every label is known the second time, so each object is written back once.
void TestADataManagerCalibration::loadingAFileTwiceReplacesItsListAndWritesIt()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry.save(file, {flat("b", kCable, 3), flat("c", kCable, 4)});
    QCOMPARE(registry->addCalibrationFile(file, kCable), (QStringList{"b", "c"}));
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    QCOMPARE(registry.held(kCable), (QStringList{"b|2|3", "c|2|4"}));
    QCOMPARE(onDisk(file), (QStringList{"b|2|3", "c|2|4"}));
    // The label of an object that has gone stays.
    QCOMPARE(registry.names(kCable), (QStringList{"a", "b", "c"}));
    QCOMPARE(registry.found("a", kCable), QString("a|2|1"));
}

void TestADataManagerCalibration::aKnownLabelIsReplacedWhereItWasFound()
{
    CalibrationRegistry registry;
    const QString first = registry.load("a.xml", {flat("x", kCable, 1), flat("y", kCable, 2)}, kCable);
    const QString second = registry.save("b.xml", {flat("x", kCable, 3)});
    QStringList diskInSignal;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this,
            [&] { diskInSignal << onDisk(first).first(); });
    QCOMPARE(registry->addCalibrationFile(second, kCable), QStringList{"x"});
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    QCOMPARE(diskInSignal, (QStringList{"x|2|1", "x|2|3"}));
    QCOMPARE(registry.found("x", kCable), QString("x|2|3"));
    QCOMPARE(registry.held(kCable), (QStringList{"x|2|3", "y|2|2", "x|2|3"}));
    QCOMPARE(onDisk(first), (QStringList{"x|2|3", "y|2|2"}));
    QCOMPARE(onDisk(second), QStringList{"x|2|3"});
}

// Files are searched by name, so the object of the new one is the first to be found.
void TestADataManagerCalibration::aKnownLabelOfALaterFileIsReplacedInTheNewFile()
{
    CalibrationRegistry registry;
    const QString known = registry.load("z.xml", {flat("x", kCable, 1)}, kCable);
    registry->addCalibrationFile(registry.save("a.xml", {flat("x", kCable, 2)}), kCable);
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    QCOMPARE(onDisk(known), QStringList{"x|2|1"});
    QCOMPARE(registry.held(kCable), (QStringList{"x|2|1", "x|2|2"}));
    QCOMPARE(registry.found("x", kCable), QString("x|2|2"));
}

void TestADataManagerCalibration::aKnownLabelOfAnInstalledFileIsWrittenToTheUser()
{
    CalibrationRegistry registry;
    const QString installed = registry.load(registry.installed(kCable, "sub/a.xml"), {flat("x", kCable, 1)}, kCable);
    const QByteArray before = readFile(installed);
    registry->addCalibrationFile(registry.save("z.xml", {flat("x", kCable, 2)}), kCable);
    const QString copy = registry.user(kCable, "sub/a.xml");
    QCOMPARE(readFile(installed), before);
    QCOMPARE(onDisk(copy), QStringList{"x|2|2"});
    QVERIFY(isWatched(copy) && isWatched(installed));
    QCOMPARE(registry.held(kCable), (QStringList{"x|2|1", "x|2|2", "x|2|2"}));
    QCOMPARE(registry.found("x", kCable), QString("x|2|2"));
}

void TestADataManagerCalibration::aKnownLabelOfAnotherTypeIsReplacedInItsOwnFile()
{
    CalibrationRegistry registry;
    const QString first = registry.load("a.xml", {flat("x", kCable, 1)}, kCable);
    const QString second = registry.save("b.xml", {flat("x", kAntenna, 2)});
    registry->addCalibrationFile(second, kAntenna);
    QCOMPARE(onDisk(first), QStringList{"x|2|1"});
    QCOMPARE(onDisk(second), QStringList{"x|1|2"});
    // One label, one entry: the cable is found behind it, in its file.
    QCOMPARE(registry.found("x", kAllTypes), QString("x|1|2"));
    QCOMPARE(registry.found("x", kCable), QString("x|2|1"));
    QCOMPARE(registry.names(kCable), QStringList{"x"});
    QCOMPARE(registry.names(kAllTypes), QStringList{"x"});
}

void TestADataManagerCalibration::equalLabelsInOneFileBecomeTheLastOfThem()
{
    for (const QString &label : {QString("x"), QString()}) {
        CalibrationRegistry registry;
        const QString file = registry.save("a.xml", {flat(label, kCable, 1), flat(label, kCable, 2)});
        QCOMPARE(registry->addCalibrationFile(file, kCable), (QStringList{label, label}));
        const QString last = label + "|2|2";
        QCOMPARE(registry.held(kCable), (QStringList{last, last}));
        QCOMPARE(onDisk(file), (QStringList{last, last}));
        QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    }
}

void TestADataManagerCalibration::aFileOfADifferentTypeKeepsItsOtherObjects()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("x", kCable, 1), flat("x", kAntenna, 2)}, kCable);
    // The antenna was searched by label and type, then put over the first object of its label.
    QCOMPARE(onDisk(file), (QStringList{"x|1|2", "x|1|2"}));
    QCOMPARE(registry.held(kAntenna), (QStringList{"x|1|2", "x|1|2"}));
}

void TestADataManagerCalibration::aPathGivesAllLabelsInOrder()
{
    CalibrationRegistry registry;
    registry.save("all/b.xml", {flat("1", kCable, 1), flat("2", kCable, 1)});
    registry.save("all/A.CALDATA", {flat("3", kCable, 1)});
    registry.save("all/B/x.offsets", {flat("4", kCable, 1)});
    registry.save("all/c/d/e.xml", {flat("5", kCable, 1)});
    registry.save("all/C.offsets", {flat("6", kAntenna, 1)});
    QCOMPARE(registry->addCalibrationPath(registry.path("all"), kCable), (QStringList{"3", "4", "1", "2", "5", "6"}));
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 5));
    QCOMPARE(watchedInodes().size(), 5);
    QCOMPARE(registry.names(kCable), (QStringList{"1", "2", "3", "4", "5"}));
}

void TestADataManagerCalibration::onlyCalibrationFilesOfADirectoryAreTried()
{
    CalibrationRegistry registry;
    QVERIFY(QDir().mkdir(registry.path("all")));
    registry.write("all/readme.txt", "garbage");
    registry.write("all/a.xml.bak", "garbage");
    registry.write("all/.hidden.xml", "garbage");
    registry.write("all/bad.xml", "garbage");
    registry.save("all/good.xml", {flat("a", kCable, 1)});
    QCOMPARE(registry->addCalibrationPath(registry.path("all"), kCable), QStringList{"a"});
    QCOMPARE(registry.takeLog(), (QStringList{QStringLiteral("error: Could not read calibration data from file '") +
                                                  registry.path("all/bad.xml") + '\'',
                                              signalOf(kCable)}));
}

void TestADataManagerCalibration::aPathThatIsNoDirectoryGivesNothing()
{
    CalibrationRegistry registry;
    QCOMPARE(registry->addCalibrationPath(registry.path("missing"), kCable), QStringList());
    QCOMPARE(registry->addCalibrationPath(registry.save("a.xml", {flat("a", kCable, 1)}), kCable), QStringList());
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCalibration::linksInACircleEnd()
{
    CalibrationRegistry registry;
    registry.save("all/sub/a.xml", {flat("a", kCable, 1)});
    QVERIFY(QFile::link(registry.path("all"), registry.path("all/sub/up")));
    QVERIFY(QFile::link(registry.path("all/sub"), registry.path("all/sub2")));
    QCOMPARE(registry->addCalibrationPath(registry.path("all"), kCable), QStringList{"a"});
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
}

// Such directories have no numbers by which to know them.
void TestADataManagerCalibration::aPathInsideTheProgramIsReadWithThoseBelowIt()
{
    CalibrationRegistry registry;
    QCOMPARE(registry->addCalibrationPath(":/calibration", kCable), (QStringList{"one", "two", "three"}));
}

void TestADataManagerCalibration::addingAnObjectCreatesItsFile()
{
    CalibrationRegistry registry;
    const QString file = registry.path("new/er/a.caldata");
    registry->addCalibrationData(flat("a", kCable, 1), file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(onDisk(file), QStringList{"a|2|1"});
    QVERIFY(isWatched(file));
    QCOMPARE(registry.held(kCable), QStringList{"a|2|1"});
    QCOMPARE(registry.held(kAllTypes), QStringList{"a|2|1"});
    QCOMPARE(registry.held(kAntenna), QStringList());
}

void TestADataManagerCalibration::theSignalOfAnAdditionComesBeforeTheFile()
{
    CalibrationRegistry registry;
    const QString file = registry.path("a.xml");
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] {
        ++calls;
        QCOMPARE(registry.found("a", kCable), QString("a|2|1"));
        QVERIFY(!QFile::exists(file));
    });
    registry->addCalibrationData(flat("a", kCable, 1), file);
    QCOMPARE(calls, 1);
}

void TestADataManagerCalibration::addingAnObjectAppendsIt()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("b", kCable, 1)}, kCable);
    registry->addCalibrationData(flat("a", kAntenna, 2), file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kAntenna)});
    QCOMPARE(onDisk(file), (QStringList{"b|2|1", "a|1|2"}));
    // Listed under both types from now on, with all that it has.
    QCOMPARE(registry.held(kAntenna), onDisk(file));
    QCOMPARE(registry.held(kCable), onDisk(file));
    QCOMPARE(registry.held(kAllTypes), onDisk(file));
}

void TestADataManagerCalibration::addingAnObjectOfAKnownLabelReplacesItWhateverItsType()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry->addCalibrationData(flat("a", kAntenna, 3), file);
    QCOMPARE(onDisk(file), (QStringList{"a|1|3", "b|2|2"}));
    QCOMPARE(registry.names(kCable), QStringList{"b"});
}

void TestADataManagerCalibration::anObjectInMemoryHasNoFile()
{
    CalibrationRegistry registry;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    registry->addCalibrationData(flat("a", kCable, 1), "-");
    registry->updateCalibrationData(flat("a", kCable, 2), QString());
    registry->addCalibrationData(flat("b", kCable, 3), "-");
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 3));
    QCOMPARE(registry.held(kCable), (QStringList{"a|2|2", "b|2|3"}));
    QVERIFY(!QFile::exists(registry.path("-")));
    QVERIFY(watchedInodes().isEmpty());
}

void TestADataManagerCalibration::aFileOfTheNameOfMemoryIsLeftAlone()
{
    CalibrationRegistry registry;
    const QString file = registry.save("-", {flat("b", kCable, 2)});
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(registry.path(QString())));
    registry->addCalibrationData(flat("a", kCable, 1), "-");
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(!isWatched(file));
    QCOMPARE(onDisk(file), QStringList{"b|2|2"});
}

void TestADataManagerCalibration::aFailedSaveIsLoggedAndTheObjectHeld()
{
    CalibrationRegistry registry;
    const QString file = registry.path("a\u00e4.xml");
    QVERIFY(QDir().mkdir(file));
    const QByteArray message = "save failed: " + file.toLatin1();
    QTest::ignoreMessage(QtDebugMsg, message.constData());
    registry->addCalibrationData(flat("a", kCable, 1), file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)}); // and no error
    QCOMPARE(registry.held(kCable), QStringList{"a|2|1"});
    QVERIFY(isWatched(file));
}

// The file is written with what the store holds after the signal.
void TestADataManagerCalibration::whatAReceiverTakesOutIsNotWritten()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    bool isTaken = false;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] {
        if (!std::exchange(isTaken, true))
            registry->removeCalibrationData("a", kCable, false);
    });
    registry->addCalibrationData(flat("a", kCable, 3), file);
    QCOMPARE(registry.held(kCable), QStringList{"b|2|2"});
    QCOMPARE(onDisk(file), QStringList{"b|2|2"});
}

void TestADataManagerCalibration::aReceiverThatClearsTheStoreEmptiesTheFile()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    const auto connection = connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] {
        if (!registry.held(kCable).isEmpty())
            registry->clearCalibrationData(kAllTypes);
    });
    registry->addCalibrationData(flat("a", kCable, 2), file);
    disconnect(connection);
    QCOMPARE(registry.held(kCable), QStringList());
    QCOMPARE(onDisk(file), QStringList());
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibration::namesAreThoseOfTheirTypeSorted()
{
    CalibrationRegistry registry;
    registry.load("a.xml",
                  {flat("b", kCable, 1), flat("B", kCable, 1), flat("\u00e4", kAntenna, 1), flat("a", kPreamplifier, 1),
                   flat("-- x", kAttenuator, 1), flat("", kAnyType, 1)},
                  kCable);
    QCOMPARE(registry.names(kCable), (QStringList{"B", "b"}));
    QCOMPARE(registry.names(kAntenna), QStringList{"\u00e4"});
    QCOMPARE(registry.names(kAnyType), QStringList{""});
    QCOMPARE(registry.names(kAllTypes), (QStringList{"", "-- x", "B", "a", "b", "\u00e4"}));
}

void TestADataManagerCalibration::namesIncludeWhatOnlyAFileHas()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("x", kCable, 1)}, kCable);
    registry->addCalibrationData(flat("x", kAntenna, 2), registry.path("b.xml"));
    QCOMPARE(registry.names(kCable), QStringList{"x"});   // by its file
    QCOMPARE(registry.names(kAntenna), QStringList{"x"}); // by its label
    registry->removeCalibrationData("x", kAntenna, false);
    QCOMPARE(registry.names(kAntenna), QStringList());
    QCOMPARE(registry.names(kCable), QStringList{"x"});
}

void TestADataManagerCalibration::aLookUpGoesByLabelAndType()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("x", kCable, 1), flat("X", kCable, 2)}, kCable);
    QCOMPARE(registry.found("x", kCable), QString("x|2|1"));
    QCOMPARE(registry.found("X", kCable), QString("X|2|2"));
    QCOMPARE(registry.found("x", kAllTypes), QString("x|2|1"));
    QCOMPARE(registry->getCalibrationForName("x", kAntenna), ACalibrationData());
    QCOMPARE(registry->getCalibrationForName("y", kAllTypes), ACalibrationData());
    QCOMPARE(registry->getCalibrationForName("", kCable), ACalibrationData());
}

void TestADataManagerCalibration::aLookUpBehindTheLabelTakesTheLastMatch()
{
    CalibrationRegistry registry;
    registry->addCalibrationData(flat("x", kCable, 1), registry.path("b.xml"));
    registry->addCalibrationData(flat("x", kCable, 2), registry.path("a.xml")); // the later file of the list
    QCOMPARE(registry.found("x", kCable), QString("x|2|2"));
    registry->addCalibrationData(flat("x", kCable, 3), registry.path("b.xml"));
    QCOMPARE(registry.found("x", kCable), QString("x|2|3")); // the last one written, by its label
    registry->addCalibrationData(flat("x", kAntenna, 4), registry.path("c.xml"));
    QCOMPARE(registry.found("x", kCable), QString("x|2|2")); // the last one in the order of the files' arrival
}

void TestADataManagerCalibration::anObjectOfNoParticularTypeIsFoundForAnyType()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("x", kAnyType, 1)}, kAnyType);
    for (const auto type : {kPreamplifier, kAntenna, kCable, kAttenuator, kAnyType, kAllTypes})
        QCOMPARE(registry.found("x", type), QString("x|5|1"));
    // One of the type itself comes first.
    registry.load("b.xml", {flat("x", kCable, 2)}, kCable);
    registry->addCalibrationData(flat("x", kAnyType, 3), registry.path("a.xml"));
    QCOMPARE(registry.found("x", kCable), QString("x|2|2"));
    QCOMPARE(registry.found("x", kAntenna), QString("x|5|3"));
    QVERIFY(registry.names(kAntenna).isEmpty());
}

void TestADataManagerCalibration::anObjectWithoutALabelIsFoundInItsFile()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("", kCable, 1)}, kCable);
    QCOMPARE(registry.found("", kCable), QString("|2|1"));
    QCOMPARE(registry.found("", kAllTypes), QString("|2|1"));
    QCOMPARE(registry.found("", kAntenna), kNothing);
}

void TestADataManagerCalibration::namesOfLabelsAndOfFilesComeSortedAndOnce()
{
    CalibrationRegistry registry;
    for (const char *label : {"k", "b", "m", "a", "B"}) {
        registry->addCalibrationData(flat(label, kCable, 1), registry.path("b.xml"));
        registry->addCalibrationData(flat(label, kCable, 2), registry.path("a.xml"));
    }
    for (const char *label : {"m", "a", "k"}) // hides the cables
        registry->addCalibrationData(flat(label, kAntenna, 3), registry.path("c.xml"));
    QCOMPARE(registry.names(kCable), (QStringList{"B", "a", "b", "k", "m"}));
    QCOMPARE(registry.names(kAntenna), (QStringList{"a", "k", "m"}));
    QCOMPARE(registry.names(kAllTypes), registry.names(kCable));
}

void TestADataManagerCalibration::objectsOfATypeIncludeTheirNeighbours()
{
    CalibrationRegistry registry;
    registry.load("b.xml", {flat("a", kAntenna, 1), flat("c", kCable, 2)}, kAntenna);
    registry.load("a.xml", {flat("d", kCable, 3)}, kAntenna);
    QCOMPARE(registry.held(kAntenna), (QStringList{"a|1|1", "c|2|2", "d|2|3"}));
}

void TestADataManagerCalibration::manyObjectsAreHeldAndFound()
{
    constexpr int kObjects = 100000;
    CalibrationRegistry registry;
    Objects objects;
    for (int i = 0; i < kObjects; ++i)
        objects << flat(QString::number(i), kCable, i % 100);
    const QString file = registry.save("a.caldata", objects);
    QCOMPARE(registry->addCalibrationFile(file, kCable).size(), kObjects);
    QCOMPARE(registry.names(kCable).size(), kObjects);
    for (int i = 0; i < kObjects; i += 7)
        QCOMPARE(registry->getCalibrationForName(QString::number(i), kCable), objects.at(i));
    registry.takeLog();
    registry->clearCalibrationData(kAllTypes);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kAllTypes)});
    QVERIFY(registry.names(kAllTypes).isEmpty());
}

QTEST_GUILESS_MAIN(TestADataManagerCalibration)
#include "tst_adatamanager_calibration.moc"
