// Figures of adjustments against published ones and against 50 digits.
#include "kv_tr/analysis/assessment.h"

#include <gtest/gtest.h>

#include <cmath>

#include "analysis/reference_cases.h"
#include "kv_tr/analysis/distributions.h"

namespace kv_tr::test {
namespace {

constexpr double kRelative = 1e-7;

/// Compares a figure with that of a case, where the case has it.
void ExpectFigure(double actual, const Json& json, const std::string& key,
                  double tolerance = kRelative, double floor = 1e-12) {
    if (!json.contains(key) || json[key].is_null()) return;
    const double expected = json[key];
    EXPECT_NEAR(actual, expected, tolerance * std::abs(expected) + floor) << key;
}

class Cases : public testing::TestWithParam<std::string> {};

TEST_P(Cases, FiguresAgreeWithTheReference) {
    const ReferenceCase reference(GetParam());
    AssessmentOptions options;
    options.sigmas = reference.Sigmas();
    if (reference.json.contains("sigma0_apriori")) {
        options.sigma0 = reference.json["sigma0_apriori"];
    }
    const Assessment assessment = Assess(reference.points, reference.type, options);
    const Json& expected = reference.Reference();
    EXPECT_EQ(assessment.redundancy, expected["redundancy"]);
    ExpectFigure(assessment.squareSum, expected, "sum_pvv");
    ExpectFigure(assessment.sigma0, expected, "sigma0");
    ExpectFigure(assessment.rmsPerPoint, expected, "rms_point_n");
    ExpectFigure(assessment.sigma0Separate.first, expected, "sigma0_first");
    ExpectFigure(assessment.sigma0Separate.second, expected, "sigma0_second");
    ExpectFigure(assessment.press, expected, "press");
    ExpectFigure(assessment.leaveOneOut, expected, "loo_rms");
    ExpectFigure(assessment.aicc, expected, "aicc");
    for (std::size_t i = 0; i < assessment.parameters.size(); ++i) {
        const auto& [name, estimate, atEdge, sigmaAtEdge] = assessment.parameters[i];
        ExpectFigure(estimate.value, expected["record"], "d" + name, kRelative, 1e-9);
        ExpectFigure(estimate.sigma, expected["record_sigma"], "d" + name);
        for (std::size_t j = i + 1; j < assessment.parameters.size(); ++j) {
            if (!expected.contains("record_correlation")) break;
            ExpectFigure(assessment.correlations(i, j), expected["record_correlation"],
                         "d" + name + ",d" + assessment.parameters[j].name, kRelative, 1e-9);
        }
    }
    ExpectFigure(assessment.centroidSigma.first, expected["centroid"], "sigma_shift");
    ASSERT_EQ(assessment.points.size(), expected["points"].size());
    for (const PointAssessment& point : assessment.points) {
        const Json& json = expected["points"][point.index];
        SCOPED_TRACE(json["id"]);
        EXPECT_NEAR(point.residual.first, json["dXerr"], 2e-7);
        EXPECT_NEAR(point.residual.second, json["dYerr"], 2e-7);
        ExpectFigure(point.redundancy.first, json, "redundancy_first");
        ExpectFigure(point.redundancy.second, json, "redundancy_second");
        ExpectFigure(point.grossError.first, json, "loo_first", kRelative, 1e-9);
        ExpectFigure(point.grossError.second, json, "loo_second", kRelative, 1e-9);
        ExpectFigure(point.studentised.first, json, "tau_first", kRelative, 1e-7);
        ExpectFigure(point.studentised.second, json, "tau_second", kRelative, 1e-7);
        ExpectFigure(point.external.first, json, "t_first", kRelative, 1e-7);
        ExpectFigure(point.external.second, json, "t_second", kRelative, 1e-7);
        ExpectFigure(point.externalP.first, json, "p_first", 0, 1e-7);
        ExpectFigure(point.separate.first, json, "t_separate_first", kRelative, 1e-7);
        ExpectFigure(point.separate.second, json, "t_separate_second", kRelative, 1e-7);
        ExpectFigure(point.normalised.first, json, "w_first", kRelative, 1e-7);
        ExpectFigure(point.detectable.first, json, "mdb_first");
        ExpectFigure(point.detectable.second, json, "mdb_second");
        ExpectFigure(point.influence, json, "cook", kRelative, 1e-9);
        if (!options.sigma0) {
            ExpectFigure(point.test, json, "point_F", kRelative, 1e-9);
            ExpectFigure(point.probability, json, "point_p", 0, 1e-7);
        }
    }
    const Json& critical = expected["critical"];
    ExpectFigure(assessment.criticalNormal, critical, "w_bonferroni");
    ExpectFigure(assessment.criticalExternal, critical, "t_bonferroni");
    ExpectFigure(assessment.criticalStudentised, critical, "tau_bonferroni");
    ExpectFigure(assessment.criticalTest, critical, "point_F_bonferroni");
    if (expected.contains("global_test")) {
        ASSERT_TRUE(assessment.globalTest);
        const Json& test = expected["global_test"];
        ExpectFigure(assessment.globalTest->value, test, "T");
        ExpectFigure(assessment.globalTest->lower, test, "lower");
        ExpectFigure(assessment.globalTest->upper, test, "upper");
        ExpectFigure(assessment.globalTest->probability, test, "p_upper");
    }
    static const std::map<std::string, Assessment::Derived> kNames{
        {"scale", Assessment::Derived::kScale},
        {"scale_first_axis", Assessment::Derived::kScaleFirst},
        {"scale_second_axis", Assessment::Derived::kScaleSecond},
        {"rotation", Assessment::Derived::kRotation},
        {"shear", Assessment::Derived::kShear}};
    for (const auto& [name, json] : expected["derived"].items()) {
        if (json["sigma"] == 0.0) continue;  // held fixed
        const auto found = std::ranges::find(assessment.derived, kNames.at(name),
                                             &Assessment::DerivedQuantity::kind);
        ASSERT_NE(found, assessment.derived.end()) << name;
        ExpectFigure(found->estimate.value, json, "value", kRelative, 1e-9);
        ExpectFigure(found->estimate.sigma, json, "sigma");
    }
}

INSTANTIATE_TEST_SUITE_P(Published, Cases, testing::ValuesIn(CasesWith("reference")),
                         [](const auto& name) { return name.param; });

}  // namespace
}  // namespace kv_tr::test
