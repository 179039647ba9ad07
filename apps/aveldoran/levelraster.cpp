#include "apps/aveldoran/levelraster.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Values = QList<AMeasurementValue>;

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

// Two points lie apart if both of their other neighbours are so many times nearer.
constexpr double kGap = 4.0;

double hertzOf(const AMeasurementValue &value)
{
    return value.frequency.floatValue(AFrequency::Hz);
}

double spacing(const Values &values, int left)
{
    return hertzOf(values.at(left + 1)) - hertzOf(values.at(left));
}

// Of points at one frequency, as narrow spans of many points have them, the highest; a list without such as it is.
Values withoutRepeats(const Values &values)
{
    const auto isRepeat = [](const AMeasurementValue &a, const AMeasurementValue &b) {
        return a.frequency == b.frequency;
    };
    if (std::adjacent_find(values.begin(), values.end(), isRepeat) == values.end())
        return values;
    Values distinct;
    distinct.reserve(values.size());
    for (const AMeasurementValue &value : values) {
        if (distinct.isEmpty() || !isRepeat(distinct.constLast(), value))
            distinct += value;
        else if (std::isnan(distinct.constLast().level) || value.level > distinct.constLast().level)
            distinct.last() = value;
    }
    return distinct;
}

bool isGap(const Values &values, int left)
{
    const bool hasBefore = left > 0;
    const bool hasBehind = left + 2 < values.size();
    const double own = spacing(values, left);
    return (hasBefore || hasBehind) && (!hasBefore || own > kGap * spacing(values, left - 1)) &&
           (!hasBehind || own > kGap * spacing(values, left + 1));
}

// The frequency between a point and the one before it; at the ends of a stretch it lies as far outside as the one
// between the nearest two points lies inside.
double edgeBefore(const Values &values, int i)
{
    if (values.size() == 1)
        return hertzOf(values.at(0));
    if (i == 0)
        return hertzOf(values.at(0)) - spacing(values, 0) / 2;
    if (i == values.size())
        return hertzOf(values.at(i - 1)) + spacing(values, i - 2) / 2;
    return hertzOf(values.at(i - 1)) + spacing(values, i - 1) / 2;
}

// A finite level stays finite.
float narrowed(double level)
{
    constexpr double kMost = std::numeric_limits<float>::max();
    return static_cast<float>(std::isfinite(level) ? qBound(-kMost, level, kMost) : level);
}

// A level beats what is there if there is nothing.
void raise(float *there, float level)
{
    if (!(*there >= level))
        *there = level;
}

} // namespace

LevelRaster::LevelRaster(const QSize &size, double beginHz, double endHz)
    : m_size(size)
    , m_beginHz(beginHz)
    , m_columnsPerHz(beginHz < endHz ? size.width() / (endHz - beginHz) : 0.0)
    , m_levels(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()), kNone)
    , m_hold(static_cast<std::size_t>(size.width()))
    , m_line(static_cast<std::size_t>(size.width()))
    , m_cache(nullptr)
{}

void LevelRaster::add(const QList<AMeasurementValue> &sweep, double beginRow, double endRow)
{
    const Values values = withoutRepeats(sweep);
    std::fill(m_line.begin(), m_line.end(), kNone);
    int begin = 0;
    for (int i = 0; i + 1 < values.size(); ++i) {
        if (isGap(values, i)) {
            addStretch(values.mid(begin, i + 1 - begin));
            begin = i + 1;
        }
    }
    if (begin == 0)
        addStretch(values);
    else
        addStretch(values.mid(begin));

    const int first = qBound(0, qRound(beginRow), m_size.height() - 1);
    const int end = qBound(first + 1, qRound(endRow), m_size.height());
    for (int row = first; row < end; ++row) {
        float *there = &m_levels[static_cast<std::size_t>(row) * m_line.size()];
        for (const float level : m_line) {
            if (!std::isnan(level))
                raise(there, level);
            ++there;
        }
    }
}

// Whether no point lies half a pixel or more from where an even spacing has it.
bool LevelRaster::isEven(const QList<AMeasurementValue> &values) const
{
    const double begin = columnOf(hertzOf(values.constFirst()));
    const double step = (columnOf(hertzOf(values.constLast())) - begin) / std::max(1, values.size() - 1);
    for (int i = 1; i + 1 < values.size(); ++i) {
        if (std::fabs(columnOf(hertzOf(values.at(i))) - (begin + i * step)) >= 0.5)
            return false;
    }
    return true;
}

// The columns of the cache are equal numbers of points, which are stretches of frequencies only if the points are
// evenly spaced: as many of them as pixels lie below. Others are laid down point by point.
void LevelRaster::addStretch(const QList<AMeasurementValue> &values)
{
    const int n = values.size();
    if (n == 0)
        return;
    if (!isEven(values)) {
        for (int i = 0; i < n; ++i)
            addCell(values.at(i), edgeBefore(values, i), edgeBefore(values, i + 1));
        return;
    }
    const double pixels = std::ceil(columnOf(edgeBefore(values, n)) - columnOf(edgeBefore(values, 0)));
    const int columns = std::min(n, static_cast<int>(qBound(1.0, pixels, static_cast<double>(m_size.width()))));
    m_cache.resize(columns);
    m_cache.update(values, 0, n - 1);
    int first = 0;
    for (int column = 0; column < columns; ++column) {
        const auto behind = static_cast<int>((column + 1) * static_cast<qint64>(n) / columns);
        addCell(m_cache.at(column), edgeBefore(values, first), edgeBefore(values, behind));
        first = behind;
    }
}

void LevelRaster::addCell(const AMeasurementValue &value, double beginHz, double endHz)
{
    if (std::isnan(value.level) || value.isEmpty())
        return;
    const double width = m_size.width();
    const bool isOneFrequency = m_columnsPerHz == 0.0;
    auto first = static_cast<int>(std::round(qBound(0.0, columnOf(beginHz), width - 1)));
    auto end = static_cast<int>(isOneFrequency ? width : std::round(qBound(0.0, columnOf(endHz), width)));
    if (end <= first) { // narrower than a column: that in which its own frequency lies
        first = static_cast<int>(qBound(0.0, columnOf(hertzOf(value)), width - 1));
        end = first + 1;
    }
    const float level = narrowed(value.level);
    for (auto column = static_cast<std::size_t>(first); column < static_cast<std::size_t>(end); ++column) {
        raise(&m_line[column], level);
        AMeasurementValue &highest = m_hold[column];
        if (highest.isEmpty() || value.level > highest.level)
            highest = value;
    }
}

// Where a column begins.
double LevelRaster::hertzAt(std::size_t column) const
{
    return m_columnsPerHz == 0.0 ? m_beginHz : m_beginHz + static_cast<double>(column) / m_columnsPerHz;
}

float LevelRaster::level(int column, int row) const
{
    return m_levels[static_cast<std::size_t>(row) * m_line.size() + static_cast<std::size_t>(column)];
}

AMeasurementValue LevelRaster::highest() const
{
    AMeasurementValue best;
    for (const AMeasurementValue &value : m_hold) {
        if (!value.isEmpty() && std::isfinite(value.level) && (best.isEmpty() || value.level > best.level))
            best = value;
    }
    return best;
}

QVector<Plot::Point> LevelRaster::maximumHold() const
{
    QVector<Plot::Point> points;
    const std::size_t columns = m_hold.size();
    for (std::size_t i = 0; i < columns;) {
        // A point that covers several columns is one point of the curve, as near to its frequency as they allow.
        std::size_t end = i + 1;
        while (end < columns && m_hold[end] == m_hold[i])
            ++end;
        const AMeasurementValue &value = m_hold[i];
        const double beginHz = hertzAt(i);
        if (value.isEmpty())
            points.append({beginHz, std::numeric_limits<double>::quiet_NaN()});
        else
            points.append({qBound(beginHz, hertzOf(value), hertzAt(end)), value.level});
        i = end;
    }
    return points;
}
