#include "apps/aveldoran/outputfile.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

namespace {

// A write may take less than it is given without an error, and the next one says why.
bool writeAll(QIODevice *device, const QByteArray &content)
{
    qint64 written = 0;
    while (written < content.size()) {
        const qint64 part = device->write(content.constData() + written, content.size() - written);
        if (part <= 0)
            return false;
        written += part;
    }
    return true;
}

} // namespace

bool writeOutputFile(const QString &fileName, const QByteArray &content, QString *errorText)
{
    return writeOutputFile(
        fileName, [&content](QIODevice *device) { return writeAll(device, content); }, errorText);
}

bool writeOutputFile(const QString &fileName, const std::function<bool(QIODevice *)> &write, QString *errorText)
{
    const QFileInfo replaced(fileName);
    const bool isRefused = replaced.exists() && !replaced.isFile();
    QSaveFile file(fileName);
    // From a buffer commit() would write the rest, and keep a file that is cut short.
    if (!isRefused && file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && write(&file) && file.commit())
        return true;
    *errorText = QStringLiteral("%1: can't be written: %2")
                     .arg(fileName, isRefused ? QStringLiteral("Not a regular file") : file.errorString());
    return false;
}
