// What a transformation does to lengths, areas and angles at a point.
#pragma once

#include <optional>

#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// The distortion at a point, after Tissot: a small circle becomes an ellipse. With the derivative
/// [[a, b], [c, d]] and
///
///     p = (a + d) / 2    q = (c - b) / 2    r = (a - d) / 2    s = (c + b) / 2
///
/// all figures follow without a difference of nearly equal squares. Angles are radians, from the
/// first axis towards the second. Sources: A. Tissot, Mémoire sur la représentation des surfaces,
/// 1881; J. P. Snyder, Map Projections: A Working Manual, 1987, pages 20 to 27.
struct Distortion {
    double greatestScale = 1;  ///< M = √(p² + q²) + √(r² + s²)
    double leastScale = 1;     ///< N = |√(p² + q²) - √(r² + s²)|
    double areaScale = 1;      ///< ad - bc, M N with the sign minus where the image is mirrored
    double rotation = 0;       ///< atan2(q, p), that of the nearest similarity, in (-π, π]

    /// ω = 2 asin((M - N) / (M + N)): by how much an angle between two directions may change; 0
    /// where everything becomes a point.
    double greatestAngleChange = 0;

    /// The direction of the greatest scale before the transformation and after, in [0, π):
    /// (atan2(s, r) ∓ atan2(q, p)) / 2. Nothing where M and N agree to 1e-12 of M.
    std::optional<double> directionInSource;
    std::optional<double> directionInDestination;
};

Distortion DistortionOf(const Derivative& derivative);

/// DistortionOf the derivative at a point of the source.
Distortion DistortionAt(const Transformation& transformation, Point at);

/// √|ad - bc|, the geometric mean of the greatest and the least scale at a point of the source.
double MeanScaleAt(const Transformation& transformation, Point at);

}  // namespace kv_tr
