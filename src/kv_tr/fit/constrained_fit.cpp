// The fits whose coefficients are functions of fewer unknowns.
#include "kv_tr/fit/constrained_fit.h"

#include <array>
#include <cmath>
#include <vector>

#include "kv_tr/fit/matrix.h"
#include "kv_tr/fit/normal_equations.h"
#include "kv_tr/model/direction.h"
#include "kv_tr/model/elementary.h"

namespace kv_tr {
namespace {

/// Coordinates and shifts are iterated in hundreds of metres.
constexpr double kIterationScale = 100.0;

const double kTwoPi = 8.0 * ArcTangent(1.0);

template <std::size_t count>
using Vector = std::array<double, count>;

/// One observation equation: the model's derivatives by the unknowns, and its value.
template <std::size_t count>
struct Equation {
    Vector<count> row;
    double computed;
};

/// t + R(φ)·(y, x); unknowns t of the first and second coordinate, φ.
struct Helmert3Model {
    static constexpr std::size_t kCount = 3;
    static constexpr Vector<kCount> kThresholds{1e-5, 1e-5, 1e-6};

    static Equation<kCount> First(const Vector<kCount>& p, double s, double c, double y, double x) {
        return {{1.0, 0.0, -s * y - x * c}, y * c + p[0] - x * s};
    }
    static Equation<kCount> Second(const Vector<kCount>& p, double s, double c, double y,
                                   double x) {
        return {{0.0, 1.0, y * c - x * s}, x * c + y * s + p[1]};
    }
    static void Correct(Vector<kCount>&) {}
};

/// t + R(φ)·(kY·y, kX·x); unknowns t of the first and second coordinate, kY, kX, φ.
struct Affine5Model {
    static constexpr std::size_t kCount = 5;
    static constexpr Vector<kCount> kThresholds{1e-5, 1e-5, 1e-5, 1e-5, 1e-6};

    static Equation<kCount> First(const Vector<kCount>& p, double s, double c, double y, double x) {
        const auto [tY, tX, kY, kX, phi] = p;
        return {{1.0, 0.0, y * c, -s * x, -s * kY * y - kX * c * x}, kY * c * y + tY - kX * s * x};
    }
    static Equation<kCount> Second(const Vector<kCount>& p, double s, double c, double y,
                                   double x) {
        const auto [tY, tX, kY, kX, phi] = p;
        return {{0.0, 1.0, y * s, x * c, kY * c * y - kX * s * x}, kX * c * x + kY * s * y + tX};
    }
    /// Turns a negative kY positive. This is no equivalent parametrisation, as kX keeps its sign;
    /// the iteration goes on from the changed values, which published results contain.
    static void Correct(Vector<kCount>& p) {
        if (p[2] >= 0.0) return;
        p[4] += kTwoPi / 2.0;
        p[2] = std::abs(p[2]);
    }
};

/// Folds an angle into [-2π, 2π].
double Folded(double angle) {
    constexpr double kFarOut = 1e6;  // beyond it the loop would take long and lose the angle
    if (!std::isfinite(angle)) return angle;
    if (std::abs(angle) > kFarOut) return std::fmod(angle, kTwoPi);
    while (std::abs(angle) > kTwoPi) angle += angle > kTwoPi ? -kTwoPi : kTwoPi;
    return angle;
}

template <class Model, std::size_t count = Model::kCount>
NormalEquations Linearised(std::span<const ControlPoint> points, const Vector<count>& unknowns) {
    const double s = std::sin(unknowns.back());
    const double c = std::cos(unknowns.back());
    NormalEquations equations(count);
    for (const bool first : {true, false}) {
        for (const ControlPoint& point : points) {
            if (!point.used) continue;
            const auto equation = (first ? Model::First : Model::Second)(
                unknowns, s, c, point.source.first / kIterationScale,
                point.source.second / kIterationScale);
            const Point image = point.destination;
            const double measured = (first ? image.first : image.second) / kIterationScale;
            equations.Add(equation.row, measured - equation.computed);
        }
    }
    return equations;
}

template <class Model, std::size_t count = Model::kCount>
FitOutcome Iterate(std::span<const ControlPoint> points, int passLimit, Vector<count>& unknowns) {
    FitOutcome outcome;
    bool converged = false;
    int passes = 0;
    do {
        NormalEquations equations = Linearised<Model>(points, unknowns);
        Matrix inverse = equations.Normal();
        if (!Invert(inverse)) ++outcome.singularSystems;
        const auto correction = Multiply(inverse, equations.Right());
        for (std::size_t i = 0; i < count; ++i) unknowns[i] += correction[i];
        unknowns.back() = Folded(unknowns.back());
        Model::Correct(unknowns);
        converged = true;
        for (std::size_t i = 0; i < count; ++i) {
            // Also false for a correction that is not a number.
            converged = converged && std::abs(correction[i]) <= Model::kThresholds[i];
        }
        ++passes;
    } while (passes <= passLimit && !converged);
    outcome.converged = passes <= passLimit;
    if (!outcome.converged) outcome.trouble = FitTrouble::kNotConverged;
    if (outcome.singularSystems > 0) outcome.trouble = FitTrouble::kSingular;
    return outcome;
}

/// From the source and from the destination centroid to the first point.
struct FirstPoint {
    Point source;
    Point destination;
};

Point Between(Point from, Point to) { return {to.first - from.first, to.second - from.second}; }

FirstPoint FromCentroids(const ControlPoint& point, const PointMeans& means) {
    return {Between(means.source, point.source), Between(means.destination, point.destination)};
}

double StartAngle(const FirstPoint& point) {
    return DirectionOf(point.destination.first, point.destination.second) -
           DirectionOf(point.source.first, point.source.second);
}

double Length(Point vector) {
    return std::sqrt(vector.first * vector.first + vector.second * vector.second);
}

Point StartShift(const PointMeans& means) {
    const Point shift = Between(means.source, means.destination);
    return {shift.first / kIterationScale, shift.second / kIterationScale};
}

void Store(Point shift, double kY, double kX, double angle, Transformation& t) {
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    t.a[0] = shift.first * kIterationScale;
    t.a[1] = kY * c;
    t.a[2] = -kX * s;
    t.b[0] = shift.second * kIterationScale;
    t.b[1] = kY * s;
    t.b[2] = kX * c;
}

}  // namespace

FitOutcome FitHelmert3(std::span<const ControlPoint> points, const PointMeans& means, int passLimit,
                       Transformation& transformation) {
    const Point shift = StartShift(means);
    Vector<3> unknowns{shift.first, shift.second, StartAngle(FromCentroids(points.front(), means))};
    const FitOutcome outcome = Iterate<Helmert3Model>(points, passLimit, unknowns);
    Store({unknowns[0], unknowns[1]}, 1.0, 1.0, unknowns[2], transformation);
    return outcome;
}

FitOutcome FitAffine5(std::span<const ControlPoint> points, const PointMeans& means, int passLimit,
                      Transformation& transformation) {
    const FirstPoint first = FromCentroids(points.front(), means);
    if (Length(first.source) == 0.0) return {.trouble = FitTrouble::kNoStart};
    const double scale = Length(first.destination) / Length(first.source);
    const Point shift = StartShift(means);
    Vector<5> unknowns{shift.first, shift.second, scale, scale, StartAngle(first)};
    const FitOutcome outcome = Iterate<Affine5Model>(points, passLimit, unknowns);
    Store({unknowns[0], unknowns[1]}, unknowns[2], unknowns[3], unknowns[4], transformation);
    return outcome;
}

}  // namespace kv_tr
