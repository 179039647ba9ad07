#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QDateTime>
#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <QtGui/QVector3D>

// One position record of a measurement drive, with the raw vectors of its sensors. A plain value, which is passed by
// value through signals and known to Qt's metatype system from the start of the program.
//
// The sensors are fixed to the vehicle: x points ahead, y to the right, z down. A vector of zeros means that the record
// has no such sensor.
class AVELDORAN_CORE_EXPORT AGeoData
{
public:
    int source = 0;           // carried along, never read by the library
    QDateTime recordTime;     // invalid if the record has none
    float latitude = 0.0F;    // NMEA degrees and minutes (ddmm.mmmm, south and west negative) as a logger or a replay
    float longitude = 0.0F;   // delivers them, decimal degrees once a processor has taken the record in
    quint8 fix = 0;           // carried along; from a logger the fix's quality from 1 on, 1 if it didn't say
    float speed = 0.0F;       // carried along; from a logger knots, 0 if it didn't say
    float course = 0.0F;      // carried along; from a logger degrees clockwise from true north, 0 if it didn't say
    float altitude = 0.0F;    // metres
    float airPressure = 0.0F; // hectopascal; 0 if the record has none
    float accelerometer[3] = {}; // the pull of gravity in any unit: (0, 0, 1) in a level vehicle
    float magnetometer[3] = {};  // the earth's magnetic field in any unit
    float gyroscope[3] = {};     // radians per second, clockwise when seen along the axis
    QString recordName;          // what a viewer calls the point
    QString description;         // HTML

    // A latitude and longitude of 0: the record holds no position.
    bool isEmpty() const noexcept { return latitude == 0.0F && longitude == 0.0F; }

    // One coordinate from degrees and minutes, dddmm.mmmm with its sign, to decimal degrees.
    double convertNmeaLatLonToDecimal(double value) const noexcept;

    // The compass heading in degrees, from 0 to below 360, clockwise from magnetic north, also when narrowed to float.
    // With `tiltCompensated` the magnetometer is turned level by the accelerometer first. Exactly 0 without a
    // magnetometer, or if what the sensors say is no direction.
    double estimateHeading(bool tiltCompensated) const noexcept;

    // Degrees: x the pitch, from -90 (nose down) to 90, y the roll, from -180 to 180 (right side down positive), z 0.
    // All 0 without an accelerometer.
    QVector3D convertTiltToDegree() const noexcept;

    // Degrees per second about x, y and z.
    QVector3D convertGyroToDegree() const noexcept;
};

Q_DECLARE_METATYPE(AGeoData)
