#include "datamanager/adatamanager.h"

#include "core/astoragelocation.h"
#include "datamanager/adatamanager_p.h"
#include "datamanager/oldcalibrationfile.h"
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

void listFile(QMap<ACalibrationData::CalibrationType, FileNames> *filesByType, ACalibrationData::CalibrationType type,
              const QString &filename)
{
    for (const ACalibrationData::CalibrationType key : {type, ACalibrationData::AllTypes})
        (*filesByType)[key].add(filename);
}

} // namespace

QStringList ADataManager::addCalibrationFile(const QString &filename, ACalibrationData::CalibrationType type)
{
    OldCalibrationFile::recover(filename);
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
    QStringList labels;
    const auto recoverFiles = [](const QString &directory) { OldCalibrationFile::recoverAll(directory); };
    const auto addFile = [&](const QString &filename) { labels += addCalibrationFile(filename, type); };
    forEachFile(path, ACalibrationData::nameFilters(), recoverFiles, addFile);
    return labels;
}

void ADataManager::addCalibrationData(const ACalibrationData &data, const QString &filename)
{
    storeCalibration(data, filename);
}

// False if the file could not be written.
bool ADataManager::storeCalibration(const ACalibrationData &data, const QString &filename)
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
        return true;
    const QDir dir = QFileInfo(filename).dir();
    if (!dir.exists())
        dir.mkpath(QStringLiteral("."));
    // Deliberately what the store holds by now: a receiver of the signal may have taken objects out, which thereby go
    // from the file as well.
    const bool isSaved = ACalibrationData::saveAll(filename, d->calibrationsByFile[filename]);
    if (!isSaved)
        qDebug("save failed: %s", filename.toLatin1().constData());
    watchFile(filename);
    return isSaved;
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

    OldCalibrationFile oldFile;
    if (!oldLabel.isEmpty())
        takeOutCalibration(label, data.type(), true, &oldFile);
    if (storeCalibration(data, file) || !oldFile.putBack())
        return;
    // The events of the file's absence would bring the old state into memory, which keeps the new one after any save
    // that fails.
    d->watcher.removePath(place.file);
    watchFile(place.file);
}

void ADataManager::removeCalibrationData(const QString &label, ACalibrationData::CalibrationType type,
                                         bool removeFromFile)
{
    takeOutCalibration(label, type, removeFromFile, nullptr);
}

// Without `oldFile` the file's old state is gone at once.
void ADataManager::takeOutCalibration(const QString &label, ACalibrationData::CalibrationType type, bool removeFromFile,
                                      OldCalibrationFile *oldFile)
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
        if (oldFile)
            oldFile->keep(place.file);
        ACalibrationData::saveAll(place.file, objects);
        if (oldFile)
            oldFile->noteReplacement();
    } else {
        // The list of all types deliberately keeps the file, and its watch stays: the next look-up under AllTypes makes
        // an empty entry of it.
        if (oldFile) {
            oldFile->takeAway(place.file);
        } else {
            QFile::remove(place.file);
            OldCalibrationFile::removeRemains(place.file);
        }
        d->calibrationsByFile.remove(place.file);
        d->calibrationFilesByType[type].remove(place.file);
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
    if (!emptyFiles.isEmpty()) {
        for (const QString &file : qAsConst(emptyFiles))
            d->calibrationsByFile.remove(file);
        // Under AllTypes the lists of the single types deliberately keep the names of files that have gone.
        d->calibrationFilesByType[type].remove(emptyFiles);
        d->calibrationFilesByType[ACalibrationData::AllTypes].remove(emptyFiles);
        d->watcher.removePaths(emptyFiles.values());
    }
    if (removedAny)
        Q_EMIT calibrationDataChanged(type);
}

// The look-ups below make an empty entry for a file that is listed and has none, deliberately: from then on
// updateFile() knows its name and reads it, should it come back.

QList<ACalibrationData> ADataManager::getCalibrationsForType(ACalibrationData::CalibrationType type) const
{
    QList<ACalibrationData> objects;
    const QStringList files = d->calibrationFilesByType.value(type).list();
    for (const QString &file : files)
        objects += d->calibrationsByFile[file];
    return objects;
}

QStringList ADataManager::getCalibrationNames(ACalibrationData::CalibrationType type) const
{
    QStringList names;
    names.reserve(d->calibrationsByLabel.size());
    for (const ACalibrationData &object : qAsConst(d->calibrationsByLabel)) {
        if (fits(object, type))
            names.append(object.label());
    }
    // These are sorted; what comes from the files alone is little, mostly nothing.
    const int labels = names.size();
    const auto isNamed = [&names, labels](const QString &label) {
        return std::binary_search(names.constBegin(), names.constBegin() + labels, label);
    };
    const QStringList files = d->calibrationFilesByType.value(type).list();
    for (const QString &file : files) {
        const QList<ACalibrationData> objects = d->calibrationsByFile[file];
        for (const ACalibrationData &object : objects) {
            if (fits(object, type) && !isNamed(object.label()))
                names.append(object.label());
        }
    }
    if (names.size() > labels) {
        std::sort(names.begin() + labels, names.end());
        std::inplace_merge(names.begin(), names.begin() + labels, names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
    }
    return names;
}

ACalibrationData ADataManager::getCalibrationForName(const QString &name, ACalibrationData::CalibrationType type) const
{
    ACalibrationData result = d->calibrationsByLabel.value(name);
    if (!result.label().isEmpty() && fits(result, type))
        return result;
    const QStringList files = d->calibrationFilesByType.value(type).list();
    for (const QString &file : files) {
        const QList<ACalibrationData> objects = d->calibrationsByFile[file];
        for (const ACalibrationData &object : objects) {
            if (fits(object, type) && object.label() == name)
                result = object; // the last one wins
        }
    }
    return fits(result, type) || result.type() == ACalibrationData::AnyType ? result : ACalibrationData();
}
