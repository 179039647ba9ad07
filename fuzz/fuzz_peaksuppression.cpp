#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <core/asweepprocessor.h>

#include <cstdint>

// A peak suppression file of any bytes gives ranges or a reason; a sweep loses height by the ranges alone, and by none
// of a file that can't be read.

namespace {

class Processor : public ASweepProcessor
{
public:
    using ASweepProcessor::deliver;
};

// Noise up to 10 GHz, with a peak at every fiftieth point.
ASweep sweep()
{
    constexpr int kPoints = 1000;
    constexpr qint64 kStepHz = 10000000;
    ASweep made;
    for (int i = 0; i < kPoints; ++i) {
        const double level = i % 50 == 25 ? -30.0 : -100.0 + i % 3;
        made.values.append({level, 0, AFrequency::fromValue(i * kStepHz, AFrequency::Hz), 0, 0.0});
    }
    return made;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile file(data, size);
    Processor processor;
    QString errorText;
    const bool ok = processor.setPeakSuppression(file.name(), false, &errorText);
    require(ok == errorText.isEmpty());
    require(processor.peakSuppressionFile() == file.name());

    processor.setPeakSuppression(ASweepProcessor::SuppressionCustom);
    static const ASweep before = sweep();
    ASweep after = before;
    processor.deliver(&after);
    require(after.values.size() == before.values.size());
    for (int i = 0; i < before.values.size(); ++i) {
        require(after.values.at(i).frequency == before.values.at(i).frequency);
        require(after.values.at(i).level <= before.values.at(i).level);
        require(ok || after.values.at(i).level == before.values.at(i).level);
    }
    return 0;
}
