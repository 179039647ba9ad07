#include "core/areplayprocessor.h"

#include "core/amdrdocument.h"
#include "core/aveldorandevice.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr qint64 kLongestGapMs = 24LL * 60 * 60 * 1000; // of recorded time
constexpr double kLongestWaitMs = 60.0 * 60 * 1000;     // of the timer, which is then started again

// When the records of one kind are due. Each kind has its own: the clocks of the device and of the positions differ.
struct Timeline
{
    bool hasBegun = false;
    qint64 time = 0;  // of the last record
    double due = 0.0; // ms since the start of the replay

    double dueOf(qint64 nextTime, int speed, double notBefore)
    {
        const qint64 gap = nextTime - time;
        const bool isGap = hasBegun && gap > 0 && gap <= kLongestGapMs;
        due = isGap ? std::max(notBefore, due + static_cast<double>(gap) / speed) : notBefore;
        time = nextTime;
        hasBegun = true;
        return due;
    }
};

} // namespace

struct AReplayProcessor::Private
{
    enum State
    {
        Idle,
        Playing,
        StoppedEarly, // playbackStopped(false) is to come
    };

    QPointer<AMdrDocument> document;
    std::unique_ptr<AVeldoranDevice> device;
    bool withPositions = true;

    State state = Idle;
    int playback = 0; // the number of the replay
    int speed = -1;
    bool loop = false;
    int first = 0; // records
    int last = -1;
    int next = 0;

    QTimer timer;
    QElapsedTimer clock;
    ASweep sweep; // the one delivered last, whose memory serves the next if no receiver kept it
    Timeline sweeps;
    Timeline positions;
    double due = 0.0; // of the record `next`, ms of the clock

    bool isPlayed(int record) const;
    void seekPlayed();
    void findDue();
    void wait();
};

bool AReplayProcessor::Private::isPlayed(int record) const
{
    const AMdrDocument::RecordType type = document->recordType(record);
    return type == AMdrDocument::SweepRecord || (withPositions && type == AMdrDocument::GeoDataRecord);
}

void AReplayProcessor::Private::seekPlayed()
{
    while (next <= last && !isPlayed(next))
        ++next;
}

void AReplayProcessor::Private::findDue()
{
    qint64 time = 0;
    if (speed < 1 || next > last || !document->recordTime(next, &time))
        return;
    Timeline &timeline = document->recordType(next) == AMdrDocument::SweepRecord ? sweeps : positions;
    due = timeline.dueOf(time, speed, due);
}

void AReplayProcessor::Private::wait()
{
    const double milliseconds = speed < 1 || state != Playing ? 0.0 : due - static_cast<double>(clock.elapsed());
    timer.start(static_cast<int>(std::ceil(std::clamp(milliseconds, 0.0, kLongestWaitMs))));
}

AReplayProcessor::AReplayProcessor(AMdrDocument *document, QObject *parent, bool withPositions)
    : ASweepProcessor(parent)
    , d(std::make_unique<Private>())
{
    d->document = document;
    d->withPositions = withPositions;
    d->timer.setSingleShot(true);
    d->timer.setTimerType(Qt::PreciseTimer);
    connect(&d->timer, &QTimer::timeout, this, &AReplayProcessor::step);
    if (!document)
        return;
    connect(document, &QObject::destroyed, this, &AReplayProcessor::stopEarly);
    connect(document, &AMdrDocument::contentReplaced, this, &AReplayProcessor::stopEarly);
    d->device.reset(document->createDevice());
    setDevice(d->device.get());
}

AReplayProcessor::~AReplayProcessor() = default;

void AReplayProcessor::startPlayback(int speed, bool loop, int first, int last)
{
    ++d->playback;
    d->state = Private::Playing;
    d->speed = speed;
    d->loop = loop;
    d->sweeps = Timeline();
    d->positions = Timeline();
    d->due = 0.0;
    d->clock.start();
    const int sweepCount = d->document ? d->document->sweepCount() : 0;
    const int firstSweep = std::max(first, 0);
    const int lastSweep = last < 0 ? sweepCount - 1 : std::min(last, sweepCount - 1);
    const bool isWhole = first < 0 && last < 0; // also of position records alone, or of nothing
    if (!d->document || (!isWhole && firstSweep > lastSweep)) {
        stopEarly();
        return;
    }
    d->first = first < 0 ? 0 : d->document->recordOfSweep(firstSweep);
    d->last = last < 0 ? d->document->recordCount() - 1 : d->document->recordOfSweep(lastSweep);
    d->next = d->first;
    d->seekPlayed();
    d->findDue();
    d->wait();
}

void AReplayProcessor::stopPlayback()
{
    stopEarly();
}

bool AReplayProcessor::isPlaying() const
{
    return d->state != Private::Idle;
}

void AReplayProcessor::stopEarly()
{
    if (d->state == Private::Idle)
        return;
    d->state = Private::StoppedEarly;
    d->wait();
}

void AReplayProcessor::step()
{
    if (d->state == Private::Playing && d->due > static_cast<double>(d->clock.elapsed()) && d->speed >= 1) {
        d->wait();
        return;
    }
    const bool isAtEnd = d->next > d->last;
    if (d->state == Private::StoppedEarly || isAtEnd) {
        const bool status = d->state == Private::Playing;
        d->state = Private::Idle;
        d->sweep = ASweep();
        Q_EMIT playbackStopped(status); // a receiver may delete this object
        return;
    }

    const int record = d->next;
    const int playback = d->playback;
    const QPointer<AReplayProcessor> self(this);
    bool ok = false;
    if (d->document->recordType(record) == AMdrDocument::SweepRecord) {
        ASweep sweep; // outlives this object
        std::swap(sweep, d->sweep);
        ok = d->document->readSweep(record, &sweep);
        if (ok)
            deliver(&sweep);
        if (self)
            std::swap(sweep, d->sweep);
    } else {
        AGeoData geoData;
        ok = d->document->readGeoData(record, &geoData);
        if (ok)
            Q_EMIT gpsData(geoData);
    }
    // A receiver may have deleted this object or the document, stopped the replay or begun another.
    if (!self || d->playback != playback || d->state != Private::Playing)
        return;
    if (!ok) {
        stopEarly();
        return;
    }
    ++d->next;
    d->seekPlayed();
    if (d->next > d->last && d->loop) {
        d->next = d->first;
        d->seekPlayed();
        d->sweeps = Timeline();
        d->positions = Timeline();
    }
    d->findDue();
    d->wait();
}
