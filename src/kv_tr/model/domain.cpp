// The part of the plane that the points of a transformation stand for.
#include "kv_tr/model/domain.h"

#include <algorithm>
#include <limits>

namespace kv_tr {

Domain DomainOf(std::span<const Point> points) {
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    Point least{kInfinite, kInfinite};
    Point greatest{-kInfinite, -kInfinite};
    Point sum;
    for (const Point& point : points) {
        least = {std::min(least.first, point.first), std::min(least.second, point.second)};
        greatest = {std::max(greatest.first, point.first), std::max(greatest.second, point.second)};
        sum = {sum.first + point.first, sum.second + point.second};
    }
    if (points.empty()) return {least, greatest, sum};
    const auto count = static_cast<double>(points.size());
    const Point margin{(greatest.first - least.first) / 2.0,
                       (greatest.second - least.second) / 2.0};
    return {{least.first - margin.first, least.second - margin.second},
            {greatest.first + margin.first, greatest.second + margin.second},
            {sum.first / count, sum.second / count}};
}

}  // namespace kv_tr
