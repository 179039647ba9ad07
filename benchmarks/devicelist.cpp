#include "tests/views/allocationcount.h"
#include "tests/views/manydevices.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

// What showing the whole table of attached devices costs: each of its 1,200 cells is compared with every open device
// and its receiver. To be run under umockdev-wrapper, which lets the program have as many USB devices as it wants.

namespace {

void showAll(benchmark::State &state)
{
    static ManyDevices devices;
    if (!devices.isComplete()) {
        state.SkipWithError("to be run under umockdev-wrapper");
        return;
    }
    devices.open(static_cast<int>(state.range(0)));
    long allocations = 0;
    for (auto _ : state) {
        const long before = allocationCount;
        if (devices.showAll() != 0)
            state.SkipWithError("a device is shown as connected");
        allocations += allocationCount - before;
    }
    state.SetItemsProcessed(state.iterations() * ManyDevices::kChips * ADeviceListModel::ColumnCount);
    state.counters["allocations"] = benchmark::Counter(double(allocations), benchmark::Counter::kAvgIterations);
}

} // namespace

BENCHMARK(showAll)->Arg(0)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
