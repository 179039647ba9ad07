#pragma once

#include "core/aveldoranchipinformation.h"
#include "core/aveldorandevice.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

// The device of a recording. Private to core/.

// What a recording keeps of a device: its answers at that time.
struct DeviceRecord
{
    QStringList informationList;
    QString customOptionText;
    qint32 hardwareRevision = 0;
    bool isReady = false;
    quint16 optionMask = 0;
    quint32 capabilities = 0; // bits 0 to 30
    AVeldoranChipInformation chipInformation;

    static DeviceRecord of(const AVeldoranDevice &device);
};

// Gives those answers again.
class RecordedDevice : public AVeldoranDevice
{
public:
    explicit RecordedDevice(DeviceRecord record);

    QString customOptionText() const override { return m_record.customOptionText; }
    int hardwareRevision() const override { return m_record.hardwareRevision; }
    bool isReady() const override { return m_record.isReady; }
    QStringList informationList() const override { return m_record.informationList; }
    quint16 optionMask() const override { return m_record.optionMask; }
    bool hasCapability(int capability) const override;
    AVeldoranChipInformation chipInformation() const override { return m_record.chipInformation; }

private:
    DeviceRecord m_record;
};
