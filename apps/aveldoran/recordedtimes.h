#pragma once

#include <QtCore/QVector>

#include <limits>

// When each sweep of a recording was measured, as far as its records tell.
class RecordedTimes
{
public:
    // In milliseconds since the epoch: when the first of them began, as far as that is known (kUnknown if not), and
    // when each of them ended.
    RecordedTimes(qint64 firstMs, const QVector<qint64> &endsMs);
    static constexpr qint64 kUnknown = std::numeric_limits<qint64>::min();

    // Whether the sweeps make a time axis: their times run forward, and at least 2 % of the time from the first to the
    // last was measured; less comes of a clock that was set during the recording.
    bool areAnAxis() const { return m_areAnAxis; }

    // Of an axis: the whole of it, and what a sweep takes of it. That is the time since the one before, but after a
    // pause as long as most of them take.
    qint64 beginMs() const { return beginMs(0); }
    qint64 endMs() const { return m_endsMs.constLast(); }
    qint64 beginMs(int sweep) const;
    qint64 endMs(int sweep) const { return m_endsMs[sweep]; }

private:
    bool areForward() const;

    QVector<qint64> m_endsMs;
    qint64 m_firstMs = 0; // when the first one began
    qint64 m_usualMs = 0;
    bool m_areAnAxis = false;
};
