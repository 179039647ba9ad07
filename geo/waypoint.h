#pragma once

class AGeoData;

// What a position record gets when it is taken in. Private to geo/.

// Turns the position from the NMEA form into decimal degrees, and gives the record a balloon.
void takeInNmeaRecord(AGeoData *record);

// Describes a record that has no description by its balloon (geo/balloon.h). Its position is in decimal degrees.
void addBalloon(AGeoData *record);
