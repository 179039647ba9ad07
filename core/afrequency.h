#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QHashFunctions>
#include <QtCore/QMetaType>
#include <QtCore/QString>

// A frequency, kept as whole hertz (64 bit) and a fraction of a hertz, so that every whole number of hertz over the
// 64-bit range is exact. Results beyond that range stay at its edge. Negative frequencies are legal: a difference or
// a mirror below its range may be one. Zero-initialised memory is the zero frequency.
class AVELDORAN_CORE_EXPORT AFrequency
{
public:
    // What a number counts.
    enum Unit
    {
        NoUnit = 0, // "choose one" in formatString, "none recognised" from unitForSuffix, hertz everywhere else
        Hz = 1,
        kHz = 2,
        MHz = 3,
        GHz = 4
    };

    static const char *const kHz_Suffix; // "kHz"
    static const char *const MHz_Suffix; // "MHz"

    constexpr AFrequency() noexcept = default;

    // Reads "5 MHz", "5MHz", "2,4 GHz", "-100 kHz", "1e+06" or "0": "." and "," are both decimal signs, blanks around
    // the number and the unit are ignored, a number without a unit is hertz, units are case-sensitive whole words.
    // Whatever can't be read, a null pointer included, is the zero frequency.
    AFrequency(const char *text);

    // A double below 2^52 Hz gives the hertz that its shortest decimal text names (1.001 MHz is 1001000 Hz), one above
    // 2^53 Hz the whole number nearest to it. NaN sets the zero frequency, an infinity the edge of the range.
    void setValue(long long value, Unit unit) noexcept;
    void setValue(int value, Unit unit) noexcept { setValue(static_cast<long long>(value), unit); }
    void setValue(double value, Unit unit);

    // What setValue sets for that number.
    template<typename Number>
    static AFrequency fromValue(Number value, Unit unit)
    {
        AFrequency frequency;
        frequency.setValue(value, unit);
        return frequency;
    }

    long long intValue(Unit unit) const noexcept; // in `unit`, cut towards zero
    double floatValue(Unit unit) const noexcept;  // in `unit`, rounded to the nearest double
    bool isNull() const noexcept { return m_hertz == 0 && m_fraction == 0.0; } // 0 Hz

    // The whole hertz as a plain decimal number without a unit.
    QString toString() const;

    // Fills %1 with the number in `unit` and %2 with the unit's text. `numberFormat` is 'd' for a whole number or a
    // format of QString::arg ('f', 'g', 'e'); with "%L1" the number is in the form of the default locale. `precision`
    // -1 means six decimals. NoUnit means autoUnit(). "%1 %2" with NoUnit, 'f' and -1 is the canonical text: a whole
    // number of hertz reads back the same. Parts of a hertz are rounded to six decimals of the unit, from 1 MHz on to
    // whole hertz (1000000.75 Hz is "1.000001 MHz"); from 2^52 Hz on they are cut off.
    QString formatString(const QString &format, Unit unit, int fieldWidth, char numberFormat, int precision) const;

    // formatString("%1 %2", NoUnit, 0, 'f', -1), such as "2400.000000 MHz".
    QString canonicalText() const;

    // MHz from 1 MHz on, kHz from 1 kHz on, else Hz, by magnitude. Never GHz: six decimals of a megahertz are whole
    // hertz, so the canonical text loses none.
    Unit autoUnit() const noexcept;

    static const char *suffixForUnit(Unit unit) noexcept; // "Hz" ... "GHz", "" for any other value
    static Unit unitForSuffix(const char *text) noexcept; // of "MHz" or "5 MHz"; NoUnit if none is recognised

    // Exact, but for the rounding of fractions. Beyond the 64-bit range they stay at its edge.
    AFrequency &operator+=(const AFrequency &other) noexcept;
    AFrequency &operator-=(const AFrequency &other) noexcept;
    AFrequency operator+(const AFrequency &other) const noexcept { return AFrequency(*this) += other; }
    AFrequency operator-(const AFrequency &other) const noexcept { return AFrequency(*this) -= other; }

    // A whole factor or divisor keeps whole hertz exact. NaN results are the zero frequency, infinite ones the edge.
    AFrequency operator*(double factor) const noexcept;
    AFrequency operator/(double divisor) const noexcept;
    double operator/(const AFrequency &other) const noexcept; // a ratio; by zero as floating point does

    friend constexpr bool operator==(const AFrequency &a, const AFrequency &b) noexcept
    {
        return a.m_hertz == b.m_hertz && a.m_fraction == b.m_fraction;
    }
    friend constexpr bool operator<(const AFrequency &a, const AFrequency &b) noexcept
    {
        return a.m_hertz < b.m_hertz || (a.m_hertz == b.m_hertz && a.m_fraction < b.m_fraction);
    }
    friend constexpr bool operator!=(const AFrequency &a, const AFrequency &b) noexcept { return !(a == b); }
    friend constexpr bool operator>(const AFrequency &a, const AFrequency &b) noexcept { return b < a; }
    friend constexpr bool operator<=(const AFrequency &a, const AFrequency &b) noexcept { return !(b < a); }
    friend constexpr bool operator>=(const AFrequency &a, const AFrequency &b) noexcept { return !(a < b); }

    friend uint qHash(const AFrequency &frequency, uint seed = 0) noexcept
    {
        return ::qHash(frequency.m_hertz, seed) ^ ::qHash(frequency.m_fraction, seed);
    }

private:
    explicit constexpr AFrequency(qint64 hertz, double fraction) noexcept
        : m_hertz(hertz)
        , m_fraction(fraction)
    {}

    // Both parts carry the sign of the value, the fraction lies strictly between -1 and 1 and is never -0.0 or NaN:
    // the pair is unique, so comparing the parts in order compares the values.
    qint64 m_hertz = 0;
    double m_fraction = 0.0;
};

Q_DECLARE_TYPEINFO(AFrequency, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(AFrequency)
