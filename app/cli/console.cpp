// The console of POSIX systems, which is as it should be.
#include "cli/console.h"

namespace kv_tr::cli {

void PrepareConsole() {}

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

bool ConsoleTakesColour() { return true; }

std::string SystemsLanguage() { return {}; }

}  // namespace kv_tr::cli
