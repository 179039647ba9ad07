#include "core/atomicfile.h"

#include "core/coretext.h"
#include "core/failure.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

bool isReplaceable(const QString &fileName)
{
    const QFileInfo info(fileName);
    return !info.exists() || info.isFile();
}

bool writeFileAtomically(const QString &fileName, const QByteArray &content, QString *errorText)
{
    if (!isReplaceable(fileName))
        return fail(errorText, CoreText::tr("Not a regular file"));
    QSaveFile file(fileName);
    // write() may take less than it was given without an error, and commit() would then keep the truncated file.
    const bool written = file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    if (!written)
        file.cancelWriting();
    if (written && file.commit())
        return true;
    return fail(errorText, file.errorString());
}
