// kv_tr national: the built-in transformations between the Hungarian systems.
#include "kv_tr/model/national.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/program.h"
#include "cli/table.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr::cli {
namespace {

std::string AreaName(NationalArea area) {
    return Translated(area == NationalArea::kHungary ? Text::kHungary : Text::kBudapest);
}

/// What the accuracy is, and where the constants come from: a line for each run of types with the
/// same origin.
void PrintOrigins() {
    std::cout << '\n' << Translated(Text::kAccuracyMeaning) << ".\n";
    const auto infos = NationalInfos();
    for (std::size_t first = 0; first < infos.size();) {
        const Text origin = NationalOrigin(infos[first].type);
        std::size_t end = first;
        while (end < infos.size() && NationalOrigin(infos[end].type) == origin) ++end;
        std::cout << NumberOf(infos[first].type) << "-" << NumberOf(infos[end - 1].type) << ": "
                  << Translated(origin) << '\n';
        first = end;
    }
}

int RunNational() {
    Column names{Translated(Text::kNameHeading)};
    Column numbers{Translated(Text::kNumberHeading), true};
    Column sources{Translated(Text::kSourceHeading)};
    Column destinations{Translated(Text::kDestinationHeading)};
    Column accuracies{Translated(Text::kAccuracyHeading), true};
    Column areas{Translated(Text::kAreaHeading)};
    for (const NationalInfo& info : NationalInfos()) {
        names.cells.emplace_back(info.name);
        numbers.cells.push_back(std::to_string(NumberOf(info.type)));
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
