#include "channel/achannelinfo.h"

#include "channel/channelxml.h"
#include "core/aprofile.h"
#include "core/asettings.h"
#include "core/profilefiles.h"

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <ctime>

using namespace channelxml;

namespace {

QStringList g_warnings;

void collectWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtWarningMsg)
        g_warnings.append(text);
}

// A range of 100 to 110 MHz with the label "a".
QByteArray range(const QByteArray &body)
{
    return "<range label=\"a\"><begin>100</begin><end>110</end>" + body + "</range>";
}

QByteArray mirrors(std::initializer_list<int> distances)
{
    QByteArray xml;
    for (int distance : distances)
        xml += "<mirror>" + QByteArray::number(distance) + " MHz</mirror>";
    return xml;
}

constexpr qint64 kTimeBoundMs = 60000; // of processor time
constexpr int kNodeBound = 1100000;    // a million copied nodes, and the section itself
constexpr qint64 kMemoryBoundMegabytes = 2000;

} // namespace

class TestAChannelInfoXmlMirrors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void cleanup() { qInstallMessageHandler(nullptr); }

    void theModeChoosesDistanceOrFrequency_data();
    void theModeChoosesDistanceOrFrequency();
    void withoutExpandingOnlyTheFrequencyIsKept();
    void aCopyHasEverythingOfItsRange();
    void copiesStandBeforeTheirRange();
    void theParentsOrderIsKept();
    void aCopyIsSelectableAsItsRangeIs();
    void startsAreShiftedAtAnyDepth();
    void nestedRangesKeepTheirOwnEdges();
    void copiesOutsideTheParentAreDropped();
    void copiesOfADroppedRangeMayStay();
    void edgesAreThoseAtTheMirrorsPlace_data();
    void edgesAreThoseAtTheMirrorsPlace();
    void onlyTheFirstBeginAndEndAreReplaced();
    void replacedTextsAreReplacedWhole();
    void everySecondMirrorStaysInACopy_data();
    void everySecondMirrorStaysInACopy();
    void mirrorsOfAnotherSpellingStayInACopy();
    void nestedMirrorsTakeEffectInTheCopy();
    void anOutermostMirrorCopiesTheProfile();
    void anOutermostMirrorOfASectionWithItsOwnEdgesStaysThere();
    void copiesAreExpandedAsTheirRangeIs();
    void withoutAParentCopiesAreDiscardedAsWell();
    void ordinaryPlansAreCopiedWhole();
    void runawayMirrorsEnd_data();
    void runawayMirrorsEnd();
    void runawayMirrorsDoNotMultiplyLongTexts_data();
    void runawayMirrorsDoNotMultiplyLongTexts();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<QSettings> m_settings;
};

void TestAChannelInfoXmlMirrors::initTestCase()
{
    m_settings = std::make_unique<QSettings>(m_dir.filePath(QStringLiteral("test.ini")), QSettings::IniFormat);
    m_settings->setValue(QStringLiteral("Application/Language"), QStringLiteral("en"));
    ASettings::setApplicationSettings(m_settings.get());
}

void TestAChannelInfoXmlMirrors::cleanupTestCase()
{
    ASettings::setApplicationSettings(nullptr);
}

void TestAChannelInfoXmlMirrors::theModeChoosesDistanceOrFrequency_data()
{
    QTest::addColumn<QByteArray>("mirror");
    QTest::addColumn<qint64>("hertz");
    QTest::newRow("no mode") << QByteArray("<mirror>50 MHz</mirror>") << qint64(150000000);
    QTest::newRow("relative") << QByteArray("<mirror mode=\"relative\">50 MHz</mirror>") << qint64(150000000);
    QTest::newRow("absolute") << QByteArray("<mirror mode=\"absolute\">400 MHz</mirror>") << qint64(400000000);
    for (const char *mode : {"Relative", "RELATIVE", "", " relative", "other"}) {
        QTest::addRow("'%s' is absolute", mode)
            << "<mirror mode=\"" + QByteArray(mode) + "\">400 MHz</mirror>" << qint64(400000000);
    }
    QTest::newRow("mode of another spelling is none")
        << QByteArray("<mirror Mode=\"absolute\">50 MHz</mirror>") << qint64(150000000);
    QTest::newRow("negative distance") << QByteArray("<mirror>-7.6 MHz</mirror>") << qint64(92400000);
    QTest::newRow("below zero") << QByteArray("<mirror>-150 MHz</mirror>") << qint64(-50000000);
    QTest::newRow("without a unit in hertz") << QByteArray("<mirror>50</mirror>") << qint64(100000050);
    QTest::newRow("empty") << QByteArray("<mirror/>") << qint64(100000000);
    QTest::newRow("unreadable") << QByteArray("<mirror>far</mirror>") << qint64(100000000);
    QTest::newRow("unreadable, absolute") << QByteArray("<mirror mode=\"a\">far</mirror>") << qint64(0);
}

void TestAChannelInfoXmlMirrors::theModeChoosesDistanceOrFrequency()
{
    QFETCH(QByteArray, mirror);
    QFETCH(qint64, hertz);
    const Reading stored = read(range(mirror), {false, false, false});
    QCOMPARE(stored.nodes.size(), 1);
    QCOMPARE(stored.only()->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), hertz);

    const Reading copied = read(range(mirror), {false, true, false});
    QCOMPARE(copied.root->childCount(), 2);
    AChannelInfo *copy = copied.root->child(0);
    QCOMPARE(copy->data(AChannelInfo::ColumnStartFreq).toLongLong(), hertz);
    QCOMPARE(copy->data(AChannelInfo::ColumnStopFreq).toLongLong(), hertz + 10000000);
    QCOMPARE(outline(copied.root->child(1)), QStringLiteral("a 100-110"));
    for (AChannelInfo *node : copied.nodes)
        QCOMPARE(node->data(AChannelInfo::ColumnMirrorEntryFreq).toLongLong(), 0LL);
}

void TestAChannelInfoXmlMirrors::withoutExpandingOnlyTheFrequencyIsKept()
{
    const Reading reading =
        read(range(mirrors({50, 20}) + "<range label=\"b\">" + mirrors({3}) + "</range>"), {false, false, false});
    QCOMPARE(outlines(reading), QStringLiteral("a 100-110 { b 0-0 }"));
    QCOMPARE(mirrorText(reading.only()), QStringLiteral("120.000000 MHz")); // the last one
    QCOMPARE(mirrorText(reading.only()->child(0)), QStringLiteral("3.000000 MHz"));
}

void TestAChannelInfoXmlMirrors::aCopyHasEverythingOfItsRange()
{
    const Reading reading =
        read("<range label=\"a\" type=\"direction\"><begin>100</begin><end>110</end><color>red</color>"
             "<comment>c</comment><channels start=\"101 MHz\" count=\"7\"/><mirror>50 MHz</mirror></range>",
             {true, true, false});
    QCOMPARE(outlines(reading), QStringLiteral("a 150-160, a 100-110"));
    AChannelInfo *copy = reading.root->child(0);
    AChannelInfo *original = reading.root->child(1);
    QCOMPARE(copy->parent(), reading.root.get());
    QCOMPARE(copy->type(), AChannelInfo::Direction);
    QCOMPARE(copy->data(AChannelInfo::ColumnColor), original->data(AChannelInfo::ColumnColor));
    QCOMPARE(copy->comment(), QStringLiteral("c"));
    QVERIFY(copy->selectable());
    AChannelInfo::Definition shifted = original->channelDefinitions().first();
    QCOMPARE(shifted.value(QStringLiteral("start")), QVariant(QStringLiteral("101.000000 MHz")));
    shifted.insert(QStringLiteral("start"), QStringLiteral("151.000000 MHz"));
    QCOMPARE(copy->channelDefinitions(), QList<AChannelInfo::Definition>{shifted});
}

void TestAChannelInfoXmlMirrors::copiesStandBeforeTheirRange()
{
    const Reading one = read(range(mirrors({50})));
    QCOMPARE(one.nodes, (QList<AChannelInfo *>{one.root->child(0), one.root->child(1)}));
    QCOMPARE(outlines(one), QStringLiteral("a 150-160, a 100-110"));
    // What follows the mirror belongs to the copy as well.
    const Reading early = read("<range><begin>100</begin><end>110</end><mirror>50 MHz</mirror>"
                               "<comment>c</comment><range label=\"b\"/></range>");
    QCOMPARE(outlines(early), QStringLiteral("150-160 { b 0-0 }, 100-110 { b 0-0 }"));
    QCOMPARE(early.nodes.first()->comment(), QStringLiteral("c"));
}

void TestAChannelInfoXmlMirrors::theParentsOrderIsKept()
{
    const Reading reading = read("<range><range label=\"x\"/>" + range(mirrors({50})) + "<range label=\"y\"/></range>");
    QCOMPARE(reading.nodes.size(), 1);
    QCOMPARE(outlines(reading), QStringLiteral("0-0 { x 0-0, a 150-160, a 100-110, y 0-0 }"));
}

void TestAChannelInfoXmlMirrors::aCopyIsSelectableAsItsRangeIs()
{
    for (const char *attribute : {"", " selectable=\"0\"", " selectable=\"1\""}) {
        const QByteArray xml = "<range label=\"b\"" + QByteArray(attribute) + "><mirror>1 MHz</mirror></range>";
        for (bool outer : {false, true}) {
            const Reading top = read(xml, {outer, true, false});
            QCOMPARE(top.root->child(0)->selectable(), outer);
            QCOMPARE(top.root->child(1)->selectable(), outer);
            const Reading nested = read("<range>" + xml + "</range>", {outer, true, false});
            const bool expected = QByteArray(attribute).contains('1');
            QCOMPARE(nested.only()->childCount(), 2);
            QCOMPARE(nested.only()->child(0)->selectable(), expected);
            QCOMPARE(nested.only()->child(1)->selectable(), expected);
        }
    }
}

void TestAChannelInfoXmlMirrors::startsAreShiftedAtAnyDepth()
{
    const Reading reading = read(range("<channels start=\"102 MHz\"/><channels/><CHANNELS start=\"103\"/>"
                                       "<range label=\"b\"><channels start=\"104 MHz\"/><channels/>"
                                       "<range label=\"c\"><Channels start=\"105 MHz\"/></range></range>" +
                                       mirrors({50})));
    QCOMPARE(outlines(reading), QStringLiteral("a 150-160 { b 0-0 { c 0-0 } }, a 100-110 { b 0-0 { c 0-0 } }"));
    const auto starts = [](const AChannelInfo *node) {
        QStringList texts;
        const QList<AChannelInfo::Definition> definitions = node->channelDefinitions();
        for (const AChannelInfo::Definition &definition : definitions)
            texts.append(definition.value(QStringLiteral("start")).toString());
        return texts.join(QLatin1String(", "));
    };
    AChannelInfo *copy = reading.root->child(0);
    QCOMPARE(starts(copy), QStringLiteral("152.000000 MHz, 150.000000 MHz, 50.000103 MHz"));
    QCOMPARE(starts(copy->child(0)), QStringLiteral("154.000000 MHz, 0.000000 Hz"));
    QCOMPARE(starts(copy->child(0)->child(0)), QStringLiteral("155.000000 MHz"));
    AChannelInfo *original = reading.root->child(1);
    QCOMPARE(starts(original), QStringLiteral("102.000000 MHz, 100.000000 MHz, 103.000000 Hz"));
    QCOMPARE(starts(original->child(0)->child(0)), QStringLiteral("105.000000 MHz"));
}

void TestAChannelInfoXmlMirrors::nestedRangesKeepTheirOwnEdges()
{
    const auto nested = [](const char *label, int begin, int end) {
        return QByteArray("<range label=\"") + label + "\"><begin>" + QByteArray::number(begin) + "</begin><end>" +
               QByteArray::number(end) + "</end></range>";
    };
    const Reading reading =
        read(range(nested("in", 102, 104) + nested("high", 108, 115) + nested("wide", 90, 200) + mirrors({10, -5})));
    // The one by 10 MHz is 110 to 120, the one by -5 MHz is 95 to 105; ranges outside of them are gone. Both
    // keep the second mirror, which makes one more copy of each.
    QCOMPARE(outlines(reading), QStringLiteral("a 105-115 { high 108-115, wide 90-200 }, "
                                               "a 110-120 { high 108-115, wide 90-200 }, "
                                               "a 90-100 { wide 90-200 }, "
                                               "a 95-105 { in 102-104, wide 90-200 }, "
                                               "a 100-110 { in 102-104, high 108-115, wide 90-200 }"));
}

void TestAChannelInfoXmlMirrors::copiesOutsideTheParentAreDropped()
{
    const auto inParent = [](int distance) {
        return outlines(read("<range><begin>90</begin><end>150</end>" + range(mirrors({distance})) + "</range>"));
    };
    QCOMPARE(inParent(30), QStringLiteral("90-150 { a 130-140, a 100-110 }"));
    QCOMPARE(inParent(45), QStringLiteral("90-150 { a 145-155, a 100-110 }"));
    QCOMPARE(inParent(50), QStringLiteral("90-150 { a 100-110 }"));
    QCOMPARE(inParent(-19), QStringLiteral("90-150 { a 81-91, a 100-110 }"));
    QCOMPARE(inParent(-20), QStringLiteral("90-150 { a 100-110 }"));
    QCOMPARE(read(range(mirrors({50})), Flags(), makeRoot(megahertz(90), megahertz(150))).nodes.size(), 1);
}

void TestAChannelInfoXmlMirrors::copiesOfADroppedRangeMayStay()
{
    QCOMPARE(outlines(read("<range><begin>140</begin><end>190</end>" + range(mirrors({50})) + "</range>")),
             QStringLiteral("140-190 { a 150-160 }"));
    const Reading outer = read(range(mirrors({50})), Flags(), makeRoot(megahertz(140), megahertz(190)));
    QCOMPARE(outer.nodes, QList<AChannelInfo *>{outer.root->child(0)});
    QCOMPARE(outlines(outer), QStringLiteral("a 150-160"));
}

void TestAChannelInfoXmlMirrors::edgesAreThoseAtTheMirrorsPlace_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("outlines");
    const QByteArray begin = "<begin>100</begin>";
    const QByteArray end = "<end>110</end>";
    const QByteArray mirror = "<mirror>50 MHz</mirror>";
    QTest::newRow("behind both") << begin + end + mirror << "150-160, 100-110";
    QTest::newRow("before both") << mirror + begin + end << "50-50, 100-110";
    QTest::newRow("between") << begin + mirror + end << "150-50, 100-110";
    QTest::newRow("behind the end alone") << end + mirror + begin << "50-160, 100-110";
    QTest::newRow("without a begin") << end + mirror << "0-160, 0-110";
    QTest::newRow("without an end") << begin + mirror << "150-0, 100-0";
    QTest::newRow("without both") << mirror << "0-0, 0-0";
    QTest::newRow("begin again") << begin + end + mirror + "<begin>105</begin>"
                                 << "105-160, 105-110";
}

void TestAChannelInfoXmlMirrors::edgesAreThoseAtTheMirrorsPlace()
{
    QFETCH(QByteArray, body);
    QTEST(outlines(read("<range>" + body + "</range>")), "outlines");
}

void TestAChannelInfoXmlMirrors::onlyTheFirstBeginAndEndAreReplaced()
{
    // The later ones of the copy override what was replaced, in any spelling, and nested ones are another range's.
    QCOMPARE(outlines(read("<range><begin>1</begin><end>2</end><begin>100</begin><end>110</end>" + mirrors({50}) +
                           "</range>")),
             QStringLiteral("100-110, 100-110"));
    QCOMPARE(outlines(read("<range><BEGIN>100</BEGIN><End>110</End>" + mirrors({50}) + "</range>")),
             QStringLiteral("150-160, 100-110"));
    QCOMPARE(outlines(read("<range><Begin>1</Begin><begin>100</begin><end>110</end>" + mirrors({50}) + "</range>")),
             QStringLiteral("100-160, 100-110"));
    QCOMPARE(outlines(read("<range><range><begin>1</begin><end>2</end></range><begin>100</begin><end>110</end>" +
                           mirrors({50}) + "</range>")),
             QStringLiteral("150-160 { 1-2 }, 100-110 { 1-2 }"));
}

void TestAChannelInfoXmlMirrors::replacedTextsAreReplacedWhole()
{
    for (const char *begin :
         {"100<!-- c --> MHz", "<![CDATA[100]]>", "<!-- c -->100", "<![CDATA[100]]> MHz", "1<b>00</b>"}) {
        QCOMPARE(outlines(read("<range><begin>" + QByteArray(begin) + "</begin><end>110</end>" + mirrors({50}) +
                               "</range>")),
                 QStringLiteral("150-160, 100-110"));
    }
    QCOMPARE(outlines(read("<range><begin/><end>10</end>" + mirrors({50}) + "</range>")),
             QStringLiteral("50-60, 0-10"));
}

void TestAChannelInfoXmlMirrors::everySecondMirrorStaysInACopy_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("begins"); // of the children of the root, in order
    QTest::newRow("two") << mirrors({20, 40}) << "160 120 180 140 100";
    QTest::newRow("three") << mirrors({10, 20, 40}) << "130 110 140 120 160 140 100";
    // Four leave the second and the fourth, and these the fourth.
    QTest::newRow("four") << mirrors({1, 2, 4, 8})
                          << "111 103 117 109 101 112 104 118 110 102 "
                             "114 106 120 112 104 118 110 124 116 108 100";
    const QByteArray nested = "<range label=\"n\"><mirror>1 MHz</mirror></range>";
    // A nested mirror can't be removed: the walk passes it by, so that what follows is met again.
    QTest::newRow("nested, then one") << nested + mirrors({20}) << "120 100";
    QTest::newRow("one, then nested") << mirrors({20}) + nested << "120 100";
    QTest::newRow("nested, then two") << nested + mirrors({20, 40}) << "160 120 180 140 100";
    QTest::newRow("nested between two") << mirrors({20}) + nested + mirrors({40}) << "120 140 100";
    QTest::newRow("two, then nested") << mirrors({20, 40}) + nested << "160 120 180 140 100";
    // In an element that isn't read, a mirror counts all the same.
    QTest::newRow("hidden between two") << mirrors({20}) + "<x><mirror>1 MHz</mirror></x>" + mirrors({40})
                                        << "120 140 100";
    // It leaves the search result along with the mirror that it is in.
    QTest::newRow("in a mirror, then one")
        << "<mirror>50 MHz<mirror/></mirror>" + mirrors({20}) << "170 150 140 120 100";
}

void TestAChannelInfoXmlMirrors::everySecondMirrorStaysInACopy()
{
    QFETCH(QByteArray, body);
    const Reading reading = read(range(body));
    QStringList begins;
    for (AChannelInfo *node : reading.nodes)
        begins.append(QString::number(node->beginFrequency().floatValue(AFrequency::MHz)));
    QTEST(begins.join(QLatin1Char(' ')), "begins");
    for (int row = 0; row < reading.root->childCount(); ++row)
        QCOMPARE(reading.nodes.at(row), reading.root->child(row));
}

void TestAChannelInfoXmlMirrors::mirrorsOfAnotherSpellingStayInACopy()
{
    QCOMPARE(outlines(read(range("<mirror>10 MHz</mirror><Mirror>20 MHz</Mirror>"))),
             QStringLiteral("a 130-140, a 110-120, a 130-140, a 120-130, a 100-110"));
    // Two of the same spelling behind one of another: the second of the two stays as well.
    const Reading reading = read(range("<MIRROR>1 MHz</MIRROR><mirror>10 MHz</mirror><mirror>20 MHz</mirror>"));
    QStringList begins;
    for (AChannelInfo *node : reading.nodes)
        begins.append(QString::number(node->beginFrequency().floatValue(AFrequency::MHz)));
    QCOMPARE(begins.join(QLatin1Char(' ')),
             QStringLiteral("131 111 141 121 101 131 111 131 130 110 141 121 141 140 120 100"));
}

void TestAChannelInfoXmlMirrors::nestedMirrorsTakeEffectInTheCopy()
{
    const QByteArray inner = "<range label=\"n\"><begin>102</begin><end>103</end><mirror>4 MHz</mirror></range>";
    QCOMPARE(outlines(read(range(inner + mirrors({5})))),
             QStringLiteral("a 105-115 { n 106-107 }, a 100-110 { n 106-107, n 102-103 }"));
    QCOMPARE(outlines(read(range(mirrors({-5}) + inner))),
             QStringLiteral("a 95-105 { n 102-103 }, a 100-110 { n 106-107, n 102-103 }"));
}

void TestAChannelInfoXmlMirrors::anOutermostMirrorCopiesTheProfile()
{
    AProfile profile;
    profile.setId(QStringLiteral("plan"));
    profile.setLabel(QStringLiteral("P"), QString());
    profile.setDescription(QStringLiteral("d"), QString());
    profile.setRange(megahertz(100), megahertz(200));
    QDomDocument document;
    document.setContent(QByteArray("<channels><channels start=\"110 MHz\"/><mirror>500 MHz</mirror>"
                                   "<range label=\"in\"><begin>150</begin><end>160</end></range></channels>"));
    profile.setChannelData(document.documentElement());
    const NodePtr root = makeRoot();
    QVERIFY(AChannelInfo::fromProfile(&profile, root.get(), true, false));
    QCOMPARE(root->childCount(), 2);
    QCOMPARE(outline(root->child(0)), QStringLiteral("P 600-700"));
    QCOMPARE(outline(root->child(1)), QStringLiteral("P 100-200 { in 150-160 }"));
    for (int row = 0; row < 2; ++row) {
        QCOMPARE(root->child(row)->comment(), QStringLiteral("d"));
        QVERIFY(root->child(row)->selectable());
        QCOMPARE(root->child(row)->data(AChannelInfo::ColumnProfileId).toString(), QStringLiteral("plan"));
    }
    QCOMPARE(root->child(0)->channelDefinitions().first().value(QStringLiteral("start")).toString(),
             QStringLiteral("610.000000 MHz"));
}

void TestAChannelInfoXmlMirrors::anOutermostMirrorOfASectionWithItsOwnEdgesStaysThere()
{
    // The profile's edges are the first ones of the copy, and the section's own override them there too.
    AProfile profile;
    profile.setId(QStringLiteral("plan"));
    profile.setRange(megahertz(100), megahertz(200));
    const auto read = [&profile](const QByteArray &body) {
        QDomDocument document;
        document.setContent("<channels>" + body + "</channels>");
        profile.setChannelData(document.documentElement());
        Reading reading;
        reading.root = makeRoot();
        AChannelInfo::fromProfile(&profile, reading.root.get(), true, false);
        return outlines(reading);
    };
    QCOMPARE(read("<begin>120</begin><end>130</end><mirror>500 MHz</mirror>"), QStringLiteral("120-130, 120-130"));
    QCOMPARE(read("<begin>120</begin><mirror>500 MHz</mirror>"), QStringLiteral("120-700, 120-200"));
    QCOMPARE(read("<mirror>500 MHz</mirror><begin>120</begin>"), QStringLiteral("120-700, 120-200"));
    QCOMPARE(read("<end>130</end><mirror mode=\"absolute\">10 MHz</mirror>"), QStringLiteral("10-130, 100-130"));
}

void TestAChannelInfoXmlMirrors::copiesAreExpandedAsTheirRangeIs()
{
    const QByteArray xml = range("<channels width=\"2 MHz\" count=\"2\"/><range label=\"n\">"
                                 "<channels start=\"101 MHz\" width=\"1 MHz\"/></range>" +
                                 mirrors({50}));
    QCOMPARE(outlines(read(xml, {false, true, true})),
             QStringLiteral("a 150-160 { n 0-0 { 1 151-152 }, 1 150-152, 2 152-154 }, "
                            "a 100-110 { n 0-0 { 1 101-102 }, 1 100-102, 2 102-104 }"));
    const Reading kept = read(xml, {false, true, false});
    for (AChannelInfo *node : kept.nodes)
        QCOMPARE(node->channelDefinitions().size(), 1);
}

void TestAChannelInfoXmlMirrors::withoutAParentCopiesAreDiscardedAsWell()
{
    QDomDocument document;
    QVERIFY(document.setContent(range(mirrors({10, 20, 30}) + "<range>" + mirrors({1}) + "</range>")));
    QDomElement element = document.documentElement();
    QVERIFY(AChannelInfo::processXmlElement(&element, nullptr, true, true, true).isEmpty());
}

void TestAChannelInfoXmlMirrors::ordinaryPlansAreCopiedWhole()
{
    // A thousand ranges of twenty, each with a copy, is more than any plan holds.
    QByteArray xml = "<range>";
    for (int i = 0; i < 1000; ++i)
        xml += "<range label=\"x\">" + QByteArray("<range><channels start=\"1 MHz\"/></range>").repeated(20) +
               mirrors({10}) + "</range>";
    xml += "</range>";
    g_warnings.clear();
    qInstallMessageHandler(collectWarnings);
    const Reading reading = read(xml);
    qInstallMessageHandler(nullptr);
    QCOMPARE(g_warnings, QStringList());
    QCOMPARE(reading.only()->childCount(), 2000);
    for (int row = 0; row < 2000; ++row)
        QCOMPARE(reading.only()->child(row)->childCount(), 20);
}

void TestAChannelInfoXmlMirrors::runawayMirrorsEnd_data()
{
    QTest::addColumn<QByteArray>("xml");
    const auto nested = [](int levels, const QByteArray &before, const QByteArray &after) {
        return ("<range>" + before).repeated(levels) + (after + "</range>").repeated(levels);
    };
    QTest::newRow("40 levels") << nested(40, "<mirror>0</mirror>", QByteArray());
    QTest::newRow("40 levels, behind") << nested(40, QByteArray(), "<mirror>0</mirror>");
    QTest::newRow("40 levels with edges")
        << nested(40, "<begin>1</begin><end>2</end><channels start=\"1 MHz\"/><mirror>0</mirror>", QByteArray());
    QTest::newRow("900 levels") << nested(900, "<mirror>0</mirror>", QByteArray());
    QTest::newRow("20 levels with three")
        << nested(20, "<mirror>0</mirror><mirror>0</mirror><Mirror>0</Mirror>", QByteArray());
    QTest::newRow("4096 in one range") << "<range>" + QByteArray("<mirror>0</mirror>").repeated(4096) + "</range>";
    QByteArray spellings;
    for (int i = 0; i < 64; ++i) {
        QByteArray name = "mirror";
        for (int k = 0; k < 6; ++k) {
            if (i & (1 << k))
                name[k] = char(name.at(k) - 32);
        }
        spellings += "<" + name + ">0</" + name + ">";
    }
    QTest::newRow("64 spellings in one range") << "<range>" + spellings + "</range>";
    QTest::newRow("many elements in many copies") << "<range>" + QByteArray("<range/>").repeated(20000) +
                                                         QByteArray("<mirror>0</mirror>").repeated(500) + "</range>";
    QTest::newRow("many skipped elements in many copies")
        << "<range>" + QByteArray("<x/>").repeated(20000) + QByteArray("<mirror>0</mirror>").repeated(500) + "</range>";
}

void TestAChannelInfoXmlMirrors::runawayMirrorsEnd()
{
    QFETCH(QByteArray, xml);
    g_warnings.clear();
    qInstallMessageHandler(collectWarnings);
    const std::clock_t start = std::clock();
    const auto elapsedMs = [start] { return qint64(std::clock() - start) * 1000 / CLOCKS_PER_SEC; };
    {
        const Reading reading = read(xml, {false, true, false});
        QVERIFY2(elapsedMs() < kTimeBoundMs, qPrintable(QString::number(elapsedMs())));
        QVERIFY(reading.root->channels(0).size() < kNodeBound);
        // The range itself is read, whatever became of its copies.
        QVERIFY(!reading.nodes.isEmpty());
        QCOMPARE(reading.root->child(reading.root->childCount() - 1), reading.nodes.last());
        QCOMPARE(reading.elementAfter, reading.elementBefore);
    }
    qInstallMessageHandler(nullptr);
    QVERIFY2(elapsedMs() < kTimeBoundMs, qPrintable(QString::number(elapsedMs())));
    QCOMPARE(g_warnings.size(), 1);

    // Without copies there is nothing to warn of.
    g_warnings.clear();
    qInstallMessageHandler(collectWarnings);
    const Reading plain = read(xml, {false, false, false});
    qInstallMessageHandler(nullptr);
    QCOMPARE(g_warnings, QStringList());
    QCOMPARE(plain.root->childCount(), 1);
}

void TestAChannelInfoXmlMirrors::runawayMirrorsDoNotMultiplyLongTexts_data()
{
    QTest::addColumn<QByteArray>("xml");
    const QByteArray text(2500, 'x');
    const QByteArray bomb = QByteArray("<mirror>0</mirror>").repeated(500);
    QTest::newRow("comment") << "<range><comment>" + text + "</comment>" + bomb + "</range>";
    QTest::newRow("colour") << "<range><color>" + text + "</color><channels/>" + bomb + "</range>";
    QTest::newRow("label") << "<range label=\"" + text + "\">" + bomb + "</range>";
    QTest::newRow("nested label") << "<range><range label=\"" + text + "\"/>" + bomb + "</range>";
    QTest::newRow("edges") << "<range><begin>" + text + "</begin><end>" + text + "</end>" + bomb + "</range>";
    QTest::newRow("start") << "<range><channels start=\"" + text + "\"/>" + bomb + "</range>";
    const QByteArray longText(300000, '1');
    const QByteArray mirrors = QByteArray("<mirror>0</mirror>").repeated(32);
    QTest::newRow("text behind an element") << "<range><comment><b/>" + longText + "</comment>" + mirrors + "</range>";
    QTest::newRow("edge behind an element")
        << "<range><begin/><begin><b/>" + longText + "</begin>" + mirrors + "</range>";
    QTest::newRow("attribute") << "<range><channels width=\"" + longText + "\"/>" + mirrors + "</range>";
    QTest::newRow("attributes") << "<range>" + ("<x a='" + QByteArray(9999, 'x') + "' b=''/>").repeated(30) + mirrors +
                                       "</range>";
    QTest::newRow("comments") << "<range>" + QByteArray("<!---->").repeated(100000) + mirrors + "</range>";
    QTest::newRow("instructions") << "<range>" + QByteArray("<?x?>").repeated(100000) + mirrors + "</range>";
    QTest::newRow("definitions") << "<range>" + QByteArray("<channels/>").repeated(1000) + mirrors + "</range>";
    QTest::newRow("text that is skipped") << "<range>" + text + "<!--" + text + "-->" + bomb + "</range>";
}

void TestAChannelInfoXmlMirrors::runawayMirrorsDoNotMultiplyLongTexts()
{
    QFETCH(QByteArray, xml);
    const profilefiles::ChildResult result = profilefiles::inChild([&xml] {
        qInstallMessageHandler(collectWarnings);
        const Reading reading = read(xml);
        return reading.nodes.isEmpty() ? 1 : 0;
    });
    QCOMPARE(result.status, 0);
    QVERIFY2(result.megabytes < kMemoryBoundMegabytes, qPrintable(QString::number(result.megabytes)));
    QVERIFY2(result.milliseconds < kTimeBoundMs, qPrintable(QString::number(result.milliseconds)));
}

QTEST_GUILESS_MAIN(TestAChannelInfoXmlMirrors)
#include "tst_achannelinfo_xml_mirrors.moc"
