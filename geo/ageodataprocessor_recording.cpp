#include "geo/ageodataprocessor.h"

#include "core/amdrdocument.h"
#include "core/areplayprocessor.h"
#include "core/asettings.h"
#include "core/astoragelocation.h"
#include "core/aveldorandevice.h"
#include "core/emu.h"
#include "geo/balloon.h"
#include "geo/isotext.h"
#include "geo/waypoint.h"

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QVariant>

namespace {

ASweepProcessor::PeakSuppressionMode peakSuppressionMode(const AVeldoranDevice *device)
{
    const auto isSet = [](const char *key) {
        return ASettings::value(QLatin1String("SweepProcessor/") + QLatin1String(key), false).toBool();
    };
    const bool knowsNoiseFloor = device && device->hasCapability(AVeldoranDevice::NoiseFloorSuppression);
    if (isSet("PeakSuppressionCustom"))
        return ASweepProcessor::SuppressionCustom;
    if (isSet("PeakSuppressionNF") && knowsNoiseFloor)
        return ASweepProcessor::SuppressionNF;
    if (isSet("PeakSuppression20") && !knowsNoiseFloor)
        return ASweepProcessor::Suppression20;
    if (isSet("PeakSuppression10") && !knowsNoiseFloor)
        return ASweepProcessor::Suppression10;
    return ASweepProcessor::NoSuppression;
}

AMeasurementValue averageOf(const QList<AMeasurementValue> &values, const emu_entry *averagingUnit,
                            const emu_entry *unit)
{
    AMeasurementValue average = values.first().convertTo(averagingUnit);
    for (auto value = values.cbegin() + 1; value != values.cend(); ++value)
        average += value->convertTo(averagingUnit).level;
    average.level /= static_cast<double>(values.size());
    return average.convertTo(unit);
}

} // namespace

bool AGeoDataProcessor::processMdrData(AMdrDocument *document)
{
    constexpr bool kWithPositions = true;
    constexpr bool kInALoop = false;
    constexpr int kUnpaced = -1;
    constexpr int kFirstSweep = -1;
    constexpr int kLastSweep = -1;

    if (!document || document->sweepCount() < 1)
        return false;
    auto *replay = new AReplayProcessor(document, this, kWithPositions);

    const QString file = ASettings::value(QStringLiteral("SweepProcessor/PeakSuppressionFile")).toString();
    if (!file.isEmpty() && QFile::exists(AStorageLocation::dataFilename(file, true)))
        replay->setPeakSuppression(file, true); // by its name: the processor resolves it itself
    replay->setPeakSuppression(peakSuppressionMode(replay->device()));

    connect(replay, &AReplayProcessor::gpsData, this, &AGeoDataProcessor::addNmeaRecord);
    connect(replay, &AReplayProcessor::sweepFinished, this, &AGeoDataProcessor::addSweep);
    connect(replay, &AReplayProcessor::playbackStopped, this, &AGeoDataProcessor::mdrFinished);
    replay->startPlayback(kUnpaced, kInALoop, kFirstSweep, kLastSweep);
    m_mdrRunning = true;
    return true;
}

void AGeoDataProcessor::mdrFinished(bool status)
{
    m_mdrRunning = false;
    Q_EMIT mdrProcessingFinished(status);
}

void AGeoDataProcessor::addSweep(ASweep &sweep)
{
    AGeoData record = sweep.geoData();
    if (!record.isEmpty()) {
        takeInNmeaRecord(&record);
        sweep.setGeoData(record);
    }
    const QPointer<AGeoDataProcessor> self(this); // a receiver may delete the processor
    Q_EMIT sweepLoaded(sweep);
    if (self)
        m_sweeps.append(sweep);
}

int AGeoDataProcessor::assignWaypoints(int tolerance)
{
    int positioned = 0;
    const int count = m_sweeps.size();
    const QPointer<AGeoDataProcessor> self(this); // a receiver may delete the processor
    for (int i = 0; i < count; ++i) {
        Q_EMIT assigningSweepWaypoint(i, count);
        if (!self || i >= m_sweeps.size())
            break;
        ASweep &sweep = m_sweeps[i]; // only now: a receiver may have added one
        const AGeoData record = sweep.geoData();
        if (!record.isEmpty() && record.airPressure != 0.0F) {
            ++positioned;
            continue;
        }
        const AGeoData *waypoint = findWaypoint(sweep.startTime(), sweep.stopTime(), tolerance);
        if (waypoint && (record.isEmpty() || waypoint->airPressure != 0.0F)) {
            sweep.setGeoData(*waypoint);
            ++positioned;
        } else if (!record.isEmpty()) {
            ++positioned;
        }
    }
    return positioned;
}

void AGeoDataProcessor::processMeasurementData(const emu_entry *unit)
{
    // Deliberately for all: without a value in the first sweep the others aren't looked at.
    if (m_sweeps.isEmpty() || m_sweeps.first().values.isEmpty())
        return;
    if (!unit)
        unit = emu_find(m_sweeps.first().values.first().unit);
    const emu_entry *averagingUnit = unit && unit->logarithmic ? emu_find(unit->linear) : unit;

    for (const ASweep &sweep : qAsConst(m_sweeps)) {
        KmlRelevantData entry;
        entry.geoData = sweep.geoData();
        if (entry.geoData.isEmpty() || sweep.values.isEmpty())
            continue;
        const AMeasurementValue maximum = sweep.maximum();
        const AMeasurementValue minimum = sweep.minimum();
        if (m_maximum.isEmpty() || maximum.level > m_maximum.level)
            m_maximum = maximum;
        if (m_minimum.isEmpty() || m_minimum.level > minimum.level)
            m_minimum = minimum;

        entry.average = averageOf(sweep.values, averagingUnit, unit);
        entry.maximum = maximum.convertTo(unit);
        entry.minimum = minimum.convertTo(unit);
        entry.heading = static_cast<float>(entry.geoData.estimateHeading(true));
        if (entry.geoData.recordName.isEmpty())
            entry.geoData.recordName = isoText(entry.geoData.recordTime);
        entry.geoData.description = openBalloon(entry.geoData, entry.heading);
        m_kmlData.append(entry);
    }
    m_maximum = m_maximum.convertTo(unit);
    m_minimum = m_minimum.convertTo(unit);
}
