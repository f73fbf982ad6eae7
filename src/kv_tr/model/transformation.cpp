// Derivatives, directions and inverses of transformations.
#include "kv_tr/model/transformation.h"

#include <algorithm>
#include <cmath>

#include "kv_tr/model/direction.h"

namespace kv_tr {
namespace {

bool IsFinite(const Transformation::Series& series) {
    return std::ranges::all_of(series, [](double value) { return std::isfinite(value); });
}

/// Adds what the term of one index contributes, whose derivatives by u and v are given.
void AddTerm(Derivative& sum, const Transformation& t, std::size_t index, double byU, double byV) {
    sum.firstByFirst += t.a[index] * byU;
    sum.firstBySecond += t.a[index] * byV;
    sum.secondByFirst += t.b[index] * byU;
    sum.secondBySecond += t.b[index] * byV;
}

}  // namespace

Derivative DerivativeAt(const Transformation& t, Point at) {
    if (!IsPolynomial(t.type)) return {t.a[1], t.a[2], t.b[1], t.b[2]};
    const double u = at.first - t.a[0];
    const double v = at.second - t.b[0];
    Derivative sum;
    AddTerm(sum, t, 2, 1.0, 0.0);
    AddTerm(sum, t, 3, 0.0, 1.0);
    if (t.type == Type::kBilinear) {
        AddTerm(sum, t, 4, v, u);
        return sum;
    }
    const auto order = static_cast<std::size_t>(PolynomialOrder(t.type));
    std::array<double, 6> powersOfU{1.0};
    std::array<double, 6> powersOfV{1.0};
    for (std::size_t k = 1; k <= order; ++k) {
        powersOfU[k] = powersOfU[k - 1] * u;
        powersOfV[k] = powersOfV[k - 1] * v;
    }
    std::size_t index = 4;
    for (std::size_t degree = 2; degree <= order; ++degree) {
        for (std::size_t ofV = 0; ofV <= degree; ++ofV, ++index) {
            const std::size_t ofU = degree - ofV;
            const auto by = [](std::size_t power, const auto& own, double other) {
                return power == 0 ? 0.0 : static_cast<double>(power) * own[power - 1] * other;
            };
            AddTerm(sum, t, index, by(ofU, powersOfU, powersOfV[ofV]),
                    by(ofV, powersOfV, powersOfU[ofU]));
        }
    }
    return sum;
}

std::optional<double> Transformation::Direction(double angle, Point at) const {
    const Derivative d = DerivativeAt(*this, at);
    const double first = d.firstByFirst * std::cos(angle) + d.firstBySecond * std::sin(angle);
    const double second = d.secondByFirst * std::cos(angle) + d.secondBySecond * std::sin(angle);
    if (!std::isfinite(first + second) || (first == 0.0 && second == 0.0)) return std::nullopt;
    return DirectionOf(first, second);
}

double Determinant(const Transformation& t) { return t.a[1] * t.b[2] - t.a[2] * t.b[1]; }

Transformation LinearInverse(const Transformation& t) {
    const double d = Determinant(t);
    Transformation inverse{.type = t.type};
    inverse.a[0] = (t.b[0] * t.a[2] - t.a[0] * t.b[2]) / d;
    inverse.a[1] = t.b[2] / d;
    inverse.a[2] = -t.a[2] / d;
    inverse.b[0] = (t.a[0] * t.b[1] - t.b[0] * t.a[1]) / d;
    inverse.b[1] = -t.b[1] / d;
    inverse.b[2] = t.a[1] / d;
    return inverse;
}

std::optional<Transformation> Transformation::Inverse() const {
    if (IsPolynomial(type)) return std::nullopt;
    Transformation inverse = LinearInverse(*this);
    if (type == Type::kFathomToMetre) inverse.type = Type::kMetreToFathom;
    if (type == Type::kMetreToFathom) inverse.type = Type::kFathomToMetre;
    if (!IsFinite(inverse.a) || !IsFinite(inverse.b)) return std::nullopt;
    return inverse;
}

}  // namespace kv_tr
