#include "core/nmealog.h"

#include <core/amdrdocument.h>
#include <core/asimulateddevice.h>
#include <core/aveldoranfactory.h>

#include <QtCore/QPointer>

#include <algorithm>
#include <cmath>
#include <limits>

class TestASimulatedDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describesItself();
    void theSameSeedMeasuresTheSame();
    void anotherSeedMeasuresSomethingElse();
    void aSweepDependsOnItsNumberAlone();
    void pointsCoverTheRange_data();
    void pointsCoverTheRange();
    void withoutCarriersTheNoiseLiesAtTheFloor();
    void noiseDiffersFromSweepToSweep();
    void aCarrierStandsAtItsFrequencyWithItsWidth();
    void carriersFadeAlongTheDrive();
    void aCarrierFarOutOfTheRangeIsNotSeen();
    void carriersStandAllOverTheWidestRange();
    void sweepsFollowEachOtherInTime();
    void theVehicleMovesWhereItHeads();
    void theCourseIsOfAFullCircle();
    void theDriveIsClosed();
    void tiltAndRotationAreThoseOfACar();
    void followsATrack();
    void minutesStayBelowSixty();
    void standsBeforeAndBehindATrack();
    void aTrackMayCrossTheDateLine();
    void headsOnWhereItStands();
    void transmittersStandAlongATrack();
    void passesOverPointsThatAreNotFinite();
    void withoutPointsItIsTheTownAgain();
    void deliversPositionsAndSweepsInOrder();
    void runsUntilItIsStopped();
    void aReceiverMayStopRestartOrDelete();
    void suppressesPeaksInWhatItDelivers();
    void itsRecordingNamesIt();
};

namespace {

struct Offset
{
    double east = 0.0; // metres
    double north = 0.0;
};

Offset offsetOf(const AGeoData &from, const AGeoData &to)
{
    const auto degrees = [&](float nmeaForm) { return from.convertNmeaLatLonToDecimal(static_cast<double>(nmeaForm)); };
    constexpr double kMetresPerDegree = 111195.0;
    constexpr double kCosineOfLatitude = 0.6811;
    return {(degrees(to.longitude) - degrees(from.longitude)) * kMetresPerDegree * kCosineOfLatitude,
            (degrees(to.latitude) - degrees(from.latitude)) * kMetresPerDegree};
}

double metresBetween(const AGeoData &a, const AGeoData &b)
{
    const Offset offset = offsetOf(a, b);
    return std::hypot(offset.east, offset.north);
}

double bearing(const AGeoData &from, const AGeoData &to)
{
    const Offset offset = offsetOf(from, to);
    return std::atan2(offset.east, offset.north) * 180.0 / 3.14159265358979323846;
}

ASimulatedDevice::Carrier carrierAt(const char *frequency, const char *width = "200 kHz", double level = -40.0)
{
    ASimulatedDevice::Carrier carrier;
    carrier.frequency = AFrequency(frequency);
    carrier.width = AFrequency(width);
    carrier.level = level;
    return carrier;
}

} // namespace

void TestASimulatedDevice::describesItself()
{
    const ASimulatedDevice device(4711);
    QVERIFY(device.isReady());
    QVERIFY(device.informationList().size() >= 7);
    QVERIFY(!device.informationList().at(AVeldoranDevice::ModelName).isEmpty());
    QVERIFY(!device.informationList().at(AVeldoranDevice::FirmwareVersion).isEmpty());
    QCOMPARE(device.informationList().at(AVeldoranDevice::SerialNumber), QStringLiteral("4711"));
    QVERIFY(device.hasCapability(2));
    QVERIFY(device.hasCapability(8));
    QVERIFY(!device.hasCapability(128));
    QCOMPARE(device.optionMask(), quint16(8));
    QVERIFY(!device.customOptionText().isEmpty());
    QCOMPARE(device.chipInformation().name, QStringLiteral("4711"));
    QCOMPARE(device.chipInformation().description, ASimulatedDevice::simulatedChip().description);
}

void TestASimulatedDevice::theSameSeedMeasuresTheSame()
{
    const ASimulatedDevice a(7);
    const ASimulatedDevice b(7);
    for (const int number : {0, 1, 5, 1000}) {
        QVERIFY(a.sweep(number).values == b.sweep(number).values);
        QVERIFY(a.position(number) == b.position(number));
        QVERIFY(a.sweep(number).geoData() == b.position(number));
    }
}

void TestASimulatedDevice::anotherSeedMeasuresSomethingElse()
{
    const ASimulatedDevice a(7);
    const ASimulatedDevice b(8);
    QVERIFY(a.sweep(0).values != b.sweep(0).values);
    QVERIFY(!(a.carriers().first().frequency == b.carriers().first().frequency));
    QVERIFY(a.sweep(0).values != a.sweep(1).values);
}

void TestASimulatedDevice::aSweepDependsOnItsNumberAlone()
{
    const ASimulatedDevice device(3);
    const ASweep first = device.sweep(2);
    for (int i = 9; i >= 0; --i)
        device.sweep(i);
    QVERIFY(device.sweep(2).values == first.values);
    QVERIFY(device.sweep(-1).values == device.sweep(0).values);
}

void TestASimulatedDevice::pointsCoverTheRange_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<QByteArray>("end");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("count");
    QTest::newRow("usual") << QByteArray("400 MHz") << QByteArray("470 MHz") << 1001 << 1001;
    QTest::newRow("two points") << QByteArray("1 MHz") << QByteArray("2 MHz") << 2 << 2;
    QTest::newRow("fewer than two") << QByteArray("1 MHz") << QByteArray("2 MHz") << -5 << 2;
    QTest::newRow("one frequency") << QByteArray("1 MHz") << QByteArray("1 MHz") << 5 << 5;
    QTest::newRow("one hertz") << QByteArray("1000") << QByteArray("1001") << 5 << 5;
    QTest::newRow("all above zero") << QByteArray("0") << QByteArray("9223372036854775807") << 11 << 11;
    QTest::newRow("all below zero") << QByteArray("-9223372036854775808") << QByteArray("0") << 11 << 11;
    QTest::newRow("all") << QByteArray("-9223372036854775808") << QByteArray("9223372036854775807") << 11 << 11;
    QTest::newRow("more than half") << QByteArray("-5000000000 GHz") << QByteArray("5000000000 GHz") << 1001 << 1001;
    QTest::newRow("around zero") << QByteArray("-1 MHz") << QByteArray("1 MHz") << 401 << 401;
    QTest::newRow("parts of a hertz") << QByteArray("0.25") << QByteArray("100.75") << 11 << 11;
}

void TestASimulatedDevice::pointsCoverTheRange()
{
    QFETCH(QByteArray, begin);
    QFETCH(QByteArray, end);
    QFETCH(int, wanted);
    ASimulatedDevice device;
    device.setRange(AFrequency(begin.constData()), AFrequency(end.constData()), wanted);
    const QList<AMeasurementValue> values = device.sweep(0).values;
    QTEST(values.size(), "count");
    QVERIFY(values.first().frequency == AFrequency(begin.constData()));
    QVERIFY(values.last().frequency == AFrequency(end.constData()));
    const auto hertz = [](const AFrequency &frequency) { return frequency.floatValue(AFrequency::Hz); };
    const double first = hertz(values.first().frequency);
    const double span = hertz(values.last().frequency) - first;
    for (int i = 0; i < values.size(); ++i) {
        QCOMPARE(values.at(i).unit, quint8(0));
        QVERIFY(std::isfinite(values.at(i).level));
        QVERIFY(i == 0 || values.at(i - 1).frequency <= values.at(i).frequency);
        const double even = first + span * i / (values.size() - 1);
        QVERIFY(std::abs(hertz(values.at(i).frequency) - even) <= 1.0 + 1e-15 * span);
    }

    device.setRange(AFrequency("5 MHz"), AFrequency("1 MHz"), 3);
    QVERIFY(device.sweep(0).values.last().frequency == AFrequency("5 MHz"));
}

void TestASimulatedDevice::withoutCarriersTheNoiseLiesAtTheFloor()
{
    ASimulatedDevice device;
    device.setRange(AFrequency("1 GHz"), AFrequency("2 GHz"), 20001);
    device.setNoiseFloor(-90.0);
    device.setCarriers({});
    const QList<AMeasurementValue> values = device.sweep(3).values;
    double sum = 0.0;
    double highest = -200.0;
    double lowest = 0.0;
    for (const AMeasurementValue &value : values) {
        sum += std::pow(10.0, value.level / 10.0);
        highest = std::max(highest, value.level);
        lowest = std::min(lowest, value.level);
    }
    QVERIFY(std::abs(10.0 * std::log10(sum / values.size()) + 90.0) < 0.1);
    QVERIFY(highest > -88.0 && highest < -80.0);
    QVERIFY(lowest < -95.0 && lowest > -130.0);
}

void TestASimulatedDevice::noiseDiffersFromSweepToSweep()
{
    ASimulatedDevice device(3);
    device.setCarriers({});
    QVector<double> levels;
    for (int number = 0; number < 16; ++number) {
        const ASweep sweep = device.sweep(number);
        for (const AMeasurementValue &value : sweep.values)
            levels.append(value.level);
    }
    std::sort(levels.begin(), levels.end());
    QCOMPARE(std::adjacent_find(levels.cbegin(), levels.cend()), levels.cend());
}

void TestASimulatedDevice::aCarrierStandsAtItsFrequencyWithItsWidth()
{
    ASimulatedDevice device;
    device.setRange(AFrequency("100 MHz"), AFrequency("110 MHz"), 1001);
    device.setCarriers({carrierAt("104 MHz", "400 kHz", 20.0)});
    const ASweep sweep = device.sweep(0);
    QVERIFY(std::abs((sweep.maximum().frequency - AFrequency("104 MHz")).floatValue(AFrequency::kHz)) <= 10.0);
    const double peak = sweep.values.at(400).level;
    QVERIFY(std::abs(sweep.values.at(380).level - (peak - 3.0)) < 0.1);
    QVERIFY(std::abs(sweep.values.at(420).level - (peak - 3.0)) < 0.1);
    QVERIFY(sweep.values.at(400 + 60).level < peak - 25.0);
    QVERIFY(sweep.values.first().level < -90.0);
}

void TestASimulatedDevice::carriersFadeAlongTheDrive()
{
    ASimulatedDevice device;
    device.setRange(AFrequency("100 MHz"), AFrequency("110 MHz"), 101);
    ASimulatedDevice::Carrier east = carrierAt("105 MHz", "1 MHz");
    east.east = 1200.0;
    device.setCarriers({east});
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    // 150 s of the drive's 600 are at its eastern end, 450 s at its western.
    double near = 0.0;
    double far = 0.0;
    double changes = 0.0;
    for (int i = 0; i < 40; ++i) {
        near += device.sweep(130 + i).maximum().level / 40;
        far += device.sweep(430 + i).maximum().level / 40;
        changes += std::abs(device.sweep(430 + i).maximum().level - device.sweep(431 + i).maximum().level) / 40;
    }
    QVERIFY2(near > far + 10.0, qPrintable(QStringLiteral("%1 %2").arg(near).arg(far)));
    QVERIFY2(changes > 0.2 && changes < 15.0, qPrintable(QString::number(changes)));
}

void TestASimulatedDevice::aCarrierFarOutOfTheRangeIsNotSeen()
{
    ASimulatedDevice with(1);
    ASimulatedDevice without(1);
    with.setCarriers({carrierAt("10 GHz"), carrierAt("-10 GHz"), carrierAt("9223372036854775807", "1"),
                      carrierAt("100 MHz", "0", -std::numeric_limits<double>::infinity()),
                      carrierAt("100 MHz", "1 MHz", std::numeric_limits<double>::quiet_NaN())});
    without.setCarriers({});
    QVERIFY(with.sweep(0).values == without.sweep(0).values);
}

void TestASimulatedDevice::carriersStandAllOverTheWidestRange()
{
    ASimulatedDevice device;
    device.setRange(AFrequency("-9223372036854775808"), AFrequency("9223372036854775807"), 1001);
    const QVector<ASimulatedDevice::Carrier> carriers = device.carriers();
    for (int i = 0; i < carriers.size(); ++i) {
        const double part = carriers.at(i).frequency.floatValue(AFrequency::Hz) / 0x1p64 + 0.5;
        QCOMPARE(static_cast<int>(part * carriers.size()), i);
        QVERIFY(carriers.at(i).width > AFrequency("10000000 GHz"));
    }

    for (const char *frequency : {"-8000000000 GHz", "0", "8000000000 GHz"}) {
        device.setCarriers({carrierAt(frequency, "40000000 GHz")});
        const QList<AMeasurementValue> values = device.sweep(0).values;
        const auto highest = std::max_element(values.begin(), values.end(),
                                              [](const auto &a, const auto &b) { return a.level < b.level; });
        const double off =
            highest->frequency.floatValue(AFrequency::Hz) - AFrequency(frequency).floatValue(AFrequency::Hz);
        QVERIFY(std::abs(off) <= 0x1p64 / 1000.0);
    }
}

void TestASimulatedDevice::sweepsFollowEachOtherInTime()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 12, 31, 23, 59, 59), 400);
    QCOMPARE(device.sweep(0).startTime(), utc(2024, 12, 31, 23, 59, 59));
    QCOMPARE(device.sweep(0).stopTime(), utc(2024, 12, 31, 23, 59, 59, 399));
    QCOMPARE(device.sweep(3).startTime(), utc(2025, 1, 1, 0, 0, 0, 200));
    QCOMPARE(device.sweep(3).geoData().recordTime, device.sweep(3).stopTime());
    device.setBegin(utc(2024, 1, 1, 0, 0, 0), -5);
    QCOMPARE(device.sweep(1).startTime(), utc(2024, 1, 1, 0, 0, 0, 1));
}

void TestASimulatedDevice::theVehicleMovesWhereItHeads()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 2000);
    for (int i = 0; i < 300; i += 7) {
        const AGeoData here = device.position(i);
        const AGeoData there = device.position(i + 1);
        const double metres = metresBetween(here, there);
        QVERIFY(metres > 2.0 && metres < 60.0);
        const double speed = static_cast<double>(here.speed) / 3600.0 * 1852.0;
        QVERIFY(std::abs(metres / 2.0 - speed) < 3.0);
        QVERIFY(std::abs(std::remainder(here.estimateHeading(true) - static_cast<double>(here.course), 360.0)) < 0.01);
        QVERIFY(std::abs(std::remainder(here.estimateHeading(true) - bearing(here, there), 360.0)) < 10.0);
        QVERIFY(here.altitude > 250.0F && here.altitude < 450.0F);
        QVERIFY(here.airPressure > 950.0F && here.airPressure < 1000.0F);
        QVERIFY(!here.isEmpty());
        QCOMPARE(here.fix, quint8(1));
    }
}

void TestASimulatedDevice::theCourseIsOfAFullCircle()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    int west = 0;
    for (int i = 0; i < 600; ++i) {
        const float course = device.position(i).course;
        QVERIFY(course >= 0.0F && course < 360.0F);
        west += course > 180.0F;
    }
    QVERIFY(west > 100 && west < 500);
}

void TestASimulatedDevice::theDriveIsClosed()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    QVERIFY(metresBetween(device.position(0), device.position(600)) < 2.0);
    QVERIFY(metresBetween(device.position(0), device.position(200)) > 500.0);
}

void TestASimulatedDevice::tiltAndRotationAreThoseOfACar()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    float highestPitch = 0.0F;
    float highestRotation = 0.0F;
    for (int i = 0; i < 600; ++i) {
        const AGeoData data = device.position(i);
        const QVector3D tilt = data.convertTiltToDegree();
        QVERIFY(std::abs(tilt.x()) < 15.0F);
        QVERIFY(std::abs(tilt.y()) < 15.0F);
        highestPitch = std::max(highestPitch, std::abs(tilt.x()));
        highestRotation = std::max(highestRotation, std::abs(data.convertGyroToDegree().z()));
    }
    QVERIFY(highestPitch > 0.5F);
    QVERIFY(highestRotation > 0.5F && highestRotation < 45.0F);
}

namespace {

// 600 m to the east in a minute, a minute of rest, 600 m to the north in a minute.
QVector<ASimulatedDevice::TrackPoint> track()
{
    constexpr double kNorth = 600.0 / 111195.0;
    const double kEast = kNorth / std::cos(46.0 * 3.14159265358979323846 / 180.0);
    return {{10.0, 46.0, 14.0, 300.0},
            {70.0, 46.0, 14.0 + kEast, 330.0},
            {130.0, 46.0, 14.0 + kEast, 330.0},
            {190.0, 46.0 + kNorth, 14.0 + kEast, 330.0}};
}

bool isAt(const AGeoData &record, double latitude, double longitude)
{
    const auto degrees = [&](float nmeaForm) {
        return record.convertNmeaLatLonToDecimal(static_cast<double>(nmeaForm));
    };
    constexpr double kFloatMetres = 2e-5; // degrees
    return std::abs(degrees(record.latitude) - latitude) < kFloatMetres &&
           std::abs(degrees(record.longitude) - longitude) < kFloatMetres;
}

} // namespace

void TestASimulatedDevice::minutesStayBelowSixty()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    device.setTrack({{0.0, 47.9999999, -179.9999999, 300.0}});
    const AGeoData record = device.position(0);
    QCOMPARE(record.latitude, 4800.0F);
    QCOMPARE(record.longitude, -18000.0F);
}

void TestASimulatedDevice::followsATrack()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    const auto points = track();
    device.setTrack(points);
    const AGeoData halfway = device.position(39); // at the end of the sweep, 39.999 s
    QVERIFY(isAt(halfway, 46.0, (points.at(0).longitude + points.at(1).longitude) / 2.0));
    QVERIFY(std::abs(halfway.altitude - 315.0F) < 0.01F);
    QVERIFY(std::abs(halfway.speed - 10.0F / 1852.0F * 3600.0F) < 0.01F);
    QVERIFY(std::abs(halfway.course - 90.0F) < 0.01F);
    QVERIFY(std::abs(std::remainder(halfway.estimateHeading(true) - 90.0, 360.0)) < 0.01);
    QVERIFY(std::abs(halfway.convertTiltToDegree().x() - std::atan(0.05) * 180.0 / 3.14159265358979323846) < 0.01);
    QCOMPARE(halfway.gyroscope[2], 0.0F);
    const AGeoData later = device.position(159);
    QVERIFY(isAt(later, (points.at(2).latitude + points.at(3).latitude) / 2.0, points.at(3).longitude));
    QVERIFY(std::abs(std::remainder(static_cast<double>(later.course), 360.0)) < 0.01);
    QVERIFY(device.sweep(159).geoData() == later);
}

void TestASimulatedDevice::standsBeforeAndBehindATrack()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    const auto points = track();
    device.setTrack(points);
    for (const int number : {0, 8}) {
        QVERIFY(isAt(device.position(number), points.first().latitude, points.first().longitude));
        QCOMPARE(device.position(number).speed, 0.0F);
    }
    QVERIFY(isAt(device.position(100000), points.last().latitude, points.last().longitude));
    device.setTrack({points.at(1)});
    for (const int number : {0, 69, 70, 5000})
        QVERIFY(isAt(device.position(number), points.at(1).latitude, points.at(1).longitude));
}

void TestASimulatedDevice::aTrackMayCrossTheDateLine()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    device.setTrack({{0.0, -17.0, 179.99, 5.0}, {100.0, -17.0, -179.97, 5.0}});
    QVERIFY(isAt(device.position(0), -17.0, 179.9904));
    QVERIFY(isAt(device.position(74), -17.0, -179.98));
    QVERIFY(std::abs(device.position(50).course - 90.0F) < 0.01F);
    QVERIFY(device.position(50).speed < 100.0F); // not around the globe
}

void TestASimulatedDevice::headsOnWhereItStands()
{
    ASimulatedDevice device;
    device.setBegin(utc(2024, 5, 17, 8, 0, 0), 1000);
    device.setTrack(track());
    for (const int number : {0, 5, 75, 100, 125}) {
        const AGeoData standing = device.position(number);
        QCOMPARE(standing.speed, 0.0F);
        QVERIFY(std::abs(std::remainder(standing.estimateHeading(true) - 90.0, 360.0)) < 0.01);
        QCOMPARE(standing.gyroscope[2], 0.0F);
        QVERIFY(std::abs(standing.convertTiltToDegree().x()) < 0.01F);
    }
    QVERIFY(std::abs(std::remainder(device.position(500).estimateHeading(true), 360.0)) < 0.01);
}

void TestASimulatedDevice::transmittersStandAlongATrack()
{
    ASimulatedDevice device;
    const auto inTown = device.carriers();
    device.setTrack(track());
    QCOMPARE(device.carriers().size(), inTown.size());
    for (const ASimulatedDevice::Carrier &carrier : device.carriers()) { // its middle is 300 m from its ends
        QVERIFY(std::abs(carrier.east) <= 700.0);
        QVERIFY(std::abs(carrier.north) <= 700.0);
    }
    QVERIFY(device.carriers().first().east != inTown.first().east);
    ASimulatedDevice same;
    same.setTrack(track());
    QVERIFY(same.sweep(50).values == device.sweep(50).values);
}

void TestASimulatedDevice::passesOverPointsThatAreNotFinite()
{
    ASimulatedDevice device;
    ASimulatedDevice same;
    const double infinity = std::numeric_limits<double>::infinity();
    auto points = track();
    device.setTrack(points);
    points.insert(2, {100.0, std::nan(""), 14.0, 300.0});
    points.insert(1, {20.0, 46.0, infinity, 300.0});
    points.prepend({-infinity, 46.0, 14.0, 300.0});
    points.append({200.0, 46.0, 14.0, std::nan("")});
    same.setTrack(points);
    for (int number = 0; number < 800; number += 37)
        QVERIFY(device.position(number) == same.position(number));
}

void TestASimulatedDevice::withoutPointsItIsTheTownAgain()
{
    const ASimulatedDevice fresh;
    ASimulatedDevice device;
    device.setTrack(track());
    QVERIFY(!(device.position(5) == fresh.position(5)));
    device.setTrack({});
    QVERIFY(device.position(5) == fresh.position(5));
    QVERIFY(device.sweep(5).values == fresh.sweep(5).values);
}

void TestASimulatedDevice::deliversPositionsAndSweepsInOrder()
{
    ASimulatedDevice device;
    QStringList order;
    QList<ASweep> sweeps;
    int stoppedCount = 0;
    connect(&device, &ASimulatedDevice::gpsData, this, [&](const AGeoData &data) {
        order.append(QStringLiteral("position"));
        QCOMPARE(data.recordTime, device.position(5 + sweeps.size()).recordTime);
    });
    connect(&device, &ASweepProcessor::sweepFinished, this, [&](const ASweep &sweep) {
        order.append(QStringLiteral("sweep"));
        sweeps.append(sweep);
    });
    connect(&device, &ASimulatedDevice::stopped, this, [&] { ++stoppedCount; });
    device.start(5, 3, 0);
    QVERIFY(order.isEmpty());
    QVERIFY(device.isRunning());
    QVERIFY(QTest::qWaitFor([&] { return stoppedCount > 0; }));
    QVERIFY(!device.isRunning());
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("position sweep position sweep position sweep"));
    for (int i = 0; i < sweeps.size(); ++i)
        QVERIFY(sweeps.at(i).values == device.sweep(5 + i).values);
}

void TestASimulatedDevice::runsUntilItIsStopped()
{
    ASimulatedDevice device;
    int count = 0;
    int stoppedCount = 0;
    connect(&device, &ASweepProcessor::sweepFinished, this, [&] { ++count; });
    connect(&device, &ASimulatedDevice::stopped, this, [&] { ++stoppedCount; });
    device.start(std::numeric_limits<int>::max() - 3, -1, 0);
    QVERIFY(QTest::qWaitFor([&] { return count >= 10; }));
    device.stop();
    const int atStop = count;
    QTest::qWait(20);
    QCOMPARE(count, atStop);
    QCOMPARE(stoppedCount, 0);
    device.start(0, 0, 0);
    QVERIFY(QTest::qWaitFor([&] { return stoppedCount == 1; }));
    QCOMPARE(count, atStop);
}

void TestASimulatedDevice::aReceiverMayStopRestartOrDelete()
{
    QPointer<ASimulatedDevice> device = new ASimulatedDevice;
    int positions = 0;
    int sweeps = 0;
    connect(device, &ASweepProcessor::sweepFinished, this, [&] { ++sweeps; });
    connect(device, &ASimulatedDevice::gpsData, this, [&] {
        ++positions;
        if (positions == 1)
            device->stop();
        else if (positions == 2)
            device->start(0, 5, 0);
        else
            delete device;
    });
    device->start(0, 5, 0);
    QVERIFY(QTest::qWaitFor([&] { return positions == 1; }));
    QTest::qWait(10);
    QCOMPARE(positions, 1);
    device->start(0, 5, 0);
    QVERIFY(QTest::qWaitFor([&] { return device.isNull(); }));
    QCOMPARE(positions, 3);
    QCOMPARE(sweeps, 0);
}

void TestASimulatedDevice::suppressesPeaksInWhatItDelivers()
{
    ASimulatedDevice device;
    device.setRange(AFrequency("100 MHz"), AFrequency("110 MHz"), 1001);
    device.setCarriers({carrierAt("105 MHz", "10 kHz", -40.0)});
    device.setPeakSuppression(ASweepProcessor::SuppressionNF);
    double highest = 0.0;
    connect(&device, &ASweepProcessor::sweepFinished, this,
            [&](const ASweep &sweep) { highest = sweep.maximum().level; });
    device.start(0, 1, 0);
    QVERIFY(QTest::qWaitFor([&] { return highest != 0.0; }));
    QVERIFY(highest < device.sweep(0).maximum().level - 20.0);
}

void TestASimulatedDevice::itsRecordingNamesIt()
{
    const ASimulatedDevice device(99);
    AMdrDocument document;
    document.setDevice(device);
    for (int i = 0; i < 3; ++i)
        document.addSweep(device.sweep(i));
    QCOMPARE(document.sweepCount(), 3);
}

QTEST_GUILESS_MAIN(TestASimulatedDevice)
#include "tst_asimulateddevice.moc"
