// What a transformation does to lengths, areas and angles at a point.
#include "kv_tr/model/distortion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

constexpr double kSameScale = 1e-12;

/// A direction of a line, in [0, π).
double Folded(double direction) {
    const double folded = std::fmod(direction, std::numbers::pi);
    const double positive = folded < 0.0 ? folded + std::numbers::pi : folded;
    return positive < std::numbers::pi ? positive : 0.0;  // where the sum was rounded up to it
}

}  // namespace

Distortion DistortionOf(const Derivative& derivative) {
    const auto& [a, b, c, d] = derivative;
    const double p = (a + d) / 2.0;
    const double q = (c - b) / 2.0;
    const double r = (a - d) / 2.0;
    const double s = (c + b) / 2.0;
    const double similar = std::sqrt(p * p + q * q);
    const double mirrored = std::sqrt(r * r + s * s);
    const double less = std::min(similar, mirrored);     // (M - N) / 2
    const double greater = std::max(similar, mirrored);  // (M + N) / 2

    Distortion distortion;
    distortion.greatestScale = similar + mirrored;
    distortion.leastScale = greater - less;
    distortion.areaScale = a * d - b * c;
    distortion.rotation = std::atan2(q, p);
    distortion.greatestAngleChange = greater == 0.0 ? 0.0 : 2.0 * ArcSine(less / greater);
    if (2.0 * less >= kSameScale * distortion.greatestScale && less > 0.0) {
        const double twice = std::atan2(s, r);
        distortion.directionInSource = Folded((twice - distortion.rotation) / 2.0);
        distortion.directionInDestination = Folded((twice + distortion.rotation) / 2.0);
    }
    return distortion;
}

Distortion DistortionAt(const Transformation& transformation, Point at) {
    return DistortionOf(DerivativeAt(transformation, at));
}

double MeanScaleAt(const Transformation& transformation, Point at) {
    return std::sqrt(std::abs(DerivativeAt(transformation, at).Determinant()));
}

}  // namespace kv_tr
