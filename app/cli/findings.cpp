// What a fit is worth, as the command line tells it.
#include "cli/findings.h"

#include <CLI/CLI.hpp>
#include <array>
#include <cmath>
#include <iostream>
#include <utility>

#include "cli/fit.h"
#include "cli/program.h"
#include "cli/table.h"
#include "kv_tr/files/adjustment_report.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::cli {
namespace {

AssessmentOptions OptionsOf(const FindingsOptions& options, std::vector<Point> sigmas) {
    AssessmentOptions assessment;
    if (!sigmas.empty()) {
        assessment.sigmas = std::move(sigmas);
        assessment.sigma0 = 1.0;
    } else if (!options.sigma.empty()) {
        assessment.sigma0 = ParseNumber(options.sigma, true);
    }
    assessment.isAPriori = options.isAPriori;
    assessment.keepsAllPoints = options.statistics || options.reports;
    if (!options.alpha.empty()) assessment.alpha = *ParseNumber(options.alpha, true);
    return assessment;
}

/// A table that grows by rows; the first column is set to the left, numbers to the right.
class Table {
public:
    explicit Table(std::initializer_list<std::string> headings) {
        for (const std::string& heading : headings) {
            columns_.push_back({.heading = heading, .number = !columns_.empty()});
        }
    }

    void Add(std::initializer_list<std::string> cells) {
        auto column = columns_.begin();
        for (const std::string& cell : cells) (column++)->cells.push_back(cell);
    }

    void Print() const {
        PrintTable(columns_);
        std::cout << '\n';
    }

private:
    std::vector<Column> columns_;
};

std::string Fixed(double value, int decimals) {
    return std::isfinite(value) ? FixedText(value, decimals, ComponentNumberStyle()) : "–";
}

std::string Scientific(double value) {
    return std::isfinite(value) ? SciText(value, ComponentNumberStyle()) : "–";
}

std::string Figure(double value) { return FigureText(value, ComponentNumberStyle()); }

void PrintFigures(const Adjustment& adjustment, const Assessment& assessment) {
    Table table({Translated(Text::kFigureHeading), "m", Translated(Text::kDivisorHeading)});
    const std::string used = std::to_string(assessment.used);
    const std::string redundancy = std::to_string(assessment.redundancy);
    const std::string less = std::to_string(assessment.used - 1);
    table.Add({"dRmsErr", Fixed(adjustment.Figures().rms, 4), less + " (m - 1)"});
    table.Add({"rms", Fixed(assessment.rmsPerPoint, 4), used + " (m)"});
    table.Add({"s0", Fixed(assessment.sigma0, 4), redundancy + " (r)"});
    table.Add({"LOO", Fixed(assessment.leaveOneOut, 4), used + " (m)"});
    table.Print();
    if (assessment.globalTest) {
        const auto& [value, lower, upper, probability] = *assessment.globalTest;
        std::cout << "χ² = " << Fixed(value, 2) << "  [" << Fixed(lower, 2) << ", "
                  << Fixed(upper, 2) << "]  p = " << Figure(probability) << "\n\n";
    }
}

void PrintParameters(const Assessment& assessment, bool isAPriori) {
    constexpr std::array kDerived{"k", "k1", "k2", "φ", "δ"};
    Table table({"", Translated(Text::kValueHeading), isAPriori ? "σ (σ0)" : "σ (s0)"});
    for (const auto& [name, estimate, atEdge, sigmaAtEdge] : assessment.parameters) {
        table.Add({name, Scientific(estimate.value), Scientific(estimate.sigma)});
    }
    for (const auto& [kind, estimate] : assessment.derived) {
        table.Add({kDerived[static_cast<std::size_t>(kind)], Scientific(estimate.value),
                   Scientific(estimate.sigma)});
    }
    table.Print();
}

void PrintPoints(const Adjustment& adjustment, const Assessment& assessment) {
    Table table({"", "vY", "vX", "rY", "rX", "tY", "tX", "F", "p", "eY", "eX", "MDB", "D"});
    for (const PointAssessment& point : assessment.points) {
        table.Add({adjustment.Points()[point.index].id, Fixed(point.residual.first, 4),
                   Fixed(point.residual.second, 4), Fixed(point.redundancy.first, 2),
                   Fixed(point.redundancy.second, 2), Fixed(point.external.first, 2),
                   Fixed(point.external.second, 2), Fixed(point.test, 2),
                   Figure(point.adjustedProbability), Fixed(point.grossError.first, 4),
                   Fixed(point.grossError.second, 4),
                   Fixed(std::max(point.detectable.first, point.detectable.second), 4),
                   Fixed(point.influence, 2)});
    }
    table.Print();
}

void PrintAdvice(const TypeAdvice& advice) {
    Table table({"", "r", "s0", "LOO", "AICc", "F", "p"});
    for (const TypeFigures& figures : advice.types) {
        const bool isAdvised = advice.advised == figures.type;
        table.Add({(isAdvised ? "* " : "  ") + TypeName(figures.type, ComponentTexts()),
                   std::to_string(figures.redundancy), Fixed(figures.sigma0, 4),
                   Fixed(figures.leaveOneOut, 4), Fixed(figures.aicc, 1), Fixed(figures.fisher, 2),
                   Figure(figures.probability)});
    }
    table.Print();
    std::cout << DescribeAdvice(advice, ComponentTexts(), ComponentNumberStyle()) << '\n';
}

}  // namespace

void AddFindingsOptions(CLI::App& command, FindingsOptions& options) {
    command.add_option("--solution", options.solution, Translated(Text::kSolutionOption))
        ->type_name("NAME")
        ->capture_default_str()
        ->check(CheckWord("documented, accurate"));
    command.add_flag("--statistics", options.statistics, Translated(Text::kStatisticsOption));
    command.add_flag("--advise", options.advise, Translated(Text::kAdviseOption));
    command.add_option("--sigma", options.sigma, Translated(Text::kSigmaOption))
        ->type_name("M")
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text, true);
            const bool suitable = text == FindingsOptions::kColumns || (number && *number > 0.0);
            return suitable ? "" : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
    command.add_flag("--a-priori", options.isAPriori, Translated(Text::kAPrioriOption));
    command.add_option("--alpha", options.alpha, Translated(Text::kAlphaOption))
        ->type_name("P")
        ->check([](const std::string& text) {
            const auto number = ParseNumber(text, true);
            const bool suitable = number && *number > 0.0 && *number < 1.0;
            return suitable ? "" : Translated(Text::kUnsuitableNumber, {Excerpt(text)});
        });
}

Findings FindingsOf(const Adjustment& adjustment, const FitOutcome& outcome,
                    const FindingsOptions& options, std::vector<Point> sigmas) {
    Findings findings{.check = adjustment.Check(),
                      .outcome = outcome,
                      .options = OptionsOf(options, std::move(sigmas))};
    const auto points = adjustment.Points();
    findings.assessment = Assess(points, adjustment.FitType(), findings.options);
    if (options.advise) findings.advice = Advise(points, findings.options);
    findings.warnings = FindWarnings({.points = adjustment.Points(),
                                      .transformation = adjustment.Result(),
                                      .check = findings.check,
                                      .outcome = outcome,
                                      .solution = options.WantedSolution(),
                                      .assessment = &findings.assessment,
                                      .advice = findings.advice ? &*findings.advice : nullptr});
    return findings;
}

void PrintWarnings(const std::vector<Warning>& warnings, bool withNotes) {
    const TextLookup texts = ComponentTexts();
    for (const Warning& warning : warnings) {
        if (warning.severity == Warning::Severity::kNote && !withNotes) continue;
        const std::string offer = DescribeOffer(warning, texts);
        PrintNote(CodeOf(warning) + ": " + DescribeWarning(warning, texts, ComponentNumberStyle()) +
                  (offer.empty() ? "" : " → " + offer));
    }
}

void PrintFindings(const Adjustment& adjustment, const Findings& findings,
                   const FindingsOptions& options) {
    if (options.statistics && findings.assessment.isDetermined) {
        std::cout << DescribeCheck(findings.check, ComponentTexts(), ComponentNumberStyle())
                  << "\n\n";
        PrintFigures(adjustment, findings.assessment);
        PrintParameters(findings.assessment, options.isAPriori);
        PrintPoints(adjustment, findings.assessment);
    }
    if (findings.advice) PrintAdvice(*findings.advice);
}

}  // namespace kv_tr::cli
