#pragma once

#include <QtCore/QString>

class QFile;

// Files as the suite's readers want them. Private to the two libraries.

// Whether there is a file or directory of that name, also while another process replaces it: QFile::exists() then looks
// at the file that has just lost its name, and says no.
bool fileExists(const QString &fileName);

// Opens a regular file for reading. False with *errorText set for anything else: a missing or unreadable file, a
// directory, a pipe.
bool openRegularFile(QFile *file, QString *errorText);
