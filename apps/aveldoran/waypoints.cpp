#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/driveprocessor.h"
#include "apps/aveldoran/jsonlist.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/valuetext.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <cmath>

namespace {

constexpr char kCommand[] = "waypoints";

struct Options
{
    bool asJson = false;
    QStringList files;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser,
        QStringLiteral("Reads position files, GPX or NMEA 0183, which are told apart by what they hold, and prints for "
                       "each how many waypoints it has, their time span, area and altitudes, the length of the track "
                       "and the sensors. Of a GPX file with several tracks the one is read that a drive takes, which "
                       "is usually the last."),
        {QStringLiteral("aveldoran waypoints examples/data/drives/valley-road.gpx")});
    parser.addOption(formatOption());
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("A GPX file or an NMEA log."),
                                 QStringLiteral("FILE..."));
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    return readArguments(parser, kCommand, QStringLiteral("position file"), &options->files) &&
           readFormatOption(parser, kCommand, &options->asJson);
}

QString formatName(DriveProcessor::Format format)
{
    return format == DriveProcessor::Gpx ? QStringLiteral("GPX") : QStringLiteral("NMEA");
}

QStringList sensorNames(const WaypointSummary &summary)
{
    QStringList names;
    if (summary.hasCompass)
        names += QStringLiteral("compass");
    if (summary.hasTilt)
        names += QStringLiteral("tilt");
    if (summary.hasGyroscope)
        names += QStringLiteral("gyro");
    if (summary.hasPressure)
        names += QStringLiteral("pressure");
    return names;
}

// --- as text ---

QString degreesText(double degrees, const char *positive, const char *negative)
{
    return QStringLiteral("%1 %2").arg(QString::number(std::fabs(degrees), 'f', 5),
                                       QLatin1String(degrees < 0.0 ? negative : positive));
}

QString lengthText(double metres)
{
    constexpr double kMetresPerKilometre = 1000.0;
    return metres < kMetresPerKilometre ? QStringLiteral("%1 m").arg(metres, 0, 'f', 0)
                                        : QStringLiteral("%1 km").arg(metres / kMetresPerKilometre, 0, 'f', 2);
}

void printLine(const char *name, const QString &text)
{
    constexpr int kNameWidth = 10;
    Console::write(QStringLiteral("  %1%2\n").arg(QLatin1String(name), -kNameWidth).arg(text));
}

void printText(const QString &file, const DriveProcessor::Source &source, const WaypointSummary &summary)
{
    Console::write(QStringLiteral("%1: %2, %3\n")
                       .arg(Console::oneLine(file), formatName(source.format), countText(summary.count, "waypoint")));
    if (source.tracks > 1)
        printLine("tracks", QStringLiteral("%1, of which one is read").arg(source.tracks));
    if (summary.begin.isValid())
        printLine("time", timeSpanText(summary.begin, summary.end));
    if (summary.withoutTime > 0)
        printLine("no time", countText(summary.withoutTime, "waypoint"));
    if (summary.hasArea()) {
        printLine("area", QStringLiteral("%1 to %2, %3 to %4")
                              .arg(degreesText(summary.south, "N", "S"), degreesText(summary.north, "N", "S"),
                                   degreesText(summary.west, "E", "W"), degreesText(summary.east, "E", "W")));
        printLine("length", lengthText(summary.lengthMetres));
    }
    if (summary.withoutPosition > 0)
        printLine("no place", countText(summary.withoutPosition, "waypoint"));
    if (summary.hasAltitude) {
        printLine("altitude", QStringLiteral("%1 m to %2 m")
                                  .arg(QString::number(summary.lowestMetres, 'f', 1),
                                       QString::number(summary.highestMetres, 'f', 1)));
    }
    const QStringList sensors = sensorNames(summary);
    printLine("sensors", sensors.isEmpty() ? QStringLiteral("none") : sensors.join(QStringLiteral(", ")));
}

// --- as JSON ---

QJsonObject asJson(const QString &file, const DriveProcessor::Source &source, const WaypointSummary &summary)
{
    QJsonObject object;
    object[QStringLiteral("file")] = file;
    object[QStringLiteral("format")] = formatName(source.format).toLower();
    if (source.format == DriveProcessor::Gpx)
        object[QStringLiteral("tracks")] = source.tracks;
    object[QStringLiteral("waypoints")] = summary.count;
    object[QStringLiteral("withoutTime")] = summary.withoutTime;
    object[QStringLiteral("withoutPosition")] = summary.withoutPosition;
    if (summary.begin.isValid()) {
        object[QStringLiteral("beginTime")] = exactTimeText(summary.begin);
        object[QStringLiteral("endTime")] = exactTimeText(summary.end);
        object[QStringLiteral("durationSeconds")] = static_cast<double>(summary.begin.msecsTo(summary.end)) / 1000.0;
    }
    if (summary.hasArea()) {
        object[QStringLiteral("south")] = summary.south;
        object[QStringLiteral("north")] = summary.north;
        object[QStringLiteral("west")] = summary.west;
        object[QStringLiteral("east")] = summary.east;
        object[QStringLiteral("lengthMetres")] = summary.lengthMetres;
    }
    if (summary.hasAltitude) {
        object[QStringLiteral("lowestMetres")] = summary.lowestMetres;
        object[QStringLiteral("highestMetres")] = summary.highestMetres;
    }
    object[QStringLiteral("sensors")] = QJsonArray::fromStringList(sensorNames(summary));
    return object;
}

} // namespace

int runWaypoints(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    bool complete = true;
    JsonList json;
    for (const QString &file : qAsConst(options.files)) {
        DriveProcessor processor;
        const DriveProcessor::Source source = processor.read(file, DriveProcessor::AnyFormat);
        if (!source.errorText.isEmpty()) {
            Console::error(source.errorText);
            complete = false;
        }
        if (source.waypoints == 0)
            continue;
        const WaypointSummary summary = processor.summary();
        if (options.asJson)
            json.add(asJson(file, source, summary));
        else
            printText(file, source, summary);
    }
    if (options.asJson)
        json.end();
    return Console::finish() && complete ? ExitDone : ExitFailed;
}
