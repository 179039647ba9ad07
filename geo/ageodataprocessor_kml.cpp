#include "geo/ageodataprocessor.h"

#include "core/asettings.h"
#include "geo/elementmaker.h"
#include "geo/kmlpath.h"

#include <QtCore/QVariant>
#include <QtGui/QVector3D>

#include <algorithm>
#include <iterator>
#include <memory>
#include <vector>

namespace {

constexpr int kValueInName = 1 << 10; // of the label flags

struct LineStyle
{
    const char *id;
    const char *color; // RRGGBBAA
};

constexpr LineStyle kLineStyles[] = {
    {"lineGreen", "00ff00ff"},  {"lineRed", "ff0000ff"},  {"lineBlue", "0000ffff"},
    {"lineYellow", "ffff00ff"}, {"linePink", "ffffaaff"}, {"lineGrey", "aaaaaaff"},
};

// Deliberately tilt comes with the compass and with the gyroscope alike.
enum SensorFlag : unsigned int
{
    Gyroscope = 1,
    Compass = 2,
    Pressure = 4,
};

struct SensorPath
{
    const char *name;
    const char *style;
    unsigned int flags; // any of which asks for it
    float (*value)(const AGeoData &record);
};

const SensorPath kSensorPaths[] = {
    {"Compass Heading", "#linePink", Compass,
     [](const AGeoData &record) { return static_cast<float>(record.estimateHeading(true)); }},
    {"Tilt X-Axis (Pitch)", "#lineRed", Compass | Gyroscope,
     [](const AGeoData &record) { return record.convertTiltToDegree().x(); }},
    {"Tilt Y-Axis (Roll)", "#lineBlue", Compass | Gyroscope,
     [](const AGeoData &record) { return record.convertTiltToDegree().y(); }},
    {"Gyro X-Axis", "#lineRed", Gyroscope, [](const AGeoData &record) { return record.convertGyroToDegree().x(); }},
    {"Gyro Y-Axis", "#lineBlue", Gyroscope, [](const AGeoData &record) { return record.convertGyroToDegree().y(); }},
    {"Gyro Z-Axis", "#lineYellow", Gyroscope, [](const AGeoData &record) { return record.convertGyroToDegree().z(); }},
    {"Air Pressure", "#lineBlue", Pressure, [](const AGeoData &record) { return record.airPressure; }},
};

// The points of one path, released with it.
struct Points
{
    QList<AGeoData *> list;

    Points() = default;
    ~Points() { qDeleteAll(list); }

private:
    Q_DISABLE_COPY(Points)
};

// The setting "Kml/IconHost" is a host, or an address up to the path.
QString iconAddress()
{
    QString host = ASettings::value(QStringLiteral("Kml/IconHost")).toString();
    if (host.isEmpty())
        host = QStringLiteral("maps.google.com");
    if (!host.contains(QLatin1String("://")))
        host.prepend(QLatin1String("http://"));
    while (host.endsWith(QLatin1Char('/')))
        host.chop(1);
    return host + QLatin1String("/mapfiles/kml/pal3/icon61.png");
}

QDomElement dataPointStyle(ElementMaker make)
{
    QDomElement style = make.make(QStringLiteral("Style"));
    style.setAttribute(QStringLiteral("id"), QStringLiteral("dataPoint"));
    QDomElement iconStyle = make.append(&style, QStringLiteral("IconStyle"));
    QDomElement icon = make.append(&iconStyle, QStringLiteral("Icon"));
    make.appendText(&icon, QStringLiteral("href"), iconAddress());
    return style;
}

// The points of this folder weren't measured.
void renameWaypoints(const QDomElement &folder)
{
    for (QDomElement child = folder.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        QDomNode text = child.firstChildElement(QStringLiteral("name")).firstChild();
        if (text.nodeValue().startsWith(QLatin1String("Measurement")))
            text.setNodeValue(text.nodeValue().replace(QLatin1String("Measurement "), QLatin1String("GPS ")));
    }
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
QDomDocument *AGeoDataProcessor::toKml(QString documentName, float elevationScale, bool withBalloons, bool withGpsTrack,
                                       bool withTimeTrack, int labelFlags, bool absoluteGpsAltitude,
                                       unsigned int sensorFlags)
{
    auto document = std::make_unique<QDomDocument>();
    QDomDocument *const kml = document.get();
    kml->setContent(QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<kml xmlns=\"http://www.opengis.net/kml/2.2\" "
                                   "xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
                                   "<Document>\n</Document>\n</kml>"));
    QDomElement top = kml->documentElement().firstChildElement();
    ElementMaker make(kml);
    make.appendText(&top, QStringLiteral("name"), documentName);
    make.appendText(&top, QStringLiteral("open"), QStringLiteral("1"));
    for (const LineStyle &style : kLineStyles)
        top.appendChild(createStyleElement(kml, QLatin1String(style.id), QLatin1String(style.color), -1));
    top.appendChild(dataPointStyle(make));

    if (withGpsTrack) {
        const QDomElement folder =
            addKmlPath(kml, QStringLiteral("Original GPS Data"), m_waypoints.values(), QStringLiteral("#lineGreen"),
                       absoluteGpsAltitude ? QStringLiteral("absolute") : QStringLiteral("clampToGround"),
                       withTimeTrack, labelFlags, elevationScale);
        renameWaypoints(folder);
        top.appendChild(folder);
    }

    const QString aboveGround = QStringLiteral("relativeToGround");
    const bool valueInName = labelFlags & kValueInName;
    std::vector<KmlPointTexts> texts(static_cast<std::size_t>(m_kmlData.size())); // of all paths along the entries
    const auto addMeasured = [&](const char *label, const char *style, AMeasurementValue KmlRelevantData::*value,
                                 bool withFrequency) {
        Points points;
        points.list.reserve(m_kmlData.size());
        for (const KmlRelevantData &entry : qAsConst(m_kmlData)) {
            points.list.append(completeWaypoint(entry.geoData, entry.*value, QLatin1String(label), withFrequency,
                                                elevationScale, !withBalloons, valueInName));
        }
        const KmlPath path{QLatin1String(label) + QLatin1String(" Values"),
                           QLatin1String(style),
                           aboveGround,
                           withTimeTrack,
                           labelFlags,
                           elevationScale};
        top.appendChild(kmlPathFolder(kml, path, points.list, &texts));
    };
    addMeasured("Maximum", "#lineRed", &KmlRelevantData::maximum, true);
    addMeasured("Average", "#lineYellow", &KmlRelevantData::average, false);
    addMeasured("Minimum", "#lineBlue", &KmlRelevantData::minimum, true);

    if (m_kmlData.isEmpty())
        return document.release();
    for (const SensorPath &sensor : kSensorPaths) {
        if (!(sensorFlags & sensor.flags))
            continue;
        std::vector<float> values;
        values.reserve(static_cast<std::size_t>(m_kmlData.size()));
        std::transform(m_kmlData.cbegin(), m_kmlData.cend(), std::back_inserter(values),
                       [&sensor](const KmlRelevantData &entry) { return sensor.value(entry.geoData); });
        float lowest = values.front();
        float highest = values.front();
        for (const float value : values) {
            lowest = value < lowest ? value : lowest; // a first value that is NaN stays
            highest = value > highest ? value : highest;
        }
        Points points;
        points.list.reserve(m_kmlData.size());
        for (int i = 0; i < m_kmlData.size(); ++i) {
            points.list.append(completeWaypoint(m_kmlData.at(i).geoData, values[static_cast<std::size_t>(i)],
                                                elevationScale, lowest, highest));
        }
        const KmlPath path{
            QLatin1String(sensor.name), QLatin1String(sensor.style), aboveGround, false, 0, elevationScale};
        top.appendChild(kmlPathFolder(kml, path, points.list, &texts));
    }
    return document.release();
}
