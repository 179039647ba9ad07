#include "core/atomicfile.h"

#include <QtCore/QSaveFile>

bool writeFileAtomically(const QString &fileName, const QByteArray &content, QString *errorText)
{
    QSaveFile file(fileName);
    // write() may take less than it was given without an error, and commit() would then keep the truncated file.
    const bool written = file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    if (!written)
        file.cancelWriting();
    if (written && file.commit())
        return true;
    if (errorText)
        *errorText = file.errorString();
    return false;
}
