#include "apps/commandchecks.h"
#include "apps/folder.h"
#include "apps/pixels.h"
#include "apps/programrun.h"

#include <QtTest/QtTest>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtGui/QImage>

namespace {

constexpr char kExample[] = AVELDORAN_EXAMPLES_DIR "/data/traces/broadband.csv";

// Peaks at 101 (-40), 103 (-35) and 105 MHz (-50), bottoms between them.
constexpr char kTrace[] = "Frequency [MHz];Level [dBm]\n"
                          "100;-30\n100.5;-90\n101;-40\n102;-80\n103;-35\n104;-85\n105;-50\n106;-70\n";

// A text without runs of blanks.
QStringList simplifiedLines(const QString &text)
{
    QStringList lines;
    for (const QString &line : text.split('\n', Qt::SkipEmptyParts))
        lines += line.simplified();
    return lines;
}

} // namespace

class TestMarkersCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void printsATable();
    void setsSixMaximaIfNothingIsAskedFor();
    void readsTheLevelAtFrequencies();
    void showsDifferencesToTheReference();
    void showsLinearLevelsWithAPrefix();
    void showsADifferenceOfFrequenciesInItsOwnUnit();
    void showsPeaksOfLevelZero_data();
    void showsPeaksOfLevelZero();
    void keepsPeaksApart();
    void printsJson();
    void numbersThatAreNoneAreNullInJson();
    void findsTheCarriersOfTheExample();
    void takesATraceOfOnePoint();
    void drawsThePicture();
    void drawsWithoutADisplay();
    void drawsWhereNothingIsToBeSeen_data();
    void drawsWhereNothingIsToBeSeen();
    void reportsAPictureThatCanNotBeWritten();
    void keepsAnOldPictureThatItCanNotReplace();
    void neverReplacesTheTrace_data();
    void neverReplacesTheTrace();
    void namesFileAndLineOfABadTrace_data();
    void namesFileAndLineOfABadTrace();
    void reportsOutputThatCanNotBeWritten();
    void keepsTerminalControlOutOfItsOutput();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void helps();

private:
    std::unique_ptr<Folder> m_folder;
};

void TestMarkersCommand::printsATable()
{
    const QString file = m_folder->write("a.csv", kTrace);
    const Run result = run({"markers", "--max", "2", "--min", "1", file});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    const QString expected = QStringLiteral("%1: 8 points, 100 MHz to 106 MHz, in dBm\n"
                                            "\n"
                                            "No  Marker  Frequency       Level  Delta   Label\n"
                                            " 1  Max 1     103 MHz  -35.00 dBm      -  -35.00 dBm @ 103.000 MHz\n"
                                            " 2  Max 2     101 MHz  -40.00 dBm      -  -40.00 dBm @ 101.000 MHz\n"
                                            " 3  Min 1   100.5 MHz  -90.00 dBm      -  -90.00 dBm @ 100.500 MHz\n");
    QCOMPARE(result.output, expected.arg(file));
}

void TestMarkersCommand::setsSixMaximaIfNothingIsAskedFor()
{
    const Run result = run({"markers", m_folder->write("a.csv", kTrace)});
    QCOMPARE(result.exitStatus, 0);
    const QStringList lines = simplifiedLines(result.output);
    QCOMPARE(lines.size(), 2 + 6);
    QCOMPARE(lines.at(4), QStringLiteral("3 Max 3 105 MHz -50.00 dBm - -50.00 dBm @ 105.000 MHz"));
    QCOMPARE(lines.at(5), QStringLiteral("4 Max 4 - - - -")); // the first point is never searched
    QCOMPARE(lines.at(7), QStringLiteral("6 Max 6 - - - -"));
}

void TestMarkersCommand::readsTheLevelAtFrequencies()
{
    const Run result = run({"markers", "--at", "101.5MHz", "--at", "106 MHz", "--at", "0.1025 GHz", "--at", "99999999",
                            "--at", "107 MHz", m_folder->write("a.csv", kTrace)});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        simplifiedLines(result.output).mid(2),
        QStringList({"1 Std 1 101.5 MHz -60.00 dBm - -60.00 dBm @ 101.500 MHz",
                     "2 Std 2 106 MHz -70.00 dBm - -70.00 dBm @ 106.000 MHz",
                     "3 Std 3 102.5 MHz -57.50 dBm - -57.50 dBm @ 102.500 MHz", "4 Std 4 - - - -", "5 Std 5 - - - -"}));
}

void TestMarkersCommand::showsDifferencesToTheReference()
{
    const Run result = run({"markers", "--max", "2", "--at", "104 MHz", "--at", "1 MHz", "--reference", "2",
                            m_folder->write("a.csv", kTrace)});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        simplifiedLines(result.output).mid(2),
        QStringList({"1 Max 1 103 MHz -35.00 dBm +5.00 dBm +5.00 dBm @ +2.000 MHz (Δ Max 2)",
                     "2 Max 2 101 MHz -40.00 dBm - -40.00 dBm @ 101.000 MHz",
                     "3 Std 1 104 MHz -85.00 dBm -45.00 dBm -45.00 dBm @ +3.000 MHz (Δ Max 2)", "4 Std 2 - - - -"}));
}

void TestMarkersCommand::showsLinearLevelsWithAPrefix()
{
    const QString file =
        m_folder->write("a.csv", "Frequency;Level (V)\n1 MHz;1e-6\n2 MHz;2e-3\n3 MHz;1e-6\n4 MHz;5e-4\n");
    const QStringList arguments = {"markers", "--at",  "2 MHz",       "--at", "4 MHz",
                                   "--at",    "3 MHz", "--reference", "1",    file};
    Run result = run(arguments);
    QCOMPARE(result.errors, QString());
    QCOMPARE(simplifiedLines(result.output).mid(2),
             QStringList({"1 Std 1 2 MHz 2.00 mV - 2.00 mV @ 2.000 MHz",
                          "2 Std 2 4 MHz 500.00 µV -1.50 mV -1.50 mV @ +2.000 MHz (Δ Std 1)",
                          "3 Std 3 3 MHz 1.00 µV -2.00 mV -2.00 mV @ +1.000 MHz (Δ Std 1)"}));

    result = run(arguments + QStringList{"--format", "json"});
    const QJsonObject second = jsonOf(result).at(1).toObject();
    QCOMPARE(second.value("level"), QJsonValue(5e-4));
    QCOMPARE(second.value("valueText"), QJsonValue("500.00 µV"));
    QCOMPARE(second.value("deltaText"), QJsonValue("-1.50 mV"));
    QCOMPARE(second.value("labelItems"),
             QJsonValue(QJsonArray{"Std 2", "-1.50", "mV", "@", "+2.000", "MHz", "(Δ Std 1)"}));
}

void TestMarkersCommand::showsADifferenceOfFrequenciesInItsOwnUnit()
{
    const QString file = m_folder->write("a.csv", kTrace);
    const QStringList arguments = {"markers", "--min", "1", "--at",        "100.25 MHz", "--at",
                                   "101 MHz", "--at",  "1", "--reference", "1",          file};
    Run result = run(arguments);
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        simplifiedLines(result.output).mid(2),
        QStringList({"1 Min 1 100.5 MHz -90.00 dBm - -90.00 dBm @ 100.500 MHz",
                     "2 Std 1 100.25 MHz -60.00 dBm +30.00 dBm +30.00 dBm @ -250.000 kHz (Δ Min 1)",
                     "3 Std 2 101 MHz -40.00 dBm +50.00 dBm +50.00 dBm @ +500.000 kHz (Δ Min 1)", "4 Std 3 - - - -"}));

    result = run(arguments + QStringList({"--format", "json"}));
    QCOMPARE(result.exitStatus, 0);
    const QJsonArray printed = jsonOf(result);
    QCOMPARE(printed.size(), 4);
    QVERIFY(!printed.at(0).toObject().contains("deltaHz"));
    QCOMPARE(printed.at(1).toObject().value("deltaHz"), QJsonValue(-250000));
    QCOMPARE(printed.at(2).toObject().value("deltaHz"), QJsonValue(500000));
    QVERIFY(!printed.at(3).toObject().contains("deltaHz"));

    // A reference without a value is where it is pinned.
    result = run({"markers", "--max", "1", "--at", "1 MHz", "--reference", "2", "--format", "json", file});
    QCOMPARE(jsonOf(result).at(0).toObject().value("deltaHz"), QJsonValue(102000000));
}

void TestMarkersCommand::showsPeaksOfLevelZero_data()
{
    QTest::addColumn<QString>("sort");
    QTest::addColumn<QByteArray>("trace");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("maxima") << "--max" << QByteArray("100 MHz;-50\n101 MHz;0\n102 MHz;-50\n103 MHz;-20\n104 MHz;-60\n")
                            << QStringList({"1 Max 1 101 MHz 0.00 dBm - 0.00 dBm @ 101.000 MHz",
                                            "2 Max 2 103 MHz -20.00 dBm - -20.00 dBm @ 103.000 MHz",
                                            "3 Max 3 - - - -"});
    QTest::newRow("minima") << "--min" << QByteArray("100 MHz;50\n101 MHz;0\n102 MHz;50\n103 MHz;20\n104 MHz;60\n")
                            << QStringList({"1 Min 1 101 MHz 0.00 dBm - 0.00 dBm @ 101.000 MHz",
                                            "2 Min 2 103 MHz 20.00 dBm - 20.00 dBm @ 103.000 MHz", "3 Min 3 - - - -"});
}

void TestMarkersCommand::showsPeaksOfLevelZero()
{
    QFETCH(QString, sort);
    QFETCH(QByteArray, trace);
    QFETCH(QStringList, lines);
    const Run result = run({"markers", sort, "3", m_folder->write("a.csv", trace)});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(simplifiedLines(result.output).mid(2), lines);
}

void TestMarkersCommand::keepsPeaksApart()
{
    const Run result = run({"markers", "--max", "3", "--spacing", "2.5 MHz", m_folder->write("a.csv", kTrace)});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(
        simplifiedLines(result.output).mid(2),
        QStringList({"1 Max 1 103 MHz -35.00 dBm - -35.00 dBm @ 103.000 MHz", "2 Max 2 - - - -", "3 Max 3 - - - -"}));
}

void TestMarkersCommand::printsJson()
{
    const Run result = run({"markers", "--format", "json", "--max", "1", "--at", "104 MHz", "--at", "1 MHz",
                            "--reference", "1", m_folder->write("a.csv", kTrace)});
    QCOMPARE(result.exitStatus, 0);
    const QJsonArray expected = {
        QJsonObject{{"name", "Max 1"},
                    {"frequencyHz", 103e6},
                    {"level", -35.0},
                    {"unit", "dBm"},
                    {"valueText", "-35.00 dBm"},
                    {"deltaText", "-"},
                    {"labelItems", QJsonArray{"Max 1", "-35.00", "dBm", "@", "103.000", "MHz", ""}},
                    {"label", "Max 1: -35.00 Max 1 -35.00 dBm "},
                    {"detailedLabel", "Max 1: -35.00 Max 1 -35.00 dBm @ 103.000 MHz "}},
        QJsonObject{{"name", "Std 1"},
                    {"frequencyHz", 104e6},
                    {"targetHz", 104e6},
                    {"level", -85.0},
                    {"unit", "dBm"},
                    {"reference", "Max 1"},
                    {"deltaHz", 1e6},
                    {"valueText", "-85.00 dBm"},
                    {"deltaText", "-50.00 dBm"},
                    {"labelItems", QJsonArray{"Std 1", "-50.00", "dBm", "@", "+1.000", "MHz", "(Δ Max 1)"}},
                    {"label", "Std 1: -50.00 Std 1 -50.00 dBm (Δ Max 1)"},
                    {"detailedLabel", "Std 1: -50.00 Std 1 -50.00 dBm @ +1.000 MHz (Δ Max 1)"}},
        QJsonObject{{"name", "Std 2"},
                    {"targetHz", 1e6},
                    {"reference", "Max 1"},
                    {"valueText", "-"},
                    {"deltaText", "-"},
                    {"labelItems", QJsonArray{"Std 2", "-"}},
                    {"label", "Std 2: - Std 2 -"},
                    {"detailedLabel", "Std 2: - Std 2 -"}},
    };
    verifyJson(result, expected);
}

void TestMarkersCommand::numbersThatAreNoneAreNullInJson()
{
    const Run result = run({"markers", "--format", "json", "--max", "1", "--at", "3",
                            m_folder->write("a.csv", "1;0\n2;inf\n3;nan\n4;1\n")});
    QCOMPARE(result.exitStatus, 0);
    const QJsonArray printed = jsonOf(result);
    QCOMPARE(printed.size(), 2);
    QVERIFY(printed.at(0).toObject().value("level").isNull());
    QCOMPARE(printed.at(0).toObject().value("frequencyHz").toDouble(), 2.0);
    QVERIFY(printed.at(1).toObject().value("level").isNull());
}

void TestMarkersCommand::findsTheCarriersOfTheExample()
{
    QFile list(QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/traces/broadband-carriers.csv"));
    QVERIFY(list.open(QIODevice::ReadOnly | QIODevice::Text));
    QMap<double, QString> byLevel;
    for (const QString &line : QString::fromUtf8(list.readAll()).split('\n', Qt::SkipEmptyParts)) {
        const QStringList fields = line.split(';');
        if (fields.size() == 3 && fields.at(2) == QLatin1String("dBm"))
            byLevel.insert(-fields.at(1).toDouble(), QStringLiteral("%1 MHz %2")
                                                         .arg(fields.at(0).section(' ', 0, 0).toDouble())
                                                         .arg(fields.at(1).toDouble(), 0, 'f', 2));
    }
    QCOMPARE(byLevel.size(), 12);

    const Run result = run({"markers", "--max", "12", kExample});
    QCOMPARE(result.exitStatus, 0);
    QStringList found;
    for (const QString &line : simplifiedLines(result.output).mid(2))
        found += line.section(' ', 3, 5);
    QCOMPARE(found, byLevel.values());
}

void TestMarkersCommand::takesATraceOfOnePoint()
{
    const Run result = run(
        {"markers", "--max", "1", "--at", "5", "--plot", m_folder->path("a.png"), m_folder->write("a.csv", "5;-3\n")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(simplifiedLines(result.output).mid(2), QStringList({"1 Max 1 - - - -", "2 Std 1 - - - -"}));
    QVERIFY(!QImage(m_folder->path("a.png")).isNull());
}

void TestMarkersCommand::drawsThePicture()
{
    const Run result = run({"markers", kExample, "--max", "12", "--min", "1", "--plot", m_folder->path("a.PNG")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(simplifiedLines(result.output).size(), 2 + 13);
    const QImage image(m_folder->path("a.PNG"));
    QVERIFY(image.width() > 1000 && image.height() > 500);
    constexpr QRgb kTraceColor = 0x1f4e9e;
    constexpr QRgb kMarkerColor = 0x8a1538;
    QVERIFY(countPixels(image, kTraceColor) > 10000);
    QVERIFY(countPixels(image, kMarkerColor) > 13 * 50); // a symbol each, and their labels
    QVERIFY(countPixels(image, 0xffffff) > image.width() * image.height() / 2);
}

void TestMarkersCommand::drawsWithoutADisplay()
{
    const QStringList arguments = {"markers", kExample, "--plot=" + m_folder->path("a.png")};
    Run result = run(arguments, {}, environmentWithoutDisplay());
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!QImage(m_folder->path("a.png")).isNull());

    QProcessEnvironment environment = environmentWithoutDisplay();
    environment.insert("DISPLAY", ":4711");
    environment.insert("QT_QPA_PLATFORM", "xcb");
    QVERIFY(QFile::remove(m_folder->path("a.png")));
    result = run(arguments, {}, environment);
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!QImage(m_folder->path("a.png")).isNull());
    QCOMPARE(run({"markers", kExample}, {}, environment).exitStatus, 0);
}

void TestMarkersCommand::drawsWhereNothingIsToBeSeen_data()
{
    QTest::addColumn<QByteArray>("trace");

    QTest::newRow("no level is a number") << QByteArray("1 MHz;nan\n2 MHz;inf\n3 MHz;-inf\n");
    QTest::newRow("one frequency") << QByteArray("1 MHz;1\n1 MHz;2\n1 MHz;1\n");
    QTest::newRow("one level") << QByteArray("1 MHz;0\n2 MHz;0\n3 MHz;0\n");
    QTest::newRow("huge levels") << QByteArray("1 MHz;-1e308\n2 MHz;1e308\n3 MHz;-1e308\n");
    QTest::newRow("levels that hardly differ") << QByteArray("1 MHz;1\n2 MHz;1.0000000000000002\n3 MHz;1\n");
    QTest::newRow("tiny levels") << QByteArray("1 MHz;1e-320 V\n2 MHz;3e-320 V\n3 MHz;1e-320 V\n");
    QTest::newRow("huge frequencies") << QByteArray("0;1\n1000000000 GHz;2\n2000000000 GHz;1\n");
    QTest::newRow("neighbouring frequencies far up")
        << QByteArray("2000000000 GHz;1\n2000000000000000001;2\n2000000000000000002;1\n");
}

void TestMarkersCommand::drawsWhereNothingIsToBeSeen()
{
    QFETCH(QByteArray, trace);
    const Run result = run({"markers", "--plot", m_folder->path("a.png"), m_folder->write("a.csv", trace)});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!QImage(m_folder->path("a.png")).isNull());
}

void TestMarkersCommand::reportsAPictureThatCanNotBeWritten()
{
    const QString picture = m_folder->path("missing/a.png");
    const Run result = run({"markers", m_folder->write("a.csv", kTrace), "--plot", picture});
    QCOMPARE(result.exitStatus, 1);
    QVERIFY2(result.errors.startsWith("aveldoran: " + picture + ": can't be written: "), qPrintable(result.errors));
    QCOMPARE(simplifiedLines(result.output).size(), 2 + 6); // what could be done was done
}

void TestMarkersCommand::keepsAnOldPictureThatItCanNotReplace()
{
    const QString picture = m_folder->write("old.png", "an old picture");
    const Run result = run({"markers", m_folder->write("a.csv", "1;2\n1;x\n"), "--plot", picture});
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(m_folder->read("old.png"), QByteArray("an old picture"));
}

void TestMarkersCommand::neverReplacesTheTrace_data()
{
    QTest::addColumn<QString>("picture"); // in the directory of the trace
    QTest::newRow("the same name") << "trace.png";
    QTest::newRow("another way to it") << "folder/../trace.png";
    QTest::newRow("a link to it") << "link.png";
}

void TestMarkersCommand::neverReplacesTheTrace()
{
    QFETCH(QString, picture);
    const QString trace = m_folder->write("trace.png", kTrace);
    QVERIFY(QDir(m_folder->path()).mkdir("folder"));
    QVERIFY(QFile::link(trace, m_folder->path("link.png")));
    const Run result = run({"markers", trace, "--plot", m_folder->path(picture)});
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.output, QString());
    QCOMPARE(
        result.errors,
        QStringLiteral("aveldoran: markers: --plot would replace '%1', which the command line names too\n").arg(trace));
    QCOMPARE(m_folder->read("trace.png"), QByteArray(kTrace));
}

void TestMarkersCommand::namesFileAndLineOfABadTrace_data()
{
    QTest::addColumn<QByteArray>("trace");
    QTest::addColumn<QString>("reason");

    QTest::newRow("an empty file") << QByteArray() << ": no points in this trace";
    QTest::newRow("no number") << QByteArray("1 MHz;1\n2 MHz;x\n") << ":2: expected a level such as -37.5, found 'x'";
    QTest::newRow("control characters") << QByteArray("1 MHz;\x1b[2J\n")
                                        << ":1: expected a level such as -37.5, found '\uFFFD[2J'";
    QTest::newRow("no text") << QByteArray("5;1\n\0\0\n", 7) << ":2: this is no text file";
    QTest::newRow("no line end") << QByteArray(5000, '1') << ":1: the line is longer than 4096 bytes";
}

void TestMarkersCommand::namesFileAndLineOfABadTrace()
{
    QFETCH(QByteArray, trace);
    QFETCH(QString, reason);
    const QString file = m_folder->write("a.csv", trace);
    const Run result = run({"markers", file});
    verifyFailed(result, file + reason);
}

void TestMarkersCommand::reportsOutputThatCanNotBeWritten()
{
    verifyReportsFullDisk({"markers", m_folder->write("a.csv", kTrace)});
}

void TestMarkersCommand::keepsTerminalControlOutOfItsOutput()
{
    const Run result = run({"markers", m_folder->write("a\x1b[2J.csv", kTrace)});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(!result.output.contains(QChar(0x1b)));
}

void TestMarkersCommand::refusesWrongUsage_data()
{
    addWrongUsageColumns();

    QTest::newRow("no trace") << QStringList{} << "a trace file is missing; see 'aveldoran markers --help'";
    QTest::newRow("two traces") << QStringList{"a.csv", "b.csv"} << "expected one trace file, found 2";
    QTest::newRow("unknown option") << QStringList{"--maxx", "1", "a.csv"} << "unknown option '--maxx'";
    QTest::newRow("unknown format") << QStringList{"--format", "xml", "a.csv"}
                                    << "--format expects text or json, not 'xml'";
    QTest::newRow("a count in words") << QStringList{"--max", "all", "a.csv"}
                                      << "--max expects a whole number from 0 to 100, not 'all'";
    QTest::newRow("a negative count") << QStringList{"--min=-1", "a.csv"}
                                      << "--min expects a whole number from 0 to 100, not '-1'";
    QTest::newRow("a large count") << QStringList{"--max", "101", "a.csv"}
                                   << "--max expects a whole number from 0 to 100, not '101'";
    QTest::newRow("no markers") << QStringList{"--max", "0", "a.csv"} << "no marker is asked for";
    QTest::newRow("no frequency") << QStringList{"--at", "soon", "a.csv"}
                                  << "--at expects a frequency such as '100 MHz', not 'soon'";
    QTest::newRow("an empty frequency") << QStringList{"--at", "", "a.csv"}
                                        << "--at expects a frequency such as '100 MHz', not ''";
    QTest::newRow("a negative spacing") << QStringList{"--spacing=-1", "a.csv"}
                                        << "--spacing expects a frequency such as '100 MHz', not '-1'";
    QTest::newRow("reference 0") << QStringList{"--reference", "0", "a.csv"}
                                 << "--reference expects a whole number from 1 to 6, not '0'";
    QTest::newRow("a reference behind the last") << QStringList{"--at", "1", "--reference", "2", "a.csv"}
                                                 << "--reference expects a whole number from 1 to 1, not '2'";
    QTest::newRow("no PNG file") << QStringList{"--plot", "a.svg", "a.csv"}
                                 << "--plot expects the name of a file that ends in .png, not 'a.svg'";
    QTest::newRow("a picture without a name") << QStringList{"a.csv", "--plot"} << "missing value after '--plot'";
}

void TestMarkersCommand::refusesWrongUsage()
{
    verifyRefused({"markers"});
}

void TestMarkersCommand::helps()
{
    verifyHelps("markers", {"--reference", "Example:"});
}

QTEST_GUILESS_MAIN(TestMarkersCommand)
#include "tst_markers_command.moc"
