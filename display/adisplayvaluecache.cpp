#include "display/adisplayvaluecache.h"

#include <QtCore/QVector>

#include <algorithm>
#include <cmath>

namespace {

using Values = QList<AMeasurementValue>;

// Where the points of a sweep fall. The arithmetic is exactly that of (double) * and /, cut towards zero, since other
// displays of the suite place their columns by it.
class Columns
{
public:
    Columns(int columns, int points)
        : m_columnsPerPoint(static_cast<double>(columns) / points)
    {}

    int ofPoint(int point) const { return static_cast<int>(point * m_columnsPerPoint); }
    int firstPoint(int column) const { return static_cast<int>(column / m_columnsPerPoint); }

    // The first point of a later column: that which firstPoint() tells, or behind it where rounding cut too much. It is
    // never before: rounding is below a part in 2^51, a point at least one in 2^31.
    int pointBehind(int column) const
    {
        int point = firstPoint(column + 1);
        while (ofPoint(point) <= column)
            ++point;
        return point;
    }

private:
    double m_columnsPerPoint; // below 1
};

// The highest of the points from `begin` to before `end`.
AMeasurementValue highest(const Values &values, int begin, int end)
{
    static const AMeasurementValue kEmpty;
    const AMeasurementValue *best = &kEmpty;
    double bestLevel = best->level;
    bool isEmpty = true; // deliberately also where an empty point has become the best
    for (int i = begin; i < end; ++i) {
        const AMeasurementValue &value = values.at(i);
        if (value.level > bestLevel || (isEmpty && !std::isnan(value.level))) {
            best = &value;
            bestLevel = value.level;
            isEmpty = value.isEmpty();
        }
    }
    return *best;
}

} // namespace

class ADisplayValueCachePrivate
{
public:
    QVector<AMeasurementValue> columns;

    void copy(const Values &values, int first, int last);
    void thin(const Values &values, int first, int last);
};

void ADisplayValueCachePrivate::copy(const Values &values, int first, int last)
{
    if (values.size() != columns.size() || last >= values.size() || first > last)
        return;
    for (int i = std::max(first, 0); i <= last; ++i)
        columns[i] = values.at(i);
}

void ADisplayValueCachePrivate::thin(const Values &values, int first, int last)
{
    if (last < 0 || first >= values.size())
        return;
    const Columns layout(columns.size(), values.size());
    last = std::min(last, values.size() - 1);
    const int end = std::min(layout.ofPoint(last), columns.size() - 1);
    AMeasurementValue *const column = columns.data();
    for (int j = layout.ofPoint(std::max(first, 0)); j <= end; ++j) {
        // The first point counts even if it is of the column before.
        column[j] = highest(values, layout.firstPoint(j), std::min(layout.pointBehind(j), last + 1));
    }
}

ADisplayValueCache::ADisplayValueCache(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<ADisplayValueCachePrivate>())
{}

ADisplayValueCache::ADisplayValueCache(int count, QObject *parent)
    : ADisplayValueCache(parent)
{
    resize(count);
}

ADisplayValueCache::~ADisplayValueCache() = default;

int ADisplayValueCache::count() const
{
    return d->columns.size();
}

void ADisplayValueCache::resize(int count)
{
    d->columns.resize(std::max(count, 0));
}

const AMeasurementValue &ADisplayValueCache::at(int i) const
{
    return d->columns.at(i);
}

AMeasurementValue &ADisplayValueCache::operator[](int i) const
{
    return d->columns[i];
}

void ADisplayValueCache::update(const QList<AMeasurementValue> &values, int first, int last)
{
    if (values.size() <= d->columns.size() || d->columns.isEmpty())
        d->copy(values, first, last);
    else
        d->thin(values, first, last);
}

QList<AMeasurementValue> ADisplayValueCache::data() const
{
    return d->columns.toList();
}
