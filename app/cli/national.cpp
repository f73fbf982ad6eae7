// kv_tr national: the built-in transformations between the Hungarian systems.
#include "kv_tr/published/national.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/program.h"
#include "cli/table.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/type_names.h"

namespace kv_tr::cli {
namespace {

std::string AreaName(NationalArea area) {
    return Text(area == NationalArea::kHungary ? TextId::kHungary : TextId::kBudapest);
}

/// What the accuracy is, and where the constants come from: a line for each run of types with the
/// same origin.
void PrintOrigins() {
    std::cout << '\n' << Text(TextId::kAccuracyMeaning) << ".\n";
    const auto infos = NationalInfos();
    for (std::size_t first = 0; first < infos.size();) {
        const std::string origin = NationalOrigin(infos[first].type);
        std::size_t end = first;
        while (end < infos.size() && NationalOrigin(infos[end].type) == origin) ++end;
        std::cout << infos[first].type << "-" << infos[end - 1].type << ": " << origin << '\n';
        first = end;
    }
}

int RunNational() {
    Column names{Text(TextId::kNameHeading)};
    Column numbers{Text(TextId::kNumberHeading), true};
    Column sources{Text(TextId::kSourceHeading)};
    Column destinations{Text(TextId::kDestinationHeading)};
    Column accuracies{Text(TextId::kAccuracyHeading), true};
    Column areas{Text(TextId::kAreaHeading)};
    for (const NationalInfo& info : NationalInfos()) {
        names.cells.emplace_back(info.name);
        numbers.cells.push_back(std::to_string(info.type));
        sources.cells.emplace_back(info.source);
        destinations.cells.emplace_back(info.destination);
        accuracies.cells.push_back(FormatFixed(info.accuracy, 3, 0));
        areas.cells.push_back(AreaName(info.area));
    }
    PrintTable({names, numbers, sources, destinations, accuracies, areas});
    PrintOrigins();
    return kDone;
}

}  // namespace

Run AddNational(CLI::App& command) {
    AddLanguageOption(command);
    return RunNational;
}

}  // namespace kv_tr::cli
