#include "apps/aveldoran/limitcurves.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/plot.h"

#include <core/emu.h>

#include <QtGui/QColor>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Where the limit counts its value in that unit, NaN elsewhere.
double limitAt(const ALimit &limit, const AFrequency &frequency, int unit)
{
    bool governs = false;
    const double value = limit.valueAt(frequency, &governs);
    if (!governs || !limit.contains(frequency))
        return std::numeric_limits<double>::quiet_NaN();
    return AMeasurementValue(value, static_cast<unsigned char>(limit.unitId()), frequency, 0, 0.0)
        .convertTo(unit)
        .level;
}

AFrequency hertz(double value)
{
    return AFrequency::fromValue(value, AFrequency::Hz);
}

// The frequencies at which the curve bends or jumps, and enough between them that curved pieces look so.
QVector<AFrequency> sampleFrequencies(const ALimit &limit)
{
    constexpr int kSteps = 1000;
    const AFrequency beside = hertz(1.0);
    QVector<AFrequency> edges = {limit.begin(), limit.end()};
    for (const ALimit::Section &section : limit.sections())
        edges << section.begin << section.end;
    for (const ALimit::Level &level : limit.levels())
        edges << level.frequency;
    QVector<AFrequency> samples;
    double lowest = std::numeric_limits<double>::infinity();
    double highest = 0.0;
    for (const AFrequency &edge : qAsConst(edges)) {
        samples << edge - beside << edge << edge + beside;
        const double value = edge.floatValue(AFrequency::Hz);
        if (value > 0.0 && limit.contains(edge)) {
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
    }
    if (highest > lowest) {
        for (int step = 1; step < kSteps; ++step) {
            const double position = static_cast<double>(step) / kSteps;
            samples << hertz(lowest * std::pow(highest / lowest, position));
            samples << hertz(lowest + (highest - lowest) * position);
        }
    }
    std::sort(samples.begin(), samples.end());
    samples.erase(std::unique(samples.begin(), samples.end()), samples.end());
    return samples;
}

QVector<Plot::Point> curveOf(const ALimit &limit, int unit)
{
    QVector<Plot::Point> points;
    const QVector<AFrequency> frequencies = sampleFrequencies(limit);
    for (const AFrequency &frequency : frequencies) {
        if (frequency <= AFrequency())
            continue;
        const double level = limitAt(limit, frequency, unit);
        const int count = points.size();
        const bool continuesFlat =
            count >= 2 && points.at(count - 1).level == level && points.at(count - 2).level == level;
        if (continuesFlat)
            points.removeLast();
        points.append({frequency.floatValue(AFrequency::Hz), level});
    }
    return points;
}

} // namespace

bool areComparable(int unit, int otherUnit)
{
    const emu_entry *entry = emu_find(unit);
    const emu_entry *other = emu_find(otherUnit);
    return entry && other && entry->family == other->family;
}

LimitCheck checkLimit(const ALimit &limit, const Trace &trace)
{
    LimitCheck check;
    bool isInside = false; // of a run
    for (const AMeasurementValue &point : trace.values) {
        const double value = limitAt(limit, point.frequency, trace.unit);
        const bool counts = !std::isnan(value) && !std::isnan(point.level);
        check.compared += counts ? 1 : 0;
        const bool isExcess = counts && point.level > value;
        if (isExcess) {
            if (!isInside)
                check.excesses.append({point.frequency, point.level, value, point.frequency, point.frequency, 0});
            LimitExcess &run = check.excesses.last();
            if (point.level - value > run.level - run.limit) {
                run.frequency = point.frequency;
                run.level = point.level;
                run.limit = value;
            }
            run.end = point.frequency;
            ++run.points;
        }
        isInside = isExcess;
    }
    return check;
}

bool drawLimits(const QString &title, const QList<const ALimit *> &limits, const Trace *trace, int unit,
                const QString &fileName, QString *errorText)
{
    constexpr double kWide = 10.0; // from here on a decade takes as much room as the next
    Plot plot(title, QStringLiteral("Level"), QString::fromUcs4(emu_find(unit)->name));
    double lowest = std::numeric_limits<double>::infinity();
    double highest = 0.0;
    const auto show = [&](const QVector<Plot::Point> &points) {
        for (const Plot::Point &point : points) {
            if (std::isfinite(point.level) && point.frequencyHz > 0.0) {
                lowest = std::min(lowest, point.frequencyHz);
                highest = std::max(highest, point.frequencyHz);
            }
        }
    };
    if (trace) {
        QVector<Plot::Point> points;
        points.reserve(trace->values.size());
        for (const AMeasurementValue &value : trace->values)
            points.append({value.frequency.floatValue(AFrequency::Hz), value.level});
        show(points);
        plot.addCurve(QStringLiteral("Trace"), points, Plot::TraceCurve);
    }
    for (const ALimit *limit : limits) {
        const QVector<Plot::Point> points = curveOf(*limit, unit);
        if (!trace)
            show(points);
        plot.addCurve(Console::oneLineOrDash(limit->name()), points, Plot::LimitCurve, QColor(limit->color()));
    }
    if (highest > lowest) {
        plot.setFrequencyRange(lowest, highest);
        plot.setFrequencyScale(highest / lowest >= kWide ? Plot::LogarithmicFrequency : Plot::LinearFrequency);
    }
    return plot.save(fileName, errorText);
}
