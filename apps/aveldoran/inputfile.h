#pragma once

#include <QtCore/QString>

// True if a file of that name can be opened. Else "FILE: can't be read: REASON" is reported, in one form for all files
// whatever reads them. What is no regular file is not opened, since a pipe would wait or lose what it holds.
bool canBeRead(const QString &fileName);
