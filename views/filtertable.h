#pragma once

#include "core/afrequency.h"
#include "core/aveldorandevice.h"

#include <iterator>

// Private to the variable delegate: the filters of the devices. A variable with the flag Filter holds a row of the
// table.
namespace filtertable {

// The frequency belongs to the label as the devices know the pair; a label alone needn't tell it ("Full", "0.3 Hz").
struct Filter
{
    long long value;
    AFrequency::Unit unit;
    char label[16];

    AFrequency frequency() const noexcept
    {
        AFrequency frequency;
        frequency.setValue(value, unit);
        return frequency;
    }
};

inline constexpr Filter kLowFrequencyFilters[] = {
    {10, AFrequency::MHz, "10 MHz"},   {3, AFrequency::MHz, "3 MHz"},     {1, AFrequency::MHz, "1 MHz"},
    {300, AFrequency::kHz, "300 kHz"}, {100, AFrequency::kHz, "100 kHz"}, {30, AFrequency::kHz, "30 kHz"},
    {10, AFrequency::kHz, "10 kHz"},   {3, AFrequency::kHz, "3 kHz"},     {1, AFrequency::kHz, "1 kHz"},
    {300, AFrequency::Hz, "300 Hz"},   {100, AFrequency::Hz, "100 Hz"},   {30, AFrequency::Hz, "30 Hz"},
    {10, AFrequency::Hz, "10 Hz"},     {3, AFrequency::Hz, "3 Hz"},       {1, AFrequency::Hz, "1 Hz"},
    {1, AFrequency::Hz, "0.3 Hz"}, // deliberately 1 Hz: whole numbers can't hold the fraction, devices expect the pair
};

inline constexpr Filter kFilters[] = {
    {50, AFrequency::MHz, "Full"},     {3, AFrequency::MHz, "3 MHz"},     {1, AFrequency::MHz, "1 MHz"},
    {300, AFrequency::kHz, "300 kHz"}, {100, AFrequency::kHz, "100 kHz"}, {30, AFrequency::kHz, "30 kHz"},
    {10, AFrequency::kHz, "10 kHz"},   {3, AFrequency::kHz, "3 kHz"},     {1, AFrequency::kHz, "1 kHz"},
    {120, AFrequency::kHz, "120 kHz"}, {9, AFrequency::kHz, "9 kHz"},     {200, AFrequency::Hz, "200 Hz"},
    {5, AFrequency::MHz, "5 MHz"},     {200, AFrequency::kHz, "200 kHz"}, {1500, AFrequency::kHz, "1500 kHz"},
};

// What a device with kFilters means by the row -1; not to be chosen.
inline constexpr Filter kUnspecifiedFilter = {300, AFrequency::kHz, "(unspecified)"};
constexpr int kUnspecifiedRow = -1;

inline int filterCount(VeldoranDeviceType type) noexcept
{
    return static_cast<int>(type == LowFrequencyAnalyser ? std::size(kLowFrequencyFilters) : std::size(kFilters));
}

// The filter of a row; null for any other number.
inline const Filter *filterAt(VeldoranDeviceType type, int row) noexcept
{
    if (row == kUnspecifiedRow && type != LowFrequencyAnalyser)
        return &kUnspecifiedFilter;
    if (row < 0 || row >= filterCount(type))
        return nullptr;
    return type == LowFrequencyAnalyser ? &kLowFrequencyFilters[row] : &kFilters[row];
}

} // namespace filtertable
