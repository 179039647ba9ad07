#include "core/agpsloggerdevice.h"

#include <QtCore/QFileDevice>
#include <QtCore/QPointer>

struct AGpsLoggerDevice::Private
{
    QPointer<QIODevice> io;
    AVeldoranChipInformation chipInformation;
    bool streaming = false;
};

AGpsLoggerDevice::AGpsLoggerDevice(QObject *parent, QIODevice *io)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    qRegisterMetaType<AGeoData>("AGeoData");
    d->io = io;
    if (io && !io->parent())
        io->setParent(this);
}

AGpsLoggerDevice::~AGpsLoggerDevice() = default;

bool AGpsLoggerDevice::init()
{
    return d->io && (d->io->isOpen() || d->io->open(QIODevice::ReadOnly)) && d->io->isReadable();
}

bool AGpsLoggerDevice::loadFile(int)
{
    return false;
}

bool AGpsLoggerDevice::ioIsFile() const
{
    const auto *file = qobject_cast<const QFileDevice *>(d->io.data());
    return file && !file->isSequential();
}

void AGpsLoggerDevice::setStreaming(bool streaming)
{
    d->streaming = streaming;
}

bool AGpsLoggerDevice::isStreaming() const
{
    return d->streaming;
}

AVeldoranChipInformation AGpsLoggerDevice::chipinfo() const
{
    return d->chipInformation;
}

void AGpsLoggerDevice::setChipinfo(const AVeldoranChipInformation &chipInformation)
{
    d->chipInformation = chipInformation;
}
