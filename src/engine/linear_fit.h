// The fits that one linear system solves.
#pragma once

#include "engine/control_points.h"
#include "model/records.h"

namespace kv_tr {

/// Fits the record's type to the used pairs by unweighted least squares and stores the
/// coefficients that the type has; eType and all other fields stay.
///
/// Both coordinates are solved for at once (twice MinimumPoints unknowns). False, with the record
/// untouched, when the normal matrix could not be inverted. docs/mathematics.md derives the rows.
/// Memory does not grow with the number of pairs.
bool FitLinear(const ControlPoints& points, TR_PRM& record);

}  // namespace kv_tr
