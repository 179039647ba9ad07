#include "core/ameasurementvalue.h"

#include "core/emsi.h"
#include "core/emu.h"

#include <QtCore/QDebug>

#include <cmath>
#include <limits>
#include <type_traits>

static_assert(std::is_trivially_copyable_v<AMeasurementValue> && std::is_standard_layout_v<AMeasurementValue>,
              "copied as a plain record");

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr long double kLog10OfE = 0.434294481903251827651L;
constexpr long double kRounding = 0x1p-53L; // largest relative error of a number that was rounded to a double

// What the rounding of the source level hides is 0: else 1e-6 V would be -4e-16 dBµV, shown as "-0.00", and a dBm
// level of 0 would not come back from dBµV. `uncertainty` is that rounding in decibels.
double decibels(long double value, long double uncertainty)
{
    return std::fabs(value) < uncertainty ? 0.0 : static_cast<double>(value);
}

double linearToLinear(double level, const emu_entry &source, const emu_entry &target)
{
    const long double ratio = source.power / target.power;
    const bool fromAmplitude = source.decibelsPerDecade == 20;
    const bool toAmplitude = target.decibelsPerDecade == 20;
    const long double wide = level;
    if (fromAmplitude && toAmplitude)
        return static_cast<double>(wide * std::sqrt(ratio));
    if (fromAmplitude)
        return static_cast<double>(wide * wide * ratio);
    return static_cast<double>(toAmplitude ? std::sqrt(wide * ratio) : wide * ratio);
}

// Both units are of one family.
double convertLevel(double level, const emu_entry &source, const emu_entry &target)
{
    if (!source.logarithmic && !target.logarithmic)
        return linearToLinear(level, source, target);

    const int offset = source.offset - target.offset; // between the references of the units, without the impedance
    const bool sameCounterpart = source.linear == target.linear;
    if (sameCounterpart && source.logarithmic && target.logarithmic)
        return level + offset;

    long double shift = offset;
    if (!sameCounterpart)
        shift += 10.0L * std::log10(source.power / target.power);

    if (!source.logarithmic) {
        const long double perDecade = source.decibelsPerDecade;
        return decibels(perDecade * std::log10(static_cast<long double>(level)) + shift,
                        perDecade * kLog10OfE * kRounding);
    }
    const long double shifted = level + shift;
    if (target.logarithmic)
        return decibels(shifted, std::fabs(static_cast<long double>(level)) * kRounding);
    return std::pow(10.0, static_cast<double>(shifted / target.decibelsPerDecade)); // wide, it takes 30 times as long
}

} // namespace

AMeasurementValue::AMeasurementValue(double levelInUnit, unsigned char unitId, const AFrequency &atFrequency,
                                     unsigned int leadingNumber, double trailingNumber) noexcept
    : leading(leadingNumber)
    , unit(unitId)
    , frequency(atFrequency)
    , level(levelInUnit)
    , trailing(trailingNumber)
{}

bool AMeasurementValue::isEmpty() const noexcept
{
    return leading == 0 && frequency.isNull() && level == 0.0;
}

AMeasurementValue AMeasurementValue::convertTo(int unitId) const noexcept
{
    const emu_entry *target = emu_find(unitId);
    if (!target || target->id == unit)
        return *this;
    const emu_entry *source = emu_find(unit);
    AMeasurementValue result = *this;
    result.unit = static_cast<quint8>(target->id);
    result.level = source && source->family == target->family ? convertLevel(level, *source, *target) : kNaN;
    return result;
}

AMeasurementValue AMeasurementValue::convertTo(const emu_entry *target) const
{
    if (target)
        return convertTo(target->id);
    qWarning() << "warning: converting to null-pointer unit is undefined";
    return convertTo(-1);
}

AMeasurementValue AMeasurementValue::operator-(const AMeasurementValue &other) const noexcept
{
    AMeasurementValue result = *this;
    result.level -= other.level;
    return result;
}

AMeasurementValue AMeasurementValue::operator+(const AMeasurementValue &other) const noexcept
{
    AMeasurementValue result = *this;
    result.level += other.level;
    return result;
}

AMeasurementValue &AMeasurementValue::operator+=(double levels) noexcept
{
    level += levels;
    return *this;
}

QString AMeasurementValue::formatValueString(bool withUnit) const
{
    constexpr int kDecimals = 2;
    constexpr double kScaledBelow = 1000.0;
    const auto number = [](double value) { return QStringLiteral("%L1").arg(value, 0, 'f', kDecimals); };

    const emu_entry *entry = withUnit ? emu_find(unit) : nullptr;
    if (!entry)
        return number(level);
    const emsi_unit *scale = entry->logarithmic ? nullptr : emsi_find_scale(level, kScaledBelow);
    if (!scale)
        return number(level) + QLatin1Char(' ') + QString::fromUcs4(entry->name);
    return number(static_cast<double>(level / scale->factor)) + QLatin1Char(' ') + QString::fromUcs4(scale->prefix) +
           QString::fromUcs4(entry->name);
}

bool operator==(const AMeasurementValue &a, const AMeasurementValue &b) noexcept
{
    return a.leading == b.leading && a.unit == b.unit && a.reserved == b.reserved && a.frequency == b.frequency &&
           a.level == b.level && a.trailing == b.trailing;
}
