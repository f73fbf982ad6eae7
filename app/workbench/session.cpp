// An open project with its file and the copy that survives a crash.
#include "workbench/session.h"

#include <utility>

#include "kv_tr/text/paths.h"

namespace kv_tr::workbench {

Session::Session(std::filesystem::path recoveryFolder) : copy_(std::move(recoveryFolder)) {}

std::string Session::Title() const {
    const std::string name =
        fileName_.empty() ? Said(Phrase::kUntitled) : NameOfPath(PathOf(fileName_).filename());
    return bench_.IsDirty() ? name + "*" : name;
}

/// The project that was open is gone, and its copy with it.
void Session::Begun(Content content, StepText text) {
    copy_.Remove();
    rule_ = {};
    fileName_.clear();
    file_.reset();
    bench_.Begin(std::move(content), std::move(text));
}

void Session::Begin() { Begun({}, {.phrase = Phrase::kStepNew}); }

void Session::Begin(const OpenPreview& preview) {
    Begun(preview.Take(), preview.Source());
    if (preview.IsOfText()) bench_.MarkUnsaved();  // nothing else has the points
}

std::string Session::Open(const std::string& fileName) {
    const PointSource file = PointSourceOf(fileName);  // before somebody changes it
    ReadProject read = ProjectOfFile(fileName);
    if (!read.Complete()) return Complaint(read.problem, fileName);
    const std::string count = std::to_string(read.content.pairs.size());
    Begun(std::move(read.content),
          {.phrase = Phrase::kStepOpened, .values = {NameOfPath(file.path.filename()), count}});
    fileName_ = NameOfPath(file.path);
    file_ = file;
    return {};
}

std::string Session::SaveAs(const std::string& fileName) {
    std::string complaint = SaveProject(bench_.Project(), fileName);
    if (!complaint.empty()) return complaint;
    file_ = PointSourceOf(fileName);
    fileName_ = NameOfPath(file_->path);
    bench_.MarkSaved();
    return {};
}

std::string Session::Recover(const Leftover& leftover) {
    ReadProject read = copy_.Take(leftover);
    const std::string name = leftover.fileName.empty()
                                 ? Said(Phrase::kUntitled)
                                 : NameOfPath(PathOf(leftover.fileName).filename());
    if (!read.Complete()) return Complaint(read.problem, NameOfPath(leftover.copy));
    bench_.Begin(std::move(read.content), {.phrase = Phrase::kStepRecovered, .values = {name}});
    bench_.MarkUnsaved();
    rule_ = {};
    rule_.Watch(bench_.Project().Version(), true, {});
    rule_.Done(AutosaveRule::Action::kWrite, true, {});  // the leftover is the copy
    fileName_ = leftover.fileName;
    file_.reset();  // what is there now is not known
    return {};
}

bool Session::Tick(AutosaveRule::Moment now) {
    rule_.Watch(bench_.Project().Version(), bench_.IsDirty(), now);
    const auto wanted = rule_.Wanted(now);
    bool succeeded = true;
    if (wanted == AutosaveRule::Action::kRemove) copy_.Remove();
    if (wanted == AutosaveRule::Action::kWrite)
        succeeded = copy_.Write(bench_.Project(), fileName_);
    rule_.Done(wanted, succeeded, now);
    return succeeded;
}

}  // namespace kv_tr::workbench
