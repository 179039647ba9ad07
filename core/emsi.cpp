#include "core/emsi.h"

#include <cmath>
#include <iterator>

namespace {

constexpr emsi_unit kScales[] = {
    {1e-15L, U"f"}, {1e-12L, U"p"}, {1e-9L, U"n"}, {1e-6L, U"µ"}, {1e-3L, U"m"},
    {1.0L, U""},    {1e3L, U"k"},   {1e6L, U"M"},  {1e9L, U"G"},  {1e12L, U"T"},
};

} // namespace

const emsi_unit *emsi_find_scale(double value, double limit) noexcept
{
    if (value == 0.0 || !std::isfinite(value))
        return nullptr;
    const double magnitude = std::fabs(value);
    for (const emsi_unit &scale : kScales) {
        // The edge as a double: 1e-6 is 1 µ under the limit 1000, though the double next to it lies a hair below.
        if (magnitude < static_cast<double>(limit * scale.factor))
            return &scale;
    }
    return std::end(kScales) - 1;
}
