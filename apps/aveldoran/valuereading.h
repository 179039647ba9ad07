#pragma once

#include <core/afrequency.h>

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

// Values as users write them, in options as in traces. Both "." and "," are the decimal sign.

// "88.5 MHz", or a number in `unitOfNumbers`: 0 or more. False for what is none, *frequency is then undefined.
bool readFrequency(const QByteArray &text, AFrequency::Unit unitOfNumbers, AFrequency *frequency);
bool isFrequencyUnit(const QByteArray &text); // "Hz", "kHz", "MHz" or "GHz"

// Splits "87,5 MHz" into "87.5" and "MHz". The number may be none.
void splitNumber(const QByteArray &field, QByteArray *number, QByteArray *unit);

// The id of the unit that a symbol such as "dBm", "dBµV" or "dBuV" names, -1 if it names none.
int unitId(const QByteArray &text);

// All symbols, in the order of their ids.
QStringList unitNames();
QStringList typedUnitNames(); // "dBuV", as on any keyboard
