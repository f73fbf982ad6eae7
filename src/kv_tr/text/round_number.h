// Round numbers for scale bars, ticks and levels: 1, 2 or 5 times a power of ten.
#pragma once

#include <algorithm>
#include <cmath>

namespace kv_tr {

/// The greatest of ..., 0.5, 1, 2, 5, 10, 20, ... that is no greater than a positive value.
inline double RoundBelow(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= value) return factor * power;
    }
    return power;
}

/// The least of them that is no less than a positive value.
inline double RoundAbove(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
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
