#pragma once

#include "core/aveldoranchipinformation.h"
#include "core/aveldoranexport.h"

// Chooses devices by the vendor and product ids of their chips. Chips that are known:
//
//   analysers    0403:6010 (with two channels), 0403:6014, 1209:0001
//   generators   0403:6015, 04d8:000a
//   GPS loggers  0403:6001, 10c4:ea60
//
// The setting "Devices/UsbIds" adds to them, a list of texts such as "1209:0002=analyser" with "analyser", "generator"
// or "gpslogger" and ids of up to four hexadecimal digits. Entries of another form are passed over. A chip may be of
// several kinds.
class AVELDORAN_CORE_EXPORT AVeldoranDeviceFilter
{
public:
    // What a chip belongs to.
    enum Kind : unsigned int
    {
        Analyser = 1,
        Generator = 2,
        GpsLogger = 4,
    };

    // The kinds that are wanted. `simulated`: the list ends with a simulated analyser.
    AVeldoranDeviceFilter(bool analysers, bool generators, bool gpsLoggers, bool simulated);
    virtual ~AVeldoranDeviceFilter();

    // Looks at the vendor and the product id alone, and at the setting as it is now.
    virtual bool accepts(const AVeldoranChipInformation &chip) const;
    bool acceptsSimulated() const; // whether the list ends with a simulated analyser

    static unsigned int kindsOf(unsigned short vendorId, unsigned short productId); // Kind bits

private:
    unsigned int m_kinds;
    bool m_simulated;
};
