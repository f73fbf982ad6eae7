// Numbers as text, as listings, logs and files carry them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kv_tr {

/// How numbers are written.
struct NumberStyle {
    char decimalSign = '.';  ///< or ','
};

/// The value with so many decimals. Rounds half away from zero on the shortest decimal text that
/// reads back to the same double (1.0005 becomes 1.001); a value that rounds to zero has no sign.
/// Figures that are not finite are "inf", "-inf" and "nan".
std::string FixedText(double value, int decimals, NumberStyle style = {});

/// Appends FixedText to a text.
void AppendFixed(std::string& text, double value, int decimals, NumberStyle style = {});

/// Room that WriteFixed needs.
inline constexpr std::size_t kMostFixed = 24;

/// Writes FixedText to a place with room for kMostFixed bytes and returns where the text ends;
/// null, with nothing written, for the few values for which there is no short way.
char* WriteFixed(char* place, double value, int decimals, NumberStyle style = {});

/// The value as 0.000000000000000E+00: 16 significant digits, rounded as FixedText rounds.
std::string SciText(double value, NumberStyle style = {});

/// The fewest digits that read back to the same double, without an exponent between 1e-5 and 1e15;
/// 0 for -0. Figures that are not finite are those of FixedText.
std::string ShortestText(double value, NumberStyle style = {});

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

/// A field, and the number that it is.
struct NumberField {
    std::string_view text;
    std::optional<double> value;
};

/// NextField and ParseNumber in one pass.
NumberField NextNumber(std::string_view& line, bool commaIsDecimal = false);

/// The number that a user typed: blanks around it do not matter, and a comma is a decimal sign too.
std::optional<double> TypedNumber(std::string_view text);

}  // namespace kv_tr
