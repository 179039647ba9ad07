#pragma once

#include <core/ameasurementvalue.h>

#include <QtCore/QList>
#include <QtCore/QString>

class QIODevice;

// One measured trace, as read from a CSV file in the form that docs/formats.md describes.
struct Trace
{
    QList<AMeasurementValue> values; // at least one, in ascending frequency, all in one unit
    int unit = 0;                    // its id
};

constexpr int kMaxTracePoints = 2000000; // about 150 MB
constexpr int kMaxTraceLineBytes = 4096;

// False for what can't be read or is no trace, with a text for the user that names the file, and the line where there
// is one; *trace is then undefined.
bool readTraceFile(const QString &fileName, Trace *trace, QString *errorText);

// The same from an open device. The text then begins with the line's number, "3: expected ...".
bool readTrace(QIODevice *device, Trace *trace, QString *errorText);
