// A direction through a transformation.
#include "kv_tr/published/map_direction.h"

#include <cmath>

#include "kv_tr/published/eval_tr_prm.h"

namespace kv_tr {
namespace {

float SingleDifference(double to, double from) {
    return static_cast<float>(to) - static_cast<float>(from);
}

}  // namespace

double MapDirection(const TR_PRM& record, double angle, PlanePoint point, double length,
                    const AngleConstants& constants) {
    const PlanePoint from = EvalTrPrm(record, point);
    const PlanePoint to = EvalTrPrm(
        record, {point.first + std::cos(angle) * length, point.second + std::sin(angle) * length});
    return DirectionOf(SingleDifference(to.first, from.first),
                       SingleDifference(to.second, from.second), constants);
}

}  // namespace kv_tr
