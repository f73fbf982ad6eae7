// Files written with decimal commas, which the readers would silently take for other numbers.
#include "kv_tr/published/decimal_commas.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr {
namespace {

constexpr const char* kSeparators = " \t;'\"\n";

/// Takes the first field off a text; empty when there is none.
std::string_view TakeField(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kSeparators), text.size()));
    const auto field = text.substr(0, text.find_first_of(kSeparators));
    text.remove_prefix(field.size());
    return field;
}

/// Whether a comma stands between two digits.
bool HasComma(std::string_view text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (text[i] == ',' && isDigit(text[i - 1]) && isDigit(text[i + 1])) return true;
    }
    return false;
}

/// Whether any line of a file is so, as far as they can be read: whoever reads the file next tells
/// what is wrong with it.
template <typename Predicate>
bool AnyLine(const std::string& fileName, const Predicate& isSo) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(fileName, error)) return false;
    std::ifstream stream(fileName, std::ios::binary);
    try {
        LineReader reader(*stream.rdbuf());
        while (!reader.AtEnd()) {
            if (isSo(reader.Next())) return true;
        }
    } catch (const TextError&) {
    }
    return false;
}

std::vector<std::string> FirstLines(const std::string& fileName) {
    constexpr std::size_t kEnough = 30;
    std::vector<std::string> lines;
    AnyLine(fileName, [&lines](std::string_view line) {
        lines.emplace_back(line);
        return lines.size() == kEnough;
    });
    return lines;
}

}  // namespace

bool HasDecimalCommas(std::string_view text, int numbers) {
    if (text.find(',') == text.npos) return false;
    bool comma = false;
    for (int i = 0; i < numbers; ++i) {
        const auto field = TakeField(text);
        if (!ParseNumber(field, true)) return false;
        comma |= HasComma(field);
    }
    return comma;
}

std::string_view WithoutIdentifier(std::string_view line) {
    TakeField(line);
    return line;
}

std::string WithDecimalPoints(std::string_view points) {
    std::string text;
    while (!points.empty()) {
        const auto [line, ending] = TakeLine(points);
        const auto numbers = WithoutIdentifier(line);
        text += line.substr(0, line.size() - numbers.size());
        const std::size_t begin = text.size();
        text += numbers;
        if (HasDecimalCommas(numbers, 4))
            std::replace(text.begin() + static_cast<std::ptrdiff_t>(begin), text.end(), ',', '.');
        text += ending;
    }
    return text;
}

bool ParametersHaveDecimalCommas(const std::string& fileName) {
    const auto lines = FirstLines(fileName);
    if (HasExtension(fileName, "all")) {  // where a comma never separates
        constexpr std::ptrdiff_t kTitles = 2;
        return std::any_of(
            lines.begin() + std::min(kTitles, std::ssize(lines)), lines.end(),
            [](const std::string& line) { return line.find('.') == line.npos && HasComma(line); });
    }
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return HasDecimalCommas(text, 6);
}

bool PointsMayHaveDecimalCommas(const std::string& fileName) {
    return AnyLine(fileName, [](std::string_view line) {
        return HasDecimalCommas(WithoutIdentifier(line), 4);
    });
}

bool ReportDecimalCommas(const std::string& pointsFileName) {
    if (!PointsMayHaveDecimalCommas(pointsFileName)) return false;
    ShowMessage(FillPlaces(GetMlString(1073,
                                       "{0}: a vessző itt elválasztójel; a tizedesvesszőt "
                                       "cserélje pontra."),
                           {pointsFileName}),
                Icon::kExclamation);
    return true;
}

DecimalCommaScope::DecimalCommaScope(bool comma) : before_(DecimalSeparator()) {
    if (comma) DecimalSeparator(',');
}

DecimalCommaScope::~DecimalCommaScope() { DecimalSeparator(before_); }

}  // namespace kv_tr
