// The fits whose coefficients are functions of fewer unknowns.
#pragma once

#include "kv_tr/fit/fit.h"
#include "kv_tr/fit/point_sums.h"

namespace kv_tr {

/// Fits shifts and one rotation (scale 1) to the points in use by Gauss-Newton iteration and sets
/// a[0] to a[2] and b[0] to b[2] to the last iterate, whatever the outcome.
///
/// The centroids of all points and the first point, excluded or not, give the start. At most
/// passLimit + 1 passes are made, at least one; a fit that converges in the last one counts as not
/// converged all the same.
FitOutcome FitHelmert3(std::span<const ControlPoint> points, const PointMeans& means, int passLimit,
                       Transformation& transformation);

/// The same for shifts, a scale for each axis and one rotation. kNoStart, with nothing set, when
/// the first source point is the source centroid.
FitOutcome FitAffine5(std::span<const ControlPoint> points, const PointMeans& means, int passLimit,
                      Transformation& transformation);

}  // namespace kv_tr
