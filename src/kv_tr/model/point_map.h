// What takes points from one system to the other.
#pragma once

#include <cstddef>
#include <span>
#include <variant>

#include "kv_tr/model/inverse.h"
#include "kv_tr/text/text_id.h"

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

/// The reason why a point has no source, as a sentence without its end; of kNone that a search has
/// not come to an end.
Text TextOf(NoSource trouble);
/// The same for a point without an image, which under a transformation can only be infinite.
Text ReasonFor(const PointMap& map, NoSource trouble);

}  // namespace kv_tr
