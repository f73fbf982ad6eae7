// Parameter files: trp and prm for six parameters, all for polynomials.
#include "kv_tr/files/parameter_file.h"

#include <algorithm>
#include <string_view>

#include "kv_tr/files/open_text.h"
#include "kv_tr/text/decimal_commas.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {
namespace {

/// A number of a linear file: its series, its index there, and how it is written.
struct LinearLine {
    Transformation::Series Transformation::*series;
    std::size_t index;

    int Decimals() const { return index == 0 ? 3 : 8; }
};
using LinearLines = std::array<LinearLine, 6>;

constexpr auto kA = &Transformation::a;
constexpr auto kB = &Transformation::b;
constexpr LinearLines kNativeLines{{{kA, 0}, {kA, 1}, {kA, 2}, {kB, 0}, {kB, 1}, {kB, 2}}};
constexpr LinearLines kItr25Lines{{{kA, 0}, {kB, 0}, {kA, 1}, {kB, 1}, {kA, 2}, {kB, 2}}};

const LinearLines& LinesOf(LinearFormat format) {
    return format == LinearFormat::kNative ? kNativeLines : kItr25Lines;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether the lines are read with commas as decimal signs; nothing where their commas are a
/// problem.
std::optional<bool> CommaIsDecimal(TextLines& lines, ParameterFormat format, NumberStyle style,
                                   SuspectCommas commas) {
    if (style.decimalSign == ',') return true;
    if (commas == SuspectCommas::kIgnored || !SeemToHaveDecimalCommas(lines, format)) return false;
    return commas == SuspectCommas::kTaken ? std::optional(true) : std::nullopt;
}

/// Takes the next number's text off the front.
std::string_view TakeField(std::string_view& text, bool commaIsDecimal) {
    constexpr std::string_view kSeparators = " \t,";
    text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
    bool decimalSignSeen = !commaIsDecimal;
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const char c = text[end];
        if (kSeparators.find(c) == kSeparators.npos) {
            decimalSignSeen = decimalSignSeen || c == '.';
            continue;
        }
        const bool decimal = c == ',' && !decimalSignSeen && end > 0 && IsDigit(text[end - 1]) &&
                             end + 1 < text.size() && IsDigit(text[end + 1]);
        if (!decimal) break;
        decimalSignSeen = true;
    }
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end);
    return field;
}

/// The type that has so many coefficients a coordinate.
std::optional<Type> TypeWithTerms(std::uint64_t count) {
    for (const Type type : {Type::kPolynomial1, Type::kBilinear, Type::kPolynomial2,
                            Type::kPolynomial3, Type::kPolynomial4, Type::kPolynomial5}) {
        if (static_cast<std::uint64_t>(TermCount(type)) == count) return type;
    }
    return std::nullopt;
}

enum class LineOutcome { kComplete, kIncomplete, kEmpty, kNoNumber };

/// Stores the fields 1 and 2 of a line, counted from fieldIndex, in first and second.
///
/// Fields end at blanks. "d" and "D" are exponent signs, letters and other signs are passed over
/// without ending a field, field 0 is a label and need be no number.
LineOutcome ParseTwoNumbers(std::string_view line, bool commaIsDecimal, double& first,
                            double& second, int fieldIndex) {
    if (line.empty()) return LineOutcome::kEmpty;
    std::string token;
    for (std::size_t i = 0; i <= line.size() && fieldIndex <= 2; ++i) {
        const char c = i < line.size() ? line[i] : ' ';
        if (c == 'd' || c == 'D') {
            token += 'E';
        } else if (c == ',' && commaIsDecimal) {
            token += '.';
        } else if (IsDigit(c) || std::string_view("+-.eE").find(c) != std::string_view::npos) {
            token += c;
        } else if (c == ' ' && !token.empty()) {
            if (fieldIndex > 0) {
                const auto number = ParseNumber(token);
                if (!number) return LineOutcome::kNoNumber;
                (fieldIndex == 1 ? first : second) = *number;
            }
            ++fieldIndex;
            token.clear();
        }
    }
    return fieldIndex > 2 ? LineOutcome::kComplete : LineOutcome::kIncomplete;
}

/// Reads the lines of a polynomial file.
class PolynomialReader {
public:
    PolynomialReader(TextLines& lines, Transformation& transformation)
        : lines_(lines), t_(transformation) {}

    /// Reads to the end, or to the first line that cannot be used.
    void Read(NumberStyle style, SuspectCommas commas) {
        const auto comma = CommaIsDecimal(lines_, ParameterFormat::kPolynomial, style, commas);
        if (!comma) return Note(Problem::Kind::kDecimalCommas, 0, {});
        commaIsDecimal_ = *comma;
        for (int skipped = 0; skipped < 2; ++skipped) {  // title, empty line
            if (!Next()) return;
        }
        if (!Next() || !Take(t_.a[0], t_.b[0], 1)) return;
        while (!lines_.AtEnd()) {
            Next();
            double beyond = 0.0;
            const std::size_t k = count_ + 1;
            const bool stored = k < t_.a.size();
            if (line_.empty() || !Take(stored ? t_.a[k] : beyond, stored ? t_.b[k] : beyond, 0)) {
                return;
            }
            ++count_;
        }
    }

    std::uint64_t Count() const { return count_; }  // of coefficient lines
    const std::optional<Problem>& FirstProblem() const { return problem_; }

private:
    /// False, with a problem, where the text ends.
    bool Next() {
        if (lines_.AtEnd()) {
            Note(Problem::Kind::kMissingField, lines_.Number() + 1, {});
            return false;
        }
        line_ = lines_.Next();
        return true;
    }

    void Note(Problem::Kind kind, std::uint64_t line, const std::string& text) {
        if (!problem_) problem_ = {.kind = kind, .line = line, .text = text};
    }

    /// False when the reading ends here.
    bool Take(double& first, double& second, int fieldIndex) {
        const LineOutcome outcome =
            ParseTwoNumbers(line_, commaIsDecimal_, first, second, fieldIndex);
        if (outcome == LineOutcome::kComplete) return true;
        Note(outcome == LineOutcome::kNoNumber ? Problem::Kind::kNotANumber
                                               : Problem::Kind::kMissingField,
             lines_.Number(), line_);
        return outcome == LineOutcome::kIncomplete;
    }

    TextLines& lines_;
    bool commaIsDecimal_ = false;
    Transformation& t_;
    std::string line_;
    std::uint64_t count_ = 0;
    std::optional<Problem> problem_;
};

}  // namespace

std::array<std::string, 6> LinearFileLines(const Transformation& transformation,
                                           LinearFormat format, NumberStyle style) {
    std::array<std::string, 6> lines;
    std::ranges::transform(LinesOf(format), lines.begin(), [&](const LinearLine& line) {
        return FixedText((transformation.*line.series)[line.index], line.Decimals(), style);
    });
    return lines;
}

bool SeemToHaveDecimalCommas(TextLines& lines, ParameterFormat format) {
    if (lines.AtEnd()) return false;
    const std::string ahead = lines.Ahead();
    std::string_view text = ahead;
    if (format != ParameterFormat::kPolynomial) return HasDecimalCommas(text, 6);
    constexpr int kTitles = 2;
    constexpr int kEnough = 30;
    for (int i = 0; i < kEnough && !text.empty(); ++i) {  // where a comma never separates
        const auto line = TakeLine(text).text;
        if (i >= kTitles && line.find('.') == line.npos && HasCommaInNumber(line)) return true;
    }
    return false;
}

std::optional<Problem> ReadLinear(TextLines& lines, LinearFormat format, NumberStyle style,
                                  SuspectCommas commas, Transformation& transformation) {
    std::string text;
    std::string_view rest;
    try {
        const auto comma = CommaIsDecimal(lines, ParameterFormat::kNative, style, commas);
        if (!comma) return Problem{.kind = Problem::Kind::kDecimalCommas};
        const bool commaIsDecimal = *comma;
        for (const LinearLine& line : LinesOf(format)) {
            std::string_view field = TakeField(rest, commaIsDecimal);
            while (field.empty() && !lines.AtEnd()) {
                text = lines.Next();
                rest = text;
                field = TakeField(rest, commaIsDecimal);
            }
            const auto number = ParseNumber(field, commaIsDecimal);
            if (number) {
                (transformation.*line.series)[line.index] = *number;
                continue;
            }
            if (field.empty()) {
                return Problem{.kind = Problem::Kind::kMissingField, .line = lines.Number() + 1};
            }
            const auto before = std::string_view(text).substr(
                0, static_cast<std::size_t>(field.data() - text.data()));
            return Problem{.kind = Problem::Kind::kNotANumber,
                           .line = lines.Number(),
                           .column = DisplayWidth(before) + 1,
                           .text = text};
        }
    } catch (const TextError& error) {
        return ProblemOf(error, lines.Number() + 1);
    }
    return std::nullopt;
}

PolynomialReading ReadPolynomial(TextLines& lines, NumberStyle style, SuspectCommas commas,
                                 Transformation& transformation) {
    PolynomialReading reading;
    PolynomialReader reader(lines, transformation);
    try {
        reader.Read(style, commas);
        reading.problem = reader.FirstProblem();
    } catch (const TextError& error) {
        reading.problem = reader.FirstProblem();
        if (!reading.problem) reading.problem = ProblemOf(error, lines.Number() + 1);
    }
    const auto type = TypeWithTerms(reader.Count());
    reading.accepted = type.has_value();
    transformation.type = type.value_or(transformation.type);
    return reading;
}

ParameterReading ReadParameters(std::istream& file, ParameterFormat format, Type linearType,
                                const ParameterFileStyle& style) {
    ParameterReading reading;
    try {
        TextLines lines(*file.rdbuf(), style.codePage);
        if (format == ParameterFormat::kPolynomial) {
            const auto [accepted, problem] =
                ReadPolynomial(lines, style.numbers, style.suspectCommas, reading.transformation);
            reading.problem = problem;
            if (!accepted && !problem) reading.problem = {.kind = Problem::Kind::kUnknownLayout};
        } else {
            reading.transformation.type = linearType;
            const auto order =
                format == ParameterFormat::kItr25 ? LinearFormat::kItr25 : LinearFormat::kNative;
            reading.problem = ReadLinear(lines, order, style.numbers, style.suspectCommas,
                                         reading.transformation);
        }
    } catch (const TextError& error) {
        reading.problem = ProblemOf(error, 1);
    }
    return reading;
}

ParameterReading ReadParameterFile(const std::string& fileName, Type linearType,
                                   const ParameterFileStyle& style) {
    if (auto file = OpenText(fileName)) {
        return ReadParameters(*file, FormatNamed(fileName), linearType, style);
    }
    return {.transformation = {}, .problem = Problem{.kind = Problem::Kind::kNotOpened}};
}

ParameterFormat FormatNamed(const std::string& fileName) {
    if (HasExtension(fileName, "all")) return ParameterFormat::kPolynomial;
    return HasExtension(fileName, "prm") ? ParameterFormat::kItr25 : ParameterFormat::kNative;
}

}  // namespace kv_tr
