// What a shell offers after the words that stand in its line.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// The word after kv_tr by which the scripts of the shells ask for candidates.
inline constexpr char kCandidatesCommand[] = "__complete";

/// What may stand in place of the last of the words that follow kv_tr, which is empty where none
/// has begun: commands, options, and values of options, among them the identifiers of the control
/// points. Options and commands have a tab and what they do behind them. Nothing where a file may
/// be named.
std::vector<std::string> Candidates(const CLI::App& program, std::vector<std::string> words);

}  // namespace kv_tr::cli
