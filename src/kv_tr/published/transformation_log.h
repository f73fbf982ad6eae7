// The report of a fit.
#pragma once

#include <array>
#include <string>

namespace kv_tr {

class clsTrCalc;

/// The log of the engine's current fit in its five pieces, in the current language: title, type,
/// parameters with their formula, accuracy figures with the table of the used points, excluded
/// points (empty when there are none). A file holds each piece followed by one more line end;
/// docs/file-formats.md lays the lines out.
std::array<std::string, 5> TransformationLog(const clsTrCalc& engine);

}  // namespace kv_tr
