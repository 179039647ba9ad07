#pragma once

#include <cstdlib>

// Counts what the program asks of the heap, Qt's requests included. To be included by one file of a program.

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kCountsAllocations = false; // the sanitizer has an allocator of its own
inline long allocationCount = 0;
#else
constexpr bool kCountsAllocations = true;
inline long allocationCount = 0;

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);

__attribute__((visibility("default"))) void *malloc(std::size_t size) noexcept
{
    ++allocationCount;
    return __libc_malloc(size);
}
__attribute__((visibility("default"))) void *calloc(std::size_t count, std::size_t size) noexcept
{
    ++allocationCount;
    return __libc_calloc(count, size);
}
__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size) noexcept
{
    ++allocationCount;
    return __libc_realloc(memory, size);
}
}
#endif
