// Why points determine a transformation badly, or not at all.
#pragma once

#include <cstddef>
#include <span>

#include "kv_tr/fit/frame.h"

namespace kv_tr {

/// What is wrong with the places of points.
struct WeakGeometry {
    enum class Kind {
        kNone,
        kTooFewPlaces,  ///< only `count` distinct places
        kCurve,         ///< all within `distance` of one curve of an order: 1 a line, 2 a conic
        kGroups,        ///< they stand in `count` groups
        kFewPoints,     ///< few points, badly spread
        kSpread,        ///< none of these
    };
    Kind kind = Kind::kNone;
    int order = 0;
    std::size_t count = 0;
    std::size_t needed = 0;  ///< how many places the type has coefficients for
    double distance = 0;     ///< median, metres

    bool operator==(const WeakGeometry&) const = default;
};

/// The cause, named when the hull factor is great or unknowns are lost.
///
/// The combination of terms that vanishes nearly everywhere is a curve near all points; the least
/// order with a median distance |P| / |∇P| below a hundredth of the extent names the cause. Points
/// closer than the resolution are one place; groups are cells of a hundredth of the extent that
/// touch. The sources lie in the frame.
WeakGeometry FindWeakGeometry(std::span<const Point> sources, const Frame& frame, Type model);

}  // namespace kv_tr
