#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtXml/QDomDocument>

#include <vector>

class AGeoData;

// A path along points, as a KML folder. Private to geo/.

// The texts of one point, made when they are asked for. Paths along the same points share them.
class KmlPointTexts
{
public:
    struct Height
    {
        float altitude = 0.0F; // what the texts are of
        QString bottom;
        QString top;
    };

    // Of the point's position and time, which are the same at each call.
    const QString &longitude(const AGeoData &point);
    const QString &latitude(const AGeoData &point);
    const QString &time(const AGeoData &point);
    // Of its altitude, which each path may have its own of.
    const Height &height(const AGeoData &point);

private:
    QString m_longitude;
    QString m_latitude;
    QString m_time;
    Height m_height;
};

// How a path is shown, as AGeoDataProcessor::addKmlPath() takes it.
struct KmlPath
{
    QString name;
    QString styleUrl;
    QString altitudeMode;
    bool withTimeTrack = false;
    int labelFlags = 0;
    float elevationScale = 0.0F;
    QString waypointsName = QStringLiteral("Measurement Waypoints"); // of the folder of placemarks
};

// A new "Folder". There are as many texts as points; an entry that is null is passed over.
QDomElement kmlPathFolder(QDomDocument *document, const KmlPath &path, const QList<AGeoData *> &points,
                          std::vector<KmlPointTexts> *texts);
