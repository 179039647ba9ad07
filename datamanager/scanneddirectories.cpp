#include "datamanager/scanneddirectories.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <sys/stat.h>

namespace {

struct Scan
{
    const QStringList &nameFilters;
    const PathFunction &beginDirectory;
    const PathFunction &takeFile;
    ScannedDirectories scanned;

    void run(const QString &directory)
    {
        const QDir dir(directory);
        if (!scanned.enter(dir.path()))
            return;
        if (beginDirectory)
            beginDirectory(dir.path());
        const QFileInfoList entries =
            dir.entryInfoList(nameFilters, QDir::Files | QDir::AllDirs | QDir::Readable | QDir::NoDotAndDotDot);
        for (const QFileInfo &entry : entries) {
            if (entry.isDir())
                run(entry.absoluteFilePath());
            else
                takeFile(entry.absoluteFilePath());
        }
    }
};

} // namespace

// Not by the canonical path, whose cost grows with the depth, so that a deep tree would take minutes.
bool ScannedDirectories::enter(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return true; // a Qt resource or nothing: no link leads there
    const QPair<quint64, quint64> id(status.st_dev, status.st_ino);
    if (m_entered.contains(id))
        return false;
    m_entered.insert(id);
    return true;
}

void forEachFile(const QString &directory, const QStringList &nameFilters, const PathFunction &beginDirectory,
                 const PathFunction &takeFile)
{
    Scan{nameFilters, beginDirectory, takeFile, {}}.run(directory);
}
