// Round numbers for scale bars, ticks and levels: 1, 2 or 5 times a power of ten.
#pragma once

#include <algorithm>
#include <cmath>

namespace kv_tr {

/// A power of ten: from 1e-22 to 1e22 the nearest double, on every system.
inline double PowerOfTen(int exponent) {
    constexpr int kExact = 22;
    if (std::abs(exponent) > kExact) return std::pow(10.0, exponent);
    double power = 1.0;
    for (int i = std::abs(exponent); i > 0; --i) power *= 10.0;
    return exponent < 0 ? 1.0 / power : power;
}

/// The exponent of the power of ten below a positive value or at it.
inline int DecimalExponent(double value) {
    const int exponent = static_cast<int>(std::floor(std::log10(value)));
    if (PowerOfTen(exponent + 1) <= value) return exponent + 1;  // logarithms are nearly right
    return PowerOfTen(exponent) > value ? exponent - 1 : exponent;
}

/// The greatest of ..., 0.5, 1, 2, 5, 10, 20, ... that is no greater than a positive value.
inline double RoundBelow(double value) {
    const double power = PowerOfTen(DecimalExponent(value));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= value) return factor * power;
    }
    return power;
}

/// The least of them that is no less than a positive value.
inline double RoundAbove(double value) {
    const double power = PowerOfTen(DecimalExponent(value));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= value) return factor * power;
    }
    return 10.0 * power;
}

/// How many decimals a round number and its multiples have.
inline int DecimalsOfRound(double round) {
    return static_cast<int>(std::max(0.0, -std::floor(std::log10(round) + 1e-9)));
}

}  // namespace kv_tr
