#pragma once

#include "core/asweep.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// Lists of points, and a second peak search, written for being right and not for being fast.

constexpr int kdBm = 0;
constexpr int kdBuV = 4;
constexpr int kV = 5;
constexpr int kWattPerSquareMetre = 11;
constexpr int kNoSuchUnit = -1;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

inline AFrequency hertz(double value)
{
    AFrequency frequency;
    frequency.setValue(1, AFrequency::Hz);
    return frequency * value;
}

inline AMeasurementValue point(double level, double frequencyHz, int unit = kdBm)
{
    return AMeasurementValue(level, static_cast<unsigned char>(unit), hertz(frequencyHz), 0, 0.0);
}

// Points 10 Hz apart, the first at 10 Hz.
inline QList<AMeasurementValue> points(const std::vector<double> &levels)
{
    QList<AMeasurementValue> list;
    for (const double level : levels)
        list.append(point(level, 10.0 * (list.size() + 1)));
    return list;
}

struct PeakRequest
{
    int first = 0;
    int last = std::numeric_limits<int>::max();
    int maxima = 20;
    int minima = 0;
    int unit = kdBm;
    AFrequency spacing;
};

struct FoundPeaks
{
    int count = 0;
    std::vector<AMeasurementValue> maxima; // as many as their capacity
    std::vector<AMeasurementValue> minima;
};

inline AMeasurementValue leftover()
{
    return AMeasurementValue(-999.0, 3, hertz(77.0), 5, 6.0);
}

inline FoundPeaks findPeaks(const QList<AMeasurementValue> &data, const PeakRequest &request)
{
    FoundPeaks found;
    found.maxima.assign(static_cast<std::size_t>(request.maxima), leftover());
    found.minima.assign(static_cast<std::size_t>(request.minima), leftover());
    found.count = ASweep::extractPeaks(data, request.first, request.last, found.maxima.data(), request.maxima,
                                       found.minima.data(), request.minima, request.unit, request.spacing);
    return found;
}

// The maxima of `data` (the minima with the sign -1) by the letter of the definition, then the selection by rank.
inline std::vector<AMeasurementValue> referencePeaks(const QList<AMeasurementValue> &data, const PeakRequest &request,
                                                     double sign, int capacity)
{
    struct Level
    {
        int index;
        double level;
    };
    std::vector<Level> levels;
    for (int i = 0; i < data.size(); ++i) {
        const double level = sign * data[i].convertTo(request.unit).level;
        if (!std::isnan(level))
            levels.push_back({i, level});
    }
    std::vector<Level> peaks;
    for (std::size_t begin = 0, end = 0; begin < levels.size(); begin = end) {
        for (end = begin; end < levels.size() && levels[end].level == levels[begin].level;)
            ++end;
        const bool aboveLeft = begin == 0 || levels[begin - 1].level < levels[begin].level;
        const bool aboveRight = end == levels.size() || levels[end].level < levels[begin].level;
        const int index = levels[begin].index;
        if (aboveLeft && aboveRight && index >= request.first && index <= request.last)
            peaks.push_back(levels[begin]);
    }
    std::stable_sort(peaks.begin(), peaks.end(), [](const Level &a, const Level &b) { return a.level > b.level; });

    std::vector<AMeasurementValue> taken;
    for (const Level &peak : peaks) {
        if (static_cast<int>(taken.size()) == capacity)
            break;
        const AMeasurementValue &value = data[peak.index];
        const bool free = std::all_of(taken.begin(), taken.end(), [&](const AMeasurementValue &other) {
            const AFrequency distance = value.frequency < other.frequency ? other.frequency - value.frequency
                                                                          : value.frequency - other.frequency;
            return distance >= request.spacing;
        });
        if (free)
            taken.push_back(value);
    }
    return taken;
}

// "5@10 3@30": levels and frequencies in hertz, an unused entry as "-".
inline QString peaksText(const std::vector<AMeasurementValue> &peaks)
{
    QStringList texts;
    for (const AMeasurementValue &peak : peaks) {
        texts += peak == AMeasurementValue()
                     ? QStringLiteral("-")
                     : QStringLiteral("%1@%2").arg(peak.level).arg(peak.frequency.floatValue(AFrequency::Hz));
    }
    return texts.join(QLatin1Char(' '));
}

// The same without the unused entries.
inline QString filledPeaksText(std::vector<AMeasurementValue> peaks)
{
    peaks.erase(std::remove(peaks.begin(), peaks.end(), AMeasurementValue()), peaks.end());
    return peaksText(peaks);
}
