// What becomes of a half-written file when the user interrupts the program, on POSIX systems.
#include "cli/interruption.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <string>

namespace kv_tr::cli {
namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU};

std::array<char, 4096> nameOfFile{};  // no memory may be allocated when a signal arrives

volatile std::sig_atomic_t notedSignal = 0;

void NoteSignal(int signal) {
    notedSignal = signal;
    std::signal(signal, SIG_DFL);
}

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

NotedInterruption::NotedInterruption() {
    notedSignal = 0;
    HandleSignals(NoteSignal);
}

NotedInterruption::~NotedInterruption() {
    HandleSignals(SIG_DFL);
    if (Noted()) std::raise(notedSignal);
}

bool NotedInterruption::Noted() { return notedSignal != 0; }

SignalsWait::SignalsWait() {
    sigset_t ending;
    sigemptyset(&ending);
    for (const int signal : kSignals) sigaddset(&ending, signal);
    sigprocmask(SIG_BLOCK, &ending, &before_);
}

SignalsWait::~SignalsWait() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

void ReportFilesTooLarge() { std::signal(SIGXFSZ, SIG_IGN); }

}  // namespace kv_tr::cli
