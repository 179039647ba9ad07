#pragma once

#include <QtCore/QString>

// A number with six decimals, as a position in a KML document has them. Private to geo/.

inline QString fixedNumber(double value)
{
    constexpr int kDecimals = 6;
    return QString::number(value, 'f', kDecimals);
}

inline QString fixedNumber(float value)
{
    return fixedNumber(static_cast<double>(value));
}
