// An adjustment as JSON.
#pragma once

#include <nlohmann/json.hpp>

#include "kv_tr/fit/adjustment.h"

namespace kv_tr::cli {

/// Type, parameters, figures, points, and the messages shown so far; without a fit parameters and
/// figures are null.
nlohmann::ordered_json AdjustmentJson(const Adjustment& adjustment, bool fitted);

/// Prints such a report with its points, one by one, so that memory does not grow with them.
void PrintAdjustmentJson(std::ostream& output, const nlohmann::ordered_json& report,
                         const Adjustment& adjustment);

}  // namespace kv_tr::cli
