#include "core/crc32.h"

#include <QtCore/QtEndian>

#include <array>
#include <cstddef>

namespace {

constexpr quint32 kPolynomial = 0xEDB88320U;
constexpr int kStride = 16; // bytes in one step, each through a table of its own

using Table = std::array<quint32, 256>;

// Table n holds what a byte does to the sum when n more bytes of zeros follow it.
constexpr std::array<Table, kStride> makeTables()
{
    std::array<Table, kStride> tables = {};
    for (quint32 byte = 0; byte < 256; ++byte) {
        quint32 sum = byte;
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? kPolynomial : 0);
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

} // namespace

quint32 crc32(quint32 sum, const char *data, qint64 size) noexcept
{
    sum = ~sum;
    for (; size >= kStride; size -= kStride, data += kStride) {
        sum = fourBytes<15>(qFromLittleEndian<quint32>(data) ^ sum) ^
              fourBytes<11>(qFromLittleEndian<quint32>(data + 4)) ^ fourBytes<7>(qFromLittleEndian<quint32>(data + 8)) ^
              fourBytes<3>(qFromLittleEndian<quint32>(data + 12));
    }
    for (; size > 0; --size, ++data)
        sum = (sum >> 8) ^ kTables[0][(sum ^ static_cast<unsigned char>(*data)) & 0xff];
    return ~sum;
}
