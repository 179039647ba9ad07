#pragma once

#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

// The directories that a scan of a tree has entered. One counts once, by the first of the ways that lead to it: links
// may go round in a circle, and a few directories full of links to each other have more ways through them than a scan
// would ever end. Private to libaveldorandata.
class ScannedDirectories
{
public:
    bool enter(const QString &path); // false if the scan has been there

private:
    QSet<QPair<quint64, quint64>> m_entered; // by device, and number on it
};

// Scans a directory and those below it, each in the order of names, upper and lower case alike. `takeFile` gets the
// absolute path of each file that can be read and fits one of the name filters, all files if there are none;
// `beginDirectory`, which may be null, gets each directory before its files.
using PathFunction = std::function<void(const QString &path)>;
void forEachFile(const QString &directory, const QStringList &nameFilters, const PathFunction &beginDirectory,
                 const PathFunction &takeFile);
