// Whether what was read as control points is likely to be that.
#pragma once

#include <span>

#include "model/records.h"

namespace kv_tr::desktop {

/// Whether source and destination look like one plane figure: a similarity, mirrored or not, at a
/// scale of 0.4 to 2.5 explains most of the destination. Coordinates followed by heights or codes
/// do not, nor do fewer than two places.
bool AreLikelyPairs(std::span<const typeXYs4Tr> pairs);

}  // namespace kv_tr::desktop
