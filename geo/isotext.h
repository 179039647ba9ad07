#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QString>

// As toString(Qt::ISODate) writes them, but much faster: dates in years of four digits, valid times of day, and both
// together where they are in UTC. Others go to Qt. Private to geo/.

QString isoText(const QDate &date);
QString isoText(const QTime &time);
QString isoText(const QDateTime &time);
