#include "core/regularfile.h"

#include "core/coretext.h"
#include "core/failure.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

bool openRegularFile(QFile *file, QString *errorText)
{
    const QFileInfo info(file->fileName());
    if (info.exists() && !info.isFile() && !info.isDir()) // opening a pipe would wait for its other end
        return fail(errorText, CoreText::tr("Not a regular file"));
    return file->open(QIODevice::ReadOnly) || fail(errorText, file->errorString());
}
