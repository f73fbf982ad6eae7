// What is true of the figures of every adjustment.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "helpers/sample_points.h"
#include "kv_tr/analysis/point_precision.h"
#include "kv_tr/fit/fit.h"

namespace kv_tr::test {
namespace {

class FigureLaws : public testing::TestWithParam<Type> {
protected:
    const Type type = GetParam();
    const std::vector<ControlPoint> points = PointsBy(General(type), 40, 0.03);

    /// Different accuracies, both coordinates of a point alike.
    std::vector<Point> Sigmas(double factor = 1.0) const {
        std::vector<Point> sigmas;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double sigma = factor * (0.02 + 0.001 * static_cast<double>(i % 7));
            sigmas.push_back({sigma, sigma});
        }
        return sigmas;
    }
    Assessment AssessWith(std::vector<Point> sigmas) const {
        AssessmentOptions options;
        options.sigmas = std::move(sigmas);
        return Assess(points, type, options);
    }
};

void ExpectSame(double actual, double expected, double tolerance = 1e-8) {
    EXPECT_NEAR(actual, expected, tolerance * std::abs(expected) + 1e-12);
}

TEST_P(FigureLaws, RedundancyNumbersSumUpToTheRedundancy) {
    for (const auto& sigmas : {std::vector<Point>{}, Sigmas()}) {
        const Assessment assessment = AssessWith(sigmas);
        double sum = 0.0;
        for (const PointAssessment& point : assessment.points) {
            sum += point.redundancy.first + point.redundancy.second;
        }
        ExpectSame(sum, assessment.redundancy);
        EXPECT_EQ(assessment.redundancy, 80 - assessment.unknowns);
    }
    const PointPrecision precision(AdjustedModel(points, type));
    EXPECT_LE(std::ranges::max(precision.Factors(AdjustedModel(points, type).Sources())),
              1.0 + 1e-12);
}

TEST_P(FigureLaws, TheEstimatedErrorOfAPointIsItsResidualAgainstTheFitWithoutIt) {
    const Assessment assessment = AssessWith({});
    auto without = points;
    without[5].used = false;
    const AdjustedModel model(without, type);
    const Point image = model.Images(std::vector{points[5].source}).front();
    const Residual error = assessment.points[5].grossError;
    // The types that are not linear are linearised.
    const double tolerance = SharesUnknowns(type) && type != Type::kHelmert ? 1e-5 : 1e-9;
    EXPECT_NEAR(error.first, image.first - points[5].destination.first, tolerance);
    EXPECT_NEAR(error.second, image.second - points[5].destination.second, tolerance);
}

TEST_P(FigureLaws, OnlySigma0ChangesWithTheUnitOfWeight) {
    const Assessment one = AssessWith(Sigmas());
    const Assessment other = AssessWith(Sigmas(3.0));
    ExpectSame(other.sigma0, one.sigma0 / 3.0);
    for (std::size_t i = 0; i < one.parameters.size(); ++i) {
        ExpectSame(other.parameters[i].estimate.sigma, one.parameters[i].estimate.sigma);
    }
    ExpectSame(other.points[3].external.second, one.points[3].external.second, 1e-7);
    ExpectSame(other.points[3].test, one.points[3].test, 1e-7);
}

TEST_P(FigureLaws, StandardDeviationsAPrioriAreInTheRatioOfTheSigmas) {
    const Assessment found = AssessWith({});
    AssessmentOptions options;
    options.sigma0 = 0.7 * found.sigma0;
    options.isAPriori = true;
    const Assessment stated = Assess(points, type, options);
    for (std::size_t i = 0; i < found.parameters.size(); ++i) {
        ExpectSame(stated.parameters[i].estimate.sigma, 0.7 * found.parameters[i].estimate.sigma);
    }
    ExpectSame(stated.sigma0, found.sigma0);
}

TEST_P(FigureLaws, APointInTwoHalvesCountsAsOne) {
    auto twice = points;
    twice.insert(twice.end(), points.begin(), points.end());
    AssessmentOptions options;
    options.sigmas.assign(80, {std::sqrt(2.0), std::sqrt(2.0)});
    const Assessment halves = Assess(twice, type, options);
    const Assessment whole = AssessWith({});
    EXPECT_EQ(halves.redundancy, whole.redundancy + 80);
    ExpectSame(halves.squareSum, whole.squareSum);
    ExpectSame(halves.parameters[1].estimate.sigma / halves.sigma0,
               whole.parameters[1].estimate.sigma / whole.sigma0);
}

TEST_P(FigureLaws, FiguresDoNotDependOnPlaceDirectionAndScaleOfTheSystems) {
    auto moved = points;
    const double angle = type == Type::kBilinear || type == Type::kAffine5 ? 0.0 : 0.7;
    const double scale = type == Type::kHelmert3 ? 1.0 : 2.5;
    for (ControlPoint& point : moved) {
        const auto [y, x] = point.source;
        point.source = {scale * (std::cos(angle) * y - std::sin(angle) * x) - 4e5,
                        scale * (std::sin(angle) * y + std::cos(angle) * x) + 7e4};
    }
    const Assessment here = AssessWith({});
    const Assessment there = Assess(moved, type);
    ExpectSame(there.sigma0, here.sigma0, 1e-6);
    ExpectSame(there.leaveOneOut, here.leaveOneOut, 1e-6);
    ExpectSame(there.points[7].redundancy.first, here.points[7].redundancy.first, 1e-6);
}

TEST_P(FigureLaws, TheAccurateSolutionIsRightAndTheDocumentedOneChecked) {
    const FitResult accurate = Fit(points, type, {.solution = Solution::kAccurate});
    EXPECT_LT(accurate.check.errorInHull, 1e-8);
    EXPECT_TRUE(accurate.outcome.Succeeded());
    const FitResult documented = Fit(points, type);
    EXPECT_EQ(documented.check.level, TruthCheck::Level::kVerified);
    auto spoilt = documented.transformation;
    spoilt.a[IsPolynomial(type) ? 1 : 0] += 0.37;
    const TruthCheck check = CheckFit(points, spoilt, ResidualsOf(points, spoilt));
    EXPECT_NEAR(check.errorInHull, 0.37, 1e-4);
    EXPECT_EQ(check.level, TruthCheck::Level::kSevere);
}

TEST_P(FigureLaws, OnlyTheNamedPointsAreKeptWhereNotAllAre) {
    auto spoilt = points;
    spoilt[0].used = false;
    spoilt[23].destination.second += 0.9;
    spoilt.resize(5000, spoilt[5]);  // more than a block, with redundancy almost everywhere
    AssessmentOptions options;
    const Assessment all = Assess(spoilt, type, options);
    options.keepsAllPoints = false;
    const Assessment few = Assess(spoilt, type, options);
    ASSERT_EQ(all.points.size(), 4999U);
    ASSERT_EQ(few.points.size(), 2U);
    const auto weakest =
        std::ranges::min_element(all.points, {}, &PointAssessment::LeastRedundancy);
    EXPECT_EQ(few.points[0].index, weakest->index);
    ASSERT_TRUE(all.suspect && few.suspect);
    EXPECT_EQ(*few.suspect, 1U);
    EXPECT_EQ(few.points[1].index, all.points[*all.suspect].index);
    EXPECT_EQ(few.points[1].test, all.points[*all.suspect].test);
    EXPECT_EQ(few.leaveOneOut, all.leaveOneOut);
    EXPECT_EQ(few.press, all.press);
}

INSTANTIATE_TEST_SUITE_P(
    Types, FigureLaws,
    testing::Values(Type::kHelmert3, Type::kHelmert, Type::kAffine5, Type::kAffine, Type::kBilinear,
                    Type::kPolynomial2, Type::kPolynomial3, Type::kPolynomial4, Type::kPolynomial5),
    [](const auto& type) { return "T" + std::to_string(NumberOf(type.param) + 3); });

TEST(Assessment, WithoutRedundancyFiguresDoNotExistAndBadSigmasAreRefused) {
    const auto points = PointsBy(General(Type::kAffine), 3, 0.5);
    const Assessment assessment = Assess(points, Type::kAffine);
    EXPECT_TRUE(assessment.isDetermined);
    EXPECT_TRUE(std::isnan(assessment.sigma0) && std::isnan(assessment.leaveOneOut) &&
                std::isnan(assessment.points[0].studentised.first) &&
                std::isnan(assessment.parameters[0].estimate.sigma));
    EXPECT_TRUE(std::isinf(assessment.points[0].detectable.first));
    EXPECT_FALSE(Assess(std::vector{points[0], points[0]}, Type::kHelmert).isDetermined);
    for (const Point sigma : {Point{0, 1}, Point{1, -1}, Point{1, NAN}}) {
        AssessmentOptions options;
        options.sigmas.assign(3, {1, 1});
        options.sigmas[1] = sigma;
        EXPECT_THROW(Assess(points, Type::kAffine, options), std::invalid_argument);
    }
    AssessmentOptions unknown;
    unknown.isAPriori = true;  // of which there is nothing
    EXPECT_THROW(Assess(points, Type::kAffine, unknown), std::invalid_argument);
    AssessmentOptions different;
    different.sigmas.assign(3, {1, 2});
    EXPECT_THROW(Assess(points, Type::kHelmert, different), std::invalid_argument);
    const Assessment separate = Assess(PointsBy(General(Type::kAffine), 9, 0.5), Type::kAffine, {});
    EXPECT_EQ(separate.redundancy, 12);
}

}  // namespace
}  // namespace kv_tr::test
