#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtTest/QtTest>

using namespace channeltree;

// A subtree as a flat list: with the depth of each node, and with the level that it is drawn at.
class TestAChannelInfoStacking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void channelsGiveDepths();
    void channelsOfALeaf();

    void stackingLevels_data();
    void stackingLevels();
    void rangesOfEqualEdgesStackInReverseOrder();
    void nodesBelowStackFromTheirParentsLevel();
    void fortyNineLevelsAreEnoughForFortyNine();
    void unplacedChildrenTakeTheirSubtreesAlong();
    void stackingChangesNothing();
};

void TestAChannelInfoStacking::channelsGiveDepths()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *b = node(root.get(), QStringLiteral("b"), "9", "10");
    node(node(b, QStringLiteral("b1")), QStringLiteral("b11"));
    node(b, QStringLiteral("b2"));
    AChannelInfo *a = node(root.get(), QStringLiteral("a"), "1", "2");
    node(a, QStringLiteral("a1"));
    QCOMPARE(listing(root->channels(0)), words("root:0 b:1 b1:2 b11:3 b2:2 a:1 a1:2"));
    QCOMPARE(listing(root->channels(5)), words("root:5 b:6 b1:7 b11:8 b2:7 a:6 a1:7"));
    QCOMPARE(listing(b->channels(-1)), words("b:-1 b1:0 b11:1 b2:0"));
    const auto list = root->channels(0);
    QCOMPARE(list.at(0).first, root.get());
    QCOMPARE(list.at(1).first, b);
    QCOMPARE(list.at(5).first, a);
}

void TestAChannelInfoStacking::channelsOfALeaf()
{
    AChannelInfo leaf(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
    const AChannelInfo::FlatList expected{qMakePair(&leaf, 5)};
    QCOMPARE(leaf.channels(5), expected);
    QCOMPARE(leaf.stackedChannels(5), expected);
}

// Children are "begin-end", with their place as label.
void TestAChannelInfoStacking::stackingLevels_data()
{
    QTest::addColumn<QStringList>("ranges");
    QTest::addColumn<QStringList>("list");
    const auto row = [](const char *name, const char *ranges, const char *list) {
        QTest::newRow(name) << words(ranges) << words(list);
    };
    row("none", "", "");
    row("one", "100..110", "0:1");
    row("overlapping", "100..110 105..115", "0:1 1:2");
    row("touching", "100..110 110..120", "0:1 1:1");
    row("apart", "100..110 111..120", "0:1 1:1");
    row("a hertz over", "100..111 110..120", "0:1 1:2");
    row("entered in another order", "110..120 100..110", "1:1 0:1");
    row("first fit", "100..200 110..120 120..130 125..140 200..210", "0:1 4:1 1:2 2:2 3:3");
    // the first range that follows is taken, though another order would need fewer levels
    row("greedy", "0..5 1..2 2..9 5..6", "0:1 3:1 1:2 2:2");
    row("equal edges, the last entered first", "100..110 100..110 100..110", "2:1 1:2 0:3");
    row("equal lower edge", "100..200 100..110 110..120", "1:1 2:1 0:2");
    row("no width", "100..100 100..100 100..110 100..100", "3:1 2:1 1:2 0:2");
    row("zero", "0..0 0..0", "1:1 0:1");
    row("end below begin", "100..50 60..70 110..120", "1:1 0:1 2:1");
    row("end below begin lets the next one overlap", "100..150 120..90 130..140 160..170", "0:1 3:1 1:2 2:2");
    // each pass begins at 0 Hz
    row("negative begin", "-10..-5 -1..5 0..10", "2:1");
    row("negative begins alone", "-10..5 -1..5", "");
    // children are ordered by whole hertz, towards zero, and compared with their fractions
    row("fractions, later one first", "100.5..101 100.25..100.4", "1:1 0:1");
    row("fractions, in place", "100.25..100.4 100.5..101", "1:1 0:2");
    row("touching within a hertz", "100.5..101 100.25..100.5", "1:1 0:1");
    row("just below zero", "-0.5..1 0.5..2", "1:1");
    row("behind a negative end", "-0.5..1 0..-3", "1:1 0:1");
    row("behind a negative end, entered before", "0..-3 -0.5..1", "0:1");
    row("a whole hertz below zero", "-1.5..1 0..-3", "1:1");
}

void TestAChannelInfoStacking::stackingLevels()
{
    QFETCH(QStringList, ranges);
    QFETCH(QStringList, list);
    const Tree root(node(nullptr, QStringLiteral("root"), "500", "600"));
    for (int i = 0; i < ranges.size(); ++i) {
        const QList<QByteArray> edges = ranges.at(i).toLatin1().replace("..", " ").split(' ');
        node(root.get(), QString::number(i), edges.at(0).constData(), edges.at(1).constData());
    }
    QCOMPARE(listing(root->stackedChannels(0)), words("root:0") + list);

    QStringList higher;
    for (const QString &entry : qAsConst(list)) {
        const QStringList parts = entry.split(QLatin1Char(':'));
        higher.append(QStringLiteral("%1:%2").arg(parts.at(0)).arg(parts.at(1).toInt() - 60));
    }
    QCOMPARE(listing(root->stackedChannels(-60)), words("root:-60") + higher);
}

void TestAChannelInfoStacking::rangesOfEqualEdgesStackInReverseOrder()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *a = node(root.get(), QStringLiteral("a"), "100 MHz", "110 MHz");
    AChannelInfo *b = node(root.get(), QStringLiteral("b"), "100 MHz", "110 MHz");
    const AChannelInfo::FlatList expected{qMakePair(root.get(), 3), qMakePair(b, 4), qMakePair(a, 5)};
    QCOMPARE(root->stackedChannels(3), expected);
}

void TestAChannelInfoStacking::nodesBelowStackFromTheirParentsLevel()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *a = node(root.get(), QStringLiteral("a"), "100", "200");
    AChannelInfo *b = node(root.get(), QStringLiteral("b"), "150", "250");
    AChannelInfo *c = node(root.get(), QStringLiteral("c"), "200", "300");
    node(a, QStringLiteral("a1"), "100", "120");
    node(node(a, QStringLiteral("a2"), "110", "130"), QStringLiteral("a21"), "0", "1000");
    node(b, QStringLiteral("b1"), "100", "120");
    node(c, QStringLiteral("c1"), "100", "120");
    QCOMPARE(listing(root->stackedChannels(0)), words("root:0 a:1 a1:2 a2:3 a21:4 c:1 c1:2 b:2 b1:3"));
    QCOMPARE(listing(b->stackedChannels(0)), words("b:0 b1:1"));
}

void TestAChannelInfoStacking::fortyNineLevelsAreEnoughForFortyNine()
{
    for (const int count : {48, 49, 50, 60}) {
        for (const int level : {0, 7, -100}) {
            const Tree root(node(nullptr, QStringLiteral("root")));
            for (int i = 0; i < count; ++i)
                root->appendChild(
                    new AChannelInfo(nullptr, AChannelInfo::Generic, hertz(i), hertz(1000), QString::number(i), false));
            QStringList expected{QStringLiteral("root:%1").arg(level)};
            for (int i = 0; i < qMin(count, 49); ++i)
                expected.append(QStringLiteral("%1:%2").arg(i).arg(level + 1 + i));
            QCOMPARE(listing(root->stackedChannels(level)), expected);
        }
    }
}

void TestAChannelInfoStacking::unplacedChildrenTakeTheirSubtreesAlong()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    for (int i = 0; i < 50; ++i)
        node(node(root.get(), QString::number(i), "100", "110"), QStringLiteral("below"));
    const QStringList list = listing(root->stackedChannels(0));
    // of equal edges the last entered come first, so the first one is left over
    QCOMPARE(list.size(), 1 + 49 * 2);
    QCOMPARE(list.at(1), QStringLiteral("49:1"));
    QCOMPARE(list.last(), QStringLiteral("below:50"));
    QCOMPARE(list.at(list.size() - 2), QStringLiteral("1:49"));

    // a level deep down has 49 levels of its own
    const Tree above(node(nullptr, QStringLiteral("above")));
    for (int i = 0; i < 48; ++i)
        node(above.get(), QStringLiteral("cover"), "100", "110");
    auto *below = new AChannelInfo(*root);
    below->setData(AChannelInfo::ColumnStartFreq, 100);
    below->setData(AChannelInfo::ColumnStopFreq, 110);
    AChannelInfo *first = above->child(0);
    first->appendChild(below);
    const auto deep = above->stackedChannels(0);
    QCOMPARE(deep.size(), 1 + 48 + list.size());
    QCOMPARE(deep.last().second, 48 + 1 + 50);
}

void TestAChannelInfoStacking::stackingChangesNothing()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    for (const char *begin : {"9", "5", "7", "5"})
        node(node(root.get(), QString::fromLatin1(begin), begin, "10"), QStringLiteral("below"), "3", "4");
    const QStringList before = outline(root.get());
    const AChannelInfo &constant = *root;
    QCOMPARE(constant.stackedChannels(0).size(), 9);
    QCOMPARE(outline(root.get()), before);
}

QTEST_APPLESS_MAIN(TestAChannelInfoStacking)
#include "tst_achannelinfo_stacking.moc"
