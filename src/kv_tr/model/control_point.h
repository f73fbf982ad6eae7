// A control point: one point in both systems.
#pragma once

#include <string>

#include "kv_tr/model/point.h"

namespace kv_tr {

/// A point that is known in the source and in the destination system, coordinates in metres.
struct ControlPoint {
    std::string id;
    Point source;
    Point destination;
    bool used = true;  ///< whether fits take it; excluded points get residuals all the same

    bool operator==(const ControlPoint&) const = default;
};

}  // namespace kv_tr
