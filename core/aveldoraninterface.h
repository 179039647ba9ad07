#pragma once

#include "core/aveldoranexport.h"

class AVeldoranDevice;

// What measures with a device, or replays what one has measured.
class AVELDORAN_CORE_EXPORT AVeldoranInterface
{
public:
    // The device has to live as long as device() is used.
    explicit AVeldoranInterface(AVeldoranDevice *device = nullptr) noexcept;
    virtual ~AVeldoranInterface();

    // Null if there is none. The interface doesn't own it.
    AVeldoranDevice *device() const noexcept { return m_device; }

protected:
    // Deletes neither device.
    void setDevice(AVeldoranDevice *device) noexcept { m_device = device; }

private:
    AVeldoranInterface(const AVeldoranInterface &) = delete;
    AVeldoranInterface &operator=(const AVeldoranInterface &) = delete;

    AVeldoranDevice *m_device;
};
