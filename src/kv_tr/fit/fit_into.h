// A fit that takes the place of an earlier one.
#pragma once

#include "kv_tr/fit/fit.h"
#include "kv_tr/fit/point_sums.h"

namespace kv_tr {

/// Fits the transformation's type and sets the coefficients that the type has; all others stay, and
/// all of them when nothing is computed.
FitOutcome FitInto(Transformation& transformation, std::span<const ControlPoint> points,
                   const PointMeans& means, const FitOptions& options);

}  // namespace kv_tr
