#pragma once

#include "apps/folder.h"

#include <core/amdrdocument.h>
#include <core/asimulateddevice.h>

#include <QtXml/QDomDocument>

#include <memory>

// Files of a measurement drive, for tests of the commands that work on them.

inline const QString kGpx = QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/drives/valley-road.gpx");
inline const QString kNmea = QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/drives/harbour-round.nmea");
constexpr int kGpxPoints = 427;
constexpr int kNmeaRecords = 447;

inline QByteArray contentOf(const QString &fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Place
{
    double latitude = 0.0;
    double longitude = 0.0;
};

// The points of a GPX document of which each element of that name is one.
inline QList<Place> placesOf(const QByteArray &gpx, const QString &element)
{
    QDomDocument document;
    document.setContent(gpx);
    QList<Place> places;
    const QDomNodeList points = document.elementsByTagName(element);
    for (int i = 0; i < points.size(); ++i) {
        const QDomElement point = points.at(i).toElement();
        places.append(
            {point.attribute(QStringLiteral("lat")).toDouble(), point.attribute(QStringLiteral("lon")).toDouble()});
    }
    return places;
}

inline QByteArray gpxOf(const QByteArray &points)
{
    return "<gpx version=\"1.1\"><trk><trkseg>\n" + points + "</trkseg></trk></gpx>\n";
}

inline QByteArray trackPoint(double latitude, double longitude, const QByteArray &time, double altitude = 100.0)
{
    return "<trkpt lat=\"" + QByteArray::number(latitude, 'f', 6) + "\" lon=\"" +
           QByteArray::number(longitude, 'f', 6) + "\"><ele>" + QByteArray::number(altitude) + "</ele><time>" + time +
           "</time></trkpt>\n";
}

// --- recordings ---

inline QDateTime secondOfDrive(double seconds)
{
    return QDateTime(QDate(2025, 3, 18), QTime(9, 12, 4), Qt::UTC).addMSecs(qRound64(seconds * 1000.0));
}

// A sweep of 900 ms from a second of the drive on, in the unit of that id.
inline ASweep sweepAt(double seconds, const QList<double> &levels, int unit = 0)
{
    QList<AMeasurementValue> values;
    for (const double level : levels) {
        AFrequency frequency;
        frequency.setValue(100.0 + values.size(), AFrequency::MHz);
        values.append({level, static_cast<unsigned char>(unit), frequency, 0, 0.0});
    }
    return ASweep(values, secondOfDrive(seconds), secondOfDrive(seconds + 0.9));
}

// 47° 30' north and 15° 15' east, and a few metres on with each second; with air pressure, so that it stays the
// sweep's.
inline AGeoData positionAt(double seconds)
{
    AGeoData record;
    record.recordTime = secondOfDrive(seconds);
    record.latitude = static_cast<float>(4730.0 + 0.01 * seconds);
    record.longitude = static_cast<float>(1515.0 + 0.01 * seconds);
    record.altitude = 400.0F;
    record.airPressure = static_cast<float>(960.0 + 0.1 * seconds);
    return record;
}

inline ASweep positionedSweepAt(double seconds, const QList<double> &levels, int unit = 0)
{
    ASweep sweep = sweepAt(seconds, levels, unit);
    sweep.setGeoData(positionAt(seconds));
    return sweep;
}

inline QString saveRecording(const QString &fileName, const QList<ASweep> &sweeps)
{
    AMdrDocument document;
    for (const ASweep &sweep : sweeps)
        document.addSweep(sweep);
    if (!document.save(fileName))
        qFatal("could not write %s", qPrintable(fileName));
    return fileName;
}

// --- documents ---

class Kml
{
public:
    explicit Kml(const QByteArray &content) { m_isRead = m_document.setContent(content); }

    bool isRead() const { return m_isRead; }
    QString name() const { return top().firstChildElement(QStringLiteral("name")).text(); }
    QStringList folders() const
    {
        QStringList names;
        for (QDomElement child = top().firstChildElement(kFolder); !child.isNull();
             child = child.nextSiblingElement(kFolder))
            names += child.firstChildElement(QStringLiteral("name")).text();
        return names;
    }
    QDomElement folder(const QString &name) const
    {
        QDomElement child = top().firstChildElement(kFolder);
        while (!child.isNull() && child.firstChildElement(QStringLiteral("name")).text() != name)
            child = child.nextSiblingElement(kFolder);
        return child;
    }

    // Longitude, latitude and height of each point of a folder's path.
    QStringList path(const QString &name) const
    {
        const QStringList lines = folder(name)
                                      .firstChildElement(QStringLiteral("Placemark"))
                                      .firstChildElement(QStringLiteral("LineString"))
                                      .firstChildElement(QStringLiteral("coordinates"))
                                      .text()
                                      .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QStringList points;
        for (int i = 0; i < lines.size(); i += 2) // the other is 5 mm above
            points += lines.at(i);
        return points;
    }
    QList<double> heights(const QString &name) const
    {
        QList<double> heights;
        const QStringList points = path(name);
        for (const QString &point : points)
            heights += point.section(QLatin1Char(','), 2).toDouble();
        return heights;
    }

    // Of the points with a balloon.
    QStringList texts(const QString &folderName, const QString &element) const
    {
        QStringList texts;
        const QDomElement points = folder(folderName).firstChildElement(kFolder);
        for (QDomElement point = points.firstChildElement(QStringLiteral("Placemark")); !point.isNull();
             point = point.nextSiblingElement(QStringLiteral("Placemark")))
            texts += point.firstChildElement(element).text();
        return texts;
    }

private:
    QDomElement top() const { return m_document.documentElement().firstChildElement(QStringLiteral("Document")); }

    inline static const QString kFolder = QStringLiteral("Folder");
    QDomDocument m_document;
    bool m_isRead = false;
};
