#include "apps/aveldoran/inputfile.h"

#include "apps/aveldoran/console.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

bool canBeRead(const QString &fileName)
{
    const QFileInfo info(fileName);
    const bool isRefused = info.exists() && !info.isFile() && !info.isDir();
    QFile file(fileName);
    if (!isRefused && file.open(QIODevice::ReadOnly))
        return true;
    Console::error(QStringLiteral("%1: can't be read: %2")
                       .arg(fileName, isRefused ? QStringLiteral("Not a regular file") : file.errorString()));
    return false;
}
