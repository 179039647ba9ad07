#include "core/aveldoranchipinformation.h"

#include <QtCore/QCoreApplication>

namespace {

void registerTypes()
{
    qRegisterMetaType<AVeldoranChipInformation>("AVeldoranChipInformation");
}
Q_CONSTRUCTOR_FUNCTION(registerTypes)

} // namespace

int AVeldoranChipInformation::idOf(unsigned short vendorId, unsigned short productId) noexcept
{
    return static_cast<int>(quint32(vendorId) << 16 | productId);
}

bool operator==(const AVeldoranChipInformation &a, const AVeldoranChipInformation &b) noexcept
{
    return a.id == b.id && a.vendorId == b.vendorId && a.productId == b.productId && a.location == b.location &&
           a.name == b.name && a.description == b.description;
}
