// A project that is open: its points, their fit, and what the fit is worth.
#include "workbench/document.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "kv_tr/fit/frame.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::workbench {
namespace {

/// The elements of a vector at rising places go, and come back.
template <class Value>
std::vector<Value> TakeOut(std::vector<Value>& values, const Places& places) {
    std::vector<Value> taken;
    taken.reserve(places.size());
    std::size_t kept = 0;
    auto place = places.begin();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (place != places.end() && *place == i) {
            taken.push_back(std::move(values[i]));
            ++place;
        } else {
            if (kept != i) values[kept] = std::move(values[i]);
            ++kept;
        }
    }
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(kept), values.end());
    return taken;
}

/// Puts values in so that they get rising places.
template <class Value>
void PutIn(std::vector<Value>& values, const Places& places, std::vector<Value> added) {
    std::vector<Value> merged;
    merged.reserve(values.size() + added.size());
    auto next = values.begin();
    for (std::size_t i = 0; i < places.size(); ++i) {
        while (merged.size() < places[i]) merged.push_back(std::move(*next++));
        merged.push_back(std::move(added[i]));
    }
    std::move(next, values.end(), std::back_inserter(merged));
    values = std::move(merged);
}

}  // namespace

Document::Document(Content content) { Replace(std::move(content)); }

void Document::Replace(Content content) {
    extras_.clear();
    std::vector<ControlPoint> points;
    points.reserve(content.pairs.size());
    for (Pair& pair : content.pairs) {
        extras_.push_back(ExtraOf(pair));
        points.push_back(std::move(pair.point));
    }
    settings_ = std::move(content.settings);
    adjustment_ = Adjustment(points, settings_.type);
    adjustment_.SetSwapped(content.isSwapped);
    ++version_;
    ForgetFit();
}

Pair Document::PairAt(std::size_t place) const {
    const auto& [sigma, note, key] = extras_[place];
    return {PointAt(place), sigma, note, key};
}

Document::Extra Document::ExtraOf(Pair& pair) {
    if (pair.key == 0) pair.key = ++lastKey_;
    return {pair.sigma, std::move(pair.note), pair.key};
}

Change Document::Apply(Change change) {
    ++version_;
    return std::visit([this](auto& one) { return Applied(std::move(one)); }, change);
}

Change Document::Applied(UseChange change) {
    for (const std::size_t place : change.places) adjustment_.Toggle(place);
    ForgetFit();
    return change;
}

Change Document::Applied(PairChange change) {
    const std::size_t place = change.place;
    Pair before = PairAt(place);
    if (change.pair.point != before.point) {
        adjustment_.Replace(place, change.pair.point);
        ForgetFit();
    }
    if (change.pair.sigma != before.sigma) findingsAreCurrent_ = false;
    extras_[place] = ExtraOf(change.pair);
    return PairChange{place, std::move(before)};
}

Change Document::Applied(Insertion change) {
    std::vector<ControlPoint> points;
    std::vector<Extra> extras;
    for (Pair& pair : change.pairs) {
        extras.push_back(ExtraOf(pair));
        points.push_back(std::move(pair.point));
    }
    PutIn(extras_, change.places, std::move(extras));
    std::vector<ControlPoint> all(Points().begin(), Points().end());
    PutIn(all, change.places, std::move(points));
    Assign(std::move(all));
    return Removal{std::move(change.places)};
}

Change Document::Applied(Removal change) {
    std::vector<ControlPoint> all(Points().begin(), Points().end());
    std::vector<ControlPoint> points = TakeOut(all, change.places);
    std::vector<Extra> extras = TakeOut(extras_, change.places);
    Assign(std::move(all));
    Insertion back{std::move(change.places), {}};
    for (std::size_t i = 0; i < points.size(); ++i) {
        auto& [sigma, note, key] = extras[i];
        back.pairs.push_back({std::move(points[i]), sigma, std::move(note), key});
    }
    return back;
}

Change Document::Applied(SettingsChange change) {
    const bool sameFit =
        change.settings.type == settings_.type && change.settings.solution == settings_.solution;
    findingsAreCurrent_ &= change.settings.alpha == settings_.alpha;
    std::swap(settings_, change.settings);
    adjustment_.SetType(settings_.type);
    if (!sameFit) ForgetFit();
    return change;
}

Change Document::Applied(DirectionChange change) {
    adjustment_.Swap();
    std::swap(settings_.source, settings_.destination);
    ForgetFit();
    return change;
}

void Document::Assign(std::vector<ControlPoint> points) {
    const bool swapped = IsSwapped();
    adjustment_.Assign(points);
    adjustment_.SetSwapped(swapped);
    ForgetFit();
}

void Document::ForgetFit() {
    isFitted_ = false;
    findingsAreCurrent_ = false;
}

void Document::Fit() {
    if (isFitted_) return;
    isFitted_ = true;
    // What the coefficients that the type does not have were before, is forgotten.
    adjustment_.SetResult({.type = settings_.type, .a = {}, .b = {}});
    hasFit_ = adjustment_.Fit({.solution = settings_.solution}).Computed();
    if (hasFit_) return;
    const bool swapped = IsSwapped();
    adjustment_ = Adjustment(Points(), settings_.type);  // without the figures of the last fit
    adjustment_.SetSwapped(swapped);
}

const Adjustment& Document::Adjusted() {
    Fit();
    return adjustment_;
}

bool Document::HasFit() {
    Fit();
    return hasFit_;
}

double Document::Sigma0() { return HasFit() ? adjustment_.Check().sigma0 : kUndefined; }

Document::SigmaUse Document::UseOfSigmas() const {
    const auto known =
        std::ranges::count_if(extras_, [](const Extra& e) { return e.sigma != Point{}; });
    if (known == 0) return SigmaUse::kNone;
    if (known < std::ssize(extras_)) return SigmaUse::kMissing;
    const auto differ = [](const Extra& e) { return e.sigma.first != e.sigma.second; };
    const bool unequal = SharesUnknowns(settings_.type) && std::ranges::any_of(extras_, differ);
    return unequal ? SigmaUse::kUnequal : SigmaUse::kCount;
}

AssessmentOptions Document::Options() const {
    AssessmentOptions options{.sigmas = {}, .sigma0 = {}, .alpha = settings_.alpha};
    if (UseOfSigmas() != SigmaUse::kCount) return options;
    options.sigma0 = 1.0;
    for (const Extra& extra : extras_) options.sigmas.push_back(extra.sigma);
    return options;
}

FindingsCache& Document::Findings() {
    Fit();
    if (!std::exchange(findingsAreCurrent_, true)) findings_.Forget(Options());
    return findings_;
}

std::vector<StripLine> Document::Strip() {
    if (HasFit() || Count() == 0) return StripOf(Findings());
    const Type lower = StepDown(settings_.type).value_or(Type::kHelmert);
    const Warning warning{.id = Warning::Id::kUndetermined,
                          .severity = Warning::Severity::kSevere,
                          .offer = Warning::Offer::kType,
                          .offeredType = lower};
    return {{.look = StripLine::Look::kSevere,
             .text = Translated(Text::kCannotCompute),
             .offer = DescribeOffer(warning, ComponentTexts()),
             .warning = warning}};
}

bool Document::IsSuspect(std::size_t place) {
    if (!PointAt(place).used || !HasFit()) return false;
    if (!(adjustment_.Residuals()[place].Length() <= settings_.limit)) return true;
    const PointAssessment* point = Findings().Of(place);
    return point != nullptr && point->adjustedProbability < settings_.alpha;
}

std::size_t Document::WorstSuspect() {
    if (!HasFit()) return Count();
    const Assessment& assessment = Findings().Assessed();
    return assessment.suspect ? assessment.points[*assessment.suspect].index : Count();
}

bool Document::HasAssessment() {
    return UsedCount() <= FindingsCache::kAssessedPoints || Findings().IsAssessed();
}

std::size_t Document::KnownSuspect() { return HasAssessment() ? WorstSuspect() : Count(); }

PairTable& Document::Table() {
    Findings();
    return table_;
}

Type FirstTypeFor(std::span<const ControlPoint> points) {
    Adjustment adjustment(points, Type::kAffine);
    if (!adjustment.IsEnoughFor(Type::kAffine)) return Type::kHelmert;
    const bool good = adjustment.Fit().Succeeded() && !adjustment.Check().undetermined;
    return good ? Type::kAffine : Type::kHelmert;
}

}  // namespace kv_tr::workbench
