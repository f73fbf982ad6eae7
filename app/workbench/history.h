// Every step of the work on a project, to take back and to do again.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "workbench/document.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {

/// What a step did, in whatever language is the current one when that is asked.
struct StepText {
    Phrase phrase = Phrase::kStepOpened;
    std::vector<std::string> values{};
    std::optional<Type> type{};     ///< fills the place behind the values
    std::optional<Type> lowered{};  ///< the type that the step led to because points were missing

    std::string Sentence() const;
};

/// One step: what it did, the changes that take it back or do it again, and what came of it.
struct Step {
    StepText text{};
    std::vector<Change> changes{};
    double sigma0 = kUndefined;  ///< of the fit after the step
};

/// The steps of a document, without limit. A step keeps what it changed, not the whole document. A
/// new step takes the place of those that have been taken back.
class History {
public:
    explicit History(Document& document) : document_(document) {}

    /// Forgets all steps: the document is what it is because of this.
    void Begin(StepText text);
    /// Makes the changes, in their order, as one step.
    void Do(StepText text, std::vector<Change> changes);

    bool CanUndo() const { return done_ > 0; }
    bool CanRedo() const { return done_ + 1 < steps_.size(); }
    void Undo();
    void Redo();
    /// Takes back or does again until so many steps are done.
    void GoTo(std::size_t done);

    /// The beginning and all steps, those that were taken back included.
    const std::vector<Step>& Steps() const { return steps_; }
    /// How many steps are done; the last one is Steps()[Done()], the beginning for 0.
    std::size_t Done() const { return done_; }

    /// The document has been saved as it is now.
    void MarkSaved() { saved_ = done_; }
    /// The document is saved nowhere.
    void MarkUnsaved() { saved_.reset(); }
    bool IsSaved() const { return saved_ == done_; }
    /// The step after which the document was saved, if that can be reached.
    std::optional<std::size_t> SavedAt() const { return saved_; }

private:
    Document& document_;
    std::vector<Step> steps_{Step{}};  // of the beginning no changes
    std::size_t done_ = 0;
    std::optional<std::size_t> saved_ = 0;
};

}  // namespace kv_tr::workbench
