#include "apps/aveldoran/recordedtimes.h"

#include <algorithm>

namespace {

constexpr int kPause = 4; // so many times as long as usual
constexpr int kLeastPercentMeasured = 2;

} // namespace

RecordedTimes::RecordedTimes(qint64 firstMs, const QVector<qint64> &endsMs)
    : m_endsMs(endsMs)
{
    if (!areForward())
        return;
    // Three in four intervals are no longer than the usual one, so neither pauses nor sweeps at equal times make it.
    QVector<qint64> intervals(m_endsMs.size() - 1);
    for (int i = 0; i < intervals.size(); ++i)
        intervals[i] = m_endsMs[i + 1] - m_endsMs[i];
    const auto usual = intervals.begin() + (intervals.size() - 1) * 3 / 4;
    std::nth_element(intervals.begin(), usual, intervals.end());
    m_usualMs = std::max<qint64>(*usual, 1);
    const qint64 first = m_endsMs.constFirst();
    m_firstMs = firstMs < first && firstMs >= first - kPause * m_usualMs ? firstMs : first - m_usualMs;

    qint64 measured = 0;
    for (int i = 0; i < m_endsMs.size(); ++i)
        measured += endMs(i) - beginMs(i);
    m_areAnAxis = measured / kLeastPercentMeasured >= (endMs() - beginMs()) / 100;
}

bool RecordedTimes::areForward() const
{
    return m_endsMs.size() > 1 && std::is_sorted(m_endsMs.begin(), m_endsMs.end()) &&
           m_endsMs.constFirst() < m_endsMs.constLast();
}

qint64 RecordedTimes::beginMs(int sweep) const
{
    if (sweep == 0)
        return m_firstMs;
    const qint64 end = m_endsMs[sweep];
    if (end - m_endsMs[sweep - 1] > kPause * m_usualMs)
        return end - m_usualMs;
    return m_endsMs[sweep - 1];
}
