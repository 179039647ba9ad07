#include "core/recordeddevice.h"

#include <utility>

namespace {

constexpr int kCapabilityBits = 31; // of a capability's int, without the sign

} // namespace

DeviceRecord DeviceRecord::of(const AVeldoranDevice &device)
{
    DeviceRecord record;
    record.informationList = device.informationList();
    record.customOptionText = device.customOptionText();
    record.hardwareRevision = device.hardwareRevision();
    record.isReady = device.isReady();
    record.optionMask = device.optionMask();
    for (int bit = 0; bit < kCapabilityBits; ++bit)
        record.capabilities |= device.hasCapability(1 << bit) ? 1U << bit : 0U;
    record.chipInformation = device.chipInformation();
    return record;
}

RecordedDevice::RecordedDevice(DeviceRecord record)
    : m_record(std::move(record))
{}

bool RecordedDevice::hasCapability(int capability) const
{
    return (m_record.capabilities & static_cast<quint32>(capability)) != 0;
}
