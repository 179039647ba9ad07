#include "calibrationregistry.h"

#include <QtTest/QtTest>

using namespace registrytest;

// Changing, removing and clearing calibration objects, in the user's location, the installed one and elsewhere.
namespace {

// Leaves an object that the registry knows by its label alone.
void loadAndForgetFile(CalibrationRegistry *registry, const QString &name, const ACalibrationData &object)
{
    const QString file = registry->load(name, {object}, object.type());
    QVERIFY(QFile::remove(file));
    settle();
    QCOMPARE(registry->held(object.type()), QStringList());
}

} // namespace

class TestADataManagerCalibrationEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anUpdateReplacesTheObjectInPlace();
    void anUpdateOfAnUnknownObjectDoesNothing();
    void anUpdateGoesToTheFirstFileByName();
    void aRenameMovesTheObjectToTheEndOfItsFile();
    void aRenameToItsOwnNameMovesTheObjectToo();
    void aRenameOntoAnotherObjectReplacesIt();
    void aRenameOfTheOnlyObjectDeletesItsFileAndWritesItAnew();
    void aRenameOutsideOfTheUsersLocationKeepsTheFile();
    void anUpdateOfAnInstalledObjectGoesToTheUsersLocation();
    void aSecondUpdateOfAnInstalledObjectReplacesTheUsersCopy();
    void aRenameOfAnInstalledObjectLeavesItsFile();
    void theInstalledLocationOfAnotherTypeIsNotRedirected();
    void locationsAreComparedCaseSensitively();
    void anUpdateMakesTheDirectoryOfARelativeNameBelowTheRootToo();
    void aFailedUpdateKeepsTheOldFile();
    void anUpdateSignalsBeforeItWrites();

    void aRemovedObjectIsGoneFromItsFile();
    void aRemovedObjectStaysInItsFileUnlessAskedFor();
    void theLastObjectTakesItsFileAlong();
    void filesOutsideOfTheUsersLocationStay_data();
    void filesOutsideOfTheUsersLocationStay();
    void removingAnUnknownObjectDoesNothing_data();
    void removingAnUnknownObjectDoesNothing();
    void removingTakesTheLabelOfAllAlong();
    void whatAFileHoldsIsKnownWithoutItsLabel();
    void ofEqualObjectsTheFirstIsRemoved();
    void ofEqualObjectsTheFirstIsRenamed();
    void aFileThatARemovalDeletesStaysWatched();
    void aFailedRemovalIsSilent();
    void aDeletedFileIsKnownAgainAfterALookUp_data();
    void aDeletedFileIsKnownAgainAfterALookUp();

    void clearingATypeKeepsTheOthers();
    void clearingAllTouchesNoFileAndEndsTheWatch();
    void clearingAllKeepsTheListsOfSingleTypes();
    void clearingTakesLabelsOfOtherTypesAlong();
    void clearingForgetsFilesThatWereEmptyAlready();
    void clearingLeavesLabelsWhoseFileHasGone();
    void clearingWhatIsNotThereIsSilent();
    void theManagerClearsItsCalibrationsFirst();
};

void TestADataManagerCalibrationEditing::anUpdateReplacesTheObjectInPlace()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry->updateCalibrationData(flat("a", kCable, 3), QString());
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(onDisk(file), (QStringList{"a|2|3", "b|2|2"}));
    QCOMPARE(registry.held(kCable), onDisk(file));
    QCOMPARE(registry.found("a", kCable), QString("a|2|3"));
}

void TestADataManagerCalibrationEditing::anUpdateOfAnUnknownObjectDoesNothing()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    const QByteArray before = readFile(file);
    registry->updateCalibrationData(flat("b", kCable, 3), QString());
    registry->updateCalibrationData(flat("a", kAntenna, 3), QString());
    registry->updateCalibrationData(flat("a", kCable, 3), "b");
    registry->updateCalibrationData(ACalibrationData(), QString());
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(readFile(file), before);
    QCOMPARE(registry.names(kAllTypes), QStringList{"a"});
}

void TestADataManagerCalibrationEditing::anUpdateGoesToTheFirstFileByName()
{
    CalibrationRegistry registry;
    registry->addCalibrationData(flat("x", kCable, 1), registry.path("b.xml"));
    registry->addCalibrationData(flat("x", kCable, 2), registry.path("a.xml"));
    registry->updateCalibrationData(flat("x", kCable, 3), QString());
    QCOMPARE(onDisk(registry.path("a.xml")), QStringList{"x|2|3"});
    QCOMPARE(onDisk(registry.path("b.xml")), QStringList{"x|2|1"});
}

void TestADataManagerCalibrationEditing::aRenameMovesTheObjectToTheEndOfItsFile()
{
    CalibrationRegistry registry;
    const QString file =
        registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry->updateCalibrationData(flat("c", kCable, 3), "a");
    QCOMPARE(registry.takeLog(), repeated(signalOf(kCable), 2));
    QCOMPARE(onDisk(file), (QStringList{"b|2|2", "c|2|3"}));
    QCOMPARE(registry.held(kCable), onDisk(file));
    QCOMPARE(registry.names(kCable), (QStringList{"b", "c"}));
}

void TestADataManagerCalibrationEditing::aRenameToItsOwnNameMovesTheObjectToo()
{
    CalibrationRegistry registry;
    const QString file =
        registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry->updateCalibrationData(flat("a", kCable, 3), "a");
    QCOMPARE(onDisk(file), (QStringList{"b|2|2", "a|2|3"}));
}

void TestADataManagerCalibrationEditing::aRenameOntoAnotherObjectReplacesIt()
{
    CalibrationRegistry registry;
    const QString file =
        registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    registry->updateCalibrationData(flat("b", kCable, 3), "a");
    QCOMPARE(onDisk(file), QStringList{"b|2|3"});
}

void TestADataManagerCalibrationEditing::aRenameOfTheOnlyObjectDeletesItsFileAndWritesItAnew()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    QStringList existence;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this,
            [&] { existence << (QFile::exists(file) ? "there" : "gone"); });
    registry->updateCalibrationData(flat("b", kCable, 2), "a");
    QCOMPARE(existence, (QStringList{"gone", "gone"})); // the second signal comes before the new file
    QCOMPARE(onDisk(file), QStringList{"b|2|2"});
    QCOMPARE(registry.held(kCable), QStringList{"b|2|2"});
    settle();
    QCOMPARE(registry.names(kAllTypes), QStringList{"b"});
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibrationEditing::aRenameOutsideOfTheUsersLocationKeepsTheFile()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    QStringList disk;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] { disk << onDisk(file); });
    registry->updateCalibrationData(flat("b", kCable, 2), "a");
    QCOMPARE(disk, (QStringList{"a|2|1", "a|2|1"}));
    QCOMPARE(onDisk(file), QStringList{"b|2|2"}); // the addition writes it, without the old object
}

void TestADataManagerCalibrationEditing::anUpdateOfAnInstalledObjectGoesToTheUsersLocation()
{
    CalibrationRegistry registry;
    const QString installed = registry.load(registry.installed(kAntenna, "deep/er/a.xml"),
                                            {flat("a", kAntenna, 1), flat("b", kAntenna, 2)}, kAntenna);
    const QByteArray before = readFile(installed);
    registry->updateCalibrationData(flat("a", kAntenna, 3), QString());
    const QString copy = registry.user(kAntenna, "deep/er/a.xml");
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kAntenna)});
    QCOMPARE(readFile(installed), before);
    QCOMPARE(onDisk(copy), QStringList{"a|1|3"});
    QCOMPARE(registry.held(kAntenna), (QStringList{"a|1|1", "b|1|2", "a|1|3"}));
    QCOMPARE(registry.found("a", kAntenna), QString("a|1|3"));
    QVERIFY(isWatched(copy));
}

void TestADataManagerCalibrationEditing::aSecondUpdateOfAnInstalledObjectReplacesTheUsersCopy()
{
    CalibrationRegistry registry;
    registry.load(registry.installed(kAntenna, "a.xml"), {flat("a", kAntenna, 1)}, kAntenna);
    for (double gain : {2.0, 3.0})
        registry->updateCalibrationData(flat("a", kAntenna, gain), QString());
    QCOMPARE(onDisk(registry.user(kAntenna, "a.xml")), QStringList{"a|1|3"});
    QCOMPARE(onDisk(registry.installed(kAntenna, "a.xml")), QStringList{"a|1|1"});
    QCOMPARE(registry.held(kAntenna), (QStringList{"a|1|1", "a|1|3"}));
}

// The installed file is searched first; its object goes from memory, and comes back with the next load.
void TestADataManagerCalibrationEditing::aRenameOfAnInstalledObjectLeavesItsFile()
{
    CalibrationRegistry registry;
    const QString installed = registry.load(registry.installed(kAntenna, "a.xml"),
                                            {flat("a", kAntenna, 1), flat("b", kAntenna, 2)}, kAntenna);
    registry->updateCalibrationData(flat("c", kAntenna, 3), "a");
    QCOMPARE(onDisk(installed), (QStringList{"a|1|1", "b|1|2"}));
    QCOMPARE(onDisk(registry.user(kAntenna, "a.xml")), QStringList{"c|1|3"});
    QCOMPARE(registry.names(kAntenna), (QStringList{"b", "c"}));
    QCOMPARE(registry->addCalibrationFile(installed, kAntenna), (QStringList{"a", "b"}));
    QCOMPARE(registry.names(kAntenna), (QStringList{"a", "b", "c"}));
}

void TestADataManagerCalibrationEditing::theInstalledLocationOfAnotherTypeIsNotRedirected()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.installed(kCable, "a.xml"), {flat("a", kAntenna, 1)}, kCable);
    registry->updateCalibrationData(flat("a", kAntenna, 2), QString());
    QCOMPARE(onDisk(file), QStringList{"a|1|2"});
    QVERIFY(!QFile::exists(registry.path("user")));
}

void TestADataManagerCalibrationEditing::locationsAreComparedCaseSensitively()
{
    CalibrationRegistry registry;
    const QString installed = registry.installed(kCable, "a.xml").replace("installed", "INSTALLED");
    const QString user = registry.user(kCable, "b.xml").replace("user", "USER");
    registry.load(installed, {flat("a", kCable, 1)}, kCable);
    registry.load(user, {flat("b", kCable, 1)}, kCable);
    registry->updateCalibrationData(flat("a", kCable, 2), QString());
    QCOMPARE(onDisk(installed), QStringList{"a|2|2"}); // where it was, as anywhere else
    QVERIFY(!QFile::exists(registry.path("user")));
    registry->removeCalibrationData("b", kCable, true);
    QCOMPARE(onDisk(user), QStringList{"b|2|1"});
}

// Deliberately: the directory is made from the root first, and from the working directory when the file is written.
void TestADataManagerCalibrationEditing::anUpdateMakesTheDirectoryOfARelativeNameBelowTheRootToo()
{
    CalibrationRegistry registry;
    const QString fromRoot = QFileInfo(registry.path("made")).absoluteFilePath();
    const QString name = QDir::root().relativeFilePath(fromRoot) + "/a.xml";
    const QString before = QDir::currentPath();
    QVERIFY(QDir().mkdir(registry.path("work")) && QDir::setCurrent(registry.path("work")));
    registry->addCalibrationData(flat("a", kCable, 1), name);
    const QString file = registry.path("work/" + name);
    const bool isMadeByTheAddition = QFileInfo::exists(fromRoot);
    const bool isRemoved = QDir(QFileInfo(file).path()).removeRecursively();
    registry->updateCalibrationData(flat("a", kCable, 2), QString());
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(!isMadeByTheAddition);
    QVERIFY(isRemoved);
    QVERIFY(QFileInfo(fromRoot).isDir());
    QVERIFY(QDir(fromRoot).isEmpty());
    QCOMPARE(onDisk(file), QStringList{"a|2|2"});
}

void TestADataManagerCalibrationEditing::aFailedUpdateKeepsTheOldFile()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    const QByteArray before = readFile(file);
    ACalibrationData tooLong = flat("a", kCable, 2);
    tooLong.setLabel(QString((1 << 24) + 1, QLatin1Char('x')));
    const QByteArray message = "save failed: " + file.toLatin1();
    QTest::ignoreMessage(QtDebugMsg, message.constData());
    registry->updateCalibrationData(tooLong, "a");
    QCOMPARE(readFile(file), before);
    QCOMPARE(registry.names(kCable), QStringList{tooLong.label()}); // memory holds the new state
    QVERIFY(isWatched(file));
}

void TestADataManagerCalibrationEditing::anUpdateSignalsBeforeItWrites()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    int calls = 0;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] {
        ++calls;
        QCOMPARE(registry.found("a", kCable), QString("a|2|2"));
        QCOMPARE(onDisk(file), QStringList{"a|2|1"});
    });
    registry->updateCalibrationData(flat("a", kCable, 2), QString());
    QCOMPARE(calls, 1);
}

void TestADataManagerCalibrationEditing::aRemovedObjectIsGoneFromItsFile()
{
    CalibrationRegistry registry;
    const QString file =
        registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1), flat("b", kCable, 2)}, kCable);
    QStringList disk;
    connect(registry.manager.get(), &ADataManager::calibrationDataChanged, this, [&] { disk << onDisk(file); });
    registry->removeCalibrationData("a", kCable, true);
    QCOMPARE(disk, QStringList{"b|2|2"}); // written before the signal
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), QStringList{"b|2|2"});
    QCOMPARE(registry.names(kAllTypes), QStringList{"b"});
}

void TestADataManagerCalibrationEditing::aRemovedObjectStaysInItsFileUnlessAskedFor()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    registry->removeCalibrationData("a", kCable, false);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.names(kAllTypes), QStringList());
    QCOMPARE(onDisk(file), QStringList{"a|2|1"});
    QVERIFY(isWatched(file));
    registry.updateFile(file); // brings it back into its file, not under its label, which is the same to a look-up
    QCOMPARE(registry.found("a", kCable), QString("a|2|1"));
}

void TestADataManagerCalibrationEditing::theLastObjectTakesItsFileAlong()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    registry->removeCalibrationData("a", kCable, true);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QVERIFY(!QFile::exists(file));
    QCOMPARE(registry.names(kCable), QStringList());
    // The deletion comes back through the watch and finds nothing to do.
    settle();
    QCOMPARE(registry.takeLog(), QStringList());
}

void TestADataManagerCalibrationEditing::filesOutsideOfTheUsersLocationStay_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("installed") << "installed";
    QTest::newRow("elsewhere") << "elsewhere";
    QTest::newRow("the user's location of another type") << "other";
    QTest::newRow("a directory that begins like the user's") << "beside";
}

void TestADataManagerCalibrationEditing::filesOutsideOfTheUsersLocationStay()
{
    QFETCH(QString, where);
    CalibrationRegistry registry;
    const QString name = where == QLatin1String("installed") ? registry.installed(kCable, "a.xml")
                         : where == QLatin1String("other")   ? registry.user(kAntenna, "a.xml")
                         : where == QLatin1String("beside")  ? registry.path("user/calibration/cables/a.xml")
                                                             : registry.path("a.xml");
    for (const Objects &objects :
         {Objects{flat("a", kCable, 1)}, Objects{flat("a", kCable, 1), flat("b", kCable, 2)}}) {
        const QString file = registry.load(name, objects, kCable);
        registry->removeCalibrationData("a", kCable, true);
        QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
        QCOMPARE(onDisk(file), texts(objects));
        QCOMPARE(registry.held(kCable).size(), objects.size() - 1);
        QVERIFY(isWatched(file));
        QVERIFY(!registry.names(kCable).contains("a"));
    }
}

void TestADataManagerCalibrationEditing::removingAnUnknownObjectDoesNothing_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<ACalibrationData::CalibrationType>("type");
    QTest::newRow("label") << "b" << kCable;
    QTest::newRow("type") << "a" << kAntenna;
    QTest::newRow("all types") << "a" << kAllTypes;
    QTest::newRow("empty") << QString() << kCable;
}

void TestADataManagerCalibrationEditing::removingAnUnknownObjectDoesNothing()
{
    QFETCH(QString, label);
    QFETCH(ACalibrationData::CalibrationType, type);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    registry->removeCalibrationData(label, type, true);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(onDisk(file), QStringList{"a|2|1"});
    QCOMPARE(registry.names(kAllTypes), QStringList{"a"});
}

void TestADataManagerCalibrationEditing::removingTakesTheLabelOfAllAlong()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("x", kCable, 1)}, kCable);
    loadAndForgetFile(&registry, "b.xml", flat("x", kAntenna, 2));
    QCOMPARE(registry.names(kAntenna), QStringList{"x"});
    registry->removeCalibrationData("x", kCable, true);
    QCOMPARE(registry.names(kAllTypes), QStringList());
    QCOMPARE(registry.found("x", kAntenna), kNothing);
}

void TestADataManagerCalibrationEditing::whatAFileHoldsIsKnownWithoutItsLabel()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("x", kCable, 1)}, kCable);
    registry.load("b.xml", {flat("x", kAntenna, 2)}, kAntenna);
    registry->removeCalibrationData("x", kCable, true); // the label was the antenna's
    QCOMPARE(registry.found("x", kAntenna), QString("x|1|2"));
    QCOMPARE(registry.found("x", kCable), kNothing);
    registry->removeCalibrationData("x", kAntenna, true);
    QCOMPARE(registry.names(kAllTypes), QStringList());
}

void TestADataManagerCalibrationEditing::ofEqualObjectsTheFirstIsRemoved()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2), flat("a", kCable, 3)}, kCable);
    registry->removeCalibrationData("a", kCable, false);
    QCOMPARE(registry.held(kCable), (QStringList{"b|2|2", "a|2|3"}));
}

void TestADataManagerCalibrationEditing::ofEqualObjectsTheFirstIsRenamed()
{
    CalibrationRegistry registry;
    const QString file =
        registry.load("a.xml", {flat("a", kCable, 1), flat("b", kCable, 2), flat("a", kCable, 3)}, kCable);
    registry->updateCalibrationData(flat("c", kCable, 1), "a");
    QCOMPARE(registry.held(kCable), (QStringList{"b|2|2", "a|2|3", "c|2|1"}));
    QCOMPARE(onDisk(file), registry.held(kCable));
}

// By which the deletion is noticed: the entry that a look-up under another type has made for the file goes again.
void TestADataManagerCalibrationEditing::aFileThatARemovalDeletesStaysWatched()
{
    CalibrationRegistry registry;
    registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kAntenna);
    registry->removeCalibrationData("a", kCable, true);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kAntenna), QStringList());
    settle();
    QVERIFY(!registry.takeLog().isEmpty());
}

void TestADataManagerCalibrationEditing::aFailedRemovalIsSilent()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    QVERIFY(QFile::remove(file) && QDir().mkpath(file + "/sub")); // which can't be removed like a file
    registry->removeCalibrationData("a", kCable, true);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QVERIFY(QFileInfo(file).isDir());
    QCOMPARE(registry.names(kAllTypes), QStringList());
}

void TestADataManagerCalibrationEditing::aDeletedFileIsKnownAgainAfterALookUp_data()
{
    QTest::addColumn<int>("lookUp");
    QTest::newRow("none") << 0;
    QTest::newRow("objects") << 1;
    QTest::newRow("names") << 2;
    QTest::newRow("name") << 3;
    QTest::newRow("of the type alone") << 4;
}

// The list of all types keeps the name of a file that was deleted with its last object. A look-up through that list
// makes an empty entry of it, which the next change of such a file takes away, without a signal as no single type has
// it.
void TestADataManagerCalibrationEditing::aDeletedFileIsKnownAgainAfterALookUp()
{
    QFETCH(int, lookUp);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    registry->removeCalibrationData("a", kCable, true);
    if (lookUp == 1)
        registry->getCalibrationsForType(kAllTypes);
    else if (lookUp == 2)
        registry->getCalibrationNames(kAllTypes);
    else if (lookUp == 3)
        registry->getCalibrationForName("a", kAllTypes);
    else if (lookUp == 4)
        registry->getCalibrationForName("a", kCable);
    registry.takeLog();
    // An entry shows in what clearing a type finds to forget: a file of one object is listed for all types only as long
    // as it is not empty.
    const bool isKnown = lookUp >= 1 && lookUp <= 3;
    registry.save(file, {flat("a", kCable, 2)});
    registry->addCalibrationData(flat("other", kAntenna, 1), "-");
    registry->clearCalibrationData(kAntenna);
    registry.takeLog();
    // Forgotten files are no longer listed, so that a load lists them anew: at the end, behind "b".
    registry->addCalibrationData(flat("b", kCable, 3), registry.path("b.xml"));
    registry->addCalibrationFile(file, kCable);
    QCOMPARE(registry.held(kAllTypes), isKnown ? (QStringList{"b|2|3", "a|2|2"}) : (QStringList{"a|2|2", "b|2|3"}));
}

void TestADataManagerCalibrationEditing::clearingATypeKeepsTheOthers()
{
    CalibrationRegistry registry;
    const QString both =
        registry.load("a.xml", {flat("a", kAntenna, 1), flat("c", kCable, 2), flat("b", kAntenna, 1)}, kAntenna);
    const QString antennas = registry.load("b.xml", {flat("d", kAntenna, 3)}, kAntenna);
    registry->clearCalibrationData(kAntenna);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kAntenna)});
    QCOMPARE(registry.held(kAntenna), QStringList{"c|2|2"});
    QCOMPARE(registry.held(kAllTypes), QStringList{"c|2|2"});
    QCOMPARE(registry.names(kAllTypes), QStringList{"c"});
    QVERIFY(isWatched(both));
    QVERIFY(!isWatched(antennas));
    QCOMPARE(onDisk(both).size(), 3);
    QCOMPARE(onDisk(antennas).size(), 1);
}

void TestADataManagerCalibrationEditing::clearingAllTouchesNoFileAndEndsTheWatch()
{
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    registry->addCalibrationData(flat("b", kAntenna, 1), "-");
    registry.takeLog();
    registry->clearCalibrationData(kAllTypes);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kAllTypes)});
    QCOMPARE(registry.names(kAllTypes), QStringList());
    QCOMPARE(registry.held(kAllTypes), QStringList());
    QCOMPARE(onDisk(file), QStringList{"a|2|1"});
    QVERIFY(watchedInodes().isEmpty());
    registry->clearCalibrationData(kAllTypes);
    QCOMPARE(registry.takeLog(), QStringList());
}

// A look-up of the single type then makes an empty entry for the file, which a change of it fills.
void TestADataManagerCalibrationEditing::clearingAllKeepsTheListsOfSingleTypes()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    registry->clearCalibrationData(kAllTypes);
    registry.takeLog();
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList());
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
    QCOMPARE(registry.held(kCable), QStringList{"a|2|1"});
    QCOMPARE(registry.held(kAllTypes), QStringList());
}

void TestADataManagerCalibrationEditing::clearingTakesLabelsOfOtherTypesAlong()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("x", kCable, 1)}, kCable);
    loadAndForgetFile(&registry, "b.xml", flat("x", kAntenna, 2));
    QCOMPARE(registry.found("x", kAllTypes), QString("x|1|2"));
    registry->clearCalibrationData(kCable);
    QCOMPARE(registry.names(kAllTypes), QStringList());
}

void TestADataManagerCalibrationEditing::clearingForgetsFilesThatWereEmptyAlready()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {}, kCable);
    registry->clearCalibrationData(kAntenna);
    QCOMPARE(registry.takeLog(), QStringList());
    QVERIFY(!isWatched(file));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
}

// It goes by the objects of the files.
void TestADataManagerCalibrationEditing::clearingLeavesLabelsWhoseFileHasGone()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    QVERIFY(QFile::remove(file));
    settle();
    registry->clearCalibrationData(kAllTypes);
    QCOMPARE(registry.names(kAllTypes), QStringList{"a"});
    QCOMPARE(registry.found("a", kCable), QString("a|2|1"));
    // Held anew, it can be taken out.
    registry->addCalibrationData(flat("a", kCable, 1), "-");
    registry->removeCalibrationData("a", kCable, false);
    QCOMPARE(registry.names(kAllTypes), QStringList());
}

void TestADataManagerCalibrationEditing::clearingWhatIsNotThereIsSilent()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    registry->clearCalibrationData(kAntenna);
    registry->clearCalibrationData(kAnyType);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList{"a|2|1"});
}

void TestADataManagerCalibrationEditing::theManagerClearsItsCalibrationsFirst()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    registry.manager.reset();
    QCOMPARE(registry.takeLog(), (QStringList{signalOf(kAllTypes), "limits", "channels"}));
    QVERIFY(watchedInodes().isEmpty());
}

QTEST_GUILESS_MAIN(TestADataManagerCalibrationEditing)
#include "tst_adatamanager_calibration_editing.moc"
