#pragma once

#include "core/ameasurementvalue.h"

#include <QtCore/QList>
#include <QtCore/QString>

#include <vector>

// Lowers the narrow peaks of a spectrum, as docs/recordings.md describes. Private to core/.

struct SuppressedRange
{
    AFrequency begin; // both ends belong to it
    AFrequency end;
    double decibels; // infinite: down to the surroundings
};

// The ranges of a peak suppression file in ascending order; they don't overlap. False with the reason, and the line
// where there is one, for a file that can't be read or is damaged anywhere.
bool readPeakSuppressionFile(const QString &fileName, std::vector<SuppressedRange> *ranges, QString *errorText);

class PeakSuppressor
{
public:
    // Lowers each narrow peak by that many decibels at most, and never below its surroundings. One pass; the memory is
    // kept for the next sweep.
    void suppress(QList<AMeasurementValue> *values, double decibelsAtMost);

    // The same by the decibels of the range in which a point lies; none outside of them.
    void suppress(QList<AMeasurementValue> *values, const std::vector<SuppressedRange> &ranges);

private:
    template<typename DecibelsAt>
    void suppressBy(QList<AMeasurementValue> *values, DecibelsAt decibelsAt);
    void readLevels(const QList<AMeasurementValue> &values);

    std::vector<double> m_levels; // decibels of one unit, NaN for what has none
};
