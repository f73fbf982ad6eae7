// Numbers as text against strtod, a grammar and rounding by hand.
#include <cerrno>
#include <cfloat>
#include <charconv>

#include "fuzz/fuzz.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr::test {
namespace {

/// The fewest digits that tell a finite number from its neighbours, and where the point stands.
struct Digits {
    std::string digits;  // d d d d
    int exponent = 0;    // of the first one
};

Digits ShortestDigits(double value) {
    char text[64];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific);
    const std::string_view shown(text, end);
    const std::size_t mark = shown.find('e');
    Digits found;
    for (const char c : shown.substr(0, mark)) {
        if (c != '.') found.digits += c;
    }
    found.exponent = std::atoi(std::string(shown.substr(mark + 1)).c_str());
    return found;
}

/// The shortest digits rounded half away from zero, digit by digit.
std::string Rounded(double value, int decimals) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
    const auto [digits, exponent] = ShortestDigits(value);
    std::string all = "0";  // room for a carry
    for (int place = std::max(exponent, 0); place >= -decimals - 1; --place) {
        const int index = exponent - place;
        const bool there = index >= 0 && index < static_cast<int>(digits.size());
        all += there ? digits[static_cast<std::size_t>(index)] : '0';
    }
    const bool up = all.back() >= '5';
    all.pop_back();
    if (up) {
        std::size_t i = all.size() - 1;
        for (; all[i] == '9'; --i) all[i] = '0';
        ++all[i];
    }
    const bool zero = all.find_first_not_of('0') == all.npos;
    const std::size_t whole = all.size() - static_cast<std::size_t>(decimals);
    std::string text = all.substr(std::min(all.find_first_not_of('0'), whole - 1));
    if (decimals > 0) text.insert(text.size() - static_cast<std::size_t>(decimals), 1, '.');
    return std::signbit(value) && !zero ? "-" + text : text;
}

/// A sign, digits with at most one point, an exponent with digits; all but the digits at will.
bool IsNumber(std::string_view text) {
    const auto skip = [&](std::string_view set, std::size_t most) {
        std::size_t count = 0;
        for (; count < most && !text.empty() && set.find(text[0]) != set.npos; ++count)
            text.remove_prefix(1);
        return count;
    };
    constexpr std::string_view kDigits = "0123456789";
    skip("+-", 1);
    std::size_t digits = skip(kDigits, text.size());
    skip(".", 1);
    digits += skip(kDigits, text.size());
    if (digits == 0 || text.empty()) return digits > 0;
    if (skip("eE", 1) == 0) return false;
    skip("+-", 1);
    return skip(kDigits, text.size()) > 0 && text.empty();
}

void CheckReading(const std::string& text) {
    const auto number = ParseNumber(text);
    Require(!number || IsNumber(text), "only numbers are read as numbers");
    if (IsNumber(text)) {
        errno = 0;
        const double truth = std::strtod(text.c_str(), nullptr);
        Require(number ? Same(*number, truth)
                       : std::isinf(truth) || (errno == ERANGE && std::fabs(truth) <= DBL_MIN),
                "a number is the nearest double, unless beyond the range of doubles");
    }
    const auto typed = TypedNumber("  " + text + " ");
    Require(!number || (typed && Same(*typed, *number)), "a typed number may have blanks");
    if (text.find(',') == text.npos) {
        std::string comma = text;
        std::ranges::replace(comma, '.', ',');
        const auto other = ParseNumber(comma, true);
        Require(other.has_value() == number.has_value() && (!number || Same(*other, *number)),
                "a decimal comma is read as a decimal point");
    }
    for (const bool commas : {false, true}) {
        std::string_view fields = text;
        std::string_view numbers = text;
        std::string joined;
        for (auto field = NextField(fields, commas); !field.empty();
             field = NextField(fields, commas)) {
            const NumberField next = NextNumber(numbers, commas);
            const auto value = ParseNumber(field, commas);
            Require(next.text == field && next.value.has_value() == value.has_value() &&
                        (!value || Same(*value, *next.value)),
                    "a field with its number is the field and the number");
            joined += (joined.empty() ? "" : " ") + std::string(field);
        }
        if (commas) std::ranges::replace(joined, ',', '.');
        Require(joined == CleanNumberLine(text, commas), "a cleaned line holds the fields");
    }
}

void CheckWriting(double value, int decimals) {
    const std::string fixed = FixedText(value, decimals);
    Require(fixed == Rounded(value, decimals), "the shortest digits are rounded half away from 0");
    std::string comma = "x";
    AppendFixed(comma, value, decimals, {','});
    std::ranges::replace(comma, ',', '.');
    Require(comma == "x" + fixed, "a decimal comma changes nothing else");
    char place[kMostFixed];
    const char* end = WriteFixed(place, value, decimals);
    Require(end == nullptr || fixed == std::string_view(place, end), "the short way is the same");
    if (!std::isfinite(value)) return;

    const std::string shortest = ShortestText(value);
    if (value == 0 || std::fabs(value) >= DBL_MIN) {
        const auto back = ParseNumber(shortest);
        Require(back && *back == value, "the shortest text reads back to the same double");
        const auto sci = ParseNumber(SciText(value));
        Require(!sci || std::fabs(*sci - value) <= std::fabs(value) * 7e-16, "16 digits are kept");
    }
    std::string digits;
    for (const char c : shortest.substr(0, shortest.find_first_of("eE"))) {
        if (c >= '0' && c <= '9') digits += c;
    }
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
    digits.erase(std::max<std::size_t>(digits.find_last_not_of('0') + 1, 1));
    Require(digits == ShortestDigits(value).digits, "no digit more than needed is written");
}

/// Any double, or one next to a tie of this many decimals.
double Value(Input& input, int decimals) {
    if (input.Byte() < 128) return input.AnyDouble();
    const auto whole = static_cast<double>(std::bit_cast<std::int64_t>(input.AnyDouble()) >> 24);
    const double tie = (whole + 0.5) / std::pow(10.0, decimals);
    const int side = input.Below(3) - 1;
    return side == 0 ? tie : std::nextafter(tie, side * HUGE_VAL);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const int kind = input.Byte();
    const int decimals = kind < 200 ? kind % 18 : kind;
    CheckWriting(Value(input, decimals), decimals);
    CheckReading(std::string(input.Rest()));
    return 0;
}

}  // namespace kv_tr::test
