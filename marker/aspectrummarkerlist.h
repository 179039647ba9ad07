#pragma once

#include "core/afrequency.h"
#include "core/ameasurementvalue.h"
#include "core/aveldoranexport.h"
#include "marker/aspectrummarker.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/qnamespace.h>

#include <memory>

QT_BEGIN_NAMESPACE
class QSettings;
QT_END_NAMESPACE

struct emu_entry;

// The markers of one spectrum display. It owns them, numbers them by type, makes them follow the traces, and stores
// and loads them as named setups. Used from the one thread that drives the display.
//
// Numbers run from 0 over all markers of one type, by trace and then by the number before: a new marker is the last of
// its trace, and one that comes from another trace goes by its old number. They come from sort keys, which are made of
// family (counterIndex), trace and number, and are distinct while no family has ten markers or markers of two types and
// all stand on traces 0 to 9. Otherwise keys can be equal: with ten on several traces; with two types of one family,
// TypeMax and the obsolete TypePMax, which changeMarkerType allows; on a trace such as 1000, which changeMarkerTrace
// allows. Of markers with equal keys only one is renumbered or listed. One that is not stays on its trace with its old
// number, and may be missing from all(), at() and the setups.
class AVELDORAN_DATA_EXPORT ASpectrumMarkerList
{
public:
    ASpectrumMarkerList();
    ~ASpectrumMarkerList();
    ASpectrumMarkerList(const ASpectrumMarkerList &) = delete;
    ASpectrumMarkerList &operator=(const ASpectrumMarkerList &) = delete;

    // The new marker, which stays the list's own until it is removed, or null, with a debug message, for a trace
    // outside 0 to 9 or an obsolete type. Only TypeStd and TypeCal use a target frequency; for others it is stored,
    // with a debug message.
    ASpectrumMarker *addMarker(ASpectrumMarker::Type type, int trace, const AFrequency &targetFrequency);

    // Deletes the marker; those that refer to it lose their reference. 0, or -1 if the marker is none of the list.
    int removeMarker(ASpectrumMarker *marker);

    // Both keep all else of the marker, and are without effect for null or a marker of no list. Neither the type nor
    // the trace is checked; markers on traces outside 0 to 9 are never updated.

    // The marker becomes the last of the new type on its trace.
    void changeMarkerType(ASpectrumMarker *marker, ASpectrumMarker::Type type);

    // The marker is sorted on the new trace by its old number, so it may come before markers that are there.
    void changeMarkerTrace(ASpectrumMarker *marker, int trace);

    // Numbers the markers of a type anew. Every operation that changes markers does this itself.
    void rebuildMarkerIndices(ASpectrumMarker::Type type);

    // In the order of display: maxima, minima, TypeStd, TypeCal, then by trace, then by number. all() sorts on each
    // call, the operations below read the order of the last change. `i` is not checked.
    QList<ASpectrumMarker *> all() const;
    ASpectrumMarker *at(int i) const;
    int listcount() const;
    int indexOf(ASpectrumMarker *marker) const; // -1 if it is not listed
    bool containsMarker(ASpectrumMarker *marker) const;

    // A trace is known while it has markers. The list stays the owner's: by type, then by number; null if not known.
    bool hasTrace(int trace) const;
    QList<ASpectrumMarker *> *trace(int trace) const;
    bool isEmpty() const;

    // Deletes the markers of all(); the data of the last updates stay. Markers that lost their place in all() to an
    // equal sort key are no longer the list's own and are not deleted; they lose their references.
    void clear();

    // The family of the marker's type: 1 maxima, 2 minima, 3 TypeStd, 4 TypeCal, -1 for an unknown type.
    int counterIndex(ASpectrumMarker *marker) const;

    // Takes the new data of a trace, 0 to 9, which are shared and not copied, and the displayed range. The markers of
    // the trace, enabled or not, get their values: TypeMax and TypeMin the peaks from the second point on, in the
    // order of ASweep::extractPeaks, which says what peakUnit and peakSpacing mean; TypeStd and TypeCal the level at
    // their target frequency, linear between two points in the unit of the trace. A marker whose value lies outside
    // the range is emptied. A peak of the level that the marker has already leaves it as it is, also its frequency.
    // Returns how often a value was set, or -1 if the trace has no markers or is not valid.
    // Of data in ascending frequency it costs one pass for the peaks and one for all target frequencies.
    int updateMarkerValues(const QList<AMeasurementValue> &data, int trace, const AFrequency &begin,
                           const AFrequency &end, int peakUnit, const AFrequency &peakSpacing);

    // Makes room for that many peaks of the next update; a negative count leaves its sort alone. The list grows both
    // by itself, in steps of two. Without room for maxima there is none for minima made.
    void updateBufferSizes(int maxCount, int minCount);

    // The frequency of the best of the 20 best maxima (or minima) of the trace's last data that lie above `frequency`
    // (LeftToRight), below it (RightToLeft) or anywhere else (LayoutDirectionAuto). 0 Hz if there is none.
    AFrequency findPeakFrequency(int trace, const AFrequency &frequency, Qt::LayoutDirection direction,
                                 bool maximum) const;

    // The middle of the range of the last update.
    AFrequency findCenterFrequency() const;

    // The levels of the enabled TypeMax markers of a trace in `unit`: added in W and W/m², in every other unit the
    // root of the sum of their squares. The other members are those of the first one. Empty if there is none, and,
    // with a warning, for a null unit.
    AMeasurementValue getMarkerSum(int trace, const emu_entry *unit) const;

    // Stores the markers of all(), in place of what the setup held, as a group of that name; docs/markers.md has the
    // keys. Without values. A name that is empty or of slashes alone would be the whole file and is refused, with a
    // debug message.
    void storeSetup(QSettings *settings, const QString &name);

    // Adds the markers of a setup. Entries that addMarker refuses are left out, references to them too; malformed
    // numbers are 0. Both operations leave the name in setupName(), except for loading "-", no particular setup.
    void loadSetup(QSettings *settings, const QString &name);
    QString setupName() const;

private:
    ASpectrumMarker *appendMarker(ASpectrumMarker::Type type, int trace, const AFrequency &targetFrequency);
    void rebuildIndicesOfTypes(const QSet<int> &types);
    QList<ASpectrumMarker *> *listForTrace(int trace);
    bool takeFromTrace(ASpectrumMarker *marker);
    void dropTraceIfEmpty(int trace);

    struct Private;
    QMap<int, QList<ASpectrumMarker *> *> m_traces;
    std::unique_ptr<Private> d;
};
