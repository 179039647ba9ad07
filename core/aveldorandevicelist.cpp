#include "core/aveldorandevicelist.h"

#include "core/asimulateddevice.h"
#include "core/aveldorandevicefilter.h"
#include "core/knownchips.h"

#include <QtCore/QList>
#include <QtCore/QTimer>

#include <algorithm>
#include <cstring>
#include <deque>
#include <iterator>
#include <string>
#include <utility>

#include <libudev.h>

namespace {

struct Release
{
    void operator()(udev *handle) const { udev_unref(handle); }
    void operator()(udev_enumerate *handle) const { udev_enumerate_unref(handle); }
    void operator()(udev_device *handle) const { udev_device_unref(handle); }
};

QString attribute(udev_device *device, const char *name)
{
    return QString::fromUtf8(udev_device_get_sysattr_value(device, name)).trimmed();
}

AVeldoranChipInformation chipOf(udev_device *device)
{
    AVeldoranChipInformation chip;
    chip.vendorId = attribute(device, "idVendor").toUShort(nullptr, 16);
    chip.productId = attribute(device, "idProduct").toUShort(nullptr, 16);
    chip.id = AVeldoranChipInformation::idOf(chip.vendorId, chip.productId);
    chip.name = attribute(device, "serial");
    chip.description = attribute(device, "product");
    chip.location = attribute(device, "busnum").toUInt() * 256 + attribute(device, "devnum").toUInt();
    return chip;
}

QList<AVeldoranChipInformation> channelsOf(const AVeldoranChipInformation &chip)
{
    const auto isOfTwo = [&chip](const KnownChip &known) {
        return known.hasTwoChannels && known.vendorId == chip.vendorId && known.productId == chip.productId;
    };
    if (std::none_of(std::begin(kKnownChips), std::end(kKnownChips), isOfTwo))
        return {chip};
    QList<AVeldoranChipInformation> channels{chip, chip};
    channels[0].name += QLatin1Char('A');
    channels[0].description += QLatin1String(" A");
    channels[1].name += QLatin1Char('B');
    channels[1].description += QLatin1String(" B");
    return channels;
}

} // namespace

struct AVeldoranDeviceList::Private
{
    std::unique_ptr<AVeldoranDeviceFilter> filter;
    bool stopAtFirstMatch = false;
    QList<AVeldoranChipInformation> chips;

    // Of the fetch that is under way.
    QTimer turns;
    bool isScanned = false;
    std::unique_ptr<udev, Release> system;
    std::deque<std::string> paths; // of devices that are yet to be read
    QList<AVeldoranChipInformation> found;

    bool isEnough() const { return stopAtFirstMatch && !found.isEmpty(); }
    void scan();
    void readDevice(const std::string &path);
    void add(const AVeldoranChipInformation &chip);
};

void AVeldoranDeviceList::Private::scan()
{
    system.reset(udev_new());
    if (!system)
        return;
    const std::unique_ptr<udev_enumerate, Release> enumeration(udev_enumerate_new(system.get()));
    if (!enumeration || udev_enumerate_add_match_subsystem(enumeration.get(), "usb") < 0 ||
        udev_enumerate_scan_devices(enumeration.get()) < 0)
        return;
    for (udev_list_entry *entry = udev_enumerate_get_list_entry(enumeration.get()); entry;
         entry = udev_list_entry_get_next(entry))
        paths.emplace_back(udev_list_entry_get_name(entry));
}

void AVeldoranDeviceList::Private::readDevice(const std::string &path)
{
    const std::unique_ptr<udev_device, Release> device(udev_device_new_from_syspath(system.get(), path.c_str()));
    if (!device) // it has just been unplugged
        return;
    const char *type = udev_device_get_devtype(device.get());
    if (!type || std::strcmp(type, "usb_device") != 0)
        return;
    const AVeldoranChipInformation chip = chipOf(device.get());
    if (filter && !filter->accepts(chip))
        return;
    const QList<AVeldoranChipInformation> channels = channelsOf(chip);
    for (const AVeldoranChipInformation &channel : channels)
        add(channel);
}

void AVeldoranDeviceList::Private::add(const AVeldoranChipInformation &chip)
{
    if (!isEnough())
        found.append(chip);
}

AVeldoranDeviceList::AVeldoranDeviceList(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->turns.setInterval(0);
    connect(&d->turns, &QTimer::timeout, this, [this] {
        if (!d->isScanned) {
            d->isScanned = true;
            d->scan();
            return;
        }
        if (!d->paths.empty() && !d->isEnough()) {
            d->readDevice(d->paths.front());
            d->paths.pop_front();
            return;
        }
        if (d->filter && d->filter->acceptsSimulated())
            d->add(ASimulatedDevice::simulatedChip());
        d->turns.stop();
        d->system.reset();
        d->paths.clear();
        d->chips = std::exchange(d->found, {});
        Q_EMIT finished();
    });
}

AVeldoranDeviceList::~AVeldoranDeviceList() = default;

void AVeldoranDeviceList::setStopAtFirstMatch(bool stop)
{
    d->stopAtFirstMatch = stop;
}

void AVeldoranDeviceList::setDeviceFilter(AVeldoranDeviceFilter *filter)
{
    if (filter != d->filter.get())
        d->filter.reset(filter);
}

void AVeldoranDeviceList::fetch()
{
    d->isScanned = false;
    d->paths.clear();
    d->found.clear();
    d->turns.start();
}

int AVeldoranDeviceList::count() const
{
    return d->chips.size();
}

const AVeldoranChipInformation &AVeldoranDeviceList::at(int index) const
{
    static const AVeldoranChipInformation kNone;
    return index >= 0 && index < d->chips.size() ? d->chips.at(index) : kNone;
}
