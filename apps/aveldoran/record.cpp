#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/driveprocessor.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/plantext.h"

#include <core/amdrdocument.h>
#include <core/asimulateddevice.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <limits>

namespace {

constexpr char kCommand[] = "record";
constexpr int kMaxPoints = 1000000;
constexpr int kMaxSweeps = 10000000;
constexpr int kMsPerPositionRecord = 1000;

struct Options
{
    QString gpx;
    QString output;
    int intervalMs = 250;
    AFrequency begin = AFrequency("87.5 MHz");
    AFrequency end = AFrequency("108 MHz");
    int points = 501;
    int seed = 1;
    bool withPositions = true;
};

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    CommandLine::describe(
        &parser,
        QStringLiteral("Records what a simulated analyser measures on a drive along a GPX track: sweeps with their "
                       "positions, from the first to the last time of the track, past transmitters that stand beside "
                       "it. The same seed gives the same recording. Each sweep goes to the file at once."),
        {QStringLiteral("aveldoran record --simulate --gpx examples/data/drives/valley-road.gpx --output drive.mdr")});
    const QString number = QStringLiteral("N");
    const QString frequency = QStringLiteral("FREQ");
    const QString file = QStringLiteral("FILE");
    const QCommandLineOption simulate(
        QStringLiteral("simulate"), QStringLiteral("With the simulated analyser; there is no other so far. Required."));
    const QCommandLineOption gpx(QStringLiteral("gpx"), QStringLiteral("The track, whose points have times. Required."),
                                 file);
    const QCommandLineOption output(QStringLiteral("output"),
                                    QStringLiteral("The recording. A file of any name; '.mdr' is usual. Required."),
                                    QStringLiteral("FILE.mdr"));
    const QCommandLineOption interval =
        optionWithDefault(QStringLiteral("interval"), QStringLiteral("Milliseconds from sweep to sweep"),
                          QStringLiteral("MS"), QString::number(options->intervalMs));
    const QCommandLineOption start =
        optionWithDefault(QStringLiteral("start"), QStringLiteral("The first frequency, in hertz if it has no unit"),
                          frequency, shortFrequency(options->begin));
    const QCommandLineOption stop =
        optionWithDefault(QStringLiteral("stop"), QStringLiteral("The last frequency, in hertz if it has no unit"),
                          frequency, shortFrequency(options->end));
    const QCommandLineOption points = optionWithDefault(QStringLiteral("points"), QStringLiteral("Points of a sweep"),
                                                        number, QString::number(options->points));
    const QCommandLineOption seed =
        optionWithDefault(QStringLiteral("seed"), QStringLiteral("What noise and transmitters depend on"), number,
                          QString::number(options->seed));
    const QCommandLineOption noPositions(
        QStringLiteral("no-positions"),
        QStringLiteral("Leave the positions out, as an analyser without a receiver does."));
    parser.addOptions({simulate, gpx, output, interval, start, stop, points, seed, noPositions});
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    if (!readNoArgument(parser, kCommand))
        return false;
    for (const QCommandLineOption &needed : {simulate, gpx, output}) {
        if (!requireOption(parser, kCommand, needed.names().constFirst()))
            return false;
    }
    options->withPositions = !parser.isSet(noPositions);
    constexpr int kHourMs = 3600 * 1000;
    if (!readFileOption(parser, kCommand, QStringLiteral("gpx"), &options->gpx) ||
        !readOutputOption(parser, kCommand, QStringLiteral("output"), {options->gpx}, {}, &options->output) ||
        !readNumberOption(parser, kCommand, QStringLiteral("interval"), 1, kHourMs, &options->intervalMs) ||
        !readFrequencyOption(parser, kCommand, QStringLiteral("start"), &options->begin) ||
        !readFrequencyOption(parser, kCommand, QStringLiteral("stop"), &options->end) ||
        !readNumberOption(parser, kCommand, QStringLiteral("points"), 2, kMaxPoints, &options->points) ||
        !readNumberOption(parser, kCommand, QStringLiteral("seed"), 0, std::numeric_limits<int>::max(), &options->seed))
        return false;
    if (!(options->begin < options->end)) {
        CommandLine::usageError(kCommand,
                                QStringLiteral("--start expects a frequency below that of --stop, %1, not '%2'")
                                    .arg(shortFrequency(options->end), shortFrequency(options->begin)));
        return false;
    }
    return true;
}

// The points of the track that have a time and a place, from its begin on.
QVector<ASimulatedDevice::TrackPoint> trackOf(const DriveProcessor &processor, QDateTime *begin)
{
    QVector<ASimulatedDevice::TrackPoint> track;
    for (const AGeoData *record : processor.waypoints()) {
        if (!record->recordTime.isValid())
            continue;
        if (track.isEmpty())
            *begin = record->recordTime;
        track.append({static_cast<double>(begin->msecsTo(record->recordTime)) / 1000.0,
                      static_cast<double>(record->latitude), static_cast<double>(record->longitude),
                      static_cast<double>(record->altitude)});
    }
    return track;
}

bool reportRecordingError(const QString &fileName, const QString &reason)
{
    Console::error(QStringLiteral("%1: can't be written: %2").arg(fileName, reason));
    return false;
}

bool record(const ASimulatedDevice &device, int count, const Options &options)
{
    AMdrDocument document;
    document.setDevice(device);
    QString errorText;
    if (!document.startRecording(options.output, &errorText))
        return reportRecordingError(options.output, errorText);
    const int sweepsPerPosition = std::max(1, kMsPerPositionRecord / options.intervalMs);
    for (int number = 0; number < count; ++number) {
        Console::progressBar(QStringLiteral("recording"), number, count);
        ASweep sweep = device.sweep(number);
        if (!options.withPositions)
            sweep.setGeoData(AGeoData());
        else if (number % sweepsPerPosition == 0)
            document.addGeoData(sweep.geoData());
        document.addSweep(sweep);
        if (!document.recordingError().isEmpty()) // what follows would gather in memory
            return reportRecordingError(options.output, document.recordingError());
    }
    Console::clearProgress();
    return document.finishRecording(&errorText) || reportRecordingError(options.output, errorText);
}

} // namespace

int runRecord(const QStringList &arguments)
{
    Options options;
    int exitStatus = ExitDone;
    if (!readOptions(arguments, &options, &exitStatus))
        return exitStatus;

    DriveProcessor processor;
    const DriveProcessor::Source source = processor.read(options.gpx, DriveProcessor::Gpx);
    if (!source.errorText.isEmpty())
        Console::error(source.errorText);
    processor.removeUnusableWaypoints();
    QDateTime begin;
    const QVector<ASimulatedDevice::TrackPoint> track = trackOf(processor, &begin);
    if (track.isEmpty()) {
        if (source.errorText.isEmpty())
            Console::error(QStringLiteral("%1: no point has both a time and a place").arg(options.gpx));
        return ExitFailed;
    }
    const double sweeps = track.constLast().seconds * 1000.0 / options.intervalMs + 1.0;
    if (sweeps > kMaxSweeps) {
        Console::error(QStringLiteral("%1: %2 sweeps would be recorded, expected at most %3; give a longer --interval")
                           .arg(options.gpx)
                           .arg(sweeps, 0, 'f', 0)
                           .arg(kMaxSweeps));
        return ExitFailed;
    }
    const int count = static_cast<int>(sweeps);

    ASimulatedDevice device(static_cast<quint32>(options.seed));
    device.setBegin(begin, options.intervalMs);
    device.setTrack(track);
    device.setRange(options.begin, options.end, options.points);
    if (!record(device, count, options))
        return ExitFailed;
    Console::write(QStringLiteral("%1: written; sweeps: %2, points: %3, from %4 to %5\n")
                       .arg(Console::oneLine(options.output))
                       .arg(count)
                       .arg(options.points)
                       .arg(shortFrequency(options.begin), shortFrequency(options.end)));
    const bool complete = source.errorText.isEmpty();
    return Console::finish() && complete ? ExitDone : ExitFailed;
}
