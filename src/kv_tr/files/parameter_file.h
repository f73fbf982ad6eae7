// Parameter files: trp and prm for six parameters, all for polynomials.
#pragma once

#include <array>
#include <istream>
#include <optional>
#include <string>

#include "kv_tr/files/problem.h"
#include "kv_tr/files/text_lines.h"
#include "kv_tr/model/transformation.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {

enum class ParameterFormat {
    kNative,      ///< .trp: six parameters, a line each
    kItr25,       ///< .prm: the same in the order of ITR-2.5
    kPolynomial,  ///< .all: a polynomial
};

/// The format that the extension of a name stands for, in whatever case; kNative for any other.
ParameterFormat FormatNamed(const std::string& fileName);

/// What is done about numbers that seem to have decimal commas where a point is the decimal sign.
enum class SuspectCommas {
    kIgnored,  ///< nothing
    kProblem,  ///< the file is not read
    kTaken,    ///< the comma is the decimal sign of the file
};

/// Whether the numbers of a file that begins with the next lines seem to have decimal commas, as
/// far as they have been read ahead. Throws TextError where the text cannot be read.
bool SeemToHaveDecimalCommas(TextLines& lines, ParameterFormat format);

/// How a parameter file is read.
struct ParameterFileStyle {
    CodePage codePage = CodePage::kWindows1250;  ///< of a file that is not UTF-8
    NumberStyle numbers{};                       ///< a comma is read as decimal sign if it is one
    SuspectCommas suspectCommas = SuspectCommas::kProblem;
};

/// The transformation of a file, or the first thing that is wrong with it.
struct ParameterReading {
    Transformation transformation;
    std::optional<Problem> problem;

    bool Complete() const { return !problem; }
};

/// Reads a parameter file whole. Six numbers get the linear type.
///
/// Nothing is shown or thrown but std::bad_alloc, and any number of threads may read at once.
ParameterReading ReadParameters(std::istream& file, ParameterFormat format,
                                Type linearType = Type::kAffine,
                                const ParameterFileStyle& style = {});
/// The same with a file by its name, in the format of its extension.
ParameterReading ReadParameterFile(const std::string& fileName, Type linearType = Type::kAffine,
                                   const ParameterFileStyle& style = {});

/// The order of the six numbers in a file: native (trp) or that of ITR-2.5 (prm).
enum class LinearFormat { kNative, kItr25 };

/// The lines of a file of six parameters: a number each, shifts with 3 decimals, the others with 8.
std::array<std::string, 6> LinearFileLines(const Transformation& transformation,
                                           LinearFormat format, NumberStyle style = {});

/// Reads six numbers; any run of blanks, tabs, commas and line ends separates them, what follows
/// the sixth is ignored. Where the decimal sign is a comma, one between two digits is taken as
/// that. The numbers before a problem have been stored.
std::optional<Problem> ReadLinear(TextLines& lines, LinearFormat format, NumberStyle style,
                                  SuspectCommas commas, Transformation& transformation);

/// What could be read of a polynomial file.
struct PolynomialReading {
    bool accepted = false;           // the number of coefficient lines is that of a type
    std::optional<Problem> problem;  // with the first line that could not be taken whole
};

/// Reads a polynomial file. The reading ends at a line that cannot be used, what was read stays,
/// and the number of coefficient lines before decides the type. A missing number leaves its
/// coefficient. When no type has that many lines, the type stays.
PolynomialReading ReadPolynomial(TextLines& lines, NumberStyle style, SuspectCommas commas,
                                 Transformation& transformation);

}  // namespace kv_tr
