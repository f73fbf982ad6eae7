// Fitting a transformation to control points by least squares.
#include "kv_tr/fit/fit.h"

#include <algorithm>

#include "kv_tr/fit/adjusted_model.h"
#include "kv_tr/fit/constrained_fit.h"
#include "kv_tr/fit/fit_into.h"
#include "kv_tr/fit/linear_fit.h"

namespace kv_tr {
namespace {

FitOutcome FitAccurately(std::span<const ControlPoint> points, const PointMeans& means,
                         Transformation& transformation) {
    const AdjustedModel model(points, transformation.type);
    const Transformation record = model.Record(transformation.type, means.source);
    const auto count =
        static_cast<std::ptrdiff_t>(IsPolynomial(record.type) ? TermCount(record.type) + 1 : 3);
    std::copy_n(record.a.begin(), count, transformation.a.begin());
    std::copy_n(record.b.begin(), count, transformation.b.begin());
    if (model.IsDetermined()) return {};
    return {.trouble = FitTrouble::kSingular, .singularSystems = 1};
}

FitOutcome FitModel(std::span<const ControlPoint> points, const PointMeans& means,
                    const FitOptions& options, Transformation& transformation) {
    constexpr int kHelmert3Passes = 20;
    constexpr int kAffine5Passes = 50;
    if (options.solution == Solution::kAccurate) {
        return FitAccurately(points, means, transformation);
    }
    switch (transformation.type) {
        case Type::kHelmert3:
            return FitHelmert3(points, means, options.passLimit.value_or(kHelmert3Passes),
                               transformation);
        case Type::kAffine5:
            return FitAffine5(points, means, options.passLimit.value_or(kAffine5Passes),
                              transformation);
        default: return FitLinear(points, means, transformation);
    }
}

}  // namespace

FitOutcome FitInto(Transformation& transformation, std::span<const ControlPoint> points,
                   const PointMeans& means, const FitOptions& options) {
    if (points.empty()) return {.trouble = FitTrouble::kNoPoints};
    FitOutcome outcome = FitModel(points, means, options, transformation);
    const auto used = std::ranges::count(points, true, &ControlPoint::used);
    if (outcome.Computed() && used < MinimumPoints(transformation.type)) {
        outcome.trouble = FitTrouble::kTooFewPoints;
    }
    return outcome;
}

FitResult Fit(std::span<const ControlPoint> points, Type type, const FitOptions& options) {
    PointSums sums;
    sums.Add(points);
    FitResult result;
    result.transformation.type = type;
    result.outcome = FitInto(result.transformation, points, sums.Means(), options);
    if (!result.outcome.Computed()) return result;
    result.residuals = ResidualsOf(points, result.transformation);
    result.statistics = StatisticsOf(points, result.residuals);
    result.check = CheckFit(points, result.transformation, result.residuals);
    return result;
}

}  // namespace kv_tr
