#include "tests/apps/folder.h"
#include "tests/apps/outputcommands.h"
#include "tests/apps/programrun.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

// What all commands print, in one form: numbers, times and counts, and what is told of the files that they write.
class TestProgramOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<Folder>(); }

    void numbersArePrintedAlikeInAllLanguages_data() { printed(); }
    void numbersArePrintedAlikeInAllLanguages();
    void eachKindOfValueHasOneForm_data() { printed(); }
    void eachKindOfValueHasOneForm();

    void writtenFilesAreToldOnStandardError_data();
    void writtenFilesAreToldOnStandardError();
    void dataAloneGoesToStandardOutput_data();
    void dataAloneGoesToStandardOutput();

private:
    static void printed();

    std::unique_ptr<Folder> m_folder;
};

void TestProgramOutput::printed()
{
    QTest::addColumn<QStringList>("arguments");
    const QString data = QLatin1String(AVELDORAN_EXAMPLES_DIR) + "/data/";
    const QString shortRange = data + "limits/short-range-device-spurious.xml";
    QTest::newRow("calibration") << QStringList{"calibration", "--at", "145.5 MHz", data + "calibration"};
    QTest::newRow("channels") << QStringList{"channels", "--efis", data + "efis/allocations.csv"};
    QTest::newRow("channels of profiles") << QStringList{"channels", data + "profiles"};
    QTest::newRow("drive") << QStringList{"drive", "RECORDING", "--output", "OUT.kml"};
    QTest::newRow("limits") << QStringList{"limits", data + "limits"};
    QTest::newRow("limits with a trace") << QStringList{"limits", "--check", data + "traces/broadband.csv", shortRange};
    QTest::newRow("limits anew") << QStringList{"limits", shortRange, "--rewrite", "OUT.xml"};
    QTest::newRow("logo") << QStringList{"logo",     "--model", "1",        "--firmware", "2",
                                         "--serial", "3",       "--output", "OUT.png"};
    QTest::newRow("markers") << QStringList{"markers",     "--at", "88.5 MHz",
                                            "--reference", "1",    data + "traces/broadband.csv"};
    QTest::newRow("record") << QStringList{"RECORD"};
    QTest::newRow("waterfall") << QStringList{"waterfall", "RECORDING", "--output", "OUT.png"};
    QTest::newRow("waypoints") << QStringList{"waypoints", data + "drives/valley-road.gpx",
                                              data + "drives/harbour-round.nmea"};
}

void TestProgramOutput::numbersArePrintedAlikeInAllLanguages()
{
    QFETCH(QStringList, arguments);
    arguments = arguments == QStringList{"RECORD"} ? recordIn(*m_folder) : replaced(arguments, *m_folder);
    arguments.replaceInStrings("OUT", m_folder->path("out"));
    QStringList outputs;
    for (const char *language : {"C.UTF-8", "de_DE.UTF-8", "en_US.UTF-8", "de_CH.UTF-8"}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", language); // Qt takes it whether or not the system has it
        const Run result = run(arguments, {}, environment);
        QVERIFY(!(result.output + result.told).isEmpty());
        outputs += result.output + result.told;
    }
    if (arguments.constFirst() != "channels") // whose texts are those of the file, in the user's language
        QVERIFY(!outputs.constFirst().contains(QRegularExpression("[0-9],[0-9]")));
    else
        outputs.replaceInStrings(QRegularExpression("^ *[^ ].*? {2,}|  # [^\n]*", QRegularExpression::MultilineOption),
                                 "");
    outputs.removeDuplicates();
    QCOMPARE(outputs.size(), 1);
}

void TestProgramOutput::eachKindOfValueHasOneForm()
{
    QFETCH(QStringList, arguments);
    arguments = arguments == QStringList{"RECORD"} ? recordIn(*m_folder) : replaced(arguments, *m_folder);
    arguments.replaceInStrings("OUT", m_folder->path("out"));
    const Run result = run(arguments);
    QString text = result.output + result.told;
    // What files say: remarks and the names of objects.
    text.remove(QRegularExpression("  # [^\n]*|^  [^\n]*?(?=  [0-9]+ entr)", QRegularExpression::MultilineOption));
    QVERIFY(text.size() > 20);
    const auto verifyNone = [&text](const char *pattern) {
        const QRegularExpressionMatch match = QRegularExpression(QString::fromUtf8(pattern)).match(text);
        QVERIFY2(!match.hasMatch(), qPrintable(QLatin1String(pattern) + QString(" in: ") + match.captured()));
    };
    verifyNone("[a-z]s: [0-9]"); // a count stands before what it counts
    verifyNone("(?<![0-9.])1 (points|sweeps|waypoints|entries|limits|pieces|markers|objects)");
    verifyNone("[0-9]Hz|[0-9]dB");                                            // a blank stands before a unit
    verifyNone("Hz - |Hz-");                                                  // a range has a "to"
    verifyNone("[0-9]{4}-[0-9]{2}-[0-9]{2}(?!T[0-9]{2}:[0-9]{2}:[0-9]{2}Z)"); // a time is one of ISO 8601
    // A level has two decimals. A degree of longitude ends in W; and a plan has no levels, but names of ranges.
    if (arguments.constFirst() != "channels")
        verifyNone("(?<![0-9.])[0-9]+(\\.[0-9]|\\.[0-9]{3,})? (dB|[kmµn]?V\\b|[mµn]W\\b|[mµn]?A/m)");
}

// --- files ---

void TestProgramOutput::writtenFilesAreToldOnStandardError_data()
{
    addOutputs();
    QTest::newRow("record") << QStringList{"RECORD"} << ".mdr";
}

void TestProgramOutput::writtenFilesAreToldOnStandardError()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, suffix);
    const bool isRecord = arguments == QStringList{"RECORD"};
    const QString output = m_folder->path((isRecord ? "drive" : "out") + suffix);
    arguments = isRecord ? recordIn(*m_folder) : replaced(arguments, *m_folder);
    arguments.replaceInStrings(QRegularExpression("^OUT$"), output);
    const Run result = run(arguments);
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.errors, QString());
    QVERIFY2(result.told.startsWith(output + ": written; "), qPrintable(result.told));
    QVERIFY2(QRegularExpression("; [0-9]+ [a-z]").match(result.told).hasMatch(),
             qPrintable(result.told)); // and how much
    QVERIFY(!result.output.contains("written"));
    // On a terminal too, when the progress is gone.
    const Run shown = runOnTerminal(arguments);
    QCOMPARE(shown.exitStatus, 0);
    QString told = result.told;
    QVERIFY2(shown.errors.endsWith(told.replace("\n", "\r\n")), qPrintable(shown.errors));
    // What is not written is not told.
    arguments.replaceInStrings(output, m_folder->path("missing/out" + suffix));
    const Run failed = run(arguments);
    QCOMPARE(failed.exitStatus, 1);
    QCOMPARE(failed.told, QString());
    QCOMPARE(failed.errors, "aveldoran: " + m_folder->path("missing/out" + suffix) +
                                ": can't be written: No such file or directory\n");
}

void TestProgramOutput::dataAloneGoesToStandardOutput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("begin"); // of what is printed
    const QString data = QLatin1String(AVELDORAN_EXAMPLES_DIR) + "/data/";
    QTest::newRow("JSON beside a picture")
        << QStringList{"markers", data + "traces/broadband.csv", "--format", "json", "--plot", "OUT.png"} << "[\n{";
    QTest::newRow("JSON of limits beside a picture")
        << QStringList{"limits", data + "limits/en55032-radiated.xml", "--format", "json", "--plot", "OUT.png"}
        << "[\n{";
    QTest::newRow("JSON of gains beside a picture")
        << QStringList{"calibration", data + "calibration", "--format", "json", "--plot", "OUT.png"} << "[\n{";
    QTest::newRow("a document") << QStringList{"drive", "RECORDING"} << "<?xml ";
    QTest::newRow("a logo beside a file")
        << QStringList{"logo", "--model", "1", "--firmware", "2", "--serial", "3", "--ascii", "--output", "OUT.png"}
        << QString::fromUtf8("█");
    QTest::newRow("nothing") << QStringList{"waterfall", "RECORDING", "--output", "OUT.png"} << QString();
}

void TestProgramOutput::dataAloneGoesToStandardOutput()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, begin);
    arguments = replaced(arguments, *m_folder);
    arguments.replaceInStrings("OUT", m_folder->path("out"));
    const Run result = run(arguments);
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.told.count('\n'), 1);
    QVERIFY2(result.told.startsWith(arguments.size() == 2 ? "standard output: written; " : m_folder->path("out.png")),
             qPrintable(result.told));
    if (begin.isEmpty())
        QCOMPARE(result.output, QString());
    QVERIFY(result.output.startsWith(begin));
    if (begin.startsWith('['))
        QVERIFY(QJsonDocument::fromJson(result.output.toUtf8()).isArray());
}

QTEST_GUILESS_MAIN(TestProgramOutput)
#include "tst_program_output.moc"
