#pragma once

#include "apps/aveldoran/limitcurves.h"

#include <core/alimit.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

// A limit, and what came of a trace that was checked against it, as a reader or another program takes them.

QString limitName(const ALimit &limit); // on one line
QString limitUnitText(const ALimit &limit);

// One line, and one more for each piece of the curve.
QString limitAsText(const ALimit &limit);

// What a limit doesn't have is left out.
QJsonObject limitAsJson(const ALimit &limit);

// One line with the verdict, and one more for each excess.
QString checkAsText(const ALimit &limit, const LimitCheck &check, int traceUnit);

// The keys to add to those of the limit.
void addCheck(const LimitCheck &check, int traceUnit, QJsonObject *limit);
