// What the two coordinates of a system mean on a map.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// Where the first and the second axis of a system point to. Maps have x to the east and y to the
/// north; kNe is a system whose first axis points north and whose second one points east.
enum class AxisMapping { kEn, kNe, kWs, kSw, kEs, kWn, kSe, kNw };

/// "en", "ne", "ws", "sw", "es", "wn", "se" or "nw".
std::string_view AxisWord(AxisMapping axes);
/// The mapping of such a word; nothing for any other text.
std::optional<AxisMapping> AxesNamed(std::string_view word);
/// All words, as "en, ne, ...".
std::string AxisWords();

/// The map coordinates (x, y) of a point that is given in a system.
Point OnMap(AxisMapping axes, Point point);

/// The point of a system that has these map coordinates.
Point FromMap(AxisMapping axes, Point onMap);

/// The transformation of map coordinates that a linear one of system coordinates is. Its
/// coefficients are the same numbers in other places and with other signs; its type stays.
Transformation BetweenMaps(const Transformation& linear, AxisMapping source, AxisMapping target);

/// The option +order of the PROJ step axisswap that takes map coordinates to those of a system.
std::string SwapFromMap(AxisMapping axes);
/// Likewise that of the step back.
std::string SwapToMap(AxisMapping axes);

}  // namespace kv_tr
