#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>

struct emu_entry;

// One measured point: a level in a unit at a frequency. A plain record; zero-initialised memory is the empty value.
class AVELDORAN_CORE_EXPORT AMeasurementValue
{
public:
    quint64 leading = 0;   // an application's own number, usually 0
    quint8 unit = 0;       // the id of an emu_entry
    quint8 reserved = 0;   // copied with the record
    AFrequency frequency;  // where it was measured
    double level = 0.0;    // in `unit`
    double trailing = 0.0; // a further number, independent of `unit`, usually 0

    constexpr AMeasurementValue() noexcept = default;
    // `leadingNumber` and `trailingNumber` are 0 where the application has no use for them.
    AMeasurementValue(double levelInUnit, unsigned char unitId, const AFrequency &atFrequency,
                      unsigned int leadingNumber, double trailingNumber) noexcept;

    // A leading word, frequency and level of 0. NaN is a level, so such a value is not empty.
    bool isEmpty() const noexcept;

    // A copy whose level and unit byte are those of the other unit; core/emu.h states the formulas.
    // - The unit that the value has already, or an unknown unit (such as -1): the value unchanged.
    // - A unit of another family, or any known unit if the value's own is unknown: the level is NaN.
    // - The logarithm of 0 is minus infinity, that of a negative level NaN. An amplitude keeps its sign in another
    //   amplitude unit and loses it in a power; the root of a negative power is NaN.
    // Logarithmic units convert into each other as decibels, so no level is out of range there. A number of decibels
    // too small to be told from 0, given the rounding of the level, is 0. The other members stay as they are.
    AMeasurementValue convertTo(int unitId) const noexcept;

    // The same by the record. For a null unit it warns "warning: converting to null-pointer unit is undefined" and
    // gives convertTo(-1).
    AMeasurementValue convertTo(const emu_entry *target) const;

    // Act on the levels as they stand, whatever the units; the other members are those of the left operand.
    AMeasurementValue operator-(const AMeasurementValue &other) const noexcept;
    AMeasurementValue operator+(const AMeasurementValue &other) const noexcept;
    AMeasurementValue &operator+=(double levels) noexcept;

    // The level in the default locale with two decimals. With a unit: a blank and the symbol follow, and a linear
    // unit is given the SI prefix that keeps the number below 1000 ("1.50 mV"), before it is rounded: 0.999996 V is
    // "1,000.00 mV". An unknown unit is the bare number.
    QString formatValueString(bool withUnit) const;
};

// Compares all members; NaN equals nothing.
AVELDORAN_CORE_EXPORT bool operator==(const AMeasurementValue &a, const AMeasurementValue &b) noexcept;
inline bool operator!=(const AMeasurementValue &a, const AMeasurementValue &b) noexcept
{
    return !(a == b);
}

Q_DECLARE_TYPEINFO(AMeasurementValue, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(AMeasurementValue)
