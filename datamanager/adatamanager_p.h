#pragma once

#include "core/acalibrationdata.h"
#include "datamanager/filenames.h"

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>

class AChannelInfo;
class ALimit;
class AProfile;

// What the registry holds. File names are kept and compared exactly as the caller gave them. Private to
// libaveldorandata.
class ADataManagerPrivate
{
public:
    // The files that hold objects of a type, by first arrival; under AllTypes every file once.
    QMap<ACalibrationData::CalibrationType, FileNames> calibrationFilesByType;
    QFileSystemWatcher watcher;
    QMap<QString, QList<ACalibrationData>> calibrationsByFile;
    QMap<QString, ACalibrationData> calibrationsByLabel;
    QMap<QString, QList<const ALimit *>> limitsByFile; // owning; by file or "(internal)"
    QMap<QString, const AChannelInfo *> channelGroups; // nodes below channelRoot; only "(profiles)"
    QMap<QString, AProfile *> profiles;                // by id; null after a reload that failed
    AChannelInfo *channelRoot = nullptr;               // owning, from construction to destruction
    bool channelsBuilt = false;                        // createChannelInfoFromProfiles has run
};
