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
constexpr double kGon = 200.0 / std::numbers::pi;

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

/// A scale that is nearly 1 with its parts per million.
std::string ScaleFigure(double scale) {
    constexpr double kNear = 0.01;
    constexpr int kDecimals = 9;
    std::string text = FixedFigure(scale, kDecimals);
    const double ppm = (scale - 1.0) * kPpm;
    if (std::abs(scale - 1.0) < kNear)
        text += (ppm < 0 ? " (" : " (+") + FixedFigure(ppm, 3) + " ppm)";
    return text;
}

FindingsTable::Row RowOf(const Assessment::DerivedQuantity& derived, AngleUnit unit) {
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
    if (derived.kind == Derived::kRotation || derived.kind == Derived::kShear) {
        const AngleLook& look = LookOf(unit);
        constexpr int kMoreDecimals = 3;
        return {
            {name,
             WithUnit(FixedFigure(value * look.factor, look.decimals + kMoreDecimals), look.unit),
             WithUnit(ShortFigure(sigma * look.sigmaFactor), look.sigmaUnit)}};
    }
    return {{name, ScaleFigure(value), WithUnit(ShortFigure(sigma * kPpm), " ppm")}};
}

}  // namespace

const AngleLook& LookOf(AngleUnit unit) {
    static constexpr AngleLook kLooks[] = {{"°", "°", kDegrees, 6, kSeconds, "″"},
                                           {"gon", " gon", kGon, 5, 1000.0 * kGon, " mgon"},
                                           {"″", "″", kSeconds, 2, kSeconds, "″"}};
    return kLooks[static_cast<std::size_t>(unit)];
}

std::string FixedFigure(double value, int decimals) {
    if (!std::isfinite(value)) return NotFinite(value);
    return FixedText(value, decimals, ComponentNumberStyle());
}

std::string ShortFigure(double value) {
    return std::isfinite(value) ? FigureText(value, ComponentNumberStyle()) : NotFinite(value);
}

std::vector<StripLine> StripOf(FindingsCache& findings) {
    const Adjustment& adjustment = findings.Fitted();
    std::vector<StripLine> lines;
    if (adjustment.Points().empty()) return lines;
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
    std::string text = DescribeCheck(adjustment.Check(), texts, ComponentNumberStyle()) + ".";
    if (adjustment.FittedSolution() == Solution::kAccurate) {
        text = Translated(Text::kAccurateSolution) + ". " + text;
    }
    return {{.text = text}};
}

FindingsTable FiguresTable(FindingsCache& findings) {
    constexpr int kDecimals = 4;
    const Assessment& assessment = findings.Assessed();
    const bool known = assessment.isDetermined;
    const Adjustment& adjustment = findings.Fitted();
    const std::size_t used = adjustment.UsedCount();
    const std::string count = std::to_string(used);
    const std::string redundancy = known ? std::to_string(assessment.redundancy) : kNoFigure;
    const TruthCheck& check = adjustment.Check();
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
        metres(used > 1 ? adjustment.Figures().rms : kUndefined));
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

FindingsTable ParametersTable(FindingsCache& findings, AngleUnit unit) {
    FindingsTable table{.headings = {"", Translated(Text::kValueHeading), "σ"}};
    const Assessment& assessment = findings.Assessed();
    for (const Assessment::DerivedQuantity& derived : assessment.derived) {
        table.rows.push_back(RowOf(derived, unit));
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
