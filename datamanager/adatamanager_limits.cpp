#include "datamanager/adatamanager.h"

#include "core/alimit.h"
#include "datamanager/adatamanager_p.h"
#include "datamanager/scanneddirectories.h"

#include <QtCore/QFileInfo>

// The limit store: the limits of each file, and those that the application handed in.

namespace {

const QString &internalGroup()
{
    static const QString name = QStringLiteral("(internal)");
    return name;
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
    watchFile(filename); // again: a file that was replaced while it was read took its watch along
    d->limitsByFile[filename] = limits;
    Q_EMIT limitDataChanged();
    return true;
}

int ADataManager::addLimitPath(const QString &path)
{
    int added = 0;
    const auto addFile = [this, &added](const QString &filename) { added += addLimitFile(filename) ? 1 : 0; };
    if (QFileInfo(path).isDir())
        forEachFile(path, {}, nullptr, addFile);
    else
        addFile(path);
    return added;
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
