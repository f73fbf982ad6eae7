// Text in columns: fields, quotes, separators and decimal signs as spreadsheets write them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kv_tr/files/control_point_file.h"
#include "kv_tr/interchange/point_readers.h"

namespace kv_tr {

/// A field of a text: the part of the text, and what it says without quotes and blanks around it.
struct Field {
    std::string_view raw;
    std::string text;
};

/// A line; a quoted field may contain line ends.
struct Row {
    std::string_view raw;
    std::vector<Field> fields;
};

/// The rows of a text, not more than a number of them. A blank separator stands for any run of
/// blanks. Lines without anything in their fields and lines that begin with "#" are skipped.
std::vector<Row> SplitRows(std::string_view text, char separator, std::size_t most);

/// The first of tab, ";", "|", ",", blanks that divides each of the first 50 rows into the same
/// number of fields, at least `least`. Where none does, the one that divides most rows into at
/// least so many, and `equal` is false; '\0' where none divides any.
struct Separator {
    char sign = '\0';
    bool equal = false;
};
Separator FindSeparator(std::string_view text, std::size_t least, bool commaIsDecimal = false);

/// Reads the numbers of a table, which have one decimal sign. Where commas do not separate, a
/// number with one comma and no point has a decimal comma; of both signs the last one is decimal
/// and the others part groups of three digits.
class TableNumbers {
public:
    TableNumbers(char separator, bool commaIsDecimal)
        : commasSeparate_(separator == ','), commaIsDecimal_(commaIsDecimal) {}

    /// Whether a text would be a number, whatever the decimal sign of the table.
    bool MayBeNumber(std::string_view text) const { return Parse(text).value.has_value(); }
    /// The number of a field; nothing after the problem was added.
    std::optional<double> Read(const Field& field, PointTaker& taker);
    char DecimalSign() const { return sign_ == '\0' ? (commaIsDecimal_ ? ',' : '.') : sign_; }

private:
    struct Parsed {
        std::optional<double> value{};
        char sign = '\0';  // the decimal sign that the number has or implies
    };
    Parsed Parse(std::string_view text) const;

    bool commasSeparate_;
    bool commaIsDecimal_;
    char sign_ = '\0';        // of the numbers so far
    std::uint64_t line_ = 0;  // that showed the sign
};

}  // namespace kv_tr
