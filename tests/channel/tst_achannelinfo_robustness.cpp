#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtTest/QtTest>

#include <climits>
#include <memory>

using namespace channeltree;

// Nothing here is timed: what grows faster than the tree doesn't end within the time that a test function has, and what
// recurses overflows the stack.

namespace {

constexpr int kDepth = 200000;
constexpr int kWidth = 200000;
constexpr int kHugeCount = 2000000000;

// Nodes labelled by their depth, each below the last.
AChannelInfo *chain(int depth, AChannelInfo **last = nullptr)
{
    AChannelInfo *root = node(nullptr, QStringLiteral("0"), "100", "200");
    AChannelInfo *below = root;
    for (int i = 1; i < depth; ++i)
        below = node(below, QString::number(i), "100", "200");
    if (last)
        *last = below;
    return root;
}

// A root with `count` children, every second one generated.
AChannelInfo *wide(int count)
{
    AChannelInfo *root = node(nullptr, QStringLiteral("root"));
    for (int i = 0; i < count; ++i)
        node(root, QString::number(i), "100", "200", i % 2 ? AChannelInfo::AutoChannel : AChannelInfo::Channel);
    return root;
}

} // namespace

class TestAChannelInfoRobustness : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDeepChainIsWalked();
    void aDeepChainIsSearched();
    void aDeepChainIsCopied();
    void aDeepChainIsExpanded();
    void aDeepChainIsDeletedFromAnyNode();
    void aChainIsCompared();

    void manyChildrenAreAppendedAndDeletedThroughTheParent();
    void manyChildrenAreDeletedOneByOne();
    void rowsOfManyChildren();
    void rowsAreAskedWhileManyChildrenGo_data();
    void rowsAreAskedWhileManyChildrenGo();
    void manyChildrenAreCopiedAndCompared();
    void manyGeneratedChildrenAreCleared();
    void manyChildrenAreStacked();
    void aLongRunIsExpanded();

    void aHugeDefinitionDiffersAtOnce_data();
    void aHugeDefinitionDiffersAtOnce();
    void equalHugeDefinitionsAreNotExpanded();
    void hugeDefinitionsBelowOthersAreNotExpanded();
    void hugeDefinitionsAreCounted();
};

void TestAChannelInfoRobustness::aDeepChainIsWalked()
{
    AChannelInfo *last = nullptr;
    const Tree root(chain(kDepth, &last));
    const auto channels = root->channels(0);
    QCOMPARE(channels.size(), kDepth);
    QCOMPARE(channels.last(), qMakePair(last, kDepth - 1));
    const auto stacked = root->stackedChannels(7);
    QCOMPARE(stacked.size(), kDepth);
    QCOMPARE(stacked.last(), qMakePair(last, kDepth + 6));
    QCOMPARE(last->row(), 0);

    QVERIFY(!root->hasChildsWithType(AChannelInfo::Provider));
    last->setData(AChannelInfo::ColumnType, AChannelInfo::Provider);
    QVERIFY(root->hasChildsWithType(AChannelInfo::Provider));
}

void TestAChannelInfoRobustness::aDeepChainIsSearched()
{
    AChannelInfo *last = nullptr;
    const Tree root(chain(kDepth, &last));
    QCOMPARE(root->findByName(QStringLiteral("none")), nullptr);
    QCOMPARE(root->findByName(last->label()), last);
    QCOMPARE(root->findByProfileId(QStringLiteral("none")), nullptr);
    last->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    QCOMPARE(root->findByProfileId(QStringLiteral("fm")), last);

    const QString name = last->name(false);
    QVERIFY(name.startsWith(QLatin1String("0 1 2 3 ")));
    QVERIFY(name.endsWith(QLatin1String(" 199998 199999")));
    QCOMPARE(root->findByName(name), last);
    QCOMPARE(root->findByName(name + QLatin1Char('9')), nullptr);
}

void TestAChannelInfoRobustness::aDeepChainIsCopied()
{
    Tree root(chain(kDepth));
    AChannelInfo copy(*root);
    root.reset();
    const auto channels = copy.channels(0);
    QCOMPARE(channels.size(), kDepth);
    QCOMPARE(channels.last().first->label(), QString::number(kDepth - 1));
}

void TestAChannelInfoRobustness::aDeepChainIsExpanded()
{
    const Tree root(chain(kDepth));
    const auto channels = root->channels(0);
    for (const auto &entry : channels)
        entry.first->setChannelDefinitions({definition("1", "2", "3", 1)});
    QCOMPARE(root->definedChannelCount(), qint64(kDepth));
    root->processChannelDefinitions(false, false);
    QCOMPARE(root->channels(0).size(), 2 * kDepth);
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->channels(0).size(), 2 * kDepth);
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->channels(0).size(), kDepth);
}

void TestAChannelInfoRobustness::aDeepChainIsDeletedFromAnyNode()
{
    AChannelInfo *root = chain(kDepth);
    delete root->channels(0).at(kDepth / 2).first;
    QCOMPARE(root->channels(0).size(), kDepth / 2);
    delete root->child(0);
    QCOMPARE(root->childCount(), 0);
    delete root;

    // and from the last one up
    Tree other(chain(kDepth));
    const auto channels = other->channels(0);
    for (int i = channels.size() - 1; i > 0; --i)
        delete channels.at(i).first;
    QCOMPARE(other->childCount(), 0);
}

void TestAChannelInfoRobustness::aChainIsCompared()
{
    AChannelInfo *last = nullptr;
    const Tree root(chain(2000, &last));
    const AChannelInfo copy(*root);
    QVERIFY(*root == copy);
    last->setData(AChannelInfo::ColumnComment, QStringLiteral("x"));
    QVERIFY(!(*root == copy));
}

void TestAChannelInfoRobustness::manyChildrenAreAppendedAndDeletedThroughTheParent()
{
    AChannelInfo *root = wide(kWidth);
    QCOMPARE(root->childCount(), kWidth);
    QCOMPARE(root->child(kWidth - 1)->label(), QString::number(kWidth - 1));
    QCOMPARE(root->channels(0).size(), kWidth + 1);
    delete root;

    // below a node that is deleted through its own parent
    const Tree above(node(nullptr, QStringLiteral("above")));
    AChannelInfo *below = wide(kWidth);
    above->appendChild(below);
    delete below;
    QCOMPARE(above->childCount(), 0);
}

void TestAChannelInfoRobustness::manyChildrenAreDeletedOneByOne()
{
    const Tree root(wide(kWidth));
    while (root->childCount() > kWidth / 2)
        delete root->child(root->childCount() - 1);
    QCOMPARE(root->child(kWidth / 2 - 1)->label(), QString::number(kWidth / 2 - 1));
    while (root->childCount() > 1)
        delete root->child(0);
    QCOMPARE(root->child(0)->label(), QString::number(kWidth / 2 - 1));
    QCOMPARE(root->child(0)->row(), 0);
}

void TestAChannelInfoRobustness::rowsOfManyChildren()
{
    const Tree root(wide(kWidth));
    for (int row = 0; row < kWidth; ++row) {
        if (root->child(row)->row() != row)
            QFAIL(QByteArray::number(row));
    }

    // also when every one has moved
    const Tree moved(wide(10000));
    delete moved->child(0);
    for (int row = moved->childCount() - 1; row >= 0; --row) {
        if (moved->child(row)->row() != row)
            QFAIL(QByteArray::number(row));
    }
}

void TestAChannelInfoRobustness::rowsAreAskedWhileManyChildrenGo_data()
{
    QTest::addColumn<int>("first"); // of the children that are removed
    QTest::newRow("at the front") << 0;
    QTest::newRow("behind the first") << 1;
    QTest::newRow("in the middle") << kWidth / 4;
}

void TestAChannelInfoRobustness::rowsAreAskedWhileManyChildrenGo()
{
    QFETCH(int, first);
    const Tree root(wide(kWidth));
    for (int left = kWidth - 1; left >= kWidth / 2; --left) {
        delete root->child(first);
        // each time another one, whose row was not asked yet or long ago
        for (const int row : {left - 1, int(left * 7919LL % (left - 1)), left / 2}) {
            if (root->child(row)->row() != row)
                QFAIL(QByteArray::number(row).constData());
        }
    }
    for (int row = 0; row < root->childCount(); ++row) {
        if (root->child(row)->row() != row)
            QFAIL(QByteArray::number(row).constData());
    }
}

void TestAChannelInfoRobustness::manyChildrenAreCopiedAndCompared()
{
    const Tree root(wide(20000));
    AChannelInfo copy(*root);
    QVERIFY(*root == copy);

    const Tree reversed(node(nullptr, QStringLiteral("root")));
    for (int row = root->childCount() - 1; row >= 0; --row)
        reversed->appendChild(new AChannelInfo(*root->child(row)));
    QVERIFY(*root == *reversed);
    QVERIFY(*reversed == *root);
    reversed->child(0)->setData(AChannelInfo::ColumnComment, QStringLiteral("x"));
    QVERIFY(!(*root == *reversed));
    QVERIFY(!(*reversed == *root));
}

void TestAChannelInfoRobustness::manyGeneratedChildrenAreCleared()
{
    const Tree root(wide(kWidth));
    QCOMPARE(root->clearExpandedAutoChannels(), kWidth / 2);
    QCOMPARE(root->childCount(), kWidth / 2);
    QCOMPARE(root->child(kWidth / 2 - 1)->label(), QString::number(kWidth - 2));
    QCOMPARE(root->child(kWidth / 2 - 1)->row(), kWidth / 2 - 1);
    QCOMPARE(root->clearExpandedAutoChannels(), 0);
}

void TestAChannelInfoRobustness::manyChildrenAreStacked()
{
    // all overlap, so each level takes one
    const Tree root(wide(kWidth));
    const auto overlapping = root->stackedChannels(0);
    QCOMPARE(overlapping.size(), 50);
    QCOMPARE(overlapping.at(1), qMakePair(root->child(kWidth - 1), 1));
    QCOMPARE(overlapping.last(), qMakePair(root->child(kWidth - 49), 49));

    // none overlaps, so one level takes all
    const Tree flat(node(nullptr, QStringLiteral("flat")));
    for (int i = 0; i < kWidth; ++i)
        flat->appendChild(new AChannelInfo(nullptr, AChannelInfo::Channel, hertz(kWidth - i), hertz(kWidth - i + 1),
                                           QString(), false));
    const auto beside = flat->stackedChannels(0);
    QCOMPARE(beside.size(), kWidth + 1);
    QCOMPARE(beside.at(1), qMakePair(flat->child(kWidth - 1), 1));
    QCOMPARE(beside.last(), qMakePair(flat->child(0), 1));
}

void TestAChannelInfoRobustness::aLongRunIsExpanded()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    root->setChannelDefinitions({definition("100 MHz", "25 kHz", "0", kWidth)});
    root->processChannelDefinitions(false, false);
    QCOMPARE(root->childCount(), kWidth);
    QCOMPARE(root->child(kWidth - 1)->beginFrequency(), hertz(100000000 + 25000 * qint64(kWidth - 1)));
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->childCount(), kWidth);
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->childCount(), 0);
}

void TestAChannelInfoRobustness::aHugeDefinitionDiffersAtOnce_data()
{
    QTest::addColumn<int>("channels");
    QTest::addColumn<QList<int>>("counts");
    QTest::newRow("no children") << 0 << QList<int>();
    QTest::newRow("few children") << 3 << QList<int>();
    QTest::newRow("two short definitions") << 0 << QList<int>{1, 2};
    QTest::newRow("one short definition and generated channels") << 3 << QList<int>{1};
    QTest::newRow("two huge definitions") << 0 << QList<int>{kHugeCount, kHugeCount};
    QTest::newRow("largest counts") << 0 << QList<int>{INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX};
}

void TestAChannelInfoRobustness::aHugeDefinitionDiffersAtOnce()
{
    QFETCH(int, channels);
    QFETCH(QList<int>, counts);
    const Tree huge(node(nullptr, QStringLiteral("root")));
    huge->setChannelDefinitions({definition("1", "1", "0", kHugeCount)});
    const Tree other(node(nullptr, QStringLiteral("root")));
    QList<AChannelInfo::Definition> definitions;
    for (const int count : counts)
        definitions.append(definition("1", "1", "0", count));
    for (int i = 0; i < channels; ++i)
        node(other.get(), QString::number(i + 1), "1", "2", AChannelInfo::AutoChannel);
    other->setChannelDefinitions(definitions);
    QVERIFY(!(*huge == *other));
    QVERIFY(!(*other == *huge));

    // and below
    const Tree above(node(nullptr, QStringLiteral("above")));
    const Tree beside(node(nullptr, QStringLiteral("above")));
    above->appendChild(new AChannelInfo(*huge));
    beside->appendChild(new AChannelInfo(*other));
    QVERIFY(!(*above == *beside));
    QVERIFY(!(*beside == *above));
}

void TestAChannelInfoRobustness::equalHugeDefinitionsAreNotExpanded()
{
    const Tree one(node(nullptr, QStringLiteral("root")));
    const auto a = definition("1", "1", "0", kHugeCount);
    const auto b = definition("5", "1", "0", kHugeCount);
    one->setChannelDefinitions({a, b});
    AChannelInfo copy(*one);
    QVERIFY(*one == copy);
    copy.setChannelDefinitions({b, a});
    QVERIFY(*one == copy);
    copy.setChannelDefinitions({b, definition("6", "1", "0", kHugeCount)});
    QVERIFY(!(*one == copy));
    // a field that differs is found before anything is expanded
    copy.setChannelDefinitions({b});
    copy.setData(AChannelInfo::ColumnComment, QStringLiteral("x"));
    QVERIFY(!(*one == copy));
}

// Both sides count as expanded because one of them holds a generated channel, and their definitions say the same.
void TestAChannelInfoRobustness::hugeDefinitionsBelowOthersAreNotExpanded()
{
    const auto plan = [](const QString &lastLabel, const char *width) {
        AChannelInfo *root = node(nullptr, QStringLiteral("root"));
        root->setChannelDefinitions({definition("1", width, "0", kHugeCount)});
        node(root, QStringLiteral("1"), "1", "2", AChannelInfo::AutoChannel);
        AChannelInfo *below = node(root, QStringLiteral("below"));
        below->setChannelDefinitions({definition("5", width, "0", kHugeCount)});
        node(below, lastLabel);
        return Tree(root);
    };
    const Tree one = plan(QStringLiteral("a"), "1");
    QVERIFY(*one == *plan(QStringLiteral("a"), "1"));
    QVERIFY(*one == *plan(QStringLiteral("a"), "1.0")); // other texts, the same channels
    QVERIFY(!(*one == *plan(QStringLiteral("b"), "1")));
}

void TestAChannelInfoRobustness::hugeDefinitionsAreCounted()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    root->setChannelDefinitions({definition("1", "1", "0", INT_MAX), definition("1", "1", "0", INT_MIN)});
    node(root.get(), QString())->setChannelDefinitions({definition("1", "1", "0", INT_MAX)});
    QCOMPARE(root->definedChannelCount(), 2 * qint64(INT_MAX));
    QCOMPARE(root->channels(0).size(), 2);
}

QTEST_APPLESS_MAIN(TestAChannelInfoRobustness)
#include "tst_achannelinfo_robustness.moc"
