// Whether a transformation folds the plane over.
#include "kv_tr/model/fold.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "kv_tr/model/hull.h"

namespace kv_tr {
namespace {

constexpr double kNearly = 0.2;

}  // namespace

Fold FindFold(const Transformation& transformation, std::span<const Point> samples,
              Point reference) {
    const double atReference = DerivativeAt(transformation, reference).Determinant();
    if (!std::isfinite(atReference) || atReference == 0.0) {
        return {Folding::kFolds, 0.0, reference};
    }
    Fold fold;
    if (samples.empty()) return fold;
    const auto relative = [&](Point at) {
        return DerivativeAt(transformation, at).Determinant() / atReference;
    };
    std::vector<double> determinants;
    for (const Point sample : samples) determinants.push_back(relative(sample));
    const auto least = std::ranges::min_element(determinants);
    fold.leastDeterminant = *least;
    fold.place = samples[static_cast<std::size_t>(least - determinants.begin())];

    const std::vector<Point> hull = ConvexHull(samples);
    double step = std::sqrt(Area(hull) / static_cast<double>(samples.size()));
    for (int round = 0; round < 3; ++round, step /= 2.0) {
        const Point middle = fold.place;
        for (int i = 0; i < 9; ++i) {
            const int row = i / 3 - 1;
            const int column = i % 3 - 1;
            const Point at{middle.first + row * step, middle.second + column * step};
            if (DistanceOutside(hull, at) > 0.0) continue;
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
