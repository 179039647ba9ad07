#include "datamanager/oldcalibrationfile.h"

#include "core/acalibrationdata.h"
#include "core/astoragelocation.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cstdio>
#include <vector>

#include <unistd.h>

namespace {

constexpr char kPrefix[] = ".";
constexpr char kSuffix[] = ".old";

QByteArray path(const QString &filename)
{
    return QFile::encodeName(filename);
}

QByteArray hiddenPath(const QString &filename)
{
    const QFileInfo file(filename);
    return path(file.path() + QLatin1Char('/') + QLatin1String(kPrefix) + file.fileName() + QLatin1String(kSuffix));
}

// Of a link itself, not of what it leads to.
bool readStatus(const QByteArray &path, struct stat *status)
{
    return ::lstat(path.constData(), status) == 0;
}

bool isSameState(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_mtim.tv_sec == b.st_mtim.tv_sec &&
           a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// The edits under way in this process: a few at most, since one begins within another only in a receiver of its signal.
std::vector<const OldCalibrationFile *> &edits()
{
    static std::vector<const OldCalibrationFile *> instance;
    return instance;
}

// Whether a file of this name may have been taken away: that depends on the type of its objects, not on the type that
// it is loaded for.
bool isUsers(const QString &filename)
{
    const auto types = {ACalibrationData::Preamplifier, ACalibrationData::Antenna, ACalibrationData::Cable,
                        ACalibrationData::Attenuator, ACalibrationData::AnyType};
    return std::any_of(types.begin(), types.end(), [&filename](ACalibrationData::CalibrationType type) {
        return filename.startsWith(AStorageLocation::calibrationPath(AStorageLocation::User, type));
    });
}

} // namespace

OldCalibrationFile::OldCalibrationFile()
{
    edits().push_back(this);
}

OldCalibrationFile::~OldCalibrationFile()
{
    drop();
    edits().erase(std::remove(edits().begin(), edits().end(), this), edits().end());
}

void OldCalibrationFile::takeAway(const QString &filename)
{
    struct stat status = {};
    if (!readStatus(path(filename), &status) || S_ISDIR(status.st_mode))
        return;
    if (::rename(path(filename).constData(), hiddenPath(filename).constData()) == 0)
        setFile(filename);
}

void OldCalibrationFile::keep(const QString &filename)
{
    const QString target = QFileInfo(filename).canonicalFilePath(); // which a save through a link replaces
    if (target.isEmpty())
        return;
    ::unlink(hiddenPath(target).constData());
    if (::link(path(target).constData(), hiddenPath(target).constData()) == 0)
        setFile(target);
}

void OldCalibrationFile::setFile(const QString &filename)
{
    m_file = filename;
    m_hasHidden = readStatus(hiddenPath(filename), &m_hidden);
}

void OldCalibrationFile::noteReplacement()
{
    m_hasReplacement = readStatus(path(m_file), &m_replacement);
}

bool OldCalibrationFile::putBack()
{
    if (m_file.isEmpty())
        return false;
    struct stat current = {};
    const bool exists = readStatus(path(m_file), &current);
    const bool isOwn = !exists || (m_hasReplacement && isSameState(current, m_replacement));
    if (isOwn && ::rename(hiddenPath(m_file).constData(), path(m_file).constData()) != 0)
        m_file.clear(); // the hidden one stays: recover() takes it at the next load
    drop();             // there still if both names are one file
    return true;
}

void OldCalibrationFile::drop()
{
    if (!m_file.isEmpty())
        removeRemains(m_file);
    m_file.clear();
}

// By its number, since a file has several names.
bool OldCalibrationFile::holds(const struct stat &hidden) const
{
    return !m_file.isEmpty() && m_hasHidden && hidden.st_dev == m_hidden.st_dev && hidden.st_ino == m_hidden.st_ino;
}

void OldCalibrationFile::recover(const QString &filename)
{
    struct stat file = {};
    struct stat hidden = {};
    if (!isUsers(filename) || readStatus(path(filename), &file) || !readStatus(hiddenPath(filename), &hidden))
        return;
    const auto isUnderWay = [&hidden](const OldCalibrationFile *edit) { return edit->holds(hidden); };
    if (std::none_of(edits().begin(), edits().end(), isUnderWay))
        ::rename(hiddenPath(filename).constData(), path(filename).constData());
}

void OldCalibrationFile::recoverAll(const QString &directory)
{
    const QDir dir(directory);
    const QString pattern = QLatin1String(kPrefix) + QLatin1Char('*') + QLatin1String(kSuffix);
    const QStringList hidden = dir.entryList({pattern}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : hidden) {
        const int prefix = static_cast<int>(qstrlen(kPrefix));
        const int suffix = static_cast<int>(qstrlen(kSuffix));
        const QString filename = name.mid(prefix, name.size() - prefix - suffix);
        if (QDir::match(ACalibrationData::nameFilters(), filename))
            recover(QFileInfo(dir.filePath(filename)).absoluteFilePath()); // as the scan names it
    }
}

void OldCalibrationFile::removeRemains(const QString &filename)
{
    ::unlink(hiddenPath(filename).constData());
}
