#include <core/asweep.h>

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

// The peak search over sweeps of up to 10^6 points, beside a bare pass over the levels of the same list;
// docs/performance.md states the limits.

namespace {

constexpr int kCapacity = 20;
constexpr int kdBm = 0;
constexpr qint64 kStepHz = 10000;

enum Shape
{
    Noise,       // with 12 carriers
    Sawtooth,    // every second point is a peak
    RisingTeeth, // and each is better than all before it
    Ramp,
    Constant,
};

AFrequency hertz(qint64 value)
{
    return AFrequency::fromValue(value, AFrequency::Hz);
}

QList<AMeasurementValue> sweep(int shape, int count)
{
    std::mt19937 random(1);
    std::normal_distribution<double> floor(-100.0, 2.0);
    QList<AMeasurementValue> values;
    values.reserve(count);
    for (int i = 0; i < count; ++i) {
        double level = -100.0;
        if (shape == Noise)
            level = i % (count / 12) == 40 ? -40.0 - i * 1e-6 : floor(random);
        else if (shape == Sawtooth)
            level = i % 2;
        else if (shape == RisingTeeth)
            level = i % 2 * 1e7 + i;
        else if (shape == Ramp)
            level = i;
        values.append(AMeasurementValue(level, kdBm, hertz(100000000 + i * kStepHz), 0, 0.0));
    }
    return values;
}

void barePass(benchmark::State &state)
{
    const QList<AMeasurementValue> values = sweep(Noise, static_cast<int>(state.range(0)));
    for (auto _ : state) {
        double sum = 0.0;
        for (const AMeasurementValue &value : values)
            sum += value.level;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

enum Wanted
{
    Maxima = 1,
    Minima = 2,
    Both = 3,
};

void search(benchmark::State &state, int shape, int wanted, qint64 spacingHz)
{
    const QList<AMeasurementValue> values = sweep(shape, static_cast<int>(state.range(0)));
    std::vector<AMeasurementValue> maxima(kCapacity);
    std::vector<AMeasurementValue> minima(kCapacity);
    const AFrequency spacing = hertz(spacingHz < 0 ? values.size() * kStepHz / -spacingHz : spacingHz);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ASweep::extractPeaks(
            values, 1, values.size() - 1, wanted & Maxima ? maxima.data() : nullptr, wanted & Maxima ? kCapacity : 0,
            wanted & Minima ? minima.data() : nullptr, wanted & Minima ? kCapacity : 0, kdBm, spacing));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr qint64 kNone = 0;
constexpr qint64 kTenPoints = 10 * kStepHz;
constexpr qint64 kTenth = -10; // of the sweep
constexpr qint64 kHundredth = -100;

} // namespace

#define AVELDORAN_SIZES Arg(1000)->Arg(10000)->Arg(100000)->Arg(1000000)

// Each search may take twice the bare pass of its size.
BENCHMARK(barePass)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, maxima, Noise, Maxima, kNone)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, maxima_ten_points_apart, Noise, Maxima, kTenPoints)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, maxima_a_hundredth_apart, Noise, Maxima, kHundredth)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, maxima_a_tenth_apart, Noise, Maxima, kTenth)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, maxima_and_minima, Noise, Both, kNone)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, maxima_and_minima_ten_points_apart, Noise, Both, kTenPoints)->AVELDORAN_SIZES;

// The worst shapes: ten times the points take ten times as long.
BENCHMARK_CAPTURE(search, sawtooth, Sawtooth, Both, kNone)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, sawtooth_ten_points_apart, Sawtooth, Both, kTenPoints)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, sawtooth_a_tenth_apart, Sawtooth, Both, kTenth)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, rising_teeth, RisingTeeth, Both, kNone)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, rising_teeth_ten_points_apart, RisingTeeth, Both, kTenPoints)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, rising_teeth_a_tenth_apart, RisingTeeth, Both, kTenth)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, ramp, Ramp, Both, kNone)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, ramp_a_tenth_apart, Ramp, Both, kTenth)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, constant, Constant, Both, kNone)->AVELDORAN_SIZES;
BENCHMARK_CAPTURE(search, constant_a_tenth_apart, Constant, Both, kTenth)->AVELDORAN_SIZES;

BENCHMARK_MAIN();
