#include <core/amdrdocument.h>

#include <benchmark/benchmark.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>

// Writing and reading recordings, beside copying the same bytes; docs/performance.md states the limits. The argument
// is the number of points of a sweep, 0 for position records alone; a recording has about 60 MB in any case.

namespace {

constexpr int kdBm = 0;
constexpr int kPoints = 1500000;
constexpr int kPositions = 500000;
constexpr qint64 kBlockBytes = 1 << 16;

ASweep sweepOf(int points, int number)
{
    QList<AMeasurementValue> values;
    values.reserve(points);
    for (int i = 0; i < points; ++i) {
        const AFrequency frequency = AFrequency::fromValue(100000000LL + i * 10000LL, AFrequency::Hz);
        values.append(AMeasurementValue(-100.0 + (i * 7 + number) % 13, kdBm, frequency, 0, 0.0));
    }
    const QDateTime start(QDate(2024, 5, 17), QTime(12, 0), Qt::UTC);
    return ASweep(values, start.addMSecs(number * 100), start.addMSecs(number * 100 + 90));
}

AGeoData positionOf(int number)
{
    AGeoData position;
    position.recordTime = QDateTime(QDate(2024, 5, 17), QTime(12, 0), Qt::UTC).addSecs(number);
    position.latitude = 4811.5F;
    position.longitude = 1134.25F;
    return position;
}

// The records of a recording, made before anything is measured.
struct Records
{
    QList<ASweep> sweeps;
    QList<AGeoData> positions;
};

const Records &records(int points)
{
    static QMap<int, Records> made;
    if (!made.contains(points)) {
        made.clear(); // only one at a time in memory
        Records &fresh = made[points];
        for (int i = 0; points > 0 && i < kPoints / points; ++i)
            fresh.sweeps.append(sweepOf(points, i));
        for (int i = 0; points == 0 && i < kPositions; ++i)
            fresh.positions.append(positionOf(i));
    }
    return made[points];
}

void fill(AMdrDocument *document, int points)
{
    for (const ASweep &sweep : records(points).sweeps)
        document->addSweep(sweep);
    for (const AGeoData &position : records(points).positions)
        document->addGeoData(position);
}

class Files
{
public:
    explicit Files(int points)
    {
        AMdrDocument document;
        fill(&document, points);
        m_ok = document.save(recording());
    }
    bool isOk() const { return m_ok; }
    QString recording() const { return m_dir.filePath(QStringLiteral("a.mdr")); }
    QString target() const { return m_dir.filePath(QStringLiteral("b.mdr")); }

    void setRates(benchmark::State *state) const
    {
        if (!m_ok)
            state->SkipWithError("a file could not be written or read");
        state->SetBytesProcessed(state->iterations() * QFileInfo(recording()).size());
    }
    void require(bool condition) { m_ok = m_ok && condition; }

private:
    QTemporaryDir m_dir;
    bool m_ok = false;
};

bool finish(QFile *file)
{
    return file->flush();
}

bool finish(QSaveFile *file)
{
    return file->commit();
}

template<typename Target>
void copyTo(benchmark::State &state)
{
    Files files(static_cast<int>(state.range(0)));
    QByteArray block(kBlockBytes, Qt::Uninitialized);
    for (auto _ : state) {
        QFile from(files.recording());
        Target to(files.target());
        files.require(from.open(QIODevice::ReadOnly) && to.open(QIODevice::WriteOnly));
        for (qint64 got = 1; got > 0;) {
            got = from.read(block.data(), block.size());
            files.require(got >= 0 && to.write(block.constData(), got) == got);
        }
        files.require(finish(&to));
    }
    files.setRates(&state);
}

void copy(benchmark::State &state)
{
    copyTo<QFile>(state);
}

void copyAtomically(benchmark::State &state)
{
    copyTo<QSaveFile>(state);
}

void save(benchmark::State &state)
{
    Files files(static_cast<int>(state.range(0)));
    AMdrDocument document;
    fill(&document, static_cast<int>(state.range(0)));
    for (auto _ : state)
        files.require(document.save(files.target()));
    files.setRates(&state);
}

void saveLoaded(benchmark::State &state)
{
    Files files(static_cast<int>(state.range(0)));
    AMdrDocument document;
    files.require(document.load(files.recording()));
    for (auto _ : state)
        files.require(document.save(files.target()));
    files.setRates(&state);
}

void record(benchmark::State &state)
{
    Files files(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        AMdrDocument document;
        files.require(document.startRecording(files.target()));
        fill(&document, static_cast<int>(state.range(0)));
        files.require(document.finishRecording());
    }
    files.setRates(&state);
}

void load(benchmark::State &state)
{
    Files files(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        AMdrDocument document;
        files.require(document.load(files.recording()));
    }
    files.setRates(&state);
}

void readRecords(benchmark::State &state)
{
    Files files(static_cast<int>(state.range(0)));
    AMdrDocument document;
    files.require(document.load(files.recording()));
    ASweep sweep;
    for (auto _ : state) {
        for (int i = 0; i < document.recordCount(); ++i) {
            if (document.recordType(i) == AMdrDocument::SweepRecord) {
                files.require(document.readSweep(i, &sweep));
            } else {
                AGeoData position;
                files.require(document.readGeoData(i, &position));
            }
        }
    }
    files.setRates(&state);
}

} // namespace

#define AVELDORAN_RECORDING(name) BENCHMARK(name)->Arg(10000)->Arg(500)->Arg(0)->Unit(benchmark::kMillisecond)

AVELDORAN_RECORDING(copy);
AVELDORAN_RECORDING(copyAtomically);
AVELDORAN_RECORDING(save);
AVELDORAN_RECORDING(saveLoaded);
AVELDORAN_RECORDING(record);
AVELDORAN_RECORDING(load);
AVELDORAN_RECORDING(readRecords);

BENCHMARK_MAIN();
