#include "core/mdrformat.h"

#include "core/mdrlayout.h"
#include "core/recordeddevice.h"

#include <algorithm>

namespace {

bool fitsText(const QString &text)
{
    return text.size() <= MdrFormat::kMaxTextLength;
}

} // namespace

namespace MdrFormat {

qint64 timeOf(const ASweep &sweep)
{
    qint64 time = 0;
    return isStorable(sweep.stopTime(), &time) || isStorable(sweep.startTime(), &time) ? time : kNoTime;
}

qint64 timeOf(const AGeoData &geoData)
{
    qint64 time = 0;
    return isStorable(geoData.recordTime, &time) ? time : kNoTime;
}

bool fits(const ASweep &sweep)
{
    return sweep.values.size() <= kMaxValues && fits(sweep.geoData());
}

bool fits(const AGeoData &geoData)
{
    return fitsText(geoData.recordName) && fitsText(geoData.description);
}

bool fits(const DeviceRecord &device)
{
    return std::all_of(device.informationList.begin(), device.informationList.end(), fitsText) &&
           fitsText(device.customOptionText) && fitsText(device.chipInformation.name) &&
           fitsText(device.chipInformation.description);
}

} // namespace MdrFormat
