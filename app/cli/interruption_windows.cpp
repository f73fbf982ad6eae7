// What becomes of a half-written file when the user interrupts the program, on Windows: Ctrl+C, a
// console that is closed and the end of the session come as calls in a thread of their own.

#include <mutex>
#include <string>

#include "cli/interruption.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr::cli {
namespace {

std::mutex fileGuard;
std::wstring fileToRemove;

/// Held by short saves, which may be within one another. Who ends the program takes it and keeps
/// it, so that a save is done or not begun.
std::recursive_mutex saving;

BOOL WINAPI WaitForSave(DWORD) {
    saving.lock();
    return FALSE;  // the next handler ends the program
}

BOOL WINAPI RemoveAndEnd(DWORD event) {
    WaitForSave(event);
    const std::scoped_lock lock(fileGuard);
    // An open file goes when the program ends; until then the system only notes the wish.
    if (!fileToRemove.empty()) DeleteFileW(fileToRemove.c_str());
    return FALSE;
}

}  // namespace

RemovedWhenInterrupted::RemovedWhenInterrupted(const std::filesystem::path& file) {
    const std::scoped_lock lock(fileGuard);
    fileToRemove = file.native();
    SetConsoleCtrlHandler(RemoveAndEnd, TRUE);
}

RemovedWhenInterrupted::~RemovedWhenInterrupted() {
    SetConsoleCtrlHandler(RemoveAndEnd, FALSE);
    const std::scoped_lock lock(fileGuard);
    fileToRemove.clear();
}

SignalsWait::SignalsWait() {
    saving.lock();
    SetConsoleCtrlHandler(WaitForSave, TRUE);
}

SignalsWait::~SignalsWait() {
    SetConsoleCtrlHandler(WaitForSave, FALSE);
    saving.unlock();
}

void ReportFilesTooLarge() {}

}  // namespace kv_tr::cli
