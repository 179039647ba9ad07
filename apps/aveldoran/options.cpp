#include "apps/aveldoran/options.h"

#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/valuereading.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <algorithm>

namespace {

bool isSameFile(const QString &one, const QString &other)
{
    const QFileInfo first(one);
    const QFileInfo second(other);
    if (first.absoluteFilePath() == second.absoluteFilePath())
        return true;
    const QString canonical = first.canonicalFilePath(); // empty if there is no such file
    return !canonical.isEmpty() && canonical == second.canonicalFilePath();
}

} // namespace

bool refuseOption(const char *command, const QString &option, const QString &expected, const QString &found)
{
    CommandLine::usageError(command, QStringLiteral("--%1 expects %2, not '%3'").arg(option, expected, found));
    return false;
}

QCommandLineOption optionWithDefault(const QString &name, const QString &text, const QString &valueName,
                                     const QString &defaultValue)
{
    return {name, QStringLiteral("%1; %2 if not given.").arg(text, defaultValue), valueName, defaultValue};
}

bool requireOption(const QCommandLineParser &parser, const char *command, const QString &option)
{
    return parser.isSet(option) || CommandLine::refuseMissing(command, QLatin1String("--") + option);
}

bool readNumberOption(const QCommandLineParser &parser, const char *command, const QString &option, int least, int most,
                      int *number)
{
    if (!parser.isSet(option))
        return true;
    static const QRegularExpression form(QStringLiteral("\\A[0-9]+\\z"));
    const QString text = parser.value(option);
    bool ok = false;
    const int value = text.toInt(&ok);
    if (ok && form.match(text).hasMatch() && value >= least && value <= most) {
        *number = value;
        return true;
    }
    return refuseOption(
        command, option,
        QStringLiteral("a whole number from %1 to %2").arg(QString::number(least), QString::number(most)), text);
}

bool readFrequencyOption(const QCommandLineParser &parser, const char *command, const QString &option,
                         AFrequency *frequency)
{
    return !parser.isSet(option) || readFrequencyOption(command, option, parser.value(option), frequency);
}

bool readFrequencyOption(const char *command, const QString &option, const QString &text, AFrequency *frequency)
{
    return readFrequency(text.trimmed().toUtf8(), AFrequency::Hz, frequency) ||
           refuseOption(command, option, QStringLiteral("a frequency such as '100 MHz'"), text);
}

bool readChoiceOption(const QCommandLineParser &parser, const char *command, const QString &option,
                      const QStringList &names, int *choice)
{
    if (!parser.isSet(option))
        return true;
    const QString name = parser.value(option);
    const int index = names.indexOf(name);
    if (index < 0)
        return refuseOption(command, option, listText(names), name);
    *choice = index;
    return true;
}

QCommandLineOption formatOption()
{
    return optionWithDefault(QStringLiteral("format"), QStringLiteral("How to print: text or json"),
                             QStringLiteral("FORMAT"), QStringLiteral("text"));
}

bool readFormatOption(const QCommandLineParser &parser, const char *command, bool *asJson)
{
    int choice = *asJson ? 1 : 0;
    if (!readChoiceOption(parser, command, QStringLiteral("format"), {QStringLiteral("text"), QStringLiteral("json")},
                          &choice))
        return false;
    *asJson = choice == 1;
    return true;
}

bool readFileOption(const QCommandLineParser &parser, const char *command, const QString &option, QString *fileName)
{
    if (!parser.isSet(option))
        return true;
    *fileName = parser.value(option);
    return !fileName->isEmpty() || refuseOption(command, option, QStringLiteral("the name of a file"), *fileName);
}

bool readFilesOption(const QCommandLineParser &parser, const char *command, const QString &option,
                     QStringList *fileNames)
{
    if (!parser.isSet(option))
        return true;
    *fileNames = parser.values(option);
    return !fileNames->contains(QString()) ||
           refuseOption(command, option, QStringLiteral("the name of a file"), QString());
}

bool readOutputOption(const QCommandLineParser &parser, const char *command, const QString &option,
                      const QStringList &others, const QStringList &suffixes, QString *fileName)
{
    if (!readFileOption(parser, command, option, fileName))
        return false;
    if (!parser.isSet(option))
        return true;
    for (const QString &other : others) {
        if (!other.isEmpty() && isSameFile(*fileName, other)) {
            CommandLine::usageError(
                command,
                QStringLiteral("--%1 would replace '%2', which the command line names too").arg(option, other));
            return false;
        }
    }
    const bool isNamed = std::any_of(suffixes.begin(), suffixes.end(), [fileName](const QString &suffix) {
        return fileName->endsWith(suffix, Qt::CaseInsensitive);
    });
    if (!suffixes.isEmpty() && !isNamed)
        return refuseOption(command, option,
                            QStringLiteral("the name of a file that ends in %1").arg(listText(suffixes)), *fileName);
    return true;
}

QCommandLineOption plotOption(const QString &description)
{
    return {QStringLiteral("plot"), description, QStringLiteral("FILE.png")};
}

bool readPlotOption(const QCommandLineParser &parser, const char *command, const QStringList &others, QString *fileName)
{
    return readOutputOption(parser, command, QStringLiteral("plot"), others, {QStringLiteral(".png")}, fileName);
}

QString listText(const QStringList &names)
{
    if (names.size() < 2)
        return names.join(QString());
    return names.mid(0, names.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") + names.constLast();
}

bool readOneArgument(const QCommandLineParser &parser, const char *command, const QString &what, QString *argument)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.isEmpty())
        return CommandLine::refuseMissing(command, QLatin1String("a ") + what);
    if (arguments.size() > 1) {
        CommandLine::usageError(
            command, QStringLiteral("expected one %1, found %2").arg(what, QString::number(arguments.size())));
        return false;
    }
    *argument = arguments.constFirst();
    return true;
}

bool readArguments(const QCommandLineParser &parser, const char *command, const QString &what, QStringList *arguments)
{
    *arguments = parser.positionalArguments();
    return !arguments->isEmpty() || CommandLine::refuseMissing(command, QLatin1String("a ") + what);
}

bool readNoArgument(const QCommandLineParser &parser, const char *command)
{
    const QStringList arguments = parser.positionalArguments();
    if (arguments.isEmpty())
        return true;
    CommandLine::usageError(command, QStringLiteral("expected no argument, found '%1'").arg(arguments.constFirst()));
    return false;
}
