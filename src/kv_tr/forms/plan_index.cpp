// The pairs of a plan with what is computed from them once: order, extent, picking.
#include "kv_tr/forms/plan_index.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

constexpr double kLeastResidual = 1e-6;  // metres; what is less is rounding

bool HasPlace(Point place) { return std::isfinite(place.first) && std::isfinite(place.second); }

/// The length that nine of ten do not exceed; nothing if that is rounding only.
std::optional<double> NineOfTen(std::vector<double> lengths) {
    if (lengths.empty()) return {};
    const auto place =
        lengths.begin() + static_cast<std::ptrdiff_t>((lengths.size() * 9 + 9) / 10 - 1);
    std::ranges::nth_element(lengths, place);
    if (*place > kLeastResidual) return *place;
    return {};
}

/// The extent with a place that is within it, too.
PlanExtent Around(const std::optional<PlanExtent>& extent, Point place) {
    const auto [least, greatest] = extent.value_or(PlanExtent{place, place});
    return {{std::min(least.first, place.first), std::min(least.second, place.second)},
            {std::max(greatest.first, place.first), std::max(greatest.second, place.second)}};
}

/// Pairs over the limit count among the good ones: the limit may be a strict one.
PlanKind Alike(PlanKind kind) { return kind == PlanKind::kOverLimit ? PlanKind::kGood : kind; }

}  // namespace

PlanKind KindOf(const PlanPair& pair) {
    if (!pair.isUsed) return PlanKind::kExcluded;
    switch (pair.standing) {
        case PlanStanding::kSuspect: return PlanKind::kSuspect;
        case PlanStanding::kOverLimit: return PlanKind::kOverLimit;
        case PlanStanding::kGood: break;
    }
    return PlanKind::kGood;
}

PlanIndex::PlanIndex(PlanData data) : data_(std::move(data)) {
    std::array<std::vector<double>, kPlanKinds> lengths;
    worstFirst_.reserve(data_.pairs.size());
    for (std::uint32_t i = 0; i < data_.pairs.size(); ++i) {
        const PlanPair& pair = data_.pairs[i];
        const PlanKind kind = KindOf(pair);
        ++counts_[static_cast<std::size_t>(kind)];
        const double length = pair.residual.Length();
        if (std::isfinite(length)) lengths[static_cast<std::size_t>(Alike(kind))].push_back(length);
        if (!HasPlace(pair.place)) continue;
        extent_ = Around(extent_, pair.place);
        const bool isUndefined = std::isnan(length);
        worstFirst_.push_back(
            {pair.place, isUndefined ? std::numeric_limits<double>::infinity() : length, i, kind});
    }
    std::ranges::sort(worstFirst_, [](const Ranked& one, const Ranked& other) {
        if (one.kind != other.kind) return one.kind < other.kind;
        if (one.length != other.length) return one.length > other.length;
        return one.index < other.index;
    });
    for (const PlanKind kind : {PlanKind::kGood, PlanKind::kSuspect, PlanKind::kExcluded}) {
        if (typicalResidual_) break;
        typicalResidual_ = NineOfTen(std::move(lengths[static_cast<std::size_t>(kind)]));
    }
}

double PlanIndex::Spacing() const {
    if (!extent_) return 0;
    const auto [least, greatest] = *extent_;
    const double width = greatest.first - least.first;
    const double height = greatest.second - least.second;
    const auto count = static_cast<double>(worstFirst_.size());
    // Along a line the pairs follow each other, elsewhere each has its part of the area.
    return std::max(std::max(width, height) / count, std::sqrt(width / count * height));
}

std::optional<std::size_t> PlanIndex::PairAt(const PlanView& view, Point surface,
                                             double reach) const {
    std::optional<std::size_t> nearest;
    double least = reach * reach;
    for (const Ranked& pair : worstFirst_) {
        const auto [x, y] = view.ToSurface(pair.place);
        const double square =
            (x - surface.first) * (x - surface.first) + (y - surface.second) * (y - surface.second);
        const bool isNearer = nearest ? square < least : square <= least;
        if (!isNearer) continue;
        least = square;
        nearest = pair.index;
    }
    return nearest;
}

std::vector<std::size_t> PlanIndex::PairsIn(const PlanView& view, const PlanRect& rect) const {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < data_.pairs.size(); ++i) {
        if (rect.Contains(view.ToSurface(data_.pairs[i].place))) found.push_back(i);
    }
    return found;
}

std::optional<std::size_t> PlanIndex::Next(std::optional<std::size_t> from, bool backwards) const {
    if (worstFirst_.empty()) return {};
    const auto at =
        from ? std::ranges::find(worstFirst_, *from, &Ranked::index) : worstFirst_.end();
    if (at == worstFirst_.end()) return worstFirst_.front().index;
    if (at == (backwards ? worstFirst_.begin() : worstFirst_.end() - 1)) return {};
    return (backwards ? at - 1 : at + 1)->index;
}

const PlanIsolines& PlanIndex::Isolines() const {
    if (!isolines_) {
        isolines_.emplace();
        std::optional<PlanExtent> box;
        for (const Point corner : data_.hull) box = Around(box, corner);
        if (box && data_.scalePpm) isolines_ = IsolinesOf(*box, data_.scalePpm);
    }
    return *isolines_;
}

std::string PlanTip(const PlanIndex& index, const PlanWords& words, std::size_t pair) {
    const auto& [place, residual, used, standing, id] = index.Pair(pair);
    const auto figure = [&](double metres) {
        return std::isfinite(metres) ? FixedText(metres, 3, words.numbers) : "\u2013";
    };
    const auto along = [&](const PlanAxis& axis, double metres) {
        return "d" + axis.name + " " + figure(axis.isReversed ? -metres : metres) + "  ";
    };
    std::string tip = WithoutControls(id) + "\n" + along(index.Data().right, residual.first) +
                      along(index.Data().up, residual.second) + figure(residual.Length()) + " m";
    switch (KindOf(index.Pair(pair))) {
        case PlanKind::kSuspect: return tip + "\n" + words.suspect;
        case PlanKind::kOverLimit: return tip + "\n" + words.overLimit;
        case PlanKind::kExcluded: return tip + "\n" + words.excluded;
        case PlanKind::kGood: break;
    }
    return tip;
}

}  // namespace kv_tr
