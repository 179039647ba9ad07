#pragma once

#include "core/ageodata.h"
#include "core/asweepprocessor.h"
#include "core/aveldorandevice.h"
#include "core/aveldoranexport.h"

#include <QtCore/QDateTime>
#include <QtCore/QVector>

#include <memory>

// A spectrum analyser that is driven around a town, or along a track, without hardware: a noise floor, and the carriers
// of transmitters that stand along the way and fade as the vehicle moves. What it measures depends on the seed, the
// set-up and the number of the sweep alone, so that a demonstration or a test can be repeated.
class AVELDORAN_CORE_EXPORT ASimulatedDevice : public ASweepProcessor, public AVeldoranDevice
{
    Q_OBJECT

public:
    // A transmitter beside the way.
    struct Carrier
    {
        AFrequency frequency; // of its peak
        AFrequency width;     // between the points 3 dB below its peak; below one point, that of a point
        double level = 0.0;   // dBm, at a distance of 100 m
        double east = 0.0;    // metres east of the middle of the drive, where the transmitter stands
        double north = 0.0;   // metres north of the middle of the drive, where the transmitter stands
    };

    // Where the vehicle is at a time.
    struct TrackPoint
    {
        double seconds = 0.0;   // from the begin of sweep 0 on
        double latitude = 0.0;  // decimal degrees, north positive
        double longitude = 0.0; // decimal degrees, east positive
        double altitude = 0.0;  // metres
    };

    // 501 points from 87.5 MHz to 108 MHz, a noise floor of -105 dBm, 8 carriers, and four sweeps a second from
    // 2024-05-17, 08:00 UTC on.
    explicit ASimulatedDevice(quint32 seed = 1, QObject *parent = nullptr);
    ~ASimulatedDevice() override;

    QString customOptionText() const override;
    int hardwareRevision() const override;
    bool isReady() const override;                // always
    QStringList informationList() const override; // the serial number is the seed
    quint16 optionMask() const override;
    bool hasCapability(int capability) const override;
    AVeldoranChipInformation chipInformation() const override;

    // The chip under which a list of devices shows a simulated one.
    static AVeldoranChipInformation simulatedChip();

    quint32 seed() const; // as given to the constructor

    // At least 2 points, at most a million; an end below the begin counts as the begin. The carriers are chosen anew.
    void setRange(const AFrequency &begin, const AFrequency &end, int pointCount);

    void setNoiseFloor(double level); // dBm, the mean of the noise in one point

    // Until setRange() or setTrack() chooses others.
    void setCarriers(const QVector<Carrier> &carriers);
    QVector<Carrier> carriers() const;

    void setBegin(const QDateTime &begin, int sweepIntervalMs); // of sweep 0; an interval below 1 counts as 1

    // Drives along a track, straight from point to point, instead of around the town; before the first and behind the
    // last point the vehicle stands. The points are in ascending time, those that are not finite are passed over. The
    // carriers are chosen anew, along the track. Without points it is the town again.
    void setTrack(const QVector<TrackPoint> &track);

    // The sweep of a number from 0 on, in dBm, with its times and its position record. Nothing is suppressed in it.
    ASweep sweep(int number) const;

    // Where the vehicle is at the end of that sweep, in the NMEA form of a logger, with all sensors.
    AGeoData position(int number) const;

    // Delivers the position record and the sweep of each number from `first` on, one number every `intervalMs`
    // milliseconds, with 0 one each turn of the event loop. Stops by itself after `count` numbers: stopped() comes one
    // interval after the last. A `count` below 0 goes on until stop(). What was running before is replaced.
    void start(int first, int count, int intervalMs);
    void stop();            // without stopped()
    bool isRunning() const; // from start() to stopped() or stop()

Q_SIGNALS:
    void gpsData(AGeoData geoData); // before the sweep of that number
    void stopped();                 // after the last sweep, not after stop()

private:
    void deliverNext();

    struct Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};
