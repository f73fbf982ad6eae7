// The direction of a difference of coordinates.
#include "kv_tr/model/direction.h"

#include "kv_tr/model/elementary.h"

namespace kv_tr {

double DirectionOf(double dFirst, double dSecond, const AngleConstants& constants) {
    if (dFirst == 0.0 && dSecond == 0.0) return 0.0;
    const double a = std::abs(dFirst);
    const double b = std::abs(dSecond);
    const double t = a >= b ? ArcTangent(b / a) : constants.rightAngle - ArcTangent(a / b);
    if (dSecond >= 0.0) return dFirst >= 0.0 ? t : constants.pi - t;
    if (dFirst < 0.0) return constants.pi + t;
    const double direction = constants.fullTurn - t;
    return direction >= constants.fullTurn ? 0.0 : direction;  // t may be lost in the difference
}

}  // namespace kv_tr
