// Standard deviations of parameters and of what follows from them.
#include "kv_tr/analysis/parameter_estimates.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "kv_tr/fit/point_sums.h"
#include "kv_tr/fit/record_of_frame.h"
#include "kv_tr/model/elementary.h"
#include "kv_tr/model/evaluate.h"

namespace kv_tr {
namespace {

using Gradient = std::vector<double>;

/// The coefficients of a record that are estimated, of the first coordinate and then of the second.
struct Layout {
    std::size_t first;  // index of the first one in a series
    std::size_t count;  // in a series
};

Layout LayoutOf(Type type, Type model) {
    const auto terms = static_cast<std::size_t>(SharesUnknowns(model) ? 3 : TermCount(model));
    return {IsPolynomial(type) ? std::size_t{1} : std::size_t{0}, terms};
}

/// How the coefficients change with the unknowns: a row a coefficient, a column an unknown. The
/// unknowns of separate coordinates stand one after the other.
std::vector<Gradient> Derivatives(const AdjustedModel& model, Layout layout, Point origin) {
    const std::size_t columns = model.Rows().Columns();
    const bool shared = SharesUnknowns(model.Model());
    std::vector<Gradient> rows(2 * layout.count, Gradient(shared ? columns : 2 * columns));
    for (std::size_t k = 0; k < columns; ++k) {
        Gradient unit(columns);
        unit[k] = 1.0;
        LongSeries series;
        series.Add(model.Rows().Change(unit, unit), model.InFrame(), origin);
        for (std::size_t i = 0; i < layout.count; ++i) {
            rows[i][k] = series.a[i + 1].Rounded();
            rows[layout.count + i][shared ? k : columns + k] = series.b[i + 1].Rounded();
        }
    }
    return rows;
}

/// The cofactors of the unknowns, both blocks where the coordinates are separate.
Matrix CofactorsOf(const AdjustedModel& model) {
    Matrix first = model.Factor(0).Cofactors();
    if (SharesUnknowns(model.Model())) return first;
    const Matrix second = model.Factor(1).Cofactors();
    const std::size_t n = first.Rows();
    Matrix both(2 * n, 2 * n);
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            both(i, j) = first(i, j);
            both(n + i, n + j) = second(i, j);
        }
    }
    return both;
}

double Product(const Matrix& cofactors, const Gradient& a, const Gradient& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (a[i] == 0.0) continue;
        double row = 0.0;
        for (std::size_t j = 0; j < b.size(); ++j) row += cofactors(i, j) * b[j];
        sum += a[i] * row;
    }
    return sum;
}

double Folded(double angle) {
    constexpr double kPi = std::numbers::pi;
    if (angle > kPi) return angle - 2.0 * kPi;
    return angle <= -kPi ? angle + 2.0 * kPi : angle;
}

/// A quantity and its derivatives by a1, a2, b1 and b2.
struct Dependent {
    Assessment::Derived kind;
    double value;
    std::array<double, 4> gradient;
};

std::vector<Dependent> DependentsOf(Type type, const Transformation& record) {
    using Derived = Assessment::Derived;
    const double a1 = record.a[1];
    const double a2 = record.a[2];
    const double b1 = record.b[1];
    const double b2 = record.b[2];
    const double first = Hypotenuse(a1, b1);
    const double turn = Determinant(record) > 0.0 ? 1.0 : -1.0;
    const double second = turn * Hypotenuse(a2, b2);
    const Dependent rotation{Derived::kRotation,
                             std::atan2(b1, a1),
                             {-b1 / (first * first), 0, a1 / (first * first), 0}};
    const Dependent scaleFirst{type == Type::kHelmert ? Derived::kScale : Derived::kScaleFirst,
                               first,
                               {a1 / first, 0, b1 / first, 0}};
    const Dependent scaleSecond{Derived::kScaleSecond, second, {0, a2 / second, 0, b2 / second}};
    const double squared = second * second;
    const Dependent shear{
        Derived::kShear,
        Folded(std::atan2(-turn * a2, turn * b2) - rotation.value),
        {-rotation.gradient[0], -b2 / squared, -rotation.gradient[2], a2 / squared}};
    switch (type) {
        case Type::kHelmert3: return {rotation};
        case Type::kHelmert: return {scaleFirst, rotation};
        case Type::kAffine: return {scaleFirst, scaleSecond, rotation, shear};
        default: return {};
    }
}

}  // namespace

void EstimateParameters(const AdjustedModel& model, std::span<const ControlPoint> points, Type type,
                        Assessment& assessment) {
    PointSums sums;
    sums.Add(points);
    const bool reduced = IsPolynomial(type);
    const Point origin = sums.Means().source;
    const Transformation record = model.Record(type, origin);
    const Layout layout = LayoutOf(type, model.Model());
    const std::vector<Gradient> rows = Derivatives(model, layout, reduced ? origin : Point{});
    const Matrix cofactors = CofactorsOf(model);
    const double sigma0 = assessment.unitSigma;

    std::vector<double> roots;
    roots.reserve(rows.size());
    for (const Gradient& row : rows) roots.push_back(std::sqrt(Product(cofactors, row, row)));
    assessment.correlations = Matrix(rows.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (std::size_t j = 0; j < rows.size(); ++j) {
            assessment.correlations(i, j) =
                i == j ? 1.0 : Product(cofactors, rows[i], rows[j]) / (roots[i] * roots[j]);
        }
    }
    const double half = model.InFrame().halfLength;
    const Terms effects = ReducedTerms(std::max(model.Model(), Type::kPolynomial1), half, half);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool first = i < layout.count;
        const std::size_t term = first ? i : i - layout.count;
        const std::size_t index = layout.first + term;
        Assessment::Parameter parameter;
        parameter.name = (first ? "A" : "B") + std::to_string(index);
        parameter.estimate = {first ? record.a[index] : record.b[index], sigma0 * roots[i]};
        parameter.atEdge = parameter.estimate.value * effects.value[term];
        parameter.sigmaAtEdge = parameter.estimate.sigma * effects.value[term];
        assessment.parameters.push_back(parameter);
    }

    for (const Dependent& dependent : DependentsOf(assessment.type, record)) {
        Gradient row(rows.front().size());
        const std::array<const Gradient*, 4> by{&rows[1], &rows[2], &rows[layout.count + 1],
                                                &rows[layout.count + 2]};
        for (std::size_t k = 0; k < by.size(); ++k) {
            for (std::size_t j = 0; j < row.size(); ++j) {
                row[j] += dependent.gradient[k] * (*by[k])[j];
            }
        }
        const double root = std::sqrt(std::max(0.0, Product(cofactors, row, row)));
        assessment.derived.push_back({dependent.kind, {dependent.value, sigma0 * root}});
    }
    if (assessment.type == Type::kAffine5) {
        // The unknowns themselves: two scales and the rotation, per half width of the frame.
        const Linearisation at = LinearisationAt(record);
        const double perMetre = model.InFrame().perMetre.first;
        const auto sigma = [&](std::size_t k) {
            return sigma0 * std::sqrt(cofactors(k, k)) * perMetre;
        };
        assessment.derived = {{Assessment::Derived::kScaleFirst, {at.scaleFirst, sigma(2)}},
                              {Assessment::Derived::kScaleSecond, {at.scaleSecond, sigma(3)}},
                              {Assessment::Derived::kRotation, {at.rotation, sigma(4)}}};
    }

    assessment.centroid = model.InFrame().origin;
    const Point centroid[] = {assessment.centroid};
    assessment.centroidImage = model.Images(centroid).front();
    Point weightSums;
    for (const Point& weight : model.Weights()) {
        weightSums.first += weight.first;
        weightSums.second += weight.second;
    }
    assessment.centroidSigma = {sigma0 / std::sqrt(weightSums.first),
                                sigma0 / std::sqrt(weightSums.second)};
}

}  // namespace kv_tr
