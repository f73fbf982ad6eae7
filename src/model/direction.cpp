// The direction of a difference of coordinates.
#include "model/direction.h"

#include <cmath>

namespace kv_tr {

double Direction(double dFirst, double dSecond) {
    if (dFirst == 0.0 && dSecond == 0.0) return 0.0;
    const double pi = 4.0 * std::atan(1.0);
    const double a = std::abs(dFirst);
    const double b = std::abs(dSecond);
    const double t = a >= b ? std::atan(b / a) : pi / 2.0 - std::atan(a / b);
    if (dSecond >= 0.0) return dFirst >= 0.0 ? t : pi - t;
    return dFirst < 0.0 ? pi + t : 2.0 * pi - t;
}

}  // namespace kv_tr
