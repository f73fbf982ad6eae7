// Whether a fitted transformation is the least-squares solution, and what its points determine.
#pragma once

#include <limits>
#include <span>

#include "kv_tr/fit/statistics.h"
#include "kv_tr/fit/weak_geometry.h"
#include "kv_tr/model/control_point.h"
#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// What a check of a fit found out. Lengths in metres.
///
/// The residuals of a least-squares solution are orthogonal to its model; whatever part of them the
/// model can still explain is the error of the transformation. That part is found by an orthogonal
/// factorisation in a frame of the points in use, which is independent of the normal equations that
/// fits are computed with.
struct TruthCheck {
    enum class Level {
        kVerified,  ///< off by at most 1e-6 m
        kNote,      ///< by at most 1e-4 m, and by less than a tenth of sigma0 where there is one
        kWarning,   ///< digits that are shown are affected
        kSevere,    ///< by more than 1e-2 m, or by more than 1e-4 m and sigma0: not to be used
    };

    static constexpr double kUnknown = std::numeric_limits<double>::infinity();

    double errorAtPoints = kUnknown;  ///< the greatest distance from the solution at points in use
    double errorInHull = kUnknown;  ///< and anywhere in the area that they span; infinite when the
                                    ///< coefficients are not finite
    double evaluationNoise = kUnknown;  ///< what rounding makes of the terms of the coefficients

    int unknowns = 0;    ///< of both coordinates together
    int rank = 0;        ///< how many of them the points determine
    int redundancy = 0;  ///< twice the points in use, less the rank
    double sigma0 = std::numeric_limits<double>::quiet_NaN();  ///< root of the squares over the
                                                               ///< redundancy, of one coordinate;
                                                               ///< not a number without redundancy
    double condition = kUnknown;   ///< of the scaled design in the frame
    double hullFactor = kUnknown;  ///< the greatest standard deviation of a transformed point in
                                   ///< the hull, over sigma0
    Point weakest;                 ///< where it is, source coordinates
    WeakGeometry cause;            ///< when unknowns are lost or the hull factor is above 10

    bool otherMinimum = false;  ///< a smaller sum of squares is known for a type that is iterated
    double originDistance = 0;  ///< how far the centroid of all points lies from that of those in
                                ///< use, in half extents of the latter
    bool undetermined = true;   ///< unknowns are lost, or only rounding determines them
    Level level = Level::kSevere;
};

/// Checks a transformation that was fitted to points, with its residuals, one a point; excluded
/// points do not enter. Costs O(n k²) for n points in use and k unknowns of a coordinate.
TruthCheck CheckFit(std::span<const ControlPoint> points, const Transformation& transformation,
                    std::span<const Residual> residuals);

/// By how much the image of a point may differ because of rounding, metres, the greatest at points:
/// 2⁻⁵² times the length of the sums of the absolute values of the terms.
double EvaluationNoise(const Transformation& transformation, std::span<const Point> points);

}  // namespace kv_tr
