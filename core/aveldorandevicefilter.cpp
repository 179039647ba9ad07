#include "core/aveldorandevicefilter.h"

#include "core/asettings.h"
#include "core/knownchips.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cctype>

namespace {

constexpr int kMaximumDigits = 4; // of an id

unsigned int kindNamed(const QString &name)
{
    const QString lower = name.trimmed().toLower();
    if (lower == QLatin1String("analyser"))
        return AVeldoranDeviceFilter::Analyser;
    if (lower == QLatin1String("generator"))
        return AVeldoranDeviceFilter::Generator;
    return lower == QLatin1String("gpslogger") ? AVeldoranDeviceFilter::GpsLogger : 0U;
}

bool isId(const QString &text, unsigned short id)
{
    const QString digits = text.trimmed();
    const bool isHexadecimal = std::all_of(digits.begin(), digits.end(), [](QChar digit) {
        return digit.unicode() < 0x80 && std::isxdigit(digit.unicode());
    });
    return !digits.isEmpty() && digits.size() <= kMaximumDigits && isHexadecimal && digits.toUShort(nullptr, 16) == id;
}

// The kind that an entry such as "1209:0002=analyser" gives to a chip.
unsigned int kindInEntry(const QString &entry, unsigned short vendorId, unsigned short productId)
{
    const QStringList sides = entry.split(QLatin1Char('='));
    const QStringList ids = sides.first().split(QLatin1Char(':'));
    if (sides.size() != 2 || ids.size() != 2 || !isId(ids.first(), vendorId) || !isId(ids.last(), productId))
        return 0;
    return kindNamed(sides.last());
}

} // namespace

AVeldoranDeviceFilter::AVeldoranDeviceFilter(bool analysers, bool generators, bool gpsLoggers, bool simulated)
    : m_kinds((analysers ? Analyser : 0U) | (generators ? Generator : 0U) | (gpsLoggers ? GpsLogger : 0U))
    , m_simulated(simulated)
{}

AVeldoranDeviceFilter::~AVeldoranDeviceFilter() = default;

bool AVeldoranDeviceFilter::accepts(const AVeldoranChipInformation &chip) const
{
    return (kindsOf(chip.vendorId, chip.productId) & m_kinds) != 0;
}

bool AVeldoranDeviceFilter::acceptsSimulated() const
{
    return m_simulated;
}

unsigned int AVeldoranDeviceFilter::kindsOf(unsigned short vendorId, unsigned short productId)
{
    unsigned int kinds = 0;
    for (const KnownChip &chip : kKnownChips) {
        if (chip.vendorId == vendorId && chip.productId == productId)
            kinds |= chip.kind;
    }
    const QStringList entries = ASettings::value(QStringLiteral("Devices/UsbIds")).toStringList();
    for (const QString &entry : entries)
        kinds |= kindInEntry(entry, vendorId, productId);
    return kinds;
}
