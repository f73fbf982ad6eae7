// Numbers with decimal commas, which readers would silently take for other numbers.
#include "kv_tr/text/decimal_commas.h"

#include <algorithm>

#include "kv_tr/text/line_reader.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {
namespace {

constexpr const char* kFieldSeparators = " \t;'\"\r\n";

/// Takes the first field off a text; empty when there is none.
std::string_view TakeField(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kFieldSeparators), text.size()));
    const auto field = text.substr(0, text.find_first_of(kFieldSeparators));
    text.remove_prefix(field.size());
    return field;
}

}  // namespace

bool HasCommaInNumber(std::string_view text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (text[i] == ',' && isDigit(text[i - 1]) && isDigit(text[i + 1])) return true;
    }
    return false;
}

bool HasDecimalCommas(std::string_view text, int numbers) {
    if (text.find(',') == text.npos) return false;
    bool comma = false;
    for (int i = 0; i < numbers; ++i) {
        const auto field = TakeField(text);
        if (!ParseNumber(field, true)) return false;
        comma |= HasCommaInNumber(field);
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

}  // namespace kv_tr
