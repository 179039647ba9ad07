#pragma once

#include "core/acalibrationdata.h"
#include "core/aveldoranexport.h"

#include <QtCore/QString>

// Where the suite's data files lie: below an installed, read-only root and below a root of the user's own.
class AVELDORAN_CORE_EXPORT AStorageLocation
{
public:
    // Which root.
    enum StorageType : int
    {
        Installed = 0,
        User = 1 // and any other value
    };

    // The directory of a calibration type: "calibration/" and the type's own directory below the root, absolute and
    // ending in "/". One each for preamplifiers, antennas, cables and attenuators, and one for all other values. It
    // need not exist.
    static QString calibrationPath(StorageType storage, ACalibrationData::CalibrationType type);

    // The full path of a data file by its name relative to the root. With `existing`: the file of that name in the
    // user's root, else the one in the installed root, else, as without it, the path in the user's root. An absolute
    // name stays as it is.
    static QString dataFilename(const QString &name, bool existing);

    // Sets a root; a relative one is below the current directory of now. Empty restores the default: the data
    // directory of the install prefix, or QStandardPaths::AppDataLocation.
    static void setRoot(StorageType storage, const QString &root);
};
