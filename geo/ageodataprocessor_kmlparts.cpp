#include "geo/ageodataprocessor.h"

#include "geo/balloon.h"
#include "geo/elementmaker.h"
#include "geo/kmlpath.h"

#include <memory>
#include <vector>

// What a document is built of: a colour, a point, and a path, whose elements kmlpath.h makes.

namespace {

QString frequencyText(const AMeasurementValue &value)
{
    return value.frequency.formatString(QStringLiteral("%L1 %2"), AFrequency::NoUnit, 0, 'f', -1);
}

} // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): the signatures are fixed

QDomElement AGeoDataProcessor::createStyleElement(QDomDocument *document, QString id, QString color, int width) const
{
    constexpr int kHexadecimal = 16;
    if (!document)
        return {};
    const QString alpha = color.mid(6, 2);
    const QString blueGreenRed = color.mid(4, 2) + color.mid(2, 2) + color.mid(0, 2);
    const QString halfAlpha =
        QStringLiteral("%1").arg(alpha.toUInt(nullptr, kHexadecimal) >> 1, 2, kHexadecimal, QLatin1Char('0'));

    ElementMaker maker(document);
    QDomElement style = maker.create(QStringLiteral("Style"));
    style.setAttribute(QStringLiteral("id"), id);
    QDomElement line = maker.append(&style, QStringLiteral("LineStyle"));
    maker.appendText(&line, QStringLiteral("color"), alpha + blueGreenRed);
    if (width >= 0)
        maker.appendText(&line, QStringLiteral("width"), QString::number(width));
    QDomElement curtain = maker.append(&style, QStringLiteral("PolyStyle"));
    maker.appendText(&curtain, QStringLiteral("color"), halfAlpha + blueGreenRed);
    return style;
}

AGeoData *AGeoDataProcessor::completeWaypoint(const AGeoData &record, const AMeasurementValue &value,
                                              const QString &label, bool withFrequency, float elevationScale,
                                              bool withoutBalloon, bool valueInName) const
{
    auto point = std::make_unique<AGeoData>(record);
    const QString frequency = (withFrequency && !withoutBalloon) || valueInName ? frequencyText(value) : QString();
    if (withoutBalloon) {
        point->description.clear();
    } else {
        closeBalloon(&point->description, value, label, withFrequency ? frequency : QString());
        if (!point->recordName.endsWith(label))
            point->recordName += QLatin1Char(' ') + label;
    }
    if (elevationScale > 0.0F) {
        point->altitude = static_cast<float>((value.level - m_minimum.level) / (m_maximum.level - m_minimum.level) *
                                             static_cast<double>(elevationScale));
    }
    if (valueInName)
        point->recordName += QStringLiteral(" (%1 @ %2)").arg(value.formatValueString(true), frequency);
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
    if (!document)
        return {};
    std::vector<KmlPointTexts> texts(static_cast<std::size_t>(points.size()));
    KmlPath path;
    path.name = name;
    path.styleUrl = styleUrl;
    path.altitudeMode = altitudeMode;
    path.withTimeTrack = withTimeTrack;
    path.labelFlags = labelFlags;
    path.elevationScale = elevationScale;
    return kmlPathFolder(document, path, points, &texts);
}

// NOLINTEND(performance-unnecessary-value-param)
