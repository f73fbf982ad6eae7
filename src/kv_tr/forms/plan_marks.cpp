// The points of a plan as marks: symbols, residual vectors, error ellipses, names.
#include "kv_tr/forms/plan_marks.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/round_number.h"

namespace kv_tr {
namespace {

constexpr double kShortVector = 18;  // of nine in ten, where points are dense
constexpr double kLongVector = 44;   // and where they are not
constexpr double kMostVector = 110;
constexpr double kLeastVector = 1;
constexpr double kRing = 8.5;  // around what is selected

/// The name of a pair beside the first of four corners where there is room for it.
void AddName(std::vector<PlanItem>& items, PlanRoom& room, const PlanIndex& index,
             const ShownPair& pair) {
    constexpr double kGap = 4;
    using Anchor = PlanText::Anchor;
    const PlanSymbols like = SymbolsOf(pair.kind);
    const double aside = (pair.isSelected ? kRing : like.size) + kGap;
    for (const Point corner : {Point{1, -1}, {-1, -1}, {1, 1}, {-1, 1}}) {
        PlanText name{.base = {pair.at.first + corner.first * aside,
                               pair.at.second + (corner.second * 0.7 + 0.35) * kPlanText},
                      .text = "..",
                      .anchor = corner.first > 0 ? Anchor::kStart : Anchor::kEnd,
                      .ink = pair.kind == PlanKind::kGood ? PlanInk::kText : like.ink,
                      .isBold = pair.kind == PlanKind::kSuspect};
        if (!room.IsFree(BoxOf(name))) continue;  // not even for two letters
        name.text = WithoutControls(index.Pair(pair.index).id);
        if (!room.IsFree(BoxOf(name))) continue;
        room.Take(BoxOf(name));
        items.emplace_back(std::move(name));
        return;
    }
}

}  // namespace

void AddArrowHead(std::vector<PlanLines::Segment>& segments, Point tip, Point direction,
                  double size) {
    constexpr double kSlope = 0.4;
    for (const double side : {kSlope, -kSlope}) {
        segments.push_back({tip,
                            {tip.first - size * (direction.first + side * direction.second),
                             tip.second - size * (direction.second - side * direction.first)}});
    }
}

VectorScale VectorScaleOf(const PlanIndex& index, const PlanView& view,
                          const PlanOptions& options) {
    if (options.vectorBar > 0 && std::isfinite(options.vectorBar)) return {options.vectorBar};
    const auto typical = index.TypicalResidual();
    if (!typical) return {};
    const double spacing = index.Spacing() / view.metresPerUnit;
    const double length = std::clamp(spacing, kShortVector, kLongVector);
    const double bar = RoundAbove(*typical * kVectorBar / length);
    return {std::isfinite(bar) ? bar : 0};
}

PlanSymbols SymbolsOf(PlanKind kind) {
    using Shape = PlanSymbols::Shape;
    switch (kind) {
        case PlanKind::kSuspect: return {Shape::kDiamond, PlanInk::kSuspect, 6};
        case PlanKind::kOverLimit: return {Shape::kTriangle, PlanInk::kOverLimit, 5};
        case PlanKind::kExcluded: return {Shape::kCircle, PlanInk::kExcluded, 3.5, 1.4};
        case PlanKind::kGood: break;
    }
    return {Shape::kDisc, PlanInk::kGood, 2.5};
}

bool PlanMarks::IsWanted(const ShownPair& pair) const {
    return std::ranges::find(kinds_, pair.kind) != kinds_.end();
}

void PlanMarks::AddSymbols(std::vector<PlanItem>& items) {
    for (const PlanKind kind : kinds_) {
        PlanSymbols symbols = SymbolsOf(kind);
        const double size = symbols.size + 1;
        for (const ShownPair& pair : shown_) {
            if (pair.kind != kind) continue;
            const auto [x, y] = pair.at;
            symbols.places.push_back(pair.at);
            room_.Take({x - size, y - size, x + size, y + size});
        }
        if (!symbols.places.empty()) items.emplace_back(std::move(symbols));
    }
    PlanSymbols rings{PlanSymbols::Shape::kCircle, PlanInk::kSelected, kRing, 2};
    for (const ShownPair& pair : shown_) {
        if (pair.isSelected && IsWanted(pair)) rings.places.push_back(pair.at);
    }
    if (!rings.places.empty()) items.emplace_back(std::move(rings));
}

bool PlanMarks::AddVectors(std::vector<PlanItem>& items) {
    constexpr std::size_t kCrowd = 2000;  // among which broad lines would hide too much
    const bool isCrowd = shown_.size() > kCrowd;
    bool isAnyCut = false;
    for (const PlanKind kind : kinds_) {
        const PlanSymbols like = SymbolsOf(kind);
        PlanLines lines{.ink = like.ink,
                        .width = kind == PlanKind::kSuspect && !isCrowd ? 2.0 : 1.0};
        for (const ShownPair& pair : shown_) {
            if (pair.kind != kind) continue;
            const Residual& residual = index_.Pair(pair.index).residual;
            const double length = pair.length * scale_.UnitsPerMetre();
            if (!(length >= kLeastVector) || !std::isfinite(pair.length)) continue;
            const bool isCut = length > kMostVector;
            const Point direction{residual.first / pair.length, -residual.second / pair.length};
            const auto along = [&](double units) {
                return Point{pair.at.first + units * direction.first,
                             pair.at.second + units * direction.second};
            };
            const double drawn = isCut ? kMostVector : length;
            const double head = std::min(6.0, drawn / 2);
            lines.segments.push_back({pair.at, along(drawn)});
            room_.TakeAlong(lines.segments.back());
            if (drawn >= 3) AddArrowHead(lines.segments, along(drawn), direction, head);
            if (isCut) AddArrowHead(lines.segments, along(drawn - head), direction, head);
            isAnyCut = isAnyCut || isCut;
        }
        if (!lines.segments.empty()) items.emplace_back(std::move(lines));
    }
    return isAnyCut;
}

void PlanMarks::AddEllipses(std::vector<PlanItem>& items) {
    constexpr int kSides = 24;
    constexpr double kLongest = 5000;  // of a semi-axis; longer ones are no figures of a plan
    PlanLines lines{.ink = PlanInk::kEllipse};
    for (const ShownPair& pair : shown_) {
        if (!IsWanted(pair) || pair.index >= index_.Data().ellipses.size()) continue;
        const auto& [semiMajor, semiMinor, bearing] = index_.Data().ellipses[pair.index];
        const double major = semiMajor * scale_.UnitsPerMetre();
        const double minor = semiMinor * scale_.UnitsPerMetre();
        const bool isDrawn =
            major > 0 && major < kLongest && minor >= 0 && minor <= major && std::isfinite(bearing);
        if (!isDrawn) continue;
        const double sine = std::sin(bearing);
        const double cosine = std::cos(bearing);
        const auto at = [&](int i) {
            const double angle = 2 * std::numbers::pi * (i % kSides) / kSides;
            const double along = major * std::cos(angle);
            const double across = minor * std::sin(angle);
            return Point{pair.at.first + along * sine + across * cosine,
                         pair.at.second - along * cosine + across * sine};
        };
        for (int i = 0; i < kSides; ++i) lines.segments.push_back({at(i), at(i + 1)});
    }
    if (!lines.segments.empty()) items.emplace_back(std::move(lines));
}

void AddNames(std::vector<PlanItem>& items, PlanRoom& room, const PlanIndex& index,
              std::span<const ShownPair> shown) {
    for (const ShownPair& pair : shown) AddName(items, room, index, pair);
}

}  // namespace kv_tr
