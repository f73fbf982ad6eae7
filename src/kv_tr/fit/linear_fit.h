// The fits that one linear system solves.
#pragma once

#include "kv_tr/fit/fit.h"
#include "kv_tr/fit/point_sums.h"

namespace kv_tr {

/// Fits the transformation's type to the points in use and sets the coefficients that the type has;
/// all others stay. Both coordinates are solved for at once, with twice MinimumPoints unknowns.
FitOutcome FitLinear(std::span<const ControlPoint> points, const PointMeans& means,
                     Transformation& transformation);

}  // namespace kv_tr
