// Functions of the C library whose last digit depends on the system.
#pragma once

#include <cmath>

namespace kv_tr {

// The C library of mingw computes these with an error of more than a unit in the last place, or
// leaves them to whatever version of Windows there is. Computed with the 64 bits of long double and
// rounded they are nearly always the nearest double, as they are on other systems.
#ifdef __MINGW32__
inline double Hypotenuse(double x, double y) {
    return static_cast<double>(
        std::hypot(static_cast<long double>(x), static_cast<long double>(y)));
}
inline double ArcTangent(double x) {
    return static_cast<double>(std::atan(static_cast<long double>(x)));
}
inline double ArcSine(double x) {
    return static_cast<double>(std::asin(static_cast<long double>(x)));
}
#else
inline double Hypotenuse(double x, double y) { return std::hypot(x, y); }
inline double ArcTangent(double x) { return std::atan(x); }
inline double ArcSine(double x) { return std::asin(x); }
#endif

}  // namespace kv_tr
