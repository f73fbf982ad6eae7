// kv_tr types: what can be fitted.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/fit.h"
#include "cli/host.h"
#include "model/transformation_type.h"
#include "model/type_names.h"
#include "support/code_page.h"
#include "support/number_text.h"

namespace kv_tr::cli {
namespace {

std::string PadRight(const std::string& text, std::size_t width) {
    const std::size_t used = DisplayWidth(text);
    return text + std::string(used < width ? width - used : 1, ' ');
}

void PrintRow(const std::string& keyword, const std::string& number, const std::string& points,
              const std::string& name) {
    std::cout << PadRight(keyword, 10) << PadLeft(number, 6) << PadLeft(points, 8) << "  " << name
              << '\n';
}

int RunTypes() {
    PrintRow(Text(TextId::kTypeHeading), Text(TextId::kNumberHeading), Text(TextId::kPointsHeading),
             Text(TextId::kNameHeading));
    for (const auto& [keyword, type] : FitTypes()) {
        PrintRow(keyword, std::to_string(type), std::to_string(MinimumPoints(type)),
                 TypeName(type));
    }
    return kDone;
}

}  // namespace

Run AddTypes(CLI::App& command) {
    AddLanguageOption(command);
    return RunTypes;
}

}  // namespace kv_tr::cli
