// What a shell offers after the words that stand in its line.
#include "cli/completion.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <map>

#include "cli/point_source.h"
#include "kv_tr/text/paths.h"

namespace kv_tr::cli {
namespace {

using Strings = std::vector<std::string>;

/// A word without the quotes and backslashes of a shell, and with its home folder.
std::string Unquoted(const std::string& word) {
    std::string text;
    char quote = '\0';
    for (std::size_t i = 0; i < word.size(); ++i) {
        const char letter = word[i];
        if (quote == '\0' && (letter == '"' || letter == '\'')) {
            quote = letter;
        } else if (letter == quote && quote != '\0') {
            quote = '\0';
        } else if (letter == '\\' && quote != '\'' && i + 1 < word.size()) {
            text += word[++i];
        } else {
            text += letter;
        }
    }
    const std::string home = Environment("HOME");
    if (word.starts_with("~/") && !home.empty()) text.replace(0, 1, home);
    return text;
}

/// The words as the program would get them. Bash cuts --option=value into three.
Strings Understood(const Strings& words) {
    Strings understood;
    for (const std::string& word : words) {
        if (word != "=") understood.push_back(Unquoted(word));
    }
    if (words.empty() || words.back() == "=") understood.emplace_back();
    return understood;
}

/// A command of the line: its options with the values given, and its arguments.
struct Line {
    const CLI::App* command;
    const CLI::Option* open = nullptr;  // the option whose value comes last
    std::map<std::string, std::string> values{};
    Strings arguments{};

    std::string Value(const std::string& option) const {
        const auto found = values.find(option);
        return found == values.end() ? "" : found->second;
    }
};

const CLI::App* CommandNamed(const CLI::App& program, const std::string& name) {
    for (const CLI::App* command : program.get_subcommands({})) {
        if (command->get_name() == name) return command;
    }
    return nullptr;
}

Line LineOf(const CLI::App& program, const Strings& words) {
    Line line{.command = &program};
    for (const std::string& word : words) {
        const CLI::App* command = line.command == &program ? CommandNamed(program, word) : nullptr;
        if (line.open != nullptr) {
            line.values[line.open->get_name()] = word;
            line.open = nullptr;
        } else if (word.starts_with("--")) {
            const auto equals = word.find('=');
            const CLI::Option* option = line.command->get_option_no_throw(word.substr(0, equals));
            const bool takesValue = option != nullptr && option->get_items_expected_max() > 0;
            if (takesValue && equals == word.npos) line.open = option;
            line.values[word.substr(0, equals)] =
                equals == word.npos ? "" : word.substr(equals + 1);
        } else if (command != nullptr) {
            line.command = command;
        } else {
            line.arguments.push_back(word);
        }
    }
    return line;
}

/// The words that the check of an option bears.
Strings WordsOf(const CLI::Option& option) {
    try {
        const std::string& words = const_cast<CLI::Option&>(option).get_validator(0)->get_name();
        Strings all = words.empty() ? Strings{} : CLI::detail::split(words, ',');
        for (std::string& word : all) CLI::detail::trim(word);
        return all;
    } catch (const CLI::OptionNotFound&) {  // the option has no check
        return {};
    }
}

Strings ValuesOf(const CLI::Option& option, const Line& line) {
    if (option.get_name() != "--exclude") return WordsOf(option);
    if (line.arguments.empty()) return {};
    return IdentifiersIn({.file = line.arguments.front(),
                          .target = line.Value("--target"),
                          .format = line.Value("--format"),
                          .decimalComma = line.values.contains("--decimal-comma")});
}

/// Those that begin as the last word does.
Strings Matching(const Strings& candidates, const std::string& beginning,
                 const std::string& before = {}) {
    Strings matching;
    for (const std::string& candidate : candidates) {
        if (candidate.starts_with(beginning)) matching.push_back(before + candidate);
    }
    return matching;
}

Strings OptionsOf(const CLI::App& command) {
    Strings options;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            options.push_back("--" + name + '\t' + option->get_description());
    }
    return options;
}

Strings CommandsOf(const CLI::App& program) {
    Strings commands;
    for (const CLI::App* command : program.get_subcommands({}))
        commands.push_back(command->get_name() + '\t' + command->get_description());
    return commands;
}

/// What the argument that comes next may be.
Strings ArgumentsOf(const Line& line) {
    std::size_t place = 0;
    for (const CLI::Option* option : line.command->get_options()) {
        if (option->get_positional() && place++ == line.arguments.size()) return WordsOf(*option);
    }
    return {};
}

}  // namespace

std::vector<std::string> Candidates(const CLI::App& program, std::vector<std::string> words) {
    words = Understood(words);
    const std::string last = words.back();
    words.pop_back();
    const Line line = LineOf(program, words);
    if (line.open != nullptr) return Matching(ValuesOf(*line.open, line), last);
    const auto equals = last.find('=');
    if (last.starts_with("--") && equals != last.npos) {
        const CLI::Option* option = line.command->get_option_no_throw(last.substr(0, equals));
        if (option == nullptr) return {};
        return Matching(ValuesOf(*option, line), last.substr(equals + 1),
                        last.substr(0, equals + 1));
    }
    if (last.starts_with("-")) return Matching(OptionsOf(*line.command), last);
    const bool nothingYet = line.command == &program && line.arguments.empty();
    return Matching(nothingYet ? CommandsOf(program) : ArgumentsOf(line), last);
}

}  // namespace kv_tr::cli
