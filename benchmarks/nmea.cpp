#include "benchmarks/nmealog.h"
#include "benchmarks/peer.h"

#include <core/agpsloggerdevice.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>

#include <benchmark/benchmark.h>

// The reading of an NMEA log of 400,000 sentences (29 MB), beside gpsbabel reading the same file where that is
// installed. Both by processor time; docs/performance.md states the limit.

namespace {

constexpr int kTimes = 200000; // of two sentences each

void readLog(benchmark::State &state)
{
    const int times = static_cast<int>(state.range(0));
    const QString name = nmeaLogFile(times);
    int count = 0;
    for (auto _ : state) {
        count = 0;
        AGpsLoggerDevice logger(nullptr, new QFile(name));
        QEventLoop loop;
        QObject::connect(&logger, &AGpsLoggerDevice::gpsRecordRead, &loop, [&count](const AGeoData &record) {
            benchmark::DoNotOptimize(record.recordTime);
            ++count;
        });
        QObject::connect(&logger, &AGpsLoggerDevice::finished, &loop, &QEventLoop::quit);
        if (!logger.init())
            state.SkipWithError("the log can't be opened");
        logger.setStreaming(true);
        loop.exec();
    }
    if (count != times)
        state.SkipWithError("records are missing");
    state.SetBytesProcessed(state.iterations() * QFile(name).size());
}

// The peer of readLog. Without an output it reads the file and nothing more.
void readLogWithGpsbabel(benchmark::State &state)
{
    const QString name = nmeaLogFile(static_cast<int>(state.range(0)));
    if (gpsbabel().isEmpty()) {
        state.SkipWithError("gpsbabel is not installed");
        return;
    }
    for (auto _ : state) {
        Usage usage;
        if (!run(gpsbabel(), {QStringLiteral("-i"), QStringLiteral("nmea"), QStringLiteral("-f"), name}, &usage)) {
            state.SkipWithError("gpsbabel has failed");
            return;
        }
        state.SetIterationTime(usage.seconds);
    }
    state.SetBytesProcessed(state.iterations() * QFile(name).size());
}

} // namespace

BENCHMARK(readLog)->Arg(kTimes / 10)->Arg(kTimes)->Unit(benchmark::kMillisecond);
BENCHMARK(readLogWithGpsbabel)->Arg(kTimes)->UseManualTime()->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
