// What a plan shows beneath its points: grid, hull, isolines of the distortion.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/forms/plan_detail.h"

namespace kv_tr {

/// A round length in a unit that suits it: "20 mm", "500 m", "2 km".
std::string RoundLengthText(double metres, NumberStyle style);

/// Lines at round coordinates of both axes; the coordinates at the left and the lower border come
/// among other marks, above the points.
void AddGrid(std::vector<PlanItem>& items, std::vector<PlanItem>& above, PlanRoom& room,
             const PlanView& view, const PlanData& data, NumberStyle style);

void AddHull(std::vector<PlanItem>& items, PlanRoom& room, const PlanView& view,
             const std::vector<Point>& hull);

/// The isolines with the value of each level once, where there is room.
void AddIsolines(std::vector<PlanItem>& items, PlanRoom& room, const PlanView& view,
                 const PlanIsolines& isolines, NumberStyle style);

}  // namespace kv_tr
