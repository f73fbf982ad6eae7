// The points of a plan as marks: symbols, residual vectors, error ellipses, names.
#pragma once

#include <span>
#include <vector>

#include "kv_tr/forms/plan_detail.h"

namespace kv_tr {

/// How residuals are drawn.
struct VectorScale {
    double bar = 0;  ///< the residual in metres that is kVectorBar units long; 0: none is drawn
    double UnitsPerMetre() const { return bar > 0 ? kVectorBar / bar : 0; }
};

/// The scale that the options name; otherwise a round one, at which nine vectors of ten reach no
/// farther than the next point, within limits between which they can be seen.
VectorScale VectorScaleOf(const PlanIndex& index, const PlanView& view, const PlanOptions& options);

/// The two barbs of an arrow that points to its tip; the direction has length 1.
void AddArrowHead(std::vector<PlanLines::Segment>& segments, Point tip, Point direction,
                  double size);

/// The shape and colour of a kind, also for the legend.
PlanSymbols SymbolsOf(PlanKind kind);

/// Adds the marks of the pairs of some kinds, in the order of these.
class PlanMarks {
public:
    PlanMarks(PlanRoom& room, const PlanIndex& index, VectorScale scale,
              std::span<const ShownPair> shown, std::span<const PlanKind> kinds)
        : room_(room), index_(index), scale_(scale), shown_(shown), kinds_(kinds) {}

    /// Symbols, with a ring around those that are selected.
    void AddSymbols(std::vector<PlanItem>& items);
    /// An arrow from each pair by its residual. Of vectors that are very long only the beginning
    /// is drawn, with a double head; returns whether there are such ones.
    bool AddVectors(std::vector<PlanItem>& items);
    void AddEllipses(std::vector<PlanItem>& items);

private:
    bool IsWanted(const ShownPair& pair) const;

    PlanRoom& room_;
    const PlanIndex& index_;
    VectorScale scale_;
    std::span<const ShownPair> shown_;
    std::span<const PlanKind> kinds_;
};

/// Names beside the pairs where they cover nothing, those of the first pairs first.
void AddNames(std::vector<PlanItem>& items, PlanRoom& room, const PlanIndex& index,
              std::span<const ShownPair> shown);

}  // namespace kv_tr
