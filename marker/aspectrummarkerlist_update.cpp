#include "core/asweep.h"
#include "core/emu.h"
#include "marker/aspectrummarkerlist_p.h"

#include <QtCore/QDebug>
#include <QtCore/QVarLengthArray>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSteppablePeaks = 20; // among which findPeakFrequency chooses

// The peaks of one sort, handed out one by one.
struct PeakQueue
{
    const AMeasurementValue *peaks;
    int count; // entries that may be handed out, some of which can be empty
    int position = 0;
};

PeakQueue peakQueue(const std::unique_ptr<AMeasurementValue[]> &peaks, int capacity, int found)
{
    return {peaks.get(), peaks ? std::min(capacity, found) : 0};
}

// Whether it counts as a change.
bool takeNextPeak(PeakQueue *queue, ASpectrumMarker *marker)
{
    const int position = queue->position++;
    if (position >= queue->count || queue->peaks[position].isEmpty()) {
        marker->setValue(AMeasurementValue());
        return true; // also if it was empty: displays repaint on it
    }
    // A peak that only moved leaves the marker where it is, so that markers don't jump along a flat top.
    if (queue->peaks[position].level == marker->value().level)
        return false;
    marker->setValue(queue->peaks[position]);
    return true;
}

// At a target between the frequencies of two points.
AMeasurementValue interpolated(const AMeasurementValue &a, const AMeasurementValue &b, const AFrequency &target)
{
    const double weight = 1.0 - (b.frequency - target) / (b.frequency - a.frequency);
    const auto leadingA = static_cast<quint32>(a.leading);
    const auto leadingB = static_cast<quint32>(b.leading);
    const quint32 leadingRise = leadingB - leadingA; // deliberately formed in 32 bits: a fall counts as a large rise
    const double leading = leadingA + weight * leadingRise;
    return {(b.level - a.level) * weight + a.level, a.unit, target, static_cast<quint32>(static_cast<quint64>(leading)),
            (b.trailing - a.trailing) * weight + a.trailing};
}

// The first pair of neighbours that holds the target decides; empty if there is none.
AMeasurementValue valueAt(const QList<AMeasurementValue> &data, const AFrequency &target)
{
    for (int i = 0; i + 1 < data.size(); ++i) {
        const AMeasurementValue &a = data.at(i);
        const AMeasurementValue &b = data.at(i + 1);
        if (a.frequency == target)
            return a;
        if (b.frequency == target)
            return b;
        if (target > a.frequency && target < b.frequency)
            return interpolated(a, b, target);
    }
    return {};
}

// The same for data in ascending frequency, in logarithmic time.
AMeasurementValue valueAtInAscending(const QList<AMeasurementValue> &data, const AFrequency &target)
{
    const auto point = std::partition_point(
        data.cbegin(), data.cend(), [&target](const AMeasurementValue &value) { return value.frequency < target; });
    if (data.size() < 2 || point == data.cend())
        return {};
    if (point->frequency == target)
        return *point;
    return point == data.cbegin() ? AMeasurementValue() : interpolated(*(point - 1), *point, target);
}

bool isAscending(const QList<AMeasurementValue> &data)
{
    return std::is_sorted(data.cbegin(), data.cend(), [](const AMeasurementValue &a, const AMeasurementValue &b) {
        return a.frequency < b.frequency;
    });
}

bool isAddedDirectly(const emu_entry &unit)
{
    return unit.id == kEmuWatt || unit.id == kEmuWattPerSquareMetre;
}

} // namespace

int ASpectrumMarkerList::updateMarkerValues(const QList<AMeasurementValue> &data, int trace, const AFrequency &begin,
                                            const AFrequency &end, int peakUnit, const AFrequency &peakSpacing)
{
    if (!isTraceNumber(trace)) {
        qDebug("invalid trace: %d", trace);
        return -1;
    }
    d->traceValues[static_cast<std::size_t>(trace)] = data;
    d->beginFrequency = begin;
    d->endFrequency = end;
    const QList<ASpectrumMarker *> *markers = m_traces.value(trace);
    if (!markers)
        return -1;

    const int found = ASweep::extractPeaks(data, 1, data.size() - 1, d->maxPeaks.get(), d->maxPeakCount,
                                           d->minPeaks.get(), d->minPeakCount, peakUnit, peakSpacing);
    PeakQueue maxima = peakQueue(d->maxPeaks, d->maxPeakCount, found);
    PeakQueue minima = peakQueue(d->minPeaks, d->minPeakCount, found);
    const auto isOutside = [this](const AFrequency &frequency) {
        return frequency < d->beginFrequency || frequency > d->endFrequency;
    };

    int changes = 0;
    QVarLengthArray<ASpectrumMarker *, 64> readers;
    for (ASpectrumMarker *marker : *markers) {
        if (!marker->value().isEmpty() && isOutside(marker->value().frequency)) {
            marker->setValue(AMeasurementValue());
            ++changes;
        }
        if (marker->scope() == ASpectrumMarker::ScopeFrequency && isOutside(marker->targetFrequency()))
            continue;
        switch (marker->type()) {
        case ASpectrumMarker::TypeMin:
            changes += takeNextPeak(&minima, marker) ? 1 : 0;
            break;
        case ASpectrumMarker::TypeMax:
            changes += takeNextPeak(&maxima, marker) ? 1 : 0;
            break;
        case ASpectrumMarker::TypeStd:
        case ASpectrumMarker::TypeCal:
            readers.append(marker);
            ++changes;
            break;
        default:
            qDebug("unsupported marker type %d", static_cast<int>(marker->type()));
        }
    }
    // A trace is ascending as a rule, and one pass to make sure of it is cheaper than one for each marker.
    const auto read = !readers.isEmpty() && isAscending(data) ? valueAtInAscending : valueAt;
    for (ASpectrumMarker *marker : qAsConst(readers))
        marker->setValue(read(data, marker->targetFrequency()));
    return changes;
}

void ASpectrumMarkerList::updateBufferSizes(int maxCount, int minCount)
{
    if (maxCount >= 0) {
        d->maxPeaks.reset();
        d->maxPeakCount = maxCount;
        if (maxCount > 0)
            d->maxPeaks = std::make_unique<AMeasurementValue[]>(static_cast<std::size_t>(maxCount));
    }
    if (minCount >= 0) {
        d->minPeaks.reset();
        d->minPeakCount = minCount;
        // The maxima decide, deliberately: no room for them switches the whole peak search off.
        if (d->maxPeakCount > 0)
            d->minPeaks = std::make_unique<AMeasurementValue[]>(static_cast<std::size_t>(minCount));
    }
}

AFrequency ASpectrumMarkerList::findPeakFrequency(int trace, const AFrequency &frequency, Qt::LayoutDirection direction,
                                                  bool maximum) const
{
    if (!isTraceNumber(trace))
        return {};
    const QList<AMeasurementValue> &data = d->traceValues[static_cast<std::size_t>(trace)];
    if (data.isEmpty())
        return {};

    AFrequency begin;
    AFrequency end = data.last().frequency + AFrequency("1 Hz");
    if (direction == Qt::LeftToRight)
        begin = frequency;
    else if (direction == Qt::RightToLeft)
        end = frequency;

    AMeasurementValue peaks[kSteppablePeaks];
    const int found =
        ASweep::extractPeaks(data, begin, end, maximum ? peaks : nullptr, maximum ? kSteppablePeaks : 0,
                             maximum ? nullptr : peaks, maximum ? 0 : kSteppablePeaks, data.first().unit, AFrequency());
    const auto qualifies = [&](const AMeasurementValue &peak) {
        if (direction == Qt::LeftToRight)
            return peak.frequency > frequency;
        if (direction == Qt::RightToLeft)
            return peak.frequency < frequency;
        return peak.frequency != frequency;
    };
    const auto *const last = peaks + found;
    const auto *const peak = std::find_if(static_cast<const AMeasurementValue *>(peaks), last, qualifies);
    return peak == last || peak->isEmpty() ? AFrequency() : peak->frequency;
}

AFrequency ASpectrumMarkerList::findCenterFrequency() const
{
    return d->beginFrequency + (d->endFrequency - d->beginFrequency) / 2.0;
}

AMeasurementValue ASpectrumMarkerList::getMarkerSum(int trace, const emu_entry *unit) const
{
    const QList<ASpectrumMarker *> *markers = m_traces.value(trace);
    AMeasurementValue sum;
    if (!markers)
        return sum;
    for (const ASpectrumMarker *marker : *markers) {
        if (marker->type() != ASpectrumMarker::TypeMax || !marker->isEnabled() || marker->value().isEmpty())
            continue;
        AMeasurementValue value = marker->value().convertTo(unit); // warns of a null unit
        if (!unit)
            return {};
        if (!isAddedDirectly(*unit))
            value.level *= value.level;
        // Deliberate: a level of 0 adds nothing, and its marker does not lend the sum its other members either.
        if (value.level == 0.0)
            continue;
        sum = sum.isEmpty() ? value : sum + value;
    }
    if (unit && !isAddedDirectly(*unit))
        sum.level = std::sqrt(sum.level);
    return sum;
}
