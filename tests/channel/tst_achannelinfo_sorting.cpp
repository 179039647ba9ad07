#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtCore/QMultiMap>
#include <QtTest/QtTest>

#include <algorithm>
#include <memory>
#include <random>

using namespace channeltree;

namespace {

constexpr int kColumnCount = 11;

// Children "0", "1", ... whose `column` has these values. A profile id of column 7 changes no label.
AChannelInfo *childrenWith(int column, const QVariantList &values)
{
    AChannelInfo *root = node(nullptr, QStringLiteral("root"));
    for (int i = 0; i < values.size(); ++i)
        node(root, QString::number(i))->setData(static_cast<AChannelInfo::Columns>(column), values.at(i));
    return root;
}

QList<int> places(AChannelInfo *parent)
{
    QList<int> numbers;
    const QStringList labels = childLabels(parent);
    for (const QString &label : labels)
        numbers.append(label.toInt());
    return numbers;
}

template<class List>
List reversed(List list)
{
    std::reverse(list.begin(), list.end());
    return list;
}

// The order as it is defined: each child from the last to the first goes into a multi-map under a text.
QString definedKey(AChannelInfo *child, int column)
{
    if (column == AChannelInfo::ColumnStartFreq || column == AChannelInfo::ColumnStopFreq) {
        AFrequency frequency;
        frequency.setValue(child->data(column).toDouble(), AFrequency::MHz);
        return frequency.formatString(QStringLiteral("%1"), AFrequency::Hz, 20, 'd', -1);
    }
    if (column == AChannelInfo::ColumnType)
        return QStringLiteral("%1").arg(child->type(), 0, 10);
    return child->data(column).toString();
}

void appendDefinedOrder(AChannelInfo *parent, int column, Qt::SortOrder order, QList<AChannelInfo *> *nodes)
{
    QMultiMap<QString, AChannelInfo *> map;
    for (int row = parent->childCount() - 1; row >= 0; --row)
        map.insert(definedKey(parent->child(row), column), parent->child(row));
    const QList<AChannelInfo *> sorted = order == Qt::AscendingOrder ? map.values() : reversed(map.values());
    for (AChannelInfo *child : sorted) {
        nodes->append(child);
        appendDefinedOrder(child, column, order, nodes);
    }
}

QList<AChannelInfo *> definedOrder(AChannelInfo *root, int column, Qt::SortOrder order)
{
    QList<AChannelInfo *> nodes{root};
    appendDefinedOrder(root, column, order, &nodes);
    return nodes;
}

QList<AChannelInfo *> nodesOf(AChannelInfo *root)
{
    QList<AChannelInfo *> nodes;
    const auto flat = root->channels(0);
    for (const auto &entry : flat)
        nodes.append(entry.first);
    return nodes;
}

// A value for any column, from few enough that equal ones are common.
QVariant randomValue(int column, std::mt19937 *random)
{
    static const QStringList texts{
        QString(),
        QStringLiteral(" "),
        QStringLiteral("\t x"),
        QStringLiteral("x "),
        QStringLiteral("a"),
        QStringLiteral("A"),
        QStringLiteral("a b"),
        QStringLiteral("B"),
        QStringLiteral("default"),
        QStringLiteral("default:2"),
        QStringLiteral("10"),
        QStringLiteral("9"),
        QStringLiteral("red"),
        QString::fromUtf8("\xc3\xa4"),
        QString::fromUtf8("\xef\xbd\x9e"),     // U+FF5E
        QString::fromUtf8("\xf0\x9f\x98\x80"), // U+1F600
    };
    static const QList<qlonglong> frequencies{
        0, 1, 9, 10, 100, 9000000, 100000000, 9223372036854, 9223372036855, 9300000000000, -1, -9, -10, -9300000000000,
    };
    switch (column) {
    case AChannelInfo::ColumnStartFreq:
    case AChannelInfo::ColumnStopFreq:
    case AChannelInfo::ColumnMirrorEntryFreq:
        return frequencies.at(int((*random)() % uint(frequencies.size())));
    case AChannelInfo::ColumnType:
        return QList<int>{2, 4, 8, 16, 32, 48}.at(int((*random)() % 6));
    case AChannelInfo::ColumnSelectable:
        return (*random)() % 2 == 0;
    case AChannelInfo::ColumnColor:
        switch ((*random)() % 4) {
        case 0:
            return QColor(Qt::blue);
        case 1:
            return QColor();
        case 2:
            return QVariant();
        default:
            return texts.at(int((*random)() % uint(texts.size())));
        }
    case AChannelInfo::ColumnAutoChannelDefinition:
        return QVariantList{definition("1", "2", "3", int((*random)() % 9))};
    default:
        return texts.at(int((*random)() % uint(texts.size())));
    }
}

AChannelInfo *randomTree(int size, std::mt19937 *random)
{
    auto *root = node(nullptr, randomValue(AChannelInfo::ColumnName, random).toString());
    QList<AChannelInfo *> nodes{root};
    while (nodes.size() < size) {
        AChannelInfo *parent = nodes.at(int((*random)() % uint(nodes.size())));
        nodes.append(node(parent, QString()));
        for (int column = 0; column < kColumnCount; ++column)
            nodes.last()->setData(static_cast<AChannelInfo::Columns>(column), randomValue(column, random));
    }
    return root;
}

// The children are sorted by a column, each time from the order that they are entered in.
void compareBothOrders(int column, const QVariantList &values, const QList<int> &ascending)
{
    const Tree up(childrenWith(column, values));
    up->sortChildren(column, Qt::AscendingOrder);
    QCOMPARE(places(up.get()), ascending);
    const Tree down(childrenWith(column, values));
    down->sortChildren(column, Qt::DescendingOrder);
    QCOMPARE(places(down.get()), reversed(ascending));
}

} // namespace

class TestAChannelInfoSorting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void childrenAreSortedByTheTextOfAColumn_data();
    void childrenAreSortedByTheTextOfAColumn();
    void edgesAreSortedByNumber_data();
    void edgesAreSortedByNumber();
    void qualifiedNamesAreSorted();
    void columnsWithoutTextsLeaveOrReverseTheChildren_data();
    void columnsWithoutTextsLeaveOrReverseTheChildren();
    void equalTextsKeepTheirOrderAscendingAndReverseItDescending();
    void theWholeSubtreeIsSortedAndNothingBesideIt();
    void sortingMovesNodesAndChangesNone();
    void rowsFollowTheOrder();
    void anyTreeIsSortedAsDefined_data();
    void anyTreeIsSortedAsDefined();
    void deepAndWideTreesAreSorted_data();
    void deepAndWideTreesAreSorted();
};

void TestAChannelInfoSorting::childrenAreSortedByTheTextOfAColumn_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QList<int>>("ascending"); // the places in `values`
    const QVariantList texts{QStringLiteral("b"),  QStringLiteral("B"), QString(),
                             QStringLiteral("a"),  QStringLiteral("9"), QStringLiteral("10"),
                             QStringLiteral("ab"), QStringLiteral(" z")};
    const QList<int> byCode{2, 7, 5, 4, 1, 3, 6, 0};
    QTest::newRow("profile id") << 7 << texts << byCode;
    QTest::newRow("comment") << 8 << texts << byCode;
    QTest::newRow("colour texts") << 6 << texts << byCode;
    QTest::newRow("colours") << 6 << QVariantList{QColor(Qt::red), QStringLiteral("#00ff00"),
                                                  QColor(0, 0, 1), QStringLiteral("green"),
                                                  QVariant(),      QColor()}
                             << QList<int>{4, 5, 2, 1, 0, 3}; // no colour at all is the text of black
    QTest::newRow("types") << 4 << QVariantList{2, 4, 8, 16, 32, 48} << QList<int>{3, 0, 4, 1, 5, 2};
    QTest::newRow("selectable") << 5 << QVariantList{true, false, true, false} << QList<int>{1, 3, 0, 2};
    QTest::newRow("mirror frequencies as text")
        << 10 << QVariantList{9000000, 100000000, 0, 100, -5} << QList<int>{4, 2, 3, 1, 0};
    QTest::newRow("above the first plane by code unit")
        << 8 << QVariantList{QString(QChar(0xff5e)), QString::fromUtf8("\xf0\x9f\x98\x80")} << QList<int>{1, 0};
}

void TestAChannelInfoSorting::childrenAreSortedByTheTextOfAColumn()
{
    QFETCH(int, column);
    QFETCH(QVariantList, values);
    QFETCH(QList<int>, ascending);
    compareBothOrders(column, values, ascending);

    // labels are sorted like every text
    if (column == AChannelInfo::ColumnComment) {
        const Tree labelled(node(nullptr, QString()));
        QStringList expected;
        for (const QVariant &value : values)
            node(labelled.get(), value.toString());
        for (const int place : ascending)
            expected.append(values.at(place).toString());
        labelled->sortChildren(AChannelInfo::ColumnName, Qt::AscendingOrder);
        QCOMPARE(childLabels(labelled.get()), expected);
        labelled->sortChildren(AChannelInfo::ColumnName, Qt::DescendingOrder);
        QCOMPARE(childLabels(labelled.get()), reversed(expected));
    }
}

void TestAChannelInfoSorting::edgesAreSortedByNumber_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QList<int>>("ascending");
    QTest::newRow("9 MHz before 100 MHz")
        << QVariantList{QStringLiteral("100 MHz"), QStringLiteral("9 MHz")} << QList<int>{1, 0};
    QTest::newRow("any length") << QVariantList{1000, 0, 999, 5000000000LL, 9223372036854LL, 1}
                                << QList<int>{1, 5, 2, 0, 3, 4};
    QTest::newRow("parts of a hertz are equal")
        << QVariantList{QStringLiteral("5.9"), QStringLiteral("5.1"), QStringLiteral("5.5")} << QList<int>{0, 1, 2};
    // the number is taken as megahertz, so from here on all are equal
    QTest::newRow("above 9.2 THz") << QVariantList{9300000000000LL, 9223372036855LL, 9400000000000LL, 9223372036854LL}
                                   << QList<int>{3, 0, 1, 2};
    // texts in a field of one width: a minus sign stands before digits and behind blanks
    QTest::newRow("negative numbers") << QVariantList{1, -1, 10, -10, -2, 0, 100} << QList<int>{5, 0, 1, 4, 2, 3, 6};
}

void TestAChannelInfoSorting::edgesAreSortedByNumber()
{
    QFETCH(QVariantList, values);
    QFETCH(QList<int>, ascending);
    for (const int column : {AChannelInfo::ColumnStartFreq, AChannelInfo::ColumnStopFreq})
        compareBothOrders(column, values, ascending);
}

void TestAChannelInfoSorting::qualifiedNamesAreSorted()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    const QStringList labels{QStringLiteral("b"), QStringLiteral("A"), QStringLiteral("z"), QStringLiteral("a "),
                             QString(),           QStringLiteral(" "), QStringLiteral("a")};
    for (const QString &label : labels)
        node(root.get(), label);
    root->child(2)->setData(AChannelInfo::ColumnProfileId, QStringLiteral("default"));
    root->sortChildren(AChannelInfo::ColumnQualifiedName, Qt::AscendingOrder);
    // a default profile's node has no name at all; a blank label leaves the name of the root
    QCOMPARE(childLabels(root.get()),
             QStringList({QStringLiteral("z"), QString(), QStringLiteral(" "), QStringLiteral("A"),
                          QStringLiteral("a "), QStringLiteral("a"), QStringLiteral("b")}));
}

void TestAChannelInfoSorting::columnsWithoutTextsLeaveOrReverseTheChildren_data()
{
    QTest::addColumn<int>("column");
    for (const int column : {-1, 9, 11, 1000, INT_MIN, INT_MAX})
        QTest::newRow(QByteArray::number(column).constData()) << column;
}

void TestAChannelInfoSorting::columnsWithoutTextsLeaveOrReverseTheChildren()
{
    QFETCH(int, column);
    const Tree root(childrenWith(
        AChannelInfo::ColumnAutoChannelDefinition,
        {QVariantList{definition("3", "3", "3", 3)}, QVariantList(), QVariantList{definition("1", "1", "1", 1)}}));
    AChannelInfo *last = root->child(2);
    node(last, QStringLiteral("7"));
    node(last, QStringLiteral("5"));
    root->sortChildren(column, Qt::AscendingOrder);
    QCOMPARE(places(root.get()), QList<int>({0, 1, 2}));
    QCOMPARE(places(last), QList<int>({7, 5}));
    root->sortChildren(column, Qt::DescendingOrder);
    QCOMPARE(places(root.get()), QList<int>({2, 1, 0}));
    QCOMPARE(places(last), QList<int>({5, 7}));
}

void TestAChannelInfoSorting::equalTextsKeepTheirOrderAscendingAndReverseItDescending()
{
    const auto comments = [](AChannelInfo *parent) {
        QStringList texts;
        for (int row = 0; row < parent->childCount(); ++row)
            texts.append(parent->child(row)->label() + parent->child(row)->comment());
        return texts.join(QLatin1Char(' '));
    };
    const Tree root(node(nullptr, QString()));
    for (const char *text : {"b1", "a1", "b2", "a2", "a3"})
        node(root.get(), QString(QLatin1Char(text[0])))
            ->setData(AChannelInfo::ColumnComment, QString(QLatin1Char(text[1])));
    root->sortChildren(0, Qt::AscendingOrder);
    QCOMPARE(comments(root.get()), QStringLiteral("a1 a2 a3 b1 b2"));
    root->sortChildren(0, Qt::AscendingOrder);
    QCOMPARE(comments(root.get()), QStringLiteral("a1 a2 a3 b1 b2"));
    root->sortChildren(0, Qt::DescendingOrder);
    QCOMPARE(comments(root.get()), QStringLiteral("b2 b1 a3 a2 a1"));
    root->sortChildren(0, Qt::DescendingOrder);
    QCOMPARE(comments(root.get()), QStringLiteral("b1 b2 a1 a2 a3"));
}

void TestAChannelInfoSorting::theWholeSubtreeIsSortedAndNothingBesideIt()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *second = node(root.get(), QStringLiteral("2"));
    AChannelInfo *first = node(root.get(), QStringLiteral("1"));
    for (AChannelInfo *parent : {first, second}) {
        node(parent, QStringLiteral("4"));
        node(node(parent, QStringLiteral("3")), QStringLiteral("6"));
        node(parent->child(1), QStringLiteral("5"));
    }
    first->sortChildren(0, Qt::AscendingOrder);
    QCOMPARE(places(root.get()), QList<int>({2, 1}));
    QCOMPARE(places(second), QList<int>({4, 3}));
    QCOMPARE(places(second->child(1)), QList<int>({6, 5}));
    QCOMPARE(places(first), QList<int>({3, 4}));
    QCOMPARE(places(first->child(0)), QList<int>({5, 6}));

    root->sortChildren(0, Qt::AscendingOrder);
    QCOMPARE(places(root.get()), QList<int>({1, 2}));
    QCOMPARE(places(second), QList<int>({3, 4}));
    QCOMPARE(places(second->child(0)), QList<int>({5, 6}));

    AChannelInfo leaf(nullptr, AChannelInfo::Generic, {}, {}, QString(), false);
    leaf.sortChildren(0, Qt::AscendingOrder);
    QCOMPARE(leaf.childCount(), 0);
}

void TestAChannelInfoSorting::sortingMovesNodesAndChangesNone()
{
    std::mt19937 random(4);
    const Tree root(randomTree(200, &random));
    QStringList before = outline(root.get());
    const AChannelInfo copy(*root);
    before.sort();
    for (int column = -1; column <= kColumnCount; ++column) {
        root->sortChildren(column, Qt::DescendingOrder);
        QStringList after = outline(root.get());
        after.sort();
        QCOMPARE(after, before);
    }
    QVERIFY(copy == *root);
}

void TestAChannelInfoSorting::rowsFollowTheOrder()
{
    std::mt19937 random(5);
    const Tree root(node(nullptr, QString()));
    const auto verifyRows = [&root]() {
        for (int row = 0; row < root->childCount(); ++row) {
            if (root->child(row)->row() != row)
                return false;
        }
        return true;
    };
    for (int step = 0; step < 60; ++step) {
        for (int i = 0; i < 200; ++i)
            node(root.get(), QString::number(random() % 1000));
        root->sortChildren(0, step % 3 ? Qt::AscendingOrder : Qt::DescendingOrder);
        QVERIFY(verifyRows());
        const bool atFront = step % 2;
        for (int i = 0; i < 150; ++i)
            delete root->child(atFront ? 0 : int(random() % uint(root->childCount())));
        if (step % 5 == 0)
            QVERIFY(verifyRows());
        root->appendChild(root->child(step % root->childCount())); // a child already, wherever it stands
        QCOMPARE(root->childCount(), 50 * (step + 1));
    }
    QVERIFY(verifyRows());
}

void TestAChannelInfoSorting::anyTreeIsSortedAsDefined_data()
{
    QTest::addColumn<int>("column");
    for (int column = -1; column <= kColumnCount; ++column)
        QTest::newRow(QByteArray::number(column).constData()) << column;
}

void TestAChannelInfoSorting::anyTreeIsSortedAsDefined()
{
    QFETCH(int, column);
    std::mt19937 random(static_cast<unsigned>(column + 2));
    for (int round = 0; round < 40; ++round) {
        const Tree root(randomTree(1 + round * 5, &random));
        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            const auto expected = definedOrder(root.get(), column, order);
            root->sortChildren(column, order);
            QCOMPARE(nodesOf(root.get()), expected);
        }
        // a part of the tree, whose nodes' names go up to the root
        AChannelInfo *part = nodesOf(root.get()).at(round / 2);
        const auto expected = definedOrder(part, column, Qt::AscendingOrder);
        part->sortChildren(column, Qt::AscendingOrder);
        QCOMPARE(nodesOf(part), expected);
    }
}

void TestAChannelInfoSorting::deepAndWideTreesAreSorted_data()
{
    QTest::addColumn<int>("column");
    for (int column = 0; column < kColumnCount; ++column)
        QTest::newRow(QByteArray::number(column).constData()) << column;
}

// Not timed: what recurses, or builds whole names at each depth, doesn't end well.
void TestAChannelInfoSorting::deepAndWideTreesAreSorted()
{
    QFETCH(int, column);
    constexpr int kSize = 50000;
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *below = root.get();
    for (int i = 0; i < kSize; ++i) {
        node(below, QStringLiteral("leaf"), "2", "2");
        below = node(below, QStringLiteral("branch"), "1", "1");
    }
    root->sortChildren(column, Qt::DescendingOrder);
    const bool isReversed = column > AChannelInfo::ColumnStopFreq; // else the leaf has the larger text
    QCOMPARE(root->child(0)->label(), isReversed ? QStringLiteral("branch") : QStringLiteral("leaf"));
    QCOMPARE(root->channels(0).size(), 2 * kSize + 1);

    const Tree wide(node(nullptr, QStringLiteral("root")));
    for (int i = 0; i < kSize; ++i)
        node(wide.get(), QString::number(i % 10));
    AChannelInfo *last = wide->child(kSize - 1);
    wide->sortChildren(column, Qt::AscendingOrder);
    QCOMPARE(last->row(), kSize - 1);
    wide->sortChildren(column, Qt::DescendingOrder);
    QCOMPARE(last->row(), 0);
}

QTEST_APPLESS_MAIN(TestAChannelInfoSorting)
#include "tst_achannelinfo_sorting.moc"
