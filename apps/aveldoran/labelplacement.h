#pragma once

#include <QtCore/QVector>

// Places for labels in a row: as near to the wanted places (in the sense of least squares) as they can be while
// neighbours are `distance` apart and all lie from `begin` to `end`. `wanted` is in ascending order. If there is no
// room for all of them, the places are closer together.
QVector<double> placeLabels(const QVector<double> &wanted, double distance, double begin, double end);
