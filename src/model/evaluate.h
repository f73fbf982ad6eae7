// Applying a parameter record to points.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "model/records.h"

namespace kv_tr {

/// What the coefficients 1, 2, 3, ... of a reduced record multiply: 1, u, v, u², uv, v², ...
///
/// Within a degree the powers of u fall and those of v rise. Order n has (n + 1)(n + 2) / 2 terms,
/// TR_BILINEAR the four terms 1, u, v, uv; any other type counts as the nearest order. A power is
/// the product of its factors from left to right, u·u·v·v. The fits take their design rows from
/// here too, so fit and evaluation cannot disagree.
struct Terms {
    std::array<double, 21> value{};
    std::size_t count = 0;
};
Terms ReducedTerms(enuTR_TYPE type, double u, double v);

/// Maps a point from the source to the destination system. All coordinates in metres.
///
///     below TR_POLI_1    first' = A0 + A1 first + A2 second
///     TR_POLI_1 and up   first' = A1 t1 + A2 t2 + ...    t = ReducedTerms(first - A0, second - B0)
///
/// and second' likewise with B. Terms are added in coefficient order; the function cannot fail.
PlanePoint EvalTrPrm(const TR_PRM& record, PlanePoint source);

/// What a processor can do with many numbers at once. Each performs, for every point, the
/// operations of EvalTrPrm in their order, so that all give the same bits.
enum class InstructionSet { kBaseline, kAvx2, kAvx512 };

/// Whether this processor has an instruction set.
bool IsAvailable(InstructionSet set);
/// The widest one that this processor has.
InstructionSet WidestInstructionSet();

/// EvalTrPrm for arrays of first and of second coordinates, all four of one length; otherwise
/// RuntimeError kSubscript. A result array may be one of the source arrays but must not overlap
/// one in any other way. The instruction set must be available.
void EvalTrPrmArrays(const TR_PRM& record, std::span<const double> first,
                     std::span<const double> second, std::span<double> firstOut,
                     std::span<double> secondOut, InstructionSet set = WidestInstructionSet());

/// The same for points whose coordinates alternate: first, second, first, second, ... Both arrays
/// have one, even, length; they may be the same array.
void EvalTrPrmPairs(const TR_PRM& record, std::span<const double> pairs, std::span<double> pairsOut,
                    InstructionSet set = WidestInstructionSet());

}  // namespace kv_tr
