#pragma once

#include "core/areplayprocessor.h"
#include "core/recordings.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QStringList>
#include <QtTest/QtTest>

// What the tests of the replay share.

constexpr int kFast = -1;

inline QString markOf(const ASweep &sweep)
{
    return QStringLiteral("s%1").arg(sweep.values.isEmpty() ? 0.0 : sweep.values.first().level);
}

// Notes what a processor delivers: "s1 p10 s2 true".
class Log : public QObject
{
public:
    QStringList entries;
    QList<qint64> times; // ms since the log began
    int stops = 0;

    explicit Log(AReplayProcessor *processor)
    {
        m_clock.start();
        connect(processor, &AReplayProcessor::gpsData, this, [this](const AGeoData &position) {
            add(QStringLiteral("p%1").arg(static_cast<double>(position.latitude)));
        });
        connect(processor, &AReplayProcessor::sweepFinished, this, [this](ASweep &sweep) { add(markOf(sweep)); });
        connect(processor, &AReplayProcessor::playbackStopped, this, [this](bool status) {
            add(status ? QStringLiteral("true") : QStringLiteral("false"));
            ++stops;
        });
    }

    QString text() const { return entries.join(QLatin1Char(' ')); }

private:
    void add(const QString &entry)
    {
        entries += entry;
        times += m_clock.elapsed();
    }

    QElapsedTimer m_clock;
};

// A document with what replays it and what notes that.
struct Replay
{
    explicit Replay(AMdrDocument *document, bool hasPositions = true)
        : processor(document, nullptr, hasPositions)
        , log(&processor)
    {}

    // False if it stops more than once, or not in time.
    bool playToTheEnd(int speed = kFast, int first = -1, int last = -1)
    {
        processor.startPlayback(speed, false, first, last);
        return QTest::qWaitFor([this] { return log.stops > 0; }) && log.stops == 1;
    }

    AReplayProcessor processor;
    Log log;
};

inline void addMemoryAndFile()
{
    QTest::addColumn<bool>("isFromFile");
    QTest::newRow("memory") << false;
    QTest::newRow("file") << true;
}
