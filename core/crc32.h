#pragma once

#include <QtCore/qglobal.h>

// The CRC-32 of Ethernet, zip and PNG (reflected polynomial 0xEDB88320, begun with and ended by inverting all bits):
// "123456789" gives 0xCBF43926. Private to core/.
//
// Begin with 0, or go on with what the bytes before gave: crc32(crc32(0, a), b) is the sum of a and b in a row.
quint32 crc32(quint32 sum, const char *data, qint64 size) noexcept;
