#include "benchmarks/nmealog.h"
#include "benchmarks/peer.h"

#include <core/asweep.h>
#include <geo/ageodataprocessor.h>
#include <geo/kmlwriter.h>

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QTextStream>

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <random>

// A GPX file of 200,000 points to a KML file, the paths of 200,000 measured points, an NMEA log of 400,000 sentences to
// waypoints, and the pairing of sweeps with waypoints. The peer of both conversions is gpsbabel, where that is
// installed. All by processor time; docs/performance.md states the limits.

namespace {

constexpr int kPoints = 200000;
constexpr int kTimes = 200000; // of two sentences each

QDateTime at(qint64 milliseconds)
{
    return QDateTime(QDate(2024, 5, 1), QTime(8, 0), Qt::UTC).addMSecs(milliseconds);
}

QByteArray gpx(int points)
{
    QByteArray bytes = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<gpx version=\"1.1\" creator=\"benchmark\" xmlns=\"http://www.topografix.com/GPX/1/1\">\n"
                       "<trk><name>drive</name><trkseg>\n";
    for (int i = 0; i < points; ++i) {
        char point[160];
        std::snprintf(point, sizeof point, "<trkpt lat=\"%.7f\" lon=\"%.7f\"><ele>%.2f</ele><time>%s</time></trkpt>\n",
                      48.0 + std::sin(i / 5000.0) / 2, 9.0 + std::cos(i / 7000.0), 300.0 + 50.0 * std::sin(i / 300.0),
                      at(i * 1000LL).toString(Qt::ISODate).toLatin1().constData());
        bytes += point;
    }
    return bytes + "</trkseg></trk></gpx>\n";
}

const QTemporaryDir &directory()
{
    static const QTemporaryDir result;
    return result;
}

// The file of so many points on disk, made once.
const QString &gpxFile(int points)
{
    static QMap<int, QString> names;
    QString &name = names[points];
    if (name.isEmpty()) {
        name = directory().filePath(QStringLiteral("%1.gpx").arg(points));
        QFile file(name);
        const QByteArray bytes = gpx(points);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            std::abort();
    }
    return name;
}

bool load(AGeoDataProcessor *processor, const QString &name)
{
    QFile file(name);
    return processor->loadGpxDocument(&file, nullptr, nullptr, nullptr);
}

std::unique_ptr<QDomDocument> kmlOf(AGeoDataProcessor *processor)
{
    return std::unique_ptr<QDomDocument>(
        processor->toKml(QStringLiteral("Drive"), 0.0F, true, true, false, 1, true, 0));
}

// What a conversion does from its start to its end, in a process of its own: see main().
int convert(const QString &from, const QString &to)
{
    AGeoDataProcessor processor(nullptr);
    QFile file(to);
    return load(&processor, from) && file.open(QIODevice::WriteOnly) && writeKml(*kmlOf(&processor), &file) &&
                   file.flush()
               ? 0
               : 1;
}

void measureProgram(benchmark::State &state, const QString &program, const QStringList &arguments)
{
    double peak = 0.0;
    for (auto _ : state) {
        Usage usage;
        if (!run(program, arguments, &usage)) {
            state.SkipWithError("the program has failed");
            return;
        }
        state.SetIterationTime(usage.seconds);
        peak = std::max(peak, usage.peakMegabytes);
    }
    state.counters["peak_MB"] = peak;
}

void gpxToKml(benchmark::State &state)
{
    measureProgram(state, QCoreApplication::applicationFilePath(),
                   {QStringLiteral("--convert"), gpxFile(static_cast<int>(state.range(0))),
                    directory().filePath(QStringLiteral("own.kml"))});
}

void gpxToKmlWithGpsbabel(benchmark::State &state)
{
    if (gpsbabel().isEmpty()) {
        state.SkipWithError("gpsbabel is not installed");
        return;
    }
    measureProgram(state, gpsbabel(),
                   {QStringLiteral("-i"), QStringLiteral("gpx"), QStringLiteral("-f"),
                    gpxFile(static_cast<int>(state.range(0))), QStringLiteral("-o"), QStringLiteral("kml"),
                    QStringLiteral("-F"), directory().filePath(QStringLiteral("peer.kml"))});
}

void loadGpx(benchmark::State &state)
{
    const QString name = gpxFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        AGeoDataProcessor processor(nullptr);
        if (!load(&processor, name))
            state.SkipWithError("the file can't be read");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void buildKml(benchmark::State &state)
{
    AGeoDataProcessor processor(nullptr);
    load(&processor, gpxFile(static_cast<int>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(kmlOf(&processor));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

enum Writer
{
    WriteKml,
    QtSave,
};

void writeDocument(benchmark::State &state, int writer)
{
    AGeoDataProcessor processor(nullptr);
    load(&processor, gpxFile(static_cast<int>(state.range(0))));
    const std::unique_ptr<QDomDocument> document = kmlOf(&processor);
    for (auto _ : state) {
        QFile file(directory().filePath(QStringLiteral("written.kml")));
        if (!file.open(QIODevice::WriteOnly))
            std::abort();
        if (writer == QtSave) {
            QTextStream stream(&file);
            document->save(stream, 1);
        } else if (!writeKml(*document, &file)) {
            state.SkipWithError("the file can't be written");
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void loadNmea(benchmark::State &state)
{
    constexpr int kTimeoutMs = 20;
    const int times = static_cast<int>(state.range(0));
    const QString name = nmeaLogFile(times);
    int count = 0;
    for (auto _ : state) {
        count = 0;
        AGeoDataProcessor processor(nullptr);
        QObject::connect(&processor, &AGeoDataProcessor::nmeaRecordProcessed, &processor, [&count] { ++count; });
        if (!processor.loadStoredNmeaContent(name, kTimeoutMs))
            state.SkipWithError("the log can't be opened");
    }
    if (count != times)
        state.SkipWithError("records are missing");
    state.SetBytesProcessed(state.iterations() * QFile(name).size());
}

void loadNmeaWithGpsbabel(benchmark::State &state)
{
    if (gpsbabel().isEmpty()) {
        state.SkipWithError("gpsbabel is not installed");
        return;
    }
    measureProgram(state, gpsbabel(),
                   {QStringLiteral("-i"), QStringLiteral("nmea"), QStringLiteral("-f"),
                    nmeaLogFile(static_cast<int>(state.range(0)))});
}

class Drive : public AGeoDataProcessor
{
public:
    // Waypoints a second apart, and sweeps evenly over the same time, each as long as `spanMs`.
    Drive(int sweeps, int waypoints, qint64 spanMs)
        : AGeoDataProcessor(nullptr)
    {
        AGeoData record;
        record.latitude = 4830.0F;
        record.longitude = 1115.0F;
        record.description = QStringLiteral("d");
        for (int i = 0; i < waypoints; ++i) {
            record.recordTime = at(i * 1000LL);
            addNmeaRecord(record);
        }
        for (int i = 0; i < sweeps; ++i) {
            const qint64 start = i * (waypoints * 1000LL) / sweeps;
            m_sweeps.append(ASweep({}, at(start), at(start + spanMs)));
        }
    }
    void forgetPositions()
    {
        for (ASweep &sweep : m_sweeps)
            sweep.setGeoData(AGeoData());
    }
};

// Sweeps of one value, each with a position of its own.
class MeasuredDrive : public AGeoDataProcessor
{
public:
    explicit MeasuredDrive(int sweeps)
        : AGeoDataProcessor(nullptr)
    {
        const AFrequency frequency = AFrequency::fromValue(100.0, AFrequency::MHz);
        AGeoData record;
        record.recordName = QStringLiteral("P");
        for (int i = 0; i < sweeps; ++i) {
            record.recordTime = at(i * 1000LL);
            record.latitude = static_cast<float>(4830.0 + std::sin(i / 5000.0));
            record.longitude = static_cast<float>(1115.0 + std::cos(i / 7000.0));
            const AMeasurementValue value(-50.0 + 20.0 * std::sin(i / 300.0), 0, frequency, 0, 0.0);
            ASweep sweep({value}, record.recordTime, record.recordTime);
            sweep.setGeoData(record);
            addSweep(sweep);
        }
        processMeasurementData(nullptr);
    }
};

void pairSweeps(benchmark::State &state, qint64 spanMs)
{
    Drive drive(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), spanMs);
    int positioned = 0;
    for (auto _ : state) {
        state.PauseTiming();
        drive.forgetPositions();
        state.ResumeTiming();
        positioned = drive.assignWaypoints(1000);
    }
    state.counters["positioned"] = positioned;
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

enum Balloons
{
    WithBalloons,
    WithoutBalloons,
};

// The paths of measured values along so many points.
void buildMeasuredPaths(benchmark::State &state, int balloons)
{
    MeasuredDrive drive(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(std::unique_ptr<QDomDocument>(
            drive.toKml(QStringLiteral("Drive"), 100.0F, balloons == WithBalloons, false, false, 1, false, 0)));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr qint64 kShort = 100;
constexpr qint64 kLong = 10000000; // milliseconds: half of the drive

} // namespace

BENCHMARK(gpxToKml)->Arg(kPoints / 10)->Arg(kPoints)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(gpxToKmlWithGpsbabel)->Arg(kPoints)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(loadGpx)->Arg(kPoints / 10)->Arg(kPoints)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(buildKml)->Arg(kPoints / 10)->Arg(kPoints)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildMeasuredPaths, with_balloons, WithBalloons)
    ->Arg(kPoints / 10)
    ->Arg(kPoints)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(buildMeasuredPaths, without_balloons, WithoutBalloons)
    ->Arg(kPoints / 10)
    ->Arg(kPoints)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeDocument, writeKml, WriteKml)->Arg(kPoints)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(writeDocument, QDomDocument_save, QtSave)->Arg(kPoints)->Unit(benchmark::kMillisecond);

BENCHMARK(loadNmea)->Arg(kTimes / 10)->Arg(kTimes)->Unit(benchmark::kMillisecond);
BENCHMARK(loadNmeaWithGpsbabel)->Arg(kTimes)->UseManualTime()->Unit(benchmark::kMillisecond);

// Ten times the sweeps and the waypoints take little more than ten times as long.
#define AVELDORAN_DRIVES Args({10000, 2000})->Args({100000, 20000})->Unit(benchmark::kMillisecond)
BENCHMARK_CAPTURE(pairSweeps, short_sweeps, kShort)->AVELDORAN_DRIVES;
BENCHMARK_CAPTURE(pairSweeps, sweeps_of_half_the_drive, kLong)->AVELDORAN_DRIVES;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 4 && arguments.at(1) == QLatin1String("--convert"))
        return convert(arguments.at(2), arguments.at(3));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
