#include "apps/aveldoran/tracefile.h"
#include "fuzz/require.h"

#include <core/asweep.h>

#include <QtCore/QBuffer>

#include <cstdint>

// A file of any bytes gives a trace as promised or a message; the peaks of a trace keep their order and their spacing.

namespace {

constexpr int kPeaks = 8;

bool areApart(const AFrequency &a, const AFrequency &b, const AFrequency &spacing)
{
    return (a < b ? b - a : a - b) >= spacing;
}

void findPeaks(const Trace &trace, const AFrequency &spacing)
{
    AMeasurementValue maxima[kPeaks];
    const int count =
        ASweep::extractPeaks(trace.values, 0, trace.values.size() - 1, maxima, kPeaks, nullptr, 0, trace.unit, spacing);
    for (int i = 0; i < count; ++i) {
        require(i == 0 || maxima[i].level <= maxima[i - 1].level);
        for (int j = 0; j < i; ++j)
            require(areApart(maxima[i].frequency, maxima[j].frequency, spacing));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray content = QByteArray::fromRawData(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QBuffer buffer(&content);
    require(buffer.open(QIODevice::ReadOnly));
    Trace trace;
    QString errorText;
    if (!readTrace(&buffer, &trace, &errorText)) {
        require(!errorText.isEmpty());
        return 0;
    }
    require(!trace.values.isEmpty());
    for (int i = 0; i < trace.values.size(); ++i) {
        require(trace.values.at(i).unit == trace.unit);
        require(trace.values.at(i).frequency >= (i > 0 ? trace.values.at(i - 1).frequency : AFrequency()));
    }
    findPeaks(trace, AFrequency());
    findPeaks(trace, (trace.values.last().frequency - trace.values.first().frequency) / 4.0);
    return 0;
}
