#include "channel/achannelinfo.h"

#include "channel/channelxml.h"
#include "core/profilefiles.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

using namespace channelxml;

namespace {

QVariant definitionValue(AChannelInfo *node, int index, const char *key)
{
    return node->channelDefinitions().value(index).value(QString::fromLatin1(key));
}

bool isInvalidColor(const QVariant &value)
{
    return value.userType() == QMetaType::QColor && !value.value<QColor>().isValid();
}

} // namespace

class TestAChannelInfoXml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyRangesAreRead_data();
    void onlyRangesAreRead();
    void anElementThatIsNullIsNoRange();
    void aMissingElementHasNoEffect();
    void aRangeWithoutContentHasDefaults();
    void theTypeIsReadInAnyCase_data();
    void theTypeIsReadInAnyCase();
    void selectableIsReadBelowARangeOnly_data();
    void selectableIsReadBelowARangeOnly();
    void attributeNamesAreExact();
    void edgesAreReadInMegahertz_data();
    void edgesAreReadInMegahertz();
    void laterElementsOverwriteEarlierOnes();
    void elementNamesAreReadInAnyCase();
    void otherNodesAreSkipped();
    void colorsAreKeptAsText();
    void rangesOutsideTheirParentAreDropped_data();
    void rangesOutsideTheirParentAreDropped();
    void aDroppedRangeStaysDropped();
    void theCheckUsesTheParentsEdgesOfThatMoment();
    void theOutermostRangeIsCheckedAsWell();
    void withoutAParentNothingIsMade();

    void aDefinitionHasDefaults();
    void aDefinitionTakesStartAndColorOfItsPlace();
    void definitionFrequenciesAreCanonical_data();
    void definitionFrequenciesAreCanonical();
    void definitionNumbersAreDecimal_data();
    void definitionNumbersAreDecimal();
    void definitionsAreKeptInOrder();
    void otherDefinitionAttributesAreNotRead();
    void expandingTurnsDefinitionsIntoChannels();
    void notExpandingKeepsTheDefinitions();

    void flagsArePassedDown();
    void theElementStaysAsItWas();
    void manyRangesAreReadInLinearTime();
};

void TestAChannelInfoXml::onlyRangesAreRead_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("read");
    for (const char *name : {"range", "Range", "RANGE", "rANGE"})
        QTest::newRow(name) << QByteArray(name) << true;
    for (const char *name : {"ranges", "rang", "channels", "profile", "mirror", "author", "x-range"})
        QTest::newRow(name) << QByteArray(name) << false;
}

void TestAChannelInfoXml::onlyRangesAreRead()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, read);
    const QByteArray xml =
        "<" + name + " label=\"a\"><begin>1</begin><range label=\"b\"/><mirror>1</mirror></" + name + ">";
    const Reading outer = channelxml::read(xml, {false, false, false});
    QCOMPARE(outer.nodes.size(), read ? 1 : 0);
    QCOMPARE(outer.root->childCount(), read ? 1 : 0);
    const Reading inner = channelxml::read("<range>" + xml + "</range>", {false, false, false});
    QVERIFY(inner.only());
    QCOMPARE(inner.only()->childCount(), read ? 1 : 0);
    QCOMPARE(inner.nodes.size(), 1); // nodes deeper down are not in the list
}

void TestAChannelInfoXml::anElementThatIsNullIsNoRange()
{
    const NodePtr root = makeRoot();
    QDomElement null;
    QVERIFY(AChannelInfo::processXmlElement(&null, root.get(), true, true, true).isEmpty());
    QCOMPARE(root->childCount(), 0);
}

void TestAChannelInfoXml::aMissingElementHasNoEffect()
{
    const profilefiles::ChildResult result = profilefiles::inChild([] {
        const NodePtr root = makeRoot();
        return AChannelInfo::processXmlElement(nullptr, root.get(), true, true, true).size() + root->childCount();
    });
    QCOMPARE(result.status, 0);
}

void TestAChannelInfoXml::aRangeWithoutContentHasDefaults()
{
    for (bool selectable : {false, true}) {
        const Reading reading = read("<range/>", {selectable, true, true});
        AChannelInfo *node = reading.only();
        QVERIFY(node);
        QCOMPARE(reading.nodes, QList<AChannelInfo *>{node});
        QCOMPARE(node->parent(), reading.root.get());
        QCOMPARE(node->type(), AChannelInfo::Generic);
        QCOMPARE(node->selectable(), selectable);
        QVERIFY(node->beginFrequency().isNull());
        QVERIFY(node->endFrequency().isNull());
        QVERIFY(node->label().isEmpty());
        QVERIFY(node->comment().isEmpty());
        QVERIFY(isInvalidColor(node->data(AChannelInfo::ColumnColor)));
        QVERIFY(node->channelDefinitions().isEmpty());
        QVERIFY(node->data(AChannelInfo::ColumnProfileId).toString().isEmpty());
        QCOMPARE(node->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 0LL);
    }
}

void TestAChannelInfoXml::theTypeIsReadInAnyCase_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("type");
    for (const char *text : {"direction", "Direction", "DIRECTION"})
        QTest::newRow(text) << QByteArray(text) << int(AChannelInfo::Direction);
    for (const char *text : {"provider", "Provider", "PROVIDER"})
        QTest::newRow(text) << QByteArray(text) << int(AChannelInfo::Provider);
    for (const char *text : {"channel", "Channel", "chanNEL"})
        QTest::newRow(text) << QByteArray(text) << int(AChannelInfo::Channel);
    for (const char *text : {"", "generic", "Generic", "autochannel", "AutoChannel", "channels", " channel", "16", "x"})
        QTest::addRow("'%s'", text) << QByteArray(text) << int(AChannelInfo::Generic);
}

void TestAChannelInfoXml::theTypeIsReadInAnyCase()
{
    QFETCH(QByteArray, text);
    QFETCH(int, type);
    const Reading reading = read("<range type=\"" + text + "\"><range type=\"" + text + "\"/></range>");
    QCOMPARE(int(reading.only()->type()), type);
    QCOMPARE(int(reading.only()->child(0)->type()), type);
}

void TestAChannelInfoXml::selectableIsReadBelowARangeOnly_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<bool>("selectable");
    QTest::newRow("absent") << QByteArray() << false;
    QTest::newRow("zero") << QByteArray("selectable=\"0\"") << false;
    for (const char *text : {"1", "no", "", "00", " 0", "0 ", "false", "-0"})
        QTest::addRow("'%s'", text) << "selectable=\"" + QByteArray(text) + "\"" << true;
}

void TestAChannelInfoXml::selectableIsReadBelowARangeOnly()
{
    QFETCH(QByteArray, attribute);
    QFETCH(bool, selectable);
    const QByteArray range = "range " + attribute;
    for (bool outer : {false, true}) {
        const Reading reading =
            read("<" + range + "><" + range + "><" + range + "/></range></range>", {outer, true, false});
        QCOMPARE(reading.only()->selectable(), outer);
        QCOMPARE(reading.only()->child(0)->selectable(), selectable);
        QCOMPARE(reading.only()->child(0)->child(0)->selectable(), selectable);
    }
}

void TestAChannelInfoXml::attributeNamesAreExact()
{
    const Reading reading = read("<range><range Label=\"a\" TYPE=\"channel\" Selectable=\"1\"/></range>");
    const AChannelInfo *node = reading.only()->child(0);
    QVERIFY(node->label().isEmpty());
    QCOMPARE(node->type(), AChannelInfo::Generic);
    QVERIFY(!node->selectable());
    const Reading run = read("<range><begin>7</begin><channels START=\"1 MHz\" Width=\"2 MHz\" COUNT=\"3\"/></range>");
    QCOMPARE(definitionValue(run.only(), 0, "start"), QVariant(QStringLiteral("7.000000 MHz")));
    QCOMPARE(definitionValue(run.only(), 0, "width"), QVariant(QStringLiteral("5.000000 MHz")));
    QCOMPARE(definitionValue(run.only(), 0, "count"), QVariant(1));
}

void TestAChannelInfoXml::edgesAreReadInMegahertz_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("hertz");
    QTest::newRow("no unit") << QByteArray("88.5") << qint64(88500000);
    QTest::newRow("megahertz") << QByteArray("88.5 MHz") << qint64(88500000);
    QTest::newRow("kilohertz") << QByteArray("531 kHz") << qint64(531000);
    QTest::newRow("hertz") << QByteArray("5 Hz") << qint64(5);
    QTest::newRow("gigahertz") << QByteArray("2.4GHz") << qint64(2400000000);
    QTest::newRow("comma, with a unit") << QByteArray("2,4 GHz") << qint64(2400000000);
    QTest::newRow("comma, without a unit") << QByteArray("88,5") << qint64(0);
    QTest::newRow("blanks") << QByteArray(" 88.5\n") << qint64(88500000);
    QTest::newRow("empty") << QByteArray() << qint64(0);
    QTest::newRow("text") << QByteArray("low") << qint64(0);
    QTest::newRow("unknown unit") << QByteArray("5 KHz") << qint64(0);
    QTest::newRow("negative") << QByteArray("-7.6") << qint64(-7600000);
    QTest::newRow("negative with unit") << QByteArray("-7.6 MHz") << qint64(-7600000);
    QTest::newRow("exponent") << QByteArray("1e3") << qint64(1000000000);
    QTest::newRow("not a number") << QByteArray("nan") << qint64(0);
    QTest::newRow("infinite") << QByteArray("inf") << std::numeric_limits<qint64>::max();
    QTest::newRow("no latin 1") << QByteArray("\xe2\x82\xac") << qint64(0);
    QTest::newRow("cdata") << QByteArray("<![CDATA[88.5]]> MHz") << qint64(88500000);
    QTest::newRow("comment inside") << QByteArray("88<!-- x -->.5") << qint64(88500000);
    QTest::newRow("element inside") << QByteArray("88<b>.5</b>") << qint64(88500000);
}

void TestAChannelInfoXml::edgesAreReadInMegahertz()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, hertz);
    const Reading reading = read("<range><begin>" + text + "</begin><end>" + text + "</end></range>");
    QCOMPARE(reading.only()->data(AChannelInfo::ColumnStartFreq).toLongLong(), hertz);
    QCOMPARE(reading.only()->data(AChannelInfo::ColumnStopFreq).toLongLong(), hertz);
}

void TestAChannelInfoXml::laterElementsOverwriteEarlierOnes()
{
    const Reading reading = read("<range><begin>1</begin><end>9</end><color>red</color><comment>a</comment>"
                                 "<begin>2</begin><end>8</end><color>blue</color><comment/></range>");
    QCOMPARE(outline(reading.only()), QStringLiteral("2-8"));
    QCOMPARE(reading.only()->data(AChannelInfo::ColumnColor), QVariant(QStringLiteral("blue")));
    QVERIFY(reading.only()->comment().isEmpty());
}

void TestAChannelInfoXml::elementNamesAreReadInAnyCase()
{
    const Reading reading = read("<RANGE><Begin>1</Begin><END>9</END><Color>red</Color><COMMENT>a</COMMENT>"
                                 "<Range label=\"b\"/><Channels/><cHANNELS/><MIRROR>1 MHz</MIRROR></RANGE>",
                                 {false, false, false});
    AChannelInfo *node = reading.only();
    QCOMPARE(outline(node), QStringLiteral("1-9 { b 0-0 }"));
    QCOMPARE(node->data(AChannelInfo::ColumnColor), QVariant(QStringLiteral("red")));
    QCOMPARE(node->comment(), QStringLiteral("a"));
    QCOMPARE(node->channelDefinitions().size(), 2);
    QCOMPARE(mirrorText(node), QStringLiteral("2.000000 MHz"));
}

void TestAChannelInfoXml::otherNodesAreSkipped()
{
    const Reading reading =
        read("<range>text<!-- <begin>5</begin> --><![CDATA[<begin>6</begin>]]><?begin 7?><author>me</author>"
             "<start>8</start><group><begin>9</begin><range label=\"lost\"/><channels/><mirror>1</mirror></group>"
             "<label>x</label><begins>1</begins><range label=\"a\"/>text</range>");
    QCOMPARE(outline(reading.only()), QStringLiteral("0-0 { a 0-0 }"));
    QVERIFY(reading.only()->channelDefinitions().isEmpty());
    QVERIFY(reading.only()->label().isEmpty());
}

void TestAChannelInfoXml::colorsAreKeptAsText()
{
    for (const char *text : {"red", "#3366cc", "no colour", "", " red "}) {
        const Reading reading = read("<range><color>" + QByteArray(text) + "</color></range>");
        const QVariant color = reading.only()->data(AChannelInfo::ColumnColor);
        QCOMPARE(color.userType(), int(QMetaType::QString));
        QCOMPARE(color.toString().trimmed(), QString::fromLatin1(text).trimmed());
    }
    QCOMPARE(read("<range><color>#3366cc</color></range>").only()->color(), QColor(0x33, 0x66, 0xcc));
}

void TestAChannelInfoXml::rangesOutsideTheirParentAreDropped_data()
{
    QTest::addColumn<QByteArray>("parent"); // elements of the parent, which come first
    QTest::addColumn<QByteArray>("child");
    QTest::addColumn<bool>("stays");
    const QByteArray both = "<begin>100</begin><end>200</end>";
    const auto edges = [](const char *begin, const char *end) {
        return "<begin>" + QByteArray(begin) + "</begin><end>" + QByteArray(end) + "</end>";
    };
    QTest::newRow("inside") << both << edges("120", "130") << true;
    QTest::newRow("the same") << both << edges("100", "200") << true;
    QTest::newRow("begins at the begin") << both << edges("100", "110") << true;
    QTest::newRow("ends at the end") << both << edges("190", "200") << true;
    QTest::newRow("overlaps the begin") << both << edges("90", "110") << true;
    QTest::newRow("overlaps the end") << both << edges("190", "210") << true;
    QTest::newRow("wider") << both << edges("90", "210") << true;
    QTest::newRow("begins at the end") << both << edges("200", "210") << false;
    QTest::newRow("ends at the begin") << both << edges("90", "100") << false;
    QTest::newRow("one hertz before the end") << both << edges("199.999999", "210") << true;
    QTest::newRow("one hertz behind the begin") << both << edges("90", "100.000001") << true;
    QTest::newRow("above") << both << edges("300", "310") << false;
    QTest::newRow("below") << both << edges("10", "20") << false;
    QTest::newRow("no begin") << both << QByteArray("<end>120</end>") << true;
    QTest::newRow("no end") << both << QByteArray("<begin>120</begin>") << true;
    QTest::newRow("no edges") << both << QByteArray() << true;
    QTest::newRow("no end, begins above") << both << QByteArray("<begin>200</begin>") << false;
    QTest::newRow("no begin, ends below") << both << QByteArray("<end>100</end>") << false;
    QTest::newRow("end of zero") << both << QByteArray("<end>0</end>") << false;
    QTest::newRow("empty begin and end") << both << edges("", "") << false;
    QTest::newRow("negative") << both << edges("-20", "-10") << false;
    QTest::newRow("backwards, across") << both << edges("190", "110") << true;
    QTest::newRow("parent without edges") << QByteArray() << edges("10", "20") << true;
    QTest::newRow("parent without edges, negative") << QByteArray() << edges("-20", "-10") << true;
    QTest::newRow("parent with null edges") << edges("0", "0") << edges("10", "20") << true;
    QTest::newRow("parent without begin") << QByteArray("<end>200</end>") << edges("-20", "-10") << true;
    QTest::newRow("parent without begin, above") << QByteArray("<end>200</end>") << edges("200", "210") << false;
    QTest::newRow("parent without end") << QByteArray("<begin>100</begin>") << edges("300", "310") << true;
    QTest::newRow("parent without end, below") << QByteArray("<begin>100</begin>") << edges("90", "100") << false;
    QTest::newRow("negative parent") << edges("-20", "-10") << edges("-15", "5") << true;
    QTest::newRow("negative parent, above") << edges("-20", "-10") << edges("-10", "5") << false;
}

void TestAChannelInfoXml::rangesOutsideTheirParentAreDropped()
{
    QFETCH(QByteArray, parent);
    QFETCH(QByteArray, child);
    QFETCH(bool, stays);
    const Reading reading = read("<range>" + parent + "<range label=\"a\"/><range label=\"b\">" + child +
                                 "<range label=\"c\"/></range><range label=\"d\"/></range>");
    QVERIFY(reading.only());
    QStringList labels;
    for (int row = 0; row < reading.only()->childCount(); ++row)
        labels.append(reading.only()->child(row)->label());
    QCOMPARE(labels.join(QString()), stays ? QStringLiteral("abd") : QStringLiteral("ad"));
    if (stays) { // unclipped
        const Reading alone = read("<range label=\"b\">" + child + "<range label=\"c\"/></range>");
        QVERIFY(*reading.only()->child(1) == *alone.only());
    }
}

void TestAChannelInfoXml::aDroppedRangeStaysDropped()
{
    // Neither a later edge nor a later element of the parent brings it back.
    const Reading reading = read("<range><begin>100</begin><end>200</end><range label=\"a\"><begin>300</begin>"
                                 "<begin>120</begin><end>130</end></range><end>400</end></range>");
    QCOMPARE(outline(reading.only()), QStringLiteral("100-400"));
}

void TestAChannelInfoXml::theCheckUsesTheParentsEdgesOfThatMoment()
{
    const QByteArray child = "<range label=\"a\"><begin>300</begin><end>310</end></range>";
    QCOMPARE(outlines(read("<range>" + child + "<begin>100</begin><end>200</end></range>")),
             QStringLiteral("100-200 { a 300-310 }"));
    QCOMPARE(outlines(read("<range><begin>100</begin>" + child + "<end>200</end></range>")),
             QStringLiteral("100-200 { a 300-310 }"));
    QCOMPARE(outlines(read("<range><begin>100</begin><end>200</end>" + child + "</range>")), QStringLiteral("100-200"));
    QCOMPARE(outlines(read("<range><begin>100</begin><end>200</end><end>400</end>" + child + "</range>")),
             QStringLiteral("100-400 { a 300-310 }"));
    // The parent's check is with its own parent alone, and a range that will be dropped is read to its end.
    QCOMPARE(outlines(read("<range><begin>1</begin><end>2</end><range><begin>5</begin>" + child + "</range></range>")),
             QStringLiteral("1-2"));
}

void TestAChannelInfoXml::theOutermostRangeIsCheckedAsWell()
{
    const QByteArray range = "<range label=\"a\"><begin>100</begin><end>200</end></range>";
    QCOMPARE(read(range, Flags(), makeRoot(megahertz(150), megahertz(160))).nodes.size(), 1);
    const Reading above = read(range, Flags(), makeRoot(megahertz(10), megahertz(100)));
    QVERIFY(above.nodes.isEmpty());
    QCOMPARE(above.root->childCount(), 0);
    QVERIFY(read(range, Flags(), makeRoot(megahertz(200), AFrequency())).nodes.isEmpty());
}

void TestAChannelInfoXml::withoutAParentNothingIsMade()
{
    QDomDocument document;
    QVERIFY(document.setContent(QByteArray("<range label=\"a\"><begin>1</begin><end>2</end><range/><channels/>"
                                           "<mirror>10 MHz</mirror></range>")));
    QDomElement element = document.documentElement();
    for (int flags = 0; flags < 8; ++flags)
        QVERIFY(AChannelInfo::processXmlElement(&element, nullptr, flags & 1, flags & 2, flags & 4).isEmpty());
}

// --- channel definitions ---

void TestAChannelInfoXml::aDefinitionHasDefaults()
{
    const Reading reading = read("<range><begin>100</begin><channels/></range>");
    QCOMPARE(reading.only()->channelDefinitions().size(), 1);
    const AChannelInfo::Definition definition = reading.only()->channelDefinitions().first();
    QCOMPARE(QStringList(definition.keys()).join(QLatin1Char(' ')),
             QStringLiteral("color count first space start step width"));
    const QList<QPair<const char *, QVariant>> expected = {{"start", QStringLiteral("100.000000 MHz")},
                                                           {"width", QStringLiteral("5.000000 MHz")},
                                                           {"space", QStringLiteral("0.000000 Hz")},
                                                           {"first", 1},
                                                           {"count", 1},
                                                           {"step", 1}};
    for (const auto &entry : expected) {
        const QVariant value = definition.value(QString::fromLatin1(entry.first));
        QCOMPARE(value.userType(), entry.second.userType());
        QCOMPARE(value, entry.second);
    }
    QVERIFY(isInvalidColor(definition.value(QStringLiteral("color"))));
}

void TestAChannelInfoXml::aDefinitionTakesStartAndColorOfItsPlace()
{
    const Reading reading = read("<range><channels/><begin>100</begin><channels/><color>red</color><channels/>"
                                 "<begin>110</begin><color>blue</color><channels/><end>500</end></range>");
    AChannelInfo *node = reading.only();
    const char *const starts[] = {"0.000000 Hz", "100.000000 MHz", "100.000000 MHz", "110.000000 MHz"};
    for (int i = 0; i < 4; ++i)
        QCOMPARE(definitionValue(node, i, "start").toString(), QString::fromLatin1(starts[i]));
    QVERIFY(isInvalidColor(definitionValue(node, 0, "color")));
    QVERIFY(isInvalidColor(definitionValue(node, 1, "color")));
    QCOMPARE(definitionValue(node, 2, "color"), QVariant(QStringLiteral("red")));
    QCOMPARE(definitionValue(node, 2, "color").userType(), int(QMetaType::QString));
    QCOMPARE(definitionValue(node, 3, "color"), QVariant(QStringLiteral("blue")));
}

void TestAChannelInfoXml::definitionFrequenciesAreCanonical_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("canonical");
    QTest::newRow("megahertz") << QByteArray("87.6 MHz") << "87.600000 MHz";
    QTest::newRow("no unit is hertz") << QByteArray("100") << "100.000000 Hz";
    QTest::newRow("kilohertz") << QByteArray("200 kHz") << "200.000000 kHz";
    QTest::newRow("another unit") << QByteArray("2,4GHz") << "2400.000000 MHz";
    QTest::newRow("empty") << QByteArray() << "0.000000 Hz";
    QTest::newRow("text") << QByteArray("wide") << "0.000000 Hz";
    QTest::newRow("negative") << QByteArray("-5 MHz") << "-5.000000 MHz";
    QTest::newRow("part of a hertz") << QByteArray("0.5") << "0.500000 Hz";
    QTest::newRow("no latin 1") << QByteArray("5 \xe2\x82\xac") << "0.000000 Hz";
}

void TestAChannelInfoXml::definitionFrequenciesAreCanonical()
{
    QFETCH(QByteArray, text);
    for (const char *key : {"start", "width", "space"}) {
        const Reading reading =
            read("<range><begin>7</begin><channels " + QByteArray(key) + "=\"" + text + "\"/></range>");
        const QVariant value = definitionValue(reading.only(), 0, key);
        QCOMPARE(value.userType(), int(QMetaType::QString));
        QTEST(value.toString(), "canonical");
    }
}

void TestAChannelInfoXml::definitionNumbersAreDecimal_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("number") << QByteArray("102") << 102;
    QTest::newRow("negative") << QByteArray("-2") << -2;
    QTest::newRow("plus") << QByteArray("+3") << 3;
    QTest::newRow("leading zero") << QByteArray("010") << 10;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << 0;
    QTest::newRow("decimals") << QByteArray("5.0") << 0;
    QTest::newRow("exponent") << QByteArray("1e3") << 0;
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("text") << QByteArray("many") << 0;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("too large") << QByteArray("2147483648") << 0;
    QTest::newRow("far too large") << QByteArray("99999999999999999999") << 0;
}

void TestAChannelInfoXml::definitionNumbersAreDecimal()
{
    QFETCH(QByteArray, text);
    for (const char *key : {"first", "count", "step"}) {
        const Reading reading = read("<range><channels " + QByteArray(key) + "=\"" + text + "\"/></range>");
        const QVariant value = definitionValue(reading.only(), 0, key);
        QCOMPARE(value.userType(), int(QMetaType::Int));
        QTEST(value.toInt(), "number");
    }
}

void TestAChannelInfoXml::definitionsAreKeptInOrder()
{
    const Reading reading = read("<range><channels first=\"1\"/><range><channels first=\"9\"/></range>"
                                 "<channels first=\"2\"/><!-- c --><channels first=\"3\"/></range>");
    QCOMPARE(reading.only()->channelDefinitions().size(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(definitionValue(reading.only(), i, "first"), QVariant(i + 1));
    QCOMPARE(definitionValue(reading.only()->child(0), 0, "first"), QVariant(9));
}

void TestAChannelInfoXml::otherDefinitionAttributesAreNotRead()
{
    const Reading reading = read(
        "<range><channels color=\"red\" label=\"x\" end=\"5\"><begin>5</begin><color>red</color></channels></range>");
    QVERIFY(isInvalidColor(definitionValue(reading.only(), 0, "color")));
    QCOMPARE(reading.only()->channelDefinitions().first().size(), 7);
    QVERIFY(reading.only()->beginFrequency().isNull());
}

void TestAChannelInfoXml::expandingTurnsDefinitionsIntoChannels()
{
    const Reading reading =
        read("<range label=\"r\"><begin>100</begin><end>110</end><color>red</color>"
             "<channels width=\"5 MHz\" space=\"1 MHz\" count=\"3\" first=\"21\" step=\"2\"/>"
             "<range label=\"a\"><begin>101</begin><end>109</end><channels width=\"1 MHz\" count=\"2\"/></range>"
             "<channels count=\"0\"/><channels start=\"1 MHz\" width=\"1 MHz\"/></range>",
             {true, true, true});
    AChannelInfo *node = reading.only();
    // Generated channels come after the ranges, and none is checked against the edges.
    QCOMPARE(outline(node), QStringLiteral("r 100-110 { a 101-109 { 1 101-102, 2 102-103 }, 21 100-105, 23 106-111, "
                                           "25 112-117, 1 1-2 }"));
    QVERIFY(node->channelDefinitions().isEmpty());
    QVERIFY(node->child(0)->channelDefinitions().isEmpty());
    QCOMPARE(node->child(1)->type(), AChannelInfo::AutoChannel);
    QVERIFY(!node->child(1)->selectable());
    QCOMPARE(node->child(1)->color(), QColor(Qt::red));
}

void TestAChannelInfoXml::notExpandingKeepsTheDefinitions()
{
    const Reading reading = read("<range><channels count=\"3\"/><range><channels count=\"2\"/></range></range>");
    QCOMPARE(reading.only()->channelDefinitions().size(), 1);
    QCOMPARE(reading.only()->childCount(), 1);
    QCOMPARE(reading.only()->child(0)->channelDefinitions().size(), 1);
    QCOMPARE(reading.only()->child(0)->childCount(), 0);
}

// --- the whole ---

void TestAChannelInfoXml::flagsArePassedDown()
{
    const QByteArray xml = "<range><range><range label=\"x\"><begin>1</begin><end>2</end>"
                           "<channels width=\"1 MHz\"/><mirror>10 MHz</mirror></range></range></range>";
    const QString inner = QStringLiteral("0-0 { 0-0 { %1 } }");
    QCOMPARE(outlines(read(xml, {false, false, false})), inner.arg(QStringLiteral("x 1-2")));
    QCOMPARE(outlines(read(xml, {false, true, false})), inner.arg(QStringLiteral("x 11-12, x 1-2")));
    QCOMPARE(outlines(read(xml, {false, false, true})), inner.arg(QStringLiteral("x 1-2 { 1 1-2 }")));
    QCOMPARE(outlines(read(xml, {false, true, true})),
             inner.arg(QStringLiteral("x 11-12 { 1 11-12 }, x 1-2 { 1 1-2 }")));
    const Reading stored = read(xml, {false, false, false});
    QCOMPARE(mirrorText(stored.only()->child(0)->child(0)), QStringLiteral("11.000000 MHz"));
}

void TestAChannelInfoXml::theElementStaysAsItWas()
{
    for (int flags = 0; flags < 8; ++flags) {
        const Reading reading = read("<range label=\"a\" selectable=\"0\"><begin>1</begin><end>2</end>"
                                     "<channels start=\"5 MHz\" count=\"2\"/><range><mirror>3</mirror></range>"
                                     "<mirror>10 MHz</mirror><mirror>20 MHz</mirror></range>",
                                     {bool(flags & 1), bool(flags & 2), bool(flags & 4)});
        QCOMPARE(reading.elementAfter, reading.elementBefore);
    }
}

void TestAChannelInfoXml::manyRangesAreReadInLinearTime()
{
    const auto milliseconds = [](int count) {
        const QByteArray xml = "<range>" +
                               QByteArray("<range><begin>1</begin><end>2</end><channels/></range>").repeated(count) +
                               "</range>";
        QDomDocument document;
        document.setContent(xml);
        QDomElement element = document.documentElement();
        const NodePtr root = makeRoot();
        QElapsedTimer timer;
        timer.start();
        AChannelInfo::processXmlElement(&element, root.get(), true, true, true);
        return root->child(0)->childCount() == count ? timer.elapsed() : -1;
    };
    const qint64 few = milliseconds(5000);
    const qint64 many = milliseconds(50000);
    QVERIFY(few >= 0 && many >= 0);
    QVERIFY2(many < 40 * qMax<qint64>(few, 20), qPrintable(QStringLiteral("%1 ms, %2 ms").arg(few).arg(many)));
}

QTEST_GUILESS_MAIN(TestAChannelInfoXml)
#include "tst_achannelinfo_xml.moc"
