#include <core/emu.h>
#include <marker/aspectrummarkerlist.h>

#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>
#include <random>

// Markers on traces larger than any display's. updateMarkerValues is measured against one bare pass over the levels of
// the same list; docs/markers.md states the limit.

namespace {

constexpr int kPoints = 100000;
constexpr int kMarkersOfEachKind = 10;
constexpr qint64 kStepHz = 1000;

AFrequency hertz(qint64 value)
{
    return AFrequency::fromValue(value, AFrequency::Hz);
}

// Noise, and a carrier at every thousandth point.
QList<AMeasurementValue> noise(int points)
{
    std::mt19937 generator(1);
    std::normal_distribution<double> level(-110.0, 3.0);
    QList<AMeasurementValue> data;
    data.reserve(points);
    for (int i = 0; i < points; ++i)
        data.append(
            AMeasurementValue(level(generator) + (i % 1000 == 500 ? 60.0 : 0.0), 0, hertz(i * kStepHz), 0, 0.0));
    return data;
}

// All levels rise, so that every point is better than the best before it.
QList<AMeasurementValue> sawtooth(int points)
{
    QList<AMeasurementValue> data;
    data.reserve(points);
    for (int i = 0; i < points; ++i) {
        const double magnitude = 1e-3 * i;
        data.append(AMeasurementValue(i % 2 ? magnitude : -magnitude, 0, hertz(i * kStepHz), 0, 0.0));
    }
    return data;
}

void addMarkers(ASpectrumMarkerList *list, int points)
{
    for (int i = 0; i < kMarkersOfEachKind; ++i) {
        // Between two points, spread over the whole trace.
        const AFrequency target = hertz(points * kStepHz / kMarkersOfEachKind * (i + 1) - kStepHz * 3 / 2);
        list->addMarker(ASpectrumMarker::TypeMax, 0, AFrequency());
        list->addMarker(ASpectrumMarker::TypeMin, 0, AFrequency());
        list->addMarker(ASpectrumMarker::TypeStd, 0, target);
        list->addMarker(ASpectrumMarker::TypeCal, 0, target + hertz(1));
    }
}

void passOver(benchmark::State &state, const QList<AMeasurementValue> &data)
{
    for (auto _ : state) {
        double sum = 0.0;
        for (const AMeasurementValue &value : data)
            sum += value.level;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * data.size());
}

void update(benchmark::State &state, const QList<AMeasurementValue> &data, const AFrequency &spacing)
{
    ASpectrumMarkerList list;
    addMarkers(&list, data.size());
    const AFrequency begin = data.first().frequency;
    const AFrequency end = data.last().frequency;
    for (auto _ : state) {
        if (list.updateMarkerValues(data, 0, begin, end, 0, spacing) < 2 * kMarkersOfEachKind)
            state.SkipWithError("markers were not updated");
    }
    const QList<ASpectrumMarker *> markers = list.all();
    for (const ASpectrumMarker *marker : markers) {
        if (marker->value().isEmpty())
            state.SkipWithError("a marker has no value");
    }
    state.SetItemsProcessed(state.iterations() * data.size());
}

// The peer of the updates.
void passOverNoise(benchmark::State &state)
{
    passOver(state, noise(static_cast<int>(state.range(0))));
}

void updateOnNoise(benchmark::State &state)
{
    update(state, noise(static_cast<int>(state.range(0))), AFrequency());
}

void updateOnNoiseWithSpacing(benchmark::State &state)
{
    update(state, noise(static_cast<int>(state.range(0))), AFrequency("1 MHz"));
}

void passOverSawtooth(benchmark::State &state)
{
    passOver(state, sawtooth(static_cast<int>(state.range(0))));
}

void updateOnSawtooth(benchmark::State &state)
{
    update(state, sawtooth(static_cast<int>(state.range(0))), AFrequency());
}

void findPeak(benchmark::State &state)
{
    const QList<AMeasurementValue> data = noise(kPoints);
    ASpectrumMarkerList list;
    list.updateMarkerValues(data, 0, data.first().frequency, data.last().frequency, 0, AFrequency());
    for (auto _ : state) {
        if (list.findPeakFrequency(0, hertz(0), Qt::LeftToRight, true).isNull())
            state.SkipWithError("no peak");
    }
}

// Growth with the number of markers, all of one type on one trace.
void loadSetup(benchmark::State &state)
{
    const QTemporaryDir directory;
    QSettings settings(directory.filePath(QStringLiteral("setups.ini")), QSettings::IniFormat);
    const auto count = static_cast<int>(state.range(0));
    settings.beginWriteArray(QStringLiteral("many/Marker"));
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        settings.setValue(QStringLiteral("Type"), int(ASpectrumMarker::TypeStd));
    }
    settings.endArray();
    for (auto _ : state) {
        ASpectrumMarkerList list;
        list.loadSetup(&settings, QStringLiteral("many"));
        if (list.listcount() != count)
            state.SkipWithError("markers are missing");
    }
    state.SetItemsProcessed(state.iterations() * count);
}

} // namespace

BENCHMARK(passOverNoise)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(updateOnNoise)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(updateOnNoiseWithSpacing)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(passOverSawtooth)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(updateOnSawtooth)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(findPeak)->Unit(benchmark::kMicrosecond);
BENCHMARK(loadSetup)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
