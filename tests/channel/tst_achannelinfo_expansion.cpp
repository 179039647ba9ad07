#include "channel/achannelinfo.h"

#include "channeltree.h"

#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <climits>
#include <memory>

using namespace channeltree;
using Definition = AChannelInfo::Definition;

namespace {

AChannelInfo *generated(AChannelInfo *parent, const char *label)
{
    return node(parent, QString::fromLatin1(label), "0", "0", AChannelInfo::AutoChannel);
}

// "begin-end" of each child, in hertz
QStringList childEdges(AChannelInfo *parent)
{
    QStringList texts;
    for (int row = 0; row < parent->childCount(); ++row) {
        const AChannelInfo *child = parent->child(row);
        texts.append(QStringLiteral("%1-%2")
                         .arg(child->beginFrequency().floatValue(AFrequency::Hz), 0, 'g', 15)
                         .arg(child->endFrequency().floatValue(AFrequency::Hz), 0, 'g', 15));
    }
    return texts;
}

} // namespace

class TestAChannelInfoExpansion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRunOfThreeChannels();
    void generatedChannelsHoldNothingElse();
    void aRunReadWithDefaultsIsOneChannelLabelled1();
    void labelsAreNumbers_data();
    void labelsAreNumbers();
    void numbersBeyondAnIntDoNoHarm();
    void edges_data();
    void edges();
    void longRunsStayExact();
    void countsAreConverted_data();
    void countsAreConverted();
    void colours_data();
    void colours();
    void runsFollowTheChildrenInTheOrderOfTheDefinitions();
    void runsAreNotBoundByTheRange();
    void flags_data();
    void flags();
    void flagsReachTheWholeTree_data();
    void flagsReachTheWholeTree();
    void expandingTwiceMakesTheChannelsTwice();
    void expandingAgainAfterClearingMakesThemOnce();
    void clearingWithoutDefinitionsRemovesTheChannels();
    void aGeneratedChannelWithDefinitionsIsExpandedOrRemoved();
    void definedChannelsAreCounted();

    void generatedChildrenAreCleared();
    void clearingRemovesWholeSubtreesOfDirectChildrenOnly();
};

void TestAChannelInfoExpansion::aRunOfThreeChannels()
{
    const Tree root(bandWith({definition("100 MHz", "5 MHz", "1 MHz", 3, 21, 2)}));
    root->processChannelDefinitions(true, false);
    QCOMPARE(childLabels(root.get()), words("21 23 25"));
    QCOMPARE(root->child(0)->beginFrequency(), megahertz(100));
    QCOMPARE(root->child(0)->endFrequency(), megahertz(105));
    QCOMPARE(root->child(1)->beginFrequency(), megahertz(106));
    QCOMPARE(root->child(1)->endFrequency(), megahertz(111));
    QCOMPARE(root->child(2)->beginFrequency(), megahertz(112));
    QCOMPARE(root->child(2)->endFrequency(), megahertz(117));
    QVERIFY(root->channelDefinitions().isEmpty());
}

void TestAChannelInfoExpansion::generatedChannelsHoldNothingElse()
{
    const Tree root(
        new AChannelInfo(nullptr, AChannelInfo::Provider, megahertz(1), megahertz(9), QStringLiteral("band"), true));
    root->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    root->setData(AChannelInfo::ColumnComment, QStringLiteral("comment"));
    root->setData(AChannelInfo::ColumnMirrorEntryFreq, 5);
    root->setChannelDefinitions({definition("1 MHz", "2 MHz", "0", 2)});
    root->processChannelDefinitions(false, false);
    for (int row = 0; row < 2; ++row) {
        AChannelInfo *made = root->child(row);
        QCOMPARE(made->parent(), root.get());
        QCOMPARE(made->row(), row);
        QCOMPARE(made->type(), AChannelInfo::AutoChannel);
        QVERIFY(!made->selectable());
        QCOMPARE(made->comment(), QString());
        QCOMPARE(made->data(AChannelInfo::ColumnProfileId).toString(), QString());
        QCOMPARE(made->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 0LL);
        QVERIFY(made->channelDefinitions().isEmpty());
        QCOMPARE(made->childCount(), 0);
    }
}

void TestAChannelInfoExpansion::aRunReadWithDefaultsIsOneChannelLabelled1()
{
    QDomDocument document;
    QVERIFY(document.setContent(QByteArray("<range><begin>100</begin><channels count=\"1\"/></range>")));
    const Tree root(node(nullptr, QString()));
    QDomElement element = document.documentElement();
    QCOMPARE(AChannelInfo::processXmlElement(&element, root.get(), false, false, false).size(), 1);
    AChannelInfo *range = root->child(0);
    range->processChannelDefinitions(true, false);
    QCOMPARE(childLabels(range), words("1"));
    QCOMPARE(range->child(0)->beginFrequency(), megahertz(100));
    QCOMPARE(range->child(0)->endFrequency(), megahertz(105));
}

void TestAChannelInfoExpansion::labelsAreNumbers_data()
{
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("step");
    QTest::addColumn<QStringList>("labels");
    QTest::newRow("from 1") << QVariant(1) << QVariant(1) << words("1 2 3 4");
    QTest::newRow("step 0") << QVariant(7) << QVariant(0) << words("7 7 7 7");
    QTest::newRow("from below 0") << QVariant(-2) << QVariant(1) << words("-2 -1 0 1");
    QTest::newRow("falling") << QVariant(1) << QVariant(-10) << words("1 -9 -19 -29");
    QTest::newRow("widths differ") << QVariant(8) << QVariant(1) << words("8 9 10 11");
    QTest::newRow("large") << QVariant(1000000) << QVariant(1) << words("1000000 1000001 1000002 1000003");
    QTest::newRow("ends of int") << QVariant(INT_MAX - 3) << QVariant(1)
                                 << words("2147483644 2147483645 2147483646 2147483647");
    QTest::newRow("texts") << QVariant(QStringLiteral("5")) << QVariant(QStringLiteral("2")) << words("5 7 9 11");
    QTest::newRow("no numbers") << QVariant(QStringLiteral("x")) << QVariant(QStringLiteral("1.5")) << words("0 0 0 0");
    QTest::newRow("rounded doubles") << QVariant(1.5) << QVariant(0.6) << words("2 3 4 5");
    QTest::newRow("no first") << QVariant() << QVariant(2) << words("0 2 4 6");
    QTest::newRow("no step") << QVariant(3) << QVariant() << words("3 3 3 3");
}

void TestAChannelInfoExpansion::labelsAreNumbers()
{
    QFETCH(QVariant, first);
    QFETCH(QVariant, step);
    QFETCH(QStringList, labels);
    Definition run = with(with(definition("1", "1", "0", 4), "first", first), "step", step);
    const Tree root(bandWith({run}));
    root->processChannelDefinitions(false, false);
    QCOMPARE(childLabels(root.get()), labels);

    // an absent key is as an invalid value
    for (const char *key : {"first", "step"}) {
        if (!run.value(QLatin1String(key)).isValid())
            run.remove(QLatin1String(key));
    }
    const Tree other(bandWith({run}));
    other->processChannelDefinitions(false, false);
    QCOMPARE(childLabels(other.get()), labels);
}

void TestAChannelInfoExpansion::numbersBeyondAnIntDoNoHarm()
{
    const Tree root(
        bandWith({definition("1", "1", "0", 3, INT_MAX, INT_MAX), definition("1", "1", "0", 4, INT_MIN, INT_MIN)}));
    root->processChannelDefinitions(true, false);
    QCOMPARE(root->childCount(), 7);
    QCOMPARE(root->child(0)->label(), QStringLiteral("2147483647"));
    QCOMPARE(root->child(3)->label(), QStringLiteral("-2147483648"));
}

void TestAChannelInfoExpansion::edges_data()
{
    QTest::addColumn<QVariant>("start");
    QTest::addColumn<QVariant>("width");
    QTest::addColumn<QVariant>("space");
    QTest::addColumn<QStringList>("edges");
    const auto row = [](const char *name, const QVariant &start, const QVariant &width, const QVariant &space,
                        const char *edges) { QTest::newRow(name) << start << width << space << words(edges); };
    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    row("texts", text("1 kHz"), text("100"), text("10 Hz"), "1000-1100 1110-1210 1220-1320");
    row("bytes", QByteArray("1 kHz"), QByteArray("100"), QByteArray("10"), "1000-1100 1110-1210 1220-1320");
    row("no space", text("100"), text("10"), text("0"), "100-110 110-120 120-130");
    row("no width", text("100"), text("0"), text("10"), "100-100 110-110 120-120");
    row("neither", text("100"), text("0"), text("0"), "100-100 100-100 100-100");
    row("absent", QVariant(), QVariant(), QVariant(), "0-0 0-0 0-0");
    row("unreadable", text("x"), text(""), text("5 THz"), "0-0 0-0 0-0");
    row("overlapping", text("100"), text("10"), text("-5"), "100-110 105-115 110-120");
    row("falling", text("0"), text("10"), text("-20"), "0-10 -10-0 -20--10");
    row("parts of a hertz", text("0.25"), text("0.5"), text("0.25"), "0.25-0.75 1-1.5 1.75-2.25");
    // a number is its text, so hertz: megahertz are for the frequency columns alone
    row("doubles", 100.0, 10.0, 0.5, "100-110 110.5-120.5 121-131");
    row("double with exponent", 1e6, 10.0, 0.0, "1000000-1000010 1000010-1000020 1000020-1000030");
    row("integers", 100, 10U, 5LL, "100-110 115-125 130-140");
}

void TestAChannelInfoExpansion::edges()
{
    QFETCH(QVariant, start);
    QFETCH(QVariant, width);
    QFETCH(QVariant, space);
    QFETCH(QStringList, edges);
    const Definition run{{QStringLiteral("start"), start},
                         {QStringLiteral("width"), width},
                         {QStringLiteral("space"), space},
                         {QStringLiteral("count"), 3}};
    const Tree root(bandWith({run}));
    root->processChannelDefinitions(false, false);
    QCOMPARE(childEdges(root.get()), edges);
}

void TestAChannelInfoExpansion::longRunsStayExact()
{
    // the lower edge is a product and no running sum
    const AFrequency start("100.5 MHz");
    const AFrequency width("8333.333333");
    const AFrequency space("0.1");
    const Tree root(bandWith({definition("100.5 MHz", "8333.333333", "0.1", 5000)}));
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->childCount(), 5000);
    for (int n = 0; n < 5000; ++n) {
        const AFrequency lower = start + (width + space) * double(n);
        QCOMPARE(root->child(n)->beginFrequency(), lower);
        QCOMPARE(root->child(n)->endFrequency(), lower + width);
        QCOMPARE(root->child(n)->label(), QString::number(n + 1));
    }
}

void TestAChannelInfoExpansion::countsAreConverted_data()
{
    QTest::addColumn<QVariant>("count");
    QTest::addColumn<int>("channels");
    QTest::newRow("3") << QVariant(3) << 3;
    QTest::newRow("1") << QVariant(1) << 1;
    QTest::newRow("0") << QVariant(0) << 0;
    QTest::newRow("negative") << QVariant(-1) << 0;
    QTest::newRow("smallest") << QVariant(INT_MIN) << 0;
    QTest::newRow("text") << QVariant(QStringLiteral("3")) << 3;
    QTest::newRow("no number") << QVariant(QStringLiteral("three")) << 0;
    QTest::newRow("hexadecimal") << QVariant(QStringLiteral("0x3")) << 0;
    QTest::newRow("double") << QVariant(2.6) << 3;
    QTest::newRow("true") << QVariant(true) << 1;
    QTest::newRow("list") << QVariant(QVariantList{1}) << 0;
    QTest::newRow("absent") << QVariant() << 0;
}

void TestAChannelInfoExpansion::countsAreConverted()
{
    QFETCH(QVariant, count);
    QFETCH(int, channels);
    Definition run = definition("1", "1", "0", 0);
    run.remove(QStringLiteral("count"));
    if (count.isValid())
        run.insert(QStringLiteral("count"), count);
    const Tree root(bandWith({run}));
    QCOMPARE(root->definedChannelCount(), qint64(channels));
    root->processChannelDefinitions(false, false);
    QCOMPARE(root->childCount(), channels);
    QCOMPARE(root->channelDefinitions().size(), 1);
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->childCount(), channels);
    QVERIFY(root->channelDefinitions().isEmpty());
}

void TestAChannelInfoExpansion::colours_data()
{
    QTest::addColumn<QVariant>("ofNode");
    QTest::addColumn<QVariant>("ofDefinition");
    QTest::addColumn<QVariant>("ofChannels");
    const QVariant red(QColor(Qt::red));
    const QVariant blue(QColor(0, 0, 255, 7));
    const QVariant text(QStringLiteral("red"));
    QTest::newRow("colour") << red << blue << blue;
    QTest::newRow("text") << blue << text << red;
    QTest::newRow("bytes") << blue << QVariant(QByteArray("red")) << red;
    QTest::newRow("colour over none") << QVariant() << blue << blue;
    QTest::newRow("invalid colour, text of the node") << text << QVariant(QColor()) << text;
    QTest::newRow("absent, text of the node") << text << QVariant() << text;
    QTest::newRow("no colour, colour of the node") << red << QVariant(QStringLiteral("no colour")) << red;
    QTest::newRow("number, colour of the node") << red << QVariant(5) << red;
    QTest::newRow("list, bytes of the node")
        << QVariant(QByteArray("red")) << QVariant(QVariantList{blue}) << QVariant(QByteArray("red"));
    QTest::newRow("nothing of the node") << QVariant() << QVariant(QString()) << QVariant();
    QTest::newRow("invalid colour of the node") << QVariant(QColor()) << QVariant(QColor()) << QVariant(QColor());
    QTest::newRow("text of the node that is no colour")
        << QVariant(QStringLiteral("no colour")) << QVariant() << QVariant(QStringLiteral("no colour"));
}

void TestAChannelInfoExpansion::colours()
{
    QFETCH(QVariant, ofNode);
    QFETCH(QVariant, ofDefinition);
    QFETCH(QVariant, ofChannels);
    Definition run = definition("1", "1", "0", 2);
    if (ofDefinition.isValid())
        run.insert(QStringLiteral("color"), ofDefinition);
    const Tree root(bandWith({run, definition("1", "1", "0", 1)}));
    root->setData(AChannelInfo::ColumnColor, ofNode);
    root->processChannelDefinitions(true, false);
    QCOMPARE(root->childCount(), 3);
    QCOMPARE(inspect(root->child(0)->data(AChannelInfo::ColumnColor)), inspect(ofChannels));
    QCOMPARE(inspect(root->child(1)->data(AChannelInfo::ColumnColor)), inspect(ofChannels));
    // a definition's colour is its own alone
    QCOMPARE(inspect(root->child(2)->data(AChannelInfo::ColumnColor)), inspect(ofNode));
    QCOMPARE(inspect(root->data(AChannelInfo::ColumnColor)), inspect(ofNode));
}

void TestAChannelInfoExpansion::runsFollowTheChildrenInTheOrderOfTheDefinitions()
{
    const Tree root(bandWith({definition("500", "1", "0", 2, 50), definition("100", "1", "0", 2, 10), Definition(),
                              definition("300", "1", "0", 1, 30)}));
    node(root.get(), QStringLiteral("z"), "900", "901");
    node(root.get(), QStringLiteral("a"), "1", "2");
    root->processChannelDefinitions(true, true);
    QCOMPARE(childLabels(root.get()), words("z a 50 51 10 11 30"));
}

void TestAChannelInfoExpansion::runsAreNotBoundByTheRange()
{
    const Tree root(bandWith({definition("50 MHz", "100 MHz", "0", 4), definition("50 MHz", "1 MHz", "0", 1)}));
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->childCount(), 5);
    QCOMPARE(root->child(3)->endFrequency(), megahertz(450));
    QCOMPARE(root->beginFrequency(), megahertz(100));
    QCOMPARE(root->endFrequency(), megahertz(200));
}

void TestAChannelInfoExpansion::flags_data()
{
    QTest::addColumn<bool>("clearDefinitions");
    QTest::addColumn<bool>("clearExpanded");
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<int>("definitions");
    QTest::newRow("keep both") << false << false << words("old a both b 1 2") << 2;
    QTest::newRow("clear definitions") << true << false << words("old a both b 1 2") << 0;
    QTest::newRow("clear expanded") << false << true << words("a b 1 2") << 2;
    QTest::newRow("clear both") << true << true << words("a b 1 2") << 0;
}

void TestAChannelInfoExpansion::flags()
{
    QFETCH(bool, clearDefinitions);
    QFETCH(bool, clearExpanded);
    const Tree root(bandWith({definition("100", "1", "0", 2), definition("100", "1", "0", 0)}));
    generated(root.get(), "old");
    node(root.get(), QStringLiteral("a"), "0", "0", AChannelInfo::Channel);
    generated(root.get(), "both")->setData(AChannelInfo::ColumnType, 48);
    node(root.get(), QStringLiteral("b"));
    root->processChannelDefinitions(clearDefinitions, clearExpanded);
    QTEST(childLabels(root.get()), "labels");
    QTEST(root->channelDefinitions().size(), "definitions");
}

void TestAChannelInfoExpansion::flagsReachTheWholeTree_data()
{
    QTest::addColumn<bool>("clearDefinitions");
    QTest::addColumn<bool>("clearExpanded");
    for (const bool clearDefinitions : {false, true}) {
        for (const bool clearExpanded : {false, true})
            QTest::addRow("%d %d", clearDefinitions, clearExpanded) << clearDefinitions << clearExpanded;
    }
}

void TestAChannelInfoExpansion::flagsReachTheWholeTree()
{
    QFETCH(bool, clearDefinitions);
    QFETCH(bool, clearExpanded);
    const Tree root(bandWith({definition("100", "1", "0", 1, 100)}));
    AChannelInfo *plain = node(root.get(), QStringLiteral("plain"));
    AChannelInfo *deep = node(plain, QStringLiteral("deep"));
    for (AChannelInfo *each : {root.get(), plain, deep})
        generated(each, "old");
    deep->setChannelDefinitions({definition("100", "1", "0", 2, 200)});
    root->processChannelDefinitions(clearDefinitions, clearExpanded);
    const QStringList old = clearExpanded ? QStringList() : words("old");
    QCOMPARE(childLabels(root.get()), words("plain") + old + words("100"));
    QCOMPARE(childLabels(plain), words("deep") + old);
    QCOMPARE(childLabels(deep), old + words("200 201"));
    QCOMPARE(root->channelDefinitions().isEmpty(), clearDefinitions);
    QCOMPARE(deep->channelDefinitions().isEmpty(), clearDefinitions);
}

void TestAChannelInfoExpansion::expandingTwiceMakesTheChannelsTwice()
{
    const Tree root(bandWith({definition("100", "1", "0", 2)}));
    root->processChannelDefinitions(false, false);
    root->processChannelDefinitions(false, false);
    QCOMPARE(childLabels(root.get()), words("1 2 1 2"));
}

void TestAChannelInfoExpansion::expandingAgainAfterClearingMakesThemOnce()
{
    const Tree root(bandWith({definition("100", "1", "0", 2)}));
    root->processChannelDefinitions(false, false);
    node(root.get(), QStringLiteral("ordinary"));
    root->processChannelDefinitions(false, true);
    QCOMPARE(childLabels(root.get()), words("ordinary 1 2"));
    root->processChannelDefinitions(true, true);
    QCOMPARE(childLabels(root.get()), words("ordinary 1 2"));
}

void TestAChannelInfoExpansion::clearingWithoutDefinitionsRemovesTheChannels()
{
    const Tree root(bandWith({definition("100", "1", "0", 2)}));
    root->processChannelDefinitions(true, false);
    QCOMPARE(root->childCount(), 2);
    root->processChannelDefinitions(true, true);
    QCOMPARE(root->childCount(), 0);
}

void TestAChannelInfoExpansion::aGeneratedChannelWithDefinitionsIsExpandedOrRemoved()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    AChannelInfo *made = generated(root.get(), "made");
    made->setChannelDefinitions({definition("100", "1", "0", 2)});
    AChannelInfo copy(*root);
    root->processChannelDefinitions(false, false);
    QCOMPARE(childLabels(root.get()), words("made"));
    QCOMPARE(childLabels(made), words("1 2"));
    copy.processChannelDefinitions(false, true);
    QCOMPARE(copy.childCount(), 0);
}

void TestAChannelInfoExpansion::definedChannelsAreCounted()
{
    const Tree root(bandWith({definition("100", "1", "0", 3), definition("100", "1", "0", -5), Definition()}));
    AChannelInfo *child = node(root.get(), QStringLiteral("child"));
    QCOMPARE(root->definedChannelCount(), qint64(3));
    child->setChannelDefinitions({definition("100", "1", "0", 4)});
    node(child, QStringLiteral("deep"))->setChannelDefinitions({definition("100", "1", "0", 5)});
    QCOMPARE(root->definedChannelCount(), qint64(12));
    QCOMPARE(child->definedChannelCount(), qint64(9));
    const QStringList before = outline(root.get());
    const qint64 count = root->definedChannelCount();
    QCOMPARE(outline(root.get()), before);
    const int nodes = root->channels(0).size();
    AChannelInfo copy(*root);
    copy.processChannelDefinitions(true, false);
    QCOMPARE(qint64(copy.channels(0).size() - nodes), count);

    // beyond what an int holds
    child->setChannelDefinitions({definition("1", "1", "0", INT_MAX), definition("1", "1", "0", INT_MAX)});
    QCOMPARE(root->definedChannelCount(), 8 + 2 * qint64(INT_MAX));
}

void TestAChannelInfoExpansion::generatedChildrenAreCleared()
{
    const Tree root(node(nullptr, QStringLiteral("root")));
    generated(root.get(), "x");
    AChannelInfo *ordinary = node(root.get(), QStringLiteral("ordinary"), "0", "0", AChannelInfo::Channel);
    generated(root.get(), "y");
    QCOMPARE(root->clearExpandedAutoChannels(), 2);
    QCOMPARE(root->childCount(), 1);
    QCOMPARE(root->child(0), ordinary);
    QCOMPARE(ordinary->row(), 0);
    QCOMPARE(root->clearExpandedAutoChannels(), 0);

    node(root.get(), QStringLiteral("other"));
    generated(root.get(), "both")->setData(AChannelInfo::ColumnType, 48);
    node(root.get(), QStringLiteral("last"), "0", "0", AChannelInfo::Direction);
    QCOMPARE(root->clearExpandedAutoChannels(), 1);
    QCOMPARE(childLabels(root.get()), words("ordinary other last"));
    QCOMPARE(root->child(2)->row(), 2);
}

void TestAChannelInfoExpansion::clearingRemovesWholeSubtreesOfDirectChildrenOnly()
{
    const Tree root(node(nullptr, QStringLiteral("root"), "0", "0", AChannelInfo::AutoChannel));
    root->setChannelDefinitions({definition("100", "1", "0", 2)});
    AChannelInfo *made = generated(root.get(), "made");
    node(made, QStringLiteral("ordinary"));
    generated(made, "below");
    AChannelInfo *group = node(root.get(), QStringLiteral("group"));
    generated(group, "stays");
    QCOMPARE(root->clearExpandedAutoChannels(), 1);
    QCOMPARE(listing(root->channels(0)), words("root:0 group:1 stays:2"));
    QCOMPARE(root->channelDefinitions().size(), 1);
    QCOMPARE(group->clearExpandedAutoChannels(), 1);
    QCOMPARE(group->childCount(), 0);
}

QTEST_APPLESS_MAIN(TestAChannelInfoExpansion)
#include "tst_achannelinfo_expansion.moc"
