#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtTest/QtTest>

#include <climits>
#include <memory>

using namespace channeltree;
using Definition = AChannelInfo::Definition;

class TestAChannelInfoEquality : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aTreeEqualsItsCopy();
    void comparedFieldsMakeADifference_data();
    void comparedFieldsMakeADifference();
    void selectableAndProfileIdAndParentTakeNoPart();
    void mirrorFrequenciesArePartOfEquality();
    void coloursCompareAsVariants_data();
    void coloursCompareAsVariants();
    void childrenCompareAsSets();
    void aChildMayMatchTwice();
    void childCountsMakeADifference();
    void differencesBelowMakeADifference();
    void definitionsCompareAsSets();
    void definitionsOfOneSizeAreNotExpanded();
    void aGeneratedChannelBelowMakesBothSidesExpand();
    void aChannelOfBothTypesCountsAsGenerated();
    void aDefinitionEqualsItsChannels();
    void aDefinitionDiffersFromOtherChannels_data();
    void aDefinitionDiffersFromOtherChannels();
    void aDefinitionEqualsItsChannelsInAnyOrderAndBelow();
    void aRunEqualsTheSameRunInTwoDefinitions();
    void anEmptyDefinitionEqualsNone();
    void generatedChannelsAreMadeAnewForAComparison();
    void aSideWithoutDefinitionsStaysAsItIs();
    void comparingChangesNothing();
};

void TestAChannelInfoEquality::aTreeEqualsItsCopy()
{
    const Tree root(fullTree());
    const AChannelInfo copy(*root);
    QVERIFY(*root == copy);
    QVERIFY(copy == *root);
    QVERIFY(!(*root != copy));
    QVERIFY(*root == *root);
}

void TestAChannelInfoEquality::comparedFieldsMakeADifference_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("label") << int(AChannelInfo::ColumnName) << QVariant(QStringLiteral("A"));
    QTest::newRow("begin") << int(AChannelInfo::ColumnStartFreq) << QVariant(4);
    QTest::newRow("begin, part of a hertz") << int(AChannelInfo::ColumnStartFreq) << QVariant(QStringLiteral("3.25"));
    QTest::newRow("end") << int(AChannelInfo::ColumnStopFreq) << QVariant(3);
    QTest::newRow("end, part of a hertz") << int(AChannelInfo::ColumnStopFreq) << QVariant(QStringLiteral("4.25"));
    QTest::newRow("type") << int(AChannelInfo::ColumnType) << QVariant(48);
    QTest::newRow("colour") << int(AChannelInfo::ColumnColor) << QVariant(QColor(Qt::red));
    QTest::newRow("comment") << int(AChannelInfo::ColumnComment) << QVariant(QStringLiteral("x"));
    QTest::newRow("mirror") << int(AChannelInfo::ColumnMirrorEntryFreq) << QVariant(1);
}

void TestAChannelInfoEquality::comparedFieldsMakeADifference()
{
    QFETCH(int, column);
    QFETCH(QVariant, value);
    // in the node compared and in a node below it
    const Tree root(fullTree());
    AChannelInfo copy(*root);
    copy.child(1)->setData(static_cast<AChannelInfo::Columns>(column), value);
    QVERIFY(!(*root->child(1) == *copy.child(1)));
    QVERIFY(!(*copy.child(1) == *root->child(1)));
    QVERIFY(!(*root == copy));
    QVERIFY(copy != *root);
}

void TestAChannelInfoEquality::selectableAndProfileIdAndParentTakeNoPart()
{
    const Tree root(fullTree());
    AChannelInfo copy(*root);
    for (AChannelInfo *changed : {&copy, copy.child(1), copy.child(1)->child(0)}) {
        changed->setData(AChannelInfo::ColumnSelectable, !changed->selectable());
        changed->setData(AChannelInfo::ColumnProfileId, QStringLiteral("another"));
    }
    QVERIFY(*root == copy);
    QVERIFY(copy == *root);
    const Tree above(band());
    auto *below = new AChannelInfo(*root);
    above->appendChild(below);
    QVERIFY(*below == *root);
    QVERIFY(*root == *below);
    QVERIFY(*copy.child(0) == AChannelInfo(*copy.child(0)));
}

void TestAChannelInfoEquality::mirrorFrequenciesArePartOfEquality()
{
    const Tree a(bandWith({definition("1", "1", "0", 2)}));
    const Tree b(band());
    const AChannelInfo *before = b.get();
    for (const char *label : {"1", "2"})
        node(b.get(), QString::fromLatin1(label), label, label[0] == '1' ? "2" : "3", AChannelInfo::AutoChannel);
    QVERIFY(*a == *before);
    a->setData(AChannelInfo::ColumnMirrorEntryFreq, QStringLiteral("10.5"));
    QVERIFY(!(*a == *b));
    QVERIFY(!(*b == *a));
    b->setData(AChannelInfo::ColumnMirrorEntryFreq, 10);
    QVERIFY(!(*a == *b));
    b->setData(AChannelInfo::ColumnMirrorEntryFreq, QStringLiteral("10.5"));
    QVERIFY(*a == *b);
    QVERIFY(*b == *a);
}

void TestAChannelInfoEquality::coloursCompareAsVariants_data()
{
    QTest::addColumn<QVariant>("left");
    QTest::addColumn<QVariant>("right");
    QTest::addColumn<bool>("equal");
    const QVariant red(QColor(Qt::red));
    const QVariant text(QStringLiteral("red"));
    const QVariant number(QStringLiteral("#ff0000"));
    QTest::newRow("colours") << red << QVariant(QColor(255, 0, 0)) << true;
    QTest::newRow("texts") << text << QVariant(QStringLiteral("red")) << true;
    QTest::newRow("two texts of a colour") << text << number << false;
    // the right one is converted to the left one's type
    QTest::newRow("colour, name") << red << text << true;
    QTest::newRow("name, colour") << text << red << false;
    QTest::newRow("colour, number") << red << number << true;
    QTest::newRow("number, colour") << number << red << true;
    QTest::newRow("text, invalid colour") << QVariant(QStringLiteral("#000000")) << QVariant(QColor()) << true;
    QTest::newRow("invalid colour, text") << QVariant(QColor()) << QVariant(QStringLiteral("#000000")) << false;
    QTest::newRow("invalid, invalid colour") << QVariant() << QVariant(QColor()) << false;
    QTest::newRow("invalid") << QVariant() << QVariant() << true;
    QTest::newRow("invalid colours") << QVariant(QColor()) << QVariant(QColor()) << true;
}

void TestAChannelInfoEquality::coloursCompareAsVariants()
{
    QFETCH(QVariant, left);
    QFETCH(QVariant, right);
    QFETCH(bool, equal);
    QCOMPARE(left == right, equal);
    const Tree a(band());
    const Tree b(band());
    a->setData(AChannelInfo::ColumnColor, left);
    b->setData(AChannelInfo::ColumnColor, right);
    QCOMPARE(*a == *b, equal);
    QCOMPARE(*b == *a, right == left);

    // and below
    const Tree above(band());
    const Tree other(band());
    above->appendChild(new AChannelInfo(*a));
    other->appendChild(new AChannelInfo(*b));
    QCOMPARE(*above == *other, equal);
    QCOMPARE(*other == *above, right == left);

    // and at another place
    delete above->child(0);
    node(above.get(), QStringLiteral("x"));
    above->appendChild(new AChannelInfo(*a));
    node(other.get(), QStringLiteral("x"));
    QCOMPARE(*above == *other, equal);
    QCOMPARE(*other == *above, right == left);

    // and in definitions, there too
    const Definition run = definition("1", "2", "3", 4);
    const Tree one(bandWith({with(run, "color", left), Definition()}));
    const Tree two(bandWith({with(run, "color", right), Definition()}));
    QCOMPARE(*one == *two, equal);
    QCOMPARE(*two == *one, right == left);
    const Tree three(bandWith({Definition(), with(run, "color", right)}));
    QCOMPARE(*one == *three, equal);
    QCOMPARE(*three == *one, right == left);
}

void TestAChannelInfoEquality::childrenCompareAsSets()
{
    const Tree root(fullTree());
    const Tree other(fullTree());
    auto *again = new AChannelInfo(*other->child(0));
    delete other->child(0);
    other->appendChild(again);
    QCOMPARE(childLabels(other.get()), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QVERIFY(*root == *other);
    QVERIFY(*other == *root);
}

void TestAChannelInfoEquality::aChildMayMatchTwice()
{
    const auto tree = [](const QString &labels) {
        AChannelInfo *made = band();
        for (const QChar label : labels)
            node(made, label);
        return Tree(made);
    };
    const Tree aab = tree(QStringLiteral("aab"));
    const Tree abb = tree(QStringLiteral("abb"));
    QVERIFY(*aab == *abb);
    QVERIFY(*abb == *aab);

    // only the left side's children are looked for
    const Tree aa = tree(QStringLiteral("aa"));
    const Tree ab = tree(QStringLiteral("ab"));
    QVERIFY(*aa == *ab);
    QVERIFY(!(*ab == *aa));
}

void TestAChannelInfoEquality::childCountsMakeADifference()
{
    const Tree one(band());
    node(one.get(), QStringLiteral("a"));
    const Tree two(band());
    node(two.get(), QStringLiteral("a"));
    node(two.get(), QStringLiteral("a"));
    QVERIFY(!(*one == *two));
    QVERIFY(!(*two == *one));
    QVERIFY(!(*one == *Tree(band())));
    QVERIFY(!(*Tree(band()) == *one));
}

void TestAChannelInfoEquality::differencesBelowMakeADifference()
{
    const Tree root(fullTree());
    AChannelInfo copy(*root);
    for (AChannelInfo *tree : {root.get(), &copy})
        tree->child(1)->child(0)->setData(AChannelInfo::ColumnType, AChannelInfo::Channel);
    QVERIFY(*root == copy);
    node(copy.child(1)->child(0), QStringLiteral("more"));
    QVERIFY(!(*root == copy));
    QVERIFY(!(copy == *root));
    AChannelInfo other(*root);
    other.child(1)->child(0)->setChannelDefinitions({definition("4", "2", "1", 1)});
    QVERIFY(!(*root == other));
    QVERIFY(!(other == *root));
}

void TestAChannelInfoEquality::definitionsCompareAsSets()
{
    const Definition a = definition("1", "2", "3", 4);
    const Definition b = definition("5", "2", "3", 4);
    QVERIFY(*Tree(bandWith({a, b})) == *Tree(bandWith({b, a})));
    QVERIFY(!(*Tree(bandWith({a})) == *Tree(bandWith({b}))));
    QVERIFY(*Tree(bandWith({a, a, b})) == *Tree(bandWith({b, b, a})));
    QVERIFY(*Tree(bandWith({a, a})) == *Tree(bandWith({a, b})));
    QVERIFY(!(*Tree(bandWith({a, b})) == *Tree(bandWith({a, a}))));
}

void TestAChannelInfoEquality::definitionsOfOneSizeAreNotExpanded()
{
    // the same channels, in other words
    const Tree a(bandWith({definition("1 MHz", "2", "3", 4)}));
    const Tree b(bandWith({definition("1000 kHz", "2", "3", 4)}));
    QVERIFY(!(*a == *b));
    QVERIFY(!(*b == *a));
    QVERIFY(!(*Tree(bandWith({definition("1", "2", "3", 0)})) == *Tree(bandWith({definition("1", "2", "3", -1)}))));

    // values compare as variants
    const Definition number = definition("1 MHz", "2", "3", 4);
    const Definition text = with(number, "count", QStringLiteral("4"));
    const Definition zero = with(number, "count", QStringLiteral("04"));
    QVERIFY(*Tree(bandWith({number})) == *Tree(bandWith({text})));
    QVERIFY(*Tree(bandWith({text})) == *Tree(bandWith({number})));
    QVERIFY(*Tree(bandWith({number})) == *Tree(bandWith({zero})));
    QVERIFY(!(*Tree(bandWith({zero})) == *Tree(bandWith({number}))));
    // a key more is a difference
    QVERIFY(!(*Tree(bandWith({number})) == *Tree(bandWith({with(number, "color", QColor())}))));
}

void TestAChannelInfoEquality::aGeneratedChannelBelowMakesBothSidesExpand()
{
    // the two of definitionsOfOneSizeAreNotExpanded(), which differ as long as neither is expanded
    const Tree a(bandWith({definition("1 MHz", "2", "3", 4)}));
    const Tree b(bandWith({definition("1000 kHz", "2", "3", 4)}));
    a->processChannelDefinitions(false, false);
    QCOMPARE(a->childCount(), 4);
    QVERIFY(*a == *b);
    QVERIFY(*b == *a);

    // also deep below, where it is removed from both sides
    const Tree c(bandWith({definition("1 MHz", "2", "3", 4)}));
    const Tree d(bandWith({definition("1000 kHz", "2", "3", 4)}));
    node(c.get(), QStringLiteral("group"));
    node(d.get(), QStringLiteral("group"));
    QVERIFY(!(*c == *d));
    node(d->child(0), QStringLiteral("generated"), "0", "0", AChannelInfo::AutoChannel);
    QVERIFY(*c == *d);
    QVERIFY(*d == *c);
}

void TestAChannelInfoEquality::aChannelOfBothTypesCountsAsGenerated()
{
    const Tree a(bandWith({definition("1 MHz", "2", "3", 4)}));
    const Tree b(bandWith({definition("1000 kHz", "2", "3", 4)}));
    node(a.get(), QStringLiteral("both"))->setData(AChannelInfo::ColumnType, 48);
    QVERIFY(*a == *b);
    QVERIFY(*b == *a);
}

void TestAChannelInfoEquality::aDefinitionEqualsItsChannels()
{
    const Tree compact(bandWith({definition("100 MHz", "5 MHz", "1 MHz", 3, 21, 2)}));
    const Tree expanded(band());
    node(expanded.get(), QStringLiteral("21"), "100 MHz", "105 MHz", AChannelInfo::AutoChannel);
    node(expanded.get(), QStringLiteral("23"), "106 MHz", "111 MHz", AChannelInfo::AutoChannel);
    node(expanded.get(), QStringLiteral("25"), "112 MHz", "117 MHz", AChannelInfo::AutoChannel);
    QVERIFY(*compact == *expanded);
    QVERIFY(*expanded == *compact);

    for (AChannelInfo *root : {compact.get(), expanded.get()})
        root->setData(AChannelInfo::ColumnColor, QColor(Qt::red));
    QVERIFY(!(*compact == *expanded));
    for (int row = 0; row < 3; ++row)
        expanded->child(row)->setData(AChannelInfo::ColumnColor, QColor(Qt::red));
    QVERIFY(*compact == *expanded);
    QVERIFY(*expanded == *compact);
}

void TestAChannelInfoEquality::aDefinitionDiffersFromOtherChannels_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("label") << int(AChannelInfo::ColumnName) << QVariant(QStringLiteral("24"));
    QTest::newRow("lower edge") << int(AChannelInfo::ColumnStartFreq) << QVariant(106000001);
    QTest::newRow("upper edge") << int(AChannelInfo::ColumnStopFreq) << QVariant(110999999);
    QTest::newRow("type") << int(AChannelInfo::ColumnType) << QVariant(int(AChannelInfo::Channel));
    QTest::newRow("both types") << int(AChannelInfo::ColumnType) << QVariant(48);
    QTest::newRow("colour") << int(AChannelInfo::ColumnColor) << QVariant(QColor(Qt::red));
    QTest::newRow("comment") << int(AChannelInfo::ColumnComment) << QVariant(QStringLiteral("x"));
    QTest::newRow("mirror") << int(AChannelInfo::ColumnMirrorEntryFreq) << QVariant(1);
}

void TestAChannelInfoEquality::aDefinitionDiffersFromOtherChannels()
{
    QFETCH(int, column);
    QFETCH(QVariant, value);
    const Tree compact(bandWith({definition("100 MHz", "5 MHz", "1 MHz", 3, 21, 2)}));
    AChannelInfo expanded(*compact);
    expanded.processChannelDefinitions(true, false);
    QVERIFY(*compact == expanded);
    expanded.child(1)->setData(static_cast<AChannelInfo::Columns>(column), value);
    QVERIFY(!(*compact == expanded));
    QVERIFY(!(expanded == *compact));
}

void TestAChannelInfoEquality::aDefinitionEqualsItsChannelsInAnyOrderAndBelow()
{
    const Tree compact(band());
    AChannelInfo *group = node(compact.get(), QStringLiteral("group"), "1", "2", AChannelInfo::Provider);
    group->setChannelDefinitions({definition("10", "5", "0", 2)});
    const Tree expanded(band());
    AChannelInfo *other = node(expanded.get(), QStringLiteral("group"), "1", "2", AChannelInfo::Provider);
    node(other, QStringLiteral("2"), "15", "20", AChannelInfo::AutoChannel);
    node(other, QStringLiteral("1"), "10", "15", AChannelInfo::AutoChannel);
    QVERIFY(*compact == *expanded);
    QVERIFY(*expanded == *compact);

    // a whole tree in compact form and in expanded form, definitions at two levels
    compact->setChannelDefinitions({definition("100", "1", "0", 3)});
    AChannelInfo copy(*compact);
    QVERIFY(!(copy == *expanded));
    copy.processChannelDefinitions(true, false);
    QVERIFY(copy == *compact);
    QVERIFY(*compact == copy);
}

void TestAChannelInfoEquality::aRunEqualsTheSameRunInTwoDefinitions()
{
    const Tree one(bandWith({definition("100", "10", "0", 4)}));
    const Tree two(bandWith({definition("120", "10", "0", 2, 3), definition("100", "10", "0", 2)}));
    QVERIFY(*one == *two);
    QVERIFY(*two == *one);
    const Tree three(bandWith({definition("120", "10", "0", 2, 3), definition("100", "10", "0", 3)}));
    QVERIFY(!(*one == *three));
    QVERIFY(!(*three == *one));
}

void TestAChannelInfoEquality::anEmptyDefinitionEqualsNone()
{
    const Tree none(band());
    for (const int count : {0, -1, INT_MIN}) {
        const Tree empty(bandWith({definition("100", "10", "0", count)}));
        QVERIFY(*empty == *none);
        QVERIFY(*none == *empty);
    }
    QVERIFY(*Tree(bandWith({Definition(), Definition()})) == *none);
    QVERIFY(*none == *Tree(bandWith({Definition()})));
}

void TestAChannelInfoEquality::generatedChannelsAreMadeAnewForAComparison()
{
    const Definition run = definition("100", "10", "0", 2);
    const Tree compact(bandWith({run}));
    const Tree stale(bandWith({run}));
    node(stale.get(), QStringLiteral("stale"), "1", "2", AChannelInfo::AutoChannel);
    QVERIFY(*compact == *stale);
    QVERIFY(*stale == *compact);
    // not where the definitions are gone
    stale->setChannelDefinitions({});
    QVERIFY(!(*compact == *stale));
    QVERIFY(!(*stale == *compact));
}

void TestAChannelInfoEquality::aSideWithoutDefinitionsStaysAsItIs()
{
    // expanding the left side also removes the generated channels below it, of which the right side keeps its own
    const Tree compact(bandWith({definition("100", "10", "0", 1)}));
    node(node(compact.get(), QStringLiteral("group")), QStringLiteral("x"), "1", "2", AChannelInfo::AutoChannel);
    AChannelInfo expanded(*compact);
    expanded.processChannelDefinitions(true, false);
    QCOMPARE(childLabels(&expanded), QStringList({QStringLiteral("group"), QStringLiteral("1")}));
    QVERIFY(!(*compact == expanded));
    QVERIFY(!(expanded == *compact));
    expanded.child(0)->clearExpandedAutoChannels();
    QVERIFY(*compact == expanded);
    QVERIFY(expanded == *compact);
}

void TestAChannelInfoEquality::comparingChangesNothing()
{
    const Tree a(fullTree());
    const Tree b(fullTree());
    b->child(1)->processChannelDefinitions(true, false);
    b->setChannelDefinitions({});
    const QStringList before[] = {outline(a.get()), outline(b.get())};
    AChannelInfo *const children[] = {a->child(0), a->child(1), b->child(0), b->child(1)};
    QVERIFY(!(*a == *b));
    QVERIFY(!(*b == *a));
    QVERIFY(*a == AChannelInfo(*a));
    QCOMPARE(outline(a.get()), before[0]);
    QCOMPARE(outline(b.get()), before[1]);
    QCOMPARE(a->child(0), children[0]);
    QCOMPARE(a->child(1), children[1]);
    QCOMPARE(b->child(0), children[2]);
    QCOMPARE(b->child(1), children[3]);
}

QTEST_APPLESS_MAIN(TestAChannelInfoEquality)
#include "tst_achannelinfo_equality.moc"
