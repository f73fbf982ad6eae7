// A transformation between systems, applied to coordinates of maps.
#include "kv_tr/gdal/map_on_maps.h"

#include <utility>

namespace kv_tr::gdal {
namespace {

/// Exchanges the two coordinates of each point, or not, and gives both a sign then.
void Turn(std::span<double> pairs, bool swaps, double firstSign, double secondSign) {
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        if (swaps) std::swap(pairs[i], pairs[i + 1]);
        pairs[i] *= firstSign;
        pairs[i + 1] *= secondSign;
    }
}

}  // namespace

void ToMap(AxisMapping axes, std::span<double> pairs) {
    if (axes == AxisMapping::kEn) return;
    const Point of12 = OnMap(axes, {1, 2});
    const bool swaps = of12.first * of12.first > 1;
    Turn(pairs, swaps, of12.first < 0 ? -1 : 1, of12.second < 0 ? -1 : 1);
}

void ToSystem(AxisMapping axes, std::span<double> pairs) {
    if (axes == AxisMapping::kEn) return;
    const Point of12 = OnMap(axes, {1, 2});
    const bool swaps = of12.first * of12.first > 1;
    const double signOfX = of12.first < 0 ? -1 : 1;
    const double signOfY = of12.second < 0 ? -1 : 1;
    Turn(pairs, swaps, swaps ? signOfY : signOfX, swaps ? signOfX : signOfY);
}

std::size_t MapOnMaps::Apply(std::span<double> pairs, std::span<NoSource> troubles) const {
    ToSystem(sourceAxes, pairs);
    const std::size_t lost = MapPairs(map, pairs, pairs, troubles);
    ToMap(targetAxes, pairs);
    return lost;
}

}  // namespace kv_tr::gdal
