#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"

#include <core/asettings.h>
#include <core/atranslator.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

namespace {

struct Command
{
    const char *name;
    const char *summary;
    int (*run)(const QStringList &arguments);
    bool alwaysDraws = false; // others do with --plot
};

constexpr char kHelp[] = "help";

constexpr Command kCommands[] = {
    {"calibration", "list calibration objects with their gains, and draw them", runCalibration},
    {"channels", "build a channel plan from profile files and print it", runChannels},
    {"devices", "list the attached measurement devices", runDevices},
    {"drive", "draw the recording of a measurement drive as a KML document", runDrive},
    {"limits", "print limit lines, draw them, and check a trace against them", runLimits},
    {"logo", "compose the boot logo of a device", runLogo, true},
    {"markers", "set markers on a trace and print what they read", runMarkers},
    {"record", "record a drive along a track", runRecord},
    {"waterfall", "draw a recording as a waterfall", runWaterfall, true},
    {"waypoints", "print what position files hold", runWaypoints},
};

QString usage()
{
    QString text = QStringLiteral("Usage: aveldoran COMMAND [OPTIONS] ...\n"
                                  "       aveldoran help [COMMAND]\n"
                                  "Works on the files that surround a spectrum measurement.\n\nCommands:\n");
    for (const Command &command : kCommands)
        text += QStringLiteral("  %1  %2\n").arg(QLatin1String(command.name), -12).arg(QLatin1String(command.summary));
    return text +
           QStringLiteral("\nOptions:\n"
                          "  -h, --help  Show this text; after a command, the command's own.\n"
                          "  --version   Show the version of the program.\n"
                          "\n") +
           CommandLine::exitStatusText() +
           QStringLiteral("\nExample:\n"
                          "  aveldoran channels examples/data/profiles/fm-broadcast.profile\n");
}

const Command *commandNamed(const QString &name)
{
    const auto *command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                       [&name](const Command &known) { return name == QLatin1String(known.name); });
    return command == std::end(kCommands) ? nullptr : command;
}

// Of a first argument that is no command.
QString problemOf(const QString &name)
{
    if (name.isEmpty())
        return CommandLine::missingText(QStringLiteral("a command"));
    const bool isOption = name.startsWith(QLatin1Char('-'));
    QStringList words{QStringLiteral("help")};
    for (const Command &command : kCommands)
        words += QLatin1String(command.name);
    if (isOption)
        words = QStringList{QStringLiteral("--help"), QStringLiteral("--version")};
    const QString near = CommandLine::suggestion(name, words);
    return QStringLiteral("unknown %1 '%2'%3")
        .arg(isOption ? QStringLiteral("option") : QStringLiteral("command"), name,
             near.isEmpty() ? QStringLiteral("; see 'aveldoran --help'") : near);
}

int printAndEnd(const QString &text)
{
    Console::write(text);
    return Console::finish() ? ExitDone : ExitFailed;
}

int refuse(const QString &problem)
{
    Console::error(problem);
    return ExitUsage;
}

bool asksForHelp(const QString &word)
{
    return word == QLatin1String(kHelp) || word == QLatin1String("--help") || word == QLatin1String("-h");
}

// The exit status of a command line that asks for the program's own help or version, or for help in a way that it can't
// be had. Others, and "help COMMAND", which is "COMMAND --help", are for a command.
std::optional<int> answerForProgram(const QStringList &words)
{
    const bool isVersion = words.value(0) == QLatin1String("--version");
    if (!isVersion && !asksForHelp(words.value(0)))
        return {};
    const bool isOfWord = words.constFirst() == QLatin1String(kHelp) && words.size() > 1;
    const int most = isOfWord ? 2 : 1;
    if (words.size() > most) {
        const QString &found = words.at(most);
        return refuse(QStringLiteral("expected nothing after '%1', found '%2'%3")
                          .arg(words.mid(0, most).join(QLatin1Char(' ')), found,
                               !isVersion && commandNamed(found)
                                   ? QStringLiteral("; see 'aveldoran help %1'").arg(found)
                                   : QString()));
    }
    if (isVersion)
        return printAndEnd(QStringLiteral("aveldoran %1\n").arg(QCoreApplication::applicationVersion()));
    if (!isOfWord || asksForHelp(words.at(1)))
        return printAndEnd(usage());
    if (words.at(1).startsWith(QLatin1Char('-')))
        return refuse(QStringLiteral("help expects the name of a command, not '%1'").arg(words.at(1)));
    return {};
}

bool asksForPicture(const char *argument)
{
    constexpr char kOption[] = "--plot";
    constexpr std::size_t kLength = sizeof kOption - 1;
    return std::strncmp(argument, kOption, kLength) == 0 && (argument[kLength] == '\0' || argument[kLength] == '=');
}

QtMessageHandler defaultMessageHandler = nullptr;

// A place for sockets is of no concern to a program that draws into files, and services have none.
void withoutRuntimeDirectory(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR")))
        defaultMessageHandler(type, context, text);
}

// Drawing needs a QApplication. It goes to files alone, so no display is asked for, and options that would do so are
// kept from it.
std::unique_ptr<QCoreApplication> createApplication(int &argc, char **argv)
{
    const Command *command = argc > 1 ? commandNamed(QString::fromLatin1(argv[1])) : nullptr;
    if (!(command && command->alwaysDraws) && std::none_of(argv + 1, argv + argc, asksForPicture))
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char *name[] = {argv[0], nullptr};
    defaultMessageHandler = qInstallMessageHandler(withoutRuntimeDirectory);
    auto application = std::make_unique<QApplication>(count, name);
    qInstallMessageHandler(defaultMessageHandler);
    return application;
}

// Scripts read what is printed: numbers have a point and no signs between thousands, whatever the user's language.
void setPlainNumbers()
{
    QLocale locale; // the first one made; a default set before it would lose its options
    locale = QLocale::c();
    locale.setNumberOptions(locale.numberOptions() | QLocale::OmitGroupSeparator);
    QLocale::setDefault(locale);
}

} // namespace

int main(int argc, char **argv)
{
    const std::unique_ptr<QCoreApplication> application = createApplication(argc, argv);
    setPlainNumbers();
    QCoreApplication::setOrganizationName(QStringLiteral("Aveldoran"));
    QCoreApplication::setApplicationName(QStringLiteral("aveldoran"));
    QCoreApplication::setApplicationVersion(QStringLiteral(AVELDORAN_VERSION));

    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    if (const std::optional<int> status = answerForProgram(arguments.mid(1)))
        return *status;
    if (arguments.value(1) == QLatin1String(kHelp))
        arguments = QStringList{arguments.constFirst(), arguments.at(2), QStringLiteral("--help")};
    const QString name = arguments.value(1);
    const Command *command = commandNamed(name);
    if (!command)
        return refuse(problemOf(name));
    arguments.removeAt(1);
    arguments[0] = QStringLiteral("aveldoran %1").arg(name);
    ATranslator translator;
    if (translator.setLanguage(ASettings::language()))
        QCoreApplication::installTranslator(&translator);
    Console::reportMessages();
    const int status = command->run(arguments);
    return status == ExitDone && Console::hasWarned() ? ExitFailed : status;
}
