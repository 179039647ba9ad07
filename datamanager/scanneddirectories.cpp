#include "datamanager/scanneddirectories.h"

#include <QtCore/QFile>

#include <sys/stat.h>

// Not by the canonical path, whose cost grows with the depth, so that a deep tree would take minutes.
bool ScannedDirectories::enter(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return true; // one inside the program, which no link leads to
    const QPair<quint64, quint64> id(status.st_dev, status.st_ino);
    if (m_entered.contains(id))
        return false;
    m_entered.insert(id);
    return true;
}
