#pragma once

#include "core/aveldoranchipinformation.h"
#include "core/aveldoranexport.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

class AGpsLoggerDevice;

// The kinds of devices, bits of the mask that says for which of them a device variable is.
enum VeldoranDeviceType
{
    NoDeviceType = 0,
    SignalGenerator = 1,
    LowFrequencyAnalyser = 2, // frequencies in kHz, filters down to 0.3 Hz
    PowerMeter = 4,
    SpectrumAnalyser = 8, // frequencies in MHz
};

// The options of a device, bits of its option mask. Each has a number, by which it is ordered and printed.
enum AVeldoranFeature
{
    NoFeature = 0,
    Option001 = 0x0001,
    Option002 = 0x0002,
    Option003 = 0x0004,
    CustomOption = 0x0008, // printed as AVeldoranDevice::customOptionText()
    Option005 = 0x0010,
    Option006 = 0x0020,
    Option007 = 0x0040,
    Option008 = 0x0080,
    Option009 = 0x0100,
    Option010 = 0x0200,
    Option011 = 0x0400,
    Option012 = 0x0800,
    Option013 = 0x1000,
    Option014 = 0x2000,
    Option015 = 0x4000,
};

// One measurement device. A driver derives from it; the base class itself is a device that is not ready and says
// nothing about itself.
class AVELDORAN_CORE_EXPORT AVeldoranDevice
{
public:
    // What the library asks of a device, bits for hasCapability().
    enum Capability
    {
        NoiseFloorSuppression = 2, // peaks are suppressed by the noise floor, not by fixed amounts
        BootLogo = 8,              // shows a picture when it starts
        FixedBootLogo = 128,       // which can't be replaced
    };

    AVeldoranDevice();

    virtual QString customOptionText() const;                 // the printed text of CustomOption
    virtual int hardwareRevision() const;                     // the generation of the hardware, from 1; 0 if not known
    virtual bool isReady() const;                             // open, and has answered
    virtual QStringList informationList() const;              // at least 7 texts, see Information
    virtual quint16 optionMask() const;                       // AVeldoranFeature bits
    virtual bool hasCapability(int capability) const;         // of one Capability bit
    virtual AVeldoranChipInformation chipInformation() const; // by which lists of devices find it

    // Takes the device out of AVeldoranFactory::openDevices(). Doesn't delete its GPS device.
    virtual ~AVeldoranDevice();

    // Indices into informationList().
    enum Information
    {
        ModelName = 0,
        FirmwareVersion = 4,
        SerialNumber = 6,
        InformationCount = 7,
    };

    // The GPS receiver that belongs to the device; null if there is none, or once it was deleted.
    AGpsLoggerDevice *gpsDevice() const;
    void setGpsDevice(AGpsLoggerDevice *gpsDevice);

    // The number of an option in three digits, "001" to "015"; "000" for what is not one of the bits.
    static QString featureNumber(AVeldoranFeature feature);

private:
    Q_DISABLE_COPY(AVeldoranDevice)
    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
