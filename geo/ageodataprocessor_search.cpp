#include "geo/ageodataprocessor.h"

#include <algorithm>
#include <limits>

// The look-up of a waypoint. Its three phases decide which of several waypoints within a span is chosen. They are
// defined as walks along the keys; as the keys ascend, the walks end where a bisection finds at once.

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
    const auto firstFrom = [&keys](qint64 time) { // the index of the first key at or after the time
        const auto key =
            std::lower_bound(keys.begin(), keys.end(), time, [](const WaypointKey &a, qint64 b) { return a.time < b; });
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

    // Forward, to the begin of the span, or to the last key before its end, but never to the very last key.
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
        for (auto it = m_waypoints.cbegin(); it != m_waypoints.cend(); ++it) {
            const qint64 time = it.key().toMSecsSinceEpoch();
            if (m_keys.empty() || m_keys.back().time != time) // of one time, the latest record comes first
                m_keys.push_back({time, it.value()});
        }
    }
    return m_keys;
}
