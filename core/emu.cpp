#include "core/emu.h"

#include <iterator>

namespace {

using Unit = emu_entry;

constexpr int kPower = 10;
constexpr int kAmplitude = 20;

constexpr long double kPowerOfVolt = 1.0L / kReferenceImpedanceOhm;
constexpr long double kPowerOfVoltPerMetre = 1.0L / kFreeSpaceImpedanceOhm;
constexpr long double kPowerOfAmperePerMetre = kFreeSpaceImpedanceOhm;

constexpr emu_entry kUnits[] = {
    {0, 1, U"dBm", 10, Unit::VoltageAndPower, kPower, -30, 1.0L},
    {1, 1, U"dBW", 10, Unit::VoltageAndPower, kPower, 0, 1.0L},
    {2, 1, U"dBV", 5, Unit::VoltageAndPower, kAmplitude, 0, kPowerOfVolt},
    {3, 1, U"dBmV", 5, Unit::VoltageAndPower, kAmplitude, -60, kPowerOfVolt},
    {4, 1, U"dBµV", 5, Unit::VoltageAndPower, kAmplitude, -120, kPowerOfVolt},
    {5, 0, U"V", 5, Unit::VoltageAndPower, kAmplitude, 0, kPowerOfVolt},
    {6, 1, U"dBV/m", 9, Unit::FieldStrength, kAmplitude, 0, kPowerOfVoltPerMetre},
    {7, 1, U"dBmW/m²", 11, Unit::FieldStrength, kPower, -30, 1.0L},
    {8, 1, U"dBµV/m", 9, Unit::FieldStrength, kAmplitude, -120, kPowerOfVoltPerMetre},
    {9, 0, U"V/m", 9, Unit::FieldStrength, kAmplitude, 0, kPowerOfVoltPerMetre},
    {10, 0, U"W", 10, Unit::VoltageAndPower, kPower, 0, 1.0L},
    {11, 0, U"W/m²", 11, Unit::FieldStrength, kPower, 0, 1.0L},
    {12, 1, U"dBW/m²", 11, Unit::FieldStrength, kPower, 0, 1.0L},
    {13, 1, U"dBA/m", 15, Unit::FieldStrength, kAmplitude, 0, kPowerOfAmperePerMetre},
    {14, 1, U"dBµA/m", 15, Unit::FieldStrength, kAmplitude, -120, kPowerOfAmperePerMetre},
    {15, 0, U"A/m", 15, Unit::FieldStrength, kAmplitude, 0, kPowerOfAmperePerMetre},
    {16, 1, U"dB", 17, Unit::Ratio, kAmplitude, 0, 1.0L},
    {17, 0, U"×", 17, Unit::Ratio, kAmplitude, 0, 1.0L},
};

static_assert(std::size(kUnits) == kEmuCount);

constexpr bool positionsAreIds()
{
    for (int i = 0; i < kEmuCount; ++i) {
        if (kUnits[i].id != i)
            return false;
    }
    return true;
}

static_assert(positionsAreIds(), "emu_find takes the id for the position");

} // namespace

const emu_entry *emu_find(int id) noexcept
{
    return id >= 0 && id < kEmuCount ? &kUnits[id] : nullptr;
}
