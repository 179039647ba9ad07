#include "core/astoragelocation.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

#include <dlfcn.h>

namespace {

struct Roots
{
    QString installed; // empty: the default, asked for anew since it depends on the application's names
    QString user;
};

Roots &roots()
{
    static Roots instance;
    return instance;
}

QString absolutePath(const QString &path)
{
    return QDir::cleanPath(QDir(path).absolutePath());
}

// The data directory of the tree that this library was installed into, wherever that has been moved.
QString installedDataDirectory()
{
    Dl_info library;
    if (dladdr(reinterpret_cast<const void *>(&installedDataDirectory), &library) == 0 || !library.dli_fname)
        return {};
    const QDir directory = QFileInfo(QFile::decodeName(library.dli_fname)).absoluteDir();
    return absolutePath(directory.filePath(QStringLiteral(AVELDORAN_LIBRARY_TO_DATA_DIR)));
}

// Ends in "/", so that names are appended as they are.
QString rootDirectory(AStorageLocation::StorageType storage)
{
    QString root;
    if (storage == AStorageLocation::Installed) {
        root = roots().installed;
        if (root.isEmpty())
            root = installedDataDirectory();
    } else {
        root = roots().user;
        if (root.isEmpty())
            root = absolutePath(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    }
    return root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
}

// No name is the beginning of another one.
QLatin1String directoryName(ACalibrationData::CalibrationType type)
{
    switch (type) {
    case ACalibrationData::Preamplifier:
        return QLatin1String("preamplifier/");
    case ACalibrationData::Antenna:
        return QLatin1String("antenna/");
    case ACalibrationData::Cable:
        return QLatin1String("cable/");
    case ACalibrationData::Attenuator:
        return QLatin1String("attenuator/");
    default:
        return QLatin1String("other/");
    }
}

} // namespace

QString AStorageLocation::calibrationPath(StorageType storage, ACalibrationData::CalibrationType type)
{
    return rootDirectory(storage) + QLatin1String("calibration/") + directoryName(type);
}

QString AStorageLocation::dataFilename(const QString &name, bool existing)
{
    if (QDir::isAbsolutePath(name))
        return name;
    QString userPath = rootDirectory(User) + name;
    if (existing && !QFileInfo(userPath).isFile()) {
        QString installedPath = rootDirectory(Installed) + name;
        if (QFileInfo(installedPath).isFile())
            return installedPath;
    }
    return userPath;
}

void AStorageLocation::setRoot(StorageType storage, const QString &root)
{
    QString &stored = storage == Installed ? roots().installed : roots().user;
    stored = root.isEmpty() ? QString() : absolutePath(root);
}
