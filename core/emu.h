#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/qglobal.h>

// The measurement units; "emu" in a name is such a unit. Levels of power quantities are 10 lg, levels of amplitudes 20
// lg of the ratio to the reference (IEC 60027-3; the notation "dBµV/m" for dB(µV/m) follows radio practice, ITU-R
// V.574).
//
// Two impedances join the quantities of a family:
// - voltage and power at the 50 Ω that measuring receivers present (CISPR 16-1-1): P = U² / 50 Ω;
// - field strengths and power density in free space, whose wave impedance is µ0 c = 376.730 Ω (CODATA), here exactly
//   376.73 Ω: S = E² / 376.73 Ω = H² * 376.73 Ω, so E = H * 376.73 Ω.
constexpr long double kReferenceImpedanceOhm = 50.0L;
constexpr long double kFreeSpaceImpedanceOhm = 376.73L;

// One unit; a static record that lives as long as the library. The symbols hold no blank.
//
//   0 dBm      4 dBµV      8 dBµV/m    12 dBW/m²    16 dB
//   1 dBW      5 V         9 V/m       13 dBA/m     17 ×, the plain amplitude ratio: dB is 20 lg of it
//   2 dBV      6 dBV/m    10 W         14 dBµA/m
//   3 dBmV     7 dBmW/m²  11 W/m²      15 A/m
struct emu_entry
{
    // What a unit measures.
    enum Family
    {
        VoltageAndPower,
        FieldStrength, // electric, magnetic, and power density
        Ratio
    };

    int id;               // from 0 to below kEmuCount, as files have it
    int logarithmic;      // 0 for a linear unit
    const char32_t *name; // the symbol, such as "dBµV"
    int linear;           // the id of the linear counterpart; a linear unit's own id

    Family family;         // units of one family convert into each other
    int decibelsPerDecade; // 20 for an amplitude, 10 for a power
    int offset;            // of a logarithmic unit: its 0 in dB above 1 of its linear counterpart (dBm: -30)

    // What 1 of the linear counterpart carries, in watts, watts per square metre, or as a ratio; an amplitude's power
    // goes with its square.
    long double power;
};

constexpr int kEmuCount = 18; // ids are from 0 to below it

// The ids that have a part of their own in the libraries.
constexpr int kEmuDecibelMilliwatt = 0;
constexpr int kEmuDecibelMicrovoltPerMetre = 8; // of a limit that names none
constexpr int kEmuWatt = 10;
constexpr int kEmuWattPerSquareMetre = 11;

// The unit with that id; null for any other id.
AVELDORAN_CORE_EXPORT const emu_entry *emu_find(int id) noexcept;
