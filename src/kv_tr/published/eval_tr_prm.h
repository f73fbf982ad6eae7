// Applying a parameter record to points.
#pragma once

#include <span>

#include "kv_tr/published/records.h"

namespace kv_tr {

/// Maps a point from the source to the destination system, as Transformation::Apply does. All
/// coordinates in metres; the function cannot fail.
PlanePoint EvalTrPrm(const TR_PRM& record, PlanePoint source);

/// EvalTrPrm for arrays of first and of second coordinates, all four of one length; otherwise
/// RuntimeError kSubscript. A result array may be one of the source arrays but must not overlap
/// one in any other way.
void EvalTrPrmArrays(const TR_PRM& record, std::span<const double> first,
                     std::span<const double> second, std::span<double> firstOut,
                     std::span<double> secondOut);

/// The same for points whose coordinates alternate: first, second, first, second, ... Both arrays
/// have one, even, length; they may be the same array.
void EvalTrPrmPairs(const TR_PRM& record, std::span<const double> pairs,
                    std::span<double> pairsOut);

}  // namespace kv_tr
