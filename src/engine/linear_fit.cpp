// The fits that one linear system solves.
#include "engine/linear_fit.h"

#include <array>
#include <string>

#include "engine/normal_equations.h"
#include "model/coefficients.h"
#include "model/evaluate.h"
#include "model/matrix.h"
#include "model/transformation_type.h"
#include "support/message.h"

namespace kv_tr {
namespace {

/// The coordinates of the six-parameter family enter in hundreds of metres, which conditions the
/// equations.
constexpr double kScale = 100.0;

struct Solution {
    std::vector<double> p;
    bool found = false;
};

Solution Solve(Matrix normal, const std::vector<double>& right) {
    if (!MatrixInverse(normal)) return {};
    Solution solution{.p = std::vector<double>(right.size()), .found = true};
    fMAtrix_Mul_Vector(normal, right, solution.p);
    return solution;
}

/// Unknowns: two shifts, the scaled cosine and sine. The rows of the first coordinate come before
/// those of the second.
Solution SolveHelmert(const ControlPoints& points) {
    const PlanePoint mean = points.SourceMean();
    NormalEquations equations(4);
    for (const bool first : {true, false}) {
        for (const typeXYs4Tr& pair : points.All()) {
            if (pair.bNotUsed) continue;
            const double y = (pair.dXsour - mean.first) / kScale;
            const double x = (pair.dYsour - mean.second) / kScale;
            if (first) {
                equations.Add(std::array{1.0, 0.0, y, -x}, pair.dXdest / kScale);
            } else {
                equations.Add(std::array{0.0, 1.0, x, y}, pair.dYdest / kScale);
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
Solution SolveInBlocks(const NormalEquations& block, Layout layout) {
    const std::size_t n = block.Unknowns();
    const Matrix half = block.Normal();
    Matrix normal(2 * n, 2 * n);
    std::vector<double> right(2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t row = i * layout.stride;
        for (std::size_t j = 0; j < n; ++j) {
            const std::size_t column = j * layout.stride;
            normal(row, column) = half(i, j);
            normal(layout.second + row, layout.second + column) = half(i, j);
        }
        right[row] = block.Right()[i];
        right[layout.second + row] = block.SecondRight()[i];
    }
    return Solve(std::move(normal), right);
}

/// All types but Helmert. Types without a model of their own count as order 5 above and as order 1
/// below; the latter have too few terms for their unknowns, so that their equations are singular.
Solution SolveTerms(const ControlPoints& points, enuTR_TYPE type) {
    const auto unknowns = static_cast<std::size_t>(MinimumPoints(type));
    const bool reduced = IsPolynomial(type);
    const double scale = reduced ? 1.0 : kScale;
    const PlanePoint mean = points.SourceMean();
    const PlanePoint origin = reduced ? points.DestinationMean() : PlanePoint{};
    NormalEquations block(unknowns);
    for (const typeXYs4Tr& pair : points.All()) {
        if (pair.bNotUsed) continue;
        if (type > TR_EOV_HDR_10e) {
            ShowMessage("KORVANEL --> mudtTR_PRM.eType=" + std::to_string(type));
        }
        const Terms terms = ReducedTerms(type, (pair.dXsour - mean.first) / scale,
                                         (pair.dYsour - mean.second) / scale);
        block.Add(std::span(terms.value).first(unknowns), (pair.dXdest - origin.first) / scale,
                  (pair.dYdest - origin.second) / scale);
    }
    return SolveInBlocks(block, type == TR_AFFIN ? Layout{.stride = 2, .second = 1}
                                                 : Layout{.stride = 1, .second = unknowns});
}

void StoreHelmert(const std::vector<double>& p, PlanePoint mean, TR_PRM& record) {
    record.dA0 = kScale * p[0] - p[2] * mean.first + p[3] * mean.second;
    record.dA1 = p[2];
    record.dA2 = -p[3];
    record.dB0 = kScale * p[1] - p[3] * mean.first - p[2] * mean.second;
    record.dB1 = p[3];
    record.dB2 = p[2];
}

void StoreAffine(const std::vector<double>& p, PlanePoint mean, TR_PRM& record) {
    record.dA0 = kScale * p[0] - p[2] * mean.first - p[4] * mean.second;
    record.dA1 = p[2];
    record.dA2 = p[4];
    record.dB0 = kScale * p[1] - p[3] * mean.first - p[5] * mean.second;
    record.dB1 = p[3];
    record.dB2 = p[5];
}

void StorePolynomial(const std::vector<double>& p, const ControlPoints& points, TR_PRM& record) {
    const std::size_t n = p.size() / 2;
    Coefficients coefficients = CoefficientsOf(record);
    coefficients.a[0] = points.SourceMean().first;
    coefficients.b[0] = points.SourceMean().second;
    coefficients.a[1] = p[0] + points.DestinationMean().first;
    coefficients.b[1] = p[n] + points.DestinationMean().second;
    for (std::size_t j = 1; j < n; ++j) {
        coefficients.a[j + 1] = p[j];
        coefficients.b[j + 1] = p[n + j];
    }
    record = MakeRecord(record.eType, coefficients);
}

}  // namespace

bool FitLinear(const ControlPoints& points, TR_PRM& record) {
    const enuTR_TYPE type = record.eType;
    const Solution solution = type == TR_HELMERT ? SolveHelmert(points) : SolveTerms(points, type);
    if (!solution.found) return false;
    if (IsPolynomial(type)) {
        StorePolynomial(solution.p, points, record);
    } else if (type == TR_HELMERT) {
        StoreHelmert(solution.p, points.SourceMean(), record);
    } else {
        StoreAffine(solution.p, points.SourceMean(), record);
    }
    return true;
}

}  // namespace kv_tr
