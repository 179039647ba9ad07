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
    for (const QDateTime &time : {sweep.stopTime(), sweep.startTime()}) {
        if (isStorable(time))
            return time.toMSecsSinceEpoch();
    }
    return kNoTime;
}

qint64 timeOf(const AGeoData &geoData)
{
    return isStorable(geoData.recordTime) ? geoData.recordTime.toMSecsSinceEpoch() : kNoTime;
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
