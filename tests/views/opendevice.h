#pragma once

#include <core/aveldorandevice.h>
#include <core/aveldoranfactory.h>

#include <utility>

// A device that the application has open for as long as this exists.
class OpenDevice : public AVeldoranDevice
{
public:
    explicit OpenDevice(const AVeldoranChipInformation &chip)
        : m_chip(chip)
    {
        AVeldoranFactory::openDevices().append(this);
    }

    AVeldoranChipInformation chipInformation() const override
    {
        ++m_askedCount;
        return m_chip;
    }

    int takeAskedCount() const { return std::exchange(m_askedCount, 0); }

private:
    AVeldoranChipInformation m_chip;
    mutable int m_askedCount = 0;
};

inline AVeldoranChipInformation chipOf(unsigned short vendorId, unsigned short productId, const QString &name,
                                       const QString &description, quint32 location)
{
    AVeldoranChipInformation chip;
    chip.id = AVeldoranChipInformation::idOf(vendorId, productId);
    chip.name = name;
    chip.description = description;
    chip.vendorId = vendorId;
    chip.productId = productId;
    chip.location = location;
    return chip;
}
