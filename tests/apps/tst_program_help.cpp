#include "apps/programrun.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

// What the help of the commands tells of their options.
class TestProgramHelp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultsAreTold_data();
    void defaultsAreTold();
    void neededOptionsAreMarked_data();
    void neededOptionsAreMarked();
    void whatIsMissingIsToldInOneForm();
    void eachCommandTellsItsExitStatuses();
};

namespace {

// The description of an option, on one line.
QString descriptionOf(const QString &command, const QString &option)
{
    const QString help = run({command, "--help"}).output.section("Options:", 1).section("\n\n", 0, 0);
    const QRegularExpression form("^  --" + option + "(?: <[^>]+>)? +(\\S.*?)(?=\\n  -|\\z)",
                                  QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
    return form.match(help).captured(1).simplified();
}

QStringList commandsOf(const QString &help)
{
    QStringList commands;
    const QStringList lines = help.section("Commands:\n", 1).section("\n\n", 0, 0).split('\n');
    for (const QString &line : lines)
        commands += line.simplified().section(' ', 0, 0);
    return commands;
}

} // namespace

void TestProgramHelp::defaultsAreTold_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("value");

    const auto add = [](const char *command, const char *option, const char *value) {
        QTest::addRow("%s --%s", command, option) << command << option << value;
    };
    for (const char *command : {"calibration", "channels", "devices", "limits", "markers", "waypoints"})
        add(command, "format", "text");
    add("drive", "elevation", "200");
    add("drive", "tolerance", "1000");
    add("drive", "labels", "name");
    add("logo", "revision", "1");
    add("logo", "scale", "1");
    add("record", "interval", "250");
    add("record", "start", "87.5 MHz");
    add("record", "stop", "108 MHz");
    add("record", "points", "501");
    add("record", "seed", "1");
    add("waterfall", "width", "1680");
    add("waterfall", "from", "#150a33");
    add("waterfall", "to", "#ffee66");
}

void TestProgramHelp::defaultsAreTold()
{
    QFETCH(QString, command);
    QFETCH(QString, option);
    QFETCH(QString, value);
    const QString description = descriptionOf(command, option);
    QVERIFY2(description.endsWith("; " + value + " if not given."), qPrintable(description));
}

void TestProgramHelp::neededOptionsAreMarked_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("values");

    QTest::newRow("logo") << "logo" << QStringList{"model", "firmware", "serial"} << QStringList{"1", "2", "3"};
    QTest::newRow("record") << "record" << QStringList{"simulate", "gpx", "output"} << QStringList{"", "a", "b"};
    QTest::newRow("waterfall") << "waterfall" << QStringList{"output"} << QStringList{"a.png"};
}

// Each of them is missed when all others are there.
void TestProgramHelp::neededOptionsAreMarked()
{
    QFETCH(QString, command);
    QFETCH(QStringList, options);
    QFETCH(QStringList, values);
    for (int missing = 0; missing < options.size(); ++missing) {
        const QString description = descriptionOf(command, options.at(missing));
        QVERIFY2(description.endsWith(" Required."), qPrintable(description));
        QStringList line{command};
        if (command == "waterfall")
            line += "a.mdr";
        for (int i = 0; i < options.size(); ++i) {
            if (i == missing)
                continue;
            line += "--" + options.at(i);
            if (!values.at(i).isEmpty())
                line += values.at(i);
        }
        const Run result = run(line);
        QCOMPARE(result.exitStatus, 2);
        QCOMPARE(result.errors, "aveldoran: " + command + ": --" + options.at(missing) +
                                    " is missing; see 'aveldoran " + command + " --help'\n");
    }
    const QString help = run({command, "--help"}).output.section("Options:", 1);
    QCOMPARE(help.count("Required."), options.size());
}

void TestProgramHelp::whatIsMissingIsToldInOneForm()
{
    QCOMPARE(run({}).errors, QString("aveldoran: a command is missing; see 'aveldoran --help'\n"));
    QStringList commands = commandsOf(run({"--help"}).output);
    QVERIFY(commands.removeOne("devices")); // needs nothing
    QVERIFY(commands.size() >= 9);
    for (const QString &command : qAsConst(commands)) {
        const Run result = run({command});
        QCOMPARE(result.exitStatus, 2);
        const QRegularExpression form(
            QString("\\Aaveldoran: %1: (a [a-z ]+|--[a-z]+) is missing; see 'aveldoran %1 --help'\n\\z").arg(command));
        QVERIFY2(form.match(result.errors).hasMatch(), qPrintable(result.errors));
    }
}

void TestProgramHelp::eachCommandTellsItsExitStatuses()
{
    const QString help = run({"--help"}).output;
    const QString statuses = "\nExit status:\n" + help.section("\nExit status:\n", 1).section("\n\n", 0, 0);
    QVERIFY(statuses.contains("\n  0  ") && statuses.contains("\n  1  ") && statuses.contains("\n  2  "));
    const QStringList commands = commandsOf(help);
    QVERIFY(commands.size() >= 10);
    for (const QString &command : commands)
        QVERIFY2(run({command, "--help"}).output.endsWith(statuses + '\n'), qPrintable(command));
}

QTEST_GUILESS_MAIN(TestProgramHelp)
#include "tst_program_help.moc"
