#pragma once

#include <algorithm>
#include <functional>
#include <iterator>

// Whether the fields of one object lie in memory as they are listed. (offsetof() is for plainer classes than those.)
template<typename... Field>
bool areInOrder(const Field &...fields)
{
    const void *const addresses[] = {&fields...};
    return std::is_sorted(std::begin(addresses), std::end(addresses), std::less<>());
}
