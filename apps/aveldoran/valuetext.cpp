#include "apps/aveldoran/valuetext.h"

#include <core/emsi.h>
#include <core/emu.h>

#include <QtCore/QLocale>
#include <QtCore/QStringList>

#include <cmath>

namespace {

// "12:05" or "1:02:05".
QString durationText(qint64 seconds)
{
    const auto twoDigits = [](qint64 number) { return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0')); };
    const qint64 hours = seconds / 3600;
    const qint64 minutes = seconds / 60 % 60;
    return (hours > 0 ? QStringLiteral("%1:%2").arg(QString::number(hours), twoDigits(minutes))
                      : QString::number(minutes)) +
           QLatin1Char(':') + twoDigits(seconds % 60);
}

} // namespace

QString shortFrequency(const AFrequency &frequency)
{
    const QStringList numberAndUnit = frequency.canonicalText().split(QLatin1Char(' '));
    QString number = numberAndUnit.first();
    while (number.endsWith(QLatin1Char('0')))
        number.chop(1);
    if (number.endsWith(QLatin1Char('.')))
        number.chop(1);
    return number + QLatin1Char(' ') + numberAndUnit.last();
}

QString frequencyRangeText(const AFrequency &begin, const AFrequency &end)
{
    return QStringLiteral("%1 to %2").arg(shortFrequency(begin), shortFrequency(end));
}

QString decibelText(double decibels)
{
    constexpr double kLeast = 0.005; // what is below would be 0.00
    constexpr double kMost = 1e6;
    constexpr int kDigits = 6;
    const double magnitude = std::fabs(decibels);
    const bool isUsual = decibels == 0.0 || (magnitude >= kLeast && magnitude < kMost);
    return isUsual ? QString::number(decibels, 'f', 2) : QString::number(decibels, 'g', kDigits);
}

const emsi_unit *levelScale(double level, const emu_entry &unit)
{
    constexpr double kScaledBelow = 1000.0;
    return unit.logarithmic ? nullptr : emsi_find_scale(level, kScaledBelow);
}

QString levelText(double level, int unit)
{
    const emu_entry *entry = emu_find(unit);
    if (!entry)
        return decibelText(level);
    const emsi_unit *scale = levelScale(level, *entry);
    const double number = scale ? static_cast<double>(level / scale->factor) : level;
    return QStringLiteral("%1 %2%3").arg(decibelText(number), scale ? QString::fromUcs4(scale->prefix) : QString(),
                                         QString::fromUcs4(entry->name));
}

QString measuredValueText(const AMeasurementValue &value)
{
    return QStringLiteral("%1 at %2").arg(levelText(value.level, value.unit), shortFrequency(value.frequency));
}

QString countText(qint64 count, const char *noun)
{
    QString counted = QLatin1String(noun);
    if (count != 1 && counted.endsWith(QLatin1Char('y')))
        counted.replace(counted.size() - 1, 1, QStringLiteral("ies"));
    else if (count != 1)
        counted += QLatin1Char('s');
    return QStringLiteral("%1 %2").arg(QString::number(count), counted);
}

QString timeText(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODate);
}

QString exactTimeText(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

QString timeSpanText(const QDateTime &begin, const QDateTime &end)
{
    return QStringLiteral("%1 to %2 (%3)").arg(timeText(begin), timeText(end), durationText(begin.secsTo(end)));
}

QString sizeText(qint64 bytes)
{
    return QLocale::c().formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
}
