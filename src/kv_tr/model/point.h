// A point of the plane.
#pragma once

namespace kv_tr {

/// A point of the plane, metres. Listings call the first coordinate Y and the second X, as
/// surveyors do.
struct Point {
    double first = 0;
    double second = 0;

    bool operator==(const Point&) const = default;
};

}  // namespace kv_tr
