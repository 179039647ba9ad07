#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtTest/QtTest>

#include <memory>
#include <random>

using namespace channeltree;

class TestAChannelInfoTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appendedChildrenStandInOrder();
    void aChildIsAppendedOnce();
    void appendingElsewhereLeavesTheFirstListAlone();
    void rowsFollowEveryChange();
    void rowsFollowManyRemovals();
    void deletingANodeTakesItOutOfItsParent();
    void deletingANodeThatWasNeverEnteredLeavesTheParentAlone();
    void nodesAreDeletedInAnyOrder();
    void deletingANodeDeletesTheNodesBelow();
    void copiesAreDeepAndComplete();
    void copiesAreIndependent();

    void typesBelowAreFoundByBit_data();
    void typesBelowAreFoundByBit();
    void typesBelowAreFoundAtAnyDepth();

    void profileIdsAreFoundInTreeOrder();
};

void TestAChannelInfoTree::appendedChildrenStandInOrder()
{
    const Tree root(band());
    QCOMPARE(root->row(), 0);
    QCOMPARE(root->parent(), nullptr);
    QList<AChannelInfo *> children;
    for (int i = 0; i < 5; ++i) {
        // made below nothing: appending is what sets the parent
        children.append(node(nullptr, QString::number(i)));
        root->appendChild(children.last());
        QCOMPARE(root->childCount(), i + 1);
    }
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(root->child(i), children.at(i));
        QCOMPARE(children.at(i)->parent(), root.get());
        QCOMPARE(children.at(i)->row(), i);
    }
}

void TestAChannelInfoTree::aChildIsAppendedOnce()
{
    const Tree root(band());
    AChannelInfo *a = node(root.get(), QStringLiteral("a"));
    node(root.get(), QStringLiteral("b"));
    root->appendChild(a);
    QCOMPARE(childLabels(root.get()), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(a->row(), 0);
    QCOMPARE(a->parent(), root.get());
}

void TestAChannelInfoTree::appendingElsewhereLeavesTheFirstListAlone()
{
    // a child given away while it stands in a list of children is in both until it is deleted
    auto *first = node(nullptr, QStringLiteral("first"));
    AChannelInfo *child = node(first, QStringLiteral("child"));
    const Tree second(node(nullptr, QStringLiteral("second")));
    node(second.get(), QStringLiteral("own"));
    second->appendChild(child);
    QCOMPARE(child->parent(), second.get());
    QCOMPARE(child->row(), 1);
    QCOMPARE(second->childCount(), 2);
    QCOMPARE(first->childCount(), 1);
    QCOMPARE(first->child(0), child);

    // it is among the first one's children already
    first->appendChild(child);
    const int count = first->childCount();
    AChannelInfo *const parent = child->parent();
    delete first;
    QCOMPARE(count, 1);
    QCOMPARE(parent, second.get());
    QCOMPARE(childLabels(second.get()), QStringList({QStringLiteral("own")}));
}

void TestAChannelInfoTree::rowsFollowEveryChange()
{
    std::mt19937 random(1);
    const Tree root(band());
    QList<AChannelInfo *> expected;
    for (int step = 0; step < 3000; ++step) {
        if (expected.isEmpty() || random() % 5 < 3) {
            const bool generated = random() % 8 == 0;
            expected.append(node(root.get(), QString::number(step), "0", "0",
                                 generated ? AChannelInfo::AutoChannel : AChannelInfo::Channel));
        } else if (random() % 50 == 0) {
            root->clearExpandedAutoChannels();
            QList<AChannelInfo *> left;
            for (int row = 0; row < root->childCount(); ++row)
                left.append(root->child(row));
            for (int i = expected.size() - 1; i >= 0; --i) {
                if (!left.contains(expected.at(i)))
                    expected.removeAt(i);
            }
            QCOMPARE(left, expected);
        } else {
            delete expected.takeAt(int(random() % uint(expected.size())));
        }
        QCOMPARE(root->childCount(), expected.size());
        if (!expected.isEmpty()) {
            const int row = int(random() % uint(expected.size()));
            QCOMPARE(root->child(row), expected.at(row));
            QCOMPARE(expected.at(row)->row(), row);
            root->appendChild(expected.at(row));
            QCOMPARE(root->childCount(), expected.size());
        }
    }
    for (int row = 0; row < expected.size(); ++row)
        QCOMPARE(expected.at(row)->row(), row);
}

void TestAChannelInfoTree::rowsFollowManyRemovals()
{
    // more between two looks than a search around the last place would find
    std::mt19937 random(3);
    Tree root(band());
    const Tree other(node(nullptr, QStringLiteral("other")));
    AChannelInfo *givenAway = node(root.get(), QStringLiteral("given away"));
    other->appendChild(givenAway);
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 3000; ++i)
            node(root.get(), QString::number(i));
        const int fromFront = int(random() % 1000);
        for (int i = 0; i < 2900; ++i)
            delete root->child(1 + (i < fromFront ? 0 : int(random() % uint(root->childCount() - 1))));
        AChannelInfo *last = root->child(root->childCount() - 1);
        QCOMPARE(last->row(), root->childCount() - 1);
        for (int row = 1; row < root->childCount(); ++row)
            QCOMPARE(root->child(row)->row(), row);
        QCOMPARE(givenAway->row(), 0); // among the other one's children
    }
    QCOMPARE(root->childCount(), 2001);
    QCOMPARE(root->child(0), givenAway);
    root.reset();
    QCOMPARE(other->childCount(), 0);
}

void TestAChannelInfoTree::deletingANodeTakesItOutOfItsParent()
{
    const Tree root(band());
    AChannelInfo *a = node(root.get(), QStringLiteral("a"));
    AChannelInfo *b = node(root.get(), QStringLiteral("b"));
    AChannelInfo *c = node(root.get(), QStringLiteral("c"));
    node(node(b, QStringLiteral("below")), QStringLiteral("below"));
    node(b, QStringLiteral("below"));
    node(a, QStringLiteral("d"));
    const QStringList before = outline(a) + outline(c);
    delete b;
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(root->child(0), a);
    QCOMPARE(root->child(1), c);
    QCOMPARE(c->row(), 1);
    QCOMPARE(outline(a) + outline(c), before);
}

void TestAChannelInfoTree::deletingANodeThatWasNeverEnteredLeavesTheParentAlone()
{
    const Tree root(fullTree());
    const QStringList before = outline(root.get());
    auto *loose =
        new AChannelInfo(root.get(), AChannelInfo::Generic, AFrequency(), AFrequency(), QStringLiteral("loose"), false);
    node(loose, QStringLiteral("below"));
    delete loose;
    QCOMPARE(outline(root.get()), before);
}

void TestAChannelInfoTree::nodesAreDeletedInAnyOrder()
{
    std::mt19937 random(2);
    for (int round = 0; round < 200; ++round) {
        // every node of the tree is deleted by itself or with a node above it
        Tree root(node(nullptr, QStringLiteral("root")));
        QList<AChannelInfo *> nodes{root.get()};
        for (int i = 1; i < 30; ++i)
            nodes.append(node(nodes.at(int(random() % uint(i))), QString::number(i)));
        while (root->childCount() > 0) {
            const auto all = root->channels(0);
            AChannelInfo *victim = all.at(1 + int(random() % uint(all.size() - 1))).first;
            const int gone = victim->channels(0).size();
            AChannelInfo *parent = victim->parent();
            QStringList left = childLabels(parent);
            left.removeAt(victim->row());
            delete victim;
            QCOMPARE(childLabels(parent), left);
            QCOMPARE(root->channels(0).size(), all.size() - gone);
        }
    }
}

void TestAChannelInfoTree::deletingANodeDeletesTheNodesBelow()
{
    // the leak checker sees what is left; here the order: a child may be gone before its parent
    auto *root = fullTree();
    delete root->child(1)->child(0);
    QCOMPARE(root->child(1)->childCount(), 0);
    delete root->child(0);
    QCOMPARE(childLabels(root), QStringList({QStringLiteral("a")}));
    delete root;
}

void TestAChannelInfoTree::copiesAreDeepAndComplete()
{
    const Tree top(node(nullptr, QStringLiteral("top")));
    const Tree original(fullTree());
    const QStringList before = outline(original.get());
    const Tree copy(new AChannelInfo(*original));
    QCOMPARE(copy->parent(), nullptr);
    QCOMPARE(copy->row(), 0);
    QCOMPARE(outline(copy.get()), before);
    QCOMPARE(outline(original.get()), before);

    AChannelInfo below(*original->child(1));
    QCOMPARE(below.parent(), nullptr);
    QCOMPARE(below.name(false), QStringLiteral("a"));
    QCOMPARE(outline(&below), outline(original->child(1)));
    QCOMPARE(original->childCount(), 2);

    // a mirror frequency with a part of a hertz is copied whole
    original->setData(AChannelInfo::ColumnMirrorEntryFreq, QStringLiteral("7.5"));
    QVERIFY(AChannelInfo(*original) == *original);
}

void TestAChannelInfoTree::copiesAreIndependent()
{
    Tree original(fullTree());
    const QStringList before = outline(original.get());
    const Tree copy(new AChannelInfo(*original));
    copy->child(1)->setData(AChannelInfo::ColumnName, QStringLiteral("other"));
    copy->setChannelDefinitions({});
    delete copy->child(0);
    QCOMPARE(outline(original.get()), before);

    const Tree second(new AChannelInfo(*original));
    original.reset();
    QCOMPARE(outline(second.get()), before);
    QCOMPARE(second->child(1)->row(), 1);
    QCOMPARE(second->child(1)->child(0)->name(false), QStringLiteral("root a deep"));
}

void TestAChannelInfoTree::typesBelowAreFoundByBit_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QList<int>>("masks");
    QTest::newRow("Generic") << 2 << QList<int>{2};
    QTest::newRow("Direction") << 4 << QList<int>{4};
    QTest::newRow("Provider") << 8 << QList<int>{8};
    QTest::newRow("Channel") << 16 << QList<int>{16, 48};
    QTest::newRow("AutoChannel") << 32 << QList<int>{32, 48};
    QTest::newRow("both") << 48 << QList<int>{16, 32, 48};
}

void TestAChannelInfoTree::typesBelowAreFoundByBit()
{
    QFETCH(int, type);
    QFETCH(QList<int>, masks);
    const Tree root(band());
    AChannelInfo *child = node(root.get(), QStringLiteral("child"));
    child->setData(AChannelInfo::ColumnType, type);
    for (const int mask : {0, 2, 4, 8, 16, 32, 48}) {
        QCOMPARE(root->hasChildsWithType(static_cast<AChannelInfo::RangeType>(mask)), masks.contains(mask));
        // the node itself doesn't count
        QVERIFY(!child->hasChildsWithType(static_cast<AChannelInfo::RangeType>(mask)));
    }
    QVERIFY(root->hasChildsWithType(static_cast<AChannelInfo::RangeType>(62)));
}

void TestAChannelInfoTree::typesBelowAreFoundAtAnyDepth()
{
    const Tree root(node(nullptr, QString(), "0", "0", AChannelInfo::Provider));
    AChannelInfo *first = node(root.get(), QString());
    node(first, QString(), "0", "0", AChannelInfo::Direction);
    AChannelInfo *deep = node(node(node(root.get(), QString()), QString()), QString());
    QVERIFY(!root->hasChildsWithType(AChannelInfo::Provider));
    QVERIFY(!root->hasChildsWithType(AChannelInfo::Channel));
    deep->setData(AChannelInfo::ColumnType, AChannelInfo::Channel);
    QVERIFY(root->hasChildsWithType(AChannelInfo::Channel));
    QVERIFY(root->hasChildsWithType(AChannelInfo::Direction));
    QVERIFY(!first->hasChildsWithType(AChannelInfo::Channel));
    QVERIFY(deep->parent()->hasChildsWithType(AChannelInfo::Channel));
    QVERIFY(!deep->hasChildsWithType(AChannelInfo::Channel));
}

void TestAChannelInfoTree::profileIdsAreFoundInTreeOrder()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *a = node(root.get(), QStringLiteral("a"));
    AChannelInfo *deep = node(a, QStringLiteral("deep"));
    AChannelInfo *b = node(root.get(), QStringLiteral("b"));
    deep->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    b->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    QCOMPARE(root->findByProfileId(QStringLiteral("fm")), deep);
    QCOMPARE(a->findByProfileId(QStringLiteral("fm")), deep);
    QCOMPARE(b->findByProfileId(QStringLiteral("fm")), b);
    QCOMPARE(root->findByProfileId(QStringLiteral("FM")), nullptr);
    QCOMPARE(root->findByProfileId(QStringLiteral("f")), nullptr);
    a->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    QCOMPARE(root->findByProfileId(QStringLiteral("fm")), a);
    QCOMPARE(b->findByProfileId(QStringLiteral("dab")), nullptr);
}

QTEST_APPLESS_MAIN(TestAChannelInfoTree)
#include "tst_achannelinfo_tree.moc"
