#pragma once

#include <cmath>

// Private to core/. What the sensors of a vehicle see: x points ahead, y to the right, z down. Angles in radians.

struct Orientation
{
    double heading = 0.0; // from north to the east
    double pitch = 0.0;   // the nose up
    double roll = 0.0;    // the right side down
};

inline void setGravity(const Orientation &orientation, float (&gravity)[3])
{
    gravity[0] = static_cast<float>(-std::sin(orientation.pitch));
    gravity[1] = static_cast<float>(std::sin(orientation.roll) * std::cos(orientation.pitch));
    gravity[2] = static_cast<float>(std::cos(orientation.roll) * std::cos(orientation.pitch));
}

// A field of strength 1 that points north and level.
inline void setMagneticField(const Orientation &orientation, float (&field)[3])
{
    const double ahead = std::cos(orientation.heading);
    const double right = -std::sin(orientation.heading);
    const double raised = ahead * std::sin(orientation.pitch);
    field[0] = static_cast<float>(ahead * std::cos(orientation.pitch));
    field[1] = static_cast<float>(raised * std::sin(orientation.roll) + right * std::cos(orientation.roll));
    field[2] = static_cast<float>(raised * std::cos(orientation.roll) - right * std::sin(orientation.roll));
}
