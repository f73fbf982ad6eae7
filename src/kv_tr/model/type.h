// The types of plane transformations, what each needs and how a type is lowered.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

namespace kv_tr {

/// The type of a plane transformation. The numbers are those of the published records; every other
/// number is a type without a name, a minimum of points or a step of its own.
enum class Type : std::int32_t {
    kMetreToFathom = -5,
    kFathomToMetre = -4,
    kAffine5 = -3,   ///< two scales, one rotation, two shifts
    kHelmert3 = -2,  ///< one rotation, two shifts, scale 1
    kAffine = -1,
    kHelmert = 0,  ///< similarity
    kPolynomial1 = 1,
    kPolynomial2 = 2,
    kPolynomial3 = 3,
    kPolynomial4 = 4,
    kPolynomial5 = 5,
    kBilinear = 6,
    // Between the Hungarian projection systems, see national.h.
    kStgToHer = 10,
    kStgToHkr = 11,
    kStgToHdr = 12,
    kHerToStg = 13,
    kHkrToStg = 14,
    kHdrToStg = 15,
    kHerToHkr = 16,
    kHkrToHer = 17,
    kHdrToHkr = 18,
    kHkrToHdr = 19,
    kBovToEov = 20,
    kEovToBov = 21,
    kBovToHkr = 22,
    kHkrToBov = 23,
    kStgToBov = 24,
    kBovToStg = 25,
    kStgToEov10e = 26,
    kHerToEov10e = 27,
    kHkrToEov10e = 28,
    kHdrToEov10e = 29,
    kEovToStg10e = 30,
    kEovToHer10e = 31,
    kEovToHkr10e = 32,
    kEovToHdr10e = 33,
    kFirstNational = kStgToHer,
    kLastNational = kEovToHdr10e,
};

constexpr std::int32_t NumberOf(Type type) { return static_cast<std::int32_t>(type); }

/// Whether the type works in reduced coordinates: the polynomials, the bilinear and the national
/// types, that is every type from 1 up.
constexpr bool IsPolynomial(Type type) { return type >= Type::kPolynomial1; }

constexpr bool IsNational(Type type) {
    return type >= Type::kFirstNational && type <= Type::kLastNational;
}

/// The order of the polynomial that a type is evaluated with: its own for 1 to 5, 5 above (the
/// bilinear type has its own terms), 1 below.
constexpr int PolynomialOrder(Type type) { return std::clamp(NumberOf(type), 1, 5); }

/// How many coefficients, counted from index 1, each coordinate of a polynomial type has:
/// 3, 6, 10, 15, 21 for the orders 1 to 5, 4 for the bilinear type, 21 for the national ones.
constexpr int TermCount(Type type) {
    if (type == Type::kBilinear) return 4;
    const int order = PolynomialOrder(type);
    return (order + 1) * (order + 2) / 2;
}

/// The least number of control points for a fit, which is also the number of coefficients that the
/// fit solves for in each coordinate; 21 for the types that have none of their own.
int MinimumPoints(Type type);

/// The type that takes the place of one with too few control points; nothing where there is none.
/// The step below order 2 is the bilinear type, which has more terms than order 1.
std::optional<Type> StepDown(Type type);

}  // namespace kv_tr
