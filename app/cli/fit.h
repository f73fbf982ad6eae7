// Control points from a file to a fit, as the commands need it.
#pragma once

#include <span>
#include <string>

#include "kv_tr/published/clsTrCalc.h"

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// A transformation that can be fitted, and what the command line calls it.
struct FitType {
    const char* keyword;
    enuTR_TYPE type;
};
std::span<const FitType> FitTypes();

/// The type of a keyword that the options have checked.
enuTR_TYPE TypeNamed(const std::string& keyword);

/// Adds the option --type with its check.
void AddTypeOption(CLI::App& command, std::string& keyword);

/// Loads a control-point file; false, with nothing loaded, after what is wrong has been shown.
/// Numbers with decimal commas are wrong unless the user says so.
bool LoadPoints(clsTrCalc& engine, const std::string& fileName, bool decimalComma);

/// Sets the type; false, with text 97 shown, when the file has too few points for it.
bool ChooseType(clsTrCalc& engine, enuTR_TYPE type, const std::string& fileName);

/// Fits; false, with text 76 shown, when there is no fit at all.
bool Fit(clsTrCalc& engine);

}  // namespace kv_tr::cli
