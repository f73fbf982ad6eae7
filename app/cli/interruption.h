// What becomes of a half-written file when the user interrupts the program.
#pragma once

#include <csignal>
#include <filesystem>

namespace kv_tr::cli {

/// While it lives, Ctrl+C, a hang-up and a request to end remove this file before they end the
/// program. There may be one at a time.
class RemovedWhenInterrupted {
public:
    explicit RemovedWhenInterrupted(const std::filesystem::path& file);
    ~RemovedWhenInterrupted();
    RemovedWhenInterrupted(const RemovedWhenInterrupted&) = delete;
    RemovedWhenInterrupted& operator=(const RemovedWhenInterrupted&) = delete;
};

/// While it lives, the first Ctrl+C, hang-up or request to end is only noted, so that long work can
/// undo what it has begun; a second one ends the program at once. Not for Windows, where the work
/// that needs it is not part of the program.
class NotedInterruption {
public:
    NotedInterruption();
    ~NotedInterruption();  // ends the program by the signal that was noted, if any
    NotedInterruption(const NotedInterruption&) = delete;
    NotedInterruption& operator=(const NotedInterruption&) = delete;

    static bool Noted();
};

/// While it lives, signals that would end the program wait, so that a short save is done or not
/// begun. Only SIGKILL can leave a temporary file then.
class SignalsWait {
public:
    SignalsWait();
    ~SignalsWait();
    SignalsWait(const SignalsWait&) = delete;
    SignalsWait& operator=(const SignalsWait&) = delete;

#ifndef _WIN32
private:
    sigset_t before_{};
#endif
};

/// Makes a file that grows beyond what the user may write an error like a full disk, instead of
/// the end of the program.
void ReportFilesTooLarge();

}  // namespace kv_tr::cli
