#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#undef signals // a name in the headers of GLib
#include <umockdev.h>

// A system with the USB devices that are plugged in here alone. Works in a program that runs under umockdev-wrapper,
// and in the programs that it starts. One at a time.
class UsbTestbed
{
public:
    UsbTestbed() = default;
    ~UsbTestbed() { g_object_unref(m_bed); }

    bool isUsable() const { return umockdev_in_mock_environment(); }

    // `name` is the device's place, such as "1-1"; ids are hexadecimal, the bus is 3. Gives its path for unplug().
    QString plug(const char *name, const char *vendor, const char *product, int device, const char *serial = "S1",
                 const char *text = "Probe")
    {
        const QByteArray number = QByteArray::number(device);
        char *path = umockdev_testbed_add_device(m_bed, "usb", name, nullptr,
                                                 // attributes
                                                 "idVendor", vendor, "idProduct", product, "serial", serial, "product",
                                                 text, "busnum", "3", "devnum", number.constData(), nullptr,
                                                 // properties
                                                 "DEVTYPE", "usb_device", nullptr);
        const QString result = QString::fromUtf8(path);
        g_free(path);
        return result;
    }

    void unplug(const QString &path) { umockdev_testbed_remove_device(m_bed, path.toUtf8().constData()); }

    UMockdevTestbed *handle() const { return m_bed; } // for devices that plug() doesn't make

private:
    Q_DISABLE_COPY(UsbTestbed)
    UMockdevTestbed *m_bed = umockdev_testbed_new();
};
