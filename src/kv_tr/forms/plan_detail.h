// Which of many pairs are drawn, and where there is room for their names.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "kv_tr/forms/plan_index.h"

namespace kv_tr {

struct ShownPair {
    std::uint32_t index = 0;
    PlanKind kind = PlanKind::kGood;
    Point at;           ///< on the surface
    double length = 0;  ///< of the residual, as PlanIndex has it
    bool isSelected = false;
};

struct ShownPairs {
    std::vector<ShownPair> pairs{};  ///< those that are selected, then the worst first
    bool isThinned = false;          ///< good pairs in view are left out
    std::size_t important = 0;       ///< so many are selected or not good; they come first
};

/// The pairs that have a mark in a view. Of suspect, excluded and selected pairs
/// only those are left out that coincide with another one of their kind on the screen. Where more
/// good pairs, or pairs over the limit, are in view than can be told apart, the worst one of each
/// cell is shown. The cells move with the plan, so that no mark comes or goes while that is moved.
ShownPairs PairsToShow(const PlanIndex& index, const PlanView& view,
                       std::span<const std::size_t> selected);

class PlanRoom;

/// Leaves out what is not important and would cover anything, where pairs are left out anyway.
void LeaveRoom(ShownPairs& shown, const PlanRoom& room);

/// Which parts of a surface are taken by marks, so that no name covers them.
class PlanRoom {
public:
    explicit PlanRoom(const PlanRect& frame);

    void Take(const PlanRect& rect);
    void TakeAlong(const PlanLines::Segment& segment);
    /// Whether anything is taken of the part of a rectangle that lies in the frame.
    bool IsTaken(const PlanRect& rect) const;
    /// Whether nothing is taken in a rectangle that lies wholly in the frame.
    bool IsFree(const PlanRect& rect) const;

private:
    struct Cells {
        int left, top, right, bottom;  // the last two are beyond
    };
    Cells CellsOf(const PlanRect& rect) const;

    PlanRect frame_;
    int columns_;
    int rows_;
    std::vector<bool> taken_;
};

}  // namespace kv_tr
