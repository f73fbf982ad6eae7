// What a fit is worth, as the command line tells it.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/analysis/warnings.h"
#include "kv_tr/fit/adjustment.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// What the options of adjust ask for.
struct FindingsOptions {
    std::string sigma;  // a number of metres, or "columns"
    std::string alpha;
    std::string solution = "documented";
    bool isAPriori = false;  // standard deviations come from --sigma, not from the residuals
    bool statistics = false;
    bool advise = false;
    bool reports = false;  // of the points, too

    bool HasSigmaColumns() const { return sigma == kColumns; }
    Solution WantedSolution() const {
        return solution == "accurate" ? Solution::kAccurate : Solution::kDocumented;
    }

    static constexpr const char* kColumns = "columns";
};

void AddFindingsOptions(CLI::App& command, FindingsOptions& options);

/// What was found out about a fit.
struct Findings {
    TruthCheck check;
    FitOutcome outcome{};
    AssessmentOptions options{};
    Assessment assessment{};
    std::optional<TypeAdvice> advice{};
    std::vector<Warning> warnings{};
};

/// Assesses the last fit of an adjustment. The sigmas are those of the file, or none.
Findings FindingsOf(const Adjustment& adjustment, const FitOutcome& outcome,
                    const FindingsOptions& options, std::vector<Point> sigmas);

/// Prints the warnings to the standard error stream, notes only when they are wanted.
void PrintWarnings(const std::vector<Warning>& warnings, bool withNotes);
/// Prints the figures and the comparison of types that the options ask for.
void PrintFindings(const Adjustment& adjustment, const Findings& findings,
                   const FindingsOptions& options);

/// Sets "check" and "warnings", and "adjustment" and "advice" when they are asked for.
void AddFindings(nlohmann::ordered_json& report, const Adjustment& adjustment,
                 const Findings& findings, const FindingsOptions& options);

}  // namespace kv_tr::cli
