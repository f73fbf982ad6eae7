// Lines along which a quantity is the same, over a rectangle of the plan.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "kv_tr/forms/plan_view.h"

namespace kv_tr {

struct PlanIsolines {
    struct Level {
        double value = 0;
        std::vector<PlanLines::Segment> segments{};  ///< in metres of the plan
    };
    double step = 0;  ///< between levels, a round number
    std::vector<Level> levels{};
    std::optional<double> constant{};  ///< the quantity, if that is the same everywhere

    bool IsEmpty() const { return levels.empty() && !constant; }
};

/// The isolines of a quantity at about eight round levels, by linear interpolation in a grid of
/// 48 by 48 cells. Cells where the quantity is no number have no lines. A quantity that varies by
/// less than a thousandth is constant.
PlanIsolines IsolinesOf(const PlanExtent& box, const std::function<double(Point)>& quantity);

}  // namespace kv_tr
