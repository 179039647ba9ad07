#include "apps/aveldoran/driveprocessor.h"

#include "apps/aveldoran/console.h"
#include "apps/aveldoran/valuetext.h"

#include <core/agpsloggerdevice.h>
#include <core/amdrdocument.h>
#include <core/areplayprocessor.h>
#include <core/emu.h>

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QPointer>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

namespace {

constexpr double kDegreesPerCircle = 360.0;
constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180.0;
constexpr double kEarthRadiusMetres = 6371008.8; // the mean one

bool hasPosition(const AGeoData &record)
{
    return !record.isEmpty() && std::fabs(record.latitude) <= 90.0F && std::fabs(record.longitude) <= 180.0F &&
           std::isfinite(record.altitude);
}

bool hasVector(const float (&vector)[3])
{
    return vector[0] != 0.0F || vector[1] != 0.0F || vector[2] != 0.0F;
}

// Along the great circle.
double metresBetween(const AGeoData &a, const AGeoData &b)
{
    const double latitudeA = static_cast<double>(a.latitude) * kRadiansPerDegree;
    const double latitudeB = static_cast<double>(b.latitude) * kRadiansPerDegree;
    const double longitudes = (static_cast<double>(b.longitude) - static_cast<double>(a.longitude)) * kRadiansPerDegree;
    const double sineOfLatitudes = std::sin((latitudeB - latitudeA) / 2.0);
    const double sineOfLongitudes = std::sin(longitudes / 2.0);
    const double haversine = sineOfLatitudes * sineOfLatitudes +
                             std::cos(latitudeA) * std::cos(latitudeB) * sineOfLongitudes * sineOfLongitudes;
    return 2.0 * kEarthRadiusMetres * std::asin(std::min(1.0, std::sqrt(haversine)));
}

// The shortest span of longitudes that holds all: what lies outside the widest gap between them.
void findLongitudes(std::vector<double> longitudes, double *west, double *east)
{
    std::sort(longitudes.begin(), longitudes.end());
    *west = longitudes.front();
    *east = longitudes.back();
    double widest = longitudes.front() + kDegreesPerCircle - longitudes.back();
    for (std::size_t i = 1; i < longitudes.size(); ++i) {
        if (longitudes[i] - longitudes[i - 1] > widest) {
            widest = longitudes[i] - longitudes[i - 1];
            *west = longitudes[i];
            *east = longitudes[i - 1];
        }
    }
}

bool beginsAsXml(QFile *file)
{
    constexpr qint64 kLookedAt = 256;
    const QByteArray begin = file->peek(kLookedAt);
    for (const char c : begin) {
        if (c == '<')
            return true;
        const bool isBlankOrByteOrderMark = std::strchr(" \t\r\n\xef\xbb\xbf\xfe\xff", c); // its 0 is one of UTF-16
        if (!isBlankOrByteOrderMark)
            return false;
    }
    return false;
}

bool canBeDrawn(const AGeoDataProcessor::KmlRelevantData &entry)
{
    return hasPosition(entry.geoData) && std::isfinite(entry.minimum.level) && std::isfinite(entry.average.level) &&
           std::isfinite(entry.maximum.level);
}

bool hasLevelIn(const AMeasurementValue &value, const emu_entry *unit)
{
    return std::isfinite(value.level) && (value.unit == unit->id || std::isfinite(value.convertTo(unit).level));
}

} // namespace

DriveProcessor::DriveProcessor(QObject *parent)
    : AGeoDataProcessor(parent)
{}

DriveProcessor::Source DriveProcessor::read(const QString &fileName, Format format)
{
    Source source;
    Console::progress(QStringLiteral("reading %1").arg(fileName));
    const int before = m_waypoints.size();
    auto file = std::make_unique<QFile>(fileName);
    if (fileName.isEmpty() || !file->open(QIODevice::ReadOnly)) {
        source.errorText = QStringLiteral("%1: can't be read: %2").arg(fileName, file->errorString());
    } else {
        source.format = format != AnyFormat ? format : beginsAsXml(file.get()) ? Gpx : Nmea;
        if (source.format == Gpx)
            readGpx(file.get(), &source);
        else
            readNmea(file.release(), &source);
    }
    source.waypoints = m_waypoints.size() - before;
    if (source.errorText.isEmpty() && source.waypoints == 0) {
        source.errorText =
            source.format == Gpx
                ? QStringLiteral("%1: its track has no points (trkpt)").arg(fileName)
                : QStringLiteral("%1: expected GPX, or NMEA 0183 sentences with a position, found none").arg(fileName);
    }
    Console::clearProgress();
    return source;
}

void DriveProcessor::readGpx(QFile *file, Source *source)
{
    QString message;
    int line = 0;
    int column = 0;
    const bool isMarkup = beginsAsXml(file);
    const bool isRead = loadGpxDocument(file, &message, &line, &column);
    const QString root = m_gpxDocument.documentElement().tagName();
    source->tracks = m_gpxDocument.elementsByTagName(QStringLiteral("trk")).size();
    m_gpxDocument = QDomDocument(); // it takes far more memory than the waypoints
    if (isRead)
        return;
    if (file->error() != QFileDevice::NoError)
        source->errorText = QStringLiteral("%1: can't be read: %2").arg(file->fileName(), file->errorString());
    else if (!isMarkup)
        source->errorText = QStringLiteral("%1: expected a GPX document, found none").arg(file->fileName());
    else if (!message.isEmpty())
        source->errorText = QStringLiteral("%1:%2:%3: can't be read as GPX: %4")
                                .arg(file->fileName(), QString::number(line), QString::number(column), message);
    else if (root != QLatin1String("gpx"))
        source->errorText =
            QStringLiteral("%1: expected a GPX document, found the element '%2'").arg(file->fileName(), root);
    else
        source->errorText = QStringLiteral("%1: no track (trk) to read; waypoints (wpt) and routes (rte) are not read")
                                .arg(file->fileName());
}

void DriveProcessor::readNmea(QFile *file, Source *source)
{
    constexpr int kSilenceMs = 10000;
    auto *logger = new AGpsLoggerDevice(this, file); // it takes the file over, and is deleted when the intake ends
    const QPointer<QFile> reading = file;
    const qint64 size = file->size();
    const QString fileName = file->fileName();
    const QString text = QStringLiteral("reading %1").arg(fileName);
    connect(logger, &AGpsLoggerDevice::finished, this, &DriveProcessor::finishNmeaProcessing);
    const auto progress = connect(this, &AGeoDataProcessor::nmeaRecordProcessed, this, [reading, text, size] {
        if (reading && size > 0)
            Console::progressBar(text, reading->pos(), size);
    });
    // What is a file doesn't fall silent: it may hold any number of sentences without a position.
    const int timeout = logger->ioIsFile() ? std::numeric_limits<int>::max() : kSilenceMs;
    const bool isRead = loadStoredNmeaContent(logger, -1, timeout);
    disconnect(progress);
    if (!isRead || (reading && reading->error() != QFileDevice::NoError))
        source->errorText = QStringLiteral("%1: can't be read: %2")
                                .arg(fileName, reading ? reading->errorString() : QStringLiteral("it was closed"));
}

int DriveProcessor::removeUnusableWaypoints()
{
    int removed = 0;
    for (auto waypoint = m_waypoints.begin(); waypoint != m_waypoints.end();) {
        if (hasPosition(*waypoint.value())) {
            ++waypoint;
            continue;
        }
        delete waypoint.value();
        waypoint = m_waypoints.erase(waypoint);
        ++removed;
    }
    return removed;
}

void DriveProcessor::nameWaypoints()
{
    for (AGeoData *record : qAsConst(m_waypoints)) {
        if (record->recordName.isEmpty())
            record->recordName = timeText(record->recordTime);
    }
}

std::vector<const AGeoData *> DriveProcessor::waypoints() const
{
    std::vector<const AGeoData *> all(m_waypoints.begin(), m_waypoints.end());
    for (auto begin = all.begin(); begin != all.end();) { // of one time, the last one stands first
        const auto end = std::find_if(
            begin, all.end(), [&](const AGeoData *record) { return record->recordTime != (*begin)->recordTime; });
        std::reverse(begin, end);
        begin = end;
    }
    return all;
}

WaypointSummary DriveProcessor::summary() const
{
    WaypointSummary summary;
    std::vector<double> longitudes;
    const AGeoData *before = nullptr;
    for (const AGeoData *record : waypoints()) {
        ++summary.count;
        if (!record->recordTime.isValid()) {
            ++summary.withoutTime;
        } else {
            summary.begin = summary.begin.isValid() ? summary.begin : record->recordTime;
            summary.end = record->recordTime;
        }
        summary.hasCompass = summary.hasCompass || hasVector(record->magnetometer);
        summary.hasTilt = summary.hasTilt || hasVector(record->accelerometer);
        summary.hasGyroscope = summary.hasGyroscope || hasVector(record->gyroscope);
        summary.hasPressure = summary.hasPressure || record->airPressure != 0.0F;
        if (!hasPosition(*record)) {
            ++summary.withoutPosition;
            continue;
        }
        const auto latitude = static_cast<double>(record->latitude);
        const auto altitude = static_cast<double>(record->altitude);
        summary.south = before ? std::min(summary.south, latitude) : latitude;
        summary.north = before ? std::max(summary.north, latitude) : latitude;
        summary.lowestMetres = before ? std::min(summary.lowestMetres, altitude) : altitude;
        summary.highestMetres = before ? std::max(summary.highestMetres, altitude) : altitude;
        summary.lengthMetres += before ? metresBetween(*before, *record) : 0.0;
        longitudes.push_back(static_cast<double>(record->longitude));
        before = record;
    }
    if (!longitudes.empty())
        findLongitudes(std::move(longitudes), &summary.west, &summary.east);
    summary.hasAltitude = summary.lowestMetres != 0.0 || summary.highestMetres != 0.0;
    return summary;
}

bool DriveProcessor::takeInWaypoints(const AMdrDocument &document)
{
    const int count = document.recordCount();
    AGeoData record;
    for (int number = 0; number < count; ++number) {
        if (document.recordType(number) != AMdrDocument::GeoDataRecord)
            continue;
        if (!document.readGeoData(number, &record))
            return false;
        addNmeaRecord(record);
    }
    return true;
}

DriveProcessor::Measured DriveProcessor::measure(AMdrDocument *document, const emu_entry *unit, int toleranceMs)
{
    constexpr int kSweepsInMemory = 100;
    Measured measured;
    QEventLoop loop;
    const auto sweeps = connect(this, &AGeoDataProcessor::sweepLoaded, this, [=, result = &measured] {
        if (m_sweeps.size() >= kSweepsInMemory)
            reduceSweeps(unit, toleranceMs, result);
        Console::progressBar(QStringLiteral("measuring"), ++result->sweeps, document->sweepCount());
    });
    const auto end = connect(this, &AGeoDataProcessor::mdrProcessingFinished, this,
                             [result = &measured, waiting = &loop](bool status) {
                                 result->isWhole = status;
                                 waiting->quit();
                             });
    if (processMdrData(document)) {
        const QList<AReplayProcessor *> replays = findChildren<AReplayProcessor *>();
        for (AReplayProcessor *replay : replays)
            disconnect(replay, &AReplayProcessor::gpsData, this, nullptr); // they are there already
        loop.exec();
    }
    disconnect(sweeps);
    disconnect(end);
    reduceSweeps(unit, toleranceMs, &measured);
    measured.unusable += removeUnusableMeasurements();
    findExtremes();
    Console::clearProgress();
    return measured;
}

void DriveProcessor::reduceSweeps(const emu_entry *unit, int toleranceMs, Measured *measured)
{
    measured->positioned += assignWaypoints(toleranceMs);
    for (ASweep &sweep : m_sweeps) {
        if (!sweep.geoData().isEmpty())
            removeUnusablePoints(&sweep, unit, measured);
    }
    // One without values that comes first would end the processing.
    m_sweeps.erase(
        std::remove_if(m_sweeps.begin(), m_sweeps.end(), [](const ASweep &sweep) { return sweep.values.isEmpty(); }),
        m_sweeps.end());
    processMeasurementData(unit);
    m_sweeps.clear();
}

// A single one of them would make the average none, and with it the whole sweep.
void DriveProcessor::removeUnusablePoints(ASweep *sweep, const emu_entry *unit, Measured *measured)
{
    const auto isUnusable = [unit](const AMeasurementValue &value) { return !hasLevelIn(value, unit); };
    QList<AMeasurementValue> &values = sweep->values;
    if (std::none_of(values.constBegin(), values.constEnd(), isUnusable))
        return;
    const int before = values.size();
    values.erase(std::remove_if(values.begin(), values.end(), isUnusable), values.end());
    if (values.isEmpty())
        ++measured->unusable;
    else
        measured->unusablePoints += before - values.size();
}

int DriveProcessor::removeUnusableMeasurements()
{
    const int before = m_kmlData.size();
    m_kmlData.erase(std::remove_if(m_kmlData.begin(), m_kmlData.end(),
                                   [](const KmlRelevantData &entry) { return !canBeDrawn(entry); }),
                    m_kmlData.end());
    return before - m_kmlData.size();
}

// Those of the last sweeps are there, in part before their conversion.
void DriveProcessor::findExtremes()
{
    if (m_kmlData.isEmpty())
        return;
    m_minimum = m_kmlData.constFirst().minimum;
    m_maximum = m_kmlData.constFirst().maximum;
    for (const KmlRelevantData &entry : qAsConst(m_kmlData)) {
        if (entry.minimum.level < m_minimum.level)
            m_minimum = entry.minimum;
        if (entry.maximum.level > m_maximum.level)
            m_maximum = entry.maximum;
    }
}
