#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/driveprocessor.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/outputfile.h"
#include "apps/aveldoran/recordingfile.h"
#include "apps/aveldoran/valuereading.h"
#include "apps/aveldoran/valuetext.h"

#include <core/amdrdocument.h>
#include <core/emu.h>
#include <geo/kmlwriter.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtXml/QDomDocument>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr char kCommand[] = "drive";
constexpr int kMaxElevationMetres = 100000;
constexpr int kDayMs = 24 * 3600 * 1000;

// What a name of the command line stands for in the flags of AGeoDataProcessor::toKml().
struct Sensor
{
    const char *name;
    unsigned int flag;
    QStringList paths; // without the tilt, which comes with two of them
};

const QVector<Sensor> &sensors()
{
    static const QVector<Sensor> all = {
        {"compass", AGeoDataProcessor::Compass, {QStringLiteral("Compass Heading")}},
        {"gyro",
         AGeoDataProcessor::Gyroscope,
         {QStringLiteral("Gyro X-Axis"), QStringLiteral("Gyro Y-Axis"), QStringLiteral("Gyro Z-Axis")}},
        {"pressure", AGeoDataProcessor::Pressure, {QStringLiteral("Air Pressure")}},
    };
    return all;
}

struct Label
{
    const char *name;
    int flags;
};

constexpr Label kLabels[] = {{"name", AGeoDataProcessor::NameOfRecord},
                             {"time", AGeoDataProcessor::NameOfTime},
                             {"value", AGeoDataProcessor::NameOfRecord | AGeoDataProcessor::ValueInName},
                             {"none", 0}};

struct Options
{
    QString recording;
    QStringList gpx;
    QStringList nmea;
    const emu_entry *unit = nullptr; // null: that of the recording
    int elevationMetres = 200;
    int toleranceMs = 1000;
    int labelFlags = AGeoDataProcessor::NameOfRecord;
    bool withBalloons = true;
    bool withGpsTrack = true;
    bool withTimeTrack = false;
    bool absoluteAltitude = false;
    unsigned int sensorFlags = 0;
    QString output;
};

// --- the command line ---

QStringList sensorNames()
{
    QStringList names;
    for (const Sensor &sensor : sensors())
        names += QLatin1String(sensor.name);
    return names;
}

QStringList labelNames()
{
    QStringList names;
    for (const Label &label : kLabels)
        names += QLatin1String(label.name);
    return names;
}

bool readSensors(const QCommandLineParser &parser, unsigned int *flags)
{
    const QString option = QStringLiteral("sensors");
    if (!parser.isSet(option))
        return true;
    const QString names = parser.value(option);
    const QStringList list = names.split(QLatin1Char(','));
    for (const QString &name : list) {
        const int known = sensorNames().indexOf(name.trimmed());
        if (known < 0)
            return refuseOption(kCommand, option,
                                listText(sensorNames()) + QStringLiteral(", or several with commas between"), names);
        *flags |= sensors().at(known).flag;
    }
    return true;
}

bool readLabels(const QCommandLineParser &parser, int *flags)
{
    int choice = 0;
    if (!readChoiceOption(parser, kCommand, QStringLiteral("labels"), labelNames(), &choice))
        return false;
    *flags = kLabels[choice].flags;
    return true;
}

bool readUnit(const QCommandLineParser &parser, const emu_entry **unit)
{
    const QString option = QStringLiteral("unit");
    if (!parser.isSet(option))
        return true;
    const QString name = parser.value(option);
    *unit = emu_find(unitId(name.toUtf8()));
    return *unit || refuseOption(kCommand, option, listText(typedUnitNames()), name);
}

void addOptions(QCommandLineParser *parser, const Options &defaults)
{
    CommandLine::describe(
        parser,
        QStringLiteral("Draws the recording of a measurement drive as a KML document: the way of the vehicle, and "
                       "along it the maximum, average and minimum of each sweep as curtains whose height shows the "
                       "level. A sweep without a position of its own takes that of the waypoint of its time, from GPX "
                       "files, NMEA logs or the recording. The document goes to standard output if no file is named. "
                       "What it holds, and what was left out of it, is told on standard error."),
        {QStringLiteral("aveldoran drive drive.mdr --gpx examples/data/drives/valley-road.gpx --output drive.kml")});
    const QString file = QStringLiteral("FILE");
    parser->addOptions(
        {{QStringLiteral("nmea"),
          QStringLiteral("An NMEA log with waypoints of the drive. May be given several times."), file},
         {QStringLiteral("gpx"), QStringLiteral("A GPX file with waypoints of the drive. May be given several times."),
          file},
         optionWithDefault(QStringLiteral("unit"),
                           QStringLiteral("Show levels in this unit: %1").arg(listText(typedUnitNames())),
                           QStringLiteral("UNIT"), QStringLiteral("their own")),
         optionWithDefault(QStringLiteral("elevation"),
                           QStringLiteral("How high the highest level is drawn, in metres, where 0 draws all at the "
                                          "altitude of the vehicle"),
                           QStringLiteral("METRES"), QString::number(defaults.elevationMetres)),
         optionWithDefault(QStringLiteral("tolerance"),
                           QStringLiteral("How far a waypoint may lie from the time of its sweep, in milliseconds"),
                           QStringLiteral("MS"), QString::number(defaults.toleranceMs)),
         optionWithDefault(QStringLiteral("labels"),
                           QStringLiteral("What the points are called by: %1").arg(listText(labelNames())),
                           QStringLiteral("KIND"), QLatin1String(kLabels[0].name)),
         {QStringLiteral("no-balloons"), QStringLiteral("Draw the curtains without a point for each sweep.")},
         {QStringLiteral("no-gps-track"), QStringLiteral("Leave the way of the vehicle out.")},
         {QStringLiteral("absolute-altitude"),
          QStringLiteral("Draw the way of the vehicle at its altitude, not on the ground.")},
         {QStringLiteral("time-track"), QStringLiteral("Add tracks with times, which a viewer can play.")},
         {QStringLiteral("sensors"),
          QStringLiteral("Draw what these said along the way, with commas between: %1.").arg(listText(sensorNames())),
          QStringLiteral("LIST")},
         {QStringLiteral("output"),
          QStringLiteral("The document; a file of that name is replaced when it is complete."),
          QStringLiteral("FILE.kml")}});
    parser->addPositionalArgument(QStringLiteral("RECORDING"), QStringLiteral("The recording of the drive."));
}

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    const QString nmea = QStringLiteral("nmea");
    const QString gpx = QStringLiteral("gpx");
    QCommandLineParser parser;
    addOptions(&parser, *options);
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus, {nmea, gpx}))
        return false;

    *exitStatus = ExitUsage;
    if (!readOneArgument(parser, kCommand, QStringLiteral("recording"), &options->recording) ||
        !readFilesOption(parser, kCommand, gpx, &options->gpx) ||
        !readFilesOption(parser, kCommand, nmea, &options->nmea))
        return false;
    options->withBalloons = !parser.isSet(QStringLiteral("no-balloons"));
    options->withGpsTrack = !parser.isSet(QStringLiteral("no-gps-track"));
    options->withTimeTrack = parser.isSet(QStringLiteral("time-track"));
    options->absoluteAltitude = parser.isSet(QStringLiteral("absolute-altitude"));
    const QStringList inputs = QStringList(options->recording) + options->gpx + options->nmea;
    return readNumberOption(parser, kCommand, QStringLiteral("elevation"), 0, kMaxElevationMetres,
                            &options->elevationMetres) &&
           readNumberOption(parser, kCommand, QStringLiteral("tolerance"), 0, kDayMs, &options->toleranceMs) &&
           readOutputOption(parser, kCommand, QStringLiteral("output"), inputs, {QStringLiteral(".kml")},
                            &options->output) &&
           readUnit(parser, &options->unit) && readLabels(parser, &options->labelFlags) &&
           readSensors(parser, &options->sensorFlags);
}

// --- reading ---

// False if a file gave nothing: what would be drawn without it is not what was asked for.
bool readWaypoints(const Options &options, DriveProcessor *processor, bool *complete)
{
    const auto readAll = [&](const QStringList &files, DriveProcessor::Format format) {
        return std::all_of(files.begin(), files.end(), [&](const QString &file) {
            const DriveProcessor::Source source = processor->read(file, format);
            if (!source.errorText.isEmpty()) {
                Console::error(source.errorText);
                *complete = false;
            }
            return source.waypoints > 0;
        });
    };
    return readAll(options.gpx, DriveProcessor::Gpx) && readAll(options.nmea, DriveProcessor::Nmea);
}

// --- measured points ---

bool fail(const Options &options, const QString &text)
{
    Console::error(QStringLiteral("%1: %2").arg(options.recording, text));
    return false;
}

// The unit to show, null if it can't be. Of the recording it is that of the first point.
const emu_entry *chooseUnit(const Options &options, const AMdrDocument &recording)
{
    ASweep sweep;
    for (int number = 0; number < recording.sweepCount() && sweep.values.isEmpty(); ++number)
        recording.readSweep(recording.recordOfSweep(number), &sweep);
    if (sweep.values.isEmpty()) {
        fail(options, QStringLiteral("its sweeps have no points"));
        return nullptr;
    }
    const emu_entry *measured = emu_find(sweep.values.constFirst().unit);
    if (!measured)
        fail(options, QStringLiteral("its levels are in an unknown unit"));
    if (!measured || !options.unit)
        return measured;
    if (measured->family == options.unit->family)
        return options.unit;
    fail(options, QStringLiteral("its levels are in %1, which can't be shown in %2")
                      .arg(QString::fromUcs4(measured->name), QString::fromUcs4(options.unit->name)));
    return nullptr;
}

// False if nothing is there that could be drawn.
bool checkMeasured(const Options &options, const DriveProcessor &processor, const DriveProcessor::Measured &measured)
{
    if (measured.sweeps == 0)
        return fail(options, QStringLiteral("no sweep could be read"));
    if (measured.positioned == 0) {
        return fail(options, processor.hasGeoData()
                                 ? QStringLiteral("no sweep has a position, and no waypoint lies within %1 ms of one")
                                       .arg(options.toleranceMs)
                                 : QStringLiteral("no sweep has a position; name a track with --gpx or --nmea"));
    }
    if (processor.measuredCount() == 0)
        return fail(options, QStringLiteral("no sweep with a position has levels that can be drawn"));
    if (options.elevationMetres > 0 && !(processor.minimum().level < processor.maximum().level)) {
        return fail(options, QStringLiteral("all levels are %1, which gives no heights; draw them with --elevation 0")
                                 .arg(levelText(processor.maximum().level, processor.maximum().unit)));
    }
    return true;
}

// --- the document ---

std::unique_ptr<QDomDocument> build(const Options &options, DriveProcessor *processor)
{
    Console::progress(QStringLiteral("building the document"));
    processor->nameWaypoints();
    qSetGlobalQHashSeed(0); // the attributes of an element in one order: the same drive gives the same document
    std::unique_ptr<QDomDocument> document(
        processor->toKml(QFileInfo(options.recording).completeBaseName(), static_cast<float>(options.elevationMetres),
                         options.withBalloons, options.withGpsTrack, options.withTimeTrack, options.labelFlags,
                         options.absoluteAltitude, options.sensorFlags));
    Console::clearProgress();
    return document;
}

// Takes out the folders of paths whose heights are no numbers, since all values of their sensor are the same: a viewer
// could draw none of them. Returns their names.
QStringList removePathsWithoutRange(const QDomDocument &document)
{
    QStringList removed;
    QDomElement top = document.documentElement().firstChildElement(QStringLiteral("Document"));
    QDomElement folder = top.firstChildElement(QStringLiteral("Folder"));
    while (!folder.isNull()) {
        const QDomElement next = folder.nextSiblingElement(QStringLiteral("Folder"));
        const QString coordinates = folder.firstChildElement(QStringLiteral("Placemark"))
                                        .firstChildElement(QStringLiteral("LineString"))
                                        .firstChildElement(QStringLiteral("coordinates"))
                                        .text();
        if (coordinates.contains(QLatin1String("nan")) || coordinates.contains(QLatin1String("inf"))) {
            removed += folder.firstChildElement(QStringLiteral("name")).text();
            top.removeChild(folder);
        }
        folder = next;
    }
    return removed;
}

// False if nothing is there of a sensor that was asked for.
bool reportMissingSensors(const Options &options, const QStringList &missingPaths)
{
    bool complete = true;
    for (const Sensor &sensor : sensors()) {
        const bool isMissing = std::all_of(sensor.paths.begin(), sensor.paths.end(),
                                           [&](const QString &path) { return missingPaths.contains(path); });
        if ((options.sensorFlags & sensor.flag) == 0 || !isMissing)
            continue;
        complete = fail(options, QStringLiteral("left out: the path of the sensor '%1', of which the positions have no "
                                                "values, or all the same")
                                     .arg(QLatin1String(sensor.name)));
    }
    return complete;
}

QString nameOfOutput(const Options &options)
{
    return options.output.isEmpty() ? QStringLiteral("standard output") : options.output;
}

bool writeDocument(const QDomDocument &document, const Options &options)
{
    if (options.output.isEmpty()) {
        QFile out;
        if (out.open(stdout, QIODevice::WriteOnly) && writeKml(document, &out) && out.flush())
            return true;
        Console::error(QStringLiteral("%1: can't be written: %2").arg(nameOfOutput(options), out.errorString()));
        return false;
    }
    Console::progress(QStringLiteral("writing %1").arg(options.output));
    return Console::attempt([&](QString *errorText) {
        return writeOutputFile(
            options.output, [&document](QIODevice *device) { return writeKml(document, device); }, errorText);
    });
}

// --- what is told of it ---

void tellLeftOut(const Options &options, qint64 count, const char *noun, const char *reason)
{
    if (count > 0)
        Console::tellLeftOut(nameOfOutput(options),
                             QStringLiteral("%1 %2").arg(countText(count, noun), QLatin1String(reason)));
}

void tellContent(const Options &options, const DriveProcessor &processor, const DriveProcessor::Measured &measured)
{
    Console::tellWritten(nameOfOutput(options),
                         QStringLiteral("%1, %2 with a position, %3, levels from %4 to %5")
                             .arg(countText(measured.sweeps, "sweep"), QString::number(measured.positioned),
                                  countText(processor.waypointCount(), "waypoint"),
                                  measuredValueText(processor.minimum()), measuredValueText(processor.maximum())));
}

} // namespace

int runDrive(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    bool complete = true;
    AMdrDocument recording;
    DriveProcessor processor;
    if (!loadRecording(options.recording, &recording, &complete) || !readWaypoints(options, &processor, &complete))
        return ExitFailed;
    const emu_entry *unit = chooseUnit(options, recording);
    if (!unit)
        return ExitFailed;
    const bool allWaypoints = processor.takeInWaypoints(recording);
    const int misplaced = processor.removeUnusableWaypoints();
    const DriveProcessor::Measured measured = processor.measure(&recording, unit, options.toleranceMs);
    if (!allWaypoints || !measured.isWhole)
        complete = fail(options, QStringLiteral("not all of it could be read"));
    if (!checkMeasured(options, processor, measured))
        return ExitFailed;

    const std::unique_ptr<QDomDocument> document = build(options, &processor);
    const QStringList missingPaths = removePathsWithoutRange(*document);
    complete = reportMissingSensors(options, missingPaths) && complete;
    if (!writeDocument(*document, options))
        return ExitFailed;

    tellContent(options, processor, measured);
    tellLeftOut(options, misplaced, "waypoint", "without a place on the earth");
    tellLeftOut(options, measured.unusable, "sweep", "with levels or a place that can't be drawn");
    tellLeftOut(options, measured.unusablePoints, "point", "with a level that can't be drawn");
    if (!missingPaths.isEmpty())
        Console::tellLeftOut(nameOfOutput(options),
                             QStringLiteral("%1 of one value: %2")
                                 .arg(countText(missingPaths.size(), "path"), missingPaths.join(QStringLiteral(", "))));
    return Console::finish() && complete ? ExitDone : ExitFailed;
}
