#include "datamanager/adatamanager.h"

#include "core/alimit.h"
#include "datamanager/adatamanager_p.h"

// The limit store.

void ADataManager::clearLimitData()
{
    for (auto file = d->limitsByFile.begin(); file != d->limitsByFile.end(); ++file) {
        d->watcher.removePath(file.key());
        qDeleteAll(file.value());
        file.value().clear();
    }
    d->limitsByFile.clear();
    Q_EMIT limitDataChanged();
}
