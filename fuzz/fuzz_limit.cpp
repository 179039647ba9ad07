#include "fuzz/memoryfile.h"
#include "fuzz/require.h"

#include <core/alimit.h>

#include <cmath>
#include <cstdint>

// A file of any bytes gives limits or a message; a limit answers at every edge of its curve and beside it.

namespace {

AFrequency half()
{
    return AFrequency("0.5");
}

void ask(const ALimit &limit, const AFrequency &frequency, bool mustGovern)
{
    for (const AFrequency &at : {frequency, frequency - half(), frequency + half()}) {
        bool ok = false;
        const double value = limit.valueAt(at, &ok);
        require(ok || std::isnan(value));
        require(ok || !mustGovern || !(at == frequency));
        require(ok || limit.levels().isEmpty() || !limit.contains(at));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const MemoryFile file(data, size);
    QList<const ALimit *> limits;
    QString errorText;
    const bool ok = ALimit::readAll(file.name(), limits, &errorText);
    require(ok == errorText.isEmpty());
    require(ok || limits.isEmpty());
    for (const ALimit *limit : qAsConst(limits)) {
        ask(*limit, limit->begin(), false);
        ask(*limit, limit->end(), false);
        for (const ALimit::Section &section : limit->sections()) {
            ask(*limit, section.begin, section.begin <= section.end);
            ask(*limit, section.end, section.begin <= section.end);
        }
        for (const ALimit::Level &level : limit->levels())
            ask(*limit, level.frequency, true);
        limit->unitId();
    }
    qDeleteAll(limits);
    return 0;
}
