#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/qglobal.h>

// The variables through which a device is set up and asked. The table is a constant; names and enumerations are ASCII.

// One variable; a static record that lives as long as the library. The order of its fields is fixed.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): hence
struct device_variable_desc
{
    // Bits of `flags`. A variable has at most one of the bits from Frequency to Enumeration; without any of them it is
    // a plain number.
    enum Flag : quint16
    {
        Readable = 0x0001,
        Writable = 0x0002,
        Frequency = 0x0004, // in kHz for a LowFrequencyAnalyser, in MHz for all others
        Filter = 0x0008,    // an index into the table of the device's filters
        Switch = 0x0010,    // 0 is off, all else on
        Milliseconds = 0x0040,
        Seconds = 0x0080,
        Enumeration = 0x0100, // one of the keys of `enumeration`
        Internal = 0x1000,    // for service programs, not to be offered to a user
    };

    quint16 identifier;      // from 1 on, one variable each
    quint32 deviceMask;      // VeldoranDeviceType bits: the devices that have the variable
    char name[32];           // zero-terminated
    quint16 flags;           // Flag bits
    const char *enumeration; // "key:label;key:label", the keys decimal numbers; null if there is none
    const char *description; // what it sets, with its unit if it is a plain number
};

constexpr int device_variable_count = 53; // how many variables there are

// The variable of an index from 0 to device_variable_count - 1; null for any other.
AVELDORAN_CORE_EXPORT const device_variable_desc *get_vardesc(int index);

// The variable of a name, with regard to case; null if there is none, or for a null name.
AVELDORAN_CORE_EXPORT const device_variable_desc *find_vardesc(const char *name);
