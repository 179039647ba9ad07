#include "channel/achannelinfomodel.h"

#include "channel/achannelinfo.h"

#include "channelmodel.h"

#include <QtCore/QIdentityProxyModel>
#include <QtCore/QSortFilterProxyModel>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QtTest>

#include <memory>
#include <utility>

using namespace channelmodel;
using namespace channeltree;

namespace {

using Mode = QAbstractItemModelTester::FailureReportingMode;

// The unsorted plan below one node, so that nothing at the top level moves.
AChannelInfo *planBelowOneNode()
{
    auto *root = node(nullptr, QString());
    AChannelInfo *plan = unsortedPlan();
    plan->setData(AChannelInfo::ColumnName, QStringLiteral("top"));
    root->appendChild(plan);
    return root;
}

} // namespace

class TestAChannelInfoModelSorting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWholeTreeIsSorted_data();
    void theWholeTreeIsSorted();
    void viewsAreToldBeforeAndAfter();
    void indexesBelowTheTopLevelFollowTheirNodes();
    void indexesAtTheTopLevelAreLeftAsTheyAre();
    void theTesterObjectsToTopLevelIndexesAlone();
    void anIndexThatASortLeftDoesNotOutliveItsNode();
    void removingByAnIndexThatASortLeftRemovesTheRowOfItsNode();
    void indexesThatASortLeftFollowTheirNodesWhenOneIsRemoved();
    void twoIndexesThatWouldBecomeTheSameDoNotOutliveTheirNode();
    void theFirstRemovalAfterASortChangesTheLayout();
    void aReceiverMayRemoveTheNodeThatIsBeingRemoved_data();
    void aReceiverMayRemoveTheNodeThatIsBeingRemoved();
    void aReceiverMayAddChildrenToTheNodeThatIsBeingRemoved();
    void aReceiverMayRemoveAnotherNode_data();
    void aReceiverMayRemoveAnotherNode();
    void aReceiverMayTakeTheTreeAwayDuringARemoval();
    void anIndexOfAProxyDoesNotOutliveItsNode();
    void aRowBelowAnIndexThatASortLeftIsShown();
    void manySiblingsWithIndexesAreSorted();
};

void TestAChannelInfoModelSorting::theWholeTreeIsSorted_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::SortOrder>("order");
    QTest::addColumn<QString>("sorted");
    QTest::newRow("names up") << 0 << Qt::AscendingOrder << QStringLiteral("top(a(g h) b(e f) c d)");
    QTest::newRow("names down") << 0 << Qt::DescendingOrder << QStringLiteral("top(d c b(f e) a(h g))");
    QTest::newRow("begins up") << 2 << Qt::AscendingOrder << QStringLiteral("top(b(e f) c d a(g h))");
    QTest::newRow("ends down") << 3 << Qt::DescendingOrder << QStringLiteral("top(a(h g) d c b(f e))");
    QTest::newRow("equal types up") << 4 << Qt::AscendingOrder << QStringLiteral("top(d b(f e) c a(h g))");
    QTest::newRow("equal types down") << 4 << Qt::DescendingOrder << QStringLiteral("top(a(g h) c b(e f) d)");
    QTest::newRow("no column up") << -1 << Qt::AscendingOrder << QStringLiteral("top(d b(f e) c a(h g))");
}

void TestAChannelInfoModelSorting::theWholeTreeIsSorted()
{
    QFETCH(int, column);
    QFETCH(Qt::SortOrder, order);
    QFETCH(QString, sorted);
    AChannelInfoModel model(nullptr, planBelowOneNode());
    const QAbstractItemModelTester tester(&model, Mode::QtTest);
    model.sort(column, order);
    QCOMPARE(treeText(model), sorted);

    // and at the top level
    AChannelInfoModel top(nullptr, unsortedPlan());
    top.sort(column, order);
    QCOMPARE(QStringLiteral("top(%1)").arg(treeText(top)), sorted);
}

void TestAChannelInfoModelSorting::viewsAreToldBeforeAndAfter()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QStringList seen;
    const auto note = [&](const QList<QPersistentModelIndex> &parents, QAbstractItemModel::LayoutChangeHint hint) {
        seen.append(QStringLiteral("%1 %2 %3").arg(treeText(model)).arg(parents.size()).arg(hint));
    };
    connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, this, note);
    connect(&model, &QAbstractItemModel::layoutChanged, this, note);
    model.sort(0, Qt::AscendingOrder);
    QCOMPARE(seen, QStringList({QStringLiteral("d b(f e) c a(h g) 0 0"), QStringLiteral("a(g h) b(e f) c d 0 0")}));
}

void TestAChannelInfoModelSorting::indexesBelowTheTopLevelFollowTheirNodes()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex g = indexAt(model, {QStringLiteral("a"), QStringLiteral("g")}, 3);
    const QPersistentModelIndex e = indexAt(model, {QStringLiteral("b"), QStringLiteral("e")});
    const QPersistentModelIndex otherE = indexAt(model, {QStringLiteral("b"), QStringLiteral("e")}, 10);
    const AChannelInfo *gNode = model.getItem(g);
    model.sort(0, Qt::AscendingOrder);
    QCOMPARE(model.getItem(g), gNode);
    QCOMPARE(QModelIndex(g), indexAt(model, {QStringLiteral("a"), QStringLiteral("g")}, 3));
    QCOMPARE(g.row(), 0);
    QCOMPARE(g.parent(), model.index(0, 0)); // whose row is the new one
    QCOMPARE(QModelIndex(e), indexAt(model, {QStringLiteral("b"), QStringLiteral("e")}));
    QCOMPARE(QModelIndex(otherE), e.sibling(0, 10));
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(QModelIndex(g), indexAt(model, {QStringLiteral("a"), QStringLiteral("g")}, 3));
    QCOMPARE(g.row(), 1);
    QCOMPARE(e.parent(), model.index(2, 0));
}

void TestAChannelInfoModelSorting::indexesAtTheTopLevelAreLeftAsTheyAre()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    AChannelInfo *d = model.getItem(model.index(0, 0));
    const QPersistentModelIndex first = model.index(0, 0);
    const QPersistentModelIndex firstEnd = model.index(0, 3);
    model.sort(0, Qt::AscendingOrder);
    QCOMPARE(d->row(), 3);
    for (const QPersistentModelIndex &index : {first, firstEnd}) {
        QVERIFY(index.isValid());
        QCOMPARE(index.row(), 0);
        QCOMPARE(model.getItem(index), d);
        QVERIFY(!index.parent().isValid());
    }
    QCOMPARE(first.data().toString(), QStringLiteral("d"));
    QVERIFY(QModelIndex(first) != model.index(0, 0));

    // the sort that brings the node back makes them right again
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(QModelIndex(first), model.index(0, 0));
    QCOMPARE(QModelIndex(firstEnd), model.index(0, 3));
}

// The tester holds persistent indexes of the top level and expects them to follow their nodes. That they stay is
// required, so this is the one complaint that the model causes, and a sort that moves nothing there causes none.
void TestAChannelInfoModelSorting::theTesterObjectsToTopLevelIndexesAlone()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QAbstractItemModelTester tester(&model, Mode::Warning);
    static QStringList complaints;
    complaints.clear();
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { complaints.append(text); });
    model.sort(4, Qt::AscendingOrder);
    const QStringList whenNothingMoved = complaints;
    model.sort(0, Qt::AscendingOrder);
    const QStringList whenSorted = complaints;
    model.addItem({}, QStringLiteral("x"));
    model.removeItem(model.index(1, 0), true);
    model.setData(model.index(0, 0), QStringLiteral("y"));
    const QStringList afterwards = complaints;
    qInstallMessageHandler(previous);

    QCOMPARE(whenNothingMoved, QStringList());
    QCOMPARE(whenSorted.size(), 1);
    QVERIFY2(whenSorted.first().contains(QLatin1String("model->index(p.row(), p.column(), p.parent())")),
             qPrintable(whenSorted.first()));
    QCOMPARE(afterwards, whenSorted);
}

void TestAChannelInfoModelSorting::anIndexThatASortLeftDoesNotOutliveItsNode()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    const QPersistentModelIndex dType = indexAt(model, {QStringLiteral("d")}, 4);
    const QPersistentModelIndex c = indexAt(model, {QStringLiteral("c")});
    model.sort(0, Qt::AscendingOrder); // d is at 3, its indexes at 0
    QVERIFY(model.removeItem(model.index(3, 0), true));
    QVERIFY(!d.isValid() && !dType.isValid());
    QCOMPARE(c.data().toString(), QStringLiteral("c"));
    QCOMPARE(treeText(model), QStringLiteral("a(g h) b(e f) c"));
}

void TestAChannelInfoModelSorting::removingByAnIndexThatASortLeftRemovesTheRowOfItsNode()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    const QAbstractItemModelTester tester(&model, Mode::QtTest);
    QVERIFY(model.removeItem(d, false));
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(1).toInt(), 3);
    QCOMPARE(treeText(model), QStringLiteral("a(g h) b(e f) c"));
}

void TestAChannelInfoModelSorting::indexesThatASortLeftFollowTheirNodesWhenOneIsRemoved()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QList<QPersistentModelIndex> held;
    QStringList labels;
    for (int row = 0; row < model.rowCount(); ++row) {
        held << model.index(row, 0);
        labels << model.index(row, 0).data().toString();
    }
    model.sort(0, Qt::AscendingOrder);
    model.sort(0, Qt::DescendingOrder);
    const int removed = labels.indexOf(QStringLiteral("c"));
    QVERIFY(model.removeItem(held.at(removed), true));
    for (int i = 0; i < held.size(); ++i) {
        QCOMPARE(held.at(i).isValid(), i != removed);
        if (i != removed)
            QCOMPARE(held.at(i).data().toString(), labels.at(i));
    }
    for (int row = 0; row < model.rowCount(); ++row)
        QVERIFY(held.contains(model.index(row, 0)));
}

void TestAChannelInfoModelSorting::twoIndexesThatWouldBecomeTheSameDoNotOutliveTheirNode()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex before = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    auto after = std::make_unique<QPersistentModelIndex>(indexAt(model, {QStringLiteral("d")}));
    QVERIFY(before != *after); // the same node at two rows
    QVERIFY(model.removeItem(indexAt(model, {QStringLiteral("a")}), true));
    QCOMPARE(before.isValid() + after->isValid(), 1);
    after.reset();
    QVERIFY(model.removeItem(indexAt(model, {QStringLiteral("d")}), true));
    QVERIFY(!before.isValid());
}

void TestAChannelInfoModelSorting::theFirstRemovalAfterASortChangesTheLayout()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    QSignalSpy changing(&model, &QAbstractItemModel::layoutAboutToBeChanged);
    QSignalSpy changed(&model, &QAbstractItemModel::layoutChanged);
    QVERIFY(!model.removeItem(indexAt(model, {QStringLiteral("a")}), false)); // refused: nothing changes
    QCOMPARE(changing.size() + changed.size(), 0);
    QCOMPARE(d.row(), 0);

    QVERIFY(model.removeItem(indexAt(model, {QStringLiteral("b"), QStringLiteral("e")}), false)); // of another parent
    QCOMPARE(changing.size(), 1);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(d.row(), 3);
    QCOMPARE(QModelIndex(d), indexAt(model, {QStringLiteral("d")}));

    QVERIFY(model.removeItem(indexAt(model, {QStringLiteral("b"), QStringLiteral("f")}), false));
    QCOMPARE(changing.size() + changed.size(), 2);
}

void TestAChannelInfoModelSorting::aReceiverMayRemoveTheNodeThatIsBeingRemoved_data()
{
    QTest::addColumn<bool>("afterTheChange");
    QTest::addColumn<bool>("byAStaleIndex");
    QTest::newRow("before the change") << false << false;
    QTest::newRow("before the change, by a stale index") << false << true;
    QTest::newRow("after the change") << true << false;
    QTest::newRow("after the change, by a stale index") << true << true;
}

void TestAChannelInfoModelSorting::aReceiverMayRemoveTheNodeThatIsBeingRemoved()
{
    QFETCH(bool, afterTheChange);
    QFETCH(bool, byAStaleIndex);
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    bool isAsked = false;
    bool isRemovedByReceiver = false;
    const auto removeToo = [&] {
        if (!std::exchange(isAsked, true))
            isRemovedByReceiver = model.removeItem(indexAt(model, {QStringLiteral("d")}), true);
    };
    if (afterTheChange)
        connect(&model, &QAbstractItemModel::layoutChanged, this, removeToo);
    else
        connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, this, removeToo);
    QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
    QVERIFY(!model.removeItem(byAStaleIndex ? QModelIndex(d) : indexAt(model, {QStringLiteral("d")}), true));
    QVERIFY(isRemovedByReceiver);
    QVERIFY(!d.isValid());
    QCOMPARE(removed.size(), 1);
    QCOMPARE(treeText(model), QStringLiteral("a(g h) b(e f) c"));
}

void TestAChannelInfoModelSorting::aReceiverMayAddChildrenToTheNodeThatIsBeingRemoved()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    connect(&model, &QAbstractItemModel::layoutChanged, this, [&] { model.addItem(d, QStringLiteral("new")); });
    QVERIFY(!model.removeItem(indexAt(model, {QStringLiteral("d")}), false));
    QCOMPARE(treeText(model), QStringLiteral("a(g h) b(e f) c d(new)"));
    QCOMPARE(QModelIndex(d), indexAt(model, {QStringLiteral("d")}));
}

void TestAChannelInfoModelSorting::aReceiverMayRemoveAnotherNode_data()
{
    QTest::addColumn<bool>("afterTheChange");
    QTest::addColumn<QStringList>("removed");
    QTest::addColumn<bool>("byTheReceiver");
    QTest::addColumn<QString>("left");
    for (bool afterTheChange : {false, true}) {
        const auto row = [afterTheChange](const char *title, const QStringList &removed, bool byTheReceiver,
                                          const char *left) {
            QTest::newRow(qPrintable(QString("%1, %2").arg(title, afterTheChange ? "after" : "before")))
                << afterTheChange << removed << byTheReceiver << QString(left);
        };
        row("above", {"a"}, false, "b(e) c d");
        row("below", {"c"}, false, "a(g h) b(e) d");
        row("beside", {"b", "e"}, false, "a(g h) b c d");
        row("its parent", {"b"}, true, "a(g h) c d");
    }
}

void TestAChannelInfoModelSorting::aReceiverMayRemoveAnotherNode()
{
    QFETCH(bool, afterTheChange);
    QFETCH(QStringList, removed);
    QFETCH(bool, byTheReceiver); // too
    QFETCH(QString, left);
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {"d"});
    model.sort(0, Qt::AscendingOrder);
    bool isAsked = false;
    const auto removeOther = [&] {
        if (!std::exchange(isAsked, true))
            QVERIFY(model.removeItem(indexAt(model, removed), true));
    };
    if (afterTheChange)
        connect(&model, &QAbstractItemModel::layoutChanged, this, removeOther);
    else
        connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, this, removeOther);
    QCOMPARE(model.removeItem(indexAt(model, {"b", "f"}), true), !byTheReceiver);
    QVERIFY(isAsked);
    QCOMPARE(treeText(model), left);
    QCOMPARE(QModelIndex(d), indexAt(model, {"d"}));
}

// It makes indexes of the model only while the layout changes.
void TestAChannelInfoModelSorting::anIndexOfAProxyDoesNotOutliveItsNode()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QIdentityProxyModel proxy;
    proxy.setSourceModel(&model);
    const QPersistentModelIndex d = proxy.mapFromSource(indexAt(model, {"d"}));
    const QPersistentModelIndex c = proxy.mapFromSource(indexAt(model, {"c"}));
    model.sort(0, Qt::AscendingOrder);
    QVERIFY(model.removeItem(indexAt(model, {"d"}), true));
    QVERIFY(!d.isValid());
    QCOMPARE(QModelIndex(c), proxy.mapFromSource(indexAt(model, {"c"})));
    QCOMPARE(c.data().toString(), QString("c"));
}

void TestAChannelInfoModelSorting::aReceiverMayTakeTheTreeAwayDuringARemoval()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    std::unique_ptr<AChannelInfo> taken;
    connect(&model, &QAbstractItemModel::layoutAboutToBeChanged, this,
            [&] { taken.reset(model.setModelRoot(node(nullptr, QString()))); });
    QVERIFY(!model.removeItem(indexAt(model, {QStringLiteral("d")}), true));
    QCOMPARE(taken->childCount(), 4);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!d.isValid());
}

// As a view's current index after a click on the header is.
void TestAChannelInfoModelSorting::aRowBelowAnIndexThatASortLeftIsShown()
{
    AChannelInfoModel model(nullptr, unsortedPlan());
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&model);
    const QPersistentModelIndex d = indexAt(model, {QStringLiteral("d")});
    model.sort(0, Qt::AscendingOrder);
    const QModelIndex sortedD = indexAt(model, {QStringLiteral("d")});
    QVERIFY(sortedD != d);
    QCOMPARE(proxy.rowCount(proxy.mapFromSource(sortedD)), 0);

    const QModelIndex added = model.addItem(d, QStringLiteral("new"));
    QCOMPARE(added, model.index(0, 0, sortedD));
    QCOMPARE(proxy.rowCount(proxy.mapFromSource(sortedD)), 1);
}

void TestAChannelInfoModelSorting::manySiblingsWithIndexesAreSorted()
{
    // not timed, but searching each index's row among the siblings doesn't end well
    constexpr int kCount = 100000;
    AChannelInfoModel model(nullptr, nullptr);
    const QModelIndex top = model.addItem({}, QStringLiteral("top"));
    QList<QPersistentModelIndex> held;
    for (int i = 0; i < kCount; ++i) {
        node(model.getItem(top), QString::number((i * 7919LL) % kCount));
        held.append(model.index(i, 0, top));
    }
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(model.index(0, 0, top).data().toString(), QStringLiteral("99999"));
    for (const QPersistentModelIndex &index : qAsConst(held)) {
        if (QModelIndex(index) != model.index(index.row(), 0, top) || index.row() != model.getItem(index)->row())
            QFAIL(qPrintable(index.data().toString()));
    }
}

QTEST_GUILESS_MAIN(TestAChannelInfoModelSorting)
#include "tst_achannelinfomodel_sorting.moc"
