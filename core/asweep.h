#pragma once

#include "core/ageodata.h"
#include "core/ameasurementvalue.h"
#include "core/aveldoranexport.h"

#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QMetaType>

// One measured sweep: its values, when it was measured, and where. A value; the list is implicitly shared.
class AVELDORAN_CORE_EXPORT ASweep
{
public:
    QList<AMeasurementValue> values; // in ascending frequency

    // Times that are not known are invalid.
    ASweep(const QList<AMeasurementValue> &values = {}, const QDateTime &start = {}, const QDateTime &stop = {});

    // When the measurement began and ended.
    QDateTime startTime() const { return m_start; }
    QDateTime stopTime() const { return m_stop; }

    // Where the sweep was measured; empty until it is set.
    AGeoData geoData() const { return m_geoData; }
    void setGeoData(const AGeoData &geoData) { m_geoData = geoData; }

    // The value of the highest and of the lowest level, compared as the levels stand; on equal levels the one of the
    // lower frequency. NaN is passed over. The empty value if no level is a number.
    AMeasurementValue maximum() const;
    AMeasurementValue minimum() const;

    // Searches the points firstIndex to lastIndex, both inclusive and cut to the data, for peaks. `data` is in
    // ascending frequency.
    //
    // A maximum is a point strictly above both neighbours in `data`, which may lie outside the searched range; the
    // first and the last point have one neighbour, a single point has none and is a peak. A flat top counts as one
    // peak, at its lowest frequency, also where it is the whole of the data. NaN is no peak and no neighbour: the
    // point beyond it is. Infinite levels are levels. A minimum is a point strictly below both neighbours, and all of
    // this holds for it, with a flat bottom for the flat top.
    //
    // `unit` is the id of the unit in which levels are compared; the levels of points in another unit are converted
    // for that (NaN if they can't be), and with an unknown unit all are compared as they stand. The peaks are copies
    // of the points, unconverted.
    //
    // Maxima come highest first, minima lowest first, on equal levels the lower frequency first. With a spacing above
    // 0 a peak is dropped if a better one nearer than `spacing` was taken, so that two peaks of one sort lie at least
    // that far apart, and a peak that loses to a dropped one alone is taken.
    //
    // The arrays belong to the caller and hold at least `capacity` records; a null array, or a capacity below 1, asks
    // for no peaks of that sort. Every entry that no peak fills becomes the empty value. Returns the larger of the two
    // numbers of peaks that were filled in.
    //
    // The cost is a pass over the range, and with a wide spacing parts of it twice more. Memory depends on the
    // capacities, never on the data.
    static int extractPeaks(const QList<AMeasurementValue> &data, int firstIndex, int lastIndex,
                            AMeasurementValue *maxima, int maximaCapacity, AMeasurementValue *minima,
                            int minimaCapacity, int unit, const AFrequency &spacing);

    // The same for the points from `begin` to `end`, both inclusive.
    static int extractPeaks(const QList<AMeasurementValue> &data, const AFrequency &begin, const AFrequency &end,
                            AMeasurementValue *maxima, int maximaCapacity, AMeasurementValue *minima,
                            int minimaCapacity, int unit, const AFrequency &spacing);

private:
    QDateTime m_start;
    QDateTime m_stop;
    AGeoData m_geoData;
};

Q_DECLARE_METATYPE(ASweep)
