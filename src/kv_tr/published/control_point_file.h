// Control points as text: one pair a line, an identifier and four coordinates.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/published/records.h"

namespace kv_tr {

/// The listing of the pairs, one line each, lines ended by CR LF: the identifier right-aligned in
/// 20 columns, then the four coordinates with three decimals in 15 columns each, without further
/// separators. What would separate fields in an identifier, a control character, and an empty one
/// become "_". Excluded
/// pairs are listed like the others.
std::string ListPairs(std::span<const typeXYs4Tr> pairs);

/// Reads one line into a pair, field by field; false at the first field that is missing or no
/// number, what was read before stays. Blanks, tabs, commas, semicolons, apostrophes and double
/// quotes separate fields, in any mixture; fields beyond the fifth are ignored. Commas are decimal
/// signs instead when commaIsDecimal, as they never are in the published reader.
bool ReadPair(std::string_view line, typeXYs4Tr& pair, bool commaIsDecimal = false);

/// What could be read of a control-point file.
struct ControlPointReading {
    std::vector<typeXYs4Tr> pairs;
    bool failed = false;         // reading stopped before the end of the file
    std::int32_t lineShown = 0;  // the number in the error message
    bool accepted = true;        // the result that a host gets
};

/// Reads a control-point file; empty lines are skipped. A file that cannot be opened is shown to
/// the user (text 70), any other failure is left to the caller.
///
/// After a failure the line shown is not the one in the file but, from the second complete pair
/// on, the number of complete pairs, which are kept and accepted. When the first or second pair
/// fails, the line shown is 1, and the pair that failed is kept as far as it was read, though
/// nothing counts as accepted. All this is deliberate.
ControlPointReading ReadControlPoints(const std::string& fileName);

}  // namespace kv_tr
