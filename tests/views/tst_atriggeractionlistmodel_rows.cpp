#include "views/triggeractions.h"

#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QtTest>

#include <algorithm>
#include <limits>

using namespace triggeractions;

namespace {

QList<QVariantList> arguments(const QSignalSpy &spy) // first and last row
{
    QList<QVariantList> result;
    for (const QVariantList &call : spy)
        result << call.mid(1);
    return result;
}

QList<ATriggerAction> fiveActions()
{
    QList<ATriggerAction> list;
    for (int i = 0; i < 5; ++i)
        list << action(1, QString::number(i));
    return list;
}

// Three actions in a model, and what it announces of rows that are added.
struct Insertions
{
    Insertions() { model.setTriggerActions(&list); }
    void compareToOneOf(int first, int last) const
    {
        const QList<QVariantList> range{QVariantList{first, last}};
        QCOMPARE(arguments(begins), range);
        QCOMPARE(arguments(ends), range);
    }

    QList<ATriggerAction> list = threeActions();
    OrdinaryModel model;
    const QAbstractItemModelTester tester{&model};
    QSignalSpy begins{&model, &QAbstractItemModel::rowsAboutToBeInserted};
    QSignalSpy ends{&model, &QAbstractItemModel::rowsInserted};
};

} // namespace

class TestATriggerActionListModelRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreAddedAtTheEnd_data();
    void rowsAreAddedAtTheEnd();
    void countsBelowOneAddNothing_data();
    void countsBelowOneAddNothing();
    void moreThanAListHoldsIsRefused();
    void manyRowsAreAddedOneByOne();
    void belowARowTheListItselfIsMeant();
    void rowsAreRemoved_data();
    void rowsAreRemoved();
    void persistentIndexesFollowRemovals_data();
    void persistentIndexesFollowRemovals();
};

void TestATriggerActionListModelRows::rowsAreAddedAtTheEnd_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    for (int row : {0, 1, 3, 4, -1, INT_MAX, INT_MIN})
        QTest::addRow("at %d", row) << row << 1;
    QTest::newRow("several") << 0 << 4;
}

void TestATriggerActionListModelRows::rowsAreAddedAtTheEnd()
{
    QFETCH(int, row);
    QFETCH(int, count);
    Insertions insertions;
    QList<ATriggerAction> &list = insertions.list;
    QVERIFY(insertions.model.insertRows(row, count));
    QStringList expected = texts(threeActions());
    for (int i = 0; i < count; ++i)
        expected << "0:";
    QCOMPARE(texts(list), expected);
    QVERIFY(list.last() == ATriggerAction());
    insertions.compareToOneOf(3, 3 + count - 1);
    list.last().setData("its own"); // each a value of its own
    if (count > 1)
        QVERIFY(list.at(list.size() - 2) == ATriggerAction());
}

void TestATriggerActionListModelRows::countsBelowOneAddNothing_data()
{
    QTest::addColumn<int>("count");
    for (int count : {0, -1, -100, INT_MIN})
        QTest::addRow("%d", count) << count;
}

void TestATriggerActionListModelRows::countsBelowOneAddNothing()
{
    QFETCH(int, count);
    Insertions insertions;
    QVERIFY(insertions.model.insertRows(0, count));
    QCOMPARE(texts(insertions.list), texts(threeActions()));
    // An empty range for negative counts too: proxies and headers crash on one of a negative length.
    insertions.compareToOneOf(3, 2);
}

void TestATriggerActionListModelRows::moreThanAListHoldsIsRefused()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy begins(&model, &QAbstractItemModel::rowsAboutToBeInserted);
    for (int count : {INT_MAX, INT_MAX - 3, INT_MAX / 4})
        QVERIFY(!model.insertRows(0, count));
    QCOMPARE(begins.count(), 0);
    QCOMPARE(list.size(), 3);
}

void TestATriggerActionListModelRows::manyRowsAreAddedOneByOne()
{
    constexpr int kFew = 20000;
    constexpr int kMany = 10 * kFew;
    constexpr int kRounds = 5; // whose fastest is least disturbed by what else the machine does
    const auto milliseconds = [](int rows) {
        double fastest = std::numeric_limits<double>::max();
        for (int round = 0; round < kRounds; ++round) {
            QList<ATriggerAction> list;
            ATriggerActionListModel model;
            model.setTriggerActions(&list);
            QElapsedTimer timer;
            timer.start();
            for (int i = 0; i < rows; ++i)
                model.insertRow(0);
            fastest = std::min(fastest, double(timer.nsecsElapsed()) * 1e-6);
            if (list.size() != rows)
                return -1.0;
        }
        return fastest;
    };
    const double few = milliseconds(kFew);
    const double many = milliseconds(kMany);
    QVERIFY(few > 0 && many > 0);
    // Ten times as long if each costs the same, a hundred times if each costs what is there already.
    QVERIFY2(many < 40 * few, qPrintable(QStringLiteral("%1 ms, %2 ms").arg(few).arg(many)));
}

void TestATriggerActionListModelRows::belowARowTheListItselfIsMeant()
{
    QList<ATriggerAction> list = threeActions();
    ATriggerActionListModel model;
    model.setTriggerActions(&list);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    const QModelIndex parent = model.index(1, 0);
    QVERIFY(model.insertRows(0, 1, parent));
    QVERIFY(model.removeRows(0, 1, parent));
    QCOMPARE(inserts.count(), 1);
    QCOMPARE(removals.count(), 1);
    QVERIFY(!inserts.at(0).at(0).toModelIndex().isValid());
    QVERIFY(!removals.at(0).at(0).toModelIndex().isValid());
    QCOMPARE(texts(list), (QStringList{"2:beep -f 440", "4:/tmp/a.png", "0:"}));
}

void TestATriggerActionListModelRows::rowsAreRemoved_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("rest"); // of the five rows "01234"
    QTest::addColumn<int>("first");    // as announced
    QTest::addColumn<int>("last");
    QTest::newRow("the first") << 0 << 1 << "1234" << 0 << 0;
    QTest::newRow("the last") << 4 << 1 << "0123" << 4 << 4;
    QTest::newRow("some in the middle") << 1 << 3 << "04" << 1 << 3;
    QTest::newRow("all") << 0 << 5 << "" << 0 << 4;
    QTest::newRow("past the end") << 3 << 10 << "012" << 3 << 12;
    QTest::newRow("behind the end") << 5 << 2 << "01234" << 5 << 6;
    QTest::newRow("far behind the end") << INT_MAX - 1 << 1 << "01234" << INT_MAX - 1 << INT_MAX - 1;
    QTest::newRow("as many as there are numbers") << 2 << INT_MAX << "01" << 2 << INT_MAX;
    QTest::newRow("none") << 2 << 0 << "01234" << 2 << 1;
    QTest::newRow("fewer than none") << 2 << -3 << "01234" << 2 << 1;
    QTest::newRow("far fewer than none") << 0 << INT_MIN << "01234" << 0 << -1;
    QTest::newRow("from before the first") << -2 << 4 << "234" << 0 << 1;
    QTest::newRow("before the first") << -5 << 2 << "01234" << 0 << -1;
    QTest::newRow("from far before the first") << INT_MIN << INT_MAX << "01234" << 0 << -1;
    QTest::newRow("far too many from before the first") << -1 << INT_MAX << "" << 0 << INT_MAX - 2;
}

void TestATriggerActionListModelRows::rowsAreRemoved()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(int, first);
    QFETCH(int, last);
    QList<ATriggerAction> list = fiveActions();
    OrdinaryModel model;
    model.setTriggerActions(&list);
    QSignalSpy begins(&model, &QAbstractItemModel::rowsAboutToBeRemoved);
    QSignalSpy ends(&model, &QAbstractItemModel::rowsRemoved);
    QVERIFY(model.removeRows(row, count));
    QString rest;
    for (const ATriggerAction &each : qAsConst(list))
        rest += each.data();
    QTEST(rest, "rest");
    const QList<QVariantList> range{QVariantList{first, last}};
    QCOMPARE(arguments(begins), range);
    QCOMPARE(arguments(ends), range);
}

void TestATriggerActionListModelRows::persistentIndexesFollowRemovals_data()
{
    rowsAreRemoved_data();
}

void TestATriggerActionListModelRows::persistentIndexesFollowRemovals()
{
    QFETCH(int, row);
    QFETCH(int, count);
    QList<ATriggerAction> list = fiveActions();
    OrdinaryModel model;
    model.setTriggerActions(&list);
    QList<QPersistentModelIndex> held;
    for (int i = 0; i < 5; ++i)
        held << model.index(i, 1);
    QVERIFY(model.removeRows(row, count));
    for (int i = 0; i < 5; ++i) {
        const int now = list.indexOf(action(1, QString::number(i)));
        QCOMPARE(held.at(i).row(), now);
        QCOMPARE(held.at(i).isValid(), now >= 0);
    }
}

QTEST_GUILESS_MAIN(TestATriggerActionListModelRows)
#include "tst_atriggeractionlistmodel_rows.moc"
