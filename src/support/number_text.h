// Numbers as text, as listings, logs and files carry them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv_tr {

/// The decimal separator of everything that FormatFixed and FormatSci write: '.' or ','.
/// The user's regional setting when the component starts; a host may set it.
char DecimalSeparator();
void DecimalSeparator(char separator);

/// The value with nDecimals decimals, padded with blanks on the left to nWidth characters; a
/// longer text is not cut. Rounds half away from zero on the shortest decimal text that reads
/// back to the same double (1.0005 becomes 1.001); a value that rounds to zero has no sign.
/// Figures that are not finite are "inf", "-inf" and "nan".
std::string FormatFixed(double dValue, std::uint8_t nDecimals, std::uint8_t nWidth);

/// Appends the value to a text as FormatFixed writes it with width 0.
void AppendFixed(std::string& sText, double dValue, std::uint8_t nDecimals);

/// The value as 0.000000000000000E+00: 16 significant digits, rounded as FormatFixed rounds.
std::string SciText(double dValue);

/// SciText padded with blanks on the left to 30 characters.
std::string FormatSci(double dValue);

/// The text with blanks on the left up to nWidth columns; a longer text is returned unchanged.
/// A UTF-8 letter takes one column, marks that combine with it none.
std::string PadLeft(std::string_view sText, std::uint8_t nWidth);

/// Turns apostrophes, commas (into a point when bCommaIsDecimal), semicolons, tabs and double
/// quotes into blanks, and leaves single blanks between the fields and none around them.
std::string CleanNumberLine(std::string_view sLine, bool bCommaIsDecimal);

/// Takes the first field off a line, with the separators before it: what CleanNumberLine would
/// leave before the first blank, its commas as they are. Empty when there is none.
std::string_view NextField(std::string_view& line, bool commaIsDecimal = false);

/// The number that the whole text is: an optional sign, digits with at most one decimal point
/// (or comma when commaIsDecimal), an optional exponent E or e with digits. Nothing for any other
/// text and for a value beyond the range of a double.
std::optional<double> ParseNumber(std::string_view text, bool commaIsDecimal = false);

/// The number that a user typed: blanks around it do not matter, and a comma is a decimal sign too.
std::optional<double> TypedNumber(std::string_view text);

}  // namespace kv_tr
