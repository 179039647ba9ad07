#include "geo/balloon.h"

#include "core/ageodata.h"
#include "core/ameasurementvalue.h"
#include "core/emsi.h"
#include "core/emu.h"
#include "geo/fixednumber.h"
#include "geo/isotext.h"

#include <QtCore/QStringBuilder>

namespace {

QString shortNumber(float value)
{
    constexpr int kDigits = 6;
    return QString::number(static_cast<double>(value), 'g', kDigits);
}

// What each balloon begins with.
QString timeRows(const QDateTime &time)
{
    return QLatin1String("<table>\n<tr><td>Date:</td><td>") % isoText(time.date()) %
           QLatin1String("</td></tr>\n<tr><td>Time:</td><td>") % isoText(time.time()) % QLatin1String("</td></tr>\n");
}

// A linear level has a prefix.
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

QString waypointBalloon(const AGeoData &record)
{
    return timeRows(record.recordTime) % QLatin1String("<tr><td>Latitude:</td><td>") % shortNumber(record.latitude) %
           QLatin1String("</td></tr>\n<tr><td>Longitude:</td><td>") % shortNumber(record.longitude) %
           QLatin1String("</td></tr>\n<tr><td>Altitude:</td><td>") % shortNumber(record.altitude) %
           QLatin1String(" m</td></tr>\n</table>");
}

QString openBalloon(const AGeoData &record, float heading)
{
    QString balloon = timeRows(record.recordTime) % QLatin1String("<tr><td>Latitude:</td><td>") %
                      fixedNumber(record.latitude) % QLatin1String("</td></tr>\n<tr><td>Longitude:</td><td>") %
                      fixedNumber(record.longitude) % QLatin1String("</td></tr>\n");
    if (heading != 0.0F) {
        balloon += QLatin1String("<tr><td>Compass Heading:</td><td>") % shortNumber(heading) %
                   QLatin1String(" &deg;</td></tr>\n");
    }
    return balloon;
}

void closeBalloon(QString *balloon, const AMeasurementValue &value, const QString &label, const QString &frequency)
{
    *balloon += valueRow(value, label);
    if (!frequency.isNull())
        *balloon += QStringLiteral("<tr><td>Frequency:</td><td>%1</td></tr>\n").arg(frequency);
    *balloon += QLatin1String("</table>\n");
}
