#pragma once

#include <cstdlib>

// What has to hold for any input: a break is a finding.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}
