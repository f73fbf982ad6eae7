// Whether fits are known to be right or wrong: geometries with exact solutions.
#include "kv_tr/fit/truth_check.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/reference_cases.h"
#include "helpers/sample_points.h"
#include "kv_tr/analysis/distributions.h"
#include "kv_tr/analysis/warnings.h"
#include "kv_tr/fit/weak_geometry.h"

namespace kv_tr::test {
namespace {

using Level = TruthCheck::Level;

class Truth : public testing::TestWithParam<std::string> {};

std::vector<Warning> WarningsOf(const ReferenceCase& reference, const FitResult& fit,
                                Solution solution = Solution::kDocumented) {
    return FindWarnings({.points = reference.points,
                         .transformation = fit.transformation,
                         .check = fit.check,
                         .outcome = fit.outcome,
                         .solution = solution});
}

TEST_P(Truth, TheCheckKnowsTheErrorOfTheFit) {
    const ReferenceCase reference(GetParam());
    const FitResult fit = Fit(reference.points, reference.type);
    const std::string verdict = reference.json["expected_verdict"];
    const auto warnings = WarningsOf(reference, fit);
    EXPECT_EQ(fit.check.undetermined, verdict == "rank" || verdict == "line");
    if (fit.check.undetermined) {
        EXPECT_EQ(fit.check.rank, reference.json["rank"]);
        ASSERT_EQ(warnings.size(), 1U);
        EXPECT_EQ(warnings.front().id, Warning::Id::kUndetermined);
        EXPECT_NE(warnings.front().geometry.kind, WeakGeometry::Kind::kNone);
        EXPECT_TRUE(IsSevere(warnings));
        return;
    }
    const double error = reference.json["error_of_the_default_m"];
    EXPECT_GT(fit.check.errorInHull, error / 3);
    EXPECT_LT(fit.check.errorInHull, error * 3);
    EXPECT_EQ(fit.check.level == Level::kVerified, verdict == "verified");
    EXPECT_EQ(warnings.empty(), verdict == "verified");
}

TEST_P(Truth, TheAccurateSolutionIsRightOrWarns) {
    const ReferenceCase reference(GetParam());
    const FitResult fit = Fit(reference.points, reference.type, {.solution = Solution::kAccurate});
    const Json tolerance = reference.json.value("tolerance_of_the_accurate_solution_m", Json());
    if (!tolerance.is_number()) {
        const auto warnings = WarningsOf(reference, fit, Solution::kAccurate);
        ASSERT_FALSE(warnings.empty());
        EXPECT_EQ(warnings.front().id,
                  fit.check.undetermined ? Warning::Id::kUndetermined : Warning::Id::kRecord);
        return;
    }
    const double allowed = tolerance;
    for (const Json& exact : reference.json["exact_residuals"]) {
        const auto point =
            std::ranges::find(reference.points, exact[0].get<std::string>(), &ControlPoint::id);
        const Residual residual =
            fit.residuals[static_cast<std::size_t>(point - reference.points.begin())];
        EXPECT_NEAR(residual.first, exact[1], allowed);
        EXPECT_NEAR(residual.second, exact[2], allowed);
    }
    for (const Json& exact : reference.json["exact_images_in_hull"]) {
        const Point image = fit.transformation.Apply({exact[0], exact[1]});
        EXPECT_NEAR(image.first, exact[2], allowed);
        EXPECT_NEAR(image.second, exact[3], allowed);
    }
}

INSTANTIATE_TEST_SUITE_P(Geometries, Truth, testing::ValuesIn(CasesWith("expected_verdict")),
                         [](const auto& name) { return name.param; });

TEST(TruthCheck, NamesTheCause) {
    const auto causeOf = [](const std::string& name, std::string_view id) {
        const ReferenceCase reference(name);
        const auto warnings = WarningsOf(reference, Fit(reference.points, reference.type));
        const auto found = std::ranges::find(warnings, id, CodeOf);
        return found == warnings.end() ? std::string() : DescribeWarning(*found, TextsIn(kEnglish));
    };
    EXPECT_EQ(
        causeOf("truth_corner_poly5", "W1"),
        "The computed parameters miss the least-squares solution by up to 2.8 m between the "
        "points (2.8 m at the points). Cause: the origin lies 3.4 half extents from the points "
        "in use, because excluded points are far away.");
    EXPECT_NE(causeOf("truth_ring_poly5", "W1").find("within 33 m of one conic"),
              std::string::npos);
    EXPECT_NE(causeOf("truth_ring_poly5", "W5").find("grows to 1216 m at"), std::string::npos);
    EXPECT_EQ(causeOf("truth_two_places_affine", "W2"),
              "The points do not determine this type: only 2 distinct places for 3 coefficients. 2 "
              "of 6 unknowns are arbitrary.");
    EXPECT_NE(causeOf("truth_grid4_poly4", "W2").find("of one curve of order 4. 4 of 30 unknowns"),
              std::string::npos);
    EXPECT_NE(causeOf("truth_minimum_poly5", "W3"), "");
}

TEST(TruthCheck, ControlPointsOnALineDetermineNoAffineTransformation) {
    std::vector<ControlPoint> points;
    for (int i = 0; i < 12; ++i) {
        const Point source{1000.0 + 300.0 * i, 2000.0 + 700.0 * i};
        points.push_back({std::to_string(i), source, {source.second, source.first + 0.01 * i}});
    }
    for (const Type type : {Type::kAffine, Type::kAffine5, Type::kBilinear, Type::kPolynomial2}) {
        const TruthCheck check = Fit(points, type).check;
        EXPECT_TRUE(check.undetermined) << NumberOf(type);
        EXPECT_EQ(check.cause.kind, WeakGeometry::Kind::kCurve);
        EXPECT_EQ(check.cause.order, 1);
    }
    EXPECT_EQ(Fit(points, Type::kHelmert).check.level, Level::kVerified);
}

TEST(TruthCheck, WhatIsNotDeterminedExplainsNoResiduals) {
    // On a circle one term of order 2 follows from the others; none has three waves around it.
    std::vector<ControlPoint> points;
    std::vector<Residual> residuals;
    for (int i = 0; i < 8; ++i) {
        const double angle = std::atan(1.0) * i;
        points.push_back({"", {500.0 * std::cos(angle), 500.0 * std::sin(angle)}, {}});
        residuals.push_back({0.3 * std::cos(3 * angle), 0.5 * std::sin(3 * angle)});
    }
    const TruthCheck check = CheckFit(points, {.type = Type::kPolynomial2}, residuals);
    EXPECT_EQ(check.redundancy, 6);
    EXPECT_NEAR(check.sigma0, std::sqrt(4 * (0.09 + 0.25) / 6), 1e-9);

    for (ControlPoint& point : points) point.source = {7, 9};
    EXPECT_EQ(CheckFit(points, {.type = Type::kAffine}, residuals).originDistance, 0.0);
}

TEST(TruthCheck, PointsThatTouchAreOneGroup) {
    std::vector<Point> sources;
    for (int i = 0; i < 11; ++i) {
        sources.push_back({0.3 * i, 8.0 * i});
        sources.push_back({1000.0 - 0.2 * i, 5.0 + 8.0 * i});
    }
    const Frame frame = FrameOf(sources, {}, Type::kAffine);
    const WeakGeometry geometry = FindWeakGeometry(sources, frame, Type::kAffine);
    EXPECT_EQ(geometry.kind, WeakGeometry::Kind::kGroups);
    EXPECT_EQ(geometry.count, 2U);
}

TEST(Warnings, NameThePointThatOneCoordinateControlsBadly) {
    const auto points = PointsBy(General(Type::kAffine), 8, 0.03);
    AssessmentOptions options;
    options.sigmas.assign(8, {0.03, 0.02});
    options.sigmas[5].first = 0.0005;
    const Assessment assessment = Assess(points, Type::kAffine, options);
    const FitResult fit = Fit(points, Type::kAffine);
    const auto warnings = FindWarnings({.points = points,
                                        .transformation = fit.transformation,
                                        .check = fit.check,
                                        .assessment = &assessment});
    const auto weak = std::ranges::find(warnings, Warning::Id::kWeak, &Warning::id);
    ASSERT_NE(weak, warnings.end());
    EXPECT_EQ(weak->point, 5U);
}

TEST(TruthCheck, AnotherStationaryPointIsFound) {
    // Sheared points; a quarter turn away from the best rotation the derivatives vanish too.
    std::vector<ControlPoint> points;
    for (const Point& point : {Point{-300, 20}, {300, 20}, {-100, -20}, {100, -20}}) {
        points.push_back({"", point, {point.first, 0.5 * point.first + point.second}});
    }
    constexpr double kSquaresFirst = 200000;
    constexpr double kSquaresSecond = 1600;
    const double angle = 0.5 * std::atan2(kSquaresFirst, 0.75 * kSquaresFirst + kSquaresSecond) +
                         2.0 * std::atan(1.0);
    const double scaleFirst = std::cos(angle) + 0.5 * std::sin(angle);
    const double scaleSecond = std::cos(angle);
    Transformation turned;
    turned.type = Type::kAffine5;
    turned.a = {0, scaleFirst * std::cos(angle), -scaleSecond * std::sin(angle)};
    turned.b = {0, scaleFirst * std::sin(angle), scaleSecond * std::cos(angle)};
    const auto residuals = ResidualsOf(points, turned);
    const TruthCheck check = CheckFit(points, turned, residuals);
    EXPECT_TRUE(check.otherMinimum);
    EXPECT_EQ(check.level, Level::kSevere);
    EXPECT_EQ(Fit(points, Type::kAffine5).check.level, Level::kVerified);
}

TEST(Distributions, TailsAndQuantilesAgreeWithFiftyDigits) {
    Json json;
    std::ifstream(TEST_DATA "/adjustment/distributions.json") >> json;
    const auto expectEach = [&](const char* name, auto compute) {
        for (const Json& row : json[name]) {
            const double expected = row.back();
            if (expected == 0.0 && row.size() == 3 && row[0] == 1700)
                continue;  // underflowed there
            const double tolerance = expected < 1e-12 && expected > 0 ? 1e-9 : 1e-10;
            EXPECT_NEAR(compute(row), expected, tolerance * std::abs(expected) + 1e-300)
                << name << row;
        }
    };
    expectEach("normal_quantile", [](const Json& row) {
        const double p = row[0];
        return p < 0.5 ? -NormalQuantile(p) : NormalQuantile(1.0 - p);
    });
    expectEach("t_quantile",
               [](const Json& row) { return StudentQuantile(1.0 - row[1].get<double>(), row[0]); });
    expectEach("chi2_quantile", [](const Json& row) {
        return ChiSquareQuantile(1.0 - row[1].get<double>(), row[0]);
    });
    expectEach("t_two_sided_p", [](const Json& row) { return StudentTwoSided(row[1], row[0]); });
    expectEach("chi2_upper_tail", [](const Json& row) { return ChiSquareTail(row[1], row[0]); });
    expectEach("f_upper_tail", [](const Json& row) { return FisherTail(row[2], row[0], row[1]); });
}

}  // namespace
}  // namespace kv_tr::test
