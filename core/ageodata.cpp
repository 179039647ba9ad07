#include "core/ageodata.h"

#include "core/angles.h"

#include <QtCore/QCoreApplication>

#include <cmath>

namespace {

void registerTypes()
{
    qRegisterMetaType<AGeoData>("AGeoData");
}
Q_CONSTRUCTOR_FUNCTION(registerTypes)

constexpr double kFullCircle = 360.0;

struct Tilt
{
    double pitch = 0.0; // radians
    double roll = 0.0;
};

Tilt tiltOf(const float (&gravity)[3]) noexcept
{
    const double x = gravity[0];
    const double y = gravity[1];
    const double z = gravity[2];
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z) || (x == 0.0 && y == 0.0 && z == 0.0))
        return {};
    return {std::atan2(-x, std::hypot(y, z)), std::atan2(y, z)};
}

// No -0.0 in texts.
float degrees(double radians) noexcept
{
    return static_cast<float>(radians * kDegreesPerRadian) + 0.0F;
}

} // namespace

double AGeoData::convertNmeaLatLonToDecimal(double value) const noexcept
{
    const double wholeDegrees = std::trunc(value / 100.0);
    return wholeDegrees + (value - wholeDegrees * 100.0) / 60.0;
}

double AGeoData::estimateHeading(bool tiltCompensated) const noexcept
{
    double ahead = magnetometer[0];
    double right = magnetometer[1];
    if (tiltCompensated) {
        const double down = magnetometer[2];
        const Tilt tilt = tiltOf(accelerometer);
        ahead = ahead * std::cos(tilt.pitch) +
                (right * std::sin(tilt.roll) + down * std::cos(tilt.roll)) * std::sin(tilt.pitch);
        right = right * std::cos(tilt.roll) - down * std::sin(tilt.roll);
    }
    if (!std::isfinite(ahead) || !std::isfinite(right) || (ahead == 0.0 && right == 0.0))
        return 0.0;

    double heading = std::atan2(-right, ahead) * kDegreesPerRadian;
    if (heading < 0.0)
        heading += kFullCircle;
    return static_cast<float>(heading) < static_cast<float>(kFullCircle) ? heading + 0.0 : 0.0;
}

QVector3D AGeoData::convertTiltToDegree() const noexcept
{
    const Tilt tilt = tiltOf(accelerometer);
    return {degrees(tilt.pitch), degrees(tilt.roll), 0.0F};
}

QVector3D AGeoData::convertGyroToDegree() const noexcept
{
    return {degrees(gyroscope[0]), degrees(gyroscope[1]), degrees(gyroscope[2])};
}
