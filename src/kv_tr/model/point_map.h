// What takes points from one system to the other.
#pragma once

#include <cstddef>
#include <span>
#include <variant>

#include "kv_tr/model/inverse.h"

namespace kv_tr {

/// A transformation, or the exact inverse of one.
using PointMap = std::variant<Transformation, ExactInverse>;

/// The image of a point. That of a transformation may not be finite.
SourcePoint ImageOf(const PointMap& map, Point point);

/// The images of points whose coordinates alternate, bit for bit those of ImageOf; out may be the
/// same array. Of a point without an image both coordinates become NaN, and troubles, unless empty,
/// says why; it has one entry a point. Returns how many have none.
std::size_t MapPairs(const PointMap& map, std::span<const double> pairs, std::span<double> out,
                     std::span<NoSource> troubles = {});

}  // namespace kv_tr
