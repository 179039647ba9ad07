#include "geo/ageodataprocessor.h"

#include "core/emsi.h"
#include "core/emu.h"
#include "core/xmldocument.h"
#include "geo/waypoint.h"

#include <QtCore/QStringBuilder>

#include <memory>

// The parts of which toKml() assembles a document: a colour, a point, a path.

namespace {

QString fixedNumber(double value)
{
    constexpr int kDecimals = 6;
    return QString::number(value, 'f', kDecimals);
}

class ElementMaker
{
public:
    explicit ElementMaker(QDomDocument *document)
        : m_document(document)
    {}
    QDomElement append(QDomElement *parent, const QString &name)
    {
        QDomElement element = m_document->createElement(name);
        parent->appendChild(element);
        return element;
    }
    void appendText(QDomElement *parent, const QString &name, const QString &text)
    {
        append(parent, name).appendChild(m_document->createTextNode(xmlText(text)));
    }
    QDomElement appendLine(QDomElement *placemark, const QString &altitudeMode)
    {
        QDomElement line = append(placemark, QStringLiteral("LineString"));
        appendText(&line, QStringLiteral("extrude"), QStringLiteral("1"));
        appendText(&line, QStringLiteral("tessellate"), QStringLiteral("1"));
        appendText(&line, QStringLiteral("altitudeMode"), altitudeMode);
        return line;
    }

private:
    QDomDocument *m_document;
};

// A path is drawn as a curtain: at each point the line goes to its height, and up by a little.
class Curtain
{
public:
    void addPoint(const QString &longitude, const QString &latitude, const QString &bottom, const QString &top)
    {
        const QChar comma = QLatin1Char(',');
        const QChar end = QLatin1Char('\n');
        m_text +=
            longitude % comma % latitude % comma % bottom % end % longitude % comma % latitude % comma % top % end;
    }
    static QString topOf(float height)
    {
        constexpr double kRiseMetres = 0.005;
        return fixedNumber(static_cast<double>(height) + kRiseMetres);
    }
    const QString &text() const { return m_text; }

private:
    QString m_text;
};

// The ceiling of paths without waypoints.
void appendGreyLine(ElementMaker make, QDomElement *folder, const QList<AGeoData *> &points,
                    const QString &altitudeMode, float height)
{
    const QString bottom = fixedNumber(static_cast<double>(height));
    const QString top = Curtain::topOf(height);
    Curtain curtain;
    for (const AGeoData *point : points) {
        curtain.addPoint(fixedNumber(static_cast<double>(point->longitude)),
                         fixedNumber(static_cast<double>(point->latitude)), bottom, top);
    }
    QDomElement placemark = make.append(folder, QStringLiteral("Placemark"));
    make.appendText(&placemark, QStringLiteral("name"), QStringLiteral("Maximum"));
    make.appendText(&placemark, QStringLiteral("styleUrl"), QStringLiteral("#lineGrey"));
    QDomElement line = make.appendLine(&placemark, altitudeMode);
    make.appendText(&line, QStringLiteral("coordinates"), curtain.text());
}

enum LabelFlag
{
    NameOfRecord = 1,
    NameOfTime = 2,
};

QString frequencyText(const AMeasurementValue &value)
{
    return value.frequency.formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f', -1);
}

// The row of the value, a linear one with a prefix.
QString valueRow(const AMeasurementValue &value, const QString &label)
{
    constexpr double kScaledBelow = 5000.0;
    constexpr int kDecimals = 3;

    double level = value.level;
    QString unitText;
    if (const emu_entry *unit = emu_find(value.unit)) {
        const emsi_unit *scale = unit->logarithmic ? nullptr : emsi_find_scale(level, kScaledBelow);
        if (scale) {
            level = static_cast<double>(level / scale->factor);
            unitText = QString::fromUcs4(scale->prefix);
        }
        unitText += QString::fromUcs4(unit->name);
    }
    return QStringLiteral("<tr><td>%1 Value:</td><td>%2 %3</td></tr>\n")
        .arg(label, QString::number(level, 'f', kDecimals), unitText);
}

} // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): the signatures are fixed

QDomElement AGeoDataProcessor::createStyleElement(QDomDocument *document, QString id, QString color, int width) const
{
    constexpr int kHexadecimal = 16;
    const QString alpha = color.mid(6, 2);
    const QString blueGreenRed = color.mid(4, 2) + color.mid(2, 2) + color.mid(0, 2);
    const QString halfAlpha =
        QStringLiteral("%1").arg(alpha.toUInt(nullptr, kHexadecimal) >> 1, 2, kHexadecimal, QLatin1Char('0'));

    ElementMaker make(document);
    QDomElement style = document->createElement(QStringLiteral("Style"));
    style.setAttribute(QStringLiteral("id"), id);
    QDomElement line = make.append(&style, QStringLiteral("LineStyle"));
    make.appendText(&line, QStringLiteral("color"), alpha + blueGreenRed);
    if (width >= 0)
        make.appendText(&line, QStringLiteral("width"), QString::number(width));
    QDomElement curtain = make.append(&style, QStringLiteral("PolyStyle"));
    make.appendText(&curtain, QStringLiteral("color"), halfAlpha + blueGreenRed);
    return style;
}

AGeoData *AGeoDataProcessor::completeWaypoint(const AGeoData &record, const AMeasurementValue &value,
                                              const QString &label, bool withFrequency, float elevationScale,
                                              bool withoutBalloon, bool valueInName) const
{
    auto point = std::make_unique<AGeoData>(record);
    if (withoutBalloon) {
        point->description.clear();
    } else {
        point->description += valueRow(value, label);
        if (withFrequency)
            point->description += QStringLiteral("<tr><td>Frequency:</td><td>%1</td></tr>\n").arg(frequencyText(value));
        point->description += QLatin1String("</table>\n");
        if (!point->recordName.endsWith(label))
            point->recordName += QLatin1Char(' ') + label;
    }
    if (elevationScale > 0.0F) {
        point->altitude = static_cast<float>((value.level - m_minimum.level) / (m_maximum.level - m_minimum.level) *
                                             static_cast<double>(elevationScale));
    }
    if (valueInName)
        point->recordName += QStringLiteral(" (%1 @ %2)").arg(value.formatValueString(true), frequencyText(value));
    return point.release();
}

AGeoData *AGeoDataProcessor::completeWaypoint(const AGeoData &record, float value, float elevationScale, float minimum,
                                              float maximum) const
{
    auto point = std::make_unique<AGeoData>(record);
    point->description.clear();
    if (elevationScale > 0.0F)
        point->altitude = (value - minimum) / (maximum - minimum) * elevationScale;
    return point.release();
}

QDomElement AGeoDataProcessor::addKmlPath(QDomDocument *document, QString name, QList<AGeoData *> points,
                                          QString styleUrl, QString altitudeMode, bool withTimeTrack, int labelFlags,
                                          float elevationScale) const
{
    ElementMaker make(document);
    QDomElement folder = document->createElement(QStringLiteral("Folder"));
    make.appendText(&folder, QStringLiteral("name"), name);
    make.appendText(&folder, QStringLiteral("open"), QStringLiteral("1"));
    QDomElement placemark = make.append(&folder, QStringLiteral("Placemark"));
    make.appendText(&placemark, QStringLiteral("name"), QStringLiteral("Elevation Profile"));
    make.appendText(&placemark, QStringLiteral("styleUrl"), styleUrl);
    QDomElement track;
    if (withTimeTrack) {
        track = make.append(&placemark, QStringLiteral("gx:Track"));
        make.appendText(&track, QStringLiteral("extrude"), QStringLiteral("1"));
        make.appendText(&track, QStringLiteral("altitudeMode"), altitudeMode);
    }
    QDomElement line = make.appendLine(&placemark, altitudeMode);

    QDomElement waypoints = document->createElement(QStringLiteral("Folder"));
    make.appendText(&waypoints, QStringLiteral("name"), QStringLiteral("Measurement Waypoints"));
    make.appendText(&waypoints, QStringLiteral("visibility"), QStringLiteral("0"));

    bool hasWaypoints = false;
    Curtain curtain;
    for (const AGeoData *point : qAsConst(points)) {
        const QString time = isoText(point->recordTime);
        const QString longitude = fixedNumber(static_cast<double>(point->longitude));
        const QString latitude = fixedNumber(static_cast<double>(point->latitude));
        const QString altitude = fixedNumber(static_cast<double>(point->altitude));
        curtain.addPoint(longitude, latitude, altitude, Curtain::topOf(point->altitude));
        if (withTimeTrack) {
            make.appendText(&track, QStringLiteral("when"), time);
            make.appendText(&track, QStringLiteral("gx:coord"),
                            longitude % QLatin1Char(' ') % latitude % QLatin1Char(' ') % altitude);
        }
        if (point->description.isEmpty())
            continue;
        hasWaypoints = true;
        QDomElement waypoint = make.append(&waypoints, QStringLiteral("Placemark"));
        make.appendText(&waypoint, QStringLiteral("visibility"), QStringLiteral("0"));
        if (labelFlags != 0) {
            make.appendText(&waypoint, QStringLiteral("name"),
                            labelFlags & NameOfRecord ? point->recordName
                            : labelFlags & NameOfTime ? time
                                                      : QString());
        }
        make.appendText(&waypoint, QStringLiteral("description"), point->description);
        make.appendText(&waypoint, QStringLiteral("styleUrl"), QStringLiteral("#dataPoint"));
        QDomElement position = make.append(&waypoint, QStringLiteral("Point"));
        make.appendText(&position, QStringLiteral("coordinates"),
                        longitude % QLatin1Char(',') % latitude % QLatin1Char(',') % altitude);
        make.appendText(&position, QStringLiteral("altitudeMode"), altitudeMode);
    }
    if (hasWaypoints)
        folder.appendChild(waypoints);
    else
        appendGreyLine(make, &folder, points, altitudeMode, elevationScale);
    make.appendText(&line, QStringLiteral("coordinates"), curtain.text());
    return folder;
}

// NOLINTEND(performance-unnecessary-value-param)
