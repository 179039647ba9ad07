#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"

#include <QtGui/QGuiApplication>

#include <algorithm>
#include <iterator>
#include <memory>

namespace {

struct Command
{
    const char *name;
    const char *summary;
    int (*run)(const QStringList &arguments);
    bool draws = false; // needs a GUI application
};

constexpr Command kCommands[] = {
    {"channels", "build a channel plan from profile files and print it", runChannels},
    {"logo", "compose the boot logo of a device", runLogo, true},
};

const Command *findCommand(const QString &name)
{
    const auto *command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                       [&name](const Command &known) { return name == QLatin1String(known.name); });
    return command != std::end(kCommands) ? command : nullptr;
}

void dropWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        Console::error(text);
}

// Pictures are drawn without a display. What Qt warns of while it looks for a desktop is of no use to a user.
std::unique_ptr<QCoreApplication> makeApplication(bool draws, int &argc, char **argv)
{
    if (!draws)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QtMessageHandler before = qInstallMessageHandler(dropWarning);
    auto application = std::make_unique<QGuiApplication>(argc, argv);
    qInstallMessageHandler(before);
    return application;
}

QString usage()
{
    QString text = QStringLiteral("Usage: aveldoran COMMAND [OPTIONS] ...\n"
                                  "Works on the files that surround a spectrum measurement.\n\nCommands:\n");
    for (const Command &command : kCommands)
        text += QStringLiteral("  %1  %2\n").arg(QLatin1String(command.name), -12).arg(QLatin1String(command.summary));
    return text +
           QStringLiteral("\nOptions:\n  --help     this text; after a command, the command's own\n"
                          "  --version  the version\n\nExit status: 0 done, 1 some input could not be read or was "
                          "refused, 2 wrong usage.\n");
}

} // namespace

int main(int argc, char **argv)
{
    const Command *command = findCommand(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    const auto application = makeApplication(command && command->draws, argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Aveldoran"));
    QCoreApplication::setApplicationName(QStringLiteral("aveldoran"));
    QCoreApplication::setApplicationVersion(QStringLiteral(AVELDORAN_VERSION));

    QStringList arguments = QCoreApplication::arguments();
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        Console::write(usage());
        return Console::finish() ? ExitDone : ExitFailed;
    }
    if (name == QLatin1String("--version")) {
        Console::write(QStringLiteral("aveldoran %1\n").arg(QCoreApplication::applicationVersion()));
        return Console::finish() ? ExitDone : ExitFailed;
    }
    if (!command) {
        Console::error(name.isEmpty() ? QStringLiteral("a command is missing; see 'aveldoran --help'")
                                      : QStringLiteral("unknown command '%1'; see 'aveldoran --help'").arg(name));
        return ExitUsage;
    }
    arguments.removeAt(1);
    arguments[0] = QStringLiteral("aveldoran %1").arg(name);
    Console::reportWarnings();
    return command->run(arguments);
}
