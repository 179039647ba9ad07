#include "geo/ageodataprocessor.h"

#include "core/emsi.h"
#include "core/emu.h"
#include "geo/elementmaker.h"
#include "geo/kmlpath.h"

#include <memory>
#include <vector>

// The parts of which toKml() assembles a document: a colour, a point, a path.

namespace {

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
    if (!document)
        return {};
    const QString alpha = color.mid(6, 2);
    const QString blueGreenRed = color.mid(4, 2) + color.mid(2, 2) + color.mid(0, 2);
    const QString halfAlpha =
        QStringLiteral("%1").arg(alpha.toUInt(nullptr, kHexadecimal) >> 1, 2, kHexadecimal, QLatin1Char('0'));

    ElementMaker make(document);
    QDomElement style = make.make(QStringLiteral("Style"));
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
    const QString frequency = (withFrequency && !withoutBalloon) || valueInName ? frequencyText(value) : QString();
    if (withoutBalloon) {
        point->description.clear();
    } else {
        point->description += valueRow(value, label);
        if (withFrequency)
            point->description += QStringLiteral("<tr><td>Frequency:</td><td>%1</td></tr>\n").arg(frequency);
        point->description += QLatin1String("</table>\n");
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
    return kmlPathFolder(document, {name, styleUrl, altitudeMode, withTimeTrack, labelFlags, elevationScale}, points,
                         &texts);
}

// NOLINTEND(performance-unnecessary-value-param)
