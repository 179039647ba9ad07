#include "calibrationmodel.h"

#include <QtTest/QtTest>

using namespace calibrationtest;

// What the model shows, how its indexes are made, and how it follows the store.
class TestACalibrationObjectModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QLocale::setDefault(QLocale::c()); }

    void anEmptyStoreHasFourTypes();
    void typesStandInTheirOrder();
    void objectsAreSortedUnderTheirType();
    void anObjectHasItsEntriesAndARowToAddOne();
    void anObjectWithoutEntriesHasOneRow();
    void anObjectWhoseLabelBeginsWithDashesHasNoRows();
    void levelsAreCounted();
    void idsAreHashesOfTexts();
    void anIdLeadsBackToItsParent();
    void indexesOutsideAreInvalid();
    void numbersBelowZeroGiveTheTopItemToo();
    void valuesOfAnEntry();
    void frequenciesChooseTheirUnit_data();
    void frequenciesChooseTheirUnit();
    void numbersAreInTheFormOfTheLocale();
    void antennasHaveAUnitOfTheirOwn();
    void otherRolesShowNothing();
    void headers();
    void flagsOfEachLevel();
    void objectsAreFoundByTypeAndLabel();
    void objectsAreHandedOutForTheirIndexAlone();
    void anIndexOfAnObjectThatHasGoneIsHarmless();
    void everyChangeOfTheStoreResets();
    void theModelOutlivesTheRegistry();
    void aFullExpansionShowsTheStore();
    void theTesterFindsNothing();
    void theTesterFindsNothingInRandomStores();
};

void TestACalibrationObjectModel::anEmptyStoreHasFourTypes()
{
    Calibrations c;
    QCOMPARE(c.model->rowCount(), 1);
    QCOMPARE(c.model->columnCount(), 1);
    QVERIFY(c.top().isValid());
    QVERIFY(!c.top().data().isValid());
    QVERIFY(!c.top().data(Qt::EditRole).isValid());
    QCOMPARE(c.model->rowCount(c.top()), 4);
    QCOMPARE(c.model->columnCount(c.top()), 1);
    for (int row = 0; row < 4; ++row) {
        QCOMPARE(c.model->rowCount(c.model->index(row, 0, c.top())), 0);
        QCOMPARE(c.model->columnCount(c.model->index(row, 0, c.top())), 1);
    }
}

void TestACalibrationObjectModel::typesStandInTheirOrder()
{
    Calibrations c;
    QStringList names;
    for (int row = 0; row < 4; ++row) {
        names << c.model->index(row, 0, c.top()).data().toString();
        QCOMPARE(c.model->index(row, 0, c.top()).data(Qt::EditRole).toString(), names.last());
    }
    QCOMPARE(names, (QStringList{"Preamplifier", "Antenna", "Cable", "Attenuator"}));
}

void TestACalibrationObjectModel::objectsAreSortedUnderTheirType()
{
    Calibrations c({ramp("b"), ramp("x", kAntenna), ramp("B"), ramp("any", kAnyType), ramp("\u00e4"), ramp("a")});
    QStringList labels;
    for (int row = 0; row < c.model->rowCount(c.type(kCable)); ++row)
        labels << c.model->index(row, 0, c.type(kCable)).data().toString();
    QCOMPARE(labels, (QStringList{"B", "a", "b", "\u00e4"}));
    QCOMPARE(c.model->rowCount(c.type(kAntenna)), 1);
    QCOMPARE(c.model->rowCount(c.type(kPreamplifier)), 0);
    QCOMPARE(c.model->rowCount(c.type(kAttenuator)), 0);
}

void TestACalibrationObjectModel::anObjectHasItsEntriesAndARowToAddOne()
{
    Calibrations c({ramp()});
    QCOMPARE(c.model->rowCount(c.object(kCable, "ramp")), 4);
    QCOMPARE(c.model->columnCount(c.object(kCable, "ramp")), 2);
    QCOMPARE(c.table(kCable, "ramp"), (QStringList{"10.000 MHz|1 dB", "20.000 MHz|2 dB", "30.000 MHz|4 dB", kAddRow}));
    const QModelIndex entry = c.cell(kCable, "ramp", 0, 0);
    QCOMPARE(c.model->rowCount(entry), 0);
    QCOMPARE(c.model->columnCount(entry), 0);
    QVERIFY(!c.model->index(0, 0, entry).isValid());
}

void TestACalibrationObjectModel::anObjectWithoutEntriesHasOneRow()
{
    Calibrations c({ACalibrationData("empty", kCable)});
    QCOMPARE(c.table(kCable, "empty"), QStringList{kAddRow});
}

void TestACalibrationObjectModel::anObjectWhoseLabelBeginsWithDashesHasNoRows()
{
    Calibrations c({ramp("--"), ramp("-- none --"), ramp("-x"), ramp("")});
    QCOMPARE(c.model->rowCount(c.object(kCable, "--")), 0);
    QCOMPARE(c.model->rowCount(c.object(kCable, "-- none --")), 0);
    QCOMPARE(c.model->rowCount(c.object(kCable, "-x")), 4);
    QCOMPARE(c.model->rowCount(c.object(kCable, "")), 4);
}

void TestACalibrationObjectModel::levelsAreCounted()
{
    Calibrations c({ramp()});
    QCOMPARE(int(ACalibrationObjectModel::LevelRole), 256);
    const auto level = [](const QModelIndex &index) { return index.data(256); };
    QCOMPARE(level(c.top()), QVariant(0));
    QCOMPARE(level(c.type(kCable)), QVariant(1));
    QCOMPARE(level(c.object(kCable, "ramp")), QVariant(2));
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 2; ++column)
            QCOMPARE(level(c.cell(kCable, "ramp", row, column)), QVariant(3));
    }
    QVERIFY(!c.model->data(QModelIndex(), 256).isValid());
}

void TestACalibrationObjectModel::idsAreHashesOfTexts()
{
    Calibrations c({ramp(), ramp("other"), ramp("\u00e4", kAntenna)});
    QCOMPARE(c.top().internalId(), quintptr(0));
    for (int row = 0; row < 4; ++row)
        QCOMPARE(c.model->index(row, 0, c.top()).internalId(), quintptr(row + 1));
    QCOMPARE(c.object(kCable, "ramp").internalId(), quintptr(qHash(QString("2ramp"), 0)));
    QCOMPARE(c.object(kAntenna, "\u00e4").internalId(), quintptr(qHash(QString("1\u00e4"), 0)));
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 2; ++column)
            QCOMPARE(c.cell(kCable, "ramp", row, column).internalId(), quintptr(qHash(QString("!2ramp"), 0)));
    }
}

void TestACalibrationObjectModel::anIdLeadsBackToItsParent()
{
    Calibrations c({ramp("b"), ramp("a")});
    c.manager->addCalibrationData(ramp("b", kAttenuator), "-"); // the same label in another file
    QVERIFY(!c.top().parent().isValid());
    for (const auto type : {kCable, kAttenuator}) {
        QCOMPARE(c.type(type).parent(), c.top());
        QCOMPARE(c.object(type, "b").parent(), c.type(type));
        QCOMPARE(c.cell(type, "b", 3, 1).parent(), c.object(type, "b"));
        QCOMPARE(c.cell(type, "b", 0, 0).parent(), c.object(type, "b"));
    }
    QVERIFY(!c.model->parent(QModelIndex()).isValid());
}

void TestACalibrationObjectModel::indexesOutsideAreInvalid()
{
    Calibrations c({ramp()});
    const QModelIndex object = c.object(kCable, "ramp");
    const auto valid = [&](int row, int column, const QModelIndex &parent) {
        return c.model->index(row, column, parent).isValid();
    };
    QVERIFY(!valid(1, 0, {}) && !valid(0, 1, {}) && !valid(-1, 1, {}) && !valid(1, -1, {}));
    QVERIFY(!valid(4, 0, c.top()) && !valid(0, 1, c.top()) && !valid(-1, 0, c.top()) && !valid(0, -1, c.top()));
    QVERIFY(!valid(1, 0, c.type(kCable)) && !valid(0, 1, c.type(kCable)) && !valid(-1, 0, c.type(kCable)));
    QVERIFY(valid(3, 1, object) && !valid(4, 0, object) && !valid(0, 2, object) && !valid(-1, 0, object));
    QVERIFY(!valid(0, -1, object));
}

void TestACalibrationObjectModel::numbersBelowZeroGiveTheTopItemToo()
{
    Calibrations c({ramp()});
    for (const auto &[row, column] : {std::pair(-1, -1), std::pair(-1, 0), std::pair(0, -1), std::pair(-2, -2)})
        QCOMPARE(c.model->index(row, column), c.top());
    QVERIFY(!c.model->hasIndex(-1, -1));
    const QAbstractItemModelTester tester(c.model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestACalibrationObjectModel::valuesOfAnEntry()
{
    Calibrations c({object("o", kCable, {{"1.5 Hz", -0.25}, {"9007199254740993", 1e-9}, {"-3 kHz", 12.3456789}})});
    const auto value = [&](int row, int column, int role) { return c.cell(kCable, "o", row, column).data(role); };
    QCOMPARE(value(0, 0, Qt::EditRole), QVariant(qlonglong(-3000)));
    QCOMPARE(value(1, 0, Qt::EditRole), QVariant(qlonglong(1)));
    QCOMPARE(value(2, 0, Qt::EditRole), QVariant(qlonglong(9007199254740993)));
    QCOMPARE(value(0, 0, Qt::DisplayRole), QVariant(QString("-3.000 kHz")));
    QCOMPARE(value(1, 0, Qt::DisplayRole), QVariant(QString("1.500 Hz")));
    for (int role : {int(Qt::DisplayRole), int(Qt::EditRole)}) {
        QCOMPARE(value(0, 1, role), QVariant(QString("12.3457 dB")));
        QCOMPARE(value(1, 1, role), QVariant(QString("-0.25 dB")));
        QCOMPARE(value(2, 1, role), QVariant(QString("1e-09 dB")));
        QCOMPARE(value(3, 0, role), QVariant(QString("-- add value --")));
        QCOMPARE(value(3, 1, role), QVariant(QString("-- add value --")));
    }
}

void TestACalibrationObjectModel::frequenciesChooseTheirUnit_data()
{
    QTest::addColumn<QByteArray>("frequency");
    QTest::addColumn<QString>("shown");
    QTest::newRow("zero") << QByteArray("0") << "0.000 Hz";
    QTest::newRow("hertz") << QByteArray("999") << "999.000 Hz";
    QTest::newRow("kilohertz") << QByteArray("1 kHz") << "1.000 kHz";
    QTest::newRow("megahertz") << QByteArray("1.0005 MHz") << "1.000 MHz"; // the double is just below the tie
    QTest::newRow("never gigahertz") << QByteArray("2.4 GHz") << "2400.000 MHz";
}

void TestACalibrationObjectModel::frequenciesChooseTheirUnit()
{
    QFETCH(QByteArray, frequency);
    QFETCH(QString, shown);
    Calibrations c({object("o", kCable, {{frequency.constData(), 1}})});
    QCOMPARE(c.cell(kCable, "o", 0, 0).data().toString(), shown);
}

void TestACalibrationObjectModel::numbersAreInTheFormOfTheLocale()
{
    Calibrations c({object("o", kCable, {{"2400.5 MHz", -1234.5}})});
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(c.table(kCable, "o").first(), QString("2.400,500 MHz|-1.234,5 dB"));
    QCOMPARE(c.cell(kCable, "o", 0, 0).data(Qt::EditRole), QVariant(qlonglong(2400500000)));
}

void TestACalibrationObjectModel::antennasHaveAUnitOfTheirOwn()
{
    for (const auto type : {kPreamplifier, kAntenna, kCable, kAttenuator}) {
        Calibrations c({ramp("o", type)});
        QCOMPARE(c.cell(type, "o", 0, 1).data().toString(), QString(type == kAntenna ? "1 dBi" : "1 dB"));
    }
}

void TestACalibrationObjectModel::otherRolesShowNothing()
{
    Calibrations c({ramp()});
    for (const QModelIndex &index : {c.top(), c.type(kCable), c.object(kCable, "ramp"), c.cell(kCable, "ramp", 0, 0),
                                     c.cell(kCable, "ramp", 3, 1)}) {
        for (int role : {int(Qt::ToolTipRole), int(Qt::DecorationRole), int(Qt::CheckStateRole), 255, 257})
            QVERIFY(!index.data(role).isValid());
    }
    QVERIFY(!c.model->data(QModelIndex(), Qt::DisplayRole).isValid());
}

void TestACalibrationObjectModel::headers()
{
    Calibrations c;
    QCOMPARE(c.model->headerData(0, Qt::Horizontal), QVariant(QString("Frequency")));
    QCOMPARE(c.model->headerData(1, Qt::Horizontal), QVariant(QString("Gain")));
    // The rest is the base class's.
    QCOMPARE(c.model->headerData(2, Qt::Horizontal), QVariant(3));
    QCOMPARE(c.model->headerData(0, Qt::Vertical), QVariant(1));
    QVERIFY(!c.model->headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
}

void TestACalibrationObjectModel::flagsOfEachLevel()
{
    Calibrations c({ramp()});
    QCOMPARE(int(c.model->flags(c.top())), 33);
    QCOMPARE(int(c.model->flags(c.type(kCable))), 33);
    QCOMPARE(int(c.model->flags(c.object(kCable, "ramp"))), 33);
    for (int row : {0, 3}) {
        for (int column : {0, 1})
            QCOMPARE(int(c.model->flags(c.cell(kCable, "ramp", row, column))), 35);
    }
    QCOMPARE(int(c.model->flags(QModelIndex())), 0);
}

void TestACalibrationObjectModel::objectsAreFoundByTypeAndLabel()
{
    Calibrations c({ramp("a"), ramp("b"), ramp("c", kAntenna)});
    QCOMPARE(c.object(kCable, "b").row(), 1);
    QCOMPARE(c.object(kCable, "b").data().toString(), QString("b"));
    QVERIFY(!c.object(kCable, "c").isValid());
    QVERIFY(!c.object(kAntenna, "a").isValid());
    QVERIFY(!c.object(kCable, "B").isValid());
    QVERIFY(!c.object(kAnyType, "a").isValid());
    QVERIFY(!c.model->indexForObject(ACalibrationData()).isValid());
    QVERIFY(!c.model->indexForObject(ACalibrationData("c", kAnyType)).isValid());
}

void TestACalibrationObjectModel::objectsAreHandedOutForTheirIndexAlone()
{
    Calibrations c({ramp("a"), ramp("a", kAntenna)});
    QCOMPARE(c.model->getCalObject(c.object(kAntenna, "a")), ramp("a", kAntenna));
    for (const QModelIndex &index : {QModelIndex(), c.top(), c.type(kAntenna), c.cell(kAntenna, "a", 0, 0)})
        QCOMPARE(c.model->getCalObject(index), ACalibrationData());
}

void TestACalibrationObjectModel::anIndexOfAnObjectThatHasGoneIsHarmless()
{
    Calibrations c({ramp()});
    const QModelIndex object = c.object(kCable, "ramp");
    const QModelIndex cell = c.cell(kCable, "ramp", 1, 1);
    c.manager->clearCalibrationData(kAllTypes);
    for (const QModelIndex &index : {object, cell}) {
        QVERIFY(!c.model->parent(index).isValid());
        QVERIFY(!index.data().isValid());
        QCOMPARE(index.data(256), QVariant(0));
        QVERIFY(!c.model->setData(index, "5"));
        QCOMPARE(c.model->getCalObject(index), ACalibrationData());
        QVERIFY(!c.model->removeRows(0, 1, index));
    }
}

void TestACalibrationObjectModel::everyChangeOfTheStoreResets()
{
    Calibrations c({ramp()});
    QSignalSpy resets(c.model.get(), &QAbstractItemModel::modelReset);
    c.manager->addCalibrationData(ramp("new", kAntenna), "-");
    QCOMPARE(resets.count(), 1);
    c.manager->updateCalibrationData(object("new", kAntenna), QString());
    QCOMPARE(resets.count(), 2);
    c.manager->removeCalibrationData("new", kAntenna, false);
    QCOMPARE(resets.count(), 3);
    QVERIFY(ACalibrationData::saveAll(c.file, {ramp("from outside")}));
    QTRY_COMPARE(resets.count(), 4);
    QVERIFY(c.object(kCable, "from outside").isValid());
    c.manager->clearCalibrationData(kAllTypes);
    QCOMPARE(resets.count(), 5);
}

void TestACalibrationObjectModel::theModelOutlivesTheRegistry()
{
    Calibrations c({ramp()});
    c.ownsManager = false;
    const QModelIndex cell = c.cell(kCable, "ramp", 0, 0);
    QSignalSpy resets(c.model.get(), &QAbstractItemModel::modelReset);
    c.manager->blockSignals(false);
    delete c.manager;
    QCOMPARE(resets.count(), 2); // cleared, and gone
    QCOMPARE(c.model->rowCount(c.top()), 4);
    QCOMPARE(c.model->rowCount(c.type(kCable)), 0);
    QVERIFY(!c.model->setData(cell, "5"));
    QVERIFY(!cell.data().isValid());
    c.manager = ADataManager::instance(); // for the fixture; the model keeps to the one it was made for
    c.ownsManager = true;
    c.manager->addCalibrationData(ramp(), "-");
    QCOMPARE(c.model->rowCount(c.type(kCable)), 0);
}

// Each index and each value against what the store says and what an id is made of.
void TestACalibrationObjectModel::aFullExpansionShowsTheStore()
{
    Objects objects;
    for (int i = 0; i < 40; ++i) {
        objects << ACalibrationData(QStringLiteral("object %1").arg(i * 7 % 40),
                                    static_cast<ACalibrationData::CalibrationType>(i % 4));
        for (int k = 0; k < i; ++k)
            objects.last().addLevel(hertz(1000 * k * k - 5000), k - i);
    }
    Calibrations c(objects);
    // Labels that only a file has: the cable takes the one of an antenna.
    c.manager->addCalibrationData(object(objects.at(1).label(), kCable, {{"1 MHz", 1}}), "-");
    int entries = 0;
    for (const auto type : {kPreamplifier, kAntenna, kCable, kAttenuator}) {
        const QModelIndex typeIndex = c.type(type);
        QCOMPARE(typeIndex.internalId(), quintptr(type + 1));
        const QStringList labels = c.manager->getCalibrationNames(type);
        QCOMPARE(c.model->rowCount(typeIndex), labels.size());
        for (int i = 0; i < labels.size(); ++i) {
            const ACalibrationData held = c.manager->getCalibrationForName(labels.at(i), type);
            const QModelIndex index = c.model->index(i, 0, typeIndex);
            QCOMPARE(index.internalId(), quintptr(qHash(QString::number(type) + labels.at(i), 0)));
            QCOMPARE(index.parent(), typeIndex);
            QCOMPARE(index.data().toString(), labels.at(i));
            QCOMPARE(index.data(256), QVariant(2));
            QCOMPARE(c.model->getCalObject(index), held);
            QCOMPARE(c.model->rowCount(index), held.level().size() + 1);
            const QList<AFrequency> keys = held.level().keys();
            for (int row = 0; row <= keys.size(); ++row) {
                const bool isEntry = row < keys.size();
                for (int column : {0, 1}) {
                    const QModelIndex cell = c.model->index(row, column, index);
                    QCOMPARE(cell.internalId(), quintptr(qHash('!' + QString::number(type) + labels.at(i), 0)));
                    QCOMPARE(cell.parent(), index);
                    QCOMPARE(cell.data(256), QVariant(3));
                    QCOMPARE(int(cell.flags()), 35);
                    const QString gain = QStringLiteral("%L1 %2").arg(held.level().value(keys.value(row)));
                    QCOMPARE(cell.data().toString(),
                             !isEntry      ? QString("-- add value --")
                             : column == 1 ? gain.arg(type == kAntenna ? "dBi" : "dB")
                                           : keys.at(row).formatString("%L1 %2", AFrequency::NoUnit, 0, 'f', 3));
                }
                if (isEntry)
                    QCOMPARE(c.model->index(row, 0, index).data(Qt::EditRole),
                             QVariant(qlonglong(keys.at(row).intValue(AFrequency::Hz))));
                entries += isEntry ? 1 : 0;
            }
        }
    }
    QCOMPARE(entries, 40 * 39 / 2 + 1);
}

void TestACalibrationObjectModel::theTesterFindsNothing()
{
    Calibrations c({ramp(), ramp("a", kAntenna), ACalibrationData("empty", kPreamplifier), ramp("--"), ramp("")});
    const QAbstractItemModelTester tester(c.model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    c.manager->addCalibrationData(ramp("new"), "-");
    c.manager->clearCalibrationData(kCable);
    QVERIFY(c.model->removeRows(0, 1, c.type(kAntenna)));
}

void TestACalibrationObjectModel::theTesterFindsNothingInRandomStores()
{
    std::srand(1);
    for (int round = 0; round < 10; ++round) {
        Calibrations c;
        const QAbstractItemModelTester tester(c.model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        for (int step = 0; step < 10; ++step) {
            const auto type = static_cast<ACalibrationData::CalibrationType>(std::rand() % 4);
            ACalibrationData object(QString::number(std::rand() % 5), type);
            for (int i = std::rand() % 4; i > 0; --i)
                object.addLevel(hertz(std::rand()), std::rand() % 100);
            if (std::rand() % 4 == 0)
                c.manager->removeCalibrationData(object.label(), type, true);
            else
                c.manager->addCalibrationData(object, "-");
        }
    }
}

QTEST_GUILESS_MAIN(TestACalibrationObjectModel)
#include "tst_acalibrationobjectmodel.moc"
