#include "apps/aveldoran/timescale.h"

#include <QtCore/QDateTime>

#include <algorithm>
#include <iterator>

namespace {

constexpr qint64 kSecond = 1000;
constexpr qint64 kMinute = 60 * kSecond;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;

constexpr qint64 kSteps[] = {
    1,
    2,
    5,
    10,
    20,
    50,
    100,
    200,
    500,
    kSecond,
    2 * kSecond,
    5 * kSecond,
    10 * kSecond,
    20 * kSecond,
    30 * kSecond,
    kMinute,
    2 * kMinute,
    5 * kMinute,
    10 * kMinute,
    20 * kMinute,
    30 * kMinute,
    kHour,
    2 * kHour,
    3 * kHour,
    6 * kHour,
    12 * kHour,
    kDay,
};

// The least of the steps of which no more than `divisions` fill the span; beyond a day 1, 2 or 5 times a power of ten
// days.
qint64 stepFor(qint64 span, int divisions)
{
    const qint64 least = (span + divisions - 1) / divisions;
    const qint64 *step = std::lower_bound(std::begin(kSteps), std::end(kSteps), least);
    if (step != std::end(kSteps))
        return *step;
    for (qint64 days = kDay;; days *= 10) {
        for (const int factor : {1, 2, 5}) {
            if (days * factor >= least)
                return days * factor;
        }
    }
}

QString formatFor(qint64 step, qint64 span)
{
    if (step >= kDay)
        return QStringLiteral("yyyy-MM-dd");
    const QString date = span > kDay ? QStringLiteral("MM-dd ") : QString();
    if (step >= kMinute)
        return date + QStringLiteral("hh:mm");
    return date + (step >= kSecond ? QStringLiteral("hh:mm:ss") : QStringLiteral("hh:mm:ss.zzz"));
}

QString dateOf(qint64 timeMs)
{
    return QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC).toString(QStringLiteral("yyyy-MM-dd"));
}

} // namespace

QString TimeScale::label(qint64 timeMs) const
{
    return QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC).toString(format);
}

TimeScale timeScale(qint64 beginMs, qint64 endMs, int divisions)
{
    const qint64 span = endMs - beginMs;
    const qint64 step = stepFor(span, divisions);
    TimeScale scale;
    scale.format = formatFor(step, span);
    const qint64 remainder = ((beginMs % step) + step) % step; // of times before the epoch too
    for (qint64 tick = remainder == 0 ? beginMs : beginMs - remainder + step; tick <= endMs; tick += step)
        scale.ticks += tick;
    const QString first = dateOf(beginMs);
    const QString last = dateOf(endMs - 1);
    scale.title = first == last ? QStringLiteral("Time (UTC), %1").arg(first)
                                : QStringLiteral("Time (UTC), %1 to %2").arg(first, last);
    return scale;
}
