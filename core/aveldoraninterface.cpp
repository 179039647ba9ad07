#include "core/aveldoraninterface.h"

AVeldoranInterface::AVeldoranInterface(AVeldoranDevice *device) noexcept
    : m_device(device)
{}

AVeldoranInterface::~AVeldoranInterface() = default;
