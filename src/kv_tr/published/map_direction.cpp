// A direction through a transformation.
#include "kv_tr/published/map_direction.h"

#include <cmath>
namespace kv_tr {
namespace {

float SingleDifference(double to, double from) {
    return static_cast<float>(to) - static_cast<float>(from);
}

}  // namespace

double MapDirection(const Transformation& transformation, double angle, Point point, double length,
                    const AngleConstants& constants) {
    const Point from = transformation.Apply(point);
    const Point to = transformation.Apply(
        {point.first + std::cos(angle) * length, point.second + std::sin(angle) * length});
    return DirectionOf(SingleDifference(to.first, from.first),
                       SingleDifference(to.second, from.second), constants);
}

}  // namespace kv_tr
