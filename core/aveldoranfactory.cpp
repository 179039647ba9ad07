#include "core/aveldoranfactory.h"

QList<AVeldoranDevice *> &AVeldoranFactory::openDevices()
{
    // Never destroyed: a device may be deleted after the statics of this library.
    static auto *devices = new QList<AVeldoranDevice *>;
    return *devices;
}
