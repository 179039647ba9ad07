#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/pixels.h"
#include "apps/programrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

#include <QtGui/QImage>

#include <unistd.h>

namespace {

constexpr char kExamples[] = AVELDORAN_EXAMPLES_DIR "/data/limits";
constexpr char kTrace[] = AVELDORAN_EXAMPLES_DIR "/data/traces/broadband.csv";

// From 100 to 200 MHz: -50 dBm up to 120 MHz, from there on falling to -70 dBm; -60 dBm from 190 MHz on.
constexpr char kMask[] = "<data><limit name='Mask' begin='100000000' end='200000000' measureunit='0' color='#00aa00'>"
                         "<description>Of a test</description>"
                         "<section beginFrequency='100000000' endFrequency='120000000' beginValue='-50'/>"
                         "<section beginFrequency='120000000' endFrequency='180000000' beginValue='-50'"
                         " endValue='-70' interpolation='1'/>"
                         "<level frequency='190000000'>-60</level></limit></data>";

} // namespace

class TestLimitsCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void listsLimitsWithTheirPieces();
    void namesEachFileWithItsAmount();
    void readsDirectories();
    void namesWhatItCanNotRead_data();
    void namesWhatItCanNotRead();
    void keepsTerminalControlOutOfItsOutput();

    void tellsWhereATraceExceedsALimit();
    void aTraceBelowTheLimitIsKept();
    void aLimitCountsInItsRangeAlone();
    void convertsBetweenUnitsOfAFamily();
    void gapsAndInfinitiesInATrace();
    void unitsOfDifferentFamiliesAreRefused();
    void aTraceBesideTheLimitIsNoPass();
    void findsTheCarriersOfTheExampleTrace();
    void namesATraceThatCanNotBeRead();

    void printsJson();
    void printsVerdictsAsJson_data();
    void printsVerdictsAsJson();
    void excessesInJsonHaveTheUnitOfTheTrace();
    void jsonOfNothingIsAnEmptyList();

    void rewritesAsAnEditorDoes();
    void rewritesAFileOntoItself();
    void aFailedRewriteLeavesTheOldFile();
    void aFullDiskIsReported();

    void drawsLimits();
    void drawsATraceUnderItsLimit();
    void limitsThatCanNotBeDrawnTogetherAreNamed();
    void drawsEveryExample();

    void reportsOutputThatCanNotBeWritten();
    void namesWithPlaceholdersStayWhole();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    Run check(const QByteArray &trace, const QByteArray &limits = kMask, const QStringList &options = {}) const
    {
        return run(
            QStringList{"limits", "--check", m_folder->write("trace.csv", trace), m_folder->write("mask.xml", limits)} +
            options);
    }

    QString heading() const { return m_folder->path("mask.xml") + ": 1 limit\n"; }

    std::unique_ptr<Folder> m_folder;
};

void TestLimitsCommand::listsLimitsWithTheirPieces()
{
    const QString mask = m_folder->write("mask.xml", kMask);
    const QString other = m_folder->write("other.xml", "<data><limit end='1000' measureunit='99'/>"
                                                       "<limit name='Field'><section beginValue='1' endValue='2'"
                                                       " interpolation='2'/></limit></data>");
    const Run result = run({"limits", mask, other});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        result.output,
        mask +
            ": 1 limit\n"
            "  Mask  100 MHz to 200 MHz  dBm  # Of a test\n"
            "    100 MHz to 120 MHz              -50.00 dBm\n"
            "    120 MHz to 180 MHz              -50.00 dBm to -70.00 dBm, linear\n"
            "    at 190 MHz                      -60.00 dBm, step\n" +
            other +
            QStringLiteral(": 2 limits\n  -  0 Hz to 1 kHz  unit 99\n"
                           "  Field  0 Hz to 30000 MHz  dB\u00b5V/m\n"
                           "    0 Hz to 0 Hz                    1.00 dB\u00b5V/m to 2.00 dB\u00b5V/m, logarithmic\n"));
}

void TestLimitsCommand::namesEachFileWithItsAmount()
{
    const QString empty = m_folder->write("empty.xml", "<data/>");
    const QString one = m_folder->write("one.xml", "<data><limit name=\"a\" begin=\"1 MHz\" end=\"2 MHz\"/></data>");
    const QString trace = m_folder->write("a.csv", "1 MHz;-50\n3 MHz;-60\n");
    for (const QStringList &check : {QStringList(), QStringList{"--check", trace}}) {
        const Run result = run(QStringList{"limits"} + check + QStringList{empty, one, one});
        QStringList headings = result.output.split('\n');
        headings.erase(std::remove_if(headings.begin(), headings.end(),
                                      [](const QString &line) { return line.isEmpty() || line.startsWith(' '); }),
                       headings.end());
        QCOMPARE(headings, (QStringList{empty + ": 0 limits", one + ": 1 limit", one + ": 1 limit"}));
    }
}

void TestLimitsCommand::readsDirectories()
{
    const Run result = run({"limits", kExamples});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    for (const char *name : {"EN 55032 class A, conducted, average", "EN 55032 class B, radiated, 3 m",
                             "ICNIRP 1998, general public, electric field", "FM broadcast emissions, 100.1 MHz",
                             "DVB-T mask, channel 30, sensitive"})
        QVERIFY2(result.output.contains(QLatin1String(name)), name);
    QVERIFY(result.output.indexOf("en55032-conducted.xml") < result.output.indexOf("tv-broadcast-masks.xml"));

    const Run empty = run({"limits", m_folder->path()});
    QCOMPARE(empty.exitStatus, 1);
    QVERIFY(empty.errors.contains("no limit files (*.xml) in this directory"));
}

void TestLimitsCommand::namesWhatItCanNotRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("missing") << QByteArray() << "can't be read: No such file or directory";
    QTest::newRow("no XML") << QByteArray("Hello") << "Could not parse file";
    QTest::newRow("no limits") << QByteArray("<calibrations/>") << "holds no limits";
}

void TestLimitsCommand::namesWhatItCanNotRead()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    const QString bad = m_folder->path("bad.xml");
    if (!content.isEmpty())
        m_folder->write("bad.xml", content);
    const Run result = run({"limits", bad, m_folder->write("mask.xml", kMask)});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.contains(error) && result.errors.contains(bad), qPrintable(result.errors));
    QVERIFY(result.output.contains("Mask"));
}

void TestLimitsCommand::keepsTerminalControlOutOfItsOutput()
{
    const Run result = run({"limits", m_folder->write("a.xml", "<data><limit name='a&#10;b\xc2\x9b"
                                                               "31mc' measureunit='&#10;x'>"
                                                               "<description>d&#10;e</description></limit></data>")});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY2(result.output.contains(QStringLiteral("  a b\ufffd31mc  ")), qPrintable(result.output));
    QVERIFY(!result.output.contains(QChar(0x9b)));
    QCOMPARE(result.output.count('\n'), 2);
}

void TestLimitsCommand::tellsWhereATraceExceedsALimit()
{
    const Run result = check("Frequency [MHz];Level [dBm]\n"
                             "90;0\n100;-50\n101;-49.5\n105;-45\n106;-47.25\n110;-50.5\n"
                             "150;-60\n151;-59\n180;-69\n185;-69.9\n190;-60\n195;-59.5\n200;-55\n201;0\n");
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(
        result.output,
        heading() +
            QString(
                "  Mask: exceeded; 12 points compared\n"
                "    105 MHz           -45.00 dBm, limit -50.00 dBm, excess 5.00 dB  (3 points, 101 MHz to 106 MHz)\n"
                "    151 MHz           -59.00 dBm, limit -60.33 dBm, excess 1.33 dB  (2 points, 151 MHz to 180"
                " MHz)\n"
                "    200 MHz           -55.00 dBm, limit -60.00 dBm, excess 5.00 dB  (2 points, 195 MHz to 200 "
                "MHz)\n"));
}

// On the limit is not above it.
void TestLimitsCommand::aTraceBelowTheLimitIsKept()
{
    const Run result = check("100 MHz;-50\n120 MHz;-50\n150 MHz;-60\n200 MHz;-60\n");
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, heading() + "  Mask: kept; 4 points compared\n");
}

void TestLimitsCommand::aLimitCountsInItsRangeAlone()
{
    const Run result = check("100 MHz;0\n110 MHz;-60\n120 MHz;0\n",
                             "<data><limit name='a' begin='105000000' end='115000000' measureunit='0'>"
                             "<section beginFrequency='90000000' endFrequency='130000000' beginValue='-50'/>"
                             "</limit></data>");
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output, heading() + "  a: kept; 1 point compared\n");
}

void TestLimitsCommand::convertsBetweenUnitsOfAFamily()
{
    // 57 dBuV at 50 ohms are -49.99 dBm.
    const Run kept = check("Frequency;Level [dB\xc2\xb5V]\n110 MHz;56.9\n");
    QCOMPARE(kept.exitStatus, 0);
    const Run exceeded = check("Frequency;Level [dB\xc2\xb5V]\n110 MHz;57.1\n");
    QCOMPARE(exceeded.exitStatus, 1);
    QVERIFY2(exceeded.output.contains(QStringLiteral("57.10 dB\u00b5V, limit 56.99 dB\u00b5V, excess 0.11 dB")),
             qPrintable(exceeded.output));
    // In a linear unit the excess has that unit: -50 dBm are 10 nW.
    const Run linear = check("Frequency;Level [W]\n110 MHz;1e-7\n");
    QCOMPARE(linear.exitStatus, 1);
    QVERIFY2(linear.output.contains("100.00 nW, limit 10.00 nW, excess 90.00 nW"), qPrintable(linear.output));
}

void TestLimitsCommand::gapsAndInfinitiesInATrace()
{
    const Run result = check("101 MHz;-40\n102 MHz;nan\n103 MHz;-41\n104 MHz;-inf\n105 MHz;inf\n");
    QCOMPARE(result.exitStatus, 1);
    const QStringList lines = result.output.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.at(1), QString("  Mask: exceeded; 4 points compared"));
    QVERIFY(lines.at(2).contains("101 MHz") && lines.at(2).contains("(1 point)"));
    QVERIFY(lines.at(4).contains("inf dBm"));
}

void TestLimitsCommand::unitsOfDifferentFamiliesAreRefused()
{
    const Run result =
        run({"limits", "--check", m_folder->write("trace.csv", "100 MHz;-90\n"), m_folder->write("mask.xml", kMask),
             QLatin1String(kExamples) + "/en55032-radiated-above-1ghz.xml"});
    QCOMPARE(result.exitStatus, 1);
    const QString others = QLatin1String(kExamples) + "/en55032-radiated-above-1ghz.xml: 4 limits\n";
    QVERIFY2(result.output.startsWith(heading() + "  Mask: kept; 1 point compared\n" + others),
             qPrintable(result.output));
    QCOMPARE(result.output.count(": not checked; 0 points compared\n"), 4);
    QCOMPARE(result.errors.count('\n'), 4);
    QVERIFY(result.errors.contains("aveldoran: " + QLatin1String(kExamples) + "/en55032-radiated-above-1ghz.xml: EN "));
    QVERIFY(result.errors.contains(QStringLiteral("EN 55032 class B, above 1 GHz, average: the trace in dBm can't be"
                                                  " compared with a limit in dB\u00b5V/m")));
}

void TestLimitsCommand::aTraceBesideTheLimitIsNoPass()
{
    const Run result = check("1 MHz;-90\n2 MHz;-90\n");
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errors.contains("mask.xml: Mask: no point of the trace lies where it governs"));
}

void TestLimitsCommand::findsTheCarriersOfTheExampleTrace()
{
    const Run result =
        run({"limits", "--check", kTrace, QLatin1String(kExamples) + "/short-range-device-spurious.xml"});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 1);
    QStringList carriers;
    for (const QString &line : result.output.split('\n')) {
        if (line.startsWith("    "))
            carriers << line.simplified().section(',', 0, 0);
    }
    QCOMPARE(carriers, (QStringList{"88.5 MHz -38.70 dBm", "98.4 MHz -45.20 dBm", "104.6 MHz -52.90 dBm",
                                    "88.5 MHz -38.70 dBm", "98.4 MHz -45.20 dBm", "104.6 MHz -52.90 dBm",
                                    "433.9 MHz -48.50 dBm", "626 MHz -55.40 dBm", "947.4 MHz -41.60 dBm"}));
}

void TestLimitsCommand::namesATraceThatCanNotBeRead()
{
    const Run missing = run({"limits", "--check", m_folder->path("missing.csv"), m_folder->write("mask.xml", kMask)});
    QCOMPARE(missing.exitStatus, 1);
    QVERIFY(missing.errors.contains("missing.csv: can't be read"));
    const Run bad = check("100 MHz;loud\n");
    QCOMPARE(bad.exitStatus, 1);
    QVERIFY(bad.errors.contains("trace.csv:1: "));
}

void TestLimitsCommand::printsJson()
{
    const QString mask = m_folder->write("mask.xml", kMask);
    const QString other = m_folder->write("other.xml", "<data><limit end='1000' measureunit='99' color='no colour'/>"
                                                       "<limit name='Field'><section beginFrequency='1.5'"
                                                       " beginValue='1e400' endValue='2' interpolation='2'/></limit>"
                                                       "</data>");
    const Run result = run({"limits", "--format", "json", mask, other});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.output.count('\n'), 5); // one object a line
    const QJsonArray expected = {
        QJsonObject{
            {"file", mask},
            {"name", "Mask"},
            {"description", "Of a test"},
            {"beginHz", 100000000},
            {"endHz", 200000000},
            {"unit", "dBm"},
            {"color", "#00aa00"},
            {"sections", QJsonArray{QJsonObject{{"beginHz", 100000000},
                                                {"endHz", 120000000},
                                                {"beginLevel", -50},
                                                {"endLevel", -50},
                                                {"interpolation", "linear"}},
                                    QJsonObject{{"beginHz", 120000000},
                                                {"endHz", 180000000},
                                                {"beginLevel", -50},
                                                {"endLevel", -70},
                                                {"interpolation", "linear"}}}},
            {"levels", QJsonArray{QJsonObject{{"frequencyHz", 190000000}, {"level", -60}, {"interpolation", "step"}}}}},
        QJsonObject{{"file", other},
                    {"name", ""},
                    {"beginHz", 0},
                    {"endHz", 1000},
                    {"sections", QJsonArray()},
                    {"levels", QJsonArray()}},
        QJsonObject{{"file", other},
                    {"name", "Field"},
                    {"beginHz", 0},
                    {"endHz", 30e9},
                    {"unit", QString::fromUtf8("dB\u00b5V/m")},
                    {"sections", QJsonArray{QJsonObject{{"beginHz", 1.5},
                                                        {"endHz", 0},
                                                        {"beginLevel", QJsonValue()},
                                                        {"endLevel", 2},
                                                        {"interpolation", "logarithmic"}}}},
                    {"levels", QJsonArray()}},
    };
    verifyJson(result, expected);
}

void TestLimitsCommand::printsVerdictsAsJson_data()
{
    QTest::addColumn<QByteArray>("trace");
    QTest::addColumn<QString>("verdict");
    QTest::addColumn<int>("compared");
    QTest::addColumn<QJsonArray>("excesses");
    QTest::addColumn<QString>("error"); // a part

    const auto excess = [](double hz, double level, double limit, double beginHz, double endHz, int points) {
        return QJsonObject{{"frequencyHz", hz}, {"level", level},     {"limit", limit}, {"excess", level - limit},
                           {"unit", "dBm"},     {"beginHz", beginHz}, {"endHz", endHz}, {"points", points}};
    };
    QTest::newRow("kept") << QByteArray("100 MHz;-50\n120 MHz;-50\n") << "kept" << 2 << QJsonArray() << QString();
    QTest::newRow("exceeded") << QByteArray("101 MHz;-49.5\n105 MHz;-45\n106 MHz;-50.5\n200 MHz;-55\n") << "exceeded"
                              << 4
                              << QJsonArray{excess(105e6, -45.0, -50.0, 101e6, 105e6, 2),
                                            excess(200e6, -55.0, -60.0, 200e6, 200e6, 1)}
                              << QString();
    QTest::newRow("beside") << QByteArray("1 MHz;-90\n") << "not checked" << 0 << QJsonArray()
                            << "Mask: no point of the trace lies where it governs";
    QTest::newRow("another unit") << QByteArray("110 MHz;-90 dBA/m\n") << "not checked" << 0 << QJsonArray()
                                  << "Mask: the trace in dBA/m can't be compared with a limit in dBm";
}

// The limit itself is printed too.
void TestLimitsCommand::printsVerdictsAsJson()
{
    QFETCH(QByteArray, trace);
    QFETCH(QString, verdict);
    QFETCH(int, compared);
    QFETCH(QJsonArray, excesses);
    QFETCH(QString, error);
    const Run result = check(trace, kMask, {"--format=json"});
    QVERIFY2(result.errors.contains(error) && result.errors.isEmpty() == error.isEmpty(), qPrintable(result.errors));
    QCOMPARE(result.exitStatus, verdict == "kept" ? 0 : 1);
    const QJsonArray limits = jsonOf(run({"limits", "--format", "json", m_folder->path("mask.xml")}));
    QCOMPARE(limits.size(), 1);
    QJsonObject expected = limits.first().toObject();
    expected["verdict"] = verdict;
    expected["comparedPoints"] = compared;
    expected["excesses"] = excesses;
    QCOMPARE(jsonOf(result), QJsonArray{expected});
}

void TestLimitsCommand::excessesInJsonHaveTheUnitOfTheTrace()
{
    const auto excessesOf = [this](const QByteArray &trace) {
        return jsonOf(check(trace, kMask, {"--format", "json"})).at(0)["excesses"].toArray();
    };
    // -50 dBm are 10 nW.
    const QJsonArray linear = excessesOf("Frequency;Level [W]\n110 MHz;1e-7\n");
    QCOMPARE(linear.size(), 1);
    QCOMPARE(linear.at(0)["unit"], QJsonValue("W"));
    QCOMPARE(linear.at(0)["level"], QJsonValue(1e-7));
    QVERIFY(qAbs(linear.at(0)["limit"].toDouble() - 1e-8) < 1e-15);
    QVERIFY(qAbs(linear.at(0)["excess"].toDouble() - 9e-8) < 1e-15);
    const QJsonArray infinite = excessesOf("110 MHz;inf\n");
    QCOMPARE(infinite.size(), 1);
    QVERIFY(infinite.at(0)["level"].isNull() && infinite.at(0)["excess"].isNull());
    QCOMPARE(infinite.at(0)["limit"], QJsonValue(-50));
}

void TestLimitsCommand::jsonOfNothingIsAnEmptyList()
{
    const Run empty = run({"limits", "--format", "json", m_folder->write("empty.xml", "<data/>")});
    QCOMPARE(empty.exitStatus, 0);
    QCOMPARE(empty.output, QString("[]\n"));
    const Run unread = check("100 MHz;loud\n", kMask, {"--format", "json"});
    QCOMPARE(unread.exitStatus, 1);
    QCOMPARE(unread.output, QString("[]\n"));
    QCOMPARE(unread.errors.count('\n'), 1);
}

void TestLimitsCommand::rewritesAsAnEditorDoes()
{
    const Run result = run({"limits", "--rewrite", m_folder->path("out.xml"), m_folder->write("mask.xml", kMask)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.told, m_folder->path("out.xml") + ": written; 1 limit, 3 pieces\n" + m_folder->path("out.xml") +
                              ": left out: 1 description\n");
    QCOMPARE(m_folder->read("out.xml"),
             QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data>\n"
                        "    <limit name=\"Mask\" begin=\"100000000\" end=\"200000000\" measureunit=\"0\""
                        " color=\"#00aa00\">\n"
                        "        <section beginFrequency=\"100000000\" endFrequency=\"120000000\" beginValue=\"-50\""
                        " endValue=\"-50\" interpolation=\"1\"/>\n"
                        "        <section beginFrequency=\"120000000\" endFrequency=\"180000000\" beginValue=\"-50\""
                        " endValue=\"-70\" interpolation=\"1\"/>\n"
                        "        <level frequency=\"190000000\" interpolation=\"0\">-60</level>\n"
                        "    </limit>\n</data>\n"));
}

void TestLimitsCommand::rewritesAFileOntoItself()
{
    const QString name = m_folder->write("mask.xml", kMask);
    QCOMPARE(run({"limits", "--rewrite", name, name}).exitStatus, 0);
    const QByteArray once = m_folder->read("mask.xml");
    QVERIFY(once.startsWith("<?xml") && once.contains("Mask"));
    QCOMPARE(run({"limits", "--rewrite", name, name}).exitStatus, 0);
    QCOMPARE(m_folder->read("mask.xml"), once);
}

void TestLimitsCommand::aFailedRewriteLeavesTheOldFile()
{
    m_folder->write("out.xml", "old");
    const Run unreadable =
        run({"limits", "--rewrite", m_folder->path("out.xml"), m_folder->write("bad.xml", "<data>")});
    QCOMPARE(unreadable.exitStatus, 1);
    QCOMPARE(unreadable.errors.count('\n'), 1); // once, though it would be read again
    QCOMPARE(m_folder->read("out.xml"), QByteArray("old"));
    const Run misplaced =
        run({"limits", "--rewrite", m_folder->path("out.xml/below"), m_folder->write("mask.xml", kMask)});
    QCOMPARE(misplaced.exitStatus, 1);
    QVERIFY(misplaced.errors.contains("out.xml/below: can't be written"));
    const Run directory = run({"limits", "--rewrite", m_folder->path(), m_folder->write("mask.xml", kMask)});
    QCOMPARE(directory.exitStatus, 1);
}

// The model says nothing of it; the program does, and loses nothing.
void TestLimitsCommand::aFullDiskIsReported()
{
    QByteArray many = "<data>";
    for (int i = 0; i < 200; ++i)
        many += "<limit name='A limit with a name that takes some room in a file'/>";
    m_folder->write("many.xml", many + "</data>");
    for (const char *blocks : {"0", "4", "8"}) { // of 1,024 bytes
        m_folder->write("out.xml", "old");
        QProcess shell;
        shell.setWorkingDirectory(m_folder->path());
        shell.start("sh", {"-c", QStringLiteral("trap '' XFSZ; ulimit -f %1; '%2' limits --rewrite out.xml many.xml"
                                                " >/dev/null 2>/dev/null")
                                     .arg(QLatin1String(blocks), QStringLiteral(AVELDORAN_PROGRAM))});
        QVERIFY(shell.waitForFinished(60000));
        QCOMPARE(shell.exitCode(), 1);
        QCOMPARE(m_folder->read("out.xml"), QByteArray("old"));
    }
    QCOMPARE(m_folder->names(), (QStringList{"many.xml", "out.xml"}));
}

void TestLimitsCommand::drawsLimits()
{
    const Run result = run({"limits", "--plot", m_folder->path("mask.png"), m_folder->write("mask.xml", kMask)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const QImage image(m_folder->path("mask.png"));
    QVERIFY(!image.isNull());
    QVERIFY(countPixels(image, 0xff00aa00) > 500); // in its own colour
}

void TestLimitsCommand::drawsATraceUnderItsLimit()
{
    const Run result =
        run({"limits", "--check", kTrace, "--plot", m_folder->path("a.png"), m_folder->write("mask.xml", kMask)});
    QCOMPARE(result.exitStatus, 1); // the trace exceeds it
    QCOMPARE(result.errors, QString());
    const QImage image(m_folder->path("a.png"));
    QVERIFY(countPixels(image, 0xff00aa00) > 200);
    QVERIFY(countPixels(image, 0xff1f4e9e) > 2000);
}

void TestLimitsCommand::limitsThatCanNotBeDrawnTogetherAreNamed()
{
    const Run result = run({"limits", "--plot", m_folder->path("a.png"), m_folder->write("mask.xml", kMask),
                            QLatin1String(kExamples) + "/fcc-part15-radiated.xml"});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY(result.errors.contains(
        QStringLiteral("/fcc-part15-radiated.xml: FCC 15.209, 3 m: a limit in dB\u00b5V/m can't be drawn over dBm")));
    QVERIFY(QFile::exists(m_folder->path("a.png")));
    const Run unknown = run({"limits", "--plot", m_folder->path("b.png"),
                             m_folder->write("x.xml", "<data><limit name='x' measureunit='99'/></data>")});
    QCOMPARE(unknown.exitStatus, 1);
    QVERIFY(unknown.errors.contains("x.xml: x: unit 99 is not known and can't be drawn"));
    const Run nowhere = run({"limits", "--plot", m_folder->path("missing/c.png"), m_folder->write("mask.xml", kMask)});
    QCOMPARE(nowhere.exitStatus, 1);
    QVERIFY(nowhere.errors.contains("missing/c.png: can't be written"));
    const Run empty = run({"limits", "--plot", m_folder->path("d.png"), m_folder->write("empty.xml", "<data/>")});
    QCOMPARE(empty.errors, QString());
    QCOMPARE(empty.exitStatus, 0);
}

void TestLimitsCommand::drawsEveryExample()
{
    const QDir examples(kExamples);
    for (const QString &name : examples.entryList({"*.xml"})) {
        const Run result = run({"limits", "--plot", m_folder->path("a.png"), examples.filePath(name)});
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.exitStatus, 0);
        QVERIFY(countPixels(QImage(m_folder->path("a.png")), 0xffcc0000) > 200);
    }
}

void TestLimitsCommand::reportsOutputThatCanNotBeWritten()
{
    const QString mask = m_folder->write("mask.xml", QByteArray(kMask).replace("Of a test", QByteArray(20000, 'x')));
    QProcess shell;
    shell.start("sh", {"-c", QStringLiteral("trap '' XFSZ; ulimit -f 4; '%1' limits '%2' > '%3'")
                                 .arg(QStringLiteral(AVELDORAN_PROGRAM), mask, m_folder->path("out.txt"))});
    QVERIFY(shell.waitForFinished(60000));
    QCOMPARE(shell.exitCode(), 1);
    QVERIFY(shell.readAllStandardError().contains("standard output: can't be written"));
}

void TestLimitsCommand::namesWithPlaceholdersStayWhole()
{
    const QByteArray limits = "<data><limit name='L %1 at %2 %L3' measureunit='0'><level frequency='1'>5</level>"
                              "<level frequency='9'>5</level></limit></data>";
    const Run checked = check("1 Hz;0\n5 Hz;1\n9 Hz;0\n", limits);
    QVERIFY2(checked.output.contains("L %1 at %2 %L3: "), qPrintable(checked.output));
    QVERIFY2(checked.output.contains("3 points compared"), qPrintable(checked.output));

    const Run rewritten =
        run({"limits", "--rewrite", m_folder->path("o %1 %2.xml"), m_folder->write("mask.xml", limits)});
    QVERIFY2(rewritten.told.contains("o %1 %2.xml: written; 1 limit, 2 pieces"), qPrintable(rewritten.told));
}

void TestLimitsCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();
    const QString mask = "mask.xml";
    QTest::newRow("no file") << QStringList{} << "limits: a limit file is missing; see 'aveldoran limits --help'";
    QTest::newRow("unknown option") << QStringList{"--color", mask} << "unknown option '--color'";
    QTest::newRow("no trace") << QStringList{mask, "--check"} << "missing value after '--check'";
    QTest::newRow("empty trace") << QStringList{"--check", "", mask} << "--check expects the name of a file, not ''";
    QTest::newRow("unknown format") << QStringList{"--format", "xml", mask}
                                    << "limits: --format expects text or json, not 'xml'";
    QTest::newRow("no PNG") << QStringList{"--plot", "a.jpg", mask}
                            << "--plot expects the name of a file that ends in .png, not 'a.jpg'";
    QTest::newRow("picture over the rewritten file")
        << QStringList{"--rewrite", "out.png", "--plot", "./out.png", mask}
        << "--plot would replace 'out.png', which the command line names too";
    QTest::newRow("picture over the limits")
        << QStringList{"--plot", "a.png", "a.png"} << "--plot would replace 'a.png', which the command line names too";
    QTest::newRow("two to rewrite") << QStringList{"--rewrite", "out.xml", mask, mask}
                                    << "--rewrite expects one limit file";
    QTest::newRow("a directory to rewrite")
        << QStringList{"--rewrite", "out.xml", "."} << "--rewrite expects one limit file";
}

void TestLimitsCommand::refusesWrongUsage()
{
    verifyRefused({"limits"});
    QVERIFY(!QFile::exists("out.xml"));
}

void TestLimitsCommand::helps()
{
    verifyHelps("limits", {"--check", "--format", "--rewrite", "--plot"});
}

QTEST_GUILESS_MAIN(TestLimitsCommand)
#include "tst_limits_command.moc"
