#pragma once

#include <core/ameasurementvalue.h>

#include <QtCore/QDateTime>
#include <QtCore/QString>

struct emsi_unit;
struct emu_entry;

// How all commands print values, each kind in one form; docs/command-line.md, "Numbers", has them.

// A frequency without zeros at the end: "87.5 MHz".
QString shortFrequency(const AFrequency &frequency);
QString frequencyRangeText(const AFrequency &begin, const AFrequency &end); // "87.5 MHz to 108 MHz"

// A level, a gain or a difference of them, without a unit: two decimals, and six significant digits where these would
// show nothing of it, or too much.
QString decibelText(double decibels);

// The decimal prefix of a level: null in a logarithmic unit, and where the level is shown without one.
const emsi_unit *levelScale(double level, const emu_entry &unit);

// A level with its unit: "-38.70 dBm", and in a linear unit with a decimal prefix: "1.50 mV". Of an unknown unit the
// number alone.
QString levelText(double level, int unit);
QString measuredValueText(const AMeasurementValue &value); // "-38.70 dBm at 88.5 MHz"

// "1 sweep", "3409 sweeps", "2 entries".
QString countText(qint64 count, const char *noun);

// "2025-03-18T09:12:04Z", in UTC. For a program with milliseconds, for a person with none.
QString timeText(const QDateTime &time);
QString exactTimeText(const QDateTime &time);
QString timeSpanText(const QDateTime &begin, const QDateTime &end); // "... to ... (14:12)"

// "68.3 MB", in steps of a thousand.
QString sizeText(qint64 bytes);
