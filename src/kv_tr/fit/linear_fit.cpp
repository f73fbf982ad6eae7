// The fits that one linear system solves.
#include "kv_tr/fit/linear_fit.h"

#include <array>
#include <utility>

#include "kv_tr/fit/matrix.h"
#include "kv_tr/fit/normal_equations.h"
#include "kv_tr/model/evaluate.h"

namespace kv_tr {
namespace {

/// The coordinates of the six-parameter family enter in hundreds of metres, which conditions the
/// equations.
constexpr double kScale = 100.0;

struct Unknowns {
    std::vector<double> p;
    bool regular = true;
};

Unknowns Solve(Matrix normal, const std::vector<double>& right) {
    const bool regular = Invert(normal);
    return {Multiply(normal, right), regular};
}

/// Unknowns: two shifts, the scaled cosine and sine. The rows of the first coordinate come before
/// those of the second.
Unknowns SolveHelmert(std::span<const ControlPoint> points, Point mean) {
    NormalEquations equations(4);
    for (const bool first : {true, false}) {
        for (const ControlPoint& point : points) {
            if (!point.used) continue;
            const double y = (point.source.first - mean.first) / kScale;
            const double x = (point.source.second - mean.second) / kScale;
            if (first) {
                equations.Add(std::array{1.0, 0.0, y, -x}, point.destination.first / kScale);
            } else {
                equations.Add(std::array{0.0, 1.0, x, y}, point.destination.second / kScale);
            }
        }
    }
    return Solve(equations.Normal(), equations.Right());
}

/// Where the unknowns of the two coordinates stand among all.
struct Layout {
    std::size_t stride;  // between the unknowns of one coordinate
    std::size_t second;  // index of the second coordinate's first unknown
};

/// Every other type has the same design for both coordinates, and zeros between the two: they add
/// nothing, so one block is summed and put into its two places.
Unknowns SolveInBlocks(NormalEquations block, Layout layout) {
    const std::size_t n = block.Unknowns();
    const Matrix half = block.Normal();
    Matrix normal(2 * n, 2 * n);
    const std::vector<double> first = block.Right();
    const std::vector<double> second = block.SecondRight();
    std::vector<double> right(2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t row = i * layout.stride;
        for (std::size_t j = 0; j < n; ++j) {
            const std::size_t column = j * layout.stride;
            normal(row, column) = half(i, j);
            normal(layout.second + row, layout.second + column) = half(i, j);
        }
        right[row] = first[i];
        right[layout.second + row] = second[i];
    }
    return Solve(std::move(normal), right);
}

/// The block of a type with this number of unknowns, which the compiler knows.
template <std::size_t unknowns>
NormalEquations SumTerms(std::span<const ControlPoint> points, const PointMeans& means, Type type) {
    const bool reduced = IsPolynomial(type);
    const double scale = reduced ? 1.0 : kScale;
    const Point mean = means.source;
    const Point origin = reduced ? means.destination : Point{};
    NormalEquations block(unknowns);
    for (const ControlPoint& point : points) {
        if (!point.used) continue;
        const Terms terms = ReducedTerms(type, (point.source.first - mean.first) / scale,
                                         (point.source.second - mean.second) / scale);
        block.Add(std::span<const double>(terms.value).first(unknowns),
                  (point.destination.first - origin.first) / scale,
                  (point.destination.second - origin.second) / scale);
    }
    return block;
}

/// All types but Helmert. Types without a model of their own count as order 5 above and as order 1
/// below; the latter have too few terms for their unknowns, so that their equations are singular.
Unknowns SolveTerms(std::span<const ControlPoint> points, const PointMeans& means, Type type) {
    const auto unknowns = static_cast<std::size_t>(MinimumPoints(type));
    const auto sum = unknowns == 3    ? SumTerms<3>
                     : unknowns == 4  ? SumTerms<4>
                     : unknowns == 6  ? SumTerms<6>
                     : unknowns == 10 ? SumTerms<10>
                     : unknowns == 15 ? SumTerms<15>
                                      : SumTerms<21>;
    return SolveInBlocks(sum(points, means, type), type == Type::kAffine
                                                       ? Layout{.stride = 2, .second = 1}
                                                       : Layout{.stride = 1, .second = unknowns});
}

void StoreHelmert(const std::vector<double>& p, Point mean, Transformation& t) {
    t.a[0] = kScale * p[0] - p[2] * mean.first + p[3] * mean.second;
    t.a[1] = p[2];
    t.a[2] = -p[3];
    t.b[0] = kScale * p[1] - p[3] * mean.first - p[2] * mean.second;
    t.b[1] = p[3];
    t.b[2] = p[2];
}

void StoreAffine(const std::vector<double>& p, Point mean, Transformation& t) {
    t.a[0] = kScale * p[0] - p[2] * mean.first - p[4] * mean.second;
    t.a[1] = p[2];
    t.a[2] = p[4];
    t.b[0] = kScale * p[1] - p[3] * mean.first - p[5] * mean.second;
    t.b[1] = p[3];
    t.b[2] = p[5];
}

void StorePolynomial(const std::vector<double>& p, const PointMeans& means, Transformation& t) {
    const std::size_t n = p.size() / 2;
    t.a[0] = means.source.first;
    t.b[0] = means.source.second;
    t.a[1] = p[0] + means.destination.first;
    t.b[1] = p[n] + means.destination.second;
    for (std::size_t j = 1; j < n; ++j) {
        t.a[j + 1] = p[j];
        t.b[j + 1] = p[n + j];
    }
}

}  // namespace

FitOutcome FitLinear(std::span<const ControlPoint> points, const PointMeans& means,
                     Transformation& transformation) {
    const Type type = transformation.type;
    const Unknowns solution = type == Type::kHelmert ? SolveHelmert(points, means.source)
                                                     : SolveTerms(points, means, type);
    if (IsPolynomial(type)) {
        StorePolynomial(solution.p, means, transformation);
    } else if (type == Type::kHelmert) {
        StoreHelmert(solution.p, means.source, transformation);
    } else {
        StoreAffine(solution.p, means.source, transformation);
    }
    if (solution.regular) return {};
    return {.trouble = FitTrouble::kSingular, .singularSystems = 1};
}

}  // namespace kv_tr
