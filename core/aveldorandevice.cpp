#include "core/aveldorandevice.h"

#include "core/agpsloggerdevice.h"
#include "core/aveldoranfactory.h"

#include <QtCore/QPointer>

struct AVeldoranDevice::Private
{
    QPointer<AGpsLoggerDevice> gpsDevice;
};

AVeldoranDevice::AVeldoranDevice()
    : d(std::make_unique<Private>())
{}

QString AVeldoranDevice::customOptionText() const
{
    return featureNumber(CustomOption);
}

int AVeldoranDevice::hardwareRevision() const
{
    return 0;
}

bool AVeldoranDevice::isReady() const
{
    return false;
}

QStringList AVeldoranDevice::informationList() const
{
    QStringList texts;
    for (int i = 0; i < InformationCount; ++i)
        texts.append(QString());
    return texts;
}

quint16 AVeldoranDevice::optionMask() const
{
    return NoFeature;
}

bool AVeldoranDevice::hasCapability(int) const
{
    return false;
}

AVeldoranChipInformation AVeldoranDevice::chipInformation() const
{
    return {};
}

AVeldoranDevice::~AVeldoranDevice()
{
    AVeldoranFactory::openDevices().removeAll(this);
}

AGpsLoggerDevice *AVeldoranDevice::gpsDevice() const
{
    return d->gpsDevice;
}

void AVeldoranDevice::setGpsDevice(AGpsLoggerDevice *gpsDevice)
{
    d->gpsDevice = gpsDevice;
}

QString AVeldoranDevice::featureNumber(AVeldoranFeature feature)
{
    int number = 0;
    for (int i = 0; i < 15; ++i) {
        if (static_cast<int>(feature) == 1 << i)
            number = i + 1;
    }
    return QStringLiteral("%1").arg(number, 3, 10, QLatin1Char('0'));
}
