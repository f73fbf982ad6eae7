// The pairs of a plan with what is computed from them once: order, extent, picking.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/forms/plan_data.h"
#include "kv_tr/forms/plan_isolines.h"
#include "kv_tr/forms/plan_view.h"

namespace kv_tr {

/// As what a pair is drawn, the gravest first.
enum class PlanKind : std::uint8_t { kSuspect, kOverLimit, kExcluded, kGood };
inline constexpr std::size_t kPlanKinds = 4;

PlanKind KindOf(const PlanPair& pair);

class PlanIndex {
public:
    PlanIndex() : PlanIndex(PlanData{}) {}
    explicit PlanIndex(PlanData data);

    const PlanData& Data() const { return data_; }
    const PlanPair& Pair(std::size_t index) const { return data_.pairs[index]; }
    /// Of all places that are numbers.
    const std::optional<PlanExtent>& Extent() const { return extent_; }
    /// How many pairs of a kind there are.
    std::size_t Count(PlanKind kind) const { return counts_[static_cast<std::size_t>(kind)]; }

    struct Ranked {
        Point place;
        double length = 0;  ///< of the residual; infinite where that is no number
        std::uint32_t index = 0;
        PlanKind kind = PlanKind::kGood;
    };
    /// The pairs that have a place, the worst first: by their kind, then by the residual.
    std::span<const Ranked> WorstFirst() const { return worstFirst_; }
    /// Nine residuals of ten are no longer, in metres: of the pairs in use that are not suspect,
    /// else of the suspect ones, else of the excluded ones. Nothing if all pairs fit exactly.
    std::optional<double> TypicalResidual() const { return typicalResidual_; }
    /// About how far a pair is from the next one, in metres; 0 without any extent.
    double Spacing() const;

    /// The pair whose place on the surface is nearest to a point and no farther than that; of
    /// several at one place the worst.
    std::optional<std::size_t> PairAt(const PlanView& view, Point surface, double reach) const;
    /// The pairs whose places on the surface are in a rectangle, in the order of the data.
    std::vector<std::size_t> PairsIn(const PlanView& view, const PlanRect& rect) const;
    /// The pair after a pair in the order of WorstFirst, or before it; the worst one without a
    /// pair, and none beyond the ends.
    std::optional<std::size_t> Next(std::optional<std::size_t> from, bool backwards) const;

    /// Isolines of the distortion within the extent of the hull; computed when they are asked for.
    const PlanIsolines& Isolines() const;

private:
    PlanData data_;
    std::optional<PlanExtent> extent_;
    std::array<std::size_t, kPlanKinds> counts_{};
    std::vector<Ranked> worstFirst_;
    std::optional<double> typicalResidual_;
    mutable std::optional<PlanIsolines> isolines_;
};

/// Identifier, residuals by the names of the axes, and standing, a line each.
std::string PlanTip(const PlanIndex& index, const PlanWords& words, std::size_t pair);

}  // namespace kv_tr
