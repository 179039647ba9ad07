#include "core/asweep.h"

#include <cmath>

namespace {

// The first point that no other one precedes in the order `better`, NaN left aside.
template<typename Better>
AMeasurementValue extreme(const QList<AMeasurementValue> &values, Better better)
{
    const AMeasurementValue *best = nullptr;
    for (const AMeasurementValue &value : values) {
        if (!std::isnan(value.level) && (!best || better(value.level, best->level)))
            best = &value;
    }
    return best ? *best : AMeasurementValue();
}

} // namespace

ASweep::ASweep(const QList<AMeasurementValue> &sweepValues, const QDateTime &start, const QDateTime &stop)
    : values(sweepValues)
    , m_start(start)
    , m_stop(stop)
{}

AMeasurementValue ASweep::maximum() const
{
    return extreme(values, [](double a, double b) { return a > b; });
}

AMeasurementValue ASweep::minimum() const
{
    return extreme(values, [](double a, double b) { return a < b; });
}
