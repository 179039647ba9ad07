#pragma once

#include "geo/ageodataprocessor.h"

#include <QtCore/QBuffer>
#include <QtXml/QDomDocument>

#include <ctime>

// A processor whose protected parts a test can reach, and what goes into one.

class Processor : public AGeoDataProcessor
{
    Q_OBJECT

public:
    using AGeoDataProcessor::AGeoDataProcessor;

    using AGeoDataProcessor::addNmeaRecord;
    using AGeoDataProcessor::addSweep;
    using AGeoDataProcessor::finishNmeaProcessing;
    using AGeoDataProcessor::mdrFinished;

    using AGeoDataProcessor::m_gpxDocument;
    using AGeoDataProcessor::m_kmlData;
    using AGeoDataProcessor::m_maximum;
    using AGeoDataProcessor::m_mdrRunning;
    using AGeoDataProcessor::m_minimum;
    using AGeoDataProcessor::m_nmeaTimer;
    using AGeoDataProcessor::m_sweeps;
    using AGeoDataProcessor::m_waypoints;

    // Each once.
    QList<QDateTime> waypointTimes() const { return QMultiMap<QDateTime, AGeoData *>(m_waypoints).uniqueKeys(); }

    bool loadGpx(QByteArray content)
    {
        QBuffer buffer(&content);
        errorText.clear();
        line = column = 0;
        return loadGpxDocument(&buffer, &errorText, &line, &column);
    }
    QString errorText; // of loadGpx()
    int line = 0;
    int column = 0;
};

// Processor time since it was made: other programs may keep the machine busy.
class CpuClock
{
public:
    double seconds() const { return static_cast<double>(std::clock() - m_start) / CLOCKS_PER_SEC; }

private:
    std::clock_t m_start = std::clock();
};

inline QDateTime at(qint64 milliseconds)
{
    return QDateTime(QDate(2024, 5, 17), QTime(12, 30), Qt::UTC).addMSecs(milliseconds);
}

// In decimal degrees.
inline AGeoData position(qint64 milliseconds, float latitude = 48.5F, float longitude = 11.25F)
{
    AGeoData record;
    record.recordTime = at(milliseconds);
    record.latitude = latitude;
    record.longitude = longitude;
    record.altitude = 500.0F;
    return record;
}

// In the NMEA form.
inline AGeoData nmeaPosition(qint64 milliseconds)
{
    return position(milliseconds, 4830.0F, 1115.0F);
}

inline AFrequency megahertz(double value)
{
    AFrequency frequency;
    frequency.setValue(value, AFrequency::MHz);
    return frequency;
}

constexpr int kdBm = 0;
constexpr int kV = 5;
constexpr int kW = 10;

inline QList<AMeasurementValue> levels(std::initializer_list<double> numbers, int unit = kdBm)
{
    QList<AMeasurementValue> values;
    for (const double number : numbers)
        values.append(AMeasurementValue(number, static_cast<quint8>(unit), megahertz(100 + values.size()), 0, 0.0));
    return values;
}

// The names of an element's children, those of further elements in brackets: "name open Placemark(name Point)".
inline QString outline(const QDomElement &element)
{
    QStringList names;
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        const QString inner = outline(child);
        names.append(inner.isEmpty() ? child.tagName() : child.tagName() + '(' + inner + ')');
    }
    return names.join(' ');
}

// The text at a path of children such as "Placemark/LineString/coordinates".
inline QString textAt(QDomElement element, const QString &path)
{
    const QStringList names = path.split('/');
    for (const QString &name : names)
        element = element.firstChildElement(name);
    return element.isNull() ? QStringLiteral("(none)") : element.text();
}

inline QList<QDomElement> childrenNamed(const QDomElement &element, const QString &name)
{
    QList<QDomElement> children;
    for (QDomElement child = element.firstChildElement(name); !child.isNull(); child = child.nextSiblingElement(name))
        children.append(child);
    return children;
}

inline ASweep sweepAt(qint64 milliseconds, const QList<AMeasurementValue> &values = levels({-50.0, -40.0, -60.0}))
{
    return ASweep(values, at(milliseconds), at(milliseconds + 100));
}

inline ASweep positionedSweep(const QList<AMeasurementValue> &values, qint64 milliseconds = 0, float airPressure = 0.0F)
{
    ASweep sweep = sweepAt(milliseconds, values);
    AGeoData record = nmeaPosition(milliseconds);
    record.airPressure = airPressure;
    sweep.setGeoData(record);
    return sweep;
}

inline void add(Processor *processor, ASweep sweep)
{
    processor->addSweep(sweep);
}
