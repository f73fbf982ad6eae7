// Which type the points warrant, and how well images are determined.
#include "kv_tr/analysis/type_advice.h"

#include <gtest/gtest.h>

#include "analysis/reference_cases.h"
#include "kv_tr/analysis/point_precision.h"

namespace kv_tr::test {
namespace {

class Advised : public testing::TestWithParam<std::string> {};

TEST_P(Advised, TypesCompareAsInTheReference) {
    const ReferenceCase reference(GetParam());
    const TypeAdvice advice = Advise(reference.points);
    const Json& rule = reference.json["advice_rule"];
    EXPECT_EQ(advice.best, TypeNamed(rule["best"]));
    EXPECT_EQ(advice.advised, TypeNamed(rule["advised"]));
    std::size_t eligible = 0;
    for (const auto& [name, json] : rule["types"].items()) {
        SCOPED_TRACE(name);
        const TypeFigures* figures = advice.Of(TypeNamed(name));
        ASSERT_NE(figures, nullptr);
        // The reference refits models that are not linear; the figures here are linearised.
        const double tolerance = SharesUnknowns(figures->type) ? 1e-5 : 1e-7;
        EXPECT_NEAR(figures->leaveOneOut / json["loo"].get<double>(), 1.0, tolerance);
        EXPECT_NEAR(figures->excess, json["excess_over_best_in_standard_errors"], 10 * tolerance);
        ++eligible;
    }
    EXPECT_EQ(
        std::ranges::count(advice.types, true, &TypeFigures::isEligible),
        static_cast<std::ptrdiff_t>(reference.json.contains("types") ? eligible : eligible + 3));
    const Json types = reference.json.value("types", Json::object());
    int compared = 0;
    for (const auto& [name, json] : types.items()) {
        const TypeFigures* figures = advice.Of(TypeNamed(name));
        if (!json.contains("F_against") || figures == nullptr || !figures->isDetermined) continue;
        const Json& against = json["F_against"];  // simpler types; the next simpler one is ours
        const Json& test =
            *std::min_element(against.begin(), against.end(),
                              [](const Json& a, const Json& b) { return a["df1"] < b["df1"]; });
        EXPECT_NEAR(figures->fisher / test["F"].get<double>(), 1.0, 1e-6) << name;
        EXPECT_NEAR(figures->probability, test["p"], 1e-7) << name;
        EXPECT_NEAR(figures->aicc, json["aicc"], 1e-6) << name;
        ++compared;
    }
    EXPECT_EQ(compared, reference.json.contains("types") ? 6 : 0);
}

INSTANTIATE_TEST_SUITE_P(Published, Advised, testing::ValuesIn(CasesWith("advice_rule")),
                         [](const auto& name) { return name.param; });

class Transformed : public testing::TestWithParam<std::string> {};

TEST_P(Transformed, PointsHaveThePrecisionOfTheReference) {
    const ReferenceCase reference(GetParam());
    const AdjustedModel model(reference.points, reference.type, reference.Sigmas());
    const PointPrecision precision(model);
    for (const Json& json : reference.Reference()["transformed"]) {
        const Point source[] = {{json["y"], json["x"]}};
        const Point image = model.Images(source).front();
        EXPECT_NEAR(image.first, json["first"], 2e-7);
        EXPECT_NEAR(image.second, json["second"], 2e-7);
        const auto covariance = precision.At(source).front();
        EXPECT_NEAR(covariance.SigmaFirst() / json["sigma_first"].get<double>(), 1.0, 1e-7);
        EXPECT_NEAR(covariance.SigmaSecond() / json["sigma_second"].get<double>(), 1.0, 1e-7);
        const double variance = precision.Sigma0() * precision.Sigma0();
        EXPECT_NEAR(covariance.mixed, json["q_cross"].get<double>() * variance, 1e-7 * variance);
    }
    for (const double factor : precision.Factors(model.Sources())) {
        EXPECT_LE(factor, reference.Sigmas().empty() ? 1.0 + 1e-12 : 10.0);
    }
}

INSTANTIATE_TEST_SUITE_P(Published, Transformed, testing::ValuesIn(CasesWith("reference")),
                         [](const auto& name) { return name.param; });

TEST(PointPrecision, EllipsesAndExtrapolation) {
    const PointPrecision::Covariance covariance{5.0, 2.0, 2.0};  // eigenvalues 6 and 1
    EXPECT_NEAR(covariance.Greatest(), std::sqrt(6.0), 1e-14);
    EXPECT_NEAR(covariance.Least(), 1.0, 1e-14);
    EXPECT_NEAR(std::tan(covariance.Direction()), 0.5, 1e-14);
    EXPECT_NEAR(ConfidenceFactor(0.95, 1000000), 2.4477, 1e-4);

    const ReferenceCase swiss("swiss_helmert_9");
    const PointPrecision precision(AdjustedModel(swiss.points, swiss.type));
    const auto& hull = precision.Hull();
    const Point inside = swiss.points[1].source;
    const Point beyond{hull[0].first + 40000.0, hull[0].second + 30000.0};
    const auto extrapolation = precision.Outside(std::vector{inside, beyond});
    EXPECT_EQ(extrapolation.count, 1U);
    EXPECT_TRUE(extrapolation.isFar);
    EXPECT_LE(extrapolation.farthest, 50000.0);
    EXPECT_GT(extrapolation.farthest, 30000.0);
    EXPECT_GT(extrapolation.sigma, precision.Sigma0());
    EXPECT_FALSE(precision.Outside(std::vector{inside}).isFar);
}

}  // namespace
}  // namespace kv_tr::test
