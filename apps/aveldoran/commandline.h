#pragma once

#include <QtCore/QStringList>

class QCommandLineParser;

// What the command lines of all subcommands have in common; docs/command-line.md has the rules.
namespace CommandLine {

// "aveldoran: COMMAND: TEXT" on standard error.
void usageError(const char *command, const QString &text);

// "WHAT is missing; see 'aveldoran COMMAND --help'", of what a command needs; without one, of the command itself.
QString missingText(const QString &what, const char *command = nullptr);
// The same as a usage error; false.
bool refuseMissing(const char *command, const QString &what);

// ", did you mean 'NEAR'?", or empty if none of the words is near.
QString suggestion(const QString &typed, const QStringList &words);

// The description at the head of the help, of paragraphs with an empty line between; and command lines that run from
// the root of the repository. Both are broken where a terminal of 80 columns ends.
void describe(QCommandLineParser *parser, const QString &description, const QStringList &examples);

// The part "Exit status:" of each help.
QString exitStatusText();

// Parses a subcommand's arguments, of which the first is the command as a user types it. An option with a value is
// given once, unless it is one of `repeatable`. False when the run ends here: after --help or --version, or with a
// reported error.
bool parse(QCommandLineParser *parser, const char *command, const QStringList &arguments, int *exitStatus,
           const QStringList &repeatable = {});

} // namespace CommandLine
