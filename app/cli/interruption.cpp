// What becomes of a half-written file when the user interrupts the program.
#include "cli/interruption.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <string>

namespace kv_tr::cli {
namespace {

#ifdef SIGHUP
constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
#else
constexpr std::array kSignals{SIGINT, SIGTERM};
#endif

std::array<char, 4096> nameOfFile{};  // no memory may be allocated when a signal arrives

void RemoveAndEnd(int signal) {
    std::remove(nameOfFile.data());
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

/// What is ignored, as under nohup, stays so.
void HandleSignals(void (*handler)(int)) {
    for (const int signal : kSignals) {
        if (std::signal(signal, handler) == SIG_IGN) std::signal(signal, SIG_IGN);
    }
}

}  // namespace

RemovedWhenInterrupted::RemovedWhenInterrupted(const std::filesystem::path& file) {
    const std::string name = file.string();
    if (name.empty() || name.size() >= nameOfFile.size()) return;
    *std::ranges::copy(name, nameOfFile.begin()).out = '\0';
    HandleSignals(RemoveAndEnd);
}

RemovedWhenInterrupted::~RemovedWhenInterrupted() { HandleSignals(SIG_DFL); }

}  // namespace kv_tr::cli
