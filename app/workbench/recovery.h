// Copies of open projects that survive a crash, and what is offered on the next start.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "workbench/document.h"
#include "workbench/project_file.h"

namespace kv_tr::workbench {

/// When the copy of a project is written, so that at most a minute of work is lost. Whoever has a
/// clock passes it in.
class AutosaveRule {
public:
    using Moment = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::seconds kPatience{30};

    /// Tells the state of the document, whenever that may have changed.
    void Watch(std::uint64_t version, bool isDirty, Moment now);
    enum class Action { kNone, kWrite, kRemove };
    /// What is to be done now: write what is not saved, or remove a copy of what is.
    Action Wanted(Moment now) const;
    /// When Wanted says something other than kNone, if nothing happens before; nothing for never.
    std::optional<Moment> Next() const { return due_; }
    /// That was done, or tried.
    void Done(Action action, bool succeeded, Moment now);

private:
    std::uint64_t version_ = 0;
    bool isDirty_ = false;
    std::optional<std::uint64_t> copied_;  // the version that the copy has
    std::optional<Moment> due_;
};

/// The copy of a project of a program that is gone.
struct Leftover {
    std::filesystem::path copy;
    std::string fileName;  ///< under which the project was saved; empty when it was not
    std::filesystem::file_time_type written;
};

/// The copy of one open project. A lock that lasts as long as the object tells other programs that
/// somebody still works on it; an object that ends in order takes its copy with it.
class RecoveryCopy {
public:
    explicit RecoveryCopy(std::filesystem::path folder = Folder());
    ~RecoveryCopy() { Remove(); }
    RecoveryCopy(const RecoveryCopy&) = delete;
    RecoveryCopy& operator=(const RecoveryCopy&) = delete;

    /// Writes the copy; false when that is impossible.
    bool Write(const Document& document, const std::string& fileName);
    void Remove();

    /// What programs left that are gone, the newest first.
    std::vector<Leftover> Leftovers() const;
    /// Takes a leftover as the copy of this project; a problem when another program was faster or
    /// the copy cannot be read, which then stays.
    ReadProject Take(const Leftover& leftover);
    /// Removes a leftover that nobody wants.
    static void Discard(const Leftover& leftover);

    /// The user's folder for such copies: KV_Tr/recovery in $XDG_STATE_HOME, else ~/.local/state;
    /// on Windows in %LOCALAPPDATA%. Empty where there is none.
    static std::filesystem::path Folder();

private:
    bool Lock();
    std::filesystem::path Copy() const;

    std::filesystem::path folder_;
    std::filesystem::path lockName_;
    std::FILE* lock_ = nullptr;
};

/// The folder that a program keeps its state in, with the user's rights only; empty where there is
/// none.
std::filesystem::path StateFolder(const std::string& name);

}  // namespace kv_tr::workbench
