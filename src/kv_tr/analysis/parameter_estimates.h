// Standard deviations of parameters and of what follows from them.
#pragma once

#include <span>

#include "kv_tr/analysis/assessment.h"

namespace kv_tr {

/// Sets the parameters of a record of the type, their correlations, the derived quantities and the
/// shift at the centroid. The origin of a polynomial is the centroid of all points.
void EstimateParameters(const AdjustedModel& model, std::span<const ControlPoint> points, Type type,
                        Assessment& assessment);

}  // namespace kv_tr
