#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>

// One USB chip of an attached device. A plain value, known to Qt's metatype system from the start of the program.
class AVELDORAN_CORE_EXPORT AVeldoranChipInformation
{
public:
    int id = 0;                   // vendorId * 65536 + productId, in 32 bits
    QString name;                 // the serial number; that of one channel of a chip with two ends in "A" or "B"
    QString description;          // the product text; that of one channel of a chip with two ends in " A" or " B"
    unsigned short vendorId = 0;  // the USB descriptor's idVendor; 0 of a simulated device
    unsigned short productId = 0; // the USB descriptor's idProduct; 0 of a simulated device
    quint32 location = 0;         // bus number * 256 + device number; 0 for not known

    // The `id` of a chip with these two, negative for a vendor from 0x8000 on.
    static int idOf(unsigned short vendorId, unsigned short productId) noexcept;
};

// Compares all members.
AVELDORAN_CORE_EXPORT bool operator==(const AVeldoranChipInformation &a, const AVeldoranChipInformation &b) noexcept;
inline bool operator!=(const AVeldoranChipInformation &a, const AVeldoranChipInformation &b) noexcept
{
    return !(a == b);
}

Q_DECLARE_METATYPE(AVeldoranChipInformation)
