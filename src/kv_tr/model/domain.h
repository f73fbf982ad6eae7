// The part of the plane that the points of a transformation stand for.
#pragma once

#include <span>

#include "kv_tr/model/point.h"

namespace kv_tr {

/// A box, and the centre of the points that it was made of.
struct Domain {
    Point least;
    Point greatest;
    Point centre;

    bool operator==(const Domain&) const = default;

    bool Contains(Point point) const {
        return point.first >= least.first && point.first <= greatest.first &&
               point.second >= least.second && point.second <= greatest.second;
    }
};

/// The box around points, on each side moved outwards by half its extent in that direction, and the
/// mean of the points; of no points a box that contains nothing.
Domain DomainOf(std::span<const Point> points);

}  // namespace kv_tr
