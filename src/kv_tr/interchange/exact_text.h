// Numbers as text that reads back to the same double.
#pragma once

#include <string>

namespace kv_tr {

/// The shortest text that reads back to the same double, with a point and no grouping; without an
/// exponent between 1e-5 and 1e15. Zero has no sign. The value must be finite.
std::string ExactText(double value);

}  // namespace kv_tr
