// What a user must know about a fit.
#include "kv_tr/analysis/warnings.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "kv_tr/model/fold.h"
#include "kv_tr/model/hull.h"

namespace kv_tr {
namespace {

using Id = Warning::Id;
using Severity = Warning::Severity;
using Cause = Warning::Cause;
using Offer = Warning::Offer;
using Level = TruthCheck::Level;

/// From the simplest on, as far as advice compares them.
int StepOf(Type type) {
    constexpr std::array kOrder{Type::kHelmert3,    Type::kHelmert,     Type::kAffine5,
                                Type::kAffine,      Type::kBilinear,    Type::kPolynomial2,
                                Type::kPolynomial3, Type::kPolynomial4, Type::kPolynomial5};
    if (type == Type::kPolynomial1) type = Type::kAffine;
    const auto* const found = std::ranges::find(kOrder, type);
    return static_cast<int>(found - kOrder.begin());
}

class Finder {
public:
    explicit Finder(const FitFindings& findings) : findings_(findings), check_(findings.check) {}

    std::vector<Warning> Find() {
        if (!std::isfinite(check_.errorInHull) && check_.rank == 0) {
            Add({.id = Id::kNotChecked, .severity = Severity::kSevere});
            return std::move(warnings_);
        }
        if (check_.undetermined) {
            AddUndetermined();
        } else {
            AddExactness();
            AddBetween();
            AddFold();
            check_.redundancy == 0 ? AddNoRedundancy() : AddTests();
        }
        std::ranges::stable_sort(warnings_, std::ranges::greater(), &Warning::severity);
        return std::move(warnings_);
    }

private:
    void Add(Warning warning) { warnings_.push_back(std::move(warning)); }

    bool HasExcluded() const {
        return std::ranges::count(findings_.points, false, &ControlPoint::used) > 0;
    }

    /// The highest type below that the points in use determine.
    std::optional<Type> DeterminedType() const {
        auto lower = StepDown(ModelOf(findings_.transformation.type));
        while (lower && !AdjustedModel(findings_.points, *lower).IsDetermined()) {
            lower = StepDown(*lower);
        }
        return lower;
    }

    void AddUndetermined() {
        const int arbitrary = std::max(1, check_.unknowns - check_.rank);
        const auto lower = DeterminedType();
        Add({.id = Id::kUndetermined,
             .severity = Severity::kSevere,
             .numbers = {{"arbitrary", static_cast<double>(arbitrary)},
                         {"unknowns", static_cast<double>(check_.unknowns)}},
             .cause = Cause::kGeometry,
             .geometry = check_.cause,
             .type = findings_.transformation.type,
             .offer = lower ? Offer::kType : Offer::kNone,
             .offeredType = lower});
    }

    void AddExactness() {
        const bool accurate = findings_.solution == Solution::kAccurate;
        const double noise = accurate ? check_.evaluationNoise : 0.0;
        if (accurate && (check_.errorInHull > 1e-4 || noise > 1e-4)) {
            Add({.id = Id::kRecord,
                 .severity =
                     check_.level == Level::kSevere ? Severity::kSevere : Severity::kWarning,
                 .numbers = {{"error_m", std::max(check_.errorInHull, noise)}},
                 .offer = Offer::kType,
                 .offeredType = StepDown(ModelOf(findings_.transformation.type))});
            return;
        }
        if (check_.level == Level::kVerified) return;
        Warning warning{.id = Id::kInexact,
                        .severity = check_.level == Level::kNote      ? Severity::kNote
                                    : check_.level == Level::kWarning ? Severity::kWarning
                                                                      : Severity::kSevere,
                        .numbers = {{"error_m", check_.errorInHull},
                                    {"error_at_points_m", check_.errorAtPoints}},
                        .offer = accurate ? Offer::kNone : Offer::kAccurate};
        constexpr double kFarOrigin = 2.0;  // half extents
        if (check_.otherMinimum) {
            warning.cause = Cause::kOtherMinimum;
        } else if (!findings_.outcome.converged) {
            warning.cause = Cause::kNotConverged;
        } else if (check_.originDistance > kFarOrigin && HasExcluded()) {
            warning.cause = Cause::kOrigin;
            warning.numbers.push_back({"origin_distance", check_.originDistance});
            warning.offer = Offer::kDeleteExcluded;
        } else if (check_.cause.kind != WeakGeometry::Kind::kNone) {
            warning.cause = Cause::kGeometry;
            warning.geometry = check_.cause;
        } else {
            warning.cause = Cause::kConditioned;
        }
        Add(std::move(warning));
    }

    void AddBetween() {
        constexpr double kNoteFactor = 3.0;
        constexpr double kWarningFactor = 10.0;
        if (!(check_.hullFactor > kNoteFactor)) return;
        const bool isNote = check_.hullFactor <= kWarningFactor;
        Add({.id = Id::kBetween,
             .severity = isNote ? Severity::kNote : Severity::kWarning,
             .numbers = {{"factor", check_.hullFactor},
                         {"sigma_m", check_.hullFactor * check_.sigma0}},
             .cause = Cause::kGeometry,
             .geometry = isNote ? WeakGeometry{.kind = WeakGeometry::Kind::kSpread} : check_.cause,
             .place = check_.weakest,
             .offer = Offer::kType,
             .offeredType = StepDown(ModelOf(findings_.transformation.type))});
    }

    void AddFold() {
        if (!IsPolynomial(findings_.transformation.type)) return;
        std::vector<Point> sources;
        for (const ControlPoint& point : findings_.points) {
            if (point.used) sources.push_back(point.source);
        }
        std::vector<Point> samples = HullSamples(ConvexHull(sources));
        if (samples.empty()) return;
        samples.insert(samples.end(), sources.begin(), sources.end());
        const Fold fold = FindFold(findings_.transformation, samples, CentroidOf(sources, {}));
        if (fold.folding == Folding::kNone) return;
        const bool folds = fold.folding == Folding::kFolds;
        Add({.id = folds ? Id::kFold : Id::kNearFold,
             .severity = folds ? Severity::kWarning : Severity::kNote,
             .numbers = {{"relative_determinant", fold.leastDeterminant}},
             .place = fold.place,
             .offer = Offer::kType,
             .offeredType = StepDown(ModelOf(findings_.transformation.type))});
    }

    void AddNoRedundancy() {
        Add({.id = Id::kNoRedundancy,
             .offer = Offer::kType,
             .offeredType = StepDown(ModelOf(findings_.transformation.type))});
    }

    void AddTests() {
        if (findings_.assessment != nullptr && findings_.assessment->isDetermined) {
            AddOutlier(*findings_.assessment);
            AddGlobalTest(*findings_.assessment);
            AddWeak(*findings_.assessment);
        }
        if (findings_.advice != nullptr) AddOrder(*findings_.advice);
    }

    Warning OfPoint(Id id, std::size_t index) const {
        return {.id = id, .point = index, .identifier = findings_.points[index].id};
    }

    void AddOutlier(const Assessment& assessment) {
        if (!assessment.suspect) return;
        const PointAssessment& point = assessment.points[*assessment.suspect];
        Warning warning = OfPoint(Id::kOutlier, point.index);
        warning.numbers = {{"error_m", point.grossError.Length()},
                           {"p", point.adjustedProbability}};
        warning.offer = Offer::kExclude;
        Add(std::move(warning));
    }

    void AddGlobalTest(const Assessment& assessment) {
        if (!assessment.globalTest || assessment.globalTest->Passes()) return;
        const auto& [value, lower, upper, probability] = *assessment.globalTest;
        const double r = assessment.redundancy;
        Add({.id = Id::kGlobalTest,
             .numbers = {{"ratio", std::sqrt(value / r)},
                         {"lower", std::sqrt(lower / r)},
                         {"upper", std::sqrt(upper / r)},
                         {"p", probability}}});
    }

    /// The point whose gross errors are the hardest to find, when there is little redundancy.
    void AddWeak(const Assessment& assessment) {
        constexpr double kLittleControl = 0.1;
        const auto weakest =
            std::ranges::min_element(assessment.points, {}, &PointAssessment::LeastRedundancy);
        constexpr int kLittleRedundancy = 4;
        const bool isWeak = assessment.redundancy < kLittleRedundancy ||
                            weakest->LeastRedundancy() < kLittleControl;
        if (!isWeak) return;
        Warning warning = OfPoint(Id::kWeak, weakest->index);
        warning.severity = Severity::kNote;
        warning.numbers = {
            {"detectable_m", std::max(weakest->detectable.first, weakest->detectable.second)}};
        Add(std::move(warning));
    }

    void AddOrder(const TypeAdvice& advice) {
        const Type type = ModelOf(findings_.transformation.type);
        const TypeFigures* own = advice.Of(type);
        if (!advice.advised || own == nullptr || !std::isfinite(own->leaveOneOut)) return;
        const TypeFigures* advised = advice.Of(*advice.advised);
        const int steps = StepOf(type) - StepOf(*advice.advised);
        const bool simplerIsBetter = steps > 0 && own->leaveOneOut > advised->leaveOneOut;
        const bool betterIsHigher = steps < -1 && own->leaveOneOut > advised->leaveOneOut;
        if (!simplerIsBetter && !betterIsHigher) return;
        Add({.id = Id::kOrder,
             .severity = Severity::kNote,
             .numbers = {{"leave_one_out_m", own->leaveOneOut},
                         {"advised_leave_one_out_m", advised->leaveOneOut}},
             .type = type,
             .offer = Offer::kType,
             .offeredType = advice.advised});
    }

    const FitFindings& findings_;
    const TruthCheck& check_;
    std::vector<Warning> warnings_;
};

}  // namespace

double Warning::Value(std::string_view name) const {
    for (const Number& number : numbers) {
        if (number.name == name) return number.value;
    }
    return kUndefined;
}

std::vector<Warning> FindWarnings(const FitFindings& findings) { return Finder(findings).Find(); }

std::optional<Warning> ExtrapolationWarning(const PointPrecision::Extrapolation& extrapolation) {
    if (!extrapolation.isFar) return std::nullopt;
    return Warning{.id = Id::kExtrapolation,
                   .numbers = {{"count", static_cast<double>(extrapolation.count)},
                               {"farthest_m", extrapolation.farthest},
                               {"sigma_m", extrapolation.sigma}}};
}

bool IsSevere(std::span<const Warning> warnings) {
    return std::ranges::count(warnings, Severity::kSevere, &Warning::severity) > 0;
}

}  // namespace kv_tr
