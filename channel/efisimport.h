#pragma once

#include "core/afrequency.h"
#include "core/aveldoranexport.h"

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

// The lines of an EFIS export, a semicolon-separated file of frequency allocations (docs/formats.md).
// AChannelInfo::fromEfisCSV (defined in efisimport.cpp) reads a whole file by the same rules.

// One allocation, in one direction.
struct EfisEntry
{
    AFrequency begin;  // 0 until parseEfisFrequencyRange() has filled it
    AFrequency end;    // 0 until parseEfisFrequencyRange() has filled it; `begin` for a single frequency
    QString name;      // as the line has it
    int direction = 0; // 0 none, 1 uplink, 2 downlink
    int reserved = 0;  // not read or written
};

// The fields of a line: split at every semicolon, also inside quotes, then each without a quote at its begin and one at
// its end. Nothing is trimmed, so the last field keeps the line's end. An empty line has one empty field.
AVELDORAN_DATA_EXPORT QList<QByteArray> parseEfisLine(const QByteArray &line);

// Fills `begin` and `end` of an entry that has none yet from "87.5 - 108 MHz", "87.5 MHz - 108 MHz", "87.5-108" or
// "100 MHz" (both edges). A number without a unit takes the other one's, and megahertz if neither has one. What can't
// be read is 0.
AVELDORAN_DATA_EXPORT void parseEfisFrequencyRange(EfisEntry *entry, const QByteArray &text);
