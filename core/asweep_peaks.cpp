#include "core/asweep.h"

#include "core/emu.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <vector>

// The peak search: a selection by rank, best peak first, in which a taken peak forbids all others nearer than the
// spacing. Whether a peak is taken may depend on a chain of better ones that reaches to the other end of the data, so
// no single pass with bounded memory can select. What one pass can do is to group the peaks into cells, remember the
// best peak of each cell, and forget all but the best cells; the selection then looks again into the few cells whose
// best peak turns out to be forbidden.
//
// A cell begins at a peak and covers the peaks nearer to it than the cell's width, which is the spacing divided by a
// small number, the share. So
// - a cell gives at most one peak;
// - the beginnings of neighbouring cells lie at least a width apart, and therefore a taken peak and what it forbids,
//   an interval of less than two spacings, reach into at most 2 * share + 2 cells;
// - the best peak of a cell is either taken, or forbidden by a better one that is. If m cells have a best peak better
//   than a given peak, at least m / (2 * share + 2) peaks better than that one are taken. With n peaks asked for, no
//   peak of a cell behind the best (2 * share + 2) * (n - 1) + 1 cells can be among them.
// With one cell to a spacing, many peaks are known to be taken as soon as the next cell is, and the best n of them make
// most of the others superfluous at once.
// A taken peak forbids some cells whole and at most two in part, so what is looked at again is at most two cells for
// each taken peak.

namespace {

// What extractPeaks is asked for, apart from the sort of peak.
struct Search
{
    Search(const QList<AMeasurementValue> &data, int firstIndex, int lastIndex, int unitId,
           const AFrequency &peakSpacing)
        : points(data.cbegin())
        , size(data.size())
        , first(qMax(firstIndex, 0))
        , last(qMin(lastIndex, data.size() - 1))
        , unit(unitId)
        , asTheyStand(emu_find(unitId) == nullptr)
        , spacing(peakSpacing)
    {}

    double level(int index) const
    {
        const AMeasurementValue &value = points[index];
        return value.unit == unit || asTheyStand ? value.level : value.convertTo(unit).level;
    }

    // The first index of [from, end) whose level is at or beyond a bound, else `end`. A bound that is NaN bounds
    // nothing.
    int firstOutside(int from, int end, double lower, double upper) const
    {
        const QList<AMeasurementValue>::const_iterator list = points; // all of the loop is in registers
        const int comparedUnit = unit;
        for (int i = from; i < end; ++i) {
            const AMeasurementValue &value = list[i];
            const double compared = value.unit == comparedUnit ? value.level : level(i);
            if (compared >= upper || compared <= lower)
                return i;
        }
        return end;
    }

    // The nearest level before the index that is a number; NaN if there is none.
    double levelBefore(int index) const
    {
        double before = std::numeric_limits<double>::quiet_NaN();
        while (--index >= 0 && std::isnan(before))
            before = level(index);
        return before;
    }

    // The last index of [from, end) up to which the levels rise, fall or stay as they do from `before` to `at`. No
    // point before it is a peak. Moves both levels along.
    int endOfSlope(int from, int end, double *before, double *at) const
    {
        const QList<AMeasurementValue>::const_iterator list = points; // as in firstOutside
        const int comparedUnit = unit;
        double previous = *before;
        double current = *at;
        int i = from;
        const auto follow = [&](auto goesOn) {
            for (; i + 1 < end; ++i) {
                const AMeasurementValue &value = list[i + 1];
                const double next = value.unit == comparedUnit ? value.level : level(i + 1);
                if (!goesOn(current, next))
                    break;
                previous = current;
                current = next;
            }
        };
        if (current > previous)
            follow([](double a, double b) { return b > a; });
        else if (current < previous)
            follow([](double a, double b) { return b < a; });
        else if (current == previous)
            follow([](double a, double b) { return b == a; });
        *before = previous;
        *at = current;
        return i;
    }

    // The first index of [from, to] for which `holds` is false, else to + 1; `holds` is true up to some point. The
    // steps double, since the answer is mostly near.
    template<typename Holds>
    int firstWithout(int from, int to, Holds holds) const
    {
        qint64 step = 1;
        while (step <= to - from && holds(points[from + static_cast<int>(step)])) {
            from += static_cast<int>(step);
            step *= 2;
        }
        const int end = step <= to - from ? from + static_cast<int>(step) : to + 1;
        return static_cast<int>(std::partition_point(points + from, points + end, holds) - points);
    }

    // The first index of [from, to] whose frequency is `distance` or more above `frequency`, else to + 1.
    int firstAbove(int from, int to, const AFrequency &frequency, const AFrequency &distance) const
    {
        return firstWithout(from, to,
                            [&](const AMeasurementValue &value) { return value.frequency - frequency < distance; });
    }

    // The last index of [from, to] whose frequency is `distance` or more below `frequency`, else from - 1.
    int lastBelow(int from, int to, const AFrequency &frequency, const AFrequency &distance) const
    {
        return firstWithout(from, to,
                            [&](const AMeasurementValue &value) { return frequency - value.frequency >= distance; }) -
               1;
    }

    QList<AMeasurementValue>::const_iterator points;
    int size;
    int first;
    int last;
    int unit;
    bool asTheyStand;
    AFrequency spacing; // above 0 if it matters
};

// Selects the best peaks of one sort. Minima are the maxima of the negated levels.
class PeakSelection
{
public:
    PeakSelection(const Search &search, double sign, int capacity)
        : m_search(search)
        , m_sign(sign)
        , m_capacity(qMax(capacity, 0))
    {
        m_gate = m_capacity > 0 ? -kInfinity : kNoGate;
        if (m_capacity == 0)
            return;
        const auto others = static_cast<std::size_t>(m_capacity) - 1;
        if (search.spacing > AFrequency() && search.first <= search.last) {
            // As many cells as there are peaks asked for, so that a wide spacing has small cells to look at again.
            const AFrequency span = search.points[search.last].frequency - search.points[search.first].frequency;
            const double wanted = kCellsPerPeak * m_capacity * (search.spacing / span);
            m_share = static_cast<int>(qBound(1.0, wanted, kMaxShare));
            m_cellWidth = search.spacing / m_share;
            m_lastBegin = AFrequency::fromValue(std::numeric_limits<qint64>::max(), AFrequency::Hz) - m_cellWidth;
            m_maxCells = others * static_cast<std::size_t>(2 * m_share + 2) + 1;
        } else {
            m_maxCells = others + 1;
        }
        m_forgetAt = m_maxCells;
    }

    // Only points at or above (for minima: at or below) this level can be peaks that matter, up to the index
    // cellEnd(), where the cell has to be closed. No level passes if no peaks are asked for.
    double gate() const { return m_sign * m_gate; }
    int cellEnd() const { return m_cellEnd; }

    // Takes in a point that passes the gate and is above (for minima: below) the level before it.
    void offer(int index, double offered)
    {
        const double level = m_sign * offered;
        if (m_cellEnd != kNever) {
            if (level > m_cell.level && isTop(index, level)) {
                m_cell.best = index;
                m_cell.level = level;
                m_gate = level;
            }
        } else if (isTop(index, level)) {
            openCell(index, level);
        }
    }

    void closeCell()
    {
        if (m_cellEnd == kNever)
            return;
        m_cellEnd = kNever;
        keepCell();
    }

    // Fills `peaks`, best first, and gives their number.
    int take(AMeasurementValue *peaks)
    {
        if (m_capacity == 0)
            return 0;
        forgetWorstCells();
        if (m_share > 0)
            std::sort(m_cells.begin(), m_cells.end(), [](const Cell &a, const Cell &b) { return a.first < b.first; });
        std::vector<Candidate> candidates;
        candidates.reserve(m_cells.size());
        for (std::size_t i = 0; i < m_cells.size(); ++i)
            candidates.push_back({m_cells[i].best, m_cells[i].level, i});
        std::make_heap(candidates.begin(), candidates.end(), isWorse<Candidate>);

        int count = 0;
        while (count < m_capacity && !candidates.empty()) {
            std::pop_heap(candidates.begin(), candidates.end(), isWorse<Candidate>);
            Candidate &candidate = candidates.back();
            Cell &cell = m_cells[candidate.cell];
            if (trim(candidate.cell)) {
                if (findBest(&cell)) {
                    candidate = {cell.best, cell.level, candidate.cell};
                    std::push_heap(candidates.begin(), candidates.end(), isWorse<Candidate>);
                    continue;
                }
            } else {
                cell.taken = true;
                peaks[count++] = m_search.points[cell.best];
            }
            candidates.pop_back();
        }
        return count;
    }

private:
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();
    static constexpr double kNoGate = std::numeric_limits<double>::quiet_NaN();
    static constexpr int kNever = std::numeric_limits<int>::max();
    static constexpr double kCellsPerPeak = 4;
    static constexpr double kMaxShare = 8;

    struct Cell
    {
        int first = 0; // the points that can still give a peak
        int last = 0;
        int best = -1;
        bool taken = false; // the best
        double level = 0.0; // of the best
    };

    struct Candidate
    {
        int best;
        double level;
        std::size_t cell;
    };

    template<typename Ranked>
    static bool isWorse(const Ranked &a, const Ranked &b)
    {
        return a.level < b.level || (a.level == b.level && a.best > b.best);
    }

    double levelAt(int index) const { return m_sign * m_search.level(index); }

    // Whether the level falls behind a point to which it has risen. A flat top has one such point, so that asking for
    // all points costs one pass.
    bool isTop(int index, double level) const
    {
        for (int after = index + 1; after < m_search.size; ++after) {
            const double other = levelAt(after);
            if (other < level)
                break;
            if (other > level)
                return false;
        }
        return true;
    }

    void openCell(int index, double level)
    {
        m_cell = {index, index, index, false, level};
        if (m_share == 0) {
            keepCell();
            return;
        }
        const AFrequency &begin = m_search.points[index].frequency;
        const AFrequency end = begin + m_cellWidth;
        m_cellEnd = m_search.last + 1;
        if (begin <= m_lastBegin) {
            m_cellEnd = m_search.firstWithout(index, m_search.last,
                                              [&end](const AMeasurementValue &value) { return value.frequency < end; });
        }
        m_cellEnd = qMax(m_cellEnd, index + 1);
        m_cell.last = m_cellEnd - 1;
        m_gate = level;
    }

    void keepCell()
    {
        m_cells.push_back(m_cell);
        if (m_share == 1) {
            if (isSureOfPrevious())
                raiseThreshold(m_previous.level);
            m_beforePrevious = m_previous;
            m_previous = m_cell;
        }
        if (m_cells.size() >= m_forgetAt)
            forgetWorstCells();
        m_gate = m_threshold;
    }

    // Whether the best peak of the previous cell is taken, whatever else there is: nothing nearer to it than the
    // spacing is as good. With one cell to a spacing that could only be in the cells on its two sides, or in no cell,
    // but then it is below the threshold.
    bool isSureOfPrevious() const
    {
        const double level = m_previous.level;
        if (m_previous.best < 0 || level < m_threshold)
            return false;
        const auto areNear = [this](int left, int right) {
            return m_search.points[right].frequency - m_search.points[left].frequency < m_search.spacing;
        };
        return (m_beforePrevious.best < 0 || m_beforePrevious.level < level ||
                !areNear(m_beforePrevious.last, m_previous.best)) &&
               (m_cell.level < level || !areNear(m_previous.best, m_cell.first));
    }

    // Of the peaks that are sure to be taken the best ones, as many as are asked for, leave no place to what is worse.
    void raiseThreshold(double level)
    {
        m_sureLevels.push_back(level);
        std::push_heap(m_sureLevels.begin(), m_sureLevels.end(), std::greater<>());
        if (m_sureLevels.size() <= static_cast<std::size_t>(m_capacity) - 1)
            return;
        m_threshold = qMax(m_threshold, std::nextafter(m_sureLevels.front(), kInfinity));
        std::pop_heap(m_sureLevels.begin(), m_sureLevels.end(), std::greater<>());
        m_sureLevels.pop_back();
    }

    void forgetWorstCells()
    {
        if (m_cells.size() < m_maxCells)
            return;
        const auto lastKept = m_cells.begin() + static_cast<std::ptrdiff_t>(m_maxCells - 1);
        std::nth_element(m_cells.begin(), lastKept, m_cells.end(),
                         [](const Cell &a, const Cell &b) { return isWorse(b, a); });
        // Of equal levels the earlier one is better, so what comes later has to be above.
        m_threshold = qMax(m_threshold, std::nextafter(lastKept->level, kInfinity));
        m_cells.resize(m_maxCells);
        m_forgetAt = m_maxCells + m_maxCells / 2 + 1;
    }

    // Takes out of a cell what taken peaks forbid. False if its best peak stays.
    bool trim(std::size_t number)
    {
        if (m_share == 0)
            return false;
        Cell &cell = m_cells[number];
        const std::size_t reach = static_cast<std::size_t>(m_share) + 1;
        for (std::size_t i = 1; i <= reach && i <= number; ++i) {
            const Cell &left = m_cells[number - i];
            if (left.taken) {
                cell.first =
                    m_search.firstAbove(cell.first, cell.last, m_search.points[left.best].frequency, m_search.spacing);
                break;
            }
        }
        for (std::size_t i = 1; i <= reach && number + i < m_cells.size() && cell.first <= cell.last; ++i) {
            const Cell &right = m_cells[number + i];
            if (right.taken) {
                cell.last =
                    m_search.lastBelow(cell.first, cell.last, m_search.points[right.best].frequency, m_search.spacing);
                break;
            }
        }
        return cell.best < cell.first || cell.best > cell.last;
    }

    // The best peak of what a cell still covers; false if there is none.
    bool findBest(Cell *cell) const
    {
        bool found = false;
        double previous = m_sign * m_search.levelBefore(cell->first);
        for (int i = cell->first; i <= cell->last; ++i) {
            const double level = levelAt(i);
            if (std::isnan(level))
                continue;
            if (!(level <= previous) && (!found || level > cell->level) && isTop(i, level)) {
                found = true;
                cell->best = i;
                cell->level = level;
            }
            previous = level;
        }
        return found;
    }

    const Search &m_search;
    double m_sign;
    int m_capacity;
    int m_share = 0; // cells in a spacing; 0 if peaks may be neighbours, and a cell is one peak
    AFrequency m_cellWidth;
    AFrequency m_lastBegin; // behind it the end of a cell would be beyond all frequencies
    std::size_t m_maxCells = 0;
    std::size_t m_forgetAt = 0;
    std::vector<Cell> m_cells; // up to half as many more between two forgettings, so that these cost little
    double m_threshold = -kInfinity;
    double m_gate = kNoGate;
    std::vector<double> m_sureLevels; // a heap, the lowest first
    Cell m_beforePrevious;
    Cell m_previous;
    Cell m_cell; // the one that is open while m_cellEnd is an index
    int m_cellEnd = kNever;
};

} // namespace

int ASweep::extractPeaks(const QList<AMeasurementValue> &data, int firstIndex, int lastIndex, AMeasurementValue *maxima,
                         int maximaCapacity, AMeasurementValue *minima, int minimaCapacity, int unit,
                         const AFrequency &spacing)
{
    maximaCapacity = maxima ? qMax(maximaCapacity, 0) : 0;
    minimaCapacity = minima ? qMax(minimaCapacity, 0) : 0;
    std::fill_n(maxima, maximaCapacity, AMeasurementValue());
    std::fill_n(minima, minimaCapacity, AMeasurementValue());

    const Search search(data, firstIndex, lastIndex, unit, spacing);
    PeakSelection highest(search, 1.0, maximaCapacity);
    PeakSelection lowest(search, -1.0, minimaCapacity);
    if (maximaCapacity > 0 || minimaCapacity > 0) {
        int i = search.first;
        while (i <= search.last) {
            const int end = std::min({search.last + 1, highest.cellEnd(), lowest.cellEnd()});
            i = search.firstOutside(i, end, lowest.gate(), highest.gate());
            if (i < end) {
                double level = search.level(i);
                double before = search.levelBefore(i);
                i = search.endOfSlope(i, end, &before, &level);
                if (level >= highest.gate() && !(level <= before))
                    highest.offer(i, level);
                if (level <= lowest.gate() && !(level >= before))
                    lowest.offer(i, level);
                ++i;
            }
            if (i == highest.cellEnd())
                highest.closeCell();
            if (i == lowest.cellEnd())
                lowest.closeCell();
        }
        highest.closeCell();
        lowest.closeCell();
    }
    return qMax(highest.take(maxima), lowest.take(minima));
}

int ASweep::extractPeaks(const QList<AMeasurementValue> &data, const AFrequency &begin, const AFrequency &end,
                         AMeasurementValue *maxima, int maximaCapacity, AMeasurementValue *minima, int minimaCapacity,
                         int unit, const AFrequency &spacing)
{
    const auto first = std::partition_point(
        data.cbegin(), data.cend(), [&begin](const AMeasurementValue &value) { return value.frequency < begin; });
    const auto behind = std::partition_point(first, data.cend(),
                                             [&end](const AMeasurementValue &value) { return value.frequency <= end; });
    return extractPeaks(data, static_cast<int>(first - data.cbegin()), static_cast<int>(behind - data.cbegin()) - 1,
                        maxima, maximaCapacity, minima, minimaCapacity, unit, spacing);
}
