#pragma once

#include "core/aveldoranexport.h"

#include <QtCore/QDateTime>
#include <QtCore/QMetaType>
#include <QtCore/QString>

// One position record of a measurement drive, with the raw vectors of its sensors. A plain value, which is passed by
// value through signals.
class AVELDORAN_CORE_EXPORT AGeoData
{
public:
    int source = 0; // copied only
    QDateTime recordTime;
    float latitude = 0.0F;  // NMEA degrees and minutes (ddmm.mmmm, south and west negative) as a logger or a replay
    float longitude = 0.0F; // delivers them, decimal degrees once a processor has taken the record in
    quint8 fix = 0;         // copied only
    float speed = 0.0F;
    float course = 0.0F;
    float altitude = 0.0F;    // metres
    float airPressure = 0.0F; // hectopascal; 0 if the record has none
    float accelerometer[3] = {};
    float magnetometer[3] = {};
    float gyroscope[3] = {};
    QString recordName;
    QString description; // HTML

    // A latitude and longitude of 0: the record holds no position.
    bool isEmpty() const noexcept { return latitude == 0.0F && longitude == 0.0F; }
};

Q_DECLARE_METATYPE(AGeoData)
