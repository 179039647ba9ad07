#include <core/agpsloggerdevice.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

// The reading of an NMEA log of 400,000 sentences (29 MB), beside gpsbabel reading the same file where that is
// installed. Both by processor time; docs/performance.md states the limit.

namespace {

constexpr int kTimes = 200000; // of two sentences each

QByteArray sentence(const char *body)
{
    unsigned int sum = 0;
    for (const char *byte = body; *byte; ++byte)
        sum ^= static_cast<unsigned char>(*byte);
    char checksum[8];
    std::snprintf(checksum, sizeof checksum, "*%02X\r\n", sum);
    return QByteArray("$") + QByteArray(body) + QByteArray(checksum);
}

QByteArray content(int times)
{
    QByteArray bytes;
    for (int i = 0; i < times; ++i) {
        const int second = i % 86400;
        char clock[16];
        std::snprintf(clock, sizeof clock, "%02d%02d%02d.000", second / 3600, second / 60 % 60, second % 60);
        const int minutes = i % 599999; // in ten-thousandths
        char body[128];
        std::snprintf(body, sizeof body, "GPGGA,%s,48%02d.%04d,N,011%02d.%04d,E,1,08,0.9,%d.%d,M,46.9,M,,", clock,
                      minutes / 10000, minutes % 10000, minutes / 10000, minutes % 10000, 400 + i % 300, i % 10);
        bytes += sentence(body);
        std::snprintf(body, sizeof body, "GPRMC,%s,A,48%02d.%04d,N,011%02d.%04d,E,%03d.4,%03d.4,%02d0524,,", clock,
                      minutes / 10000, minutes % 10000, minutes / 10000, minutes % 10000, i % 100, i % 360,
                      17 + i / 86400);
        bytes += sentence(body);
    }
    return bytes;
}

// The log on disk, made once.
const QString &logFile(int times)
{
    static const QTemporaryDir directory;
    static QMap<int, QString> names;
    QString &name = names[times];
    if (name.isEmpty()) {
        name = directory.filePath(QStringLiteral("%1.nmea").arg(times));
        QFile file(name);
        const QByteArray bytes = content(times);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            std::abort();
    }
    return name;
}

void readLog(benchmark::State &state)
{
    const int times = static_cast<int>(state.range(0));
    const QString name = logFile(times);
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

double seconds(const timeval &time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// The peer of readLog. Without an output it reads the file and nothing more.
void readLogWithGpsbabel(benchmark::State &state)
{
    const QString name = logFile(static_cast<int>(state.range(0)));
    std::string program = QStandardPaths::findExecutable(QStringLiteral("gpsbabel")).toStdString();
    if (program.empty()) {
        state.SkipWithError("gpsbabel is not installed");
        return;
    }
    std::string file = name.toStdString();
    std::string options[] = {"gpsbabel", "-i", "nmea", "-f", file};
    char *arguments[] = {options[0].data(), options[1].data(), options[2].data(),
                         options[3].data(), options[4].data(), nullptr};
    for (auto _ : state) {
        pid_t child = 0;
        int status = 0;
        rusage usage{};
        if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
            wait4(child, &status, 0, &usage) != child || status != 0) {
            state.SkipWithError("gpsbabel has failed");
            return;
        }
        state.SetIterationTime(seconds(usage.ru_utime) + seconds(usage.ru_stime));
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
