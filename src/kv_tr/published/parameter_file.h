// Parameter files: trp and prm for six parameters, all for polynomials.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

/// The order of the six numbers in a file: native (trp) or that of ITR-2.5 (prm).
enum class LinearFormat { kNative, kItr25 };

/// The lines of a file of six parameters: a number each, shifts with 3 decimals, the others with 8.
std::array<std::string, 6> LinearFileLines(const TR_PRM& record, LinearFormat format);

/// Reads six numbers into the record; any run of blanks, tabs, commas and line ends separates
/// them, what follows the sixth is ignored. Where the decimal separator is a comma, one between
/// two digits is taken as that. False at the first text that is no number and at the end of the
/// file; the numbers before it have been stored.
bool ReadLinearFile(clsFile& file, LinearFormat format, TR_PRM& record);

/// What could be read of a polynomial file.
struct PolynomialReading {
    bool opened = false;
    bool accepted = false;      // the number of coefficient lines is that of a type
    std::uint64_t badLine = 0;  // first line, from 1, that could not be taken whole; 0 for none
};

/// Reads a polynomial file into the record; a file that does not open is shown to the user.
///
/// Nothing is said of lines that cannot be used: the reading ends there, what was read stays, and
/// the number of coefficient lines before decides the type, deliberately. A missing number leaves
/// its coefficient. When no type has that many lines, eType stays.
PolynomialReading ReadPolynomialFile(const std::string& fileName, TR_PRM& record);

}  // namespace kv_tr
