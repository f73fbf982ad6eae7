// The fits whose coefficients are functions of fewer unknowns.
#pragma once

#include "engine/control_points.h"
#include "model/records.h"

namespace kv_tr {

enum class FitOutcome { kConverged, kSingular, kNotConverged };

/// Fits shifts and one rotation (scale 1) to the used pairs by Gauss-Newton iteration and stores
/// dA0..dA2, dB0..dB2 of the last iterate, whatever the outcome.
///
/// The centroids of all pairs and the first pair, excluded or not, give the start. At most
/// passLimit + 1 passes are made, at least one; converging in the last one still counts as
/// kNotConverged, deliberately.
FitOutcome FitHelmert3(const ControlPoints& points, int passLimit, TR_PRM& record);

/// The same for shifts, a scale for each axis and one rotation. Throws RuntimeError
/// kDivisionByZero, with the record untouched, when the first source point is the source centroid.
FitOutcome FitAffine5(const ControlPoints& points, int passLimit, TR_PRM& record);

}  // namespace kv_tr
