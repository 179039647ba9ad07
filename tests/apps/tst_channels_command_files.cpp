#include "core/aprofile.h"

#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/programrun.h"
#include "channel/efisfiles.h"
#include "channel/randomtree.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>
#include <QtXml/QDomDocument>

#include <memory>

#include <sys/stat.h>

// The command's other files: the plan as a channel section, and EFIS exports.

using efisfiles::day;
using efisfiles::line;
using efisfiles::oneWay;
using efisfiles::twoWay;
using Tree = std::unique_ptr<AChannelInfo>;

namespace {

Tree emptyRoot()
{
    return std::make_unique<AChannelInfo>(nullptr, AChannelInfo::Generic, AFrequency(), AFrequency(), QString(), false);
}

// The tree of a document that the command printed, below a root of its own.
Tree readDocument(const QByteArray &text)
{
    Tree root = emptyRoot();
    QDomDocument document;
    if (document.setContent(text)) {
        QDomElement element = document.documentElement();
        AChannelInfo::processXmlElement(&element, root.get(), false, true, false);
    }
    return root;
}

QByteArray profileFile(const QByteArray &id, const QByteArray &section)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<profile id=\"" + id + "\"><label>" + id +
           "</label><begin>0</begin><end>1000</end><channels>" + section + "</channels></profile>\n";
}

} // namespace

class TestChannelsCommandFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void thePlanAsXmlReadsBackAsTheSamePlan();
    void randomTreesComeBackThroughTheCommand();
    void thePlanAsXmlHoldsAllProfilesInOneRange();
    void theSamePlanGivesTheSameXml();
    void aPlanWithoutAnythingIsAnEmptyRange();
    void mirrorsAreWrittenAsTheirCopies();
    void expandedChannelsAreWrittenByTheirType();
    void aQuarterOfAMillionChannelsAreExpandedAsXml();

    void anExportIsARangeNamedAfterItsFile();
    void exportsStandBesideProfiles();
    void anExportAsXmlReadsBackAsTheSamePlan();
    void rangesThatAReaderDropsAreCounted();
    void namesThatXmlCanNotHoldAreCleaned();
    void anExportAsJson();
    void filesThatGiveNothingAreNamed_data();
    void filesThatGiveNothingAreNamed();
    void goodFilesArePrintedBesideBadOnes();
    void wrongUsageIsRefused_data();
    void wrongUsageIsRefused();

private:
    std::unique_ptr<Folder> m_folder;
};

void TestChannelsCommandFiles::thePlanAsXmlReadsBackAsTheSamePlan()
{
    const QString file =
        m_folder->write("a.profile", profileFile("a", "<color>red</color><channels start='1 MHz' count='3'/>"
                                                      "<range label='b' type='provider' selectable='1'>"
                                                      "<begin>5</begin><end>6</end><comment>&lt;c&gt;</comment>"
                                                      "</range>"));
    const Run result = run({"channels", "--format", "xml", file});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.output.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Range>\n  <Range "));

    const Tree expected = emptyRoot();
    const std::unique_ptr<AProfile> profile(AProfile::fromFile(file));
    QVERIFY(AChannelInfo::fromProfile(profile.get(), expected.get(), true, false));
    const Tree root = readDocument(result.output.toUtf8());
    QCOMPARE(root->childCount(), 1);
    QVERIFY(*root->child(0) == *expected);
    QCOMPARE(root->child(0)->child(0)->childCount(), 1);
    QCOMPARE(root->child(0)->child(0)->channelDefinitions().size(), 1);
}

void TestChannelsCommandFiles::randomTreesComeBackThroughTheCommand()
{
    // One call of the program for all of them. A profile sets the outermost label.
    constexpr int kTrees = 60;
    const Tree expected = emptyRoot();
    QStringList arguments{"channels", "--format", "xml"};
    for (quint32 i = 0; i < kTrees; ++i) {
        Tree tree(RandomTree(i + 1).make());
        AProfile profile;
        profile.setId(QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0')));
        profile.setLabel(tree->label(), QString());
        QDomDocument document;
        profile.setChannelData(tree->toDomNode(&document));
        const QString file = m_folder->path(QStringLiteral("%1.profile").arg(i));
        QVERIFY(profile.saveToFile(file));
        arguments.append(file);
        expected->appendChild(tree.release());
    }
    const Run result = run(arguments);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const Tree root = readDocument(result.output.toUtf8());
    QCOMPARE(root->childCount(), 1);
    QCOMPARE(root->child(0)->childCount(), kTrees);
    for (int row = 0; row < kTrees; ++row)
        QVERIFY2(*root->child(0)->child(row) == *expected->child(row), qPrintable(QString::number(row)));

    // The output is itself the section of a profile.
    const QString again = m_folder->write(
        "again.profile", "<profile id=\"again\"><channels>" +
                             result.output.mid(result.output.indexOf("<Range>")).toUtf8() + "</channels></profile>");
    const Run second = run({"channels", "--format", "xml", again});
    QCOMPARE(second.errors, QString());
    const Tree secondRoot = readDocument(second.output.toUtf8());
    QVERIFY(*secondRoot->child(0)->child(0)->child(0) == *root->child(0));
}

void TestChannelsCommandFiles::thePlanAsXmlHoldsAllProfilesInOneRange()
{
    const QString b = m_folder->write("b.profile", profileFile("b", ""));
    const QString a =
        m_folder->write("a.profile", profileFile("a", "<range label='c'><begin>1</begin><end>2</end></range>"));
    const Run result = run({"channels", "--format", "xml", b, a});
    QDomDocument document;
    QVERIFY(document.setContent(result.output));
    QCOMPARE(document.documentElement().tagName(), QStringLiteral("Range"));
    QCOMPARE(document.documentElement().attributes().size(), 0);
    const Tree root = readDocument(result.output.toUtf8());
    QCOMPARE(efisfiles::outline(root.get()), QStringLiteral("0-0 { 0-0 { a 0-1000 { c 1-2 }, b 0-1000 } }"));
    QVERIFY(root->child(0)->child(0)->selectable());
}

void TestChannelsCommandFiles::theSamePlanGivesTheSameXml()
{
    const QStringList arguments{"channels", "--format", "xml", AVELDORAN_EXAMPLES_DIR "/data/profiles"};
    const Run first = run(arguments);
    QCOMPARE(first.exitStatus, 0);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(run(arguments).output, first.output);
}

void TestChannelsCommandFiles::aPlanWithoutAnythingIsAnEmptyRange()
{
    const Run result = run({"channels", "--format", "xml", "/nonexistent"});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.output, QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Range>\n</Range>\n"));
}

void TestChannelsCommandFiles::mirrorsAreWrittenAsTheirCopies()
{
    const QString file = m_folder->write("a.profile", profileFile("a", "<range label='m'><begin>1</begin><end>2</end>"
                                                                       "<mirror>45 MHz</mirror></range>"));
    const Run result = run({"channels", "--format", "xml", file});
    QVERIFY(!result.output.contains("mirror"));
    QCOMPARE(efisfiles::outline(readDocument(result.output.toUtf8()).get()),
             QStringLiteral("0-0 { 0-0 { a 0-1000 { m 46-47, m 1-2 } } }"));
}

void TestChannelsCommandFiles::expandedChannelsAreWrittenByTheirType()
{
    const QString file =
        m_folder->write("a.profile", profileFile("a", "<channels start='1 MHz' width='1 MHz' first='7' count='2'/>"));
    const Run result = run({"channels", "--expand", "--format", "xml", file});
    QCOMPARE(result.output.count("type=\"autochannel\""), 2);
    QVERIFY(!result.output.contains("<channels"));
    QCOMPARE(efisfiles::outline(readDocument(result.output.toUtf8()).get()),
             QStringLiteral("0-0 { 0-0 { a 0-1000 { 7 1-2, 8 2-3 } } }"));
}

void TestChannelsCommandFiles::aQuarterOfAMillionChannelsAreExpandedAsXml()
{
    const QByteArray section = "<channels start='1 MHz' width='1 Hz' count='%1'/>";
    const auto write = [&](const char *id, const char *count) {
        return m_folder->write(QByteArray(id) + ".profile", profileFile(id, QByteArray(section).replace("%1", count)));
    };
    const QStringList command{"channels", "--expand", "--format", "xml"};
    const QString large = write("large", "250001"); // the file that has too much is named
    verifyFailed(run(command + QStringList{write("a", "1"), large}),
                 large + ": 250001 defined channels, expected at most 250000 to be expanded");
    verifyFailed(run(command + QStringList{write("a", "150000"), write("b", "100001")}),
                 "channels: 250001 defined channels, expected at most 250000 to be expanded");
}

void TestChannelsCommandFiles::anExportIsARangeNamedAfterItsFile()
{
    const QString file = m_folder->write("ECA table.2026.csv", "header\n" + oneWay("87.5 - 108 MHz", "UKW – FM") +
                                                                   twoWay("935-960", "890-915", "GSM"));
    const Run result = run({"channels", "--efis", file});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        result.output,
        QStringLiteral("ECA table.2026                        87.5 MHz to 960 MHz             Generic, selectable\n"
                       "  UKW – FM                            87.5 MHz to 108 MHz             Provider, selectable\n"
                       "  Uplink                              890 MHz to 915 MHz              Generic, selectable\n"
                       "    GSM                               890 MHz to 915 MHz              Provider, selectable\n"
                       "  Downlink                            935 MHz to 960 MHz              Generic, selectable\n"
                       "    GSM                               935 MHz to 960 MHz              Provider, selectable\n"));
}

void TestChannelsCommandFiles::exportsStandBesideProfiles()
{
    const QString profile = m_folder->write("p.profile", profileFile("p", ""));
    const QString a = m_folder->write("a.csv", oneWay("5-6", "x"));
    const QString b = m_folder->write("b.csv", oneWay("7-8", "y"));
    const Run result = run({"channels", "--stacked", "--efis", b, profile, "--efis", a});
    QCOMPARE(result.exitStatus, 0);
    QStringList lines;
    for (const QString &text : result.output.split('\n', Qt::SkipEmptyParts))
        lines.append(text.simplified().section(' ', 0, 1));
    QCOMPARE(lines, QStringList({"0 p", "1 a", "2 x", "1 b", "2 y"})); // p overlaps both
}

void TestChannelsCommandFiles::anExportAsXmlReadsBackAsTheSamePlan()
{
    QByteArray content;
    for (int i = 0; i < 200; ++i)
        content += (i % 3 == 0 ? oneWay(QByteArray::number(i) + '-' + QByteArray::number(i + 2), "n")
                               : twoWay(QByteArray::number(i) + '-' + QByteArray::number(i + 1),
                                        QByteArray::number(i * 40) + " - 9000 MHz", QByteArray::number(i)));
    const Run result = run({"channels", "--format", "xml", "--efis", m_folder->write("e.csv", content)});
    QCOMPARE(result.errors, QString());
    const efisfiles::Import import = efisfiles::importFrom(content);
    QVERIFY(import.result);
    import.root->setData(AChannelInfo::ColumnName, QStringLiteral("e"));
    const Tree root = readDocument(result.output.toUtf8());
    const AChannelInfo *back = root->child(0)->child(0);
    QVERIFY(*back == *import.root);
}

void TestChannelsCommandFiles::rangesThatAReaderDropsAreCounted()
{
    // Of a single frequency the group ends where the range in it begins. The range that stands before its parent's
    // edges is taken as it comes, and written behind them.
    const QString efis = m_folder->write("e.csv", twoWay("100", "50-60", "x") + twoWay("200-210", "51-61", "y"));
    const QString profile = m_folder->write(
        "p.profile", profileFile("p", "<range label='a'><range label='b'><begin>5</begin><end>6</end>"
                                      "<range label='c'/></range><begin>1</begin><end>2</end></range>"));
    const Run result = run({"channels", "--format", "xml", "--efis", efis, profile});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.errors, QString());
    const QString dropped(
        ": dropped by whoever reads this plan: %1 at or outside the edges of the one around, with all "
        "within\n");
    QCOMPARE(result.told, profile + dropped.arg("2 ranges") + efis + dropped.arg("1 range"));
    QCOMPARE(result.output.count("<Range"), 13); // with the one around them
    QCOMPARE(efisfiles::outline(readDocument(result.output.toUtf8()).get()),
             QStringLiteral("0-0 { 0-0 { p 0-1000 { a 1-2 }, e 50-210 { Uplink 50-61 { x 50-60, y 51-61 }, "
                            "Downlink 100-100, Downlink 200-210 { y 200-210 } } } }"));
}

void TestChannelsCommandFiles::namesThatXmlCanNotHoldAreCleaned()
{
    const QByteArray name = QByteArray("a\0\x01\x1b<&>\t\xef\xbf\xbe\xf0\x9f\x93\xa1z", 17);
    const QString file = m_folder->write("e.csv", oneWay("5-6", name));
    const Run xml = run({"channels", "--format", "xml", "--efis", file});
    QCOMPARE(xml.exitStatus, 0);
    const Tree root = readDocument(xml.output.toUtf8());
    QCOMPARE(root->childCount(), 1);
    QCOMPARE(root->child(0)->child(0)->child(0)->label(),
             QStringLiteral("a<&>\t") + QString::fromUcs4(U"\U0001F4E1", 1) + QLatin1Char('z'));
    const Run text = run({"channels", "--efis", file});
    for (const QChar c : text.output)
        QVERIFY(c == QLatin1Char('\n') || c.category() != QChar::Other_Control);
}

void TestChannelsCommandFiles::anExportAsJson()
{
    const Run result = run({"channels", "--format", "json", "--efis", m_folder->write("e.csv", oneWay("5-6", "ä"))});
    const QJsonArray ranges = jsonOf(result);
    QCOMPARE(ranges.size(), 2);
    QCOMPARE(ranges.at(1).toObject(), QJsonObject({{"depth", 1},
                                                   {"label", "ä"},
                                                   {"type", "Provider"},
                                                   {"beginHz", 5000000},
                                                   {"endHz", 6000000},
                                                   {"selectable", true}}));
}

void TestChannelsCommandFiles::filesThatGiveNothingAreNamed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("reason");
    const QString nothing = QStringLiteral("no line is an allocation that is valid today");
    QTest::newRow("missing") << "missing.csv"
                             << "can't be read: No such file or directory";
    QTest::newRow("directory") << "."
                               << "can't be read: file to open is a directory";
    QTest::newRow("empty") << "empty.csv" << nothing;
    QTest::newRow("expired") << "expired.csv" << nothing;
    QTest::newRow("UTF-16") << "utf16.csv" << nothing;
    QTest::newRow("endless") << "/dev/zero"
                             << "can't be read: Not a regular file";
    QTest::newRow("waiting") << "fifo"
                             << "can't be read: Not a regular file";
}

void TestChannelsCommandFiles::filesThatGiveNothingAreNamed()
{
    QFETCH(QString, file);
    QFETCH(QString, reason);
    m_folder->write("empty.csv", "");
    m_folder->write("expired.csv", line("no", "5-6", "", "a", day(-2), day(-1)));
    m_folder->write("utf16.csv", QByteArray("\xff\xfen\0o\0;\0", 8).repeated(100));
    QCOMPARE(::mkfifo(QFile::encodeName(m_folder->path("fifo")).constData(), 0600), 0);
    const QString name = QDir(m_folder->path()).absoluteFilePath(file);
    const Run result = run({"channels", "--efis", name});
    verifyFailed(result, QStringLiteral("%1: %2").arg(name, reason));
}

void TestChannelsCommandFiles::goodFilesArePrintedBesideBadOnes()
{
    const QString good = m_folder->write("good.csv", oneWay("5-6", "a"));
    const QString bad = m_folder->write("bad.csv", "");
    for (const QStringList &order : {QStringList{good, bad}, QStringList{bad, good}}) {
        const Run result = run({"channels", "--efis", order.first(), "--efis", order.last()});
        QCOMPARE(result.exitStatus, 1);
        QCOMPARE(result.output.count('\n'), 2);
        QCOMPARE(result.errors.count('\n'), 1);
        QVERIFY(result.errors.startsWith("aveldoran: " + bad));
    }
}

void TestChannelsCommandFiles::wrongUsageIsRefused_data()
{
    addWrongUsageColumns();
    QTest::newRow("nothing to read") << QStringList{"--format", "xml"} << "a profile file or directory is missing";
    QTest::newRow("no file") << QStringList{"--efis"} << "missing value after '--efis'";
    QTest::newRow("unknown format") << QStringList{"--format", "XML", "."}
                                    << "--format expects text, json or xml, not 'XML'";
    QTest::newRow("levels as xml") << QStringList{"--stacked", "--format", "xml", "."}
                                   << "the xml format has no place for stacking levels";
}

void TestChannelsCommandFiles::wrongUsageIsRefused()
{
    verifyRefused({"channels"});
}

QTEST_GUILESS_MAIN(TestChannelsCommandFiles)
#include "tst_channels_command_files.moc"
