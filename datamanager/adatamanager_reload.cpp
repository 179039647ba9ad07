#include "datamanager/adatamanager.h"

#include "core/alimit.h"
#include "datamanager/adatamanager_p.h"

#include <QtCore/QFile>

#include <algorithm>

// What a change of a watched file does to the stores.

namespace {

// The first single type whose files `filename` is among, or AllTypes for none. A file that was loaded for all types is
// deliberately not found.
ACalibrationData::CalibrationType listedType(const QMap<ACalibrationData::CalibrationType, FileNames> &filesByType,
                                             const QString &filename)
{
    for (auto files = filesByType.begin(); files != filesByType.end(); ++files) {
        if (files.key() != ACalibrationData::AllTypes && files->contains(filename))
            return files.key();
    }
    return ACalibrationData::AllTypes;
}

} // namespace

void ADataManager::updateFile(QString filename) // NOLINT(performance-unnecessary-value-param): a slot's signature
{
    // The one says no of a file that another process is just replacing, the other of a link that leads nowhere.
    const bool missing = !QFile(filename).exists() && !QFile::exists(filename);

    // calibrationsByLabel stays as it is, deliberately: an object whose file has gone is still found by its label, and
    // what a changed file holds shows there after the next load only.
    if (d->calibrationsByFile.contains(filename)) {
        if (missing)
            d->calibrationsByFile.remove(filename);
        const ACalibrationData::CalibrationType type = listedType(d->calibrationFilesByType, filename);
        if (type != ACalibrationData::AllTypes) {
            if (missing) {
                d->calibrationFilesByType[type].remove(filename);
                d->calibrationFilesByType[ACalibrationData::AllTypes].remove(filename);
            } else {
                // A file that is replaced takes its watch along. Before it is read, so that no change is missed.
                watchFile(filename);
                // Left empty if the file can't be read.
                QList<ACalibrationData> &objects = d->calibrationsByFile[filename];
                objects.clear();
                ACalibrationData::readAll(filename, objects, type);
                watchFile(filename); // again: it may have been away for a moment
            }
            Q_EMIT calibrationDataChanged(type);
        }
    }

    if (d->limitsByFile.contains(filename)) {
        // Reading signals too where it succeeds: a reload deliberately gives two signals.
        if (missing)
            qDeleteAll(d->limitsByFile.take(filename));
        else
            addLimitFile(filename);
        Q_EMIT limitDataChanged();
    }

    const auto fromFile = std::find_if(d->profiles.begin(), d->profiles.end(), [&filename](const AProfile *profile) {
        return profile && profile->source() == filename;
    });
    if (fromFile == d->profiles.end())
        return;
    // A bare replacement, deliberately: whatever the file holds now stands under the old id, without a flag and
    // without a new watch, and the old object stays with whoever holds it. removeProfile() signals too: a file that has
    // gone deliberately gives two signals.
    if (missing)
        removeProfile(fromFile.value());
    else
        fromFile.value() = AProfile::fromFile(filename);
    Q_EMIT profilesChanged();
}
