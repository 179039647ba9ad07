#include "datamanager/adatamanager.h"

#include "core/alimit.h"
#include "datamanager/adatamanager_p.h"

#include <QtCore/QFile>

#include <algorithm>

// What a change of a watched file does to the stores.

void ADataManager::updateFile(QString filename) // NOLINT(performance-unnecessary-value-param): a slot's signature
{
    const bool missing = !QFile(filename).exists();

    if (d->limitsByFile.contains(filename)) {
        if (missing)
            qDeleteAll(d->limitsByFile.take(filename));
        else
            addLimitFile(filename); // signals too where it succeeds: a reload deliberately gives two signals
        Q_EMIT limitDataChanged();
    }

    const auto fromFile = std::find_if(d->profiles.begin(), d->profiles.end(), [&filename](const AProfile *profile) {
        return profile && profile->source() == filename;
    });
    if (fromFile == d->profiles.end())
        return;
    // A bare replacement, deliberately: whatever the file holds now stands under the old id, without a flag and
    // without a new watch, and the old object stays with whoever holds it.
    if (missing)
        removeProfile(fromFile.value());
    else
        fromFile.value() = AProfile::fromFile(filename);
    Q_EMIT profilesChanged();
}
