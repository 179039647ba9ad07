#pragma once

#include "apps/aveldoran/plot.h"

#include <core/ameasurementvalue.h>
#include <display/adisplayvaluecache.h>

#include <QtCore/QList>
#include <QtCore/QSize>
#include <QtCore/QVector>

#include <vector>

// Levels on the pixels of a waterfall: a column is a stretch of frequencies, a row one of time. Where several levels
// meet on a pixel the highest stays. How many sweeps there are is of no matter for the memory that this takes.
class LevelRaster
{
public:
    // At least one column and one row. If `endHz` is `beginHz`, all columns are that frequency.
    LevelRaster(const QSize &size, double beginHz, double endHz);

    // Lays a sweep over what lies between two places of the time axis, in rows; over one row at least. The values are
    // in one unit and in ascending frequency. Each covers what lies nearest to it, of several at one frequency the
    // highest; what lies far from all of them, as between two ranges that are measured in one sweep, stays free. NaN is
    // no level.
    void add(const QList<AMeasurementValue> &sweep, double beginRow, double endRow);

    QSize size() const { return m_size; }
    float level(int column, int row) const;                       // NaN where there is none
    const std::vector<float> &levels() const { return m_levels; } // row by row

    AMeasurementValue highest() const; // of all finite ones that the maximum hold has; the empty value if none

    // The highest level of each column over all that was added, in ascending frequency: as near to where it was
    // measured as the column allows. Columns without one are gaps.
    QVector<Plot::Point> maximumHold() const;

private:
    bool isEven(const QList<AMeasurementValue> &values) const;
    void addStretch(const QList<AMeasurementValue> &values);
    void addCell(const AMeasurementValue &value, double beginHz, double endHz);
    double hertzAt(std::size_t column) const;
    double columnOf(double hertz) const { return (hertz - m_beginHz) * m_columnsPerHz; }

    QSize m_size;
    double m_beginHz;
    double m_columnsPerHz;
    std::vector<float> m_levels;
    std::vector<AMeasurementValue> m_hold; // the empty value where there is none
    std::vector<float> m_line;             // of the sweep that is being added
    ADisplayValueCache m_cache;
};
