#pragma once

#include <QtCore/QString>

#include <sys/stat.h>

// A calibration file as it was, while an edit that deletes or shortens it before it writes the new state is under way.
// It lives beside the file under a hidden name, ".NAME.old", which no reader takes for a calibration file, and is gone
// with this object, unless the process is killed before or it can't be put back. Private to libaveldorandata.
class OldCalibrationFile
{
public:
    OldCalibrationFile();
    ~OldCalibrationFile();

    // In place of deleting the file. If it can't be moved it stays where it was, like a file that can't be deleted.
    void takeAway(const QString &filename);

    // Before the file is replaced. Where the file system has no hard links nothing is kept.
    void keep(const QString &filename);

    // After the file was replaced: putBack() undoes this replacement, and none that somebody else makes later.
    void noteReplacement();

    // Makes the file what it was, unless somebody else has written it meanwhile. False if nothing was kept.
    bool putBack();

    // What a process left that was killed: a file that is missing comes back. None that exists is changed, and the old
    // state beside it stays, since it may have what the file lacks. Only in the user's location, where files are taken
    // away, and not while an edit of this process is under way that did so: a load in a receiver of its signal finds
    // the file missing.
    static void recover(const QString &filename);
    static void recoverAll(const QString &directory);

    static void removeRemains(const QString &filename); // of such a process

private:
    Q_DISABLE_COPY(OldCalibrationFile)
    void setFile(const QString &filename);
    void drop();
    bool holds(const struct stat &hidden) const;

    QString m_file; // empty: nothing is kept
    bool m_hasHidden = false;
    struct stat m_hidden = {};
    bool m_hasReplacement = false;
    struct stat m_replacement = {}; // what this process left under the name
};
