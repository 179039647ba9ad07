#include "datamanager/adatamanager.h"

#include "datamanager/adatamanager_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <memory>

// The profile store: one profile for each id.

namespace {

// A user's copy of an installed profile stays marked as one.
void inheritInstalledFlag(AProfile *profile, const AProfile *replaced, AProfile::Flag flag)
{
    if (replaced && (replaced->flags() & AProfile::InstalledProfile) && flag == AProfile::UserProfile)
        profile->setFlags(profile->flags() | AProfile::InstalledProfile);
}

void stopWatching(QFileSystemWatcher *watcher, const AProfile *profile)
{
    if (profile && !profile->source().isEmpty())
        watcher->removePath(profile->source());
}

} // namespace

bool ADataManager::addProfileFile(const QString &filename, AProfile::Flag flag)
{
    std::unique_ptr<AProfile> read(AProfile::fromFile(filename));
    if (!read) {
        Q_EMIT error(tr("Could not create profile from file '%1'").arg(filename));
        return false;
    }
    if (!read->isValid())
        return false;

    AProfile *profile = read.release();
    profile->setFlags(profile->flags() | flag);
    std::unique_ptr<AProfile> replaced(d->profiles.take(profile->id()));
    inheritInstalledFlag(profile, replaced.get(), flag);
    d->profiles[profile->id()] = profile;
    Q_EMIT profilesChanged();
    replaced.reset(); // after the signal, unlike addProfilePath
    watchFile(filename);
    return true;
}

int ADataManager::addProfilePath(const QString &path, AProfile::Flag flag)
{
    int takenOver = 0;
    QList<AProfile *> replacedProfiles;
    const QList<AProfile *> found = AProfile::fromPath(path);
    for (AProfile *profile : found) {
        if (!profile || !profile->isValid())
            continue; // deliberately not deleted
        profile->setFlags(profile->flags() | flag);
        // Watched before the replaced profile's watch is removed: a second scan of a path leaves its files unwatched,
        // which callers rely on.
        watchFile(profile->source());
        if (d->profiles.contains(profile->id())) {
            AProfile *replaced = d->profiles.take(profile->id());
            inheritInstalledFlag(profile, replaced, flag);
            stopWatching(&d->watcher, replaced);
            replacedProfiles.append(replaced);
        }
        d->profiles[profile->id()] = profile;
        ++takenOver;
    }
    qDeleteAll(replacedProfiles); // before the signal, unlike addProfileFile
    if (takenOver != 0)
        Q_EMIT profilesChanged();
    return takenOver;
}

QList<AProfile *> ADataManager::getProfiles() const
{
    return d->profiles.values();
}

AProfile *ADataManager::getProfileForId(const QString &id) const
{
    return d->profiles.value(id);
}

AProfile *ADataManager::getProfileForLabel(const QString &label, bool exact) const
{
    const QString upperLabel = label.toUpper();
    for (AProfile *profile : qAsConst(d->profiles)) {
        if (!profile)
            continue;
        const QString profileLabel = profile->label(QString());
        // Not a folded comparison: "ß" is found as "SS".
        const QString upperProfileLabel = profileLabel.toUpper();
        if (exact ? profileLabel == label : upperProfileLabel.contains(upperLabel))
            return profile;
    }
    return nullptr;
}

// By id and not by pointer: a stale object takes out the current one of its id.
void ADataManager::removeProfile(AProfile *profile)
{
    if (!profile)
        return;
    stopWatching(&d->watcher, profile);
    d->profiles.remove(profile->id());
    Q_EMIT profilesChanged();
}

void ADataManager::clearProfiles()
{
    for (AProfile *profile : qAsConst(d->profiles)) {
        stopWatching(&d->watcher, profile);
        if (profile)
            profile->deleteLater();
    }
    d->profiles.clear();
    Q_EMIT profilesChanged();
}

bool ADataManager::saveProfile(AProfile *profile, const QString &path, const QString &installedPrefix)
{
    if (!profile || !(profile->flags() & AProfile::ModifiedProfile))
        return false;

    const QDir dir(path);
    if (!dir.exists())
        dir.mkpath(QStringLiteral("."));

    constexpr unsigned int kOrigin = AProfile::InstalledProfile | AProfile::UserProfile;
    QString target = profile->source();
    const bool isOnlyInstalled = (profile->flags() & kOrigin) == AProfile::InstalledProfile;
    if (isOnlyInstalled || target.startsWith(installedPrefix) || !QFile::exists(target))
        target = dir.absoluteFilePath(profile->id() + QLatin1String(".profile"));

    if (!profile->saveToFile(target))
        return false;
    profile->setFlags(profile->flags() & ~static_cast<unsigned int>(AProfile::ModifiedProfile));
    return true;
}

bool ADataManager::saveProfile(const QString &id, const QString &path, const QString &installedPrefix)
{
    return saveProfile(d->profiles.value(id), path, installedPrefix);
}
