// The adjustment once more, with another library's factorisation and in longer numbers.
#include <gtest/gtest.h>

#include <Eigen/QR>
#include <cmath>

#include "helpers/sample_points.h"
#include "kv_tr/analysis/assessment.h"
#include "kv_tr/fit/fit.h"

namespace kv_tr::test {
namespace {

using Number = long double;
using Rows = Eigen::Matrix<Number, Eigen::Dynamic, Eigen::Dynamic>;
using Column = Eigen::Matrix<Number, Eigen::Dynamic, 1>;

class SecondOpinion : public testing::TestWithParam<Type> {};

/// The terms of a type at a source, in the order of the coefficients.
std::vector<Number> TermsAt(Type type, Number u, Number v) {
    if (type == Type::kBilinear) return {1, u, v, u * v};
    const int order = IsPolynomial(type) ? PolynomialOrder(type) : 1;
    std::vector<Number> terms;
    for (int degree = 0; degree <= order; ++degree) {
        for (int j = 0; j <= degree; ++j) {
            terms.push_back(std::pow(u, Number(degree - j)) * std::pow(v, Number(j)));
        }
    }
    return terms;
}

TEST_P(SecondOpinion, AgreesOnResidualsRedundancyAndParameters) {
    const Type type = GetParam();
    const auto points = PointsBy(General(type), 40, 0.03);
    AssessmentOptions options;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto step = static_cast<double>(i % 7);
        options.sigmas.push_back({0.02 + 0.001 * step, 0.05 - 0.003 * step});
    }
    const Assessment assessment = Assess(points, type, options);
    const Transformation record =
        Fit(points, type, {.solution = Solution::kAccurate}).transformation;
    const bool isReduced = IsPolynomial(type);
    const Number origin[2] = {isReduced ? record.a[0] : 0.0, isReduced ? record.b[0] : 0.0};

    const auto count = static_cast<Eigen::Index>(points.size());
    const auto unknowns = static_cast<Eigen::Index>(TermsAt(type, 0, 0).size());
    Number squareSum = 0;
    for (const auto coordinate : {&Point::first, &Point::second}) {
        const bool isFirst = coordinate == &Point::first;
        const auto of = [&](const Residual& pair) { return isFirst ? pair.first : pair.second; };
        Rows design(count, unknowns);
        Column measured(count);
        for (Eigen::Index i = 0; i < count; ++i) {
            const ControlPoint& point = points[static_cast<std::size_t>(i)];
            const Number weight =
                1 / Number(options.sigmas[static_cast<std::size_t>(i)].*coordinate);
            const auto terms = TermsAt(type, Number(point.source.first) - origin[0],
                                       Number(point.source.second) - origin[1]);
            for (Eigen::Index k = 0; k < unknowns; ++k) {
                design(i, k) = weight * terms[static_cast<std::size_t>(k)];
            }
            measured(i) = weight * Number(point.destination.*coordinate);
        }
        const Column scale = design.colwise().norm();
        const Rows scaled = design * scale.cwiseInverse().asDiagonal();
        const Eigen::HouseholderQR<Rows> factor(scaled);
        const Column solution = factor.solve(measured);
        const Column left = scaled * solution - measured;
        squareSum += left.squaredNorm();
        const Rows basis = factor.householderQ() * Rows::Identity(count, unknowns);
        const Rows inverse =
            factor.matrixQR().topRows(unknowns).triangularView<Eigen::Upper>().solve(
                Rows::Identity(unknowns, unknowns));
        for (Eigen::Index i = 0; i < count; ++i) {
            const PointAssessment& point = assessment.points[static_cast<std::size_t>(i)];
            const Number sigma = options.sigmas[static_cast<std::size_t>(i)].*coordinate;
            EXPECT_NEAR(of(point.residual), static_cast<double>(left(i) * sigma), 1e-8);
            EXPECT_NEAR(of(point.redundancy), static_cast<double>(1 - basis.row(i).squaredNorm()),
                        1e-9);
        }
        for (Eigen::Index k = 0; k < unknowns; ++k) {
            const Assessment::Parameter& parameter =
                assessment.parameters[static_cast<std::size_t>(k + (isFirst ? 0 : unknowns))];
            const auto sigma = static_cast<double>(inverse.row(k).norm() / scale(k));
            EXPECT_NEAR(parameter.estimate.sigma / (assessment.sigma0 * sigma), 1.0, 1e-7)
                << parameter.name;
        }
    }
    EXPECT_NEAR(assessment.squareSum / static_cast<double>(squareSum), 1.0, 1e-8);
}

INSTANTIATE_TEST_SUITE_P(Types, SecondOpinion,
                         testing::Values(Type::kAffine, Type::kBilinear, Type::kPolynomial1,
                                         Type::kPolynomial2, Type::kPolynomial3, Type::kPolynomial4,
                                         Type::kPolynomial5));

}  // namespace
}  // namespace kv_tr::test
