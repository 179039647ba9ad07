#include "core/devicevariables.h"

#include "core/aveldorandevice.h"

#include <cstring>
#include <iterator>

namespace {

constexpr quint32 kLow = LowFrequencyAnalyser;
constexpr quint32 kHigh = SpectrumAnalyser;
constexpr quint32 kAnalysers = kLow | kHigh;
constexpr quint32 kReceivers = kAnalysers | PowerMeter;
constexpr quint32 kGenerators = SignalGenerator;
constexpr quint32 kAll = kReceivers | kGenerators;

using Desc = device_variable_desc;

constexpr quint16 kNumber = Desc::Readable | Desc::Writable;
constexpr quint16 kFrequency = kNumber | Desc::Frequency;
constexpr quint16 kFilter = kNumber | Desc::Filter;
constexpr quint16 kSwitch = kNumber | Desc::Switch;
constexpr quint16 kMilliseconds = kNumber | Desc::Milliseconds;
constexpr quint16 kSeconds = kNumber | Desc::Seconds;
constexpr quint16 kEnumeration = kNumber | Desc::Enumeration;

// Identifiers are stored by applications: a variable keeps its own, and the last place of the table its variable,
// which stands in for unknown identifiers.
constexpr Desc kVariables[] = {
    {1, kAnalysers, "StartFrequency", kFrequency, nullptr, "where a sweep begins"},
    {2, kAnalysers, "StopFrequency", kFrequency, nullptr, "where a sweep ends"},
    {3, kAnalysers, "CenterFrequency", kFrequency, nullptr, "the middle of a sweep"},
    {4, kAnalysers, "Span", kFrequency, nullptr, "the width of a sweep"},
    {5, kAnalysers, "FrequencyStep", kFrequency, nullptr, "the distance of the points of a sweep"},
    {6, kReceivers, "FrequencyOffset", kFrequency, nullptr, "what a converter before the input adds"},
    {7, kAnalysers, "ResolutionFilter", kFilter, nullptr, "the resolution bandwidth"},
    {8, kAnalysers, "VideoFilter", kFilter, nullptr, "the video bandwidth"},
    {9, kAnalysers, "DemodulationFilter", kFilter, nullptr, "the bandwidth before the demodulator"},
    {10, kReceivers, "ReferenceLevel", kNumber, nullptr, "the top of the display in the level unit"},
    {11, kAnalysers, "LevelRange", kNumber, nullptr, "the height of the display in dB"},
    {12, kReceivers, "LevelUnit", kEnumeration,
     "0:dBm;1:dBW;2:dBV;3:dBmV;4:dBuV;5:V;6:dBV/m;7:dBmW/m2;8:dBuV/m;9:V/m;10:W;11:W/m2;12:dBW/m2;13:dBA/m;14:dBuA/m;"
     "15:A/m;16:dB;17:x",
     "the unit of levels, of those of emu_find()"},
    {13, kAnalysers, "Attenuator", kEnumeration, "-1:Auto;0:0 dB;10:10 dB;20:20 dB;30:30 dB;40:40 dB;50:50 dB",
     "the attenuator at the input"},
    {14, kHigh, "Preamplifier", kSwitch, nullptr, "the amplifier at the input"},
    {15, kHigh, "PreamplifierGain", Desc::Readable, nullptr, "the gain of the amplifier in dB"},
    {16, kAnalysers, "Detector", kEnumeration, "0:RMS;1:Average;2:Peak;3:Minimum;4:Sample;5:Quasi-peak",
     "how readings become a point"},
    {17, kAnalysers, "TraceMode", kEnumeration, "0:Clear and write;1:Maximum;2:Minimum;3:Average",
     "how sweeps become a trace"},
    {18, kAnalysers, "AverageCount", kNumber, nullptr, "the number of sweeps in an average"},
    {19, kAnalysers, "SweepTime", kMilliseconds, nullptr, "the time for one sweep"},
    {20, kAnalysers, "AutoSweepTime", kSwitch, nullptr, "the shortest time that the filters allow"},
    {21, kAnalysers, "SweepMode", kEnumeration, "0:Continuous;1:Single;2:Zero span", "how sweeps follow each other"},
    {22, kAnalysers, "SweepCount", kNumber, nullptr, "the number of sweeps in the mode Single"},
    {23, kAnalysers, "SweepPoints", kNumber, nullptr, "the number of points of a sweep"},
    {24, kAnalysers, "SweepDelay", kMilliseconds, nullptr, "the pause before each sweep"},
    {25, kAnalysers, "DwellTime", kMilliseconds, nullptr, "the time for one point"},
    {26, kAnalysers, "HoldTime", kSeconds, nullptr, "how long a maximum is held"},
    {27, kAnalysers, "TriggerSource", kEnumeration, "0:Free run;1:Level;2:External;3:GPS second",
     "what starts a sweep"},
    {28, kAnalysers, "TriggerLevel", kNumber, nullptr, "the level in the level unit that starts a sweep"},
    {29, kAnalysers, "TriggerSlope", kEnumeration, "0:Rising;1:Falling", "the edge that starts a sweep"},
    {30, kAnalysers, "TriggerDelay", kMilliseconds, nullptr, "the time from the trigger to the sweep"},
    {31, kAnalysers, "Demodulator", kEnumeration, "0:Off;1:AM;2:FM;3:Phase;4:Upper sideband;5:Lower sideband",
     "what is heard"},
    {32, kAnalysers, "DemodulationFrequency", kFrequency, nullptr, "where it is heard"},
    {33, kAnalysers, "DemodulationTime", kSeconds, nullptr, "how long it is heard after each sweep"},
    {34, kAnalysers, "Squelch", kSwitch, nullptr, "silence below the squelch level"},
    {35, kAnalysers, "SquelchLevel", kNumber, nullptr, "that level in the level unit"},
    {36, kAnalysers, "Volume", kNumber, nullptr, "the loudness in percent"},
    {37, kAnalysers, "NoiseFloorCorrection", kSwitch, nullptr, "the device's own noise is taken off"},
    {38, kReceivers, "LimitCheck", kSwitch, nullptr, "levels are compared with the limit"},
    {39, kReceivers, "LimitMargin", kNumber, nullptr, "the distance from the limit in dB that counts as beyond it"},
    {40, kLow, "InputCoupling", kEnumeration, "0:AC;1:DC", "the coupling of the input"},
    {41, kLow, "InputImpedance", kEnumeration, "50:50 Ohm;200000:200 kOhm", "the impedance of the input"},
    {42, kLow, "SensorAxis", kEnumeration, "0:X;1:Y;2:Z;3:All", "the axis of the field sensor"},
    {43, kAll, "ReferenceClock", kEnumeration, "0:Internal;1:External;2:GPS", "what frequencies derive from"},
    {44, kReceivers, "GpsLogging", kSwitch, nullptr, "positions are recorded with the sweeps"},
    {45, kReceivers, "GpsInterval", kSeconds, nullptr, "the time between two positions"},
    {46, kAll, "DisplayTimeout", kSeconds, nullptr, "the time after which the display goes dark"},
    {47, kAll, "DeviceTemperature", Desc::Readable, nullptr, "the temperature in the device in degrees Celsius"},
    {48, kAll, "RestoreDefaults", Desc::Writable | Desc::Switch, nullptr, "switched on, all is as delivered"},
    {49, kAll, "ServiceMode", kEnumeration | Desc::Internal, "0:Off;1:Alignment;2:Self-test", "the maker's modes"},
    {50, kGenerators, "OutputFrequency", kFrequency, nullptr, "the frequency of the output"},
    {51, kGenerators, "OutputLevel", kNumber, nullptr, "the level of the output in dBm"},
    {52, kGenerators, "OutputEnabled", kSwitch, nullptr, "the output"},
    {53, kAll, "LevelOffset", kNumber, nullptr, "what cables and antennas take, in dB"},
};

static_assert(std::size(kVariables) == device_variable_count);

} // namespace

const device_variable_desc *get_vardesc(int index)
{
    return index >= 0 && index < static_cast<int>(std::size(kVariables)) ? &kVariables[index] : nullptr;
}

const device_variable_desc *find_vardesc(const char *name)
{
    if (!name)
        return nullptr;
    for (const Desc &variable : kVariables) {
        if (std::strcmp(variable.name, name) == 0)
            return &variable;
    }
    return nullptr;
}
