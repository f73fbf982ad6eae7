// What is wrong with a control-point file.
#pragma once

#include <string>

namespace kv_tr::host {

/// Names the first line of a control-point file that is no pair, whose number the loader's message
/// does not tell; empty for a file that cannot be read twice.
std::string BadPointLine(const std::string& fileName);

}  // namespace kv_tr::host
