// Control points from a file to a fit, as the commands need it.
#pragma once

#include <span>
#include <string>

#include "kv_tr/fit/adjustment.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// A transformation that can be fitted, and what the command line calls it.
struct FitType {
    const char* keyword;
    Type type;
};
std::span<const FitType> FitTypes();

/// The type of a keyword that the options have checked.
Type TypeNamed(const std::string& keyword);

/// Adds the option --type with its check.
void AddTypeOption(CLI::App& command, std::string& keyword);

/// Sets the type; false, with text 97 shown, when the file has too few points for it.
bool ChooseType(Adjustment& adjustment, Type type, const std::string& fileName);

/// Fits and reports what is wrong with the fit.
FitOutcome Fit(Adjustment& adjustment, Solution solution = Solution::kDocumented);

}  // namespace kv_tr::cli
