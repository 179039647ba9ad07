#pragma once

#include <core/amdrdocument.h>
#include <core/asimulateddevice.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtXml/QDomDocument>

#include <memory>

// Files of a measurement drive, for tests of the commands that work on them.

inline const QString kGpx = QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/drives/valley-road.gpx");
inline const QString kNmea = QStringLiteral(AVELDORAN_EXAMPLES_DIR "/data/drives/harbour-round.nmea");
constexpr int kGpxPoints = 427;
constexpr int kNmeaRecords = 447;

class Folder
{
public:
    QString path(const QString &name) const { return m_directory.filePath(name); }
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("could not write %s", qPrintable(file.fileName()));
        return file.fileName();
    }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }
    QStringList names() const { return QDir(m_directory.path()).entryList(QDir::Files); }

private:
    QTemporaryDir m_directory;
};

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
