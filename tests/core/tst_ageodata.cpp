#include <core/ageodata.h>

#include "core/fieldorder.h"

#include <QtCore/QVariant>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>

class TestAGeoData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void queuedConnectionsKnowItFromTheStart();
    void theFieldsLieInTheAgreedOrder();
    void aDefaultRecordHasNothing();
    void isEmptyWithoutAPosition_data();
    void isEmptyWithoutAPosition();
    void aCopyIsIndependent();
    void travelsInAVariant();
    void convertsDegreesAndMinutes_data();
    void convertsDegreesAndMinutes();
    void theHeadingOfALevelVehicle_data();
    void theHeadingOfALevelVehicle();
    void aTiltedVehicleKeepsItsHeading_data();
    void aTiltedVehicleKeepsItsHeading();
    void withoutCompensationTheTiltBendsTheHeading();
    void withoutSensorsTheHeadingIsExactlyZero();
    void aHeadingNeverReachesAFullCircle();
    void whatIsNoDirectionIsHeadingZero();
    void pitchAndRoll_data();
    void pitchAndRoll();
    void rotationIsInDegrees();
};

namespace {

constexpr double kPi = 3.14159265358979323846;

double radians(double degrees)
{
    return degrees * kPi / 180.0;
}

// What the sensors of a vehicle see that turned by `heading`, then raised its nose by `pitch`, then leaned by `roll`.
// The earth's field also points down, as it does in the north.
AGeoData positioned(double heading, double pitch, double roll, double fieldDown = 2.0)
{
    const double h = radians(heading);
    const double p = radians(pitch);
    const double r = radians(roll);
    const auto inVehicle = [&](double north, double east, double down, float(&vector)[3]) {
        const double x1 = std::cos(h) * north + std::sin(h) * east;
        const double y1 = -std::sin(h) * north + std::cos(h) * east;
        const double x2 = std::cos(p) * x1 - std::sin(p) * down;
        const double z2 = std::sin(p) * x1 + std::cos(p) * down;
        vector[0] = static_cast<float>(x2);
        vector[1] = static_cast<float>(std::cos(r) * y1 + std::sin(r) * z2);
        vector[2] = static_cast<float>(-std::sin(r) * y1 + std::cos(r) * z2);
    };
    AGeoData data;
    inVehicle(0.0, 0.0, 9.81, data.accelerometer);
    inVehicle(1.0, 0.0, fieldDown, data.magnetometer);
    return data;
}

} // namespace

// The first test: any use of the type in a variant would register it.
void TestAGeoData::queuedConnectionsKnowItFromTheStart()
{
    QVERIFY(QMetaType::type("AGeoData") != QMetaType::UnknownType);
}

void TestAGeoData::theFieldsLieInTheAgreedOrder()
{
    const AGeoData record;
    QCOMPARE(static_cast<const void *>(&record.source), static_cast<const void *>(&record));
    QVERIFY(areInOrder(record.source, record.recordTime, record.latitude, record.longitude, record.fix, record.speed,
                       record.course, record.altitude, record.airPressure, record.accelerometer, record.magnetometer,
                       record.gyroscope, record.recordName, record.description));
}

void TestAGeoData::aDefaultRecordHasNothing()
{
    const AGeoData data;
    QVERIFY(data.isEmpty());
    QVERIFY(!data.recordTime.isValid());
    QCOMPARE(data.altitude, 0.0F);
    QCOMPARE(data.airPressure, 0.0F);
    QVERIFY(data.recordName.isEmpty());
    QVERIFY(data.description.isEmpty());
}

void TestAGeoData::isEmptyWithoutAPosition_data()
{
    QTest::addColumn<float>("latitude");
    QTest::addColumn<float>("longitude");
    QTest::addColumn<bool>("empty");
    QTest::newRow("none") << 0.0F << 0.0F << true;
    QTest::newRow("negative zero") << -0.0F << 0.0F << true;
    QTest::newRow("on the equator") << 0.0F << 1131.0F << false;
    QTest::newRow("on the first meridian") << -4807.0F << 0.0F << false;
    QTest::newRow("both") << 4807.0F << 1131.0F << false;
}

void TestAGeoData::isEmptyWithoutAPosition()
{
    QFETCH(float, latitude);
    QFETCH(float, longitude);
    AGeoData data;
    data.altitude = 100.0F;
    data.recordName = QStringLiteral("tower");
    data.latitude = latitude;
    data.longitude = longitude;
    QTEST(data.isEmpty(), "empty");
}

void TestAGeoData::aCopyIsIndependent()
{
    AGeoData data;
    data.latitude = 4807.0F;
    data.gyroscope[2] = 3.0F;
    data.recordName = QStringLiteral("tower");
    AGeoData copy = data;
    copy.latitude = 1.0F;
    copy.gyroscope[2] = 1.0F;
    copy.recordName = QStringLiteral("mast");
    QCOMPARE(data.latitude, 4807.0F);
    QCOMPARE(data.gyroscope[2], 3.0F);
    QCOMPARE(data.recordName, QStringLiteral("tower"));
    copy = data;
    QCOMPARE(copy.recordName, QStringLiteral("tower"));
}

void TestAGeoData::travelsInAVariant()
{
    AGeoData data;
    data.longitude = -12.5F;
    QCOMPARE(QVariant::fromValue(data).value<AGeoData>().longitude, -12.5F);
}

void TestAGeoData::convertsDegreesAndMinutes_data()
{
    QTest::addColumn<double>("nmea");
    QTest::addColumn<double>("degrees");
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("minutes alone") << 30.0 << 0.5;
    QTest::newRow("negative minutes alone") << -30.0 << -0.5;
    QTest::newRow("whole degrees") << 4800.0 << 48.0;
    QTest::newRow("both") << 4807.038 << 48.1173;
    QTest::newRow("west") << -8807.3033 << -88.12172166666667;
    QTest::newRow("three digits of degrees") << 17959.9999 << 179.99999833333334;
    QTest::newRow("the largest minutes") << 159.999 << 1.9999833333333334;
}

void TestAGeoData::convertsDegreesAndMinutes()
{
    QFETCH(double, nmea);
    QFETCH(double, degrees);
    QVERIFY(std::abs(AGeoData().convertNmeaLatLonToDecimal(nmea) - degrees) < 1e-12);
}

void TestAGeoData::theHeadingOfALevelVehicle_data()
{
    QTest::addColumn<double>("heading");
    for (const double heading : {0.0, 1.0, 45.0, 90.0, 135.0, 180.0, 225.0, 270.0, 315.0, 359.0})
        QTest::addRow("%g", heading) << heading;
}

void TestAGeoData::theHeadingOfALevelVehicle()
{
    QFETCH(double, heading);
    const AGeoData data = positioned(heading, 0.0, 0.0);
    QVERIFY(std::abs(data.estimateHeading(true) - heading) < 1e-4);
    QVERIFY(std::abs(data.estimateHeading(false) - heading) < 1e-4);

    AGeoData magnetometerAlone = data;
    std::fill(std::begin(magnetometerAlone.accelerometer), std::end(magnetometerAlone.accelerometer), 0.0F);
    QVERIFY(std::abs(magnetometerAlone.estimateHeading(true) - heading) < 1e-4);
}

void TestAGeoData::aTiltedVehicleKeepsItsHeading_data()
{
    QTest::addColumn<double>("heading");
    QTest::addColumn<double>("pitch");
    QTest::addColumn<double>("roll");
    for (const double heading : {10.0, 100.0, 190.0, 280.0}) {
        for (const double pitch : {-60.0, -5.0, 0.0, 30.0}) {
            for (const double roll : {-170.0, -20.0, 0.0, 45.0, 90.0})
                QTest::addRow("%g, %g, %g", heading, pitch, roll) << heading << pitch << roll;
        }
    }
}

void TestAGeoData::aTiltedVehicleKeepsItsHeading()
{
    QFETCH(double, heading);
    QFETCH(double, pitch);
    QFETCH(double, roll);
    const AGeoData data = positioned(heading, pitch, roll);
    QVERIFY(std::abs(data.estimateHeading(true) - heading) < 1e-3);
    const QVector3D tilt = data.convertTiltToDegree();
    QVERIFY(std::abs(static_cast<double>(tilt.x()) - pitch) < 1e-3);
    QVERIFY(std::abs(static_cast<double>(tilt.y()) - roll) < 1e-3);
}

void TestAGeoData::withoutCompensationTheTiltBendsTheHeading()
{
    const AGeoData data = positioned(90.0, 30.0, 0.0);
    QVERIFY(std::abs(data.estimateHeading(false) - 90.0) > 10.0);
}

void TestAGeoData::withoutSensorsTheHeadingIsExactlyZero()
{
    AGeoData data;
    QCOMPARE(data.estimateHeading(true), 0.0);
    QCOMPARE(data.estimateHeading(false), 0.0);
    QVERIFY(!std::signbit(data.estimateHeading(true)));
    data.accelerometer[0] = -1.0F;
    data.accelerometer[2] = 1.0F;
    QCOMPARE(data.estimateHeading(true), 0.0);
    QVERIFY(!std::signbit(data.estimateHeading(true)));
}

void TestAGeoData::aHeadingNeverReachesAFullCircle()
{
    AGeoData data;
    data.magnetometer[0] = 1.0F;
    for (const float right : {1e-30F, 1e-12F, 1e-9F, 1e-7F, 1e-5F}) {
        data.magnetometer[1] = right; // a hair west of north
        const double heading = data.estimateHeading(true);
        QVERIFY(heading >= 0.0 && heading < 360.0);
        QVERIFY(static_cast<float>(heading) < 360.0F);
    }
}

void TestAGeoData::whatIsNoDirectionIsHeadingZero()
{
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    AGeoData data;
    data.magnetometer[1] = kNaN;
    QCOMPARE(data.estimateHeading(true), 0.0);
    data.magnetometer[1] = std::numeric_limits<float>::infinity();
    QCOMPARE(data.estimateHeading(true), 0.0);
    data.magnetometer[1] = -1.0F;
    data.accelerometer[0] = kNaN;
    QVERIFY(std::abs(data.estimateHeading(true) - 90.0) < 1e-6);
    QCOMPARE(data.convertTiltToDegree(), QVector3D());
}

void TestAGeoData::pitchAndRoll_data()
{
    QTest::addColumn<QVector3D>("gravity");
    QTest::addColumn<QVector3D>("tilt");
    QTest::newRow("no sensor") << QVector3D(0, 0, 0) << QVector3D(0, 0, 0);
    QTest::newRow("level") << QVector3D(0, 0, 1) << QVector3D(0, 0, 0);
    QTest::newRow("nose up") << QVector3D(-1, 0, 1) << QVector3D(45, 0, 0);
    QTest::newRow("nose down") << QVector3D(9.81F, 0, 0) << QVector3D(-90, 0, 0);
    QTest::newRow("right side down") << QVector3D(0, 2, 2) << QVector3D(0, 45, 0);
    QTest::newRow("left side down") << QVector3D(0, -1, 0) << QVector3D(0, -90, 0);
    QTest::newRow("upside down") << QVector3D(0, 0, -1) << QVector3D(0, 180, 0);
}

void TestAGeoData::pitchAndRoll()
{
    QFETCH(QVector3D, gravity);
    QFETCH(QVector3D, tilt);
    AGeoData data;
    for (int i = 0; i < 3; ++i)
        data.accelerometer[i] = gravity[i];
    QVERIFY((data.convertTiltToDegree() - tilt).length() < 1e-4F);
}

void TestAGeoData::rotationIsInDegrees()
{
    AGeoData data;
    QCOMPARE(data.convertGyroToDegree(), QVector3D());
    data.gyroscope[0] = static_cast<float>(kPi);
    data.gyroscope[1] = static_cast<float>(-kPi / 2.0);
    data.gyroscope[2] = 1.0F;
    QVERIFY((data.convertGyroToDegree() - QVector3D(180.0F, -90.0F, 57.29578F)).length() < 1e-4F);
}

QTEST_GUILESS_MAIN(TestAGeoData)
#include "tst_ageodata.moc"
