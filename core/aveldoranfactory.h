#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QList>

class AVeldoranDevice;

// The devices that the application has open.
class AVELDORAN_CORE_EXPORT AVeldoranFactory
{
public:
    // The list itself: who opens a device appends it, who closes one takes it out; a device that is deleted leaves the
    // list by itself. The list owns nothing.
    static QList<AVeldoranDevice *> &openDevices();
};
