// What a fit is worth, as JSON.
#include <cmath>

#include "cli/findings.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {
namespace {

using Json = nlohmann::ordered_json;

/// JSON has no other numbers than finite ones.
Json Number(double value) { return std::isfinite(value) ? Json(value) : Json(); }

Json PairJson(const Residual& pair) { return {Number(pair.first), Number(pair.second)}; }

Json WordJson(const std::string& word) { return word.empty() ? Json() : Json(word); }

Json PlaceJson(Point place) { return {place.first, place.second}; }

Json TypeJson(const std::optional<Type>& type) { return type ? Json(NumberOf(*type)) : Json(); }

Json GeometryJson(const WeakGeometry& geometry) {
    if (geometry.kind == WeakGeometry::Kind::kNone) return {};
    return {{"kind", NameOf(geometry.kind)},
            {"order", geometry.order},
            {"count", geometry.count},
            {"needed", geometry.needed},
            {"distance", Number(geometry.distance)}};
}

Json CheckJson(const TruthCheck& check) {
    return {{"level", NameOf(check.level)},
            {"e_points", Number(check.errorAtPoints)},
            {"e_hull", Number(check.errorInHull)},
            {"evaluation_noise", Number(check.evaluationNoise)},
            {"condition", Number(check.condition)},
            {"rank", check.rank},
            {"unknowns", check.unknowns},
            {"undetermined", check.undetermined},
            {"hull_factor", Number(check.hullFactor)},
            {"cause", GeometryJson(check.cause)}};
}

Json WarningsJson(const std::vector<Warning>& warnings) {
    Json all = Json::array();
    for (const Warning& warning : warnings) {
        Json json{{"id", CodeOf(warning)},
                  {"name", NameOf(warning.id)},
                  {"severity", NameOf(warning.severity)},
                  {"text", DescribeWarning(warning, ComponentTexts())}};
        json["cause"] = WordJson(NameOf(warning.cause));
        json["geometry"] = GeometryJson(warning.geometry);
        json["numbers"] = Json::object();
        for (const auto& [name, value] : warning.numbers) json["numbers"][name] = Number(value);
        json["place"] = warning.place ? PlaceJson(*warning.place) : Json();
        json["point"] = warning.point ? Json(warning.identifier) : Json();
        json["offer"] = WordJson(NameOf(warning.offer));
        json["offered_type"] = TypeJson(warning.offeredType);
        all.push_back(json);
    }
    return all;
}

Json EstimateJson(const Estimate& estimate) {
    return {{"value", Number(estimate.value)}, {"sigma", Number(estimate.sigma)}};
}

Json EstimatesJson(const Assessment& assessment) {
    Json parameters = Json::object();
    for (const auto& [name, estimate, atEdge, sigmaAtEdge] : assessment.parameters) {
        Json json = EstimateJson(estimate);
        json["at_edge"] = Number(atEdge);
        json["sigma_at_edge"] = Number(sigmaAtEdge);
        parameters["d" + name] = json;
    }
    return parameters;
}

/// All of few parameters; of many those above 0.95 in size.
Json CorrelationsJson(const Assessment& assessment) {
    constexpr std::size_t kFew = 12;
    constexpr double kStrong = 0.95;
    Json correlations = Json::object();
    const auto& parameters = assessment.parameters;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        for (std::size_t j = i + 1; j < parameters.size(); ++j) {
            const double value = assessment.correlations(i, j);
            if (parameters.size() > kFew && std::abs(value) <= kStrong) continue;
            correlations["d" + parameters[i].name + ",d" + parameters[j].name] = Number(value);
        }
    }
    return correlations;
}

Json PointJson(const PointAssessment& point, const std::string& id) {
    return {{"sId", id},
            {"residual", PairJson(point.residual)},
            {"redundancy", PairJson(point.redundancy)},
            {"normalised", PairJson(point.normalised)},
            {"tau", PairJson(point.studentised)},
            {"t", PairJson(point.external)},
            {"t_p", PairJson(point.externalP)},
            {"t_separate", PairJson(point.separate)},
            {"F", Number(point.test)},
            {"p", Number(point.probability)},
            {"adjusted_p", Number(point.adjustedProbability)},
            {"e", PairJson(point.grossError)},
            {"mdb", PairJson(point.detectable)},
            {"cook", Number(point.influence)},
            {"lever", point.isLever}};
}

Json AssessmentJson(const Adjustment& adjustment, const Assessment& assessment) {
    Json json{{"determined", assessment.isDetermined},
              {"fits_exactly", assessment.fitsExactly},
              {"used", assessment.used},
              {"unknowns", assessment.unknowns},
              {"redundancy", assessment.redundancy},
              {"sum_pvv", Number(assessment.squareSum)},
              {"sigma0", Number(assessment.sigma0)},
              {"unit_sigma", Number(assessment.unitSigma)},
              {"sigma0_separate", PairJson(assessment.sigma0Separate)},
              {"rms_point", Number(assessment.rmsPerPoint)},
              {"press", Number(assessment.press)},
              {"loo", Number(assessment.leaveOneOut)},
              {"uncontrolled", assessment.uncontrolled},
              {"aicc", Number(assessment.aicc)},
              {"axes_p", Number(assessment.axesProbability)},
              {"global_test", Json()}};
    if (assessment.globalTest) {
        const auto& [value, lower, upper, probability] = *assessment.globalTest;
        json["global_test"] = {{"value", Number(value)},
                               {"lower", Number(lower)},
                               {"upper", Number(upper)},
                               {"p", Number(probability)}};
    }
    json["parameters"] = EstimatesJson(assessment);
    json["derived"] = Json::object();
    for (const auto& [kind, estimate] : assessment.derived) {
        json["derived"][NameOf(kind)] = EstimateJson(estimate);
    }
    json["correlations"] = CorrelationsJson(assessment);
    json["centroid"] = {{"source", PlaceJson(assessment.centroid)},
                        {"destination", PlaceJson(assessment.centroidImage)},
                        {"sigma", PairJson(assessment.centroidSigma)}};
    json["points"] = Json::array();
    for (const PointAssessment& point : assessment.points) {
        json["points"].push_back(PointJson(point, adjustment.Points()[point.index].id));
    }
    json["critical"] = {{"w", Number(assessment.criticalNormal)},
                        {"tau", Number(assessment.criticalStudentised)},
                        {"t", Number(assessment.criticalExternal)},
                        {"F", Number(assessment.criticalTest)}};
    json["suspect"] =
        assessment.suspect
            ? Json(adjustment.Points()[assessment.points[*assessment.suspect].index].id)
            : Json();
    json["returnable"] = Json::array();
    for (const std::size_t index : assessment.returnable) {
        json["returnable"].push_back(adjustment.Points()[index].id);
    }
    return json;
}

Json AdviceJson(const TypeAdvice& advice) {
    Json types = Json::array();
    for (const TypeFigures& figures : advice.types) {
        types.push_back({{"type", NumberOf(figures.type)},
                         {"typeName", TypeName(figures.type, ComponentTexts())},
                         {"determined", figures.isDetermined},
                         {"eligible", figures.isEligible},
                         {"best", advice.best == figures.type},
                         {"advised", advice.advised == figures.type},
                         {"redundancy", figures.redundancy},
                         {"sigma0", Number(figures.sigma0)},
                         {"loo", Number(figures.leaveOneOut)},
                         {"excess", Number(figures.excess)},
                         {"aicc", Number(figures.aicc)},
                         {"F", Number(figures.fisher)},
                         {"F_p", Number(figures.probability)}});
    }
    return types;
}

}  // namespace

void AddFindings(nlohmann::ordered_json& report, const Adjustment& adjustment,
                 const Findings& findings, const FindingsOptions& options) {
    report["check"] = CheckJson(findings.check);
    report["warnings"] = WarningsJson(findings.warnings);
    if (options.statistics) report["adjustment"] = AssessmentJson(adjustment, findings.assessment);
    if (findings.advice) report["advice"] = AdviceJson(*findings.advice);
}

}  // namespace kv_tr::cli
