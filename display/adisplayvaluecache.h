#pragma once

#include "core/ameasurementvalue.h"
#include "core/aveldoranexport.h"

#include <QtCore/QList>
#include <QtCore/QObject>

#include <memory>

class ADisplayValueCachePrivate;

// The columns of a spectrum display, a measured value each. A sweep of more points than columns is thinned so that no
// peak is lost: each column holds the highest point that falls into it, with the frequency at which it lies. Used from
// the display's thread.
class AVELDORAN_DATA_EXPORT ADisplayValueCache : public QObject
{
    Q_OBJECT

public:
    explicit ADisplayValueCache(QObject *parent = nullptr);            // no columns
    explicit ADisplayValueCache(int count, QObject *parent = nullptr); // that many empty ones
    ~ADisplayValueCache() override;

    int count() const; // of columns

    // New columns are empty, those that stay keep their values. A count below 0 counts as 0.
    void resize(int count);

    // For a column from 0 to below count(); any other is undefined. The references hold until the next resize().
    const AMeasurementValue &at(int i) const;
    AMeasurementValue &operator[](int i) const; // to write to; what data() gave before stays as it was

    // Takes over what changed in a sweep: its points `first` to `last`, both inclusive. `values` is the whole sweep,
    // in ascending frequency.
    //
    // As many points as columns: each of them is copied as it stands. Where `last` is behind the list or `first` above
    // `last` nothing is; a `first` below 0 counts as 0. Fewer points than columns: nothing happens.
    //
    // More points than columns: with r = columns / points, the columns from `first` * r to `last` * r, cut to whole
    // numbers, are made anew. A column has the highest of its points, of equal ones the first, and is empty if it has
    // none. NaN is passed over; infinite levels are levels. What of `first` to `last` lies outside the list is cut off,
    // and if that is all of it nothing happens; nor does it if `last` falls into a column before that of `first`.
    // Three things follow from how the columns are counted:
    // - Where r doesn't divide evenly, the point on the border of two columns counts in both.
    // - The first column is made from all its points, those before `first` included, but the last one only from those
    //   up to `last`. Who changes a stretch of a sweep passes a `last` that ends a column, or the end of the sweep.
    // - An empty value that is the best so far gives way to the next one, whatever its level.
    //
    // The cost is that of a pass over the points of the columns that are made; nothing is allocated.
    void update(const QList<AMeasurementValue> &values, int first, int last);

    // A copy of all columns, in order.
    QList<AMeasurementValue> data() const;

private:
    std::unique_ptr<ADisplayValueCachePrivate> d;
};
