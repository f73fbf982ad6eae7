// Drawings in DXF through kv_tr transform.
#pragma once

#include <vector>

#include "cli/parameters.h"
#include "cli/transform_layers.h"

namespace kv_tr::cli {

/// Transforms the drawings among the tasks; the exit code.
int TransformDrawings(const std::vector<TransformTask>& tasks, const ParameterSource& source,
                      const LayerOptions& options);

}  // namespace kv_tr::cli
