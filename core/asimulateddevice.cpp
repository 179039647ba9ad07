#include "core/asimulateddevice.h"

#include "core/angles.h"
#include "core/emu.h"
#include "core/orientation.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

namespace {

constexpr int kMaximumPoints = 1000 * 1000;
constexpr int kCarrierCount = 8;
constexpr int kAverages = 4;                 // power readings that make one point
constexpr double kReferenceDistance = 100.0; // metres
constexpr double kNearest = 10.0;            // metres: an antenna is above the street
constexpr double kFadeDepthMinimum = 0.05;
constexpr double kFadePerSweep = 0.6;
constexpr double kBelowNoise = 40.0; // dB by which a carrier's skirt has to lie below the floor to be left out

// The drive: metres, seconds, degrees.
constexpr double kMiddleLatitude = 47.07;
constexpr double kMiddleLongitude = 15.44;
constexpr double kMetresPerDegree = 111195.0;
constexpr double kHalfWidth = 1200.0;
constexpr double kHalfHeight = 800.0;
constexpr double kLapSeconds = 600.0;
constexpr double kBesideTrack = 400.0; // metres up to which transmitters stand beside a track
constexpr double kMeanAltitude = 353.0;
constexpr double kHillHeight = 45.0;
constexpr double kWalkingPace = 1.0; // metres a second, slower than in the town anywhere
constexpr double kKnotsPerMetreSecond = 3600.0 / 1852.0;
constexpr double kDegreesPerCircle = 360.0;
constexpr double kCircle = 2.0 * kPi;

// What a number is made for, so that no two sorts share their randomness.
enum Purpose : quint32
{
    NoisePurpose = 1,
    CarrierPurpose = 2,
    FadePurpose = 3,
    ShadowPurpose = 4,
};

// A number from 0 to below 1 that depends on its arguments alone, by the mixing steps of SplitMix64 (Steele, Lea,
// Flood: Fast splittable pseudorandom number generators, 2014).
double uniform(quint64 seed, Purpose purpose, quint32 a, quint32 b) noexcept
{
    quint64 x = seed << 32 ^ quint64(purpose) << 28;
    for (const quint64 word : {quint64(a), quint64(b)}) { // each scrambled by itself, or a ^ b alone would count
        x = (x ^ word) + Q_UINT64_C(0x9e3779b97f4a7c15);
        x = (x ^ (x >> 30)) * Q_UINT64_C(0xbf58476d1ce4e5b9);
        x = (x ^ (x >> 27)) * Q_UINT64_C(0x94d049bb133111eb);
        x ^= x >> 31;
    }
    return static_cast<double>(x >> 11) * 0x1p-53;
}

double decibels(double ratio)
{
    return 10.0 * std::log10(ratio);
}

double ratio(double dB)
{
    return std::pow(10.0, dB / 10.0);
}

// Across zero a difference may be beyond the range of a frequency; on one side of it the frequencies' own is exact.
double hertzBetween(const AFrequency &from, const AFrequency &to)
{
    const bool isAcrossZero = (from < AFrequency()) != (to < AFrequency());
    return isAcrossZero ? to.floatValue(AFrequency::Hz) - from.floatValue(AFrequency::Hz)
                        : (to - from).floatValue(AFrequency::Hz);
}

AFrequency wholeHertz(quint64 count)
{
    return AFrequency::fromValue(static_cast<long long>(count), AFrequency::Hz);
}

// In two steps, since the way may be twice as long as the largest frequency.
AFrequency above(const AFrequency &begin, double hertz)
{
    constexpr double kMost = 0x1.fffffffffffffp63; // below 2^64
    const auto whole = static_cast<quint64>(std::min(hertz, kMost));
    return begin + wholeHertz(whole / 2) + wholeHertz(whole - whole / 2);
}

struct Place
{
    double east = 0.0;
    double north = 0.0;
    double altitude = 0.0;
};

Place townPlaceAt(double seconds)
{
    const double angle = kCircle * seconds / kLapSeconds;
    return {kHalfWidth * std::sin(angle), kHalfHeight * std::sin(2.0 * angle),
            kMeanAltitude + kHillHeight * std::sin(angle + 0.7)};
}

float nmeaForm(double degrees)
{
    const double whole = std::trunc(std::abs(degrees));
    const auto form = static_cast<float>(whole * 100.0 + (std::abs(degrees) - whole) * 60.0);
    const auto nextWhole = static_cast<float>((whole + 1.0) * 100.0);
    const bool isRoundedToSixtyMinutes = form >= static_cast<float>(whole * 100.0 + 60.0);
    return std::copysign(isRoundedToSixtyMinutes ? nextWhole : form, static_cast<float>(degrees));
}

// The international standard atmosphere, in hectopascal.
double pressureAt(double altitude)
{
    return 1013.25 * std::pow(std::max(0.0, 1.0 - 2.25577e-5 * altitude), 5.25588);
}

// A track on a plane.
class Track
{
public:
    struct Stop
    {
        double seconds = 0.0;
        Place place;
        double heading = 0.0; // radians, of the way from here on; where the vehicle stands, of the way to here
    };

    bool isEmpty() const { return m_stops.empty(); }
    double duration() const { return m_stops.empty() ? 0.0 : m_stops.back().seconds; }
    void append(double seconds, const Place &place) { m_stops.push_back({seconds, place, 0.0}); }

    void findHeadings()
    {
        const auto isMoving = [](const Place &from, const Place &to) {
            return from.east != to.east || from.north != to.north;
        };
        double heading = 0.0;
        std::size_t standing = 0; // those before the vehicle first moves
        bool hasMoved = false;
        for (std::size_t i = 0; i < m_stops.size(); ++i) {
            if (i + 1 < m_stops.size() && isMoving(m_stops[i].place, m_stops[i + 1].place)) {
                const Place &from = m_stops[i].place;
                const Place &to = m_stops[i + 1].place;
                heading = std::atan2(to.east - from.east, to.north - from.north);
                for (; !hasMoved && standing < i; ++standing)
                    m_stops[standing].heading = heading;
                hasMoved = true;
            }
            m_stops[i].heading = heading;
        }
    }

    Place placeAt(double seconds) const
    {
        const Stop &from = *stopBefore(seconds);
        const Stop &to = *std::min(stopBefore(seconds) + 1, m_stops.end() - 1);
        const double span = to.seconds - from.seconds;
        const double part = span > 0.0 ? std::clamp((seconds - from.seconds) / span, 0.0, 1.0) : 0.0;
        const auto between = [part](double a, double b) { return a + (b - a) * part; };
        return {between(from.place.east, to.place.east), between(from.place.north, to.place.north),
                between(from.place.altitude, to.place.altitude)};
    }
    double headingAt(double seconds) const { return stopBefore(seconds)->heading; }

private:
    // The last one at or before a time, the first one before that.
    std::vector<Stop>::const_iterator stopBefore(double seconds) const
    {
        const auto after = std::upper_bound(m_stops.begin(), m_stops.end(), seconds,
                                            [](double time, const Stop &stop) { return time < stop.seconds; });
        return after == m_stops.begin() ? after : after - 1;
    }

    std::vector<Stop> m_stops; // in ascending time
};

} // namespace

struct ASimulatedDevice::Private
{
    explicit Private(quint32 seedNumber)
        : seed(seedNumber)
    {}

    quint32 seed;
    AFrequency begin;
    AFrequency end;
    int pointCount = 2;
    double noiseFloor = -105.0;
    QVector<Carrier> carriers;
    Track track; // none in the town
    double middleLatitude = kMiddleLatitude;
    double middleLongitude = kMiddleLongitude;
    QDateTime beginTime = QDateTime(QDate(2024, 5, 17), QTime(8, 0), Qt::UTC);
    int sweepIntervalMs = 250;

    QTimer timer;
    int next = 0;
    int left = 0; // below 0: without an end
    int run = 0;  // changes with start() and stop()

    QDateTime timeOf(int number) const { return beginTime.addMSecs(qint64(number) * sweepIntervalMs); }
    double secondsAt(int number) const { return 1e-3 * sweepIntervalMs * number; }
    double span() const { return hertzBetween(begin, end); }
    AFrequency frequencyOf(int point) const;
    Place placeAt(double seconds) const { return track.isEmpty() ? townPlaceAt(seconds) : track.placeAt(seconds); }
    double metresPerDegreeEast() const
    {
        constexpr double kLeast = 1e-3; // at the poles
        return kMetresPerDegree * std::max(kLeast, std::cos(middleLatitude * kRadiansPerDegree));
    }
    void chooseCarriers();
    double receivedLevel(int carrier, int number) const;
    void addCarrier(int carrier, int number, std::vector<double> *powers) const;
};

AFrequency ASimulatedDevice::Private::frequencyOf(int point) const
{
    return point == pointCount - 1 ? end : above(begin, span() * point / (pointCount - 1));
}

void ASimulatedDevice::Private::chooseCarriers()
{
    carriers.clear();
    for (quint32 i = 0; i < kCarrierCount; ++i) {
        const auto chance = [&](quint32 what) { return uniform(seed, CarrierPurpose, i, what); };
        Carrier carrier;
        carrier.frequency = above(begin, span() * (i + 0.2 + 0.6 * chance(0)) / kCarrierCount);
        carrier.width = wholeHertz(static_cast<quint64>(span() / 200.0 * (0.5 + chance(1))));
        carrier.level = -60.0 + 40.0 * chance(2);
        if (track.isEmpty()) {
            carrier.east = 2.0 * kHalfWidth * (chance(3) - 0.5) * 1.5;
            carrier.north = 2.0 * kHalfHeight * (chance(4) - 0.5) * 1.5;
        } else {
            const Place passed = track.placeAt(track.duration() * chance(5));
            carrier.east = passed.east + 2.0 * kBesideTrack * (chance(3) - 0.5);
            carrier.north = passed.north + 2.0 * kBesideTrack * (chance(4) - 0.5);
        }
        carriers.append(carrier);
    }
}

// Free space, the shadows of houses that the vehicle passes in some seconds, and the fading from sweep to sweep.
double ASimulatedDevice::Private::receivedLevel(int carrier, int number) const
{
    const Carrier &source = carriers.at(carrier);
    const auto index = static_cast<quint32>(carrier);
    const Place place = placeAt(secondsAt(number));
    const double distance = std::max(kNearest, std::hypot(place.east - source.east, place.north - source.north));
    double level = source.level - 2.0 * decibels(distance / kReferenceDistance);

    for (const double metres : {35.0, 90.0, 310.0}) {
        const double phase = kCircle * uniform(seed, ShadowPurpose, index, static_cast<quint32>(metres));
        level += 2.0 * std::sin(kCircle * (place.east + 0.6 * place.north) / metres + phase);
    }

    const double position = number * kFadePerSweep;
    const double before = std::floor(position);
    const auto fade = [&](double at) {
        return std::max(kFadeDepthMinimum, uniform(seed, FadePurpose, index, static_cast<quint32>(at)));
    };
    const double part = position - before;
    return level + decibels(fade(before) * (1.0 - part) + fade(before + 1.0) * part);
}

void ASimulatedDevice::Private::addCarrier(int carrier, int number, std::vector<double> *powers) const
{
    const double level = receivedLevel(carrier, number);
    const double step = span() / (pointCount - 1);
    const double height = level - noiseFloor + kBelowNoise;
    if (height <= 0.0 || !std::isfinite(height))
        return;

    // Of Gaussian shape: 3 dB down at half the width, and with the square of the distance further.
    const double width = std::max(carriers.at(carrier).width.floatValue(AFrequency::Hz), std::max(step, 1.0));
    const double decibelsAtHalfWidth = decibels(2.0);
    const double reach = width / 2.0 * std::sqrt(height / decibelsAtHalfWidth);
    const double middle = hertzBetween(begin, carriers.at(carrier).frequency);
    const double pointsPerHertz = step > 0.0 ? 1.0 / step : 0.0;
    const double last = pointCount - 1;
    const int from = static_cast<int>(std::clamp(std::ceil((middle - reach) * pointsPerHertz), 0.0, last + 1.0));
    const int to = static_cast<int>(std::clamp(std::floor((middle + reach) * pointsPerHertz), -1.0, last));
    for (int i = from; i <= to; ++i) {
        const double off = (i * step - middle) / (width / 2.0);
        (*powers)[static_cast<std::size_t>(i)] += ratio(level - decibelsAtHalfWidth * off * off);
    }
}

ASimulatedDevice::ASimulatedDevice(quint32 seed, QObject *parent)
    : ASweepProcessor(parent)
    , d(std::make_unique<Private>(seed))
{
    setRange(AFrequency("87.5 MHz"), AFrequency("108 MHz"), 501);
    connect(&d->timer, &QTimer::timeout, this, &ASimulatedDevice::deliverNext);
}

ASimulatedDevice::~ASimulatedDevice() = default;

QString ASimulatedDevice::customOptionText() const
{
    return QStringLiteral("SIM");
}

int ASimulatedDevice::hardwareRevision() const
{
    return 1;
}

bool ASimulatedDevice::isReady() const
{
    return true;
}

QStringList ASimulatedDevice::informationList() const
{
    return {QStringLiteral("SIM1"),
            QStringLiteral("Simulated spectrum analyser"),
            QString(),
            QString(),
            QStringLiteral("1.0"),
            QString(),
            QString::number(d->seed)};
}

quint16 ASimulatedDevice::optionMask() const
{
    return CustomOption;
}

bool ASimulatedDevice::hasCapability(int capability) const
{
    return capability == NoiseFloorSuppression || capability == BootLogo;
}

AVeldoranChipInformation ASimulatedDevice::chipInformation() const
{
    AVeldoranChipInformation chip = simulatedChip();
    chip.name = QString::number(d->seed);
    return chip;
}

AVeldoranChipInformation ASimulatedDevice::simulatedChip()
{
    AVeldoranChipInformation chip;
    chip.name = QStringLiteral("1");
    chip.description = QStringLiteral("Simulated spectrum analyser");
    return chip;
}

quint32 ASimulatedDevice::seed() const
{
    return d->seed;
}

void ASimulatedDevice::setRange(const AFrequency &begin, const AFrequency &end, int pointCount)
{
    d->begin = begin;
    d->end = std::max(begin, end);
    d->pointCount = std::clamp(pointCount, 2, kMaximumPoints);
    d->chooseCarriers();
}

void ASimulatedDevice::setNoiseFloor(double level)
{
    d->noiseFloor = level;
}

void ASimulatedDevice::setCarriers(const QVector<Carrier> &carriers)
{
    d->carriers = carriers;
}

QVector<ASimulatedDevice::Carrier> ASimulatedDevice::carriers() const
{
    return d->carriers;
}

void ASimulatedDevice::setBegin(const QDateTime &begin, int sweepIntervalMs)
{
    d->beginTime = begin.toUTC();
    d->sweepIntervalMs = std::max(1, sweepIntervalMs);
}

void ASimulatedDevice::setTrack(const QVector<TrackPoint> &track)
{
    QVector<TrackPoint> points;
    std::copy_if(track.begin(), track.end(), std::back_inserter(points), [](const TrackPoint &point) {
        return std::isfinite(point.seconds) && std::isfinite(point.latitude) && std::isfinite(point.longitude) &&
               std::isfinite(point.altitude);
    });
    d->track = Track();
    d->middleLatitude = kMiddleLatitude;
    d->middleLongitude = kMiddleLongitude;
    if (!points.isEmpty()) {
        double south = points.first().latitude;
        double north = south;
        double west = 0.0; // degrees from the first point
        double east = 0.0;
        const auto eastOfFirst = [first = points.first().longitude](const TrackPoint &point) {
            return std::remainder(point.longitude - first, kDegreesPerCircle);
        };
        for (const TrackPoint &point : qAsConst(points)) {
            south = std::min(south, point.latitude);
            north = std::max(north, point.latitude);
            west = std::min(west, eastOfFirst(point));
            east = std::max(east, eastOfFirst(point));
        }
        const double middleEast = (west + east) / 2.0;
        d->middleLatitude = (south + north) / 2.0;
        d->middleLongitude = points.first().longitude + middleEast;
        for (const TrackPoint &point : qAsConst(points)) {
            d->track.append(point.seconds, {(eastOfFirst(point) - middleEast) * d->metresPerDegreeEast(),
                                            (point.latitude - d->middleLatitude) * kMetresPerDegree, point.altitude});
        }
        d->track.findHeadings();
    }
    d->chooseCarriers();
}

ASweep ASimulatedDevice::sweep(int number) const
{
    const int sweepNumber = std::max(0, number);
    const double floorPower = ratio(d->noiseFloor);
    std::vector<double> powers(static_cast<std::size_t>(d->pointCount));
    for (std::size_t i = 0; i < powers.size(); ++i) {
        double product = 1.0; // of uniform numbers: their logarithms add up to the sum of exponential powers
        for (quint32 k = 0; k < kAverages; ++k) {
            product *= 1.0 - uniform(d->seed, NoisePurpose, static_cast<quint32>(sweepNumber),
                                     static_cast<quint32>(i) * kAverages + k);
        }
        powers[i] = -std::log(product) / kAverages * floorPower;
    }
    for (int i = 0; i < d->carriers.size(); ++i)
        d->addCarrier(i, sweepNumber, &powers);

    QList<AMeasurementValue> values;
    values.reserve(d->pointCount);
    for (int i = 0; i < d->pointCount; ++i)
        values.append({decibels(powers[static_cast<std::size_t>(i)]), kEmuDecibelMilliwatt, d->frequencyOf(i), 0, 0.0});
    ASweep result(values, d->timeOf(sweepNumber), d->timeOf(sweepNumber).addMSecs(d->sweepIntervalMs - 1));
    result.setGeoData(position(sweepNumber));
    return result;
}

AGeoData ASimulatedDevice::position(int number) const
{
    constexpr double kStep = 0.5; // seconds
    const int sweepNumber = std::max(0, number);
    const double seconds = d->secondsAt(sweepNumber) + 1e-3 * (d->sweepIntervalMs - 1);
    const Place place = d->placeAt(seconds);
    const Place before = d->placeAt(seconds - kStep);
    const Place after = d->placeAt(seconds + kStep);
    const double east = (after.east - before.east) / (2.0 * kStep);
    const double north = (after.north - before.north) / (2.0 * kStep);
    const double up = (after.altitude - before.altitude) / (2.0 * kStep);
    const double speed = std::hypot(east, north);
    const auto turnRate = [&](const Place &from, const Place &through, const Place &to) {
        if ((from.east == through.east && from.north == through.north) ||
            (through.east == to.east && through.north == to.north))
            return 0.0; // one that stands doesn't turn
        const double first = std::atan2(through.east - from.east, through.north - from.north);
        const double second = std::atan2(to.east - through.east, to.north - through.north);
        return std::remainder(second - first, kCircle) / kStep;
    };

    Orientation orientation;
    orientation.heading = speed == 0.0 && !d->track.isEmpty() ? d->track.headingAt(seconds) : std::atan2(east, north);
    orientation.pitch = std::atan2(up, std::max(kWalkingPace, speed)); // a track's altitude may drift while it stands
    const double rotation = turnRate(before, place, after);
    orientation.roll = -0.2 * std::atan(rotation * speed / 9.81); // a car leans out of a bend

    AGeoData data;
    data.recordTime = d->timeOf(sweepNumber).addMSecs(d->sweepIntervalMs - 1);
    data.latitude = nmeaForm(d->middleLatitude + place.north / kMetresPerDegree);
    data.longitude =
        nmeaForm(std::remainder(d->middleLongitude + place.east / d->metresPerDegreeEast(), kDegreesPerCircle));
    data.fix = 1;
    data.speed = static_cast<float>(speed * kKnotsPerMetreSecond);
    const double course = orientation.heading / kRadiansPerDegree;
    data.course = static_cast<float>(course < 0.0 ? course + 360.0 : course);
    data.altitude = static_cast<float>(place.altitude);
    data.airPressure = static_cast<float>(pressureAt(place.altitude));
    setGravity(orientation, data.accelerometer);
    setMagneticField(orientation, data.magnetometer);
    data.gyroscope[2] = static_cast<float>(rotation);
    return data;
}

void ASimulatedDevice::start(int first, int count, int intervalMs)
{
    d->next = std::max(0, first);
    d->left = count;
    ++d->run;
    d->timer.start(std::max(0, intervalMs));
}

void ASimulatedDevice::stop()
{
    ++d->run;
    d->timer.stop();
}

bool ASimulatedDevice::isRunning() const
{
    return d->timer.isActive();
}

void ASimulatedDevice::deliverNext()
{
    if (d->left == 0) {
        d->timer.stop();
        Q_EMIT stopped();
        return;
    }
    if (d->left > 0)
        --d->left;
    const int number = d->next;
    d->next = number < std::numeric_limits<int>::max() ? number + 1 : 0;

    const int run = d->run;
    const QPointer<ASimulatedDevice> alive(this);
    Q_EMIT gpsData(position(number));
    if (!alive || d->run != run)
        return;
    ASweep measured = sweep(number);
    deliver(&measured);
}
