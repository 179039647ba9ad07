#pragma once

#include <QtCore/QPair>
#include <QtCore/QSet>
#include <QtCore/QString>

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
