// The sections of a report about parameters and accuracy.
#include <cmath>

#include "kv_tr/files/formula_text.h"
#include "kv_tr/files/report_sections.h"

namespace kv_tr {
namespace {

using Kind = ReportTable::Kind;
using Style = ReportParagraph::Kind;

/// The figures of a coefficient; a null pointer where nothing is known about it.
const Assessment::Parameter* Find(const Assessment& assessment, const std::string& name) {
    for (const Assessment::Parameter& parameter : assessment.parameters) {
        if (parameter.name == name) return &parameter;
    }
    return nullptr;
}

ReportTable Coefficients(const ReportSubject& subject, const ReportWords& words) {
    ReportTable table{.columns = {{words(Text::kReportCoefficient), Kind::kText},
                                  {words(Text::kReportValue)},
                                  {"σ"},
                                  {words(Text::kReportAtEdge)},
                                  {"σ [m]"}},
                      .rows = {}};
    const Transformation& result = subject.adjustment.Result();
    const bool isPolynomial = IsPolynomial(result.type);
    const int last = isPolynomial ? TermCount(result.type) : 2;
    for (const auto& [letter, series] : {std::pair{"A", &result.a}, {"B", &result.b}}) {
        for (int k = isPolynomial ? 1 : 0; k <= last; ++k) {
            const std::string name = letter + std::to_string(k);
            const Assessment::Parameter* const known = Find(subject.assessment, name);
            const Assessment::Parameter parameter = known ? *known : Assessment::Parameter{};
            // The shift of a linear type is that at the origin of the system, not at an edge.
            const bool hasEdge = isPolynomial || k > 0;
            table.rows.push_back({name, words.Whole((*series)[static_cast<std::size_t>(k)]),
                                  words.Figure(parameter.estimate.sigma),
                                  words.Length(hasEdge ? parameter.atEdge : kUndefined),
                                  words.Figure(hasEdge ? parameter.sigmaAtEdge : kUndefined)});
        }
    }
    return table;
}

ReportTable Derived(const ReportSubject& subject, const ReportWords& words) {
    using Derived = Assessment::Derived;
    ReportTable table{.columns = {{words(Text::kReportQuantity), Kind::kText},
                                  {words(Text::kReportValue)},
                                  {"σ"}},
                      .rows = {}};
    const auto add = [&](const std::string& name, Estimate estimate, int usual) {
        table.rows.push_back({name, words.Within(estimate.value, estimate.sigma, usual),
                              words.Figure(estimate.sigma)});
    };
    for (const auto& [kind, estimate] : subject.assessment.derived) {
        const Estimate degrees{estimate.value * kDegrees, estimate.sigma * kDegrees};
        switch (kind) {
            case Derived::kScale: add(words(Text::kReportScale), estimate, 9); break;
            case Derived::kScaleFirst: add(words(Text::kReportScaleFirst), estimate, 9); break;
            case Derived::kScaleSecond: add(words(Text::kReportScaleSecond), estimate, 9); break;
            case Derived::kRotation: add(words(Text::kReportRotation, {"°"}), degrees, 7); break;
            case Derived::kShear: add(words(Text::kReportShear, {"°"}), degrees, 7); break;
        }
    }
    const auto& [first, second] = subject.assessment.centroid;
    const Point image = subject.assessment.centroidImage;
    const Residual sigma = subject.assessment.centroidSigma;
    if (subject.assessment.isDetermined) {
        add(words(Text::kReportShift, {"Y"}), {image.first - first, sigma.first}, 4);
        add(words(Text::kReportShift, {"X"}), {image.second - second, sigma.second}, 4);
    }
    return table;
}

std::string GlobalTestText(const Assessment& assessment, const ReportWords& words) {
    if (!assessment.globalTest) return words(Text::kReportNoGlobalTest);
    const auto& test = *assessment.globalTest;
    return words(test.Passes() ? Text::kReportGlobalPassed : Text::kReportGlobalFailed,
                 {words.Fixed(test.value, 2), words.Fixed(test.lower, 2),
                  words.Fixed(test.upper, 2), words.Figure(test.probability)});
}

}  // namespace

ReportSection ParameterSection(const ReportSubject& subject, const ReportWords& words) {
    ReportSection section{words(Text::kReportParameters)};
    std::string formulas;
    for (std::string formula : FormulaTexts(subject.adjustment.Result().type)) {
        for (auto end = formula.find("\r\n\t\t"); end != formula.npos;
             end = formula.find("\r\n\t\t")) {
            formula.replace(end, 4, " ");
        }
        for (char& letter : formula) {
            if (letter == 'a' || letter == 'b') letter = letter == 'a' ? 'A' : 'B';
        }
        section.blocks.emplace_back(ReportParagraph{formula, Style::kFormula});
    }
    section.blocks.emplace_back(Coefficients(subject, words));
    const char* unit = subject.options.isAPriori ? "σ0" : "s0";
    section.blocks.emplace_back(
        ReportParagraph{words(Text::kReportParameterLegend, {"σ", unit}), Style::kLegend});
    ReportTable derived = Derived(subject, words);
    if (!derived.rows.empty()) section.blocks.emplace_back(std::move(derived));
    return section;
}

ReportSection AccuracySection(const ReportSubject& subject, const ReportWords& words) {
    const Assessment& assessment = subject.assessment;
    const Statistics& figures = subject.adjustment.Figures();
    const auto used = subject.adjustment.UsedCount();
    const std::string less = std::to_string(used) + " − 1";
    const std::string unit = subject.options.sigmas.empty() ? " [m]" : "";
    ReportSection section{words(Text::kReportAccuracy)};
    ReportTable table{.columns = {{words(Text::kReportQuantity), Kind::kText},
                                  {words(Text::kReportDivisor)},
                                  {words(Text::kReportValue)}},
                      .rows = {}};
    const auto add = [&](const std::string& name, const std::string& divisor, double value) {
        const std::string shown =
            std::abs(value) >= 1e-4 || value == 0.0 ? words.Length(value) : words.Figure(value);
        table.rows.push_back({name, divisor, shown});
    };
    const std::string documented = words(Text::kReportRmsDocumented);
    add(documented, "m − 1 = " + less, figures.rms);
    add(documented + " Y", "m − 1 = " + less, figures.rmsFirst);
    add(documented + " X", "m − 1 = " + less, figures.rmsSecond);
    add(words(Text::kReportRmsPoint), "m = " + std::to_string(used), assessment.rmsPerPoint);
    const std::string redundancy = "r = " + std::to_string(assessment.redundancy);
    add(words(Text::kReportSigma0) + unit, redundancy, assessment.sigma0);
    if (subject.options.sigma0) add("σ0" + unit, kUndefinedText, *subject.options.sigma0);
    if (std::isfinite(assessment.sigma0Separate.first)) {
        const std::string half = "r / 2 = " + std::to_string(assessment.redundancy / 2);
        add(words(Text::kReportSigma0) + " Y" + unit, half, assessment.sigma0Separate.first);
        add(words(Text::kReportSigma0) + " X" + unit, half, assessment.sigma0Separate.second);
    }
    add(words(Text::kReportLeaveOneOut), "m = " + std::to_string(used), assessment.leaveOneOut);
    table.rows.push_back({words(Text::kReportPress), "1", words.Figure(assessment.press)});
    section.blocks.emplace_back(std::move(table));
    const auto say = [&section](std::string text) {
        section.blocks.emplace_back(ReportParagraph{std::move(text)});
    };
    if (assessment.uncontrolled > 0) {
        say(words(Text::kReportUncontrolled, {std::to_string(assessment.uncontrolled)}));
    }
    say(GlobalTestText(assessment, words));
    if (std::isfinite(assessment.axesProbability)) {
        say(words(Text::kReportAxesTest, {words.Figure(assessment.axesProbability)}));
    }
    return section;
}

}  // namespace kv_tr
