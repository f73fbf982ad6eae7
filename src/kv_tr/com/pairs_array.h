// Arrays of hosts: of control points and of numbers.
#pragma once

#include <vector>

#include "kv_tr/com/object.h"

namespace kv_tr::com {

/// The control points of an array that starts at 0; Failure for any other.
std::vector<kv_tr::typeXYs4Tr> PairsOf(SAFEARRAY* array);
/// Puts an array of control points in the place of a caller's.
void SetPairs(SAFEARRAY** array, const std::vector<kv_tr::typeXYs4Tr>& pairs);

/// The numbers of an array; none where there is no array.
std::vector<double> NumbersOf(SAFEARRAY* array);
void SetNumbers(SAFEARRAY** array, const std::vector<double>& numbers);

}  // namespace kv_tr::com
