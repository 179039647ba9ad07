#pragma once

#include "core/ageodata.h"
#include "core/asweepprocessor.h"
#include "core/aveldoranexport.h"
#include "core/aveldoraninterface.h"

#include <memory>

class AMdrDocument;

// Replays a recording: delivers its records in the order in which they were recorded, one at a time and always from the
// event loop. While a receiver runs an event loop of its own, the replay waits.
//
// device() is the device of the recording as it was at construction, null if it named none; it belongs to the
// processor.
class AVELDORAN_CORE_EXPORT AReplayProcessor : public ASweepProcessor, public AVeldoranInterface
{
    Q_OBJECT

public:
    // The document is not owned and may be deleted at any time. `withPositions`: position records are delivered too,
    // else only sweeps.
    AReplayProcessor(AMdrDocument *document, QObject *parent, bool withPositions);
    ~AReplayProcessor() override;

    // Plays the records from the sweep number `first` to the sweep number `last`, both included, counted from 0. Below
    // 0 they stand for the ends of the recording as it is now, with the position records before the first sweep and
    // after the last.
    //
    // `speed` n plays n times as fast as it was recorded: records come as far apart as their times, of sweeps (when
    // they stopped) and of position records each; a time that is missing, goes back, or leaps by more than a day, as
    // that of a clock that was set, is not waited for. A speed below 1 plays as fast as the event loop takes it.
    //
    // `loop` begins again at the first record after the last, until stopPlayback().
    //
    // A replay that is running is replaced without a signal.
    void startPlayback(int speed, bool loop, int first, int last);

    // Ends a running replay; playbackStopped(false) follows from the event loop.
    void stopPlayback();
    bool isPlaying() const; // until playbackStopped()

Q_SIGNALS:
    void gpsData(AGeoData geoData); // a position record, as it was recorded

    // True once the last record was delivered. False if the replay had to stop before: there is no document, or it was
    // deleted or loaded anew, `first` or `last` was given and the range holds no sweep, a record could not be read, or
    // stopPlayback().
    void playbackStopped(bool status);

private:
    void step();
    void stopEarly();

    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
