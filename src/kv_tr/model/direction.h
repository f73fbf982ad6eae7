// The direction of a vector.
#pragma once

#include <cmath>

#include "kv_tr/model/elementary.h"

namespace kv_tr {

/// The angles that directions are folded with, radians.
struct AngleConstants {
    double pi = 4.0 * ArcTangent(1.0);
    double rightAngle = pi / 2.0;
    double fullTurn = pi + pi;
};

/// The direction of the vector (dFirst, dSecond) in radians from the first axis towards the
/// second, in [0, 2π); 0 for a vector without length. The arctangent is taken of the smaller
/// component over the larger one and folded by quadrant.
double DirectionOf(double dFirst, double dSecond, const AngleConstants& constants = {});

}  // namespace kv_tr
