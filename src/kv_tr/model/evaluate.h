// The terms of transformations, and transformations of many points at once.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "kv_tr/model/transformation.h"

namespace kv_tr {

/// What the coefficients 1, 2, 3, ... of a reduced transformation multiply: 1, u, v, u², uv, v² ...
///
/// Within a degree the powers of u fall and those of v rise. Order n has (n + 1)(n + 2) / 2 terms,
/// the bilinear type the four terms 1, u, v, uv; any other type counts as the nearest order. A
/// power is the product of its factors from left to right, u·u·v·v. The fits take their design rows
/// from here too, so fit and evaluation cannot disagree.
struct Terms {
    std::array<double, Transformation::kCoefficients - 1> value{};
    std::size_t count = 0;
};
Terms ReducedTerms(Type type, double u, double v);

/// What a processor can do with many numbers at once. Each performs, for every point, the
/// operations of Transformation::Apply in their order, so that all give the same bits.
enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

/// Whether this processor has an instruction set.
bool IsAvailable(InstructionSet set);
/// The widest one that this processor has.
InstructionSet WidestInstructionSet();

/// Transformation::Apply and ApplyToPairs with an instruction set, which must be available.
void ApplyWith(InstructionSet set, const Transformation& transformation,
               std::span<const double> first, std::span<const double> second,
               std::span<double> firstOut, std::span<double> secondOut);
void ApplyToPairsWith(InstructionSet set, const Transformation& transformation,
                      std::span<const double> pairs, std::span<double> pairsOut);

}  // namespace kv_tr
