// Whether a transformation folds the plane over.
#include "kv_tr/model/fold.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "kv_tr/model/distortion.h"

namespace kv_tr {
namespace {

/// Twice the area of the triangle of three points, positive where the third lies to the left.
double Turn(Point a, Point b, Point c) {
    return (b.first - a.first) * (c.second - a.second) -
           (b.second - a.second) * (c.first - a.first);
}

/// The convex hull of points, anticlockwise, by monotone chains (A. M. Andrew, Information
/// Processing Letters 9, 1979).
std::vector<Point> HullOf(std::span<const Point> points) {
    std::vector<Point> sorted(points.begin(), points.end());
    std::ranges::sort(sorted, {}, [](Point p) { return std::tuple(p.first, p.second); });
    std::vector<Point> hull;
    const auto addChain = [&hull](const auto& chain) {
        const std::size_t start = hull.size();
        for (const Point point : chain) {
            while (hull.size() >= start + 2 && Turn(hull.end()[-2], hull.back(), point) <= 0.0) {
                hull.pop_back();
            }
            hull.push_back(point);
        }
        hull.pop_back();  // where the other chain begins
    };
    addChain(sorted);
    std::ranges::reverse(sorted);
    addChain(sorted);
    return hull;
}

bool IsInside(Point point, const std::vector<Point>& hull) {
    for (std::size_t i = 0; i < hull.size(); ++i) {
        if (Turn(hull[i], hull[(i + 1) % hull.size()], point) < 0.0) return false;
    }
    return true;
}

double AreaOf(const std::vector<Point>& hull) {
    double twice = 0.0;
    for (std::size_t i = 2; i < hull.size(); ++i) twice += Turn(hull[0], hull[i - 1], hull[i]);
    return twice / 2.0;
}

constexpr double kNearly = 0.2;

}  // namespace

Fold FindFold(const Transformation& transformation, std::span<const Point> samples,
              Point reference) {
    const double atReference = DistortionAt(transformation, reference).areaScale;
    if (!std::isfinite(atReference) || atReference == 0.0) {
        return {Folding::kFolds, 0.0, reference};
    }
    Fold fold;
    if (samples.empty()) return fold;
    const auto relative = [&](Point at) {
        return DistortionAt(transformation, at).areaScale / atReference;
    };
    std::vector<double> determinants;
    for (const Point sample : samples) determinants.push_back(relative(sample));
    const auto least = std::ranges::min_element(determinants);
    fold.leastDeterminant = *least;
    fold.place = samples[static_cast<std::size_t>(least - determinants.begin())];

    const std::vector<Point> hull = HullOf(samples);
    double step = std::sqrt(AreaOf(hull) / static_cast<double>(samples.size()));
    for (int round = 0; round < 3; ++round, step /= 2.0) {
        const Point middle = fold.place;
        for (int i = 0; i < 9; ++i) {
            const int row = i / 3 - 1;
            const int column = i % 3 - 1;
            const Point at{middle.first + row * step, middle.second + column * step};
            if (!IsInside(at, hull)) continue;
            const double determinant = relative(at);
            if (determinant >= fold.leastDeterminant) continue;
            fold.leastDeterminant = determinant;
            fold.place = at;
        }
    }
    const auto median = determinants.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::ranges::nth_element(determinants, median, {}, [](double d) { return std::abs(d); });
    if (fold.leastDeterminant <= 0.0) {
        fold.folding = Folding::kFolds;
    } else if (fold.leastDeterminant < kNearly * std::abs(*median)) {
        fold.folding = Folding::kNearly;
    }
    return fold;
}

}  // namespace kv_tr
