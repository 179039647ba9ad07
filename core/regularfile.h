#pragma once

#include <QtCore/QString>

class QFile;

// Opens a regular file for reading. False with *errorText set for anything else: a missing or unreadable file, a
// directory, a pipe. Private to the two libraries.
bool openRegularFile(QFile *file, QString *errorText);
