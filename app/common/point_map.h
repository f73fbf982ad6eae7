// What takes points from one system to the other.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <variant>

#include "kv_tr/model/inverse.h"

namespace kv_tr::app {

/// A transformation, or the exact inverse of one.
using PointMap = std::variant<Transformation, ExactInverse>;

/// The image of a point. That of a transformation may not be finite.
SourcePoint ImageOf(const PointMap& map, Point point);

/// How many points have no image under an inverse, by the reason.
using LostPoints = std::array<std::uint64_t, 5>;

/// The reason as a sentence without its end.
std::string ReasonText(NoSource trouble);

}  // namespace kv_tr::app
