#pragma once

#include <QtCore/QByteArray>

// The checksum of recordings bit by bit, as its definition has it.
inline quint32 plainCrc32(const QByteArray &bytes)
{
    quint32 sum = 0xffffffffU;
    for (const char byte : bytes) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320U : 0);
    }
    return ~sum;
}
