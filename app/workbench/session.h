// An open project with its file and the copy that survives a crash.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "kv_tr/files/point_source.h"
#include "workbench/open_preview.h"
#include "workbench/recovery.h"
#include "workbench/workbench.h"

namespace kv_tr::workbench {

/// What a window works with: the workbench, the name of its project, saving, autosave. Functions
/// that may fail yield what went wrong in words of the current language, or nothing; what was open
/// stays open then.
class Session {
public:
    explicit Session(std::filesystem::path recoveryFolder = RecoveryCopy::Folder());

    Workbench& Bench() { return bench_; }
    /// Under which the project is saved; empty when it is not.
    const std::string& FileName() const { return fileName_; }
    /// The name of the file, or what a project without one is called; with "*" when not saved.
    std::string Title() const;

    /// Begins an empty project, or one of what a preview shows.
    void Begin();
    void Begin(const OpenPreview& preview);
    std::string Open(const std::string& fileName);
    std::string Save() { return SaveAs(fileName_); }
    std::string SaveAs(const std::string& fileName);
    /// Whether somebody else has changed the file since it was opened or saved: saving would
    /// replace that.
    bool IsFileChanged() const { return file_ && !IsUnchanged(*file_); }

    // The copy that survives a crash.

    /// What programs left that are gone.
    std::vector<Leftover> Leftovers() const { return copy_.Leftovers(); }
    /// Opens a leftover as a project that is not saved.
    std::string Recover(const Leftover& leftover);
    /// Writes or removes the copy when it is time to. False when that failed.
    bool Tick(AutosaveRule::Moment now);
    /// When Tick has something to do.
    std::optional<AutosaveRule::Moment> NextTick() const { return rule_.Next(); }

private:
    void Begun(Content content, StepText text);

    Workbench bench_;
    std::string fileName_;
    std::optional<PointSource> file_;  // as it was when it was opened or saved
    RecoveryCopy copy_;
    AutosaveRule rule_;
};

}  // namespace kv_tr::workbench
