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

const QLatin1String kAboveGround("relativeToGround");

struct LineStyle
{
    const char *id;
    const char *color; // RRGGBBAA
};

constexpr LineStyle kLineStyles[] = {
    {"lineGreen", "00ff00ff"},  {"lineRed", "ff0000ff"},  {"lineBlue", "0000ffff"},
    {"lineYellow", "ffff00ff"}, {"linePink", "ffffaaff"}, {"lineGrey", "aaaaaaff"},
};

struct SensorPath
{
    const char *name;
    const char *style;
    unsigned int flags; // any of which asks for it
    float (*value)(const AGeoData &record);
};

const SensorPath kSensorPaths[] = {
    {"Compass Heading", "#linePink", AGeoDataProcessor::Compass,
     [](const AGeoData &record) { return static_cast<float>(record.estimateHeading(true)); }},
    {"Tilt X-Axis (Pitch)", "#lineRed", AGeoDataProcessor::Compass | AGeoDataProcessor::Gyroscope,
     [](const AGeoData &record) { return record.convertTiltToDegree().x(); }},
    {"Tilt Y-Axis (Roll)", "#lineBlue", AGeoDataProcessor::Compass | AGeoDataProcessor::Gyroscope,
     [](const AGeoData &record) { return record.convertTiltToDegree().y(); }},
    {"Gyro X-Axis", "#lineRed", AGeoDataProcessor::Gyroscope,
     [](const AGeoData &record) { return record.convertGyroToDegree().x(); }},
    {"Gyro Y-Axis", "#lineBlue", AGeoDataProcessor::Gyroscope,
     [](const AGeoData &record) { return record.convertGyroToDegree().y(); }},
    {"Gyro Z-Axis", "#lineYellow", AGeoDataProcessor::Gyroscope,
     [](const AGeoData &record) { return record.convertGyroToDegree().z(); }},
    {"Air Pressure", "#lineBlue", AGeoDataProcessor::Pressure,
     [](const AGeoData &record) { return record.airPressure; }},
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

QDomElement dataPointStyle(ElementMaker maker)
{
    QDomElement style = maker.create(QStringLiteral("Style"));
    style.setAttribute(QStringLiteral("id"), QStringLiteral("dataPoint"));
    QDomElement iconStyle = maker.append(&style, QStringLiteral("IconStyle"));
    QDomElement icon = maker.append(&iconStyle, QStringLiteral("Icon"));
    maker.appendText(&icon, QStringLiteral("href"), iconAddress());
    return style;
}

// What every document begins with before its styles. Returns the element that the rest goes into.
QDomElement beginDocument(QDomDocument *kml, const QString &name)
{
    kml->setContent(QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "<kml xmlns=\"http://www.opengis.net/kml/2.2\" "
                                   "xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
                                   "<Document>\n</Document>\n</kml>"));
    QDomElement top = kml->documentElement().firstChildElement();
    ElementMaker maker(kml);
    maker.appendText(&top, QStringLiteral("name"), name);
    maker.appendText(&top, QStringLiteral("open"), QStringLiteral("1"));
    return top;
}

// The paths along the measured points, which share the texts of their places and times.
class MeasuredPaths
{
public:
    using Entries = QList<AGeoDataProcessor::KmlRelevantData>;

    MeasuredPaths(QDomDocument *kml, const AGeoDataProcessor *processor, const Entries &entries)
        : m_kml(kml)
        , m_processor(processor)
        , m_entries(entries)
        , m_texts(static_cast<std::size_t>(entries.size()))
    {}

    // `pointOf` makes a new point of the entry of a number.
    template<typename PointOf>
    QDomElement folder(const KmlPath &path, PointOf pointOf)
    {
        Points points;
        points.list.reserve(m_entries.size());
        for (int i = 0; i < m_entries.size(); ++i)
            points.list.append(pointOf(i));
        return kmlPathFolder(m_kml, path, points.list, &m_texts);
    }

    // Each sensor fills the whole height, from its own lowest value to its own highest. There is an entry.
    QDomElement sensorFolder(const SensorPath &sensor, float elevationScale)
    {
        std::vector<float> values;
        values.reserve(static_cast<std::size_t>(m_entries.size()));
        std::transform(m_entries.cbegin(), m_entries.cend(), std::back_inserter(values),
                       [&sensor](const Entries::value_type &entry) { return sensor.value(entry.geoData); });
        float lowest = values.front();
        float highest = values.front();
        for (const float value : values) {
            lowest = value < lowest ? value : lowest; // a first value that is NaN stays
            highest = value > highest ? value : highest;
        }
        KmlPath path;
        path.name = QLatin1String(sensor.name);
        path.styleUrl = QLatin1String(sensor.style);
        path.altitudeMode = kAboveGround;
        path.elevationScale = elevationScale;
        return folder(path, [&](int i) {
            return m_processor->completeWaypoint(m_entries.at(i).geoData, values[static_cast<std::size_t>(i)],
                                                 elevationScale, lowest, highest);
        });
    }

private:
    QDomDocument *m_kml;
    const AGeoDataProcessor *m_processor;
    const Entries &m_entries;
    std::vector<KmlPointTexts> m_texts;
};

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
QDomDocument *AGeoDataProcessor::toKml(QString documentName, float elevationScale, bool withBalloons, bool withGpsTrack,
                                       bool withTimeTrack, int labelFlags, bool absoluteGpsAltitude,
                                       unsigned int sensorFlags)
{
    auto document = std::make_unique<QDomDocument>();
    QDomDocument *const kml = document.get();
    QDomElement top = beginDocument(kml, documentName);
    for (const LineStyle &style : kLineStyles)
        top.appendChild(createStyleElement(kml, QLatin1String(style.id), QLatin1String(style.color), -1));
    top.appendChild(dataPointStyle(ElementMaker(kml)));

    KmlPath path;
    path.withTimeTrack = withTimeTrack;
    path.labelFlags = labelFlags;
    path.elevationScale = elevationScale;

    if (withGpsTrack) {
        KmlPath track = path;
        track.name = QStringLiteral("Original GPS Data");
        track.styleUrl = QStringLiteral("#lineGreen");
        track.altitudeMode = absoluteGpsAltitude ? QStringLiteral("absolute") : QStringLiteral("clampToGround");
        track.waypointsName = QStringLiteral("GPS Waypoints");
        std::vector<KmlPointTexts> texts(static_cast<std::size_t>(m_waypoints.size()));
        top.appendChild(kmlPathFolder(kml, track, m_waypoints.values(), &texts));
    }

    path.altitudeMode = kAboveGround;
    const bool valueInName = labelFlags & ValueInName;
    MeasuredPaths paths(kml, this, m_kmlData);
    const auto addLevels = [&](const char *label, const char *style, AMeasurementValue KmlRelevantData::*value,
                               bool withFrequency) {
        path.name = QLatin1String(label) + QLatin1String(" Values");
        path.styleUrl = QLatin1String(style);
        top.appendChild(paths.folder(path, [&](int i) {
            const KmlRelevantData &entry = m_kmlData.at(i);
            return completeWaypoint(entry.geoData, entry.*value, QLatin1String(label), withFrequency, elevationScale,
                                    !withBalloons, valueInName);
        }));
    };
    addLevels("Maximum", "#lineRed", &KmlRelevantData::maximum, true);
    addLevels("Average", "#lineYellow", &KmlRelevantData::average, false);
    addLevels("Minimum", "#lineBlue", &KmlRelevantData::minimum, true);

    for (const SensorPath &sensor : kSensorPaths) {
        if (!m_kmlData.isEmpty() && sensorFlags & sensor.flags)
            top.appendChild(paths.sensorFolder(sensor, elevationScale));
    }
    return document.release();
}
