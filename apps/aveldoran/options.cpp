#include "apps/aveldoran/options.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/tracefile.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

bool readNumberOption(const QCommandLineParser &parser, const char *command, const QString &option, int least, int most,
                      int *number)
{
    if (!parser.isSet(option))
        return true;
    bool ok = false;
    const int value = parser.value(option).toInt(&ok);
    if (ok && value >= least && value <= most) {
        *number = value;
        return true;
    }
    Console::error(
        QStringLiteral("%1: --%2 expects a number from %3 to %4, not '%5'")
            .arg(QLatin1String(command), option, QString::number(least), QString::number(most), parser.value(option)));
    return false;
}

bool readFrequencyOption(const QCommandLineParser &parser, const char *command, const QString &option,
                         AFrequency *frequency)
{
    return !parser.isSet(option) || readFrequencyOption(command, option, parser.value(option), frequency);
}

bool readFrequencyOption(const char *command, const QString &option, const QString &text, AFrequency *frequency)
{
    if (readFrequency(text.trimmed().toUtf8(), AFrequency::Hz, frequency))
        return true;
    Console::error(QStringLiteral("%1: --%2 expects a frequency such as '100 MHz', not '%3'")
                       .arg(QLatin1String(command), option, text));
    return false;
}

bool readOutputOption(const QCommandLineParser &parser, const char *command, const QString &option,
                      const QStringList &inputs, QString *fileName)
{
    if (!parser.isSet(option))
        return true;
    *fileName = parser.value(option);
    if (fileName->isEmpty()) {
        Console::error(QStringLiteral("%1: --%2 expects the name of a file").arg(QLatin1String(command), option));
        return false;
    }
    const QString replaced = QFileInfo(*fileName).canonicalFilePath(); // empty if there is no such file
    for (const QString &input : inputs) {
        if (!replaced.isEmpty() && replaced == QFileInfo(input).canonicalFilePath()) {
            Console::error(QStringLiteral("%1: --%2 would replace %3, which is to be read")
                               .arg(QLatin1String(command), option, input));
            return false;
        }
    }
    return true;
}
