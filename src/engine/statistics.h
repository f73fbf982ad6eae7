// Residuals and accuracy figures of a fit.
#pragma once

#include <span>

#include "model/records.h"

namespace kv_tr {

/// Accuracy figures over the used pairs, in the unit of the destination coordinates (metres).
struct Statistics {
    double rms = 0;  ///< of a point: rms² = rmsFirst² + rmsSecond²
    double rmsFirst = 0;
    double rmsSecond = 0;
    double meanFirst = 0;  ///< means of the residuals
    double meanSecond = 0;
};

/// The total residual of a pair: the length of its residual vector.
double ResidualLength(const typeXYs4Tr& pair);

/// Sets the residuals of all pairs, computed minus measured, and yields the figures of the used.
///
/// The divisor of the root mean squares is the number of used pairs less one, whatever the number
/// of unknowns, deliberately. Unguarded: one used pair gives root mean squares
/// that are infinite or nan, none gives means that are nan.
Statistics UpdateResiduals(std::span<typeXYs4Tr> pairs, const TR_PRM& record);

}  // namespace kv_tr
