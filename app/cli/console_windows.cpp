// The console of Windows.
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include "cli/console.h"
#include "kv_tr/text/wide_text.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr::cli {
namespace {

bool takesColour = false;

bool LetTakeColour(DWORD stream) {
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) != 0 &&
           SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace

void PrepareConsole() {
    static const unsigned codePageBefore = GetConsoleOutputCP();
    if (codePageBefore != 0) std::atexit([] { SetConsoleOutputCP(codePageBefore); });
    SetConsoleOutputCP(CP_UTF8);
    for (std::FILE* stream : {stdin, stdout, stderr}) {
        if (_isatty(_fileno(stream)) == 0) _setmode(_fileno(stream), _O_BINARY);
    }
    LetTakeColour(STD_ERROR_HANDLE);
    takesColour = LetTakeColour(STD_OUTPUT_HANDLE);
}

// What main gets has been put into the code page of the system, where letters are lost.
std::vector<std::string> Arguments(int, char**) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> wide(
        CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(Utf8(wide.get()[i]));
    return arguments;
}

bool ConsoleTakesColour() { return takesColour; }

std::string SystemsLanguage() {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
    LCIDToLocaleName(MAKELCID(GetUserDefaultUILanguage(), SORT_DEFAULT), name,
                     LOCALE_NAME_MAX_LENGTH, 0);
    return Utf8(name);
}

}  // namespace kv_tr::cli
