#include "datamanager/adatamanager.h"

#include "core/alimit.h"
#include "datamanager/adatamanager_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QPair>
#include <QtCore/QSet>

#include <sys/stat.h>

// The limit store: the limits of each file, and those that the application handed in.

namespace {

const QString &internalGroup()
{
    static const QString name = QStringLiteral("(internal)");
    return name;
}

using DirectoryId = QPair<quint64, quint64>; // of its device, and on it

// Not the canonical path, whose cost grows with the depth, so that a deep tree would take minutes.
DirectoryId directoryId(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino};
}

// A directory counts once, by the first of the ways that lead to it: links may go round in a circle, and a few
// directories full of links to each other have more ways through them than a scan would ever end.
int addLimitTree(ADataManager *manager, const QString &path, QSet<DirectoryId> *scanned)
{
    if (!QFileInfo(path).isDir())
        return manager->addLimitFile(path) ? 1 : 0;
    const DirectoryId id = directoryId(path);
    if (scanned->contains(id))
        return 0;
    scanned->insert(id);

    int added = 0;
    const QDir::Filters filter = QDir::Dirs | QDir::Files | QDir::AllDirs | QDir::Readable | QDir::NoDotAndDotDot;
    const QFileInfoList entries = QDir(path).entryInfoList(filter, QDir::NoSort); // by name, that is
    for (const QFileInfo &entry : entries)
        added += addLimitTree(manager, entry.absoluteFilePath(), scanned);
    return added;
}

} // namespace

bool ADataManager::addLimitFile(const QString &filename)
{
    QList<const ALimit *> limits;
    QString message;
    if (!ALimit::readAll(filename, limits, &message)) {
        Q_EMIT error(message);
        return false;
    }
    qDeleteAll(d->limitsByFile.take(filename));
    watchFile(filename);
    d->limitsByFile[filename] = limits;
    Q_EMIT limitDataChanged();
    return true;
}

int ADataManager::addLimitPath(const QString &path)
{
    QSet<DirectoryId> scanned;
    return addLimitTree(this, path, &scanned);
}

bool ADataManager::addInternalLimit(const ALimit *limit)
{
    d->limitsByFile[internalGroup()].append(limit);
    Q_EMIT limitDataChanged();
    return true;
}

QStringList ADataManager::getLimitNames() const
{
    QStringList names;
    for (const QList<const ALimit *> &limits : qAsConst(d->limitsByFile)) {
        for (const ALimit *limit : limits) {
            if (limit)
                names.append(limit->name());
        }
    }
    return names;
}

const ALimit *ADataManager::getLimitForName(const QString &name) const
{
    for (const QList<const ALimit *> &limits : qAsConst(d->limitsByFile)) {
        for (const ALimit *limit : limits) {
            if (limit && limit->name() == name)
                return limit;
        }
    }
    return nullptr;
}

void ADataManager::clearLimitData()
{
    const QStringList groups = d->limitsByFile.keys();
    for (const QString &group : groups) {
        d->watcher.removePath(group);
        qDeleteAll(d->limitsByFile.take(group));
    }
    d->limitsByFile.clear();
    Q_EMIT limitDataChanged();
}
