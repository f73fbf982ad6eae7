// The manual pages of the program and its commands, written from what --help says.
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace kv_tr::cli {

/// The word after kv_tr by which the build asks for manual pages; the name of a folder follows.
inline constexpr char kManualCommand[] = "__manual";

/// The examples of a command as the end of its help; empty for a command without any.
std::string ExamplesHelp(const std::string& command);

/// Writes a page for the program and one for each command into the folder, in the component's
/// language, and yields the exit code. The pages bear the day of SOURCE_DATE_EPOCH where that is
/// set, else today's.
int WriteManual(const CLI::App& program, const std::string& folder);

}  // namespace kv_tr::cli
