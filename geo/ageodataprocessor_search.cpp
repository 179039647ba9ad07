#include "geo/ageodataprocessor.h"

#include <algorithm>
#include <limits>

// The look-up of a waypoint. Its three phases decide which of several waypoints within a span is chosen. They are
// defined as walks along the keys; where the times of the keys ascend, a bisection finds the end of a walk at once.
// They don't at the first key if that has no time: it stands before all others, and 1970 or so is its time.

namespace {

using Limits = std::numeric_limits<qint64>;

// A time at the edge of the range stays there.
qint64 shifted(qint64 time, qint64 by)
{
    qint64 sum = 0;
    if (__builtin_add_overflow(time, by, &sum))
        return by > 0 ? Limits::max() : Limits::min();
    return sum;
}

} // namespace

AGeoData *AGeoDataProcessor::findWaypoint(const QDateTime &start, const QDateTime &stop, int tolerance) const
{
    const std::vector<WaypointKey> &keys = waypointKeys();
    const qint64 count = static_cast<qint64>(keys.size());
    if (count == 0)
        return nullptr;
    const auto timeAt = [&keys](qint64 index) { return keys[static_cast<std::size_t>(index)].time; };
    const qint64 ascending = m_ascendingFrom;
    const auto firstFrom = [&keys, ascending](qint64 time) { // the index of the first ascending key from the time on
        const auto key = std::lower_bound(keys.begin() + ascending, keys.end(), time,
                                          [](const WaypointKey &a, qint64 b) { return a.time < b; });
        return static_cast<qint64>(key - keys.begin());
    };
    const qint64 begin = start.toMSecsSinceEpoch();
    const qint64 end = stop.toMSecsSinceEpoch();
    const qint64 lowest = shifted(begin, -static_cast<qint64>(tolerance));
    const qint64 highest = shifted(end, tolerance);

    // Coarse: halve the step towards the end of the span.
    qint64 i = count / 2;
    qint64 step = i;
    while (i >= 0 && i < count - 1) {
        const bool liesBetweenTwo = lowest > timeAt(i) && highest < timeAt(i + 1);
        if (liesBetweenTwo || step <= 0)
            break;
        step >>= 1;
        i += end > timeAt(i) ? step : -step;
    }

    // Back, to the first key from the begin on.
    const qint64 fromBegin = firstFrom(begin);
    i = std::min(i, fromBegin);
    while (i > 0 && timeAt(i) > begin && timeAt(i - 1) >= begin)
        --i;

    // Forward, to the begin of the span, or to the last key before its end, but never to the very last key.
    while (i < ascending && i < count - 2 && timeAt(i) < begin && timeAt(i + 1) < end)
        ++i;
    if (i >= ascending)
        i = std::max(i, std::min({count - 2, fromBegin, firstFrom(end) - 1}));

    const WaypointKey &found = keys[static_cast<std::size_t>(i)];
    return found.time >= lowest && found.time <= highest ? found.latest : nullptr;
}

const std::vector<AGeoDataProcessor::WaypointKey> &AGeoDataProcessor::waypointKeys() const
{
    // No flag would do: derived classes have the map too. Whoever changes it parts it from the copy.
    if (!m_keyedWaypoints.isSharedWith(m_waypoints)) {
        m_keyedWaypoints = m_waypoints;
        m_keys.clear();
        m_keys.reserve(static_cast<std::size_t>(m_waypoints.size()));
        m_ascendingFrom = 0;
        const QDateTime *previous = nullptr;
        for (auto it = m_waypoints.cbegin(); it != m_waypoints.cend(); ++it) {
            if (previous && !(*previous < it.key())) // of one key, the latest record comes first
                continue;
            const qint64 time = it.key().toMSecsSinceEpoch();
            if (previous && time <= m_keys.back().time)
                m_ascendingFrom = static_cast<qint64>(m_keys.size());
            m_keys.push_back({time, it.value()});
            previous = &it.key();
        }
    }
    return m_keys;
}
