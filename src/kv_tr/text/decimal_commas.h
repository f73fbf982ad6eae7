// Numbers with decimal commas, which readers would silently take for other numbers.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// Whether the first fields of a text are this many numbers, at least one of them with a decimal
/// comma, when blanks, semicolons, quotes and line ends separate fields but commas do not.
bool HasDecimalCommas(std::string_view text, int numbers);

/// Whether a comma stands between two digits.
bool HasCommaInNumber(std::string_view text);

/// A line without its first field.
std::string_view WithoutIdentifier(std::string_view line);

/// The text of control points with points for the decimal commas of lines that have them.
std::string WithDecimalPoints(std::string_view points);

}  // namespace kv_tr
