#include "apps/aveldoran/limittext.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/valuetext.h"

#include <core/emu.h>

#include <QtCore/QJsonArray>
#include <QtGui/QColor>

namespace {

QString interpolationText(unsigned int interpolation)
{
    switch (interpolation) {
    case ALimit::Step:
        return QStringLiteral("step");
    case ALimit::Logarithmic:
        return QStringLiteral("logarithmic");
    default:
        return QStringLiteral("linear");
    }
}

QString verdictText(const LimitCheck &check)
{
    if (check.compared == 0)
        return QStringLiteral("not checked");
    return check.isKept() ? QStringLiteral("kept") : QStringLiteral("exceeded");
}

// --- as text ---

QString pieceAsText(const QString &where, const QString &value)
{
    constexpr int kWidth = 30;
    return QStringLiteral("    ") + where.leftJustified(kWidth) + QStringLiteral("  ") + value + QLatin1Char('\n');
}

QString sectionAsText(const ALimit::Section &section, int unit)
{
    const bool isFlat = section.beginValue == section.endValue || section.interpolation == ALimit::Step;
    return pieceAsText(frequencyRangeText(section.begin, section.end),
                       isFlat ? levelText(section.beginValue, unit)
                              : QStringLiteral("%1 to %2, %3")
                                    .arg(levelText(section.beginValue, unit), levelText(section.endValue, unit),
                                         interpolationText(section.interpolation)));
}

QString levelAsText(const ALimit::Level &level, int unit)
{
    return pieceAsText(
        QStringLiteral("at ") + shortFrequency(level.frequency),
        QStringLiteral("%1, %2").arg(levelText(level.value, unit), interpolationText(level.interpolation)));
}

QString excessAsText(const LimitExcess &excess, int traceUnit)
{
    QString run = countText(excess.points, "point");
    if (excess.points > 1)
        run += QStringLiteral(", ") + frequencyRangeText(excess.begin, excess.end);
    const double above = excess.level - excess.limit;
    return QStringLiteral("    %1  %2, limit %3, excess %4  (%5)\n")
        .arg(shortFrequency(excess.frequency).leftJustified(16), levelText(excess.level, traceUnit),
             levelText(excess.limit, traceUnit),
             emu_find(traceUnit)->logarithmic != 0 ? decibelText(above) + QStringLiteral(" dB")
                                                   : levelText(above, traceUnit),
             run);
}

// --- as JSON ---

double hertz(const AFrequency &frequency)
{
    return frequency.floatValue(AFrequency::Hz);
}

QJsonObject sectionAsJson(const ALimit::Section &section)
{
    return {{QStringLiteral("beginHz"), hertz(section.begin)},
            {QStringLiteral("endHz"), hertz(section.end)},
            {QStringLiteral("beginLevel"), numberOrNull(section.beginValue)},
            {QStringLiteral("endLevel"), numberOrNull(section.endValue)},
            {QStringLiteral("interpolation"), interpolationText(section.interpolation)}};
}

QJsonObject levelAsJson(const ALimit::Level &level)
{
    return {{QStringLiteral("frequencyHz"), hertz(level.frequency)},
            {QStringLiteral("level"), numberOrNull(level.value)},
            {QStringLiteral("interpolation"), interpolationText(level.interpolation)}};
}

QJsonObject excessAsJson(const LimitExcess &excess, int traceUnit)
{
    return {{QStringLiteral("frequencyHz"), hertz(excess.frequency)},
            {QStringLiteral("level"), numberOrNull(excess.level)},
            {QStringLiteral("limit"), numberOrNull(excess.limit)},
            {QStringLiteral("excess"), numberOrNull(excess.level - excess.limit)},
            {QStringLiteral("unit"), QString::fromUcs4(emu_find(traceUnit)->name)},
            {QStringLiteral("beginHz"), hertz(excess.begin)},
            {QStringLiteral("endHz"), hertz(excess.end)},
            {QStringLiteral("points"), excess.points}};
}

} // namespace

QString limitName(const ALimit &limit)
{
    return Console::oneLineOrDash(limit.name());
}

QString limitUnitText(const ALimit &limit)
{
    const emu_entry *unit = emu_find(limit.unitId());
    return unit ? QString::fromUcs4(unit->name) : QStringLiteral("unit %1").arg(Console::oneLine(limit.unit()));
}

QString limitAsText(const ALimit &limit)
{
    QString text = QStringLiteral("  %1  %2  %3")
                       .arg(limitName(limit), frequencyRangeText(limit.begin(), limit.end()), limitUnitText(limit));
    if (!limit.description().isEmpty())
        text += QStringLiteral("  # ") + Console::oneLine(limit.description());
    text += QLatin1Char('\n');
    for (const ALimit::Section &section : limit.sections())
        text += sectionAsText(section, limit.unitId());
    for (const ALimit::Level &level : limit.levels())
        text += levelAsText(level, limit.unitId());
    return text;
}

QJsonObject limitAsJson(const ALimit &limit)
{
    QJsonArray sections;
    for (const ALimit::Section &section : limit.sections())
        sections.append(sectionAsJson(section));
    QJsonArray levels;
    for (const ALimit::Level &level : limit.levels())
        levels.append(levelAsJson(level));
    QJsonObject object{{QStringLiteral("name"), limit.name()},
                       {QStringLiteral("beginHz"), hertz(limit.begin())},
                       {QStringLiteral("endHz"), hertz(limit.end())},
                       {QStringLiteral("sections"), sections},
                       {QStringLiteral("levels"), levels}};
    if (const emu_entry *unit = emu_find(limit.unitId()))
        object[QStringLiteral("unit")] = QString::fromUcs4(unit->name);
    if (!limit.description().isEmpty())
        object[QStringLiteral("description")] = limit.description();
    if (const QColor color(limit.color()); color.isValid())
        object[QStringLiteral("color")] = color.name();
    return object;
}

QString checkAsText(const ALimit &limit, const LimitCheck &check, int traceUnit)
{
    QString text = QStringLiteral("  %1: %2; %3 compared\n")
                       .arg(limitName(limit), verdictText(check), countText(check.compared, "point"));
    for (const LimitExcess &excess : check.excesses)
        text += excessAsText(excess, traceUnit);
    return text;
}

void addCheck(const LimitCheck &check, int traceUnit, QJsonObject *limit)
{
    QJsonArray excesses;
    for (const LimitExcess &excess : check.excesses)
        excesses.append(excessAsJson(excess, traceUnit));
    (*limit)[QStringLiteral("verdict")] = verdictText(check);
    (*limit)[QStringLiteral("comparedPoints")] = check.compared;
    (*limit)[QStringLiteral("excesses")] = excesses;
}
