// Which type the points warrant.
#include "kv_tr/analysis/type_advice.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv_tr/analysis/distributions.h"
#include "kv_tr/analysis/point_precision.h"

namespace kv_tr {
namespace {

/// From the simplest on; each is contained in the next one.
constexpr std::array kTypes{Type::kHelmert3,    Type::kHelmert,     Type::kAffine5,
                            Type::kAffine,      Type::kBilinear,    Type::kPolynomial2,
                            Type::kPolynomial3, Type::kPolynomial4, Type::kPolynomial5};

struct Candidate {
    TypeFigures figures;
    double squareSum = 0;
    bool fitsExactly = false;
    std::vector<double> squaredErrors;  // leave-one-out, one a point in use
};

bool HaveTwoSigmas(const AssessmentOptions& options) {
    return std::ranges::any_of(options.sigmas,
                               [](const Point& sigma) { return sigma.first != sigma.second; });
}

Candidate Examine(std::span<const ControlPoint> points, Type type,
                  const AssessmentOptions& options) {
    Candidate candidate;
    TypeFigures& figures = candidate.figures;
    figures.type = type;
    const AdjustedModel model(points, type, options.sigmas);
    figures.redundancy = model.Redundancy();
    const PointPrecision precision(model);
    figures.isDetermined = model.IsDetermined() && precision.HullFactor() <= 10.0;
    if (!figures.isDetermined) return candidate;
    AssessmentOptions withoutPoints = options;
    withoutPoints.keepsAllPoints = false;
    const Assessment assessment = Assess(model, points, type, withoutPoints);
    candidate.squareSum = assessment.squareSum;
    candidate.fitsExactly = assessment.fitsExactly;
    figures.sigma0 = assessment.sigma0;
    figures.aicc = assessment.aicc;
    figures.passesGlobalTest = assessment.globalTest && assessment.globalTest->Passes();
    double sum = 0.0;
    for (const Point& error : LeaveOneOutErrors(model)) {
        const double squares = error.first * error.first + error.second * error.second;
        candidate.squaredErrors.push_back(candidate.fitsExactly ? 0.0 : squares);
        sum += candidate.squaredErrors.back();
    }
    figures.leaveOneOut = std::sqrt(sum / static_cast<double>(assessment.used));
    figures.isEligible = std::isfinite(figures.leaveOneOut) &&
                         figures.redundancy >= std::max(2.0, assessment.unknowns / 4.0);
    return candidate;
}

void CompareWithSimpler(const Candidate& simpler, Candidate& candidate) {
    const int between = simpler.figures.redundancy - candidate.figures.redundancy;
    const int left = candidate.figures.redundancy;
    if (between <= 0 || left <= 0 || candidate.fitsExactly) return;
    candidate.figures.fisher =
        (simpler.squareSum - candidate.squareSum) / between / (candidate.squareSum / left);
    candidate.figures.probability = FisherTail(candidate.figures.fisher, between, left);
}

/// The mean of the differences of two rows over its standard error.
double ExcessOf(const std::vector<double>& errors, const std::vector<double>& best) {
    const auto count = static_cast<double>(errors.size());
    double mean = 0.0;
    for (std::size_t i = 0; i < errors.size(); ++i) mean += (errors[i] - best[i]) / count;
    double squares = 0.0;
    for (std::size_t i = 0; i < errors.size(); ++i) {
        const double deviation = errors[i] - best[i] - mean;
        squares += deviation * deviation;
    }
    if (mean == 0.0) return 0.0;
    return mean / std::sqrt(squares / (count - 1.0) / count);
}

}  // namespace

const TypeFigures* TypeAdvice::Of(Type type) const {
    if (type == Type::kPolynomial1) type = Type::kAffine;
    const auto found = std::ranges::find(types, type, &TypeFigures::type);
    return found == types.end() ? nullptr : &*found;
}

TypeAdvice Advise(std::span<const ControlPoint> points, const AssessmentOptions& options) {
    const auto used = std::ranges::count(points, true, &ControlPoint::used);
    std::vector<Candidate> candidates;
    const Candidate* simpler = nullptr;
    candidates.reserve(kTypes.size());
    for (const Type type : kTypes) {
        if (used < MinimumPoints(type)) continue;
        if (SharesUnknowns(type) && HaveTwoSigmas(options)) continue;
        candidates.push_back(Examine(points, type, options));
        Candidate& candidate = candidates.back();
        if (!candidate.figures.isDetermined) continue;
        if (simpler != nullptr) CompareWithSimpler(*simpler, candidate);
        simpler = &candidate;
    }
    TypeAdvice advice;
    const Candidate* best = nullptr;
    for (const Candidate& candidate : candidates) {
        if (!candidate.figures.isEligible) continue;
        if (best == nullptr || candidate.figures.leaveOneOut < best->figures.leaveOneOut) {
            best = &candidate;
        }
        if (candidate.figures.passesGlobalTest && !advice.simplestPassing) {
            advice.simplestPassing = candidate.figures.type;
        }
    }
    if (best != nullptr) advice.best = best->figures.type;
    for (Candidate& candidate : candidates) {
        if (candidate.figures.isEligible) {
            candidate.figures.excess = ExcessOf(candidate.squaredErrors, best->squaredErrors);
            if (!advice.advised && candidate.figures.excess <= 1.0) {
                advice.advised = candidate.figures.type;
            }
        }
        advice.types.push_back(candidate.figures);
    }
    return advice;
}

}  // namespace kv_tr
