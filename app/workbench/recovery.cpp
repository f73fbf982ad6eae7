// Copies of open projects that survive a crash, and what is offered on the next start.
#include "workbench/recovery.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <utility>

#include "kv_tr/text/paths.h"
#include "kv_tr/text/replacing_file.h"

namespace kv_tr::workbench {
namespace fs = std::filesystem;
namespace {

constexpr const char* kLockEnding = ".lock";
constexpr const char* kCopyEnding = ".kvtr";

fs::path CopyOf(fs::path lock) { return lock.replace_extension(kCopyEnding); }
fs::path LockOf(fs::path copy) { return copy.replace_extension(kLockEnding); }

std::string FirstLine(const fs::path& file) {
    std::ifstream stream = OpenToRead(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

}  // namespace

void AutosaveRule::Watch(std::uint64_t version, bool isDirty, Moment now) {
    version_ = version;
    isDirty_ = isDirty;
    if (!isDirty) {
        due_ = copied_ ? std::optional(now) : std::nullopt;
    } else if (copied_ == version) {
        due_.reset();
    } else if (!due_) {
        due_ = now + kPatience;
    }
}

AutosaveRule::Action AutosaveRule::Wanted(Moment now) const {
    if (!due_ || now < *due_) return Action::kNone;
    return isDirty_ ? Action::kWrite : Action::kRemove;
}

void AutosaveRule::Done(Action action, bool succeeded, Moment now) {
    if (action == Action::kNone) return;
    due_.reset();
    if (action == Action::kRemove) {
        copied_.reset();
    } else if (succeeded) {
        copied_ = version_;
    } else {
        due_ = now + kPatience;
    }
}

fs::path StateFolder(const std::string& name) {
#ifdef _WIN32
    const fs::path states = PathOf(Environment("LOCALAPPDATA"));
#else
    fs::path states = Environment("XDG_STATE_HOME");
    if (const fs::path home = Environment("HOME"); states.empty() && !home.empty())
        states = home / ".local" / "state";
#endif
    return states.empty() ? states : states / "KV_Tr" / name;
}

fs::path RecoveryCopy::Folder() { return StateFolder("recovery"); }

RecoveryCopy::RecoveryCopy(fs::path folder) : folder_(std::move(folder)) {}

/// Makes a lock of a name that nobody has.
bool RecoveryCopy::Lock() {
    if (lock_ != nullptr) return true;
    if (folder_.empty()) return false;
    std::error_code error;
    fs::create_directories(folder_, error);
    fs::permissions(folder_, fs::perms::owner_all, error);
    constexpr int kMostNames = 10000;
    for (int number = 1; number <= kMostNames; ++number) {
        FileRights usual;
        lockName_ = folder_ / ("project-" + std::to_string(number) + kLockEnding);
        // A copy without a lock is being taken by somebody.
        if (fs::exists(CopyOf(lockName_), error)) continue;
        lock_ = CreateLocked(lockName_, usual);
        if (lock_ != nullptr) return true;
        if (errno != EEXIST) return false;
    }
    return false;
}

fs::path RecoveryCopy::Copy() const { return CopyOf(lockName_); }

bool RecoveryCopy::Write(const Document& document, const std::string& fileName) {
    if (!Lock()) return false;
    // Only the first line counts, so that a shorter name may follow a longer one.
    const bool isLine = fileName.find('\n') == std::string::npos;
    std::rewind(lock_);
    const bool named = std::fputs(((isLine ? fileName : "") + "\n").c_str(), lock_) >= 0 &&
                       std::fflush(lock_) == 0;
    ReplacingFile file(NameOfPath(Copy()));
    if (!named || !file.IsOpen()) return false;
    file.Write(ProjectText(document));
    return file.Commit();
}

void RecoveryCopy::Remove() {
    if (lock_ == nullptr) return;
    std::error_code error;
    fs::remove(Copy(), error);
    fs::remove(lockName_, error);  // while it is still locked, so that nobody else does
    std::fclose(std::exchange(lock_, nullptr));
    fs::remove(lockName_, error);  // where open files cannot be removed
}

std::vector<Leftover> RecoveryCopy::Leftovers() const {
    std::vector<Leftover> leftovers;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_, error)) {
        const fs::path& lock = entry.path();
        if (lock.extension() != kLockEnding || !IsDead(lock)) continue;
        const auto written = LastChange(CopyOf(lock));
        if (written) leftovers.push_back({CopyOf(lock), FirstLine(lock), *written});
    }
    std::ranges::sort(leftovers, std::ranges::greater{}, &Leftover::written);
    return leftovers;
}

ReadProject RecoveryCopy::Take(const Leftover& leftover) {
    ReadProject read = ProjectOfFile(NameOfPath(leftover.copy));
    if (!read.Complete()) return read;
    Remove();
    std::error_code error;
    const bool isFree = IsDead(LockOf(leftover.copy)) && Lock();
    if (isFree) fs::rename(leftover.copy, Copy(), error);
    if (!isFree || error) return {.problem = {.kind = ProjectProblem::Kind::kNotOpened}};
    std::rewind(lock_);
    std::fputs((leftover.fileName + "\n").c_str(), lock_);
    std::fflush(lock_);
    fs::remove(LockOf(leftover.copy), error);
    return read;
}

void RecoveryCopy::Discard(const Leftover& leftover) {
    std::error_code error;
    if (!IsDead(LockOf(leftover.copy))) return;
    fs::remove(leftover.copy, error);
    fs::remove(LockOf(leftover.copy), error);
}

}  // namespace kv_tr::workbench
