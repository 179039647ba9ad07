#include "apps/aveldoran/commandline.h"
#include "apps/aveldoran/commands.h"
#include "apps/aveldoran/console.h"
#include "apps/aveldoran/driveprocessor.h"
#include "apps/aveldoran/options.h"
#include "apps/aveldoran/valuetext.h"

#include <core/amdrdocument.h>
#include <core/asimulateddevice.h>

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <limits>

#include <sys/statvfs.h>

namespace {

constexpr char kCommand[] = "record";
constexpr int kMaxPoints = 1000000;
constexpr int kMaxSweeps = 10000000;
constexpr int kMsPerPositionRecord = 1000;
constexpr int kHourMs = 3600 * 1000;

// Of the file; docs/formats.md tells what they hold.
constexpr qint64 kBytesPerPoint = 42;
constexpr qint64 kBytesPerSweep = 132; // besides its points
constexpr qint64 kBytesPerPosition = 102;

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

int sweepsPerPosition(const Options &options)
{
    return std::max(1, kMsPerPositionRecord / options.intervalMs);
}

qint64 bytesOf(qint64 sweeps, const Options &options)
{
    const qint64 positions = options.withPositions ? sweeps / sweepsPerPosition(options) : 0;
    return sweeps * (kBytesPerSweep + options.points * kBytesPerPoint) + positions * kBytesPerPosition;
}

// --- the command line ---

void addOptions(QCommandLineParser *parser, const Options &defaults)
{
    CommandLine::describe(
        parser,
        QStringLiteral(
            "Records what a simulated analyser measures on a drive along a GPX track: sweeps with their positions, "
            "from the first to the last time of the track, past transmitters that stand beside it. The same seed gives "
            "the same recording.\n\n"
            "Each sweep goes to the file at once. It takes 42 bytes a point: %1 an hour if no option says otherwise. A "
            "recording for which the disk has no room, or of more than %2 sweeps, is not begun.")
            .arg(sizeText(bytesOf(kHourMs / defaults.intervalMs, defaults)), QString::number(kMaxSweeps)),
        {QStringLiteral("aveldoran record --simulate --gpx examples/data/drives/valley-road.gpx --output drive.mdr")});
    const QString number = QStringLiteral("N");
    const QString frequency = QStringLiteral("FREQ");
    parser->addOptions(
        {{QStringLiteral("simulate"),
          QStringLiteral("With the simulated analyser; there is no other so far. Required.")},
         {QStringLiteral("gpx"), QStringLiteral("The track, whose points have times. Required."),
          QStringLiteral("FILE")},
         {QStringLiteral("output"), QStringLiteral("The recording. A file of any name; '.mdr' is usual. Required."),
          QStringLiteral("FILE.mdr")},
         optionWithDefault(QStringLiteral("interval"), QStringLiteral("Milliseconds from sweep to sweep"),
                           QStringLiteral("MS"), QString::number(defaults.intervalMs)),
         optionWithDefault(QStringLiteral("start"), QStringLiteral("The first frequency, in hertz if it has no unit"),
                           frequency, shortFrequency(defaults.begin)),
         optionWithDefault(QStringLiteral("stop"), QStringLiteral("The last frequency, in hertz if it has no unit"),
                           frequency, shortFrequency(defaults.end)),
         optionWithDefault(QStringLiteral("points"), QStringLiteral("Points of a sweep"), number,
                           QString::number(defaults.points)),
         optionWithDefault(QStringLiteral("seed"), QStringLiteral("What noise and transmitters depend on"), number,
                           QString::number(defaults.seed)),
         {QStringLiteral("no-positions"),
          QStringLiteral("Leave the positions out, as an analyser without a receiver does.")}});
}

bool readOptions(const QStringList &arguments, Options *options, int *exitStatus)
{
    QCommandLineParser parser;
    addOptions(&parser, *options);
    if (!CommandLine::parse(&parser, kCommand, arguments, exitStatus))
        return false;

    *exitStatus = ExitUsage;
    if (!readNoArgument(parser, kCommand))
        return false;
    for (const char *needed : {"simulate", "gpx", "output"}) {
        if (!requireOption(parser, kCommand, QLatin1String(needed)))
            return false;
    }
    options->withPositions = !parser.isSet(QStringLiteral("no-positions"));
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

// --- recording ---

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

// False, with a message, if the disk has less room than the recording takes.
bool hasRoom(qint64 bytes, const QString &fileName)
{
    const QFileInfo output(fileName);
    const QString directory = output.exists() ? output.canonicalPath() : output.absolutePath();
    struct statvfs disk = {}; // QStorageInfo knows none in a change of root
    if (statvfs(QFile::encodeName(directory).constData(), &disk) != 0 || disk.f_blocks == 0)
        return true; // what becomes of it, the writing tells
    const qint64 room = static_cast<qint64>(disk.f_bavail * disk.f_frsize) + output.size(); // which is replaced
    return bytes <= room ||
           reportRecordingError(fileName, QStringLiteral("It would take %1, and the disk has %2; give a longer "
                                                         "--interval or fewer --points")
                                              .arg(sizeText(bytes), sizeText(room)));
}

bool record(const ASimulatedDevice &device, int count, const Options &options)
{
    const qint64 bytes = bytesOf(count, options);
    if (!hasRoom(bytes, options.output))
        return false;
    AMdrDocument document;
    document.setDevice(device);
    QString errorText;
    if (!document.startRecording(options.output, &errorText))
        return reportRecordingError(options.output, errorText);
    const QString progress = QStringLiteral("recording %1, %2").arg(options.output, sizeText(bytes));
    for (int number = 0; number < count; ++number) {
        Console::progressBar(progress, number, count);
        ASweep sweep = device.sweep(number);
        if (!options.withPositions)
            sweep.setGeoData(AGeoData());
        else if (number % sweepsPerPosition(options) == 0)
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
                           .arg(options.gpx, QString::number(sweeps, 'f', 0), QString::number(kMaxSweeps)));
        return ExitFailed;
    }
    const int count = static_cast<int>(sweeps);

    ASimulatedDevice device(static_cast<quint32>(options.seed));
    device.setBegin(begin, options.intervalMs);
    device.setTrack(track);
    device.setRange(options.begin, options.end, options.points);
    if (!record(device, count, options))
        return ExitFailed;
    Console::tellWritten(options.output, QStringLiteral("%1 of %2, %3, %4")
                                             .arg(countText(count, "sweep"), countText(options.points, "point"),
                                                  frequencyRangeText(options.begin, options.end),
                                                  sizeText(QFileInfo(options.output).size())));
    return source.errorText.isEmpty() ? ExitDone : ExitFailed;
}
