// Control points for tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kv_tr/published/records.h"

namespace kv_tr::test {

/// Pairs named 1, 2, ... whose destination is the image of the source.
inline std::vector<typeXYs4Tr> PairsBy(const std::vector<PlanePoint>& source,
                                       const std::function<PlanePoint(PlanePoint)>& map) {
    std::vector<typeXYs4Tr> pairs;
    for (const PlanePoint& point : source) {
        const PlanePoint image = map(point);
        pairs.push_back({.sId = std::to_string(pairs.size() + 1),
                         .dXsour = point.first,
                         .dYsour = point.second,
                         .dXdest = image.first,
                         .dYdest = image.second});
    }
    return pairs;
}

/// Points spread irregularly over about a kilometre, whole metres, no three on a line.
inline std::vector<PlanePoint> SpreadPoints(std::size_t count) {
    std::vector<PlanePoint> points;
    for (std::size_t i = 0; i < count; ++i) {
        points.push_back({static_cast<double>(1000 + (i * 617 + i * i * 13) % 997),
                          static_cast<double>(2000 + (i * 389 + i * i * 71) % 1009)});
    }
    return points;
}

inline PlanePoint Identity(PlanePoint point) { return point; }

inline PlanePoint Shift(PlanePoint point) { return {point.first + 100.0, point.second - 50.0}; }

/// Spread points with their images by the shift.
inline std::vector<typeXYs4Tr> ShiftedPairs(std::size_t count) {
    return PairsBy(SpreadPoints(count), Shift);
}

}  // namespace kv_tr::test
