#include "marker/aspectrummarkerlist_p.h"

#include <QtCore/QDebug>
#include <QtCore/QHash>
#include <QtCore/QMultiHash>
#include <QtCore/QSet>
#include <QtCore/QSettings>
#include <QtCore/QVector>

#include <algorithm>

namespace {

const QLatin1String kArray("Marker");
const QLatin1String kEnabled("Enabled");
const QLatin1String kType("Type");
const QLatin1String kTrace("Trace");
const QLatin1String kTargetFrequency("TargetFrequency");
const QLatin1String kDisplayOptions("DisplayOptions");
const QLatin1String kReferenceMarkerIndex("ReferenceMarkerIndex");

const QLatin1String kNoParticularSetup("-");

constexpr int kNoReference = -1;

// A stored count is believed so far: up to here an entry without any key is a marker of default values. Beyond, only
// entries that hold something are, or a damaged count alone would make millions of markers.
constexpr int kBelievedEntries = 1000;

// Setups that bring a list beyond this are numbered once at the end, since numbering after each marker has a cost that
// grows with the square. In an empty list the outcome is the same if the entries of each type stand in the order of
// their traces, as they are stored.
constexpr int kNumberedOneByOne = 1000;

struct StoredMarker
{
    ASpectrumMarker::Type type;
    int trace;
    AFrequency target;
    ASpectrumMarker::DisplayOptions displayOptions;
    bool enabled;
    int reference; // the position of another entry, or kNoReference
};

// The entry at the array's current index.
StoredMarker readEntry(const QSettings &settings)
{
    StoredMarker entry = {};
    entry.enabled = settings.value(kEnabled, true).toBool();
    entry.type =
        static_cast<ASpectrumMarker::Type>(settings.value(kType, static_cast<int>(ASpectrumMarker::TypeMax)).toInt());
    entry.trace = settings.value(kTrace, 0).toInt();
    const qulonglong hertz = settings.value(kTargetFrequency, 0).toULongLong();
    entry.target = AFrequency::fromValue(static_cast<qint64>(hertz), AFrequency::Hz);
    const int options =
        settings.value(kDisplayOptions, int(ASpectrumMarker::ShowSymbol | ASpectrumMarker::ShowLabel)).toInt();
    entry.displayOptions = ASpectrumMarker::DisplayOptions(QFlag(options));
    entry.reference = settings.value(kReferenceMarkerIndex, kNoReference).toInt();
    return entry;
}

// Of an array that is open for reading.
QVector<int> storedPositions(const QSettings &settings, int count)
{
    QVector<int> positions;
    for (int i = 0; i < std::min(count, kBelievedEntries); ++i)
        positions.append(i);
    if (count <= kBelievedEntries)
        return positions;
    const QStringList groups = settings.childGroups();
    for (const QString &group : groups) {
        const int number = group.toInt(); // counted from 1
        if (number > kBelievedEntries && number <= count && group == QString::number(number))
            positions.append(number - 1);
    }
    std::sort(positions.begin(), positions.end());
    return positions;
}

} // namespace

void ASpectrumMarkerList::storeSetup(QSettings *settings, const QString &name)
{
    // To QSettings a name of slashes alone is an empty one, and removing what an empty group holds empties the file.
    if (std::all_of(name.cbegin(), name.cend(), [](QChar c) { return c == QLatin1Char('/'); })) {
        qDebug("empty setup name");
        return;
    }
    const QList<ASpectrumMarker *> markers = all();
    QHash<const ASpectrumMarker *, int> positions;
    for (int i = 0; i < markers.size(); ++i)
        positions.insert(markers.at(i), i);

    settings->beginGroup(name);
    settings->remove(QString());
    settings->beginWriteArray(kArray);
    for (int i = 0; i < markers.size(); ++i) {
        const ASpectrumMarker *marker = markers.at(i);
        settings->setArrayIndex(i);
        settings->setValue(kEnabled, marker->isEnabled());
        settings->setValue(kType, static_cast<int>(marker->type()));
        settings->setValue(kTrace, marker->trace());
        settings->setValue(kTargetFrequency,
                           static_cast<qlonglong>(marker->targetFrequency().intValue(AFrequency::Hz)));
        settings->setValue(kDisplayOptions, static_cast<int>(marker->displayOptions()));
        settings->setValue(kReferenceMarkerIndex, positions.value(marker->referenceMarker(), kNoReference));
    }
    settings->endArray();
    settings->endGroup();
    d->setupName = name;
}

void ASpectrumMarkerList::loadSetup(QSettings *settings, const QString &name)
{
    settings->beginGroup(name);
    const int count = settings->beginReadArray(kArray);
    const QVector<int> positions = storedPositions(*settings, count);
    const bool numberAtOnce = listcount() + positions.size() > kNumberedOneByOne;

    QSet<int> loadedTypes;
    QHash<int, ASpectrumMarker *> loadedMarkers;
    QMultiHash<int, ASpectrumMarker *> pendingReferences;
    for (const int i : positions) {
        settings->setArrayIndex(i);
        const StoredMarker entry = readEntry(*settings);
        ASpectrumMarker *marker = numberAtOnce ? appendMarker(entry.type, entry.trace, entry.target)
                                               : addMarker(entry.type, entry.trace, entry.target);
        if (!marker)
            continue;
        loadedTypes.insert(entry.type);
        marker->setDisplayOptions(entry.displayOptions);
        marker->setEnabled(entry.enabled);
        loadedMarkers.insert(i, marker);

        if (entry.reference >= 0 && entry.reference < i) {
            marker->setReferenceMarker(loadedMarkers.value(entry.reference));
        } else if (entry.reference > i) {
            pendingReferences.insert(entry.reference, marker);
        } else {
            // Only here, deliberately: a marker with a reference of its own serves none that wait for it, so that
            // loading makes no chains out of forward references.
            const QList<ASpectrumMarker *> waiting = pendingReferences.values(i);
            for (ASpectrumMarker *dependant : waiting)
                dependant->setReferenceMarker(marker);
            pendingReferences.remove(i);
        }
    }
    settings->endArray();
    settings->endGroup();

    if (numberAtOnce)
        rebuildIndicesOfTypes(loadedTypes);
    if (name != kNoParticularSetup)
        d->setupName = name;
}
