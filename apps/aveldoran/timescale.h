#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

// The scale of a time axis. Times are milliseconds since the epoch and shown in UTC.
struct TimeScale
{
    QVector<qint64> ticks; // at round times, ascending, within the range
    QString format;        // of QDateTime::toString, for the ticks
    QString title;         // "Time (UTC), 2024-05-17"

    QString label(qint64 timeMs) const;
};

// With about `divisions` steps; `endMs` is above `beginMs`.
TimeScale timeScale(qint64 beginMs, qint64 endMs, int divisions);
