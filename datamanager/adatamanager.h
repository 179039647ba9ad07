#pragma once

#include "core/acalibrationdata.h"
#include "core/aprofile.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

class AChannelInfo;
class ALimit;
class ADataManagerPrivate;
class OldCalibrationFile;

// The registry of all that an application has loaded from disk: profiles, limits, calibration objects, and the channel
// tree made from the profiles. It watches the files that it loaded and follows their changes.
//
// Connect to error() first, add paths and files, call createChannelInfoFromProfiles() once, and from then on read the
// get operations and follow the signals. Everything runs on the thread of the application's event loop. A pointer that
// a get operation hands out is valid until the matching changed-signal.
class AVELDORAN_DATA_EXPORT ADataManager : public QObject
{
    Q_OBJECT

public:
    static ADataManager *instance(); // made on first use; whoever deletes it gets a fresh one from the next call

    ADataManager();
    // Clears calibrations, limits and the channel tree. The profiles held are not deleted: clearProfiles() does that.
    ~ADataManager() override;

    // --- profiles: one for each id, the last loaded wins ---

    // Reads one file. False for a file that can't be read, which error() reports, and for one without a valid profile,
    // which is passed over in silence.
    bool addProfileFile(const QString &filename, AProfile::Flag flag);

    // Reads a file or the profiles of a directory and tells how many were taken over. What can't be read is skipped.
    int addProfilePath(const QString &path, AProfile::Flag flag);

    QList<AProfile *> getProfiles() const;              // by ascending id; null for one that a reload could not read
    AProfile *getProfileForId(const QString &id) const; // null if there is none

    // The first by ascending id whose label equals `label`, or with `exact` false holds it in upper or lower case.
    AProfile *getProfileForLabel(const QString &label, bool exact) const;

    void removeProfile(AProfile *profile); // out of the registry; the object is the caller's from then on
    void clearProfiles();                  // the objects are deleted by the event loop

    // Writes a modified profile back to its file, or under its id to the directory `path` if it is an installed one,
    // lies below `installedPrefix` or its file has gone. False if it is not modified or can't be written.
    bool saveProfile(AProfile *profile, const QString &path, const QString &installedPrefix);
    bool saveProfile(const QString &id, const QString &path, const QString &installedPrefix);

    // --- limits: a list for each file, and one of those that the application handed in ---

    // Reads one limit file in place of what it gave before. On failure error() says why and nothing is changed.
    bool addLimitFile(const QString &filename);

    // Reads a file, or every file that can be read in a directory and those below it, and tells how many could be read.
    // error() names each that is no limit file. A directory is scanned once, however many links lead to it.
    int addLimitPath(const QString &path);

    bool addInternalLimit(const ALimit *limit); // the registry owns it from then on; always true

    // In ascending order of file names, within a file in document order. The application's own limits stand where
    // "(internal)" does, before every absolute file name. Names that occur several times are listed as often.
    QStringList getLimitNames() const;
    const ALimit *getLimitForName(const QString &name) const; // the first in that order, or null

    void clearLimitData(); // the application's own limits too

    // --- calibration: objects by file, and one for each label, the last that was loaded or edited ---

    // Reads one file in place of what it gave before and returns the labels, in file order. `type` is for objects whose
    // file names none, and what the file is listed under. On failure the result is empty, error() says so and nothing
    // is changed. An object whose label is known already takes the place of the first one of its label and type, which
    // may write that one's file, as updateCalibrationData() does.
    QStringList addCalibrationFile(const QString &filename, ACalibrationData::CalibrationType type);

    // Reads the calibration files (*.xml, *.caldata, *.offsets) of a directory and those below it, and returns all
    // labels. A directory is scanned once, however many links lead to it.
    QStringList addCalibrationPath(const QString &path, ACalibrationData::CalibrationType type);

    // Adds an object to a file, or replaces the one of its label there, and writes the file; the directory is made.
    // With "-" for a file name the object is held in memory alone. A file that can't be written is logged. The signal
    // comes first, and what its receivers take out of the file's objects, or clear, is not written either.
    void addCalibrationData(const ACalibrationData &data, const QString &filename);

    // Changes an object that a file holds: the first of label `oldLabel`, or if that is empty of the label of `data`,
    // and of the type of `data`. An object of the installed location is written to the same place in the user's own.
    // With an old label the object moves to the end of its file, which in the user's location is written without it, or
    // deleted, before it is written anew; should that fail, the file is what it was. Without such an object nothing
    // happens.
    void updateCalibrationData(const ACalibrationData &data, const QString &oldLabel);

    // Takes out the first object of that label and type. With `removeFromFile` it is taken out of its file too, which
    // is deleted with its last object, but only in the user's location: elsewhere the next load brings it back.
    void removeCalibrationData(const QString &label, ACalibrationData::CalibrationType type, bool removeFromFile);

    void clearCalibrationData(ACalibrationData::CalibrationType type); // touches no file

    // All objects of the files that are listed under the type, also those of another type.
    QList<ACalibrationData> getCalibrationsForType(ACalibrationData::CalibrationType type) const;
    QStringList getCalibrationNames(ACalibrationData::CalibrationType type) const; // sorted, each once

    // A default-constructed object if there is none. An object of no particular type is given for any type.
    ACalibrationData getCalibrationForName(const QString &name, ACalibrationData::CalibrationType type) const;

    // --- the channel tree ---

    AChannelInfo *getChannelInfoRoot() const; // never null, never to be deleted by the caller

    // The first node, depth first, whose label or qualified name is `name`; null if there is none.
    const AChannelInfo *getChannelInfoForName(const QString &name) const;

    // The node of a profile; of a derived profile the node of its base.
    const AChannelInfo *getChannelInfoForProfile(const QString &id) const;
    const AChannelInfo *getChannelInfoForProfile(const AProfile *profile) const;

    // Deletes all below the root. The next change of a profile builds the tree anew, if it has been built once.
    void clearChannelInfoData();

public Q_SLOTS:
    // Builds the tree anew from all profiles. The first call arms the automatic rebuild at every profilesChanged().
    void createChannelInfoFromProfiles();

Q_SIGNALS:
    // Each is emitted by the operation that made the change, after it.
    void channelInfoDataChanged();
    void calibrationDataChanged(ACalibrationData::CalibrationType type);
    void limitDataChanged();
    void profilesChanged();

    void error(QString errorMsg); // a file could not be read; nothing was changed

protected Q_SLOTS:
    void updateFile(QString filename); // a watched file was changed or deleted
    void watchFile(QString filename);  // once: a file that is watched already stays so

private:
    Q_DISABLE_COPY(ADataManager)

    bool storeCalibration(const ACalibrationData &data, const QString &filename);
    void takeOutCalibration(const QString &label, ACalibrationData::CalibrationType type, bool removeFromFile,
                            OldCalibrationFile *oldFile);

    static ADataManager *m_instance;
    std::unique_ptr<ADataManagerPrivate> d;
};
