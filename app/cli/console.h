// The console: arguments and output in UTF-8, bytes as they are, colours where they are understood.
#pragma once

#include <string>
#include <vector>

namespace kv_tr::cli {

/// Until the program ends, consoles of Windows show what it prints as it is meant: UTF-8, colours;
/// redirected streams keep every byte, where Windows would change ends of lines. Elsewhere consoles
/// need nothing.
void PrepareConsole();

/// The arguments of the program without its name, in UTF-8 on Windows.
std::vector<std::string> Arguments(int argc, char** argv);

/// Whether a terminal takes colours; old consoles of Windows do not.
bool ConsoleTakesColour();

/// The code of the language that the system shows itself in, where it is not a variable of the
/// environment that tells: "hu-HU" on a Hungarian Windows. Empty elsewhere.
std::string SystemsLanguage();

}  // namespace kv_tr::cli
