// kv_tr help: the help of the program or of a command.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/manual_words.h"
#include "cli/program.h"

namespace kv_tr::cli {

Run AddHelp(CLI::App& command) {
    const CLI::App& program = *command.get_parent();
    std::string names;
    for (const CLI::App* other : program.get_subcommands({})) {
        if (other != &command) names += (names.empty() ? "" : ", ") + other->get_name();
    }
    const auto name = std::make_shared<std::string>();
    command.add_option("COMMAND", *name, Said(kHelpArgument))->check(CheckWord(names));
    AddLanguageOption(command);
    return [&program, name] {
        const std::string parent = program.get_name();
        if (name->empty()) {
            std::cout << program.get_formatter()->make_help(&program, parent,
                                                            CLI::AppFormatMode::Normal);
        } else {
            std::cout << program.get_subcommand(*name)->help(parent);
        }
        return kDone;
    };
}

}  // namespace kv_tr::cli
