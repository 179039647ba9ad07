#include "geo/waypoint.h"

#include "core/ageodata.h"
#include "geo/balloon.h"

void takeInNmeaRecord(AGeoData *record)
{
    const auto toDecimal = [record](float value) {
        return static_cast<float>(record->convertNmeaLatLonToDecimal(static_cast<double>(value)));
    };
    record->latitude = toDecimal(record->latitude);
    record->longitude = toDecimal(record->longitude);
    addBalloon(record);
}

void addBalloon(AGeoData *record)
{
    if (record->description.isEmpty())
        record->description = waypointBalloon(*record);
}
