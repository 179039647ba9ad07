#pragma once

#include "core/mdrformat.h"

#include <QtCore/QtEndian>

#include <cstring>
#include <type_traits>

// How the numbers of a recording lie in its bytes: what its writer and its reader share. Private to core/.
namespace MdrFormat {

constexpr qint64 kBlockBytes = 1 << 17;
inline constexpr char kMagic[] = "\x89MDR\r\n\x1a\n";
constexpr qint64 kMagicBytes = sizeof kMagic - 1;
constexpr qint64 kTimeBytes = 13;
constexpr qint64 kValueBytes = 42;
constexpr qint64 kTextLengthBytes = 4;
constexpr qint64 kTextUnitBytes = 2;
constexpr qint64 kGeoDataBytes = 4 + kTimeBytes + 8 + 1 + 16 + 36; // without its texts
constexpr qint64 kDeviceBytes = 4 + 1 + 2 + 4 + 4 + 2 + 2 + 4 + 4; // without its texts

constexpr qint64 kMaxMilliseconds = qint64(1) << 53; // beyond it no QDateTime is safe from overflow
constexpr int kMaxOffsetSeconds = 24 * 60 * 60;

enum TimeKind : quint8
{
    NoTime = 0,
    UtcTime = 1,
    LocalTime = 2,
    OffsetTime = 3,
};

template<typename Number>
auto bitsOf(Number number)
{
    if constexpr (std::is_floating_point_v<Number>) {
        std::conditional_t<sizeof(Number) == 4, quint32, quint64> bits;
        static_assert(sizeof bits == sizeof number);
        std::memcpy(&bits, &number, sizeof bits);
        return bits;
    } else {
        return number;
    }
}

template<typename Number>
void store(Number number, char *to)
{
    qToLittleEndian(bitsOf(number), to);
}

template<typename Number>
void fetch(const char *from, Number *number)
{
    using Bits = decltype(bitsOf(Number()));
    const Bits bits = qFromLittleEndian<Bits>(from);
    std::memcpy(number, &bits, sizeof bits);
}

// Several numbers in a row. Gives where the next one goes or stands.
template<typename... Numbers>
char *storeAll(char *to, Numbers... numbers)
{
    ((store(numbers, to), to += sizeof numbers), ...);
    return to;
}

template<typename... Numbers>
const char *fetchAll(const char *from, Numbers *...numbers)
{
    ((fetch(from, numbers), from += sizeof *numbers), ...);
    return from;
}

// The two words of a frequency; AFrequency is a plain record of them.
struct FrequencyWords
{
    qint64 hertz;
    double fraction;
};
static_assert(sizeof(FrequencyWords) == sizeof(AFrequency) && std::is_trivially_copyable_v<AFrequency>);

inline FrequencyWords wordsOf(const AFrequency &frequency)
{
    FrequencyWords words;
    std::memcpy(&words, &frequency, sizeof words);
    return words;
}

inline bool isStorable(const QDateTime &time, qint64 *milliseconds)
{
    if (!time.isValid())
        return false;
    *milliseconds = time.toMSecsSinceEpoch();
    return *milliseconds >= -kMaxMilliseconds && *milliseconds <= kMaxMilliseconds;
}

} // namespace MdrFormat
