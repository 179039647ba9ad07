#pragma once

#include <QtCore/QString>

class AGeoData;
class AMeasurementValue;

// The HTML text that a KML viewer shows of a point: a table. Positions are in decimal degrees. Private to geo/.

// Of a record: its time and its place. The text is complete.
QString waypointBalloon(const AGeoData &record);

// Of a measured point, whose value isn't known yet: the table stays open, for closeBalloon().
QString openBalloon(const AGeoData &record, float heading);

// Adds the rows of the value and, if it isn't null, of its frequency, and the end of the table.
void closeBalloon(QString *balloon, const AMeasurementValue &value, const QString &label, const QString &frequency);
