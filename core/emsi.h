#pragma once

#include "core/aveldoranexport.h"

// One decimal scale; "emsi" in a name is a measurement unit's SI prefix. An SI prefix (SI Brochure, table 7) and its
// factor. A number divided by the factor is the number to show before the prefix. A static record that lives as long as
// the library.
struct emsi_unit
{
    long double factor;     // a power of a thousand
    const char32_t *prefix; // "f" to "T" in steps of a thousand; empty for the factor 1
};

// The smallest scale under which the magnitude of `value` stays below `limit`, the largest one if none does. Null for
// 0, an infinity and NaN: such a number is shown unscaled.
AVELDORAN_CORE_EXPORT const emsi_unit *emsi_find_scale(double value, double limit) noexcept;
