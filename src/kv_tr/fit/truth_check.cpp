// Whether a fitted transformation is the least-squares solution.
#include "kv_tr/fit/truth_check.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "kv_tr/fit/closed_fit.h"
#include "kv_tr/fit/design.h"
#include "kv_tr/model/elementary.h"
#include "kv_tr/model/hull.h"

namespace kv_tr {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

struct UsedPoints {
    std::vector<Point> sources;
    std::vector<Point> destinations;
    std::vector<Point> residuals;
};

UsedPoints UsedOf(std::span<const ControlPoint> points, std::span<const Residual> residuals) {
    UsedPoints used;
    const auto count =
        static_cast<std::size_t>(std::ranges::count(points, true, &ControlPoint::used));
    used.sources.reserve(count);
    used.destinations.reserve(count);
    used.residuals.reserve(count);
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i].used) continue;
        used.sources.push_back(points[i].source);
        used.destinations.push_back(points[i].destination);
        used.residuals.push_back({residuals[i].first, residuals[i].second});
    }
    return used;
}

bool AreFinite(std::span<const Point> points) {
    double zero = 0.0;  // or not a number
    for (const Point& point : points) {
        zero += (point.first - point.first) + (point.second - point.second);
    }
    return zero == 0.0;
}

double GreatestLength(std::span<const Point> vectors) {
    double greatest = 0.0;
    for (const Point& vector : vectors) {
        greatest = std::max(greatest, vector.first * vector.first + vector.second * vector.second);
    }
    return std::sqrt(greatest);
}

double SumOfSquares(std::span<const Point> vectors) {
    double sum = 0.0;
    for (const Point& vector : vectors) {
        sum += vector.first * vector.first + vector.second * vector.second;
    }
    return sum;
}

double GreatestCoordinate(std::span<const Point> points) {
    double greatest = 0.0;
    for (const Point& point : points) {
        greatest = std::max({greatest, std::abs(point.first), std::abs(point.second)});
    }
    return greatest;
}

/// Whether a closed solution has fewer squares than there are, by more than a transformation that
/// misses it by an error at the points, or rounding, can have.
bool IsBetter(const ClosedFit& closed, const UsedPoints& used, double error) {
    double least = 0.0;
    for (std::size_t i = 0; i < used.sources.size(); ++i) {
        const Point image = closed.ReducedImageOf(used.sources[i]);
        const double first = image.first - (used.destinations[i].first - closed.destination.first);
        const double second =
            image.second - (used.destinations[i].second - closed.destination.second);
        least += first * first + second * second;
    }
    const double more = SumOfSquares(used.residuals) - least;
    const double rounding = 100.0 * kEpsilon * GreatestCoordinate(used.destinations);
    const auto count = static_cast<double>(used.sources.size());
    return more > 1e-6 * least && more > 4.0 * count * (error * error + rounding * rounding);
}

/// How far the centroid of all points lies from the frame, in half lengths of the frame.
double OriginDistance(std::span<const ControlPoint> points, const Frame& frame) {
    if (frame.IsPoint()) return 0.0;
    Point sum;
    for (const ControlPoint& point : points) {
        sum.first += point.source.first - frame.origin.first;
        sum.second += point.source.second - frame.origin.second;
    }
    return Hypotenuse(sum.first, sum.second) / static_cast<double>(points.size()) /
           frame.halfLength;
}

TruthCheck::Level LevelOf(double error, double sigma0) {
    using Level = TruthCheck::Level;
    const bool redundant = std::isfinite(sigma0);
    if (!(error <= 1e-2) || (redundant && error > 1e-4 && error > sigma0)) return Level::kSevere;
    if (error > 1e-4 || (redundant && error > 1e-6 && error > sigma0 / 10)) return Level::kWarning;
    return error > 1e-6 ? Level::kNote : Level::kVerified;
}

void FindHullFactor(const Design& design, const TriangularFactor& factor,
                    std::span<const Point> samples, TruthCheck& check) {
    const auto cofactors = design.CofactorsAt(factor, Into(design.InFrame(), samples));
    double greatest = -1.0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double cofactor = cofactors[i].Greatest();
        if (cofactor <= greatest) continue;
        greatest = cofactor;
        check.weakest = samples[i];
    }
    check.hullFactor = std::sqrt(std::max(greatest, 0.0));
}

}  // namespace

double EvaluationNoise(const Transformation& transformation, std::span<const Point> points) {
    Transformation absolute = transformation;
    for (double& value : absolute.a) value = std::abs(value);
    for (double& value : absolute.b) value = std::abs(value);
    const bool reduced = IsPolynomial(transformation.type);
    const Point origin = reduced ? Point{transformation.a[0], transformation.b[0]} : Point{};
    if (reduced) absolute.a[0] = absolute.b[0] = 0.0;
    std::vector<Point> distances;
    distances.reserve(points.size());
    for (const Point& point : points) {
        distances.push_back(
            {std::abs(point.first - origin.first), std::abs(point.second - origin.second)});
    }
    return kEpsilon * GreatestLength(ImagesOf(absolute, distances));
}

TruthCheck CheckFit(std::span<const ControlPoint> points, const Transformation& transformation,
                    std::span<const Residual> residuals) {
    const Type model = ModelOf(transformation.type);
    const UsedPoints used = UsedOf(points, residuals);
    TruthCheck check;
    check.unknowns = UnknownsOf(model);
    check.redundancy = static_cast<int>(2 * used.sources.size());
    // Squares of greater coordinates are no numbers.
    constexpr double kGreatest = 1e100;
    const bool isMeasured = AreFinite(used.sources) && AreFinite(used.destinations) &&
                            GreatestCoordinate(used.sources) < kGreatest &&
                            GreatestCoordinate(used.destinations) < kGreatest;
    if (used.sources.empty() || !isMeasured) return check;
    const Frame frame = FrameOf(used.sources, {}, model);
    const std::vector<Point> inFrame = Into(frame, used.sources);
    const bool finite = AreFinite(used.residuals);
    const Design design(model, frame, finite ? LinearisationAt(transformation) : Linearisation{});
    const std::vector<Point> nothing(finite ? 0 : used.sources.size());
    const TriangularFactor factor = design.Factor(inFrame, finite ? used.residuals : nothing);

    const int sides = SharesUnknowns(model) ? 1 : 2;
    check.rank = static_cast<int>(factor.Rank()) * sides;
    check.redundancy -= check.rank;
    check.condition = factor.Condition();
    const std::vector<Point> samples = HullSamples(ConvexHull(used.sources));
    FindHullFactor(design, factor, samples, check);
    const auto closed =
        SharesUnknowns(model) ? FitClosed(model, used.sources, used.destinations) : std::nullopt;
    const bool needsWidth = model != Type::kHelmert && model != Type::kHelmert3;
    check.undetermined = check.rank < check.unknowns || frame.IsPoint() ||
                         (needsWidth && frame.IsLine()) || (SharesUnknowns(model) && !closed);
    if (check.undetermined || !(check.hullFactor <= 10.0)) {
        check.cause = FindWeakGeometry(used.sources, frame, model);
        // Then only the rounding of the coordinates determines the fit.
        if (check.cause.kind == WeakGeometry::Kind::kCurve &&
            check.cause.distance <= frame.resolution) {
            check.undetermined = true;
        }
    }
    if (!finite) return check;

    double squares = 0.0;
    for (int side = 0; side < sides; ++side) {
        squares += factor.RemainingSquares(static_cast<std::size_t>(side));
    }
    if (check.redundancy > 0) check.sigma0 = std::sqrt(squares / check.redundancy);
    const Transformation change = design.Change(factor);
    check.errorAtPoints = GreatestLength(ImagesOf(change, inFrame));
    check.errorInHull =
        std::max(check.errorAtPoints, GreatestLength(ImagesOf(change, Into(frame, samples))));
    check.evaluationNoise = std::max(EvaluationNoise(transformation, used.sources),
                                     EvaluationNoise(transformation, samples));
    check.otherMinimum = closed && IsBetter(*closed, used, check.errorAtPoints);

    check.originDistance = OriginDistance(points, frame);
    check.level =
        check.otherMinimum ? TruthCheck::Level::kSevere : LevelOf(check.errorInHull, check.sigma0);
    return check;
}

}  // namespace kv_tr
