// Control points from a file to a fit, as the commands need it.
#include "cli/fit.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "cli/program.h"
#include "kv_tr/published/matrix_routines.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {
namespace {

constexpr std::array kFitTypes{
    FitType{"helmert", Type::kHelmert},   FitType{"affine", Type::kAffine},
    FitType{"helmert3", Type::kHelmert3}, FitType{"affine5", Type::kAffine5},
    FitType{"bilinear", Type::kBilinear}, FitType{"poly1", Type::kPolynomial1},
    FitType{"poly2", Type::kPolynomial2}, FitType{"poly3", Type::kPolynomial3},
    FitType{"poly4", Type::kPolynomial4}, FitType{"poly5", Type::kPolynomial5},
};

const FitType* Find(const std::string& keyword) {
    const auto found = std::ranges::find(kFitTypes, keyword, &FitType::keyword);
    return found == kFitTypes.end() ? nullptr : &*found;
}

std::string AllKeywords() {
    std::string all;
    for (const FitType& type : kFitTypes)
        all += (all.empty() ? "" : ", ") + std::string(type.keyword);
    return all;
}

}  // namespace

std::span<const FitType> FitTypes() { return kFitTypes; }

Type TypeNamed(const std::string& keyword) { return Find(keyword)->type; }

void AddTypeOption(CLI::App& command, std::string& keyword) {
    command.add_option("--type", keyword, Translated(Text::kTypeOption) + ": " + AllKeywords())
        ->type_name("TYPE")
        ->capture_default_str()
        ->check(WithWords(AllKeywords(), [](const std::string& name) {
            return Find(name) ? "" : Translated(Text::kUnknownType, {Excerpt(name), AllKeywords()});
        }));
}

bool ChooseType(Adjustment& adjustment, Type type, const std::string& fileName) {
    adjustment.SetType(type);
    if (adjustment.IsEnoughFor(type)) return true;
    ShowMessage(Translated(Text::kTooFewPoints));
    PrintNote(Translated(Text::kPointsNeeded, {fileName, std::to_string(MinimumPoints(type)),
                                               std::to_string(adjustment.UsedCount())}));
    return false;
}

FitOutcome Fit(Adjustment& adjustment, Solution solution) {
    const FitOutcome outcome = adjustment.Fit({.solution = solution});
    for (int i = 0; i < outcome.singularSystems; ++i) ReportSingularMatrix();
    if (outcome.trouble == FitTrouble::kNoStart) {
        ShowMessage(Translated(Text::kCannotCompute));
    } else if (!outcome.converged) {
        ReportNotConverged(adjustment.FitType());
    }
    return outcome;
}

}  // namespace kv_tr::cli
