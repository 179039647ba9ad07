#include "datamanager/adatamanager.h"

#include "core/astoragelocation.h"
#include "datamanager/adatamanager_p.h"
#include "datamanager/scanneddirectories.h"

#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>

#include <algorithm>

// The calibration store: the objects of each file, one object for each label, and the files of each type. The three are
// not always in step, and what each operation leaves behind in them is part of its behaviour.

namespace {

const QString &memoryFile()
{
    static const QString name = QStringLiteral("-");
    return name;
}

bool fits(const ACalibrationData &object, ACalibrationData::CalibrationType type)
{
    return type == ACalibrationData::AllTypes || object.type() == type;
}

struct Place
{
    QString file;
    int position = -1; // in the list of the file; -1 for no such object
};

Place firstPlace(const QMap<QString, QList<ACalibrationData>> &files, const QString &label,
                 ACalibrationData::CalibrationType type)
{
    for (auto file = files.begin(); file != files.end(); ++file) {
        for (int i = 0; i < file->size(); ++i) {
            if (file->at(i).type() == type && file->at(i).label() == label)
                return {file.key(), i};
        }
    }
    return {};
}

void listFile(QMap<ACalibrationData::CalibrationType, QStringList> *filesByType, ACalibrationData::CalibrationType type,
              const QString &filename)
{
    for (const ACalibrationData::CalibrationType key : {type, ACalibrationData::AllTypes}) {
        QStringList &files = (*filesByType)[key];
        if (!files.contains(filename))
            files.append(filename);
    }
}

void removeNames(QStringList *names, const QSet<QString> &removed)
{
    const auto isRemoved = [&removed](const QString &name) { return removed.contains(name); };
    names->erase(std::remove_if(names->begin(), names->end(), isRemoved), names->end());
}

QStringList addCalibrationTree(ADataManager *manager, const QString &path, ACalibrationData::CalibrationType type,
                               ScannedDirectories *scanned)
{
    QDir dir(path);
    if (!scanned->enter(dir.path()))
        return {};
    dir.setNameFilters({QStringLiteral("*.xml"), QStringLiteral("*.caldata"), QStringLiteral("*.offsets")});
    dir.setFilter(QDir::Files | QDir::AllDirs | QDir::Readable | QDir::NoDotAndDotDot);

    QStringList labels;
    const QFileInfoList entries = dir.entryInfoList();
    for (const QFileInfo &entry : entries) {
        labels += entry.isDir() ? addCalibrationTree(manager, entry.absoluteFilePath(), type, scanned)
                                : manager->addCalibrationFile(entry.absoluteFilePath(), type);
    }
    return labels;
}

} // namespace

QStringList ADataManager::addCalibrationFile(const QString &filename, ACalibrationData::CalibrationType type)
{
    QList<ACalibrationData> objects;
    if (!ACalibrationData::readAll(filename, objects, type)) {
        Q_EMIT error(tr("Could not read calibration data from file '%1'").arg(filename));
        return {};
    }
    d->calibrationsByFile[filename] = objects;
    listFile(&d->calibrationFilesByType, type, filename);

    QStringList labels;
    for (const ACalibrationData &object : qAsConst(objects)) {
        labels.append(object.label());
        // The last object of a label wins, and it does so on disk as well: loading may write the file that had the
        // label before.
        if (d->calibrationsByLabel.contains(object.label()))
            updateCalibrationData(object, QString());
        else
            d->calibrationsByLabel.insert(object.label(), object);
    }
    Q_EMIT calibrationDataChanged(type);
    watchFile(filename);
    return labels;
}

QStringList ADataManager::addCalibrationPath(const QString &path, ACalibrationData::CalibrationType type)
{
    ScannedDirectories scanned;
    return addCalibrationTree(this, path, type, &scanned);
}

void ADataManager::addCalibrationData(const ACalibrationData &data, const QString &filename)
{
    // By label alone: an object takes the place of one of another type, too.
    const auto hasLabel = [&data](const ACalibrationData &object) { return object.label() == data.label(); };
    QList<ACalibrationData> &objects = d->calibrationsByFile[filename];
    const auto known = std::find_if(objects.begin(), objects.end(), hasLabel);
    if (known != objects.end())
        *known = data;
    else
        objects.append(data);
    d->calibrationsByLabel[data.label()] = data;
    listFile(&d->calibrationFilesByType, data.type(), filename);
    Q_EMIT calibrationDataChanged(data.type());

    if (filename == memoryFile())
        return;
    const QDir dir = QFileInfo(filename).dir();
    if (!dir.exists())
        dir.mkpath(QStringLiteral("."));
    // A receiver of the signal may have cleared the store, which touches no file: an empty list must not replace it.
    const QList<ACalibrationData> saved = d->calibrationsByFile.value(filename);
    if (std::any_of(saved.begin(), saved.end(), hasLabel) && !ACalibrationData::saveAll(filename, saved))
        qDebug("save failed: %s", filename.toLatin1().constData());
    watchFile(filename);
}

void ADataManager::updateCalibrationData(const ACalibrationData &data, const QString &oldLabel)
{
    const QString label = oldLabel.isEmpty() ? data.label() : oldLabel;
    const Place place = firstPlace(d->calibrationsByFile, label, data.type());
    if (place.position < 0)
        return;
    QString file = place.file;
    file.replace(AStorageLocation::calibrationPath(AStorageLocation::Installed, data.type()),
                 AStorageLocation::calibrationPath(AStorageLocation::User, data.type()));
    const QDir dir = QFileInfo(file).dir();
    if (!dir.exists())
        QDir(QDir::rootPath()).mkpath(dir.path());
    if (!oldLabel.isEmpty())
        removeCalibrationData(label, data.type(), true);
    addCalibrationData(data, file);
}

void ADataManager::removeCalibrationData(const QString &label, ACalibrationData::CalibrationType type,
                                         bool removeFromFile)
{
    const Place place = firstPlace(d->calibrationsByFile, label, type);
    if (place.position < 0)
        return;
    const bool isUsers = place.file.startsWith(AStorageLocation::calibrationPath(AStorageLocation::User, type));
    QList<ACalibrationData> &objects = d->calibrationsByFile[place.file];
    if (!removeFromFile || !isUsers) {
        objects.removeAt(place.position);
    } else if (objects.size() > 1) {
        objects.removeAt(place.position);
        ACalibrationData::saveAll(place.file, objects);
    } else {
        // The list of all types deliberately keeps the file, and its watch stays: the next look-up under AllTypes makes
        // an empty entry of it.
        QFile::remove(place.file);
        d->calibrationsByFile.remove(place.file);
        d->calibrationFilesByType[type].removeAll(place.file);
    }
    d->calibrationsByLabel.remove(label);
    Q_EMIT calibrationDataChanged(type);
}

void ADataManager::clearCalibrationData(ACalibrationData::CalibrationType type)
{
    bool removedAny = false;
    QSet<QString> emptyFiles; // those that were empty before included
    for (auto file = d->calibrationsByFile.begin(); file != d->calibrationsByFile.end(); ++file) {
        const auto isCleared = [this, type](const ACalibrationData &object) {
            if (!fits(object, type))
                return false;
            d->calibrationsByLabel.remove(object.label());
            return true;
        };
        const auto kept = std::remove_if(file->begin(), file->end(), isCleared);
        removedAny = removedAny || kept != file->end();
        file->erase(kept, file->end());
        if (file->isEmpty())
            emptyFiles.insert(file.key());
    }
    for (const QString &file : qAsConst(emptyFiles)) {
        d->calibrationsByFile.remove(file);
        d->watcher.removePath(file);
    }
    if (!emptyFiles.isEmpty()) {
        // Under AllTypes the lists of the single types deliberately keep the names of files that have gone.
        removeNames(&d->calibrationFilesByType[type], emptyFiles);
        removeNames(&d->calibrationFilesByType[ACalibrationData::AllTypes], emptyFiles);
    }
    if (removedAny)
        Q_EMIT calibrationDataChanged(type);
}

// The look-ups below make an empty entry for a file that is listed and has none, deliberately: from then on
// updateFile() knows its name and reads it, should it come back.

QList<ACalibrationData> ADataManager::getCalibrationsForType(ACalibrationData::CalibrationType type) const
{
    QList<ACalibrationData> objects;
    const QStringList files = d->calibrationFilesByType.value(type);
    for (const QString &file : files)
        objects += d->calibrationsByFile[file];
    return objects;
}

QStringList ADataManager::getCalibrationNames(ACalibrationData::CalibrationType type) const
{
    QStringList names;
    for (const ACalibrationData &object : qAsConst(d->calibrationsByLabel)) {
        if (fits(object, type))
            names.append(object.label());
    }
    const QStringList files = d->calibrationFilesByType.value(type);
    for (const QString &file : files) {
        const QList<ACalibrationData> objects = d->calibrationsByFile[file];
        for (const ACalibrationData &object : objects) {
            if (fits(object, type))
                names.append(object.label());
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

ACalibrationData ADataManager::getCalibrationForName(const QString &name, ACalibrationData::CalibrationType type) const
{
    ACalibrationData result = d->calibrationsByLabel.value(name);
    if (!result.label().isEmpty() && fits(result, type))
        return result;
    const QStringList files = d->calibrationFilesByType.value(type);
    for (const QString &file : files) {
        const QList<ACalibrationData> objects = d->calibrationsByFile[file];
        for (const ACalibrationData &object : objects) {
            if (fits(object, type) && object.label() == name)
                result = object; // the last one wins
        }
    }
    return fits(result, type) || result.type() == ACalibrationData::AnyType ? result : ACalibrationData();
}
