// What the argument parser says by itself, in the current language.
#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace kv_tr::cli {

/// Gives the headings of the help their texts. Call it before options and commands are added:
/// those take over what the program has.
void TranslateHelp(CLI::App& program);

/// Why the command line cannot be understood.
std::string Complaint(const CLI::App& program, const CLI::ParseError& error);

}  // namespace kv_tr::cli
