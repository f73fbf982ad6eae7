// What each transformation type needs and how a type is lowered.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "model/records.h"

namespace kv_tr {

/// Whether the type works in reduced coordinates: the polynomials, the bilinear and the national
/// types, that is every type from 1 up.
constexpr bool IsPolynomial(enuTR_TYPE type) { return type >= TR_POLI_1; }

/// The order of the polynomial that a type is evaluated with: its own for 1 to 5, 5 above (the
/// bilinear type has its own terms), 1 below.
constexpr int PolynomialOrder(enuTR_TYPE type) { return std::clamp<int>(type, 1, 5); }

/// How many coefficients, counted from index 1, each coordinate of a polynomial type has:
/// 3, 6, 10, 15, 21 for the orders 1 to 5, 4 for the bilinear type, 21 for the national ones.
constexpr int TermCount(enuTR_TYPE type) {
    if (type == TR_BILINEAR) return 4;
    const int order = PolynomialOrder(type);
    return (order + 1) * (order + 2) / 2;
}

/// The least number of control points for a fit, which is also the number of coefficients that the
/// fit solves for in each coordinate; 21 for the types that have none of their own.
std::int32_t MinimumPoints(enuTR_TYPE type);

/// The type that takes the place of one with too few control points; nothing where there is none.
/// The step below order 2 is the bilinear type, deliberately.
std::optional<enuTR_TYPE> StepDown(enuTR_TYPE type);

}  // namespace kv_tr
