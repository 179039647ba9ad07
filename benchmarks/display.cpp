#include <display/acolorlookuptable.h>
#include <display/adisplayvaluecache.h>

#include <QtCore/QVector>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

// What a display costs per sweep, beside the bare passes that it can't do without; docs/performance.md states the
// limits.

namespace {

constexpr int kPoints = 1000000;
constexpr int kColumns = 1920;
constexpr int kdBm = 0;

const QList<AMeasurementValue> &sweep()
{
    static const QList<AMeasurementValue> values = [] {
        std::mt19937 random(1);
        std::normal_distribution<double> floor(-100.0, 3.0);
        QList<AMeasurementValue> noise;
        noise.reserve(kPoints);
        for (int i = 0; i < kPoints; ++i) {
            const AFrequency frequency = AFrequency::fromValue(100000000LL + i * 100LL, AFrequency::Hz);
            noise.append(AMeasurementValue(floor(random), kdBm, frequency, 0, 0.0));
        }
        return noise;
    }();
    return values;
}

// The peer: the highest level of the same list.
void barePass(benchmark::State &state)
{
    const QList<AMeasurementValue> &values = sweep();
    for (auto _ : state) {
        double highest = -std::numeric_limits<double>::infinity();
        for (const AMeasurementValue &value : values)
            highest = value.level > highest ? value.level : highest;
        benchmark::DoNotOptimize(highest);
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}

void thin(benchmark::State &state)
{
    const QList<AMeasurementValue> &values = sweep();
    ADisplayValueCache cache(static_cast<int>(state.range(0)), nullptr);
    for (auto _ : state) {
        cache.update(values, 0, kPoints - 1);
        benchmark::DoNotOptimize(cache.at(0).level);
    }
    if (cache.at(cache.count() - 1).isEmpty())
        state.SkipWithError("the last column is empty");
    state.SetItemsProcessed(state.iterations() * kPoints);
}

// A hundredth of the sweep, another one each time, as it comes in.
void thinOnePercent(benchmark::State &state)
{
    constexpr int kStretch = kPoints / 100;
    const QList<AMeasurementValue> &values = sweep();
    ADisplayValueCache cache(kColumns, nullptr);
    int first = 0;
    for (auto _ : state) {
        cache.update(values, first, first + kStretch - 1);
        first = (first + kStretch) % kPoints;
    }
    state.SetItemsProcessed(state.iterations() * kStretch);
}

// A line of a waterfall: levels with a fraction, over the whole range.
std::vector<float> line(int dynamic)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> level(0.0F, static_cast<float>(dynamic) * 0.999F);
    std::vector<float> levels(kColumns);
    std::generate(levels.begin(), levels.end(), [&] { return level(random); });
    return levels;
}

void colorLine(benchmark::State &state)
{
    const auto dynamic = static_cast<int>(state.range(0));
    const AColorLookupTable table(nullptr, dynamic, Qt::darkBlue, Qt::yellow);
    const std::vector<float> levels = line(dynamic);
    std::vector<const QColor *> pixels(levels.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < levels.size(); ++i)
            pixels[i] = &table.colorAt(levels[i]);
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kColumns);
}

// The peer: the same table looked up in place.
void bareLookUp(benchmark::State &state)
{
    const auto dynamic = static_cast<int>(state.range(0));
    const AColorLookupTable table(nullptr, dynamic, Qt::darkBlue, Qt::yellow);
    QVector<QColor> colors;
    for (int i = 0; i < table.count(); ++i)
        colors += table.at(i);
    const QVector<QColor> &constColors = colors;
    const float entriesPerLevel = static_cast<float>(table.count()) / static_cast<float>(dynamic);
    const std::vector<float> levels = line(dynamic);
    std::vector<const QColor *> pixels(levels.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < levels.size(); ++i)
            pixels[i] = &constColors.at(static_cast<int>(levels[i] * entriesPerLevel));
        benchmark::DoNotOptimize(pixels.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kColumns);
}

void rebuildTable(benchmark::State &state)
{
    AColorLookupTable table(nullptr, 1, Qt::darkBlue, Qt::yellow);
    for (auto _ : state)
        table.rebuild(1000, QColor(), QColor());
}

} // namespace

BENCHMARK(barePass)->Unit(benchmark::kMicrosecond);
BENCHMARK(thin)->Arg(1)->Arg(kColumns)->Arg(100000)->Unit(benchmark::kMicrosecond);
BENCHMARK(thinOnePercent)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareLookUp)->Arg(100)->Arg(2000);
BENCHMARK(colorLine)->Arg(100)->Arg(2000);
BENCHMARK(rebuildTable)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
