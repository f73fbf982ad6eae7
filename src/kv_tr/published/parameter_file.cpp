// Parameter files: trp and prm for six parameters, all for polynomials.
#include "kv_tr/published/parameter_file.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr {
namespace {

/// A number of a linear file: its series, its index there, and how it is written.
struct LinearLine {
    std::array<double, 22> Coefficients::*series;
    std::size_t index;

    std::uint8_t Decimals() const { return index == 0 ? 3 : 8; }
};
using LinearLines = std::array<LinearLine, 6>;

constexpr auto kA = &Coefficients::a;
constexpr auto kB = &Coefficients::b;
constexpr LinearLines kNativeLines{{{kA, 0}, {kA, 1}, {kA, 2}, {kB, 0}, {kB, 1}, {kB, 2}}};
constexpr LinearLines kItr25Lines{{{kA, 0}, {kB, 0}, {kA, 1}, {kB, 1}, {kA, 2}, {kB, 2}}};

const LinearLines& LinesOf(LinearFormat format) {
    return format == LinearFormat::kNative ? kNativeLines : kItr25Lines;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool CommaIsDecimal() { return DecimalSeparator() == ','; }

/// Takes the next number's text off the front.
std::string_view TakeField(std::string_view& text) {
    constexpr std::string_view kSeparators = " \t,";
    text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
    bool decimalSignSeen = !CommaIsDecimal();
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
std::optional<enuTR_TYPE> TypeWithTerms(std::uint64_t count) {
    for (const enuTR_TYPE type :
         {TR_POLI_1, TR_BILINEAR, TR_POLI_2, TR_POLI_3, TR_POLI_4, TR_POLI_5}) {
        if (static_cast<std::uint64_t>(TermCount(type)) == count) return type;
    }
    return std::nullopt;
}

enum class LineOutcome { kComplete, kIncomplete, kEmpty, kNoNumber };

/// Stores the fields 1 and 2 of a line, counted from fieldIndex, in first and second.
///
/// Fields end at blanks. "d" and "D" are exponent signs, letters and other signs are passed over
/// without ending a field, field 0 is a label and need be no number.
LineOutcome ParseTwoNumbers(std::string_view line, double& first, double& second, int fieldIndex) {
    if (line.empty()) return LineOutcome::kEmpty;
    std::string token;
    for (std::size_t i = 0; i <= line.size() && fieldIndex <= 2; ++i) {
        const char c = i < line.size() ? line[i] : ' ';
        if (c == 'd' || c == 'D') {
            token += 'E';
        } else if (c == ',' && CommaIsDecimal()) {
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

/// Reads an open polynomial file line by line.
class PolynomialReader {
public:
    PolynomialReader(clsFile& file, Coefficients& coefficients)
        : file_(file), coefficients_(coefficients) {}

    /// Reads to the end, or to the first line that cannot be used.
    void Read() {
        auto& [a, b] = coefficients_;
        for (int skipped = 0; skipped < 2; ++skipped) NextLine();  // title, empty line
        if (!Take(NextLine(), a[0], b[0], 1)) return;
        while (!file_.AtEnd()) {
            const std::string line = NextLine();
            double beyond = 0.0;
            const std::size_t k = count_ + 1;
            const bool stored = k < a.size();
            if (line.empty() || !Take(line, stored ? a[k] : beyond, stored ? b[k] : beyond, 0)) {
                return;
            }
            ++count_;
        }
    }

    std::uint64_t Count() const { return count_; }      // of coefficient lines
    std::uint64_t BadLine() const { return badLine_; }  // first that was not complete, 0 for none

private:
    std::string NextLine() {
        ++lineNumber_;
        if (file_.AtEnd()) badLine_ = lineNumber_;
        return file_.ReadLine();
    }

    /// False when the reading ends here.
    bool Take(const std::string& line, double& first, double& second, int fieldIndex) {
        const LineOutcome outcome = ParseTwoNumbers(line, first, second, fieldIndex);
        if (outcome != LineOutcome::kComplete && badLine_ == 0) badLine_ = lineNumber_;
        return outcome == LineOutcome::kComplete || outcome == LineOutcome::kIncomplete;
    }

    clsFile& file_;
    Coefficients& coefficients_;
    std::uint64_t lineNumber_ = 0;
    std::uint64_t count_ = 0;
    std::uint64_t badLine_ = 0;
};

}  // namespace

std::array<std::string, 6> LinearFileLines(const TR_PRM& record, LinearFormat format) {
    const Coefficients coefficients = CoefficientsOf(record);
    std::array<std::string, 6> lines;
    std::ranges::transform(LinesOf(format), lines.begin(), [&](const LinearLine& line) {
        return FormatFixed((coefficients.*line.series)[line.index], line.Decimals(), 0);
    });
    return lines;
}

bool ReadLinearFile(clsFile& file, LinearFormat format, TR_PRM& record) {
    Coefficients coefficients = CoefficientsOf(record);
    std::string text;
    std::string_view rest;
    const auto nextNumber = [&] {
        std::string_view field = TakeField(rest);
        while (field.empty() && !file.AtEnd()) {
            text = file.ReadLine();
            rest = text;
            field = TakeField(rest);
        }
        return ParseNumber(field, CommaIsDecimal());
    };
    bool complete = false;
    try {
        for (const LinearLine& line : LinesOf(format)) {
            const auto number = nextNumber();
            complete = number.has_value();
            if (!complete) break;
            (coefficients.*line.series)[line.index] = *number;
        }
    } catch (const RuntimeError&) {  // the file cannot be read on
        complete = false;
    }
    record = MakeRecord(record.eType, coefficients);
    return complete;
}

PolynomialReading ReadPolynomialFile(const std::string& fileName, TR_PRM& record) {
    PolynomialReading reading;
    clsFile file;
    file.OpenIt(fileName, true);
    if (!file.IsOpen()) return reading;
    reading.opened = true;
    Coefficients coefficients = CoefficientsOf(record);
    PolynomialReader reader(file, coefficients);
    try {
        reader.Read();
    } catch (const RuntimeError&) {  // the text ends early, or cannot be read on
    }
    reading.badLine = reader.BadLine();
    const auto type = TypeWithTerms(reader.Count());
    reading.accepted = type.has_value();
    record = MakeRecord(type.value_or(record.eType), coefficients);
    return reading;
}

}  // namespace kv_tr
