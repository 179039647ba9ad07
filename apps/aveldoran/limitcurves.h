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

// What came of comparing a trace with a limit.
struct LimitCheck
{
    int compared = 0; // points of the trace where the limit counts; without any the trace is not checked
    QVector<LimitExcess> excesses;

    bool isKept() const { return compared > 0 && excesses.isEmpty(); }
};

// Whether levels in one unit can be converted to the other.
bool areComparable(int unit, int otherUnit);

// The excesses in ascending frequency. A limit counts within its range, where a piece of its curve governs. The units
// must be comparable. Points without a level don't count. Linear in the points, for a limit in order of frequency.
LimitCheck checkLimit(const ALimit &limit, const Trace &trace);

// Draws the limits, and over them a trace unless it is null, in that unit, to which all must be comparable. False if
// the file can't be written, with a text for the user.
bool drawLimits(const QString &title, const QList<const ALimit *> &limits, const Trace *trace, int unit,
                const QString &fileName, QString *errorText);
