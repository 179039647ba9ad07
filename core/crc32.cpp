#include "core/crc32.h"

#include <QtCore/QtEndian>

#include <array>
#include <cstddef>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

constexpr quint32 kPolynomial = 0xEDB88320U; // reflected: x^31 is the lowest bit
constexpr int kStride = 16;                  // bytes in one step, each through a table of its own

using Table = std::array<quint32, 256>;

constexpr quint32 timesX(quint32 reflected)
{
    return (reflected >> 1) ^ ((reflected & 1) != 0 ? kPolynomial : 0);
}

// Table n holds what a byte does to the sum when n more bytes of zeros follow it.
constexpr std::array<Table, kStride> makeTables()
{
    std::array<Table, kStride> tables = {};
    for (quint32 byte = 0; byte < 256; ++byte) {
        quint32 sum = byte;
        for (int bit = 0; bit < 8; ++bit)
            sum = timesX(sum);
        tables[0][byte] = sum;
    }
    for (std::size_t n = 1; n < kStride; ++n) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const quint32 before = tables[n - 1][byte];
            tables[n][byte] = (before >> 8) ^ tables[0][before & 0xff];
        }
    }
    return tables;
}

constexpr std::array<Table, kStride> kTables = makeTables();

// Four bytes of a step of sixteen; `highest` is the table of the first of them.
template<std::size_t highest>
quint32 fourBytes(quint32 word) noexcept
{
    return kTables[highest][word & 0xff] ^ kTables[highest - 1][(word >> 8) & 0xff] ^
           kTables[highest - 2][(word >> 16) & 0xff] ^ kTables[highest - 3][word >> 24];
}

// About 3 bytes in a nanosecond.
quint32 sumByTables(quint32 sum, const char *data, qint64 size) noexcept
{
    for (; size >= kStride; size -= kStride, data += kStride) {
        sum = fourBytes<15>(qFromLittleEndian<quint32>(data) ^ sum) ^
              fourBytes<11>(qFromLittleEndian<quint32>(data + 4)) ^ fourBytes<7>(qFromLittleEndian<quint32>(data + 8)) ^
              fourBytes<3>(qFromLittleEndian<quint32>(data + 12));
    }
    for (; size > 0; --size, ++data)
        sum = (sum >> 8) ^ kTables[0][(sum ^ static_cast<unsigned char>(*data)) & 0xff];
    return sum;
}

#if defined(__x86_64__)

constexpr qint64 kLeastFolded = 64;

// x^power modulo the polynomial, in the form in which a carry-less product of reflected numbers wants it.
constexpr qint64 powerOfX(int power)
{
    quint32 reflected = 0x80000000U; // 1
    for (int i = 0; i < power; ++i)
        reflected = timesX(reflected);
    return static_cast<qint64>(quint64(reflected) << 1);
}

// The 16 bytes of `part` brought `bits` further and added to those that stand there: the same remainder in less room.
template<int bits>
__attribute__((target("pclmul,sse4.1"))) __m128i fold(__m128i part, __m128i there) noexcept
{
    const __m128i powers = _mm_set_epi64x(powerOfX(bits - 32), powerOfX(bits + 32));
    return _mm_xor_si128(
        there, _mm_xor_si128(_mm_clmulepi64_si128(part, powers, 0x00), _mm_clmulepi64_si128(part, powers, 0x11)));
}

// By carry-less multiplication ("Fast CRC Computation for Generic Polynomials Using PCLMULQDQ Instruction", Gopal et
// al., 2009): four parts of 16 bytes are folded forward side by side, then into one, which the tables finish.
__attribute__((target("pclmul,sse4.1"))) quint32 sumByFolding(quint32 sum, const char *data, qint64 size) noexcept
{
    const auto load = [](const char *from) { return _mm_loadu_si128(reinterpret_cast<const __m128i *>(from)); };
    __m128i a = _mm_xor_si128(load(data), _mm_cvtsi32_si128(static_cast<int>(sum)));
    __m128i b = load(data + 16);
    __m128i c = load(data + 32);
    __m128i e = load(data + 48);
    for (data += 64, size -= 64; size >= 64; data += 64, size -= 64) {
        a = fold<512>(a, load(data));
        b = fold<512>(b, load(data + 16));
        c = fold<512>(c, load(data + 32));
        e = fold<512>(e, load(data + 48));
    }
    a = fold<384>(a, fold<256>(b, fold<128>(c, e))); // side by side, only their sums wait for each other
    for (; size >= 16; data += 16, size -= 16)
        a = fold<128>(a, load(data));
    char rest[16];
    _mm_storeu_si128(reinterpret_cast<__m128i *>(rest), a);
    return sumByTables(sumByTables(0, rest, sizeof rest), data, size);
}

#endif

} // namespace

quint32 crc32(quint32 sum, const char *data, qint64 size) noexcept
{
#if defined(__x86_64__)
    static const bool canFold = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    if (canFold && size >= kLeastFolded)
        return ~sumByFolding(~sum, data, size);
#endif
    return ~sumByTables(~sum, data, size);
}
