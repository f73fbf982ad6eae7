// Residuals and accuracy figures of a fit.
#pragma once

#include <span>
#include <vector>

#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// What a transformation misses a control point by: computed minus measured, metres.
struct Residual {
    double first = 0;
    double second = 0;

    double Length() const;
    bool operator==(const Residual&) const = default;
};

/// Accuracy figures over the points in use, in the unit of the destination coordinates (metres).
struct Statistics {
    double rms = 0;  ///< of a point: rms² = rmsFirst² + rmsSecond²
    double rmsFirst = 0;
    double rmsSecond = 0;
    double meanFirst = 0;  ///< means of the residuals
    double meanSecond = 0;

    bool operator==(const Statistics&) const = default;
};

/// The residuals of all points, excluded ones included, in their order.
std::vector<Residual> ResidualsOf(std::span<const ControlPoint> points,
                                  const Transformation& transformation);

/// The figures over the points in use; both arrays have one length.
///
/// The divisor of the root mean squares is the number of points in use less one, whatever the
/// number of unknowns. Unguarded: one point in use gives root mean squares that are infinite or not
/// a number, none gives means that are not a number.
Statistics StatisticsOf(std::span<const ControlPoint> points, std::span<const Residual> residuals);

}  // namespace kv_tr
