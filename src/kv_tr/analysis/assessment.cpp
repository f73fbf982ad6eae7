// What a fit is worth.
#include "kv_tr/analysis/assessment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "kv_tr/analysis/distributions.h"
#include "kv_tr/analysis/parameter_estimates.h"
#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

using Cofactors = Design::PointCofactors;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
/// Below this part of an error in its residual a point counts as not controlled.
constexpr double kNoControl = 1e-10;
/// The same of all points of a place, whose rounding adds up.
constexpr double kNoControlOfPlace = 1e-6;
/// Baarda's non-centrality for a level of 0.001 and a power of 0.8.
constexpr double kDelta0 = 4.132147965064809;

constexpr Residual kUndefinedPair{kUndefined, kUndefined};

double AsNumber(std::size_t count) { return static_cast<double>(count); }

/// (I - weight · Q)⁻¹ · vector; nothing where its least eigenvalue is below a limit.
std::optional<Point> WithoutPoint(const Cofactors& q, Point weight, Point vector,
                                  double limit = kNoControl) {
    const double first = 1.0 - weight.first * q.first;
    const double second = 1.0 - weight.second * q.second;
    const double mixed = -weight.first * q.mixed;
    const double determinant = first * second - mixed * mixed;
    const double mean = 0.5 * (first + second);
    const double least = mean - Hypotenuse(0.5 * (first - second), mixed);
    if (!(least >= limit)) return std::nullopt;
    return Point{(second * vector.first - mixed * vector.second) / determinant,
                 (first * vector.second - mixed * vector.first) / determinant};
}

Point Times(const Cofactors& q, Point vector) {
    return {q.first * vector.first + q.mixed * vector.second,
            q.mixed * vector.first + q.second * vector.second};
}

Point Times(Point weight, Point vector) {
    return {weight.first * vector.first, weight.second * vector.second};
}

double SquaredLength(Point vector) {
    return vector.first * vector.first + vector.second * vector.second;
}

bool IsFitExact(const AdjustedModel& model) {
    double greatest = 0.0;
    double squares = 0.0;
    for (std::size_t i = 0; i < model.Residuals().size(); ++i) {
        const Point destination = model.Destinations()[i];
        greatest = std::max({greatest, std::abs(destination.first), std::abs(destination.second)});
        squares += SquaredLength(model.Residuals()[i]);
    }
    return std::sqrt(squares / (2.0 * AsNumber(model.Residuals().size()))) <
           100.0 * std::numeric_limits<double>::epsilon() * greatest;
}

/// The figures of one coordinate of a point.
struct CoordinateFigures {
    double residual;
    double redundancy;  // part of an error that the residual shows
    double weight;
};

/// Student's t from tau, with one degree of freedom less.
double External(double tau, int redundancy) {
    if (redundancy < 2) return kUndefined;
    const double left = redundancy - tau * tau;
    if (left <= 0.0) return std::copysign(kInfinity, tau);
    return tau * std::sqrt((redundancy - 1) / left);
}

class Tests {
public:
    Tests(const AdjustedModel& model, const AssessmentOptions& options, Assessment& assessment)
        : model_(model), options_(options), assessment_(assessment) {}

    PointAssessment Of(std::size_t i, const Cofactors& q) const {
        const Point weight = model_.Weights()[i];
        const Point v = model_.Residuals()[i];
        PointAssessment point;
        point.residual = {v.first, v.second};
        point.redundancy = {std::clamp(1.0 - weight.first * q.first, 0.0, 1.0),
                            std::clamp(1.0 - weight.second * q.second, 0.0, 1.0)};
        point.normalised = point.studentised = point.external = point.externalP = kUndefinedPair;
        point.separate = point.grossError = point.detectable = kUndefinedPair;
        const double leverage = weight.first * q.first + weight.second * q.second;
        point.isLever = leverage * AsNumber(assessment_.used) > 2.0 * assessment_.unknowns;
        SetCoordinate(&Residual::first, weight.first, assessment_.sigma0Separate.first, point);
        SetCoordinate(&Residual::second, weight.second, assessment_.sigma0Separate.second, point);
        SetPoint(q, weight, v, point);
        return point;
    }

private:
    void SetCoordinate(double Residual::*coordinate, double weight, double separateSigma,
                       PointAssessment& point) const {
        const double redundancy = point.redundancy.*coordinate;
        const double sigma = options_.sigma0.value_or(assessment_.sigma0);
        if (redundancy < kNoControl) {
            point.detectable.*coordinate = kInfinity;
            return;
        }
        if (assessment_.fitsExactly && !options_.sigma0) return;
        const double root = std::sqrt(redundancy);
        const double scaled = point.residual.*coordinate * std::sqrt(weight) / root;
        point.detectable.*coordinate = sigma * kDelta0 / std::sqrt(weight) / root;
        if (options_.sigma0) point.normalised.*coordinate = scaled / *options_.sigma0;
        if (assessment_.fitsExactly) return;
        const int r = assessment_.redundancy;
        const double tau = scaled / assessment_.sigma0;
        point.studentised.*coordinate = tau;
        point.external.*coordinate = External(tau, r);
        point.externalP.*coordinate = StudentTwoSided(point.external.*coordinate, r - 1);
        if (!SharesUnknowns(model_.Model())) {
            point.separate.*coordinate = External(scaled / separateSigma, r / 2);
        }
    }

    void SetPoint(const Cofactors& q, Point weight, Point v, PointAssessment& point) const {
        const auto error = WithoutPoint(q, weight, v);
        if (!error) return;
        point.grossError = {error->first, error->second};
        if (assessment_.fitsExactly && !options_.sigma0) return;
        const double squares =
            weight.first * v.first * error->first + weight.second * v.second * error->second;
        const int r = assessment_.redundancy;
        if (options_.sigma0) {
            const double value = squares / (*options_.sigma0 * *options_.sigma0);
            point.test = 0.5 * value;
            point.probability = ChiSquareTail(value, 2);
        } else if (r > 2) {
            point.test = 0.5 * squares / ((assessment_.squareSum - squares) / (r - 2));
            // Rounding may leave less than nothing of the other residuals.
            if (point.test < 0.0) point.test = kInfinity;
            point.probability = FisherTail(point.test, 2, r - 2);
        }
        point.adjustedProbability = std::min(1.0, AsNumber(assessment_.used) * point.probability);
        const Point weighted = Times(weight, *error);
        const Point moved = Times(q, weighted);
        const double sigma = assessment_.sigma0;
        point.influence = (weighted.first * moved.first + weighted.second * moved.second) /
                          (assessment_.unknowns * sigma * sigma);
    }

    const AdjustedModel& model_;
    const AssessmentOptions& options_;
    const Assessment& assessment_;
};

void SetSquares(const AdjustedModel& model, const AssessmentOptions& options,
                Assessment& assessment) {
    const Point sums = model.SquareSums();
    const int r = assessment.redundancy;
    const double m = AsNumber(assessment.used);
    assessment.squareSum = sums.first + sums.second;
    assessment.sigma0Separate = kUndefinedPair;
    double unweighted = 0.0;
    for (const Point& v : model.Residuals()) unweighted += SquaredLength(v);
    assessment.rmsPerPoint = std::sqrt(unweighted / m);
    if (r <= 0) return;
    assessment.sigma0 = std::sqrt(assessment.squareSum / r);
    if (!SharesUnknowns(assessment.type)) {
        const double half = 0.5 * r;
        assessment.sigma0Separate = {std::sqrt(sums.first / half), std::sqrt(sums.second / half)};
        if (!assessment.fitsExactly) {
            const double ratio = sums.first / sums.second;
            const double tail = FisherTail(std::max(ratio, 1.0 / ratio), half, half);
            assessment.axesProbability = std::min(1.0, 2.0 * tail);
        }
    }
    if (options.sigma0) {
        constexpr double kHalfLevel = 0.025;
        const double value = assessment.squareSum / (*options.sigma0 * *options.sigma0);
        assessment.globalTest =
            Assessment::GlobalTest{.value = value,
                                   .lower = ChiSquareQuantile(1.0 - kHalfLevel, r),
                                   .upper = ChiSquareQuantile(kHalfLevel, r),
                                   .probability = ChiSquareTail(value, r)};
    }
    const double count = 2.0 * m;
    const double estimated = assessment.unknowns + 1.0;
    if (count - estimated - 1.0 > 0.0 && !assessment.fitsExactly) {
        double logarithms = 0.0;
        for (const Point& weight : model.Weights()) {
            logarithms += 0.5 * std::log(weight.first) + 0.5 * std::log(weight.second);
        }
        assessment.aicc = count * std::log(assessment.squareSum / count) - 2.0 * logarithms +
                          2.0 * estimated +
                          2.0 * estimated * (estimated + 1.0) / (count - estimated - 1.0);
    }
}

void SetCriticalValues(double alpha, Assessment& assessment) {
    const double m = AsNumber(assessment.used);
    const double ofCoordinate = alpha / (2.0 * m) / 2.0;  // two-sided
    const int r = assessment.redundancy;
    assessment.criticalNormal = NormalQuantile(ofCoordinate);
    if (r < 2) return;
    const double t = StudentQuantile(ofCoordinate, r - 1);
    assessment.criticalExternal = t;
    assessment.criticalStudentised = std::sqrt(r) * t / std::sqrt(r - 1 + t * t);
    if (r > 2) assessment.criticalTest = FisherQuantile(alpha / m, 2, r - 2);
}

/// Sums of the leave-one-out errors of points, taken one by one.
class LeaveOneOut {
public:
    void Add(const PointAssessment& point, Point weight) {
        const auto [first, second] = point.grossError;
        if (!std::isfinite(first)) {
            ++uncontrolled_;
            return;
        }
        squares_ += SquaredLength({first, second});
        weighted_ += weight.first * first * first + weight.second * second * second;
    }

    void SetIn(Assessment& assessment) const {
        assessment.uncontrolled = uncontrolled_;
        if (uncontrolled_ > 0) return;
        assessment.press = weighted_;
        assessment.leaveOneOut = std::sqrt(squares_ / AsNumber(assessment.used));
    }

private:
    double squares_ = 0.0;
    double weighted_ = 0.0;
    std::size_t uncontrolled_ = 0;
};

/// Collects the points of an assessment, which come one by one.
class PointsKept {
public:
    PointsKept(const AssessmentOptions& options, Assessment& assessment)
        : keepsAll_(options.keepsAllPoints), least_(options.alpha), assessment_(assessment) {
        if (keepsAll_) assessment_.points.reserve(assessment_.used);
    }

    void Add(const PointAssessment& point) {
        const bool isWorst = point.adjustedProbability < least_;
        if (isWorst) least_ = point.adjustedProbability;
        if (keepsAll_) {
            if (isWorst) assessment_.suspect = assessment_.points.size();
            assessment_.points.push_back(point);
            return;
        }
        if (isWorst) suspect_ = point;
        if (!weakest_ || point.LeastRedundancy() < weakest_->LeastRedundancy()) weakest_ = point;
    }

    /// Hands over what was not kept at once.
    void Finish() {
        if (keepsAll_ || !weakest_) return;
        assessment_.points = {*weakest_};
        if (!suspect_) return;
        if (suspect_->index != weakest_->index) assessment_.points.push_back(*suspect_);
        assessment_.suspect = assessment_.points.size() - 1;
    }

private:
    const bool keepsAll_;
    double least_;  // the adjusted probability of the suspect point, at first the level
    Assessment& assessment_;
    std::optional<PointAssessment> suspect_;
    std::optional<PointAssessment> weakest_;
};

/// Assesses each point, a block at a time: the cofactors of all would take much memory.
void SetPoints(const AdjustedModel& model, std::span<const ControlPoint> points,
               const AssessmentOptions& options, Assessment& assessment) {
    constexpr std::size_t kBlock = 4096;
    const Tests tests(model, options, assessment);
    LeaveOneOut leaveOneOut;
    PointsKept kept(options, assessment);
    std::vector<Cofactors> cofactors;
    std::size_t next = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i].used) continue;
        if (next % kBlock == 0) {
            const std::size_t count = std::min(kBlock, assessment.used - next);
            cofactors = model.CofactorsAt(model.Sources().subspan(next, count));
        }
        PointAssessment point = tests.Of(next, cofactors[next % kBlock]);
        point.index = i;
        leaveOneOut.Add(point, model.Weights()[next]);
        kept.Add(point);
        ++next;
    }
    kept.Finish();
    leaveOneOut.SetIn(assessment);
}

/// Excluded points whose error against the fit stays within what the fit lets expect.
void SetReturnable(const AdjustedModel& model, std::span<const ControlPoint> points,
                   const AssessmentOptions& options, Assessment& assessment) {
    const double sigma = options.sigma0.value_or(assessment.sigma0);
    const int r = assessment.redundancy;
    if (assessment.fitsExactly || !(sigma > 0.0)) return;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (points[i].used) continue;
        const Point source[] = {points[i].source};
        const Point image = model.Images(source).front();
        const Cofactors q = model.CofactorsAt(source).front();
        const Point own = options.sigmas.empty() ? Point{1, 1} : options.sigmas[i];
        const double first = own.first * own.first + q.first;
        const double second = own.second * own.second + q.second;
        const Point error{image.first - points[i].destination.first,
                          image.second - points[i].destination.second};
        const double squares =
            (second * error.first * error.first - 2.0 * q.mixed * error.first * error.second +
             first * error.second * error.second) /
            (first * second - q.mixed * q.mixed);
        const double value = squares / (sigma * sigma);
        const double p = options.sigma0 ? ChiSquareTail(value, 2) : FisherTail(0.5 * value, 2, r);
        if (AsNumber(assessment.used + 1) * p >= options.alpha) assessment.returnable.push_back(i);
    }
}

void Expect(bool holds, const char* what) {
    if (!holds) throw std::invalid_argument(what);
}

void Check(std::span<const ControlPoint> points, const AssessmentOptions& options) {
    const auto isPositive = [](double sigma) { return std::isfinite(sigma) && sigma > 0.0; };
    const auto arePositive = [&](Point sigmas) {
        return isPositive(sigmas.first) && isPositive(sigmas.second);
    };
    Expect(options.sigmas.empty() || options.sigmas.size() == points.size(),
           "Standard deviations: not one a point");
    Expect(std::ranges::all_of(options.sigmas, arePositive),
           "Standard deviations must be positive");
    Expect(!options.sigma0 || isPositive(*options.sigma0), "Standard deviations must be positive");
    Expect(options.sigma0 || !options.isAPriori, "No standard deviation is known beforehand");
    Expect(options.alpha > 0.0 && options.alpha < 1.0, "A level must lie between 0 and 1");
}

}  // namespace

std::vector<Point> LeaveOneOutErrors(const AdjustedModel& model) {
    struct Place {
        Point weight;
        Point weighted;  // the sum of weight times residual
    };
    std::map<std::pair<double, double>, Place> places;
    const auto key = [&](std::size_t i) {
        return std::pair(model.Sources()[i].first, model.Sources()[i].second);
    };
    const std::size_t count = model.Residuals().size();
    for (std::size_t i = 0; i < count; ++i) {
        Place& place = places[key(i)];
        const Point weight = model.Weights()[i];
        const Point weighted = Times(weight, model.Residuals()[i]);
        place.weight.first += weight.first;
        place.weight.second += weight.second;
        place.weighted.first += weighted.first;
        place.weighted.second += weighted.second;
    }
    const auto cofactors = model.CofactorsAt(model.Sources());
    std::vector<Point> errors;
    errors.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Place& place = places[key(i)];
        const Point v = model.Residuals()[i];
        const auto moved = WithoutPoint(cofactors[i], place.weight,
                                        Times(cofactors[i], place.weighted), kNoControlOfPlace);
        errors.push_back(moved ? Point{v.first + moved->first, v.second + moved->second}
                               : Point{kUndefined, kUndefined});
    }
    return errors;
}

const char* NameOf(Assessment::Derived quantity) {
    constexpr std::array kNames{"scale", "scale_first_axis", "scale_second_axis", "rotation",
                                "shear"};
    return kNames[static_cast<std::size_t>(quantity)];
}

Assessment Assess(std::span<const ControlPoint> points, Type type,
                  const AssessmentOptions& options) {
    Check(points, options);
    return Assess(AdjustedModel(points, type, options.sigmas), points, type, options);
}

Assessment Assess(const AdjustedModel& model, std::span<const ControlPoint> points, Type type,
                  const AssessmentOptions& options) {
    Check(points, options);
    Assessment assessment;
    assessment.type = ModelOf(type);
    assessment.used = model.Sources().size();
    assessment.unknowns = model.Unknowns();
    assessment.redundancy = model.Redundancy();
    assessment.isDetermined = model.IsDetermined();
    assessment.sigma0Separate = assessment.centroidSigma = kUndefinedPair;
    if (!assessment.isDetermined) return assessment;
    assessment.fitsExactly = IsFitExact(model);
    SetSquares(model, options, assessment);
    assessment.unitSigma = options.isAPriori ? *options.sigma0 : assessment.sigma0;
    SetCriticalValues(options.alpha, assessment);
    SetPoints(model, points, options, assessment);
    EstimateParameters(model, points, type, assessment);
    SetReturnable(model, points, options, assessment);
    return assessment;
}

}  // namespace kv_tr
