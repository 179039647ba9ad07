#include "apps/aveldoran/commandline.h"

#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/spelling.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QRegularExpression>
#include <QtCore/QVector>

#include <algorithm>

namespace CommandLine {

namespace {

constexpr int kColumns = 79; // as Qt's part of the help

struct KnownOption
{
    QString name;
    bool takesValue;
};

// A parser names its options nowhere but in its help.
QVector<KnownOption> optionsOf(const QCommandLineParser &parser)
{
    static const QRegularExpression form(QStringLiteral("^  (?:-[a-z], )?--([a-z-]+)( <)?"),
                                         QRegularExpression::MultilineOption);
    QVector<KnownOption> options;
    auto matches = form.globalMatch(parser.helpText());
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        options.append({match.captured(1), match.capturedLength(2) > 0});
    }
    return options;
}

const KnownOption *find(const QVector<KnownOption> &options, const QString &argument)
{
    if (!argument.startsWith(QLatin1String("--")))
        return nullptr;
    const QString name = argument.mid(2).section(QLatin1Char('='), 0, 0);
    const auto *found = std::find_if(options.cbegin(), options.cend(),
                                     [&name](const KnownOption &option) { return option.name == name; });
    return found == options.cend() ? nullptr : found;
}

// As it was typed: the parser tells "formt" of "--formt", and of "-max" the letter m.
QString typedOption(const QString &unknown, const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        if (argument.section(QLatin1Char('='), 0, 0) == QLatin1String("--") + unknown)
            return QLatin1String("--") + unknown;
    }
    for (const QString &argument : arguments) {
        if (argument.startsWith(QLatin1Char('-')) && !argument.startsWith(QLatin1String("--")) &&
            argument.contains(unknown))
            return argument.section(QLatin1Char('='), 0, 0);
    }
    return unknown;
}

QString unknownOptionText(const QString &unknown, const QVector<KnownOption> &options, const QStringList &arguments)
{
    const QString typed = typedOption(unknown, arguments);
    QStringList names;
    for (const KnownOption &option : options)
        names += QLatin1String("--") + option.name;
    const QString completed = typed.startsWith(QLatin1String("--")) ? typed : QLatin1Char('-') + typed;
    return QStringLiteral("unknown option '%1'%2").arg(typed, suggestion(completed, names));
}

QString lowerSentence(QString text)
{
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.isEmpty() ? text : text.at(0).toLower() + text.mid(1);
}

// The parser takes "--firmware" for the model name in "--model --firmware 1.44".
QString swallowedOption(const QVector<KnownOption> &options, const QStringList &arguments)
{
    for (int i = 1; i + 1 < arguments.size() && arguments.at(i) != QLatin1String("--"); ++i) {
        const KnownOption *option = find(options, arguments.at(i));
        if (!option || !option->takesValue || arguments.at(i).contains(QLatin1Char('=')))
            continue;
        ++i;
        if (find(options, arguments.at(i)))
            return QStringLiteral("missing value after '--%1', '%2' is an option").arg(option->name, arguments.at(i));
    }
    return {};
}

// What the parser lets pass. Empty if all is well.
QString problemOf(const QCommandLineParser &parser, const QVector<KnownOption> &options, const QStringList &arguments,
                  const QStringList &repeatable)
{
    QString swallowed = swallowedOption(options, arguments);
    if (!swallowed.isEmpty())
        return swallowed;
    const QStringList given = parser.optionNames();
    for (const KnownOption &option : options) {
        if (option.takesValue && !repeatable.contains(option.name) && given.count(option.name) > 1)
            return QStringLiteral("--%1 is given more than once").arg(option.name);
    }
    if (parser.positionalArguments().contains(QString()))
        return QStringLiteral("expected the name of a file, found ''");
    return {};
}

// Lines of words with blanks between. Those but the first begin with `indent`, those before others end in
// `continuation`.
QString wrapped(const QStringList &words, const QString &indent, const QString &continuation)
{
    QString result;
    QString line = words.constFirst();
    for (int i = 1; i < words.size(); ++i) {
        const QString longer = line + QLatin1Char(' ') + words.at(i);
        if (longer.size() + continuation.size() <= kColumns) {
            line = longer;
        } else {
            result += line + continuation + QLatin1Char('\n');
            line = indent + words.at(i);
        }
    }
    return result + line;
}

// An option and its value stay on one line.
QString wrappedExample(const QString &example)
{
    static const QRegularExpression beforeOption(QStringLiteral(" (?=--)"));
    return wrapped((QLatin1String("  ") + example).split(beforeOption), QStringLiteral("      "),
                   QStringLiteral(" \\"));
}

bool printAndEnd(const QString &text, int *exitStatus)
{
    Console::write(text);
    *exitStatus = Console::finish() ? ExitDone : ExitFailed;
    return false;
}

} // namespace

void usageError(const char *command, const QString &text)
{
    Console::error(QStringLiteral("%1: %2").arg(QLatin1String(command), text));
}

QString missingText(const QString &what, const char *command)
{
    return QStringLiteral("%1 is missing; see 'aveldoran %2--help'")
        .arg(what, command ? QLatin1String(command) + QLatin1Char(' ') : QString());
}

bool refuseMissing(const char *command, const QString &what)
{
    usageError(command, missingText(what, command));
    return false;
}

QString suggestion(const QString &typed, const QStringList &words)
{
    const QString near = nearestWord(typed, words);
    return near.isEmpty() ? QString() : QStringLiteral(", did you mean '%1'?").arg(near);
}

void describe(QCommandLineParser *parser, const QString &description, const QStringList &examples)
{
    QStringList paragraphs;
    const QStringList texts = description.split(QStringLiteral("\n\n"));
    for (const QString &text : texts)
        paragraphs += wrapped(text.split(QLatin1Char(' ')), QString(), QString());
    QString lines = examples.size() == 1 ? QStringLiteral("Example:") : QStringLiteral("Examples:");
    for (const QString &example : examples)
        lines += QLatin1Char('\n') + wrappedExample(example);
    parser->setApplicationDescription((paragraphs << lines).join(QStringLiteral("\n\n")));
}

QString exitStatusText()
{
    return QStringLiteral("Exit status:\n"
                          "  0  All was done.\n"
                          "  1  Something was not done or refused, which a line on standard error tells\n"
                          "     that begins with 'aveldoran: ', or a trace exceeds a limit, which is\n"
                          "     printed. What else could be done was done.\n"
                          "  2  The command line makes no sense; nothing was done.\n");
}

bool parse(QCommandLineParser *parser, const char *command, const QStringList &arguments, int *exitStatus,
           const QStringList &repeatable)
{
    const QString help = QStringLiteral("help");
    const QString version = QStringLiteral("version");
    parser->addOptions({{{QStringLiteral("h"), help}, QStringLiteral("Show this text.")},
                        {version, QStringLiteral("Show the version of the program.")}});
    const QVector<KnownOption> options = optionsOf(*parser);
    *exitStatus = ExitUsage;
    if (!parser->parse(arguments)) {
        const QStringList unknown = parser->unknownOptionNames();
        usageError(command, unknown.isEmpty() ? lowerSentence(parser->errorText())
                                              : unknownOptionText(unknown.constFirst(), options, arguments));
        return false;
    }
    if (parser->isSet(help)) {
        const QString program = QCoreApplication::arguments().constFirst();
        QString text = parser->helpText();
        text.replace(text.indexOf(program), program.size(), arguments.constFirst());
        return printAndEnd(text + QLatin1Char('\n') + exitStatusText(), exitStatus);
    }
    if (parser->isSet(version))
        return printAndEnd(QStringLiteral("aveldoran %1\n").arg(QCoreApplication::applicationVersion()), exitStatus);
    const QString problem = problemOf(*parser, options, arguments, repeatable);
    if (problem.isEmpty())
        return true;
    usageError(command, problem);
    return false;
}

} // namespace CommandLine
