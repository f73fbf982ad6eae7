// Files written with decimal commas, which the readers would silently take for other numbers.
#pragma once

#include <string>

namespace kv_tr::host {

/// Whether the numbers of a parameter file have decimal commas. In a file of six numbers commas
/// may separate; it has decimal ones when there are too many for that.
bool ParametersHaveDecimalCommas(const std::string& fileName);

/// Whether a control-point file looks like it: commas make twice as many fields of its lines.
bool PointsMayHaveDecimalCommas(const std::string& fileName);

}  // namespace kv_tr::host
