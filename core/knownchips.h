#pragma once

#include "core/aveldorandevicefilter.h"

// The USB chips of measurement devices. Private to core/.
struct KnownChip
{
    unsigned short vendorId;
    unsigned short productId;
    AVeldoranDeviceFilter::Kind kind;
    bool hasTwoChannels;
};

constexpr KnownChip kKnownChips[] = {
    {0x0403, 0x6010, AVeldoranDeviceFilter::Analyser, true},
    {0x0403, 0x6014, AVeldoranDeviceFilter::Analyser, false},
    {0x1209, 0x0001, AVeldoranDeviceFilter::Analyser, false},
    {0x0403, 0x6015, AVeldoranDeviceFilter::Generator, false},
    {0x04d8, 0x000a, AVeldoranDeviceFilter::Generator, false},
    {0x0403, 0x6001, AVeldoranDeviceFilter::GpsLogger, false},
    {0x10c4, 0xea60, AVeldoranDeviceFilter::GpsLogger, false},
};
