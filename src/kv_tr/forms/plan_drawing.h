// A plan of control points on a surface or a page, as marks.
#pragma once

#include <span>
#include <string>

#include "kv_tr/forms/plan_index.h"
#include "kv_tr/forms/plan_picture.h"

namespace kv_tr {

/// The plan in a view, with the legend below the frame of that view; as high as both. Selected
/// pairs are subscripts of the data.
PlanPicture DrawPlan(const PlanIndex& index, const PlanWords& words, const PlanOptions& options,
                     const PlanView& view, std::span<const std::size_t> selected = {});

/// The inside of a sheet A4 with title, notes, the whole plan and its legend; upright or not, as
/// the points have more room.
PlanPicture DrawPlanPage(const PlanIndex& index, const PlanWords& words,
                         const PlanOptions& options);

/// The margin around that inside, in the same units.
inline constexpr double kPageMargin = 57;

/// The picture as an SVG document in UTF-8, white with a margin around. Equal pictures give equal
/// bytes.
std::string SvgOf(const PlanPicture& picture, double margin);

}  // namespace kv_tr
