#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QString>

class AGeoData;

// What a position record gets when it is taken in. A balloon is the HTML text that a KML viewer shows of a point.
// Private to geo/.

// Turns the position from the NMEA form into decimal degrees, and gives the record a balloon.
void takeInNmeaRecord(AGeoData *record);

// Describes a record that has no description by its time and its position, which is in decimal degrees.
void addBalloon(AGeoData *record);

// As toString(Qt::ISODate) writes it, in a fraction of the time where it is in UTC.
QString isoText(const QDateTime &time);

// The rows of date and time that each balloon begins with; the table stays open.
QString balloonOfTime(const QDateTime &time);
