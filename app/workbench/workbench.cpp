// What a user does with a project: each action is one step of the history.
#include "workbench/workbench.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::workbench {
namespace {

/// "Excluded P7", or "Excluded 12 points".
StepText CountedText(Phrase one, Phrase many, const Places& places, const Document& document) {
    if (places.size() == 1) return {.phrase = one, .values = {document.PointAt(places[0]).id}};
    return {.phrase = many, .values = {std::to_string(places.size())}};
}

std::string NumberText(double value) { return ShortestText(value, ComponentNumberStyle()); }

}  // namespace

void Workbench::Begin(Content content, StepText text) {
    document_.Replace(std::move(content));
    history_.Begin(std::move(text));
    notice_.clear();
    Changed.Raise();
}

void Workbench::MarkSaved() {
    history_.MarkSaved();
    Changed.Raise();
}

void Workbench::MarkUnsaved() {
    history_.MarkUnsaved();
    Changed.Raise();
}

bool Workbench::Refuse(std::string why) {
    notice_ = std::move(why);
    Changed.Raise();
    return false;
}

/// One step of the changes and of what the settings become. False when there is nothing to do.
bool Workbench::Do(StepText text, std::vector<Change> changes, Settings settings) {
    notice_.clear();
    if (settings != document_.Current()) changes.emplace_back(SettingsChange{std::move(settings)});
    if (changes.empty()) return false;
    history_.Do(std::move(text), std::move(changes));
    Changed.Raise();
    return true;
}

/// The same; so many points are in use afterwards.
bool Workbench::DoWithFewer(StepText text, std::vector<Change> changes, Settings settings,
                            std::size_t used) {
    const auto isShort = [&] {
        return used < static_cast<std::size_t>(MinimumPoints(settings.type));
    };
    while (isShort()) {
        const auto lower = StepDown(settings.type);
        if (!lower) break;
        text.lowered = settings.type = *lower;
    }
    return Do(std::move(text), std::move(changes), std::move(settings));
}

/// The settings after points have been changed: the files no longer tell what the points are.
Settings Workbench::Edited() const {
    Settings settings = document_.Current();
    for (Origin& origin : settings.origins) origin.isEdited = true;
    return settings;
}

bool Workbench::ChangeUse(const Places& places, bool used, StepText text,
                          std::vector<Change> more) {
    const std::size_t before = document_.UsedCount();
    const std::size_t after = used ? before + places.size() : before - places.size();
    if (!used && after < 2 && !places.empty()) return Refuse(Said(Phrase::kTwoPointsStay));
    if (!places.empty()) more.emplace_back(UseChange{places});
    return DoWithFewer(std::move(text), std::move(more), document_.Current(), after);
}

bool Workbench::Exclude(const Places& places, const std::string& note) {
    Places chosen;
    std::vector<Change> notes;
    for (const std::size_t place : places) {
        if (!document_.PointAt(place).used) continue;
        chosen.push_back(place);
        if (note.empty()) continue;
        Pair pair = document_.PairAt(place);
        pair.note = note;
        notes.emplace_back(PairChange{place, std::move(pair)});
    }
    const StepText text =
        CountedText(Phrase::kStepExcluded, Phrase::kStepExcludedMany, chosen, document_);
    return ChangeUse(chosen, false, text, std::move(notes));
}

bool Workbench::Include(const Places& places) {
    Places chosen;
    for (const std::size_t place : places) {
        if (!document_.PointAt(place).used) chosen.push_back(place);
    }
    const StepText text =
        CountedText(Phrase::kStepIncluded, Phrase::kStepIncludedMany, chosen, document_);
    return ChangeUse(chosen, true, text);
}

bool Workbench::IncludeAll() {
    Places all(document_.Count());
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
    return Include(all);
}

bool Workbench::Toggle(std::size_t place) {
    return document_.PointAt(place).used ? Exclude({place}) : Include({place});
}

bool Workbench::Insert(std::size_t place, std::vector<Pair> pairs) {
    if (pairs.empty()) return false;
    StepText text{.phrase = Phrase::kStepInsertedMany, .values = {std::to_string(pairs.size())}};
    if (pairs.size() == 1) text = {.phrase = Phrase::kStepInserted, .values = {pairs[0].point.id}};
    Places places;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        places.push_back(place + i);
        pairs[i].key = 0;  // copies of points are points of their own
    }
    return Do(std::move(text), {Insertion{std::move(places), std::move(pairs)}}, Edited());
}

bool Workbench::Delete(const Places& places) {
    if (places.empty()) return false;
    const auto isUsed = [this](std::size_t place) { return document_.PointAt(place).used; };
    const auto gone = static_cast<std::size_t>(std::ranges::count_if(places, isUsed));
    return DoWithFewer(
        CountedText(Phrase::kStepDeleted, Phrase::kStepDeletedMany, places, document_),
        {Removal{places}}, Edited(), document_.UsedCount() - gone);
}

bool Workbench::DeleteExcluded() {
    Places excluded;
    for (std::size_t i = 0; i < document_.Count(); ++i) {
        if (!document_.PointAt(i).used) excluded.push_back(i);
    }
    return Delete(excluded);
}

bool Workbench::SetCell(std::size_t place, Column column, const std::string& text) {
    if (column == Column::kNote) return SetNote({place}, text);
    if (!IsEditable(column)) return false;
    Pair pair = document_.PairAt(place);
    const std::string id = pair.point.id;
    std::string before;
    if (column == Column::kSigmaFirst || column == Column::kSigmaSecond) {
        const bool isFirst = column == Column::kSigmaFirst;
        const double old = isFirst ? pair.sigma.first : pair.sigma.second;
        const auto typed = TypedNumber(text);
        const bool isEmpty = text.find_first_not_of(' ') == std::string::npos;
        if (!isEmpty && !(typed && *typed > 0)) return Refuse(Said(Phrase::kSigmaNeeded, {text}));
        if (isEmpty || !pair.HasSigma()) {
            pair.sigma = isEmpty ? Point{} : Point{*typed, *typed};
        } else {
            (isFirst ? pair.sigma.first : pair.sigma.second) = *typed;
        }
        before = old > 0 ? NumberText(old) : "–";
    } else {
        const int row = static_cast<int>(place) + 1;
        PairTable& table = document_.Table();
        before = table.CopiedCell(row, TableColumnOf(column));
        const bool isNumber = column != Column::kIdentifier;
        if (isNumber && !TypedNumber(text)) return Refuse(Said(Phrase::kNumberNeeded, {text}));
        if (auto point = table.PointWith(row, TableColumnOf(column), text))
            pair.point = *std::move(point);
    }
    if (pair.IsSameAs(document_.PairAt(place))) {
        notice_.clear();
        return false;
    }
    StepText step{.phrase = Phrase::kStepEdited, .values = {id, text, before}};
    return Do(std::move(step), {PairChange{place, std::move(pair)}}, Edited());
}

bool Workbench::SetNote(const Places& places, const std::string& note) {
    std::vector<Change> changes;
    Places changed;
    for (const std::size_t place : places) {
        Pair pair = document_.PairAt(place);
        if (pair.note == note) continue;
        pair.note = note;
        changed.push_back(place);
        changes.emplace_back(PairChange{place, std::move(pair)});
    }
    StepText text = CountedText(Phrase::kStepNote, Phrase::kStepNoteMany, changed, document_);
    text.values.push_back(note);
    return Do(std::move(text), std::move(changes), document_.Current());
}

void Workbench::Swap() {
    Do({.phrase = Phrase::kStepSwapped}, {DirectionChange{}}, document_.Current());
}

std::string Workbench::NeedOf(Type type) const {
    const auto needed = static_cast<std::size_t>(MinimumPoints(type));
    if (document_.UsedCount() >= needed) return {};
    return Said(Phrase::kTypeNeeds, {TypeName(type, ComponentTexts()), std::to_string(needed),
                                     std::to_string(document_.UsedCount())});
}

bool Workbench::SetType(Type type) {
    if (std::string need = NeedOf(type); !need.empty()) return Refuse(std::move(need));
    Settings settings = document_.Current();
    settings.type = type;
    return Do({.phrase = Phrase::kStepType, .type = type}, {}, std::move(settings));
}

bool Workbench::SetSolution(Solution solution) {
    Settings settings = document_.Current();
    settings.solution = solution;
    const bool isAccurate = solution == Solution::kAccurate;
    return Do({.phrase = isAccurate ? Phrase::kStepAccurate : Phrase::kStepDocumented}, {},
              std::move(settings));
}

bool Workbench::SetLimit(const std::string& text) {
    const auto limit = TypedNumber(text);
    if (!limit || *limit < 0) return Refuse(Said(Phrase::kLimitNeeded, {text}));
    Settings settings = document_.Current();
    settings.limit = *limit;
    return Do({.phrase = Phrase::kStepLimit, .values = {NumberText(*limit)}}, {},
              std::move(settings));
}

bool Workbench::SetAlpha(const std::string& text) {
    const auto alpha = TypedNumber(text);
    if (!alpha || *alpha <= 0 || *alpha >= 1) return Refuse(Said(Phrase::kAlphaNeeded, {text}));
    Settings settings = document_.Current();
    settings.alpha = *alpha;
    return Do({.phrase = Phrase::kStepAlpha, .values = {NumberText(*alpha)}}, {},
              std::move(settings));
}

bool Workbench::SetSystems(const System& source, const System& destination) {
    Settings settings = document_.Current();
    settings.source = source;
    settings.destination = destination;
    return Do({.phrase = Phrase::kStepSystems, .values = {source.name, destination.name}}, {},
              std::move(settings));
}

bool Workbench::TakeOffer(const StripLine& line) {
    const Warning& warning = line.warning;
    switch (warning.offer) {
        case Warning::Offer::kNone: return false;
        case Warning::Offer::kAccurate: return SetSolution(Solution::kAccurate);
        case Warning::Offer::kType: return SetType(*warning.offeredType);
        case Warning::Offer::kDeleteExcluded: return DeleteExcluded();
        case Warning::Offer::kExclude: break;
    }
    const std::size_t place = *warning.point;
    const bool isThere =
        place < document_.Count() && document_.PointAt(place).id == warning.identifier;
    return isThere && Exclude({place});
}

template <class Action>
void Workbench::Move(Action action) {
    notice_.clear();
    action();
    Changed.Raise();
}

void Workbench::Undo() {
    Move([this] { history_.Undo(); });
}

void Workbench::Redo() {
    Move([this] { history_.Redo(); });
}

void Workbench::GoTo(std::size_t done) {
    Move([this, done] { history_.GoTo(done); });
}

}  // namespace kv_tr::workbench
