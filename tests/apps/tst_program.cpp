#include "tests/apps/folder.h"
#include "tests/apps/outputcommands.h"
#include "tests/apps/programrun.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <sys/stat.h>

// What holds for all commands of the program alike. The commands are those that its own help names.
class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void helpNamesTheExitStatuses();
    void helpOfACommandIsAskedForInTwoWays_data() { commands(); }
    void helpOfACommandIsAskedForInTwoWays();
    void helpFitsATerminal_data() { commands(); }
    void helpFitsATerminal();
    void examplesOfTheHelpRun();
    void eachCommandTellsTheVersion_data() { commands(); }
    void eachCommandTellsTheVersion();

    void suggestsCommandsAndOptions_data();
    void suggestsCommandsAndOptions();
    void eachOptionIsSuggested_data() { commands(); }
    void eachOptionIsSuggested();
    void valuesThatAreOptionsAreMissingValues_data() { commands(); }
    void valuesThatAreOptionsAreMissingValues();
    void optionsThatMayNotBeRepeatedAreGivenOnce_data() { commands(); }
    void optionsThatMayNotBeRepeatedAreGivenOnce();
    void numbersAreDecimalDigits_data();
    void numbersAreDecimalDigits();
    void emptyNamesAreRefused_data();
    void emptyNamesAreRefused();

    void unreadableFilesAreNamedInOneForm_data();
    void unreadableFilesAreNamedInOneForm();
    void picturesOfNothingReadAreNotDrawn_data();
    void picturesOfNothingReadAreNotDrawn();
    void inputsAreNotReplaced_data();
    void inputsAreNotReplaced();
    void onlyRegularFilesAreReplaced_data() { addOutputs(); }
    void onlyRegularFilesAreReplaced();
    void aFullDiskKeepsTheOldFile_data() { addOutputs(); }
    void aFullDiskKeepsTheOldFile();

private:
    static void commands();
    // In the temporary directory, where examples/ and a recording drive.mdr are.
    Run runHere(const QString &commandLine) const;

    std::unique_ptr<Folder> m_folder;
};

namespace {

QStringList commandNames()
{
    const QString help = run({"--help"}).output;
    static const QRegularExpression form("^  ([a-z]+) +", QRegularExpression::MultilineOption);
    QStringList names;
    auto matches = form.globalMatch(help.section("Commands:", 1).section("\n\n", 0, 0));
    while (matches.hasNext())
        names += matches.next().captured(1);
    return names;
}

struct Option
{
    QString name;
    bool takesValue;
    bool isRepeatable;
};

QVector<Option> optionsOf(const QString &command)
{
    const QString help = run({command, "--help"}).output.section("Options:", 1).section("\n\n", 0, 0);
    static const QRegularExpression form("^  (?:-h, )?--([a-z-]+)( <)?", QRegularExpression::MultilineOption);
    QVector<Option> options;
    QVector<int> begins;
    auto matches = form.globalMatch(help);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        options.append({match.captured(1), match.capturedLength(2) > 0, false});
        begins += match.capturedStart();
    }
    begins += help.size();
    for (int i = 0; i < options.size(); ++i)
        options[i].isRepeatable =
            help.mid(begins.at(i), begins.at(i + 1) - begins.at(i)).simplified().contains("May be given several times");
    return options;
}

} // namespace

void TestProgram::init()
{
    m_folder = std::make_unique<Folder>();
    QVERIFY(QFile::link(AVELDORAN_EXAMPLES_DIR, m_folder->path("examples")));
}

void TestProgram::cleanup()
{
    m_folder.reset();
}

void TestProgram::commands()
{
    QTest::addColumn<QString>("command");
    const QStringList names = commandNames();
    QVERIFY(names.size() >= 10);
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

Run TestProgram::runHere(const QString &commandLine) const
{
    QProcess shell;
    shell.setWorkingDirectory(m_folder->path());
    shell.start("sh", {"-c", commandLine});
    if (!shell.waitForFinished(60000) || shell.exitStatus() != QProcess::NormalExit)
        return {};
    return runOf(shell.exitCode(), shell.readAllStandardOutput(), shell.readAllStandardError());
}

// --- help ---

void TestProgram::helpNamesTheExitStatuses()
{
    const Run result = run({"--help"});
    QCOMPARE(result.exitStatus, 0);
    for (const char *text :
         {"\nExit status:\n  0  ", "\n  1  ", "\n  2  ", "exceeds a limit", "aveldoran help [COMMAND]"})
        QVERIFY2(result.output.contains(text), text);
    QVERIFY(result.output.simplified().contains("not done or refused, which a line on standard error tells that "
                                                "begins with 'aveldoran: ', or a trace exceeds a limit, which is "
                                                "printed."));
    for (const QStringList &same : {QStringList{"-h"}, {"help"}, {"help", "help"}, {"help", "--help"}, {"help", "-h"}})
        QCOMPARE(run(same).output, result.output);
    const QStringList lines = result.output.split('\n');
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void TestProgram::helpOfACommandIsAskedForInTwoWays()
{
    QFETCH(QString, command);
    const Run result = run({command, "--help"});
    QCOMPARE(result.exitStatus, 0);
    QCOMPARE(result.errors, QString());
    QVERIFY(result.output.startsWith("Usage: aveldoran " + command + " [options]"));
    QCOMPARE(run({"help", command}).output, result.output);
    QCOMPARE(run({command, "-h"}).output, result.output);
}

void TestProgram::helpFitsATerminal()
{
    QFETCH(QString, command);
    const QStringList lines = run({command, "--help"}).output.split('\n');
    QVERIFY(lines.size() > 8);
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void TestProgram::examplesOfTheHelpRun()
{
    QStringList names = commandNames();
    names.removeAll("record");
    names.prepend("record"); // whose recording others read
    for (const QString &command : qAsConst(names)) {
        QString help = run({command, "--help"}).output;
        help.replace(QRegularExpression(" \\\\\n +"), " ");
        int examples = 0;
        const QStringList lines = help.split('\n');
        for (const QString &line : lines) {
            if (!line.startsWith("  aveldoran "))
                continue;
            ++examples;
            QVERIFY2(line.startsWith("  aveldoran " + command + " "), qPrintable(line));
            const QString rest = line.mid(static_cast<int>(qstrlen("  aveldoran")));
            const Run result = runHere(QStringLiteral("'%1'%2").arg(AVELDORAN_PROGRAM, rest));
            const bool isLimitExceeded = line.contains("--check");
            QVERIFY2(result.exitStatus == (isLimitExceeded ? 1 : 0), qPrintable(line + '\n' + result.errors));
        }
        QVERIFY2(examples > 0, qPrintable(command));
    }
}

void TestProgram::eachCommandTellsTheVersion()
{
    QFETCH(QString, command);
    const Run result = run({command, "--version"});
    QCOMPARE(result.exitStatus, 0);
    QVERIFY(result.output.startsWith("aveldoran "));
    QCOMPARE(result.output, run({"--version"}).output);
}

// --- wrong command lines ---

void TestProgram::suggestsCommandsAndOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("a letter missing") << QStringList{"chanels"}
                                      << "unknown command 'chanels', did you mean 'channels'?";
    QTest::newRow("neighbours swapped") << QStringList{"lgoo"} << "unknown command 'lgoo', did you mean 'logo'?";
    QTest::newRow("help") << QStringList{"hlep"} << "unknown command 'hlep', did you mean 'help'?";
    QTest::newRow("of nothing near") << QStringList{"spectrum"} << "unknown command 'spectrum'; see 'aveldoran --help'";
    QTest::newRow("after help") << QStringList{"--help", "x"} << "expected nothing after '--help', found 'x'";
    QTest::newRow("a command after help")
        << QStringList{"--help", "markers"}
        << "expected nothing after '--help', found 'markers'; see 'aveldoran help markers'";
    QTest::newRow("after the help of a command")
        << QStringList{"help", "markers", "x"} << "expected nothing after 'help markers', found 'x'";
    QTest::newRow("after the version") << QStringList{"--version", "channels"}
                                       << "expected nothing after '--version', found 'channels'";
    QTest::newRow("help of an option") << QStringList{"help", "--version"}
                                       << "help expects the name of a command, not '--version'";
    QTest::newRow("help of nothing") << QStringList{"help", "markrs"}
                                     << "unknown command 'markrs', did you mean 'markers'?";
    QTest::newRow("before a command") << QStringList{"--verson"}
                                      << "unknown option '--verson', did you mean '--version'?";
    QTest::newRow("an option") << QStringList{"channels", "--formt", "json", "."}
                               << "channels: unknown option '--formt', did you mean '--format'?";
    QTest::newRow("with its value") << QStringList{"channels", "--formt=json", "."}
                                    << "channels: unknown option '--formt', did you mean '--format'?";
    QTest::newRow("one dash") << QStringList{"markers", "-max", "3", "a.csv"}
                              << "markers: unknown option '-max', did you mean '--max'?";
    QTest::newRow("no option near") << QStringList{"markers", "--colour", "a.csv"}
                                    << "markers: unknown option '--colour'";
    QTest::newRow("a value too much") << QStringList{"devices", "--all=yes"}
                                      << "devices: unexpected value after '--all'";
    QTest::newRow("a very long one") << QStringList{"devices", "--" + QString(100000, 'a')}
                                     << "devices: unknown option '--" + QString(100000, 'a') + "'";
}

void TestProgram::suggestsCommandsAndOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Run result = run(arguments);
    QCOMPARE(result.exitStatus, 2);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.errors, "aveldoran: " + error + "\n");
}

void TestProgram::eachOptionIsSuggested()
{
    QFETCH(QString, command);
    const QVector<Option> options = optionsOf(command);
    QVERIFY(options.size() >= 3);
    for (const Option &option : options) {
        const QString typed = "--" + option.name + "x";
        QCOMPARE(run({command, typed}).errors,
                 QStringLiteral("aveldoran: %1: unknown option '%2', did you mean '--%3'?\n")
                     .arg(command, typed, option.name));
    }
}

void TestProgram::valuesThatAreOptionsAreMissingValues()
{
    QFETCH(QString, command);
    const QVector<Option> options = optionsOf(command);
    for (const Option &option : options) {
        if (!option.takesValue)
            continue;
        const Run atTheEnd = run({command, "--" + option.name});
        QCOMPARE(atTheEnd.exitStatus, 2);
        QCOMPARE(atTheEnd.errors,
                 QStringLiteral("aveldoran: %1: missing value after '--%2'\n").arg(command, option.name));
        const Run before = run({command, "--" + option.name, "--version"});
        QCOMPARE(before.exitStatus, 2);
        QCOMPARE(before.errors, QStringLiteral("aveldoran: %1: missing value after '--%2', '--version' is an option\n")
                                    .arg(command, option.name));
    }
}

void TestProgram::optionsThatMayNotBeRepeatedAreGivenOnce()
{
    QFETCH(QString, command);
    const QVector<Option> options = optionsOf(command);
    for (const Option &option : options) {
        if (!option.takesValue)
            continue;
        const Run twice = run({command, "--" + option.name, "1", "--" + option.name, "2"});
        QCOMPARE(twice.errors.contains("--" + option.name + " is given more than once"), !option.isRepeatable);
        if (!option.isRepeatable)
            QCOMPARE(twice.exitStatus, 2);
    }
}

void TestProgram::numbersAreDecimalDigits_data()
{
    QTest::addColumn<QString>("number");
    for (const char *number : {"", "x", "0x1", "+1", " 1", "1.0", "1e2", "-1", "99999999999"})
        QTest::newRow(*number ? number : "empty") << number;
}

void TestProgram::numbersAreDecimalDigits()
{
    QFETCH(QString, number);
    const QVector<QPair<QStringList, QString>> lines = {
        {{"markers", "a.csv", "--max"}, "markers: --max expects a whole number from 0 to 100"},
        {{"drive", "a.mdr", "--tolerance"}, "drive: --tolerance expects a whole number from 0 to 86400000"},
        {{"waterfall", "a.mdr", "--output", "a.png", "--width"},
         "waterfall: --width expects a whole number from 800 to 8000"},
        {{"logo", "--model", "1", "--firmware", "1", "--serial", "1", "--revision"},
         "logo: --revision expects a whole number from 0 to 2147483647"}};
    for (const auto &[arguments, error] : lines) {
        const Run result = run(QStringList(arguments) << number);
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errors, "aveldoran: " + error + ", not '" + number + "'\n");
    }
}

void TestProgram::emptyNamesAreRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    for (const char *command : {"calibration", "channels", "drive", "limits", "markers", "waypoints"})
        QTest::newRow(command) << QStringList{command, ""}
                               << QStringLiteral("%1: expected the name of a file, found ''").arg(command);
    const auto add = [](const char *option, const QStringList &arguments) {
        QTest::newRow(option)
            << QStringList(arguments + QStringList{QLatin1String("--") + option, ""})
            << QStringLiteral("%1: --%2 expects the name of a file, not ''").arg(arguments.constFirst(), option);
    };
    add("efis", {"channels"});
    add("check", {"limits", "a.xml"});
    add("rewrite", {"limits", "a.xml"});
    add("plot", {"markers", "a.csv"});
    add("gpx", {"drive", "a.mdr"});
    add("nmea", {"drive", "a.mdr"});
    add("output", {"drive", "a.mdr"});
    add("background", {"logo", "--model", "1", "--firmware", "1", "--serial", "1"});
    add("settings", {"logo", "--model", "1", "--firmware", "1", "--serial", "1"});
}

void TestProgram::emptyNamesAreRefused()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Run result = run(arguments);
    QCOMPARE(result.errors, "aveldoran: " + error + "\n");
    QCOMPARE(result.exitStatus, 2);
}

// --- files ---

void TestProgram::unreadableFilesAreNamedInOneForm_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString limits = QLatin1String(AVELDORAN_EXAMPLES_DIR) + "/data/limits/en55032-radiated.xml";
    const QStringList logo{"logo", "--model", "1", "--firmware", "2", "--serial", "3"};
    QTest::newRow("calibration") << QStringList{"calibration", "FILE"};
    QTest::newRow("channels") << QStringList{"channels", "FILE"};
    QTest::newRow("channels of an EFIS") << QStringList{"channels", "--efis", "FILE"};
    QTest::newRow("drive") << QStringList{"drive", "FILE"};
    QTest::newRow("limits") << QStringList{"limits", "FILE"};
    QTest::newRow("limits, a trace") << QStringList{"limits", limits, "--check", "FILE"};
    QTest::newRow("logo, a background") << QStringList(logo + QStringList{"--background", "FILE"});
    QTest::newRow("logo, a layout") << QStringList(logo + QStringList{"--settings", "FILE"});
    QTest::newRow("markers") << QStringList{"markers", "FILE"};
    QTest::newRow("record") << QStringList{"record", "--simulate", "--gpx", "FILE", "--output", "/nowhere/a.mdr"};
    QTest::newRow("waterfall") << QStringList{"waterfall", "FILE", "--output", "/nowhere/a.png"};
    QTest::newRow("waypoints") << QStringList{"waypoints", "FILE"};
}

void TestProgram::unreadableFilesAreNamedInOneForm()
{
    QFETCH(QStringList, arguments);
    const QString missing = m_folder->path("missing");
    arguments.replaceInStrings("FILE", missing);
    const Run result = run(arguments);
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + missing + ": can't be read: No such file or directory\n");
}

void TestProgram::picturesOfNothingReadAreNotDrawn_data()
{
    QTest::addColumn<QStringList>("arguments");
    const QString trace = QLatin1String(AVELDORAN_EXAMPLES_DIR) + "/data/traces/broadband.csv";
    QTest::newRow("calibration") << QStringList{"calibration"};
    QTest::newRow("limits") << QStringList{"limits"};
    QTest::newRow("limits with a trace") << QStringList{"limits", "--check", trace};
    QTest::newRow("markers") << QStringList{"markers"};
}

void TestProgram::picturesOfNothingReadAreNotDrawn()
{
    QFETCH(QStringList, arguments);
    const QStringList inputs{m_folder->path("missing.xml"), m_folder->write("broken.xml", "<data><limit")};
    for (const QString &input : inputs) {
        m_folder->write("p.png", "old");
        QCOMPARE(run(arguments + QStringList{input, "--plot", m_folder->path("p.png")}).exitStatus, 1);
        QCOMPARE(m_folder->read("p.png"), QByteArray("old"));
        QVERIFY(QFile::remove(m_folder->path("p.png")));
        QCOMPARE(run(arguments + QStringList{input, "--plot", m_folder->path("p.png")}).exitStatus, 1);
        QVERIFY(!QFile::exists(m_folder->path("p.png")));
    }
}

void TestProgram::inputsAreNotReplaced_data()
{
    QTest::addColumn<QStringList>("arguments"); // IN stands for a file, OUT for another name of it
    QTest::addColumn<QString>("suffix");
    const QStringList logo{"logo", "--model", "1", "--firmware", "2", "--serial", "3"};
    QTest::newRow("calibration") << QStringList{"calibration", "IN", "--plot", "OUT"} << ".png";
    QTest::newRow("drive") << QStringList{"drive", "IN", "--output", "OUT"} << ".kml";
    QTest::newRow("drive, a track") << QStringList{"drive", "a.mdr", "--gpx", "IN", "--output", "OUT"} << ".kml";
    QTest::newRow("limits") << QStringList{"limits", "IN", "--plot", "OUT"} << ".png";
    QTest::newRow("limits, a trace") << QStringList{"limits", "a.xml", "--check", "IN", "--plot", "OUT"} << ".png";
    QTest::newRow("limits, a trace by limits")
        << QStringList{"limits", "a.xml", "--check", "IN", "--rewrite", "OUT"} << ".csv";
    QTest::newRow("limits, the new ones")
        << QStringList{"limits", "a.xml", "--rewrite", "IN", "--plot", "OUT"} << ".png";
    QTest::newRow("logo") << QStringList(logo + QStringList{"--background", "IN", "--output", "OUT"}) << ".bmp";
    QTest::newRow("markers") << QStringList{"markers", "IN", "--plot", "OUT"} << ".png";
    QTest::newRow("record") << QStringList{"record", "--simulate", "--gpx", "IN", "--output", "OUT"} << ".gpx";
    QTest::newRow("waterfall") << QStringList{"waterfall", "IN", "--output", "OUT"} << ".png";
}

void TestProgram::inputsAreNotReplaced()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, suffix);
    const QString input = m_folder->write("in" + suffix, "old");
    QVERIFY(QFile::link(input, m_folder->path("link" + suffix)));
    QVERIFY(QDir(m_folder->path()).mkdir("below"));
    for (const QString &output : {input, m_folder->path("link" + suffix), m_folder->path("below/../in" + suffix)}) {
        QStringList line = arguments;
        line.replaceInStrings(QRegularExpression("^IN$"), input).replaceInStrings(QRegularExpression("^OUT$"), output);
        const Run result = run(line);
        QCOMPARE(result.exitStatus, 2);
        QVERIFY2(result.errors.contains(" would replace '" + input + "'"), qPrintable(result.errors));
        QCOMPARE(m_folder->read("in" + suffix), QByteArray("old"));
    }
}

void TestProgram::onlyRegularFilesAreReplaced()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, suffix);
    const QString pipe = m_folder->path("pipe" + suffix);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QStringList line = replaced(arguments, *m_folder);
    const Run result = run(line.replaceInStrings(QRegularExpression("^OUT$"), pipe));
    QCOMPARE(result.exitStatus, 1);
    QCOMPARE(result.errors, "aveldoran: " + pipe + ": can't be written: Not a regular file\n");
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(pipe).constData(), &status), 0);
    QVERIFY(S_ISFIFO(status.st_mode));
}

void TestProgram::aFullDiskKeepsTheOldFile()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, suffix);
    const QString name = "out" + suffix;
    QStringList line = replaced(arguments, *m_folder);
    line.replaceInStrings(QRegularExpression("^OUT$"), m_folder->write(name, "old"));
    const QString whole = "'" + line.join("' '") + "'";
    // A library writes a file of its own before the program does.
    const bool isOwnFile = !arguments.contains("--rewrite");
    const Run result =
        runHere(QStringLiteral("trap '' XFSZ; ulimit -f 0; '%1' %2 >/dev/null").arg(AVELDORAN_PROGRAM, whole));
    QCOMPARE(result.exitStatus, 1);
    if (isOwnFile)
        QCOMPARE(result.errors, "aveldoran: " + m_folder->path(name) + ": can't be written: File too large\n");
    QCOMPARE(m_folder->read(name), QByteArray("old"));
    const Run partly =
        runHere(QStringLiteral("trap '' XFSZ; ulimit -f 1; '%1' %2 >/dev/null").arg(AVELDORAN_PROGRAM, whole));
    if (partly.exitStatus == 0) {
        QVERIFY(m_folder->read(name).size() > 3 && m_folder->read(name).size() <= 1024); // it had room
    } else {
        QCOMPARE(partly.exitStatus, 1);
        QVERIFY(!partly.errors.isEmpty());
        QCOMPARE(m_folder->read(name), QByteArray("old"));
    }
    const QStringList left = QDir(m_folder->path()).entryList({"out*"}, QDir::Files | QDir::Hidden);
    QCOMPARE(left, QStringList{name});
    QCOMPARE(runHere(QStringLiteral("'%1' %2").arg(AVELDORAN_PROGRAM, whole)).exitStatus, 0);
    QVERIFY(m_folder->read(name) != "old");
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
