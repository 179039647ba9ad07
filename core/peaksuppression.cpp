#include "core/peaksuppression.h"

#include "core/calibrationfile.h"
#include "core/coretext.h"
#include "core/emu.h"
#include "core/failure.h"
#include "core/regularfile.h"

#include <QtCore/QFile>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

// What counts as a narrow peak, and as its surroundings.
constexpr int kSurroundingPoints = 10; // to each side
constexpr int kWindowPoints = 2 * kSurroundingPoints + 1;
constexpr int kWidestPeak = 5;     // points
constexpr double kStandsOut = 6.0; // dB
constexpr int kFewestPoints = 3;

constexpr qint64 kMaxLineBytes = 1 << 16;
constexpr double kAll = std::numeric_limits<double>::infinity();

double decibels(const emu_entry *unit, double level)
{
    return unit && unit->logarithmic == 0 ? unit->decibelsPerDecade * std::log10(level) : level;
}

void lower(AMeasurementValue *value, double drop)
{
    const emu_entry *unit = emu_find(value->unit);
    if (unit && unit->logarithmic == 0)
        value->level *= std::pow(10.0, -drop / unit->decibelsPerDecade);
    else
        value->level -= drop;
}

// The levels around a point, in ascending order.
class Window
{
public:
    void insert(double level)
    {
        if (std::isnan(level))
            return;
        double *const end = m_levels.data() + m_size;
        double *const at = std::upper_bound(m_levels.data(), end, level);
        std::memmove(at + 1, at, static_cast<std::size_t>(end - at) * sizeof level);
        *at = level;
        ++m_size;
    }

    void remove(double level)
    {
        if (std::isnan(level))
            return;
        double *const end = m_levels.data() + m_size;
        double *const at = std::lower_bound(m_levels.data(), end, level);
        std::memmove(at, at + 1, static_cast<std::size_t>(end - at - 1) * sizeof level);
        --m_size;
    }

    double median() const // the lower one of two
    {
        return m_size == 0 ? std::numeric_limits<double>::quiet_NaN()
                           : m_levels[static_cast<std::size_t>((m_size - 1) / 2)];
    }

private:
    std::array<double, kWindowPoints> m_levels = {};
    int m_size = 0;
};

// "begin; end; decibels"
bool readRange(const QByteArray &line, SuppressedRange *range)
{
    const QList<QByteArray> cells = line.split(';');
    if (cells.size() != 3 || !CalibrationFile::readFrequency(cells[0], AFrequency::Hz, &range->begin) ||
        !CalibrationFile::readFrequency(cells[1], AFrequency::Hz, &range->end))
        return false;
    if (cells[2].trimmed() == "all") {
        range->decibels = kAll;
    } else if (!CalibrationFile::readGain(cells[2], &range->decibels) || !std::isfinite(range->decibels)) {
        return false;
    }
    return range->begin <= range->end && range->decibels >= 0.0;
}

bool beginsBefore(const SuppressedRange &a, const SuppressedRange &b)
{
    return a.begin < b.begin;
}

bool overlaps(const SuppressedRange &lower, const SuppressedRange &upper)
{
    return upper.begin <= lower.end;
}

} // namespace

bool readPeakSuppressionFile(const QString &fileName, std::vector<SuppressedRange> *ranges, QString *errorText)
{
    ranges->clear();
    QFile file(fileName);
    if (!openRegularFile(&file, errorText))
        return false;
    CalibrationFile::ByteSource source(&file);
    QByteArray line;
    for (int number = 1; CalibrationFile::readLine(&source, kMaxLineBytes, &line); ++number) {
        SuppressedRange range = {};
        if (CalibrationFile::isBlankOrComment(line))
            continue;
        if (!readRange(line, &range)) {
            ranges->clear();
            return fail(errorText,
                        CoreText::tr("Line %1: expected a begin, an end and decibels, separated by \";\"").arg(number));
        }
        ranges->push_back(range);
    }
    if (source.failed()) {
        ranges->clear();
        return fail(errorText, CoreText::tr("Not a text file"));
    }
    std::sort(ranges->begin(), ranges->end(), beginsBefore);
    if (std::adjacent_find(ranges->begin(), ranges->end(), overlaps) != ranges->end()) {
        ranges->clear();
        return fail(errorText, CoreText::tr("Two ranges overlap"));
    }
    return true;
}

// Levels in other units than the first one's are converted to it, so that they can be compared.
void PeakSuppressor::readLevels(const QList<AMeasurementValue> &values)
{
    m_levels.resize(static_cast<std::size_t>(values.size()));
    const quint8 unitId = values.first().unit;
    const emu_entry *unit = emu_find(unitId);
    auto level = m_levels.begin();
    for (const AMeasurementValue &value : values)
        *level++ = decibels(unit, value.unit == unitId ? value.level : value.convertTo(unitId).level);
}

template<typename DecibelsAt>
void PeakSuppressor::suppressBy(QList<AMeasurementValue> *values, DecibelsAt decibelsAt)
{
    if (values->size() < kFewestPoints)
        return;
    readLevels(*values);

    struct Point
    {
        int index;
        double height; // above the surroundings
    };
    std::array<Point, kWidestPeak> peak = {};
    int width = 0; // of the peak so far, which may be too wide
    const auto endPeak = [&] {
        for (int i = 0; i < width && width <= kWidestPeak; ++i) {
            const Point &point = peak[static_cast<std::size_t>(i)];
            const double drop = std::min(point.height, decibelsAt(qAsConst(*values)[point.index].frequency));
            if (drop > 0.0)
                lower(&(*values)[point.index], drop);
        }
        width = 0;
    };

    const int count = values->size();
    const double *const levels = m_levels.data();
    Window window;
    for (int i = 0; i < std::min(kSurroundingPoints, count); ++i)
        window.insert(levels[i]);
    for (int i = 0; i < count; ++i) {
        if (i > kSurroundingPoints)
            window.remove(levels[i - kSurroundingPoints - 1]);
        if (i + kSurroundingPoints < count)
            window.insert(levels[i + kSurroundingPoints]);
        const double level = levels[i];
        if (std::isnan(level))
            continue; // neither part of a peak nor its end
        const double height = std::isfinite(level) ? level - window.median() : 0.0;
        if (height > kStandsOut) {
            if (width < kWidestPeak)
                peak[static_cast<std::size_t>(width)] = {i, height};
            ++width;
        } else {
            endPeak();
        }
    }
    endPeak();
}

void PeakSuppressor::suppress(QList<AMeasurementValue> *values, double decibelsAtMost)
{
    suppressBy(values, [decibelsAtMost](const AFrequency &) { return decibelsAtMost; });
}

void PeakSuppressor::suppress(QList<AMeasurementValue> *values, const std::vector<SuppressedRange> &ranges)
{
    suppressBy(values, [&ranges](const AFrequency &frequency) {
        const auto after =
            std::upper_bound(ranges.begin(), ranges.end(), frequency,
                             [](const AFrequency &at, const SuppressedRange &range) { return at < range.begin; });
        return after != ranges.begin() && frequency <= (after - 1)->end ? (after - 1)->decibels : 0.0;
    });
}
