// Whether what was read as control points is likely to be that.
#pragma once

#include <span>

#include "kv_tr/model/control_point.h"

namespace kv_tr::desktop {

/// Whether source and destination look like one plane figure: a similarity, mirrored or not,
/// explains nine tenths of the destination, which is not much smaller than the source, as heights
/// or codes behind coordinates would be. Two pairs must have about the same distance, metres or
/// fathoms; a single one never does.
bool AreLikelyPairs(std::span<const ControlPoint> points);

}  // namespace kv_tr::desktop
