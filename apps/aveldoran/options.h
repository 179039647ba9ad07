#pragma once

#include <core/afrequency.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

class QCommandLineOption;
class QCommandLineParser;

// Values of options that several subcommands have. False, with an error in the name of the command, for a value that
// makes no sense; what is not given is left as it is.

// False, with "--OPTION expects EXPECTED, not 'FOUND'", for a value that makes no sense.
bool refuseOption(const char *command, const QString &option, const QString &expected, const QString &found);

// An option without which that value holds, as its help says: "TEXT; DEFAULT if not given."
QCommandLineOption optionWithDefault(const QString &name, const QString &text, const QString &valueName,
                                     const QString &defaultValue);

// Unlike the others, false for what is not given.
bool requireOption(const QCommandLineParser &parser, const char *command, const QString &option);

// Decimal digits alone.
bool readNumberOption(const QCommandLineParser &parser, const char *command, const QString &option, int least, int most,
                      int *number);

bool readFrequencyOption(const QCommandLineParser &parser, const char *command, const QString &option,
                         AFrequency *frequency);
bool readFrequencyOption(const char *command, const QString &option, const QString &text, AFrequency *frequency);

// The index of the value among the names.
bool readChoiceOption(const QCommandLineParser &parser, const char *command, const QString &option,
                      const QStringList &names, int *choice);

// The option of the commands that print text or JSON.
QCommandLineOption formatOption();
bool readFormatOption(const QCommandLineParser &parser, const char *command, bool *asJson);

// The names of files to read, which are not empty.
bool readFileOption(const QCommandLineParser &parser, const char *command, const QString &option, QString *fileName);
bool readFilesOption(const QCommandLineParser &parser, const char *command, const QString &option,
                     QStringList *fileNames);

// The name of an output that is to replace none of the other files, and ends in one of the suffixes if there are any.
bool readOutputOption(const QCommandLineParser &parser, const char *command, const QString &option,
                      const QStringList &others, const QStringList &suffixes, QString *fileName);

// The option of the commands that draw what they print.
QCommandLineOption plotOption(const QString &description);
bool readPlotOption(const QCommandLineParser &parser, const char *command, const QStringList &others,
                    QString *fileName);

// "one, two or three".
QString listText(const QStringList &names);

// What a command needs as arguments that are no options.
bool readOneArgument(const QCommandLineParser &parser, const char *command, const QString &what, QString *argument);
bool readArguments(const QCommandLineParser &parser, const char *command, const QString &what, QStringList *arguments);
bool readNoArgument(const QCommandLineParser &parser, const char *command);
