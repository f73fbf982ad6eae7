// A plan as a file: SVG, PDF or PNG.
#pragma once

#include <optional>
#include <string>

#include "kv_tr/forms/plan_drawing.h"

namespace kv_tr {

/// Writes the page of a plan to a file whose name ends in .svg, .pdf or .png, in whole or not at
/// all. Yields what went wrong, in the user's language; nothing when the file is there.
std::optional<std::string> SavePlan(const std::string& path, const PlanIndex& index,
                                    const PlanWords& words, const PlanOptions& options);

}  // namespace kv_tr
