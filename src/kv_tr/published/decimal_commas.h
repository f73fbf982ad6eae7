// Files written with decimal commas, which the readers would silently take for other numbers.
#pragma once

#include <string>

namespace kv_tr {

/// Whether the numbers of a parameter file have decimal commas. A file that can be read only once
/// is not looked at, here and below.
bool ParametersHaveDecimalCommas(const std::string& fileName);

/// Whether any line of a control-point file looks like it.
bool PointsMayHaveDecimalCommas(const std::string& fileName);

/// Tells the user when they do.
bool ReportDecimalCommas(const std::string& pointsFileName);

}  // namespace kv_tr
