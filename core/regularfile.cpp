#include "core/regularfile.h"

#include "core/coretext.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

bool openRegularFile(QFile *file, QString *errorText)
{
    const QFileInfo info(file->fileName());
    if (info.exists() && !info.isFile() && !info.isDir()) { // opening a pipe would wait for its other end
        *errorText = CoreText::tr("Not a regular file");
        return false;
    }
    if (!file->open(QIODevice::ReadOnly)) {
        *errorText = file->errorString();
        return false;
    }
    return true;
}
