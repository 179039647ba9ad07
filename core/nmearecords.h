#pragma once

#include "core/ageodata.h"
#include "core/nmea.h"

// Private to core/. Puts NMEA sentences together to position records: those of one UTC time are one record.

// The day on which times of day lie. It runs on at midnight; a date in the input sets it.
class NmeaCalendar
{
public:
    enum Certainty
    {
        Unknown,
        Assumed,    // the current date
        WithoutFix, // stated by a receiver that had no fix, so it counts until one that had states another
        Stated,
    };

    Certainty certainty() const noexcept { return m_certainty; }

    // Sets the day, unless a more certain one is known. False then.
    bool set(qint64 julianDay, int msOfDay, Certainty certainty) noexcept;

    // The day of a time that follows the last one: the next day if the time goes back by more than an hour, the day
    // before for a straggler from before midnight. Without any date the current one.
    qint64 advance(int msOfDay);

    // The day nearest to the last time that was set.
    qint64 nearest(int msOfDay) const noexcept;

private:
    Certainty m_certainty = Unknown;
    qint64 m_julianDay = 0;
    int m_msOfDay = 0;
};

// Looks ahead for the first date of a file, and finds the day on which the file begins from it.
class NmeaDateSearch
{
public:
    // False once the date is found.
    bool add(const Nmea::Sentence &sentence);

    // What was found, for the first time in the file; unchanged if there is no date.
    void setBegin(NmeaCalendar *calendar) const;

private:
    NmeaCalendar m_days; // from day 0 at the first time
    NmeaCalendar::Certainty m_certainty = NmeaCalendar::Unknown;
    int m_firstTime = -1;
    qint64 m_firstDay = 0;
};

class NmeaRecords
{
public:
    explicit NmeaRecords(const NmeaCalendar &calendar = {});

    // Takes a sentence. True if the one before it was the last of a record, which then is in `record`.
    bool add(const Nmea::Sentence &sentence, AGeoData *record);

    // The record that is being put together, if there is one that was not given out. Further sentences of its time
    // still belong to it; it is given out again, whole, if any of them has a position. Sensors that follow belong to
    // the next time.
    bool take(AGeoData *record);

    // Whether the pending record is of the first time of all and has the current date, since none was stated: the next
    // sentences may date it.
    bool awaitsDate() const noexcept;

private:
    struct Sensors
    {
        enum Flag : unsigned int
        {
            Heading = 1,
            Tilt = 2,
            Accelerometer = 4,
            Magnetometer = 8,
            Other = 16,
        };

        unsigned int present = 0; // Flag bits
        double heading = 0.0;     // degrees
        double pitch = 0.0;
        double roll = 0.0;
        double airPressure = 0.0; // hectopascal
        float accelerometer[3] = {};
        float magnetometer[3] = {};
        float gyroscope[3] = {}; // radians per second
    };

    struct Fix
    {
        int msOfDay = -1;
        qint64 julianDay = 0;
        bool isDated = false;   // by a sentence of its own
        bool isVoid = false;    // says a sentence
        bool isPending = false; // has a position that was not given out
        bool isTaken = false;
        float latitude = 0.0F;
        float longitude = 0.0F;
        double altitude = 0.0;
        double speed = 0.0;
        double course = 0.0;
        int quality = 0;
    };

    bool statesDay(const Nmea::Sentence &sentence, qint64 *julianDay) const;
    bool isOfAnotherDay(const Nmea::Sentence &sentence) const;
    void dateBack(const Nmea::Sentence &sentence, int msOfDay);
    void begin(int msOfDay);
    void setPosition(const Nmea::Sentence &sentence, int firstField);
    void addRmc(const Nmea::Sentence &sentence);
    void addGga(const Nmea::Sentence &sentence);
    void addGll(const Nmea::Sentence &sentence);
    void addZda(const Nmea::Sentence &sentence);
    void addSensors(const Nmea::Sentence &sentence);
    static void addTransducer(const Nmea::Transducer &transducer, Sensors *sensors);
    static void setSensors(const Sensors &sensors, AGeoData *record);

    NmeaCalendar m_calendar;
    Fix m_fix;
    bool m_isFirstTime = false;
    Sensors m_sensors;     // of the fix
    Sensors m_nextSensors; // read before the first fix, or after it was taken
};
