// Files written with decimal commas, which the readers would silently take for other numbers.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// Whether the first fields of a text are this many numbers, at least one of them with a decimal
/// comma, when blanks, semicolons, quotes and line ends separate fields but commas do not.
bool HasDecimalCommas(std::string_view text, int numbers);

/// A line without its first field.
std::string_view WithoutIdentifier(std::string_view line);

/// The text of control points with points for the decimal commas of lines that have them.
std::string WithDecimalPoints(std::string_view points);

/// Whether the numbers of a parameter file have decimal commas. A file that can be read only once
/// is not looked at, here and below.
bool ParametersHaveDecimalCommas(const std::string& fileName);

/// Whether any line of a control-point file looks like it.
bool PointsMayHaveDecimalCommas(const std::string& fileName);

/// Tells the user when they do.
bool ReportDecimalCommas(const std::string& pointsFileName);

/// While it lives, numbers are read and written with a decimal comma, if there is one.
class DecimalCommaScope {
public:
    explicit DecimalCommaScope(bool comma);
    ~DecimalCommaScope();
    DecimalCommaScope(const DecimalCommaScope&) = delete;
    DecimalCommaScope& operator=(const DecimalCommaScope&) = delete;

private:
    char before_;
};

}  // namespace kv_tr
