// What is known about a fit as lines and tables of texts.
#include "kv_tr/forms/findings_tables.h"

#include <cmath>
#include <numbers>

#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

using Look = StripLine::Look;

constexpr double kPpm = 1e6;
constexpr double kDegrees = 180.0 / std::numbers::pi;
constexpr double kSeconds = 3600.0 * kDegrees;

Look LookOf(Warning::Severity severity) {
    switch (severity) {
        case Warning::Severity::kNote: return Look::kNote;
        case Warning::Severity::kWarning: return Look::kWarning;
        case Warning::Severity::kSevere: break;
    }
    return Look::kSevere;
}

std::string WordOf(Look look) {
    return Translated(look == Look::kNote      ? Text::kSeverityNote
                      : look == Look::kWarning ? Text::kWarningTitle
                                               : Text::kSeveritySevere);
}

/// The text of a figure that is not finite; empty for a finite one.
std::string NotFinite(double value) {
    if (std::isnan(value)) return kNoFigure;
    if (std::isinf(value)) return value < 0 ? "-∞" : "∞";
    return {};
}

std::string WithUnit(const std::string& figure, const char* unit) {
    return figure == kNoFigure ? figure : figure + unit;
}

FindingsTable::Row RowOf(const Assessment::DerivedQuantity& derived) {
    using Derived = Assessment::Derived;
    const auto& [value, sigma] = derived.estimate;
    const char* name = "";
    switch (derived.kind) {
        case Derived::kScale: name = "k"; break;
        case Derived::kScaleFirst: name = "k1"; break;
        case Derived::kScaleSecond: name = "k2"; break;
        case Derived::kRotation: name = "φ"; break;
        case Derived::kShear: name = "δ"; break;
    }
    constexpr int kScaleDecimals = 9;
    if (derived.kind == Derived::kRotation || derived.kind == Derived::kShear) {
        return {{name, WithUnit(FixedFigure(value * kDegrees, kScaleDecimals), "°"),
                 WithUnit(ShortFigure(sigma * kSeconds), "″")}};
    }
    return {
        {name, FixedFigure(value, kScaleDecimals), WithUnit(ShortFigure(sigma * kPpm), " ppm")}};
}

}  // namespace

std::string FixedFigure(double value, int decimals) {
    if (!std::isfinite(value)) return NotFinite(value);
    return FixedText(value, decimals, ComponentNumberStyle());
}

std::string ShortFigure(double value) {
    return std::isfinite(value) ? FigureText(value, ComponentNumberStyle()) : NotFinite(value);
}

std::vector<StripLine> StripOf(const clsTrCalc& engine, FindingsCache& findings) {
    std::vector<StripLine> lines;
    if (engine.lFullCnt() == 0) return lines;
    const TextLookup texts = ComponentTexts();
    for (const Warning& warning : findings.Warnings()) {
        const Look look = LookOf(warning.severity);
        lines.push_back(
            {.look = look,
             .text = WordOf(look) + ": " + DescribeWarning(warning, texts, ComponentNumberStyle()),
             .offer = DescribeOffer(warning, texts),
             .warning = warning});
    }
    if (!lines.empty()) return lines;
    std::string text = DescribeCheck(engine.Truth(), texts, ComponentNumberStyle()) + ".";
    if (engine.Solution() == Solution::kAccurate) {
        text = Translated(Text::kAccurateSolution) + ". " + text;
    }
    return {{.text = text}};
}

FindingsTable FiguresTable(const clsTrCalc& engine, FindingsCache& findings) {
    constexpr int kDecimals = 4;
    const Assessment& assessment = findings.Assessed();
    const bool known = assessment.isDetermined;
    const std::size_t used = engine.Held().UsedCount();
    const std::string count = std::to_string(used);
    const std::string redundancy = known ? std::to_string(assessment.redundancy) : kNoFigure;
    const TruthCheck& check = engine.Truth();
    const auto metres = [](double value) { return WithUnit(FixedFigure(value, kDecimals), " m"); };
    const auto shortMetres = [](double value, const char* unit) {
        return WithUnit(ShortFigure(value), unit);
    };
    const auto separate = [&](double value) { return metres(known ? value : kUndefined); };
    FindingsTable table{.headings = {Translated(Text::kFigureHeading),
                                     Translated(Text::kValueHeading),
                                     Translated(Text::kDivisorHeading)}};
    const auto add = [&](std::string name, std::string divisor, std::string value) {
        table.rows.push_back({{std::move(name), std::move(value), std::move(divisor)}});
    };
    add(Translated(Text::kRmsErrorFigure), "m − 1 = " + std::to_string(used - 1),
        metres(used > 1 ? engine.dRmsErr() : kUndefined));
    add(Translated(Text::kRmsFigure), "m = " + count, metres(assessment.rmsPerPoint));
    add(Translated(Text::kSigma0Figure), "r = " + redundancy, metres(assessment.sigma0));
    if (known && !SharesUnknowns(assessment.type)) {
        const std::string half =
            "r/2 = " + std::to_string(static_cast<int>(assessment.redundancy / 2));
        add("s0 Y", half, separate(assessment.sigma0Separate.first));
        add("s0 X", half, separate(assessment.sigma0Separate.second));
    }
    add(Translated(Text::kLeaveOneOutFigure), "m = " + count, metres(assessment.leaveOneOut));
    add(Translated(Text::kPressFigure), "", shortMetres(assessment.press, " m²"));
    add(Translated(Text::kSquareSumFigure), "", shortMetres(assessment.squareSum, " m²"));
    add(Translated(Text::kUnknownsFigure), "",
        "2 · " + count + " − " + std::to_string(check.unknowns) + " = " + redundancy);
    add("AICc", "", FixedFigure(assessment.aicc, 1));
    add(Translated(Text::kHullFactorFigure, {"σ"}), "",
        FixedFigure(check.undetermined ? kUndefined : check.hullFactor, 2));
    add(Translated(Text::kInexactFigure), "",
        shortMetres(check.undetermined ? kUndefined : check.errorInHull, " m"));
    return table;
}

FindingsTable ParametersTable(FindingsCache& findings) {
    FindingsTable table{.headings = {"", Translated(Text::kValueHeading), "σ"}};
    const Assessment& assessment = findings.Assessed();
    for (const Assessment::DerivedQuantity& derived : assessment.derived) {
        table.rows.push_back(RowOf(derived));
    }
    for (const Assessment::Parameter& parameter : assessment.parameters) {
        const auto& [value, sigma] = parameter.estimate;
        const std::string text =
            std::isfinite(value) ? SciText(value, ComponentNumberStyle()) : kNoFigure;
        table.rows.push_back({{parameter.name, text, ShortFigure(sigma)}});
    }
    return table;
}

FindingsTable TypesTable(FindingsCache& findings) {
    FindingsTable table{
        .headings = {Translated(Text::kTypeHeading), "r", "s0 [m]", "LOO [m]", "AICc", "F", "p"}};
    const TypeAdvice& advice = findings.Advised();
    for (const TypeFigures& figures : advice.types) {
        const bool isAdvised = advice.advised == figures.type;
        table.rows.push_back(
            {{(isAdvised ? "★ " : "") + TypeName(figures.type, ComponentTexts()),
              figures.isDetermined ? std::to_string(figures.redundancy) : kNoFigure,
              FixedFigure(figures.sigma0, 4), FixedFigure(figures.leaveOneOut, 4),
              FixedFigure(figures.aicc, 1), FixedFigure(figures.fisher, 2),
              ShortFigure(figures.probability)},
             isAdvised});
    }
    return table;
}

std::string AdviceText(FindingsCache& findings) {
    return DescribeAdvice(findings.Advised(), ComponentTexts(), ComponentNumberStyle());
}

}  // namespace kv_tr
