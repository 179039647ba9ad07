#pragma once

#include <core/afrequency.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

class QCommandLineParser;

// Values of options that several subcommands have. False, with an error in the name of the command, for a value that
// makes no sense; what is not given is left as it is.

bool readNumberOption(const QCommandLineParser &parser, const char *command, const QString &option, int least, int most,
                      int *number);
bool readFrequencyOption(const QCommandLineParser &parser, const char *command, const QString &option,
                         AFrequency *frequency);
bool readFrequencyOption(const char *command, const QString &option, const QString &text, AFrequency *frequency);

// The name of an output that is to replace none of the inputs.
bool readOutputOption(const QCommandLineParser &parser, const char *command, const QString &option,
                      const QStringList &inputs, QString *fileName);
