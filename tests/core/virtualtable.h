#pragma once

#include <cstddef>
#include <cstring>

// Place of a virtual operation in the table of its class.
template<typename Operation>
std::ptrdiff_t tableOffset(Operation operation)
{
    std::ptrdiff_t words[2];
    static_assert(sizeof words == sizeof operation, "a member pointer of the common C++ ABI");
    std::memcpy(words, &operation, sizeof words);
    return words[0] - 1;
}
