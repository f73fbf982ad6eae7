// kv_tr types: what can be fitted.
#include <CLI/CLI.hpp>

#include "cli/fit.h"
#include "cli/program.h"
#include "cli/table.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {
namespace {

int RunTypes() {
    Column keywords{Translated(Text::kTypeHeading)};
    Column numbers{Translated(Text::kNumberHeading), true};
    Column points{Translated(Text::kPointsHeading), true};
    Column names{Translated(Text::kNameHeading)};
    for (const auto& [keyword, type] : FitTypes()) {
        keywords.cells.emplace_back(keyword);
        numbers.cells.push_back(std::to_string(NumberOf(type)));
        points.cells.push_back(std::to_string(MinimumPoints(type)));
        names.cells.push_back(TypeName(type, ComponentTexts()));
    }
    PrintTable({keywords, numbers, points, names});
    return kDone;
}

}  // namespace

Run AddTypes(CLI::App& command) {
    AddLanguageOption(command);
    return RunTypes;
}

}  // namespace kv_tr::cli
