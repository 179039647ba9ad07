#include "datamanager/adatamanager.h"

#include "core/alimit.h"
#include "datamanager/adatamanager_p.h"
#include "datamanager/scanneddirectories.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

// The limit store: the limits of each file, and those that the application handed in.

namespace {

const QString &internalGroup()
{
    static const QString name = QStringLiteral("(internal)");
    return name;
}

int addLimitTree(ADataManager *manager, const QString &path, ScannedDirectories *scanned)
{
    if (!QFileInfo(path).isDir())
        return manager->addLimitFile(path) ? 1 : 0;
    if (!scanned->enter(path))
        return 0;

    int added = 0;
    const QDir::Filters filter = QDir::Dirs | QDir::Files | QDir::AllDirs | QDir::Readable | QDir::NoDotAndDotDot;
    const QFileInfoList entries = QDir(path).entryInfoList(filter);
    for (const QFileInfo &entry : entries)
        added += addLimitTree(manager, entry.absoluteFilePath(), scanned);
    return added;
}

} // namespace

bool ADataManager::addLimitFile(const QString &filename)
{
    // Before it is read, so that no change in between is missed.
    const bool isNewlyWatched = !filename.isEmpty() && d->watcher.addPath(filename);
    QList<const ALimit *> limits;
    QString message;
    if (!ALimit::readAll(filename, limits, &message)) {
        if (isNewlyWatched)
            d->watcher.removePath(filename);
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
    ScannedDirectories scanned;
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
