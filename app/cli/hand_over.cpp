// Going on as the program that has GDAL.
#include "cli/hand_over.h"

#include <filesystem>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace kv_tr::cli {
namespace {

char** ownArguments = nullptr;

}  // namespace

void RememberArguments(char** argv) { ownArguments = argv; }

void HandOver() {
#ifndef _WIN32
    std::error_code error;
    auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error || ownArguments == nullptr) return;
    program.replace_filename("kv_tr_layers");
    execv(program.c_str(), ownArguments);
#endif
}

}  // namespace kv_tr::cli
