// What is wrong with a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kv_tr {

/// One thing that is wrong with a file, for a program to tell in the words of its users.
struct Problem {
    enum class Kind {
        kNotOpened,        ///< there is no such file, or it may not be read
        kUnreadable,       ///< the system failed in the middle
        kLineTooLong,      ///< no line of a text
        kMissingField,     ///< the line, or the file, ends before all fields were there
        kNotANumber,       ///< a field should have been a number
        kNotPositive,      ///< a standard deviation is zero or negative
        kDecimalCommas,    ///< the numbers have decimal commas, which would separate fields
        kUnknownLayout,    ///< the number of lines belongs to no type
        kUnequalFields,    ///< no separator divides the lines into equally many fields
        kMixedDecimals,    ///< the decimal sign is another one than in otherLine
        kAmbiguousCommas,  ///< commas may be decimal signs or separators
        kBadHeader,        ///< the header does not name each coordinate once
        kBadMark,          ///< a mark of use is neither 1 nor 0
        kDamaged,          ///< the text breaks the rules of its format
    };

    Kind kind = Kind::kNotOpened;
    std::uint64_t line = 0;       ///< from 1; 0 for the file as a whole
    std::size_t column = 0;       ///< in the line, from 1, in letters; 0 for the line as a whole
    std::string text{};           ///< the line or the field, as far as there is one
    std::uint64_t otherLine = 0;  ///< a line that this one contradicts

    bool operator==(const Problem&) const = default;
};

}  // namespace kv_tr
