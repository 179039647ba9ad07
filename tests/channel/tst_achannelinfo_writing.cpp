#include "channel/achannelinfo.h"

#include "channel/channeltree.h"
#include "channel/channelxml.h"

#include <QtTest/QtTest>

#include <memory>

using channeltree::node;
using channelxml::canonical;
using channelxml::NodePtr;
using Definition = AChannelInfo::Definition;

namespace {

// "Range [label=a selectable=1] { begin=100.000000 MHz, Range }": attributes by name, since they have no order.
QString describe(const QDomElement &element)
{
    QString text = element.tagName();
    QStringList attributes;
    for (int i = 0; i < element.attributes().size(); ++i) {
        const QDomNode attribute = element.attributes().item(i);
        attributes.append(attribute.nodeName() + QLatin1Char('=') + attribute.nodeValue());
    }
    attributes.sort();
    if (!attributes.isEmpty())
        text += QStringLiteral(" [") + attributes.join(QLatin1Char(' ')) + QLatin1Char(']');
    QStringList children;
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.isText())
            text += QLatin1Char('=') + child.nodeValue();
        else
            children.append(describe(child.toElement()));
    }
    if (!children.isEmpty())
        text += QStringLiteral(" { ") + children.join(QStringLiteral(", ")) + QStringLiteral(" }");
    return text;
}

QString written(const AChannelInfo &tree)
{
    QDomDocument document;
    return describe(tree.toDomNode(&document));
}

AChannelInfo::RangeType typeOf(int number)
{
    return static_cast<AChannelInfo::RangeType>(number);
}

// What a reader makes of "channels" without attributes, in a range that begins at 100 MHz.
Definition plainDefinition()
{
    return {{QStringLiteral("start"), QStringLiteral("100.000000 MHz")},
            {QStringLiteral("width"), QStringLiteral("5.000000 MHz")},
            {QStringLiteral("space"), QStringLiteral("0.000000 Hz")},
            {QStringLiteral("first"), 1},
            {QStringLiteral("count"), 1},
            {QStringLiteral("step"), 1},
            {QStringLiteral("color"), QVariant::fromValue(QColor())}};
}

// Writes the tree and reads that below a root of its own, as a profile is read.
channelxml::Reading reread(const AChannelInfo &tree, const channelxml::Flags &flags = {})
{
    QDomDocument document;
    QDomElement element = tree.toDomNode(&document);
    channelxml::Reading result;
    result.root = channelxml::makeRoot();
    result.nodes = AChannelInfo::processXmlElement(&element, result.root.get(), flags.selectable, flags.expandMirrors,
                                                   flags.expandAutoChannels);
    return result;
}

} // namespace

class TestAChannelInfoWriting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRootLikeNodeIsAnElementWithoutAnything();
    void theElementStandsNowhereYet();
    void attributesAreWrittenIfTheySaySomething();
    void typesAreWrittenByTheirNumber_data();
    void typesAreWrittenByTheirNumber();
    void edgesAboveZeroAreWritten_data();
    void edgesAboveZeroAreWritten();
    void validColorsAreWrittenAsTheyWereRead_data();
    void validColorsAreWrittenAsTheyWereRead();
    void aMirrorIsWrittenAsADistance_data();
    void aMirrorIsWrittenAsADistance();
    void childElementsHaveAnOrder();
    void rangesAreNestedInTheOrderOfTheChildren();
    void textsAreWrittenAsTheyAre();
    void definitionsAreWrittenWithoutWhatAReaderSupplies_data();
    void definitionsAreWrittenWithoutWhatAReaderSupplies();
    void colorsOfDefinitionsAreWrittenIfTheyDiffer_data();
    void colorsOfDefinitionsAreWrittenIfTheyDiffer();
    void writingChangesNothing();
    void deepAndWideTreesAreWritten();
    void aNullDocumentGivesANullElement();

    void generatedChannelsReadBackAsPlainRanges();
    void generatedChannelsComeTwiceIfTheirDefinitionIsStillThere();
    void theColorOfADefinitionIsNotReadBack();
    void theProfileIdIsNotWritten();
    void aMirrorComesBackIfMirrorsAreNotExpanded();
    void aMirroredCopyIsWrittenAsAPlainRange();
    void zeroEdgesReadBackAsZero();
};

void TestAChannelInfoWriting::aRootLikeNodeIsAnElementWithoutAnything()
{
    const NodePtr root = channelxml::makeRoot();
    QDomDocument document;
    const QDomElement element = root->toDomNode(&document);
    QCOMPARE(element.tagName(), QStringLiteral("Range"));
    QCOMPARE(element.attributes().size(), 0);
    QVERIFY(!element.hasChildNodes());
}

void TestAChannelInfoWriting::theElementStandsNowhereYet()
{
    const NodePtr root = channelxml::makeRoot();
    node(root.get(), QStringLiteral("a"));
    QDomDocument document;
    const QDomElement element = root->toDomNode(&document);
    QVERIFY(element.parentNode().isNull());
    QVERIFY(!document.hasChildNodes());
    QVERIFY(element.ownerDocument() == document);
}

void TestAChannelInfoWriting::attributesAreWrittenIfTheySaySomething()
{
    const NodePtr range(node(nullptr, QStringLiteral("UKW"), "0", "0", AChannelInfo::Provider));
    QCOMPARE(written(*range), QStringLiteral("Range [label=UKW type=provider]"));
    range->setData(AChannelInfo::ColumnSelectable, true);
    QCOMPARE(written(*range), QStringLiteral("Range [label=UKW selectable=1 type=provider]"));
    range->setData(AChannelInfo::ColumnName, QString());
    QCOMPARE(written(*range), QStringLiteral("Range [selectable=1 type=provider]"));
}

void TestAChannelInfoWriting::typesAreWrittenByTheirNumber_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("attribute");
    QTest::newRow("generic") << 2 << QString();
    QTest::newRow("direction") << 4 << "direction";
    QTest::newRow("provider") << 8 << "provider";
    QTest::newRow("channel") << 16 << "channel";
    QTest::newRow("generated") << 32 << "autochannel";
    QTest::newRow("generated channel") << 48 << "channel";
    QTest::newRow("generated provider channel") << 56 << "channel";
    for (const int none : {0, 1, 3, 6, 12, 24, 40, 63})
        QTest::addRow("%d", none) << none << QString();
}

void TestAChannelInfoWriting::typesAreWrittenByTheirNumber()
{
    QFETCH(int, type);
    QFETCH(QString, attribute);
    const AChannelInfo range(nullptr, typeOf(type), {}, {}, QString(), false);
    QCOMPARE(written(range),
             attribute.isEmpty() ? QStringLiteral("Range") : QStringLiteral("Range [type=%1]").arg(attribute));
}

void TestAChannelInfoWriting::edgesAboveZeroAreWritten_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<QString>("children");
    QTest::newRow("both") << QByteArray("87.5 MHz") << QByteArray("108 MHz")
                          << "{ begin=87.500000 MHz, end=108.000000 MHz }";
    QTest::newRow("begin alone") << QByteArray("100 Hz") << QByteArray("0") << "{ begin=100.000000 Hz }";
    QTest::newRow("end alone") << QByteArray("0") << QByteArray("30 GHz") << "{ end=30000.000000 MHz }";
    QTest::newRow("part of a hertz") << QByteArray("0.25") << QByteArray("1000.5")
                                     << "{ begin=0.250000 Hz, end=1.000500 kHz }";
    QTest::newRow("below zero") << QByteArray("-2 MHz") << QByteArray("-1") << QString();
}

void TestAChannelInfoWriting::edgesAboveZeroAreWritten()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, end);
    QFETCH(QString, children);
    const NodePtr range(node(nullptr, QString(), begin.constData(), end.constData()));
    QCOMPARE(written(*range), QStringLiteral("Range %1").arg(children).trimmed());
}

void TestAChannelInfoWriting::validColorsAreWrittenAsTheyWereRead_data()
{
    QTest::addColumn<QVariant>("color");
    QTest::addColumn<QString>("expected");
    QTest::newRow("name") << QVariant(QStringLiteral("red")) << "Range { color=red }";
    QTest::newRow("mixed case") << QVariant(QStringLiteral("#3366CC")) << "Range { color=#3366CC }";
    QTest::newRow("colour") << QVariant(QColor(0x33, 0x66, 0xcc)) << "Range { color=#3366cc }";
    QTest::newRow("text that is no colour") << QVariant(QStringLiteral("reddish")) << "Range";
    QTest::newRow("empty text") << QVariant(QString()) << "Range";
    QTest::newRow("invalid colour") << QVariant(QColor()) << "Range";
    QTest::newRow("nothing") << QVariant() << "Range";
    QTest::newRow("number") << QVariant(5) << "Range";
}

void TestAChannelInfoWriting::validColorsAreWrittenAsTheyWereRead()
{
    QFETCH(QVariant, color);
    const NodePtr range(node(nullptr, QString()));
    range->setData(AChannelInfo::ColumnColor, color);
    QTEST(written(*range), "expected");
}

void TestAChannelInfoWriting::aMirrorIsWrittenAsADistance_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("mirror");
    QTest::addColumn<QString>("distance");
    QTest::newRow("above") << QByteArray("100 MHz") << QByteArray("150 MHz") << "50.000000 MHz";
    QTest::newRow("below") << QByteArray("100 MHz") << QByteArray("59 MHz") << "-41.000000 MHz";
    QTest::newRow("below zero") << QByteArray("100 MHz") << QByteArray("-50 MHz") << "-150.000000 MHz";
    QTest::newRow("below a range from zero") << QByteArray("0") << QByteArray("-1") << "-1.000000 Hz";
    QTest::newRow("in place") << QByteArray("100 MHz") << QByteArray("100 MHz") << "0.000000 Hz";
    QTest::newRow("of a range from zero") << QByteArray("0") << QByteArray("7 kHz") << "7.000000 kHz";
    QTest::newRow("none") << QByteArray("100 MHz") << QByteArray("0") << QString();
}

void TestAChannelInfoWriting::aMirrorIsWrittenAsADistance()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, mirror);
    QFETCH(QString, distance);
    const NodePtr range(node(nullptr, QString(), begin.constData()));
    range->setData(AChannelInfo::ColumnMirrorEntryFreq, mirror);
    QDomDocument document;
    const QDomElement element = range->toDomNode(&document).firstChildElement(QStringLiteral("mirror"));
    QCOMPARE(element.isNull(), distance.isEmpty());
    QCOMPARE(element.text(), distance);
    QCOMPARE(element.attributes().size(), 0);
}

void TestAChannelInfoWriting::childElementsHaveAnOrder()
{
    const NodePtr range(node(nullptr, QString(), "100 MHz", "110 MHz"));
    range->setChannelDefinitions({plainDefinition()});
    range->setData(AChannelInfo::ColumnMirrorEntryFreq, QByteArray("150 MHz"));
    range->setData(AChannelInfo::ColumnComment, QStringLiteral("c"));
    range->setData(AChannelInfo::ColumnColor, QStringLiteral("blue"));
    node(range.get(), QStringLiteral("a"));
    QDomDocument document;
    const QDomElement element = range->toDomNode(&document);
    QStringList tags;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        tags.append(child.tagName());
    QCOMPARE(tags, QStringList({"begin", "end", "color", "comment", "mirror", "Range", "channels"}));
}

void TestAChannelInfoWriting::rangesAreNestedInTheOrderOfTheChildren()
{
    const NodePtr root(node(nullptr, QStringLiteral("root")));
    root->setChannelDefinitions({plainDefinition(), plainDefinition()});
    AChannelInfo *b = node(root.get(), QStringLiteral("b"));
    node(b, QStringLiteral("b2"))->setChannelDefinitions({plainDefinition()});
    node(b, QStringLiteral("b1"), "0", "0", AChannelInfo::AutoChannel);
    node(root.get(), QStringLiteral("a"));
    const QString channels = QStringLiteral("channels [count=1 start=100.000000 MHz width=5.000000 MHz]");
    QCOMPARE(written(*root), QStringLiteral("Range [label=root] { Range [label=b] { Range [label=b2] { %1 }, "
                                            "Range [label=b1 type=autochannel] }, Range [label=a], %1, %1 }")
                                 .arg(channels));
}

void TestAChannelInfoWriting::textsAreWrittenAsTheyAre()
{
    const QString text = QStringLiteral(" <&\"'> \t\nä€ ") + QString::fromUcs4(U"\U0001F4E1", 1);
    const NodePtr range(node(nullptr, text));
    range->setData(AChannelInfo::ColumnComment, text);
    QDomDocument document;
    const QDomElement element = range->toDomNode(&document);
    QCOMPARE(element.attribute(QStringLiteral("label")), text);
    QCOMPARE(element.firstChildElement(QStringLiteral("comment")).text(), text);
}

void TestAChannelInfoWriting::definitionsAreWrittenWithoutWhatAReaderSupplies_data()
{
    QTest::addColumn<Definition>("definition");
    QTest::addColumn<QString>("attributes");
    const QString always = QStringLiteral("width=5.000000 MHz");
    const auto with = [](const char *key, const QVariant &value) {
        return channeltree::with(plainDefinition(), key, value);
    };
    const auto text = [](const char *value) { return QVariant(QString::fromLatin1(value)); };
    QTest::newRow("all defaults") << plainDefinition() << "count=1 " + always;
    QTest::newRow("start") << with("start", text("101.000000 MHz")) << "count=1 start=101.000000 MHz " + always;
    QTest::newRow("start in another form") << with("start", text("100 MHz")) << "count=1 start=100 MHz " + always;
    QTest::newRow("width") << with("width", text("12.5 kHz")) << "count=1 width=12.5 kHz";
    QTest::newRow("count") << with("count", 0) << "count=0 " + always;
    QTest::newRow("count text") << with("count", text("many")) << "count=many " + always;
    QTest::newRow("first") << with("first", -2) << "count=1 first=-2 " + always;
    QTest::newRow("first as text") << with("first", text("1")) << "count=1 " + always;
    QTest::newRow("first in another form") << with("first", text("01")) << "count=1 first=01 " + always;
    QTest::newRow("step") << with("step", 0) << "count=1 step=0 " + always;
    QTest::newRow("space") << with("space", text("25.000000 kHz")) << "count=1 space=25.000000 kHz " + always;
    QTest::newRow("space in another form") << with("space", text("0")) << "count=1 space=0 " + always;
    QTest::newRow("nothing at all") << Definition() << "count= first= space= start= step= width=";
    QTest::newRow("keys of others") << with("name", text("x")) << "count=1 " + always;
}

void TestAChannelInfoWriting::definitionsAreWrittenWithoutWhatAReaderSupplies()
{
    QFETCH(Definition, definition);
    QFETCH(QString, attributes);
    const NodePtr range(node(nullptr, QString(), "100 MHz"));
    range->setChannelDefinitions({definition});
    QCOMPARE(written(*range), QStringLiteral("Range { begin=100.000000 MHz, channels [%1] }").arg(attributes));
}

void TestAChannelInfoWriting::colorsOfDefinitionsAreWrittenIfTheyDiffer_data()
{
    QTest::addColumn<QVariant>("ofRange");
    QTest::addColumn<QVariant>("ofDefinition");
    QTest::addColumn<QString>("attribute");
    const QVariant none(QColor{});
    const QVariant red(QColor(Qt::red));
    const QVariant redText(QStringLiteral("red"));
    const QVariant blueText(QStringLiteral("blue"));
    QTest::newRow("none") << none << none << QString();
    QTest::newRow("the same colour") << red << red << QString();
    QTest::newRow("the same text") << redText << redText << QString();
    QTest::newRow("the range's text as a colour") << redText << red << QString();
    QTest::newRow("the range's colour as a text") << red << redText << QString();
    QTest::newRow("another text") << redText << blueText << "#0000ff";
    QTest::newRow("another colour") << blueText << red << "#ff0000";
    QTest::newRow("the definition alone") << none << redText << "#ff0000";
    QTest::newRow("the range alone") << redText << none << QString();
    QTest::newRow("no colour") << none << QVariant(QStringLiteral("reddish")) << QString();
    QTest::newRow("transparent") << none << QVariant(QColor(1, 2, 3, 4)) << "#010203";
}

void TestAChannelInfoWriting::colorsOfDefinitionsAreWrittenIfTheyDiffer()
{
    QFETCH(QVariant, ofRange);
    QFETCH(QVariant, ofDefinition);
    const NodePtr range(node(nullptr, QString(), "100 MHz"));
    range->setData(AChannelInfo::ColumnColor, ofRange);
    range->setChannelDefinitions({channeltree::with(plainDefinition(), "color", ofDefinition)});
    QDomDocument document;
    const QDomElement channels = range->toDomNode(&document).firstChildElement(QStringLiteral("channels"));
    QTEST(channels.attribute(QStringLiteral("color")), "attribute");
    QCOMPARE(channels.hasAttribute(QStringLiteral("color")), !channels.attribute(QStringLiteral("color")).isEmpty());
}

void TestAChannelInfoWriting::writingChangesNothing()
{
    const NodePtr tree(channeltree::fullTree());
    const QStringList before = channeltree::outline(tree.get());
    const QString once = written(*tree);
    QCOMPARE(written(*tree), once);
    QCOMPARE(channeltree::outline(tree.get()), before);
}

void TestAChannelInfoWriting::deepAndWideTreesAreWritten()
{
    constexpr int kDepth = 5000; // as much as Qt's own document takes to delete on a small stack
    const NodePtr deep = channelxml::makeRoot();
    AChannelInfo *innermost = deep.get();
    for (int i = 0; i < kDepth; ++i)
        innermost = node(innermost, QStringLiteral("x"));
    QDomDocument document;
    QDomElement element = deep->toDomNode(&document);
    int depth = 0;
    while (!element.firstChildElement().isNull()) {
        element = element.firstChildElement();
        ++depth;
    }
    QCOMPARE(depth, kDepth);

    constexpr int kWidth = 20000;
    const NodePtr wide = channelxml::makeRoot();
    for (int i = 0; i < kWidth; ++i)
        node(wide.get(), QString::number(i));
    QDomDocument wideDocument;
    QCOMPARE(wide->toDomNode(&wideDocument).childNodes().size(), kWidth);
}

void TestAChannelInfoWriting::aNullDocumentGivesANullElement()
{
    const NodePtr root = channelxml::makeRoot();
    QTest::ignoreMessage(QtWarningMsg, "toDomNode: the document is null");
    QVERIFY(root->toDomNode(nullptr).isNull());
}

void TestAChannelInfoWriting::generatedChannelsReadBackAsPlainRanges()
{
    const NodePtr range(node(nullptr, QStringLiteral("band"), "100 MHz", "110 MHz"));
    range->setChannelDefinitions({channeltree::with(plainDefinition(), "count", 2)});
    range->processChannelDefinitions(true, true);
    for (int row = 0; row < 2; ++row)
        range->child(row)->setData(AChannelInfo::ColumnComment, QStringLiteral("kept"));
    const channelxml::Reading back = reread(*range);
    QCOMPARE(channelxml::outlines(back), QStringLiteral("band 100-110 { 1 100-105, 2 105-110 }"));
    for (int row = 0; row < 2; ++row) {
        QCOMPARE(back.only()->child(row)->type(), AChannelInfo::Generic);
        QVERIFY(!back.only()->child(row)->selectable());
        QCOMPARE(back.only()->child(row)->comment(), QStringLiteral("kept"));
    }
    QVERIFY(*back.only() != *range);
}

void TestAChannelInfoWriting::generatedChannelsComeTwiceIfTheirDefinitionIsStillThere()
{
    const NodePtr range(node(nullptr, QStringLiteral("band"), "100 MHz", "110 MHz"));
    range->setChannelDefinitions({channeltree::with(plainDefinition(), "count", 2)});
    range->processChannelDefinitions(false, true);
    const channelxml::Reading back = reread(*range, {false, true, true});
    QCOMPARE(channelxml::outlines(back), QStringLiteral("band 100-110 { 1 100-105, 2 105-110, 1 100-105, 2 105-110 }"));
}

void TestAChannelInfoWriting::theColorOfADefinitionIsNotReadBack()
{
    const NodePtr range(node(nullptr, QString(), "100 MHz", "110 MHz"));
    range->setData(AChannelInfo::ColumnColor, QStringLiteral("blue"));
    range->setChannelDefinitions({channeltree::with(plainDefinition(), "color", QColor(Qt::red))});
    const channelxml::Reading back = reread(*range);
    QCOMPARE(back.only()->channelDefinitions().size(), 1);
    QCOMPARE(back.only()->channelDefinitions().first().value(QStringLiteral("color")),
             QVariant(QStringLiteral("blue")));
}

void TestAChannelInfoWriting::theProfileIdIsNotWritten()
{
    const NodePtr range(node(nullptr, QStringLiteral("band"), "100 MHz", "110 MHz"));
    range->setData(AChannelInfo::ColumnProfileId, QStringLiteral("fm"));
    QCOMPARE(written(*range), QStringLiteral("Range [label=band] { begin=100.000000 MHz, end=110.000000 MHz }"));
    QCOMPARE(reread(*range).only()->data(AChannelInfo::ColumnProfileId).toString(), QString());
}

void TestAChannelInfoWriting::aMirrorComesBackIfMirrorsAreNotExpanded()
{
    const QByteArray section = "<range label='a'><begin>100</begin><end>110</end><mirror>50 MHz</mirror></range>";
    const channelxml::Reading unexpanded = channelxml::read(section, {false, false, false});
    const channelxml::Reading back = reread(*unexpanded.only(), {false, false, false});
    QVERIFY(*back.only() == *unexpanded.only());
    QCOMPARE(back.only()->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 150000000LL);
}

void TestAChannelInfoWriting::aMirroredCopyIsWrittenAsAPlainRange()
{
    const QByteArray section = "<range label='a'><begin>100</begin><end>110</end><mirror>50 MHz</mirror></range>";
    const channelxml::Reading expanded = channelxml::read(section);
    QCOMPARE(written(*expanded.root), QStringLiteral("Range { Range [label=a] { begin=150.000000 MHz, "
                                                     "end=160.000000 MHz }, Range [label=a] { begin=100.000000 MHz, "
                                                     "end=110.000000 MHz } }"));
    QVERIFY(*reread(*expanded.root).only() == *expanded.root);
}

void TestAChannelInfoWriting::zeroEdgesReadBackAsZero()
{
    const NodePtr range(node(nullptr, QStringLiteral("a")));
    const channelxml::Reading back = reread(*range);
    QVERIFY(back.only()->beginFrequency().isNull());
    QVERIFY(back.only()->endFrequency().isNull());
}

QTEST_GUILESS_MAIN(TestAChannelInfoWriting)
#include "tst_achannelinfo_writing.moc"
