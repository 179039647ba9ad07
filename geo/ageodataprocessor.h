#pragma once

#include "core/ageodata.h"
#include "core/ameasurementvalue.h"
#include "core/asweep.h"
#include "core/aveldoranexport.h"

#include <QtCore/QDateTime>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtXml/QDomDocument>

#include <vector>

class AGpsLoggerDevice;
class AMdrDocument;
class QIODevice;
struct emu_entry;

// Gathers the positions of a measurement drive, pairs them with the sweeps of a recording and builds a KML document of
// both. A drive takes these steps, of which docs/geo.md has an example:
//
// 1. positions come in: loadStoredNmeaContent() or loadGpxDocument(), or none where the recording has its own;
// 2. processMdrData() replays the recording from the event loop; mdrProcessingFinished() tells its end;
// 3. assignWaypoints() gives sweeps without a good position the waypoint of their time;
// 4. processMeasurementData() reduces each sweep that has a position to a few figures;
// 5. toKml() makes the document, which writeKml() (geo/kmlwriter.h) stores fast.
//
// Nothing is ever cleared: sources that are used in a row add up, and a fresh drive needs a fresh processor. All of it
// runs on the thread of the processor.
class AVELDORAN_DATA_EXPORT AGeoDataProcessor : public QObject
{
    Q_OBJECT

public:
    // A positioned sweep, reduced to what a KML path shows of it.
    struct KmlRelevantData
    {
        AGeoData geoData;          // with a description whose table is still open (see completeWaypoint())
        float heading = 0.0F;      // degrees; 0 if the record has none
        AMeasurementValue minimum; // the lowest level, in the display unit
        AMeasurementValue maximum; // the highest level, in the display unit
        AMeasurementValue average; // the mean in the linear unit, in the display unit; at the first value's frequency
    };

    // What placemarks are called. They have a name if any bit is set, be it one without a meaning.
    enum LabelFlag
    {
        NameOfRecord = 1, // goes before the time
        NameOfTime = 2,
        ValueInName = 1 << 10, // adds value and frequency to the record's name
    };

    // What of the sensors has paths. Deliberately the tilt comes with the gyroscope and with the compass alike.
    enum SensorFlag : unsigned int
    {
        Gyroscope = 1,
        Compass = 2,
        Pressure = 4,
    };

    explicit AGeoDataProcessor(QObject *parent = nullptr); // without positions and sweeps
    ~AGeoDataProcessor() override;                         // releases the waypoints

    // Waypoint intake

    // Reads records in a nested event loop until none has come for `timeout` milliseconds. Then it emits
    // nmeaProcessingFinished(), and deletes every logger device among the processor's children. A `fileNumber` above 0
    // selects a file that the device has stored. False, at once and without that signal, if there is no device or its
    // init() fails; it is deleted then if it is a child of the processor. The loop polls, which takes one core
    // meanwhile.
    //
    // After a failed init() the next record from elsewhere, as from a replay, starts the `timeout` again, and its end
    // emits nmeaProcessingFinished().
    //
    // Sentences without a fix are no records: `timeout` has to be longer than a receiver goes without one, and than the
    // time between its fixes. Of a file a stretch without records that takes less than a second to read, some 100 MB,
    // ends nothing, whatever the timeout; one that takes longer does so if it takes longer than the timeout, too. Of a
    // receiver the last record is stored once nothing has followed for half of the timeout, but 0.2 seconds at most.
    //
    // The device stays connected for its whole life: one that isn't a child of the processor and is loaded from twice
    // delivers each record twice.
    bool loadStoredNmeaContent(AGpsLoggerDevice *device, int fileNumber, int timeout);

    // The same for a file on disk.
    bool loadStoredNmeaContent(const QString &fileName, int timeout);

    // Whether there is a waypoint; positions that sweeps have of their own don't count.
    bool hasGeoData() const { return !m_waypoints.isEmpty(); }

    // The waypoint of a time span, or null. It lies within the span, widened by `tolerance` milliseconds at both ends;
    // of several, a search in three phases chooses. Of records with one time, it is the one that was stored last. The
    // record is the processor's, and lives as long as that.
    //
    // The first call after a change of the waypoints takes a pass over them, others the logarithm of their number.
    AGeoData *findWaypoint(const QDateTime &start, const QDateTime &stop, int tolerance) const;

    // GPX (docs/formats.md lists the elements that are read)

    // Reads a document and stores the points of its master track. False if it is malformed: then the arguments, each
    // of which may be null, tell message, line and column as QDomDocument::setContent() does, and points before the
    // damage are stored. False with the arguments untouched if it has no track to use.
    bool loadGpxDocument(QIODevice *device, QString *errorMessage, int *errorLine, int *errorColumn);

    // Stores the points of the master track of the document that was read last. False if there is no such track. The
    // document stays in memory until the next one is read: 1,000,000 points take 3 GB.
    bool parseGpxTrackData();

    // The track that is read: none whose attribute "name" marks it as a data track; with times in Qt's text form the
    // one that begins latest, otherwise the last. Null if there is none.
    QDomElement getMasterTrackElement();

    // The text at the end of a path such as "trkpt/time", whose components are looked for at any depth below the
    // element before, the first match of each. Empty if there is none.
    QString getDataOfElement(QDomElement element, QString path);

    // Recordings

    // Starts the replay of a recording, which has to outlive it, with the peak suppression that the settings ask for.
    // False if there is none, or none with sweeps. The replay object stays a child of the processor.
    bool processMdrData(AMdrDocument *document);

    // Gives each sweep without a record with air pressure the waypoint of its time span (findWaypoint()), if there is
    // one: a sweep's own record gives way only to one with air pressure. Returns how many sweeps have a position.
    int assignWaypoints(int tolerance);

    // Reduces each sweep that has a position and values to an entry for the paths, in `unit`, or, if that is null, in
    // the unit of the first sweep's first value. Levels in a logarithmic unit are averaged in its linear counterpart.
    // If the first sweep has no values, nothing happens, whatever the others have. A sweep without any level that is a
    // number has extremes that are empty values, and as such they count for the range of the recording.
    //
    // A second call appends the same sweeps again. It compares their levels, as they were measured, with the extremes
    // of the first call, which are in the display unit already.
    void processMeasurementData(const emu_entry *unit);

    // KML

    // A new document, never null, which the caller owns: the waypoints as a path (withGpsTrack), the maximum, average
    // and minimum values along the drive as curtains, and paths of the sensors.
    //
    // `elevationScale` is the height in metres that the highest value reaches; at 0 or below, paths keep the altitude
    // of their records. `withBalloons` gives each measured point a placemark. `withTimeTrack` adds tracks with time
    // stamps. `labelFlags` are LabelFlags. `absoluteGpsAltitude` puts the path of the waypoints at their altitude, not
    // on the ground. `sensorFlags` are SensorFlags.
    QDomDocument *toKml(QString documentName, float elevationScale, bool withBalloons, bool withGpsTrack,
                        bool withTimeTrack, int labelFlags, bool absoluteGpsAltitude, unsigned int sensorFlags);

    // A new "Style" for lines of a colour RRGGBBAA (hexadecimal), with their curtain half as opaque. A width below 0
    // is none. Null without a document.
    QDomElement createStyleElement(QDomDocument *document, QString id, QString color, int width) const;

    // A copy of the record, which the caller owns, as a point of a measured path: at the height of the value within the
    // range of the whole recording, named with the label, and with the value in its description, whose table is closed.
    // Without a balloon the description is empty and the name has no label.
    AGeoData *completeWaypoint(const AGeoData &record, const AMeasurementValue &value, const QString &label,
                               bool withFrequency, float elevationScale, bool withoutBalloon, bool valueInName) const;

    // The same as a point of a sensor's path, without a description.
    AGeoData *completeWaypoint(const AGeoData &record, float value, float elevationScale, float minimum,
                               float maximum) const;

    // A new "Folder" with a path along the points, which stay the caller's, and a placemark for each that has a
    // description. A null pointer among them is passed over. Null without a document.
    QDomElement addKmlPath(QDomDocument *document, QString name, QList<AGeoData *> points, QString styleUrl,
                           QString altitudeMode, bool withTimeTrack, int labelFlags, float elevationScale) const;

Q_SIGNALS:
    void nmeaRecordProcessed();                        // a record has been stored
    void sweepLoaded(const ASweep &sweep);             // a sweep of the replay has come in
    void nmeaProcessingFinished();                     // NMEA intake has ended
    void mdrProcessingFinished(bool status);           // the replay has ended; false if it had to stop early
    void assigningSweepWaypoint(int sweep, int count); // progress of assignWaypoints()

protected Q_SLOTS:
    // Stores a record whose position is in the NMEA form, as decimal degrees.
    void addNmeaRecord(AGeoData record);
    void finishNmeaProcessing(); // ends the intake, as the timer does
    // Takes a sweep in; its position is converted in place, so that the sender sees that too.
    void addSweep(ASweep &sweep);
    void mdrFinished(bool status); // ends the replay, with mdrProcessingFinished()

protected:
    QDomDocument m_gpxDocument;              // the one that was read last
    QMap<QDateTime, AGeoData *> m_waypoints; // by time, several of one time with the latest first; owned
    QList<ASweep> m_sweeps;                  // of all replays, with the positions that they were given
    QList<KmlRelevantData> m_kmlData;        // of processMeasurementData()
    QTimer m_nmeaTimer;                      // runs while the intake waits for the next record
    AMeasurementValue m_minimum;             // the lowest level of m_kmlData, in the display unit
    AMeasurementValue m_maximum;             // the highest level of m_kmlData, in the display unit
    bool m_mdrRunning = false;               // a replay runs; for derived classes, this one doesn't read it

private:
    Q_DISABLE_COPY(AGeoDataProcessor)

    struct WaypointKey
    {
        qint64 time; // milliseconds since the epoch
        AGeoData *latest;
    };
    void storeWaypoint(const AGeoData &record);
    const std::vector<WaypointKey> &waypointKeys() const;

    mutable std::vector<WaypointKey> m_keys;              // of m_keyedWaypoints, in its order
    mutable qint64 m_ascendingFrom = 0;                   // from this index on the times of m_keys ascend
    mutable QMap<QDateTime, AGeoData *> m_keyedWaypoints; // shares its data with m_waypoints until those change
};
