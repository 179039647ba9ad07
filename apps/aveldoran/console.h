#pragma once

#include <QtCore/QString>

#include <functional>

// What all subcommands say to the user, in one manner.
namespace Console {

// "aveldoran: TEXT" on standard error.
void error(const QString &text);

// From here on each message of the libraries is reported as an error, debug messages too: of some failures there is
// nothing else. Tells whether one of them was a warning or worse, which means that something was left undone.
void reportMessages();
bool hasWarned();

// A passing line on standard error, shown on a terminal only; the next one or an error replaces it.
void progress(const QString &text);
// The same with a bar, at most ten times a second.
void progressBar(const QString &text, qint64 done, qint64 total);
void clearProgress();

// Does what may fail with a text for the user, which is then reported as an error. The progress ends with it.
bool attempt(const std::function<bool(QString *errorText)> &operation);

// A line on standard error that is no error.
void remark(const QString &text);

// "FILE: written; CONTENT" on standard error, after each file that a command wrote. Standard output has the data alone.
void tellWritten(const QString &fileName, const QString &content);
// "FILE: left out: WHAT" there, of what has no place in the file.
void tellLeftOut(const QString &fileName, const QString &what);

// Standard output in UTF-8. False from finish() if any of it could not be written, which it then reports.
void write(const QString &text);
bool finish();

// A text on one line, without characters that a terminal would act on.
QString oneLine(const QString &text);
QString oneLineOrDash(const QString &text); // "-" for an empty one

} // namespace Console
