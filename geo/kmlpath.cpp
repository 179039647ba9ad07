#include "geo/kmlpath.h"

#include "core/ageodata.h"
#include "geo/ageodataprocessor.h"
#include "geo/elementmaker.h"
#include "geo/fixednumber.h"
#include "geo/isotext.h"

#include <QtCore/QStringBuilder>

#include <cmath>

namespace {

constexpr double kCurtainRiseMetres = 0.005;

KmlPointTexts::Height heightTexts(float altitude)
{
    return {altitude, fixedNumber(altitude), fixedNumber(static_cast<double>(altitude) + kCurtainRiseMetres)};
}

// A path is drawn as a curtain: at each point the line goes to its height, and up by a little.
class Curtain
{
public:
    // Piece by piece: a QString that a QStringBuilder is added to grows by what it needs alone, each time anew.
    void addPoint(const QString &longitude, const QString &latitude, const KmlPointTexts::Height &height)
    {
        for (const QString *altitude : {&height.bottom, &height.top}) {
            m_text.append(longitude);
            m_text.append(QLatin1Char(','));
            m_text.append(latitude);
            m_text.append(QLatin1Char(','));
            m_text.append(*altitude);
            m_text.append(QLatin1Char('\n'));
        }
    }
    // For a document, which keeps it.
    const QString &text()
    {
        m_text.squeeze();
        return m_text;
    }

private:
    QString m_text;
};

QDomElement appendLine(ElementMaker maker, QDomElement *placemark, const QString &altitudeMode)
{
    QDomElement line = maker.append(placemark, QStringLiteral("LineString"));
    maker.appendText(&line, QStringLiteral("extrude"), QStringLiteral("1"));
    maker.appendText(&line, QStringLiteral("tessellate"), QStringLiteral("1"));
    maker.appendText(&line, QStringLiteral("altitudeMode"), altitudeMode);
    return line;
}

// The ceiling of paths without waypoints.
void appendGreyLine(ElementMaker maker, QDomElement *folder, const KmlPath &path, const QList<AGeoData *> &points,
                    std::vector<KmlPointTexts> *texts)
{
    const KmlPointTexts::Height ceiling = heightTexts(path.elevationScale);
    Curtain curtain;
    auto text = texts->begin();
    for (const AGeoData *point : points) {
        if (point)
            curtain.addPoint(text->longitude(*point), text->latitude(*point), ceiling);
        ++text;
    }
    QDomElement placemark = maker.append(folder, QStringLiteral("Placemark"));
    maker.appendText(&placemark, QStringLiteral("name"), QStringLiteral("Maximum"));
    maker.appendText(&placemark, QStringLiteral("styleUrl"), QStringLiteral("#lineGrey"));
    QDomElement line = appendLine(maker, &placemark, path.altitudeMode);
    maker.appendText(&line, QStringLiteral("coordinates"), curtain.text());
}

void appendWaypoint(ElementMaker maker, QDomElement *folder, const KmlPath &path, const AGeoData &point,
                    KmlPointTexts *texts)
{
    QDomElement waypoint = maker.append(folder, QStringLiteral("Placemark"));
    maker.appendText(&waypoint, QStringLiteral("visibility"), QStringLiteral("0"));
    if (path.labelFlags != 0) {
        maker.appendText(&waypoint, QStringLiteral("name"),
                         path.labelFlags & AGeoDataProcessor::NameOfRecord ? point.recordName
                         : path.labelFlags & AGeoDataProcessor::NameOfTime ? texts->time(point)
                                                                           : QString());
    }
    maker.appendText(&waypoint, QStringLiteral("description"), point.description);
    maker.appendText(&waypoint, QStringLiteral("styleUrl"), QStringLiteral("#dataPoint"));
    QDomElement position = maker.append(&waypoint, QStringLiteral("Point"));
    maker.appendText(&position, QStringLiteral("coordinates"),
                     texts->longitude(point) % QLatin1Char(',') % texts->latitude(point) % QLatin1Char(',') %
                         texts->height(point).bottom);
    maker.appendText(&position, QStringLiteral("altitudeMode"), path.altitudeMode);
}

} // namespace

const QString &KmlPointTexts::longitude(const AGeoData &point)
{
    if (m_longitude.isEmpty())
        m_longitude = fixedNumber(point.longitude);
    return m_longitude;
}

const QString &KmlPointTexts::latitude(const AGeoData &point)
{
    if (m_latitude.isEmpty())
        m_latitude = fixedNumber(point.latitude);
    return m_latitude;
}

const QString &KmlPointTexts::time(const AGeoData &point)
{
    if (m_time.isEmpty())
        m_time = isoText(point.recordTime);
    return m_time;
}

const KmlPointTexts::Height &KmlPointTexts::height(const AGeoData &point)
{
    // 0 and -0 are equal and have texts of their own.
    const bool isSame =
        m_height.altitude == point.altitude && std::signbit(m_height.altitude) == std::signbit(point.altitude);
    if (m_height.bottom.isEmpty() || !isSame)
        m_height = heightTexts(point.altitude);
    return m_height;
}

QDomElement kmlPathFolder(QDomDocument *document, const KmlPath &path, const QList<AGeoData *> &points,
                          std::vector<KmlPointTexts> *texts)
{
    ElementMaker maker(document);
    QDomElement folder = maker.create(QStringLiteral("Folder"));
    maker.appendText(&folder, QStringLiteral("name"), path.name);
    maker.appendText(&folder, QStringLiteral("open"), QStringLiteral("1"));
    QDomElement placemark = maker.append(&folder, QStringLiteral("Placemark"));
    maker.appendText(&placemark, QStringLiteral("name"), QStringLiteral("Elevation Profile"));
    maker.appendText(&placemark, QStringLiteral("styleUrl"), path.styleUrl);
    QDomElement track;
    if (path.withTimeTrack) {
        track = maker.append(&placemark, QStringLiteral("gx:Track"));
        maker.appendText(&track, QStringLiteral("extrude"), QStringLiteral("1"));
        maker.appendText(&track, QStringLiteral("altitudeMode"), path.altitudeMode);
    }
    QDomElement line = appendLine(maker, &placemark, path.altitudeMode);

    QDomElement waypoints = maker.create(QStringLiteral("Folder"));
    maker.appendText(&waypoints, QStringLiteral("name"), path.waypointsName);
    maker.appendText(&waypoints, QStringLiteral("visibility"), QStringLiteral("0"));

    bool hasWaypoints = false;
    Curtain curtain;
    auto text = texts->begin();
    for (const AGeoData *point : points) {
        KmlPointTexts &pointTexts = *text++;
        if (!point)
            continue;
        const QString &longitude = pointTexts.longitude(*point);
        const QString &latitude = pointTexts.latitude(*point);
        const KmlPointTexts::Height &height = pointTexts.height(*point);
        curtain.addPoint(longitude, latitude, height);
        if (path.withTimeTrack) {
            maker.appendText(&track, QStringLiteral("when"), pointTexts.time(*point));
            maker.appendText(&track, QStringLiteral("gx:coord"),
                             longitude % QLatin1Char(' ') % latitude % QLatin1Char(' ') % height.bottom);
        }
        if (!point->description.isEmpty()) {
            hasWaypoints = true;
            appendWaypoint(maker, &waypoints, path, *point, &pointTexts);
        }
    }
    if (hasWaypoints)
        folder.appendChild(waypoints);
    else
        appendGreyLine(maker, &folder, path, points, texts);
    maker.appendText(&line, QStringLiteral("coordinates"), curtain.text());
    return folder;
}
