// The fits whose coefficients are functions of fewer unknowns.
#include "engine/constrained_fit.h"

#include <array>
#include <cmath>
#include <vector>

#include "engine/normal_equations.h"
#include "model/direction.h"
#include "model/matrix.h"
#include "support/errors.h"

namespace kv_tr {
namespace {

/// Coordinates and shifts are iterated in hundreds of metres.
constexpr double kScale = 100.0;

const double kTwoPi = 8.0 * std::atan(1.0);

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
    /// the iteration goes on from the changed values, deliberately.
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
NormalEquations Linearised(const ControlPoints& points, const Vector<count>& unknowns) {
    const double s = std::sin(unknowns.back());
    const double c = std::cos(unknowns.back());
    NormalEquations equations(count);
    for (const bool first : {true, false}) {
        for (const typeXYs4Tr& pair : points.All()) {
            if (pair.bNotUsed) continue;
            const auto equation = (first ? Model::First : Model::Second)(
                unknowns, s, c, pair.dXsour / kScale, pair.dYsour / kScale);
            const double measured = (first ? pair.dXdest : pair.dYdest) / kScale;
            equations.Add(equation.row, measured - equation.computed);
        }
    }
    return equations;
}

template <class Model, std::size_t count = Model::kCount>
FitOutcome Iterate(const ControlPoints& points, int passLimit, Vector<count>& unknowns) {
    bool converged = false;
    int passes = 0;
    do {
        if (converged) return FitOutcome::kConverged;
        const NormalEquations equations = Linearised<Model>(points, unknowns);
        Matrix inverse = equations.Normal();
        if (!MatrixInverse(inverse)) return FitOutcome::kSingular;
        std::vector<double> correction(count);
        fMAtrix_Mul_Vector(inverse, equations.Right(), correction);

        for (std::size_t i = 0; i < count; ++i) unknowns[i] += correction[i];
        unknowns.back() = Folded(unknowns.back());
        Model::Correct(unknowns);
        converged = true;
        for (std::size_t i = 0; i < count; ++i) {
            // Also false for a correction that is not a number.
            converged = converged && std::abs(correction[i]) <= Model::kThresholds[i];
        }
        ++passes;
    } while (passes <= passLimit);
    return FitOutcome::kNotConverged;
}

/// From the source and from the destination centroid to the first pair.
struct FirstPair {
    PlanePoint source;
    PlanePoint destination;
};

FirstPair FromCentroids(const ControlPoints& points) {
    const typeXYs4Tr& pair = points.All().front();
    const PlanePoint source = points.SourceMean();
    const PlanePoint destination = points.DestinationMean();
    return {{pair.dXsour - source.first, pair.dYsour - source.second},
            {pair.dXdest - destination.first, pair.dYdest - destination.second}};
}

double StartAngle(const FirstPair& pair) {
    return Direction(pair.destination.first, pair.destination.second) -
           Direction(pair.source.first, pair.source.second);
}

double Length(PlanePoint vector) {
    return std::sqrt(vector.first * vector.first + vector.second * vector.second);
}

PlanePoint StartShift(const ControlPoints& points) {
    return {(points.DestinationMean().first - points.SourceMean().first) / kScale,
            (points.DestinationMean().second - points.SourceMean().second) / kScale};
}

void Store(PlanePoint shift, double kY, double kX, double angle, TR_PRM& record) {
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    record.dA0 = shift.first * kScale;
    record.dA1 = kY * c;
    record.dA2 = -kX * s;
    record.dB0 = shift.second * kScale;
    record.dB1 = kY * s;
    record.dB2 = kX * c;
}

}  // namespace

FitOutcome FitHelmert3(const ControlPoints& points, int passLimit, TR_PRM& record) {
    const PlanePoint shift = StartShift(points);
    Vector<3> unknowns{shift.first, shift.second, StartAngle(FromCentroids(points))};
    const FitOutcome outcome = Iterate<Helmert3Model>(points, passLimit, unknowns);
    Store({unknowns[0], unknowns[1]}, 1.0, 1.0, unknowns[2], record);
    return outcome;
}

FitOutcome FitAffine5(const ControlPoints& points, int passLimit, TR_PRM& record) {
    const FirstPair pair = FromCentroids(points);
    const double scale = Divide(Length(pair.destination), Length(pair.source));
    const PlanePoint shift = StartShift(points);
    Vector<5> unknowns{shift.first, shift.second, scale, scale, StartAngle(pair)};
    const FitOutcome outcome = Iterate<Affine5Model>(points, passLimit, unknowns);
    Store({unknowns[0], unknowns[1]}, unknowns[2], unknowns[3], unknowns[4], record);
    return outcome;
}

}  // namespace kv_tr
