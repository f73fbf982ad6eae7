// A transformation between systems, applied to coordinates of maps.
#pragma once

#include <cstddef>
#include <span>

#include "kv_tr/interchange/axis_mapping.h"
#include "kv_tr/model/point_map.h"

namespace kv_tr::gdal {

/// Takes map coordinates, x to the east and y to the north, to map coordinates: to the first and
/// second coordinate of the source, through the transformation, and back onto the map.
struct MapOnMaps {
    PointMap map;
    AxisMapping sourceAxes = AxisMapping::kEn;
    AxisMapping targetAxes = AxisMapping::kEn;

    /// The images of points whose coordinates alternate, in place, like MapPairs.
    std::size_t Apply(std::span<double> pairs, std::span<NoSource> troubles = {}) const;
};

/// From the map into a system, or from a system onto the map, in place.
void ToSystem(AxisMapping axes, std::span<double> pairs);
void ToMap(AxisMapping axes, std::span<double> pairs);

}  // namespace kv_tr::gdal
