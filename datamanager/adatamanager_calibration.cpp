#include "datamanager/adatamanager.h"

#include "datamanager/adatamanager_p.h"

// The calibration store.

void ADataManager::clearCalibrationData(ACalibrationData::CalibrationType type)
{
    bool removedAny = false;
    QStringList emptyFiles; // those that were empty before included
    for (auto file = d->calibrationsByFile.begin(); file != d->calibrationsByFile.end(); ++file) {
        const QList<ACalibrationData> objects = file.value();
        for (const ACalibrationData &object : objects) {
            if (type != ACalibrationData::AllTypes && object.type() != type)
                continue;
            d->calibrationsByLabel.remove(object.label());
            file.value().removeAll(object);
            removedAny = true;
        }
        if (file.value().isEmpty())
            emptyFiles.append(file.key());
    }
    for (const QString &file : qAsConst(emptyFiles)) {
        d->calibrationsByFile.remove(file);
        d->calibrationFilesByType[type].removeAll(file);
        d->calibrationFilesByType[ACalibrationData::AllTypes].removeAll(file);
        d->watcher.removePath(file);
    }
    if (removedAny)
        Q_EMIT calibrationDataChanged(type);
}
