// Every step of the work on a project, to take back and to do again.
#include "workbench/history.h"

#include <utility>

#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::workbench {

std::string StepText::Sentence() const {
    std::vector<std::string> all = values;
    if (type) all.push_back(TypeName(*type, ComponentTexts()));
    std::string sentence = Said(phrase, all);
    if (lowered) {
        sentence += ". " + Translated(Text::kTypeLowered, {TypeName(*lowered, ComponentTexts())});
    }
    return sentence;
}

void History::Begin(StepText text) {
    steps_.assign(1, {.text = std::move(text), .sigma0 = document_.Sigma0()});
    done_ = 0;
    saved_ = 0;
}

void History::Do(StepText text, std::vector<Change> changes) {
    steps_.resize(done_ + 1);
    if (saved_ && *saved_ > done_) saved_.reset();
    for (Change& change : changes) change = document_.Apply(std::move(change));
    steps_.push_back({std::move(text), std::move(changes), document_.Sigma0()});
    ++done_;
}

void History::Undo() {
    if (!CanUndo()) return;
    auto& changes = steps_[done_].changes;
    for (std::size_t i = changes.size(); i-- > 0;)
        changes[i] = document_.Apply(std::move(changes[i]));
    --done_;
}

void History::Redo() {
    if (!CanRedo()) return;
    ++done_;
    for (Change& change : steps_[done_].changes) change = document_.Apply(std::move(change));
}

void History::GoTo(std::size_t done) {
    while (done_ > done && CanUndo()) Undo();
    while (done_ < done && CanRedo()) Redo();
}

}  // namespace kv_tr::workbench
