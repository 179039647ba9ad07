#include "fuzz/require.h"

#include <core/afrequency.h>

#include <cstdint>
#include <string>

// Any text becomes a frequency whose whole hertz survive the canonical text.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const AFrequency frequency(text.c_str());
    AFrequency whole;
    whole.setValue(frequency.intValue(AFrequency::Hz), AFrequency::Hz);
    require(AFrequency(whole.canonicalText().toLatin1().constData()) == whole);
    require((frequency - whole).intValue(AFrequency::Hz) == 0);
    require(frequency - frequency == AFrequency());
    require(frequency + AFrequency() == frequency);
    return 0;
}
