#pragma once

#include "marker/aspectrummarkerlist.h"

#include <array>

// Private to marker/: the record behind the list.

constexpr int kTraceCount = 10;
constexpr int kPeakStep = 2; // by which the peak arrays start and grow

inline bool isTraceNumber(int trace)
{
    return trace >= 0 && trace < kTraceCount;
}

struct ASpectrumMarkerList::Private
{
    // Entry 0 serves the markers of unknown types, which have no family.
    int &counter(int family) { return markerCounters[static_cast<std::size_t>(qMax(family, 0))]; }

    std::array<int, 5> markerCounters = {};
    std::unique_ptr<AMeasurementValue[]> minPeaks;
    std::unique_ptr<AMeasurementValue[]> maxPeaks;
    int minPeakCount = 0;
    int maxPeakCount = 0;
    QList<ASpectrumMarker *> allMarkers;
    QString setupName;
    std::array<QList<AMeasurementValue>, kTraceCount> traceValues;
    AFrequency beginFrequency;
    AFrequency endFrequency;
};
