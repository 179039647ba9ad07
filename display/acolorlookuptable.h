#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QObject>
#include <QtGui/QColor>

#include <memory>

class AColorLookupTablePrivate;

// A ramp between two colours for levels from 0 to a dynamic range, worked out in advance, so that a line of a waterfall
// costs one multiplication and one look-up a pixel. Used from the display's thread.
//
// The ramp runs straight through hue, saturation, value and opacity: it takes no shorter way around the circle of
// colours, and its last entry stops one step short of `end`. Where one end has no hue (black, white, grey) it takes
// that of the other, and an invalid colour counts as black.
class AVELDORAN_DATA_EXPORT AColorLookupTable : public QObject
{
    Q_OBJECT

public:
    // `dynamic` is the range in level units, at least 1. Below 1 the table has one entry, the colour `begin`.
    AColorLookupTable(QObject *parent, int dynamic, const QColor &begin, const QColor &end);
    ~AColorLookupTable() override;

    // The entries, 1 to 1000. at() takes an entry from 0 to below count(); any other is undefined.
    int count() const;
    const QColor &at(int i) const;

    // The entry level * (count() / dynamic()), in single precision and cut to a whole number. The caller keeps `level`
    // from 0 to below dynamic(): any other number, NaN and infinities lie outside the table, which is undefined and
    // deliberately not tested for. So is every level if dynamic() is below 1. A level of dynamic() itself,
    // to which rounding may lift one below it, has the colour of the last entry.
    const QColor &colorAt(float level) const { return m_entries[static_cast<int>(level * m_entriesPerLevel)]; }

    // As they were asked for, also where the table has fewer entries.
    const QColor &begin() const;
    const QColor &end() const;
    int dynamic() const;

    // Makes the table anew. An invalid colour leaves the one of before, so that the range can be changed alone.
    void rebuild(int dynamic, const QColor &begin, const QColor &end);

    // Makes the table alone: begin(), end() and dynamic() stay, by which colorAt() goes on counting.
    void createColorLookupTable(const QColor &begin, const QColor &end, int dynamic);

Q_SIGNALS:
    void colorsChanged(); // the table was made anew, be its colours the same or not

private:
    std::unique_ptr<AColorLookupTablePrivate> d;

    // For colorAt(), which is called for each pixel: a copy of the last entry stands behind the last.
    const QColor *m_entries = nullptr;
    float m_entriesPerLevel = 0.0F;
};
