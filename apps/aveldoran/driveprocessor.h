#pragma once

#include <geo/ageodataprocessor.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

class QFile;

// The positions of one file at a glance.
struct WaypointSummary
{
    qint64 count = 0;
    qint64 withoutPosition = 0; // at 0, 0, or not on the earth; they have no part in the area and the length
    qint64 withoutTime = 0;
    QDateTime begin; // invalid if there is no time
    QDateTime end;
    double south = 0.0; // decimal degrees; meaningless if all are without a position
    double north = 0.0;
    double west = 0.0; // above east if the area crosses the date line
    double east = 0.0;
    double lengthMetres = 0.0;
    bool hasAltitude = false;
    double lowestMetres = 0.0;
    double highestMetres = 0.0;
    bool hasCompass = false;
    bool hasTilt = false;
    bool hasGyroscope = false;
    bool hasPressure = false;

    bool hasArea() const { return withoutPosition < count; }
};

// The processor of a drive, with what a program needs besides: messages for its user, progress, and a look at what is
// stored.
class DriveProcessor : public AGeoDataProcessor
{
    Q_OBJECT

public:
    enum Format
    {
        Gpx,
        Nmea,
        AnyFormat, // what the file begins with tells
    };

    struct Source
    {
        Format format = Gpx; // what the file was
        int tracks = 0;      // of a GPX file, all that it holds
        int waypoints = 0;   // those that were stored
        QString errorText;   // a text for the user that names the file; empty if all of it was read
    };

    explicit DriveProcessor(QObject *parent = nullptr);

    // Takes in the waypoints of a file. A damaged one gives those before the damage, and an error. A device or a pipe
    // that stays silent for ten seconds ends the reading.
    Source read(const QString &fileName, Format format);

    // Removes the waypoints without a position on the earth, which would draw lines across the globe; returns how many.
    int removeUnusableWaypoints();

    // Names the waypoints that have no name after their time.
    void nameWaypoints();

    // In the order of time, those of one time in the order in which they came.
    std::vector<const AGeoData *> waypoints() const;
    int waypointCount() const { return m_waypoints.size(); }
    WaypointSummary summary() const;

    // What became of the sweeps of a recording.
    struct Measured
    {
        bool isWhole = true; // false if some of the recording could not be read any more
        int sweeps = 0;
        int positioned = 0;
        int unusable = 0;          // without a level or a place that can be drawn
        qint64 unusablePoints = 0; // of the others, with levels that can't be, such as 0 W in dBm
    };

    // Takes in the waypoints of a recording; false if some of them could not be read any more.
    bool takeInWaypoints(const AMdrDocument &document);

    // Replays a recording and reduces its sweeps to measured points in a unit, which is not null. Of the sweeps a
    // hundred are in memory at a time, so all waypoints have to be there before.
    Measured measure(AMdrDocument *document, const emu_entry *unit, int toleranceMs);
    int measuredCount() const { return m_kmlData.size(); }
    const AMeasurementValue &minimum() const { return m_minimum; } // of all measured points
    const AMeasurementValue &maximum() const { return m_maximum; }

private:
    void readGpx(QFile *file, Source *source);
    void readNmea(QFile *file, Source *source);
    void reduceSweeps(const emu_entry *unit, int toleranceMs, Measured *measured);
    static void removeUnusablePoints(ASweep *sweep, const emu_entry *unit, Measured *measured);
    int removeUnusableMeasurements();
    void findExtremes();
};
