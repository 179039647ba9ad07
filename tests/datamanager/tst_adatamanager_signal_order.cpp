#include "calibrationregistry.h"
#include "channelprofiles.h"
#include "limitregistry.h"

#include <QtTest/QtTest>

#include <functional>

using namespace registrytest;

namespace {

// Calls a receiver at the first signal of its kind only, so that it may change the registry.
template<typename Signal>
void atFirst(const CalibrationRegistry &registry, Signal signal, QObject *context,
             const std::function<void()> &receiver)
{
    QObject::connect(registry.manager.get(), signal, context, [receiver, isCalled = false]() mutable {
        if (!isCalled) {
            isCalled = true;
            receiver();
        }
    });
}

} // namespace

// What a receiver finds in the registry when a signal comes.
class TestADataManagerSignalOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anAddedCalibrationIsListedAtTheSignal();
    void aClearedTypeIsForgottenAtTheSignal_data();
    void aClearedTypeIsForgottenAtTheSignal();
    void aRemovedCalibrationHasNoLabelAtTheSignal();
    void aFileOfAClearedTypeIsNotListedUnderIt();
    void aDeletedFileIsNotListedAtTheSignal_data();
    void aDeletedFileIsNotListedAtTheSignal();
    void aFileThatHasGoneMayBeWrittenAtTheSignal_data();
    void aFileThatHasGoneMayBeWrittenAtTheSignal();

    void limitsOfADeletedFileAreGoneAtTheSignal();
    void anInternalLimitIsThereAtTheSignal();

    void aClearedChannelTreeFindsNothingAtTheSignal();
};

void TestADataManagerSignalOrder::anAddedCalibrationIsListedAtTheSignal()
{
    CalibrationRegistry registry;
    QStringList ofType;
    QStringList ofAll;
    QString byLabel;
    atFirst(registry, &ADataManager::calibrationDataChanged, this, [&] {
        ofType = registry.held(kCable);
        ofAll = registry.held(kAllTypes);
        byLabel = registry.found("a", kCable);
    });
    registry->addCalibrationData(flat("a", kCable, 1), registry.path("a.xml"));
    QCOMPARE(ofType, QStringList{"a|2|1"});
    QCOMPARE(ofAll, QStringList{"a|2|1"});
    QCOMPARE(byLabel, QString("a|2|1"));
}

void TestADataManagerSignalOrder::aClearedTypeIsForgottenAtTheSignal_data()
{
    QTest::addColumn<ACalibrationData::CalibrationType>("type");
    QTest::newRow("type") << kCable;
    QTest::newRow("all types") << kAllTypes;
}

void TestADataManagerSignalOrder::aClearedTypeIsForgottenAtTheSignal()
{
    QFETCH(ACalibrationData::CalibrationType, type);
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    bool isStillWatched = true;
    QStringList names{"not asked"};
    atFirst(registry, &ADataManager::calibrationDataChanged, this, [&] {
        isStillWatched = isWatched(file);
        names = registry.names(kAllTypes);
        registry.updateFile(file); // of a file that is known it would read the objects again, and signal
    });
    registry->clearCalibrationData(type);
    QCOMPARE(registry.takeLog(), QStringList{signalOf(type)});
    QVERIFY(!isStillWatched);
    QCOMPARE(names, QStringList());
    QCOMPARE(registry.held(kAllTypes), QStringList());
}

void TestADataManagerSignalOrder::aRemovedCalibrationHasNoLabelAtTheSignal()
{
    CalibrationRegistry registry;
    registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    QStringList names{"not called"};
    atFirst(registry, &ADataManager::calibrationDataChanged, this, [&] { names = registry.names(kAllTypes); });
    registry->removeCalibrationData("a", kCable, false);
    QCOMPARE(names, QStringList());
}

// A look-up under a type makes an entry of each file that is listed, by which a reload would know it.
void TestADataManagerSignalOrder::aFileOfAClearedTypeIsNotListedUnderIt()
{
    CalibrationRegistry registry;
    const QString file = registry.load("a.xml", {flat("a", kCable, 1)}, kCable);
    registry->clearCalibrationData(kCable);
    registry.takeLog();
    QCOMPARE(registry.held(kCable), QStringList());
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList());
    QCOMPARE(registry.held(kCable), QStringList());
}

void TestADataManagerSignalOrder::aDeletedFileIsNotListedAtTheSignal_data()
{
    QTest::addColumn<bool>("isRemoval"); // by the manager, not from outside
    QTest::newRow("removal") << true;
    QTest::newRow("reload") << false;
}

void TestADataManagerSignalOrder::aDeletedFileIsNotListedAtTheSignal()
{
    QFETCH(bool, isRemoval);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    atFirst(registry, &ADataManager::calibrationDataChanged, this, [&] {
        QCOMPARE(registry.held(kCable), QStringList()); // makes an entry of a file that is listed
        registry.updateFile(file);                      // and this would signal for it
    });
    if (isRemoval) {
        registry->removeCalibrationData("a", kCable, true);
    } else {
        QVERIFY(QFile::remove(file));
        registry.updateFile(file);
    }
    QCOMPARE(registry.takeLog(), QStringList{signalOf(kCable)});
}

void TestADataManagerSignalOrder::aFileThatHasGoneMayBeWrittenAtTheSignal_data()
{
    QTest::addColumn<QString>("operation");
    QTest::newRow("removed") << "remove";
    QTest::newRow("deleted from outside") << "reload";
    QTest::newRow("type cleared") << "clear";
    QTest::newRow("all types cleared") << "clear all";
}

void TestADataManagerSignalOrder::aFileThatHasGoneMayBeWrittenAtTheSignal()
{
    QFETCH(QString, operation);
    CalibrationRegistry registry;
    const QString file = registry.load(registry.user(kCable, "a.xml"), {flat("a", kCable, 1)}, kCable);
    atFirst(registry, &ADataManager::calibrationDataChanged, this,
            [&] { registry->addCalibrationData(flat("new", kCable, 2), file); });
    if (operation == "remove") {
        registry->removeCalibrationData("a", kCable, true);
    } else if (operation == "reload") {
        QVERIFY(QFile::remove(file));
        registry.updateFile(file);
    } else {
        registry->clearCalibrationData(operation == "clear" ? kCable : kAllTypes);
    }
    QCOMPARE(onDisk(file), QStringList{"new|2|2"});
    QCOMPARE(registry.held(kCable), onDisk(file));
    QCOMPARE(registry.held(kAllTypes), onDisk(file));
    settle();
    QCOMPARE(registry.held(kCable), onDisk(file));
    QVERIFY(isWatched(file));
}

void TestADataManagerSignalOrder::limitsOfADeletedFileAreGoneAtTheSignal()
{
    CalibrationRegistry registry;
    const QString file = registry.write("a.xml", limitText({"a"}));
    QVERIFY(registry->addLimitFile(file));
    registry->addInternalLimit(namedLimit("kept"));
    const QPointer<const ALimit> limit = registry->getLimitForName("a");
    QStringList names;
    bool isGone = false;
    atFirst(registry, &ADataManager::limitDataChanged, this, [&] {
        names = registry->getLimitNames();
        isGone = !limit;
        registry.updateFile(file); // would signal for a file that is known
    });
    registry.takeLog();
    QVERIFY(QFile::remove(file));
    registry.updateFile(file);
    QCOMPARE(registry.takeLog(), QStringList{kLimits});
    QCOMPARE(names, QStringList{"kept"});
    QVERIFY(isGone);
}

void TestADataManagerSignalOrder::anInternalLimitIsThereAtTheSignal()
{
    CalibrationRegistry registry;
    QStringList names;
    atFirst(registry, &ADataManager::limitDataChanged, this, [&] { names = registry->getLimitNames(); });
    QVERIFY(registry->addInternalLimit(namedLimit("a")));
    QCOMPARE(names, QStringList{"a"});
}

void TestADataManagerSignalOrder::aClearedChannelTreeFindsNothingAtTheSignal()
{
    CalibrationRegistry registry;
    QVERIFY(registry.add("id", "label", channels(range("channel"))));
    registry->createChannelInfoFromProfiles();
    QVERIFY(registry->getChannelInfoForProfile("id"));
    const AChannelInfo *byId = registry->getChannelInfoRoot();
    const AChannelInfo *byName = byId;
    atFirst(registry, &ADataManager::channelInfoDataChanged, this, [&] {
        byId = registry->getChannelInfoForProfile("id");
        byName = registry->getChannelInfoForName("channel");
        registry->createChannelInfoFromProfiles(); // deletes what is still known, and must stay
    });
    registry->clearChannelInfoData();
    QVERIFY(!byId);
    QVERIFY(!byName);
    QCOMPARE(profileId(registry->getChannelInfoForProfile("id")), QString("id"));
    QCOMPARE(registry->getChannelInfoRoot()->childCount(), 1);
}

QTEST_GUILESS_MAIN(TestADataManagerSignalOrder)
#include "tst_adatamanager_signal_order.moc"
