#pragma once

#include "apps/aveldoran/tracefile.h"

#include <core/alimit.h>

#include <QtCore/QList>
#include <QtCore/QVector>

// Limits over traces: where a trace exceeds one, and a picture of both.

// A run of neighbouring points of a trace that exceed a limit.
struct LimitExcess
{
    AFrequency frequency; // of the worst point
    double level = 0.0;   // there, in the unit of the trace, as the limit
    double limit = 0.0;
    AFrequency begin; // of the run
    AFrequency end;
    int points = 0;
};

// Whether levels in one unit can be converted to the other.
bool areComparable(int unit, int otherUnit);

// The runs in ascending frequency. A limit counts within its range, where a piece of its curve governs; *compared is
// the number of points there. The units must be comparable. Points without a level don't count. Linear in the points,
// for a limit in order of frequency.
QVector<LimitExcess> findExcesses(const ALimit &limit, const Trace &trace, int *compared);

// Draws the limits, and over them a trace unless it is null, in that unit, to which all must be comparable. False if
// the file can't be written, with a text for the user.
bool drawLimits(const QString &title, const QList<const ALimit *> &limits, const Trace *trace, int unit,
                const QString &fileName, QString *errorText);
