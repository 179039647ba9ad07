#include "geo/waypoint.h"

#include "core/ageodata.h"

#include <QtCore/QStringBuilder>

namespace {

QString number(float value)
{
    constexpr int kDigits = 6;
    return QString::number(static_cast<double>(value), 'g', kDigits);
}

} // namespace

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
    if (!record->description.isEmpty())
        return;
    record->description = balloonOfTime(record->recordTime) % QLatin1String("<tr><td>Latitude:</td><td>") %
                          number(record->latitude) % QLatin1String("</td></tr>\n<tr><td>Longitude:</td><td>") %
                          number(record->longitude) % QLatin1String("</td></tr>\n<tr><td>Altitude:</td><td>") %
                          number(record->altitude) % QLatin1String(" m</td></tr>\n</table>");
}

QString balloonOfTime(const QDateTime &time)
{
    return QLatin1String("<table>\n<tr><td>Date:</td><td>") % time.date().toString(Qt::ISODate) %
           QLatin1String("</td></tr>\n<tr><td>Time:</td><td>") % time.time().toString(Qt::ISODate) %
           QLatin1String("</td></tr>\n");
}
