// What the argument parser says by itself, in the current language.
#include "cli/wording.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "cli/program.h"

namespace kv_tr::cli {
namespace {

std::string CommandNames(const CLI::App& program) {
    std::string names;
    for (const CLI::App* command : program.get_subcommands({})) {
        if (!names.empty()) names += ", ";
        names += command->get_name();
    }
    return names;
}

/// The required options and arguments of a command that were not given.
std::string MissingFrom(const CLI::App& command) {
    std::string names;
    for (const CLI::Option* option : command.get_options()) {
        if (!option->get_required() || option->count() > 0) continue;
        if (!names.empty()) names += ", ";
        names += option->get_name();
    }
    return names;
}

/// Missing arguments come second: they may be due to a misspelt word, which is then left over.
std::string WhatIsMissing(const CLI::App& program) {
    if (const auto unknown = program.remaining(true); !unknown.empty()) {
        return Translated(Text::kUnexpected, {Excerpt(CLI::detail::join(unknown, " "))});
    }
    const auto given = program.get_subcommands();
    if (given.empty()) return Translated(Text::kCommandNeeded, {CommandNames(program)});
    return Translated(Text::kMissing, {MissingFrom(*given.front())});
}

}  // namespace

void TranslateHelp(CLI::App& program) {
    const auto formatter = std::make_shared<CLI::Formatter>();
    formatter->label("Usage", Translated(Text::kUsageHeading));
    formatter->label("OPTIONS", Translated(Text::kOptionsPlace));
    formatter->label("Positionals", Translated(Text::kArgumentsHeading));
    formatter->label("SUBCOMMAND", Translated(Text::kCommandPlace));
    formatter->label("TEXT", "");
    formatter->label("REQUIRED", "");  // the line of usage has the others in brackets
    program.formatter(formatter);
    program.option_defaults()->group(Translated(Text::kOptionsHeading));
}

std::string Complaint(const CLI::App& program, const CLI::ParseError& error) {
    std::string text = error.what();
    const std::string fromOption = text.substr(std::min(text.find("--"), text.size()));
    const std::string option = fromOption.substr(0, fromOption.find_first_of(": "));
    switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
        case CLI::ExitCodes::RequiredError:
        case CLI::ExitCodes::ExtrasError: return WhatIsMissing(program);
        case CLI::ExitCodes::ArgumentMismatch: return Translated(Text::kValueMissing, {option});
        case CLI::ExitCodes::ConversionError: return Translated(Text::kTakesNoValue, {option});
        default:  // the checks of the options speak for themselves
            return text;
    }
}

}  // namespace kv_tr::cli
