#include "marker/aspectrummarkerlist_p.h"

#include <QtCore/QDebug>
#include <QtCore/QSet>

#include <algorithm>
#include <map>
#include <tuple>
#include <vector>

namespace {

// Which markers have equal keys, and so which are passed over, depends on these: beyond ten numbers the keys of a trace
// run into those of the next one, and beyond ten thousand those of a family into the next family's.
constexpr unsigned kNumbersPerTrace = 10;
constexpr unsigned kFamilyInRenumbering = 1000;
constexpr unsigned kFamilyInDisplay = 10000;

struct KeyedMarker
{
    int key;
    int trace; // under which the marker stands
    ASpectrumMarker *marker;
};

// Wraps for numbers beyond any real trace.
int sortKey(const ASpectrumMarker &marker, int family, unsigned familyFactor)
{
    return static_cast<int>(static_cast<unsigned>(marker.index()) +
                            static_cast<unsigned>(marker.trace()) * kNumbersPerTrace +
                            static_cast<unsigned>(family) * familyFactor);
}

// Sorts by key. Of equal keys the marker that came last stays; the others are returned, by address.
std::vector<ASpectrumMarker *> sortAndTakeOutEqualKeys(std::vector<KeyedMarker> *markers)
{
    std::stable_sort(markers->begin(), markers->end(),
                     [](const KeyedMarker &a, const KeyedMarker &b) { return a.key < b.key; });
    std::vector<ASpectrumMarker *> passedOver;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < markers->size(); ++i) {
        const KeyedMarker &entry = (*markers)[i];
        if (i + 1 < markers->size() && (*markers)[i + 1].key == entry.key)
            passedOver.push_back(entry.marker);
        else
            (*markers)[kept++] = entry;
    }
    markers->resize(kept);
    std::sort(passedOver.begin(), passedOver.end());
    return passedOver;
}

// Puts the markers of one type into the order of their keys and numbers them. Returned are those that are passed over.
std::vector<ASpectrumMarker *> renumber(std::vector<KeyedMarker> *block)
{
    std::vector<ASpectrumMarker *> passedOver = sortAndTakeOutEqualKeys(block);
    int count = 0;
    for (const KeyedMarker &entry : *block)
        entry.marker->setIndex(count++);
    return passedOver;
}

// What growing step by step comes to; -1, no change, if there is room already.
int grownPeakCount(int peakCount, std::size_t markerCount)
{
    const int missing = static_cast<int>(markerCount) - peakCount;
    return missing > 0 ? peakCount + (missing + kPeakStep - 1) / kPeakStep * kPeakStep : -1;
}

bool isObsolete(ASpectrumMarker::Type type)
{
    return ASpectrumMarker(type).isPersistent();
}

} // namespace

ASpectrumMarkerList::ASpectrumMarkerList()
    : d(std::make_unique<Private>())
{
    updateBufferSizes(kPeakStep, kPeakStep);
}

ASpectrumMarkerList::~ASpectrumMarkerList()
{
    for (const QList<ASpectrumMarker *> *markers : qAsConst(m_traces)) {
        qDeleteAll(*markers);
        delete markers;
    }
}

ASpectrumMarker *ASpectrumMarkerList::addMarker(ASpectrumMarker::Type type, int trace,
                                                const AFrequency &targetFrequency)
{
    ASpectrumMarker *marker = appendMarker(type, trace, targetFrequency);
    if (marker)
        rebuildMarkerIndices(type);
    return marker;
}

// All of addMarker but the renumbering.
ASpectrumMarker *ASpectrumMarkerList::appendMarker(ASpectrumMarker::Type type, int trace,
                                                   const AFrequency &targetFrequency)
{
    if (!isTraceNumber(trace)) {
        qDebug("invalid trace: %d", trace);
        return nullptr;
    }
    if (isObsolete(type)) {
        qDebug("obsolete marker type: %d", static_cast<int>(type));
        return nullptr;
    }
    if (!targetFrequency.isNull() && type != ASpectrumMarker::TypeStd && type != ASpectrumMarker::TypeCal)
        qDebug("setting frequency on non-frequency markers is undefined");

    auto *marker = new ASpectrumMarker(type);
    marker->setTrace(trace);
    marker->setTargetFrequency(targetFrequency);
    listForTrace(trace)->append(marker);
    marker->setIndex(++d->counter(counterIndex(marker))); // above every running number: the last of its trace
    return marker;
}

int ASpectrumMarkerList::removeMarker(ASpectrumMarker *marker)
{
    if (!marker || !takeFromTrace(marker))
        return -1;
    dropTraceIfEmpty(marker->trace());
    // By trace and not by allMarkers, so that a marker which lost its place there keeps no dead reference.
    for (const QList<ASpectrumMarker *> *markers : qAsConst(m_traces)) {
        for (ASpectrumMarker *other : *markers) {
            if (other->referenceMarker() == marker)
                other->setReferenceMarker(nullptr);
        }
    }
    --d->counter(counterIndex(marker));
    rebuildMarkerIndices(marker->type());
    delete marker;
    return 0;
}

void ASpectrumMarkerList::changeMarkerType(ASpectrumMarker *marker, ASpectrumMarker::Type type)
{
    if (!marker || !takeFromTrace(marker))
        return;
    --d->counter(counterIndex(marker));
    rebuildMarkerIndices(marker->type());

    marker->setType(type);
    listForTrace(marker->trace())->append(marker);
    marker->setIndex(++d->counter(counterIndex(marker)));
    rebuildMarkerIndices(type);
}

void ASpectrumMarkerList::changeMarkerTrace(ASpectrumMarker *marker, int trace)
{
    if (!marker || !takeFromTrace(marker))
        return;
    dropTraceIfEmpty(marker->trace());
    marker->setTrace(trace);
    listForTrace(trace)->append(marker);
    rebuildMarkerIndices(marker->type()); // by the old number, which decides its place on the new trace
}

void ASpectrumMarkerList::rebuildMarkerIndices(ASpectrumMarker::Type type)
{
    std::vector<KeyedMarker> block;
    for (auto it = m_traces.cbegin(); it != m_traces.cend(); ++it) {
        for (ASpectrumMarker *marker : qAsConst(*it.value())) {
            if (marker->type() == type)
                block.push_back({sortKey(*marker, counterIndex(marker), kFamilyInRenumbering), it.key(), marker});
        }
    }
    const std::vector<ASpectrumMarker *> passedOver = renumber(&block);
    const auto count = static_cast<int>(block.size());
    std::stable_sort(block.begin(), block.end(),
                     [](const KeyedMarker &a, const KeyedMarker &b) { return a.trace < b.trace; });
    auto next = block.cbegin();
    for (auto it = m_traces.begin(); it != m_traces.end(); ++it) {
        if (next == block.cend() || next->trace != it.key())
            continue;
        QList<ASpectrumMarker *> ordered;
        ordered.reserve(it.value()->size());
        for (ASpectrumMarker *marker : qAsConst(*it.value())) {
            if (marker->type() != type || std::binary_search(passedOver.cbegin(), passedOver.cend(), marker))
                ordered.append(marker);
        }
        const auto behind = std::find_if(ordered.cbegin(), ordered.cend(),
                                         [type](const ASpectrumMarker *marker) { return marker->type() > type; });
        const QList<ASpectrumMarker *> tail = ordered.mid(static_cast<int>(behind - ordered.cbegin()));
        ordered.erase(ordered.begin() + (ordered.size() - tail.size()), ordered.end());
        for (; next != block.cend() && next->trace == it.key(); ++next)
            ordered.append(next->marker);
        *it.value() = ordered + tail;
    }

    const bool isMaximum = type == ASpectrumMarker::TypePMax || type == ASpectrumMarker::TypeMax;
    const bool isMinimum = type == ASpectrumMarker::TypePMin || type == ASpectrumMarker::TypeMin;
    if (isMaximum && count > d->maxPeakCount)
        updateBufferSizes(d->maxPeakCount + kPeakStep, -1);
    else if (isMinimum && count > d->minPeakCount)
        updateBufferSizes(-1, d->minPeakCount + kPeakStep);

    d->allMarkers = all();
}

// The same for many types at once, in n log n for n markers however many the types are. A marker that is passed over
// comes before those of its type that are not.
void ASpectrumMarkerList::rebuildIndicesOfTypes(const QSet<int> &types)
{
    std::map<int, std::vector<KeyedMarker>> blocks;
    for (auto it = m_traces.cbegin(); it != m_traces.cend(); ++it) {
        for (ASpectrumMarker *marker : qAsConst(*it.value())) {
            if (types.contains(marker->type()))
                blocks[marker->type()].push_back(
                    {sortKey(*marker, counterIndex(marker), kFamilyInRenumbering), it.key(), marker});
        }
    }
    QSet<const ASpectrumMarker *> passedOver;
    for (auto &block : blocks) {
        for (const ASpectrumMarker *marker : renumber(&block.second))
            passedOver.insert(marker);
    }

    const auto place = [&](const ASpectrumMarker *marker) {
        const bool isNumbered = types.contains(marker->type()) && !passedOver.contains(marker);
        return std::make_tuple(static_cast<int>(marker->type()), isNumbered ? marker->index() : -1);
    };
    for (QList<ASpectrumMarker *> *markers : qAsConst(m_traces)) {
        std::stable_sort(markers->begin(), markers->end(),
                         [&place](const ASpectrumMarker *a, const ASpectrumMarker *b) { return place(a) < place(b); });
    }

    updateBufferSizes(grownPeakCount(d->maxPeakCount, blocks[ASpectrumMarker::TypeMax].size()),
                      grownPeakCount(d->minPeakCount, blocks[ASpectrumMarker::TypeMin].size()));
    d->allMarkers = all();
}

QList<ASpectrumMarker *> ASpectrumMarkerList::all() const
{
    std::vector<KeyedMarker> entries;
    for (auto it = m_traces.cbegin(); it != m_traces.cend(); ++it) {
        for (ASpectrumMarker *marker : qAsConst(*it.value()))
            entries.push_back({sortKey(*marker, counterIndex(marker), kFamilyInDisplay), it.key(), marker});
    }
    sortAndTakeOutEqualKeys(&entries);
    QList<ASpectrumMarker *> markers;
    markers.reserve(static_cast<int>(entries.size()));
    for (const KeyedMarker &entry : entries)
        markers.append(entry.marker);
    return markers;
}

ASpectrumMarker *ASpectrumMarkerList::at(int i) const
{
    return d->allMarkers.at(i);
}

int ASpectrumMarkerList::listcount() const
{
    return d->allMarkers.size();
}

int ASpectrumMarkerList::indexOf(ASpectrumMarker *marker) const
{
    return d->allMarkers.indexOf(marker);
}

bool ASpectrumMarkerList::containsMarker(ASpectrumMarker *marker) const
{
    return d->allMarkers.contains(marker);
}

bool ASpectrumMarkerList::hasTrace(int trace) const
{
    return m_traces.contains(trace);
}

QList<ASpectrumMarker *> *ASpectrumMarkerList::trace(int trace) const
{
    return m_traces.value(trace);
}

bool ASpectrumMarkerList::isEmpty() const
{
    return m_traces.isEmpty();
}

void ASpectrumMarkerList::clear()
{
    // A marker that lost its place to an equal key is deliberately left alive: who saw that it is no longer contained
    // may have taken it over. What it refers to goes.
    for (const QList<ASpectrumMarker *> *markers : qAsConst(m_traces)) {
        for (ASpectrumMarker *marker : *markers)
            marker->setReferenceMarker(nullptr);
    }
    qDeleteAll(d->allMarkers);
    qDeleteAll(m_traces);
    d->allMarkers.clear();
    m_traces.clear();
    d->markerCounters.fill(0);
    updateBufferSizes(kPeakStep, kPeakStep);
    d->setupName.clear();
}

int ASpectrumMarkerList::counterIndex(ASpectrumMarker *marker) const
{
    switch (marker->type()) {
    case ASpectrumMarker::TypePMax:
    case ASpectrumMarker::TypeMax:
    case ASpectrumMarker::TypeFMax:
        return 1;
    case ASpectrumMarker::TypePMin:
    case ASpectrumMarker::TypeMin:
    case ASpectrumMarker::TypeFMin:
        return 2;
    case ASpectrumMarker::TypeStd:
        return 3;
    case ASpectrumMarker::TypeCal:
        return 4;
    }
    return -1;
}

QString ASpectrumMarkerList::setupName() const
{
    return d->setupName;
}

QList<ASpectrumMarker *> *ASpectrumMarkerList::listForTrace(int trace)
{
    QList<ASpectrumMarker *> *&markers = m_traces[trace];
    if (!markers)
        markers = new QList<ASpectrumMarker *>;
    return markers;
}

// False if the marker's trace does not hold it.
bool ASpectrumMarkerList::takeFromTrace(ASpectrumMarker *marker)
{
    QList<ASpectrumMarker *> *markers = trace(marker->trace());
    return markers && markers->removeAll(marker) > 0;
}

void ASpectrumMarkerList::dropTraceIfEmpty(int trace)
{
    const QList<ASpectrumMarker *> *markers = m_traces.value(trace);
    if (!markers->isEmpty())
        return;
    m_traces.remove(trace);
    delete markers;
}
