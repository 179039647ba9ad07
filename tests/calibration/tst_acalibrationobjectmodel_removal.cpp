#include "calibrationmodel.h"

#include <QtTest/QtTest>

#include <limits>

using namespace calibrationtest;

// Rows removed through the model: entries of an object, and whole objects.
class TestACalibrationObjectModelRemoval : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QLocale::setDefault(QLocale::c()); }

    void entriesOfAnObjectThatShowsNoneAreRemoved();

    void removingEntries();
    void removingEntriesResetsAfterTheRows();
    void removingEntriesUnderTheTester();
    void theLastRowIsNotRemoved();
    void removingOneObject();
    void removingSeveralObjectsTakesEverySecondOne();
    void aRangePastTheEndTakesWhatIsThereOfIt();
    void anObjectThatCannotBeRemovedComesBack();
    void rowsThatAreNotThereAreNotRemoved();
    void everyRemovalIsLogged();
};

// Without a word about rows, since none goes from view.
void TestACalibrationObjectModelRemoval::entriesOfAnObjectThatShowsNoneAreRemoved()
{
    Calibrations c({ramp("-- none --")});
    const QAbstractItemModelTester tester(c.model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    c.takeLog();
    QVERIFY(c.model->removeRows(0, 2, c.object(kCable, "-- none --")));
    QCOMPARE(c.takeLog(), (QStringList{"calibration 2", "to reset", "reset"}));
    QCOMPARE(c.saved("-- none --"), QStringList{"30000000|4"});
    QVERIFY(!c.model->removeRows(1, 1, c.object(kCable, "-- none --")));
    QVERIFY(c.model->removeRows(0, 3, c.object(kCable, "-- none --")));
    QCOMPARE(c.saved("-- none --"), QStringList());
}

void TestACalibrationObjectModelRemoval::removingEntries()
{
    Calibrations c({ramp(), ramp("other")});
    QVERIFY(c.model->removeRows(0, 2, c.object(kCable, "ramp")));
    QCOMPARE(c.saved("ramp"), QStringList{"30000000|4"});
    QCOMPARE(c.saved("other").size(), 3);
    QVERIFY(c.model->removeRows(0, 1, c.object(kCable, "ramp")));
    QCOMPARE(c.table(kCable, "ramp"), QStringList{kAddRow});
}

void TestACalibrationObjectModelRemoval::removingEntriesResetsAfterTheRows()
{
    Calibrations c({ramp()});
    QVERIFY(c.model->removeRows(1, 1, c.object(kCable, "ramp")));
    QCOMPARE(c.takeLog(), (QStringList{"to remove 1-1", "calibration 2", "removed 1-1", "to reset", "reset"}));
}

void TestACalibrationObjectModelRemoval::removingEntriesUnderTheTester()
{
    Calibrations c({ramp("a"), ramp("b")});
    const QAbstractItemModelTester tester(c.model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    QVERIFY(c.model->removeRows(1, 1, c.object(kCable, "a")));
    QVERIFY(c.model->removeRows(0, 2, c.object(kCable, "a")));
    QVERIFY(c.model->removeRows(1, 3, c.object(kCable, "b"))); // with the row that adds an entry
    QCOMPARE(c.table(kCable, "a"), QStringList{kAddRow});
    QCOMPARE(c.table(kCable, "b"), (QStringList{"10.000 MHz|1 dB", kAddRow}));
}

void TestACalibrationObjectModelRemoval::theLastRowIsNotRemoved()
{
    Calibrations c({ramp()});
    QVERIFY(!c.model->removeRows(3, 1, c.object(kCable, "ramp")));
    QCOMPARE(c.takeLog(), QStringList());
    QVERIFY(c.model->removeRows(2, 2, c.object(kCable, "ramp")));
    QCOMPARE(c.takeLog().first(), QString("to remove 2-2"));
    QCOMPARE(c.table(kCable, "ramp"), (QStringList{"10.000 MHz|1 dB", "20.000 MHz|2 dB", kAddRow}));
}

void TestACalibrationObjectModelRemoval::removingOneObject()
{
    Calibrations c({ramp("a"), ramp("b"), ramp("c")});
    const QPersistentModelIndex below = c.object(kCable, "c");
    QVERIFY(c.model->removeRows(1, 1, c.type(kCable)));
    QCOMPARE(c.takeLog(), (QStringList{"to remove 1-1", "calibration 2", "removed 1-1", "to reset", "reset"}));
    QCOMPARE(c.manager->getCalibrationNames(kCable), (QStringList{"a", "c"}));
    QCOMPARE(c.saved("b"), QStringList());
    QVERIFY(!below.isValid());
    for (int i = 0; i < 2; ++i)
        QVERIFY(c.model->removeRows(0, 1, c.type(kCable)));
    QVERIFY(!QFile::exists(c.file));
}

// The numbers don't follow the objects that move up, and so reach beyond the range at last.
void TestACalibrationObjectModelRemoval::removingSeveralObjectsTakesEverySecondOne()
{
    Calibrations c({ramp("a"), ramp("b"), ramp("c"), ramp("d"), ramp("e")});
    QVERIFY(c.model->removeRows(0, 4, c.type(kCable)));
    QCOMPARE(c.manager->getCalibrationNames(kCable), (QStringList{"b", "d"}));
    QCOMPARE(c.takeLog(), (QStringList{"to remove 0-3"} + repeated("calibration 2", 3) +
                           QStringList{"removed 0-3", "to reset", "reset"}));
    QVERIFY(c.model->removeRows(0, 2, c.type(kCable)));
    QCOMPARE(c.manager->getCalibrationNames(kCable), QStringList{"d"});
}

void TestACalibrationObjectModelRemoval::aRangePastTheEndTakesWhatIsThereOfIt()
{
    Calibrations c({ramp("a"), ramp("b")});
    const QModelIndex object = c.object(kCable, "a");
    QVERIFY(c.model->removeRows(1, std::numeric_limits<int>::max(), object));
    QCOMPARE(c.saved("a").size(), 1);
    c.takeLog();
    QVERIFY(c.model->removeRows(0, 3, c.type(kCable)));
    QCOMPARE(c.manager->getCalibrationNames(kCable), QStringList{"b"});
    QCOMPARE(c.takeLog(), (QStringList{"to remove 0-1", "calibration 2", "removed 0-1", "to reset", "reset"}));
    QVERIFY(c.model->removeRows(-1, 2, c.type(kCable)));
    QVERIFY(c.manager->getCalibrationNames(kCable).isEmpty());
}

void TestACalibrationObjectModelRemoval::anObjectThatCannotBeRemovedComesBack()
{
    Calibrations c({ramp("")});
    QVERIFY(c.model->removeRows(0, 1, c.type(kCable)));
    QCOMPARE(c.takeLog(), (QStringList{"to remove 0-0", "removed 0-0", "to reset", "reset"}));
    QCOMPARE(c.model->rowCount(c.type(kCable)), 1);
    QVERIFY(!c.model->removeRows(0, 1, c.object(kCable, ""))); // "empty object"
    QCOMPARE(c.saved("").size(), 3);
}

void TestACalibrationObjectModelRemoval::rowsThatAreNotThereAreNotRemoved()
{
    Calibrations c({ramp("a"), ramp("b")});
    const QModelIndex object = c.object(kCable, "a");
    for (const auto &[row, count] : {std::pair(-1, 1), std::pair(0, 0), std::pair(0, -1), std::pair(4, 1),
                                     std::pair(4, std::numeric_limits<int>::max())}) {
        QVERIFY(!c.model->removeRows(row, count, object));
        QVERIFY(c.model->removeRows(row, count, c.type(kCable))); // true whatever was there
    }
    for (const QModelIndex &parent : {QModelIndex(), c.top(), c.cell(kCable, "a", 0, 0)})
        QVERIFY(!c.model->removeRows(0, 1, parent));
    QCOMPARE(c.takeLog(), QStringList());
    QCOMPARE(c.manager->getCalibrationNames(kCable).size(), 2);
}

void TestACalibrationObjectModelRemoval::everyRemovalIsLogged()
{
    Calibrations c({ramp(""), ramp("a")});
    const auto expect = [](int row, int count, int level) {
        const QByteArray text = QByteArrayLiteral("virtual bool ACalibrationObjectModel::removeRows(int, int, const "
                                                  "QModelIndex&) (row ") +
                                QByteArray::number(row) + ", count " + QByteArray::number(count) + ", type " +
                                QByteArray::number(level) + ')';
        QTest::ignoreMessage(QtDebugMsg, text.constData());
    };
    expect(2, 3, 0);
    c.model->removeRows(2, 3, QModelIndex());
    expect(0, 1, 0);
    c.model->removeRows(0, 1, c.top());
    expect(1, 1, 1);
    c.model->removeRows(1, 1, c.type(kCable));
    expect(0, 1, 2);
    QTest::ignoreMessage(QtDebugMsg, "empty object");
    c.model->removeRows(0, 1, c.object(kCable, ""));
    expect(0, 1, 3);
    QTest::ignoreMessage(QtDebugMsg, "unknown type");
    c.model->removeRows(0, 1, c.cell(kCable, "", 0, 0));
}

QTEST_GUILESS_MAIN(TestACalibrationObjectModelRemoval)
#include "tst_acalibrationobjectmodel_removal.moc"
