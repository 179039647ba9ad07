#pragma once

#include "core/afrequency.h"

#include <cmath>

// The arithmetic between two points of a table over frequency. Private to core/.

// Where `at` lies on the way from `from` to a higher `to`: 0 at `from`, 1 at `to`.
inline double positionBetween(const AFrequency &from, const AFrequency &to, const AFrequency &at)
{
    // Across zero a difference can be beyond the range of a frequency, and floating point cancels no digits there.
    if (from < AFrequency() && AFrequency() < to) {
        const double begin = from.floatValue(AFrequency::Hz);
        return (at.floatValue(AFrequency::Hz) - begin) / (to.floatValue(AFrequency::Hz) - begin);
    }
    return (at - from) / (to - from);
}

inline double valueBetween(double from, double to, double position)
{
    const double span = to - from;
    return std::isfinite(span) ? from + span * position : from * (1.0 - position) + to * position;
}
