// What a user does with a project: each action is one step of the history.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "workbench/columns.h"
#include "workbench/history.h"

namespace kv_tr::workbench {

/// An open project with its history. Actions that change nothing make no step; one that is refused
/// leaves a notice for the status line. Changed is raised once an action.
class Workbench {
public:
    ChangeEvent Changed;

    Document& Project() { return document_; }
    const Document& Project() const { return document_; }
    const History& Steps() const { return history_; }
    /// Why the last action was refused; empty when it was not.
    const std::string& Notice() const { return notice_; }

    /// Opens a project in the place of the one that is open. The text says where it is from.
    void Begin(Content content, StepText text);
    /// The project has been saved as it is now, or it is saved nowhere.
    void MarkSaved();
    void MarkUnsaved();
    /// Whether something would be lost by closing.
    bool IsDirty() const { return !history_.IsSaved(); }

    // Points. Places rise. The type is lowered as far as it has to be.

    /// Excludes those that are in use; refused when fewer than two would remain.
    bool Exclude(const Places& places, const std::string& note = {});
    /// Takes back those that are excluded.
    bool Include(const Places& places);
    bool IncludeAll();
    /// Excludes a point that is in use, takes back one that is not.
    bool Toggle(std::size_t place);
    /// Puts points in so that the first one gets this place.
    bool Insert(std::size_t place, std::vector<Pair> pairs);
    bool Delete(const Places& places);
    bool DeleteExcluded();
    /// Puts a text into a cell; refused when the column needs a number and the text is none.
    bool SetCell(std::size_t place, Column column, const std::string& text);
    bool SetNote(const Places& places, const std::string& note);
    /// Exchanges source and destination.
    void Swap();

    // Settings.

    /// Refused when too few points are in use.
    bool SetType(Type type);
    /// Why a type cannot be chosen; empty when it can.
    std::string NeedOf(Type type) const;
    bool SetSolution(Solution solution);
    /// As typed; refused when that is no number, or not in the range.
    bool SetLimit(const std::string& text);
    bool SetAlpha(const std::string& text);
    bool SetSystems(const System& source, const System& destination);

    /// Does what a line of the strip offers; the line may be out of date.
    bool TakeOffer(const StripLine& line);

    void Undo();
    void Redo();
    void GoTo(std::size_t done);

private:
    bool ChangeUse(const Places& places, bool used, StepText text, std::vector<Change> more = {});
    bool Do(StepText text, std::vector<Change> changes, Settings settings);
    bool DoWithFewer(StepText text, std::vector<Change> changes, Settings settings,
                     std::size_t used);
    Settings Edited() const;
    bool Refuse(std::string why);
    template <class Action>
    void Move(Action action);

    Document document_;
    History history_{document_};
    std::string notice_;
};

}  // namespace kv_tr::workbench
