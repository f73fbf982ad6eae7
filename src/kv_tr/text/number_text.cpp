// Numbers as text, as listings, logs and files carry them.
#include "kv_tr/text/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <memory>

#include "kv_tr/text/code_page.h"

namespace kv_tr {
namespace {

/// 0.d1d2d3... times ten to the exponent; no digits at all is zero.
struct Decimal {
    bool negative = false;
    std::string digits;
    int exponent = 0;

    char Digit(int index) const {
        const auto size = static_cast<int>(digits.size());
        return index >= 0 && index < size ? digits[static_cast<std::size_t>(index)] : '0';
    }
};

/// The shortest decimal that reads back to the finite value.
Decimal ShortestDecimal(double value) {
    char buffer[32];
    const auto written =
        std::to_chars(buffer, std::end(buffer), std::abs(value), std::chars_format::scientific);
    Decimal decimal;
    decimal.negative = std::signbit(value);
    const char* next = buffer;
    for (; *next != 'e'; ++next) {
        if (*next != '.') decimal.digits += *next;
    }
    ++next;
    if (*next == '+') ++next;
    std::from_chars(next, written.ptr, decimal.exponent);
    ++decimal.exponent;
    if (decimal.digits == "0") decimal.digits.clear();
    return decimal;
}

/// Keeps the first `count` digits, rounding half up in magnitude.
void KeepDigits(Decimal& decimal, int count) {
    if (count >= static_cast<int>(decimal.digits.size())) return;
    const bool roundUp = count >= 0 && decimal.Digit(count) >= '5';
    decimal.digits.resize(static_cast<std::size_t>(std::max(count, 0)));
    if (!roundUp) return;
    while (!decimal.digits.empty() && decimal.digits.back() == '9') decimal.digits.pop_back();
    if (decimal.digits.empty()) {
        decimal.digits = "1";
        ++decimal.exponent;
    } else {
        ++decimal.digits.back();
    }
}

bool IsZero(const Decimal& decimal) {
    return std::ranges::all_of(decimal.digits, [](char digit) { return digit == '0'; });
}

std::string NotFiniteText(double value) {
    if (std::isnan(value)) return "nan";
    return value > 0 ? "inf" : "-inf";
}

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// "00" to "99" behind each other: two digits are written at once.
constexpr auto kDigitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

/// Writes a number below a hundred before a place, with two digits.
char* WritePair(std::uint64_t number, char* place) {
    std::memcpy(place - 2, &kDigitPairs[2 * number], 2);
    return place - 2;
}

/// Takes so many last digits off a number and writes them before a place.
char* TakeDigits(std::uint64_t& number, int count, char* place) {
    for (; count >= 2; count -= 2, number /= 100) place = WritePair(number % 100, place);
    if (count > 0) {
        *--place = static_cast<char>('0' + number % 10);
        number /= 10;
    }
    return place;
}

/// Writes a number without leading zeros before a place.
void WriteNumber(std::uint64_t number, char* place) {
    for (; number >= 100; number /= 100) place = WritePair(number % 100, place);
    if (number >= 10) {
        WritePair(number, place);
    } else {
        *--place = static_cast<char>('0' + number);
    }
}

/// How many digits a number below 10^15 has without leading zeros; none of 0. Its logarithm to the
/// base ten is at least its logarithm to the base two, rounded down, times 0.301.
int DigitCount(std::uint64_t number) {
    const int atLeast = static_cast<int>(std::bit_width(number)) * 1233 >> 12;
    return atLeast + (static_cast<double>(number) >= kPowersOfTen[atLeast] ? 1 : 0);
}

std::string FixedByDigits(double value, int decimals, NumberStyle style) {
    if (!std::isfinite(value)) return NotFiniteText(value);
    Decimal decimal = ShortestDecimal(value);
    KeepDigits(decimal, decimal.exponent + decimals);
    std::string text;
    if (decimal.negative && !IsZero(decimal)) text += '-';
    if (decimal.exponent <= 0) text += '0';
    for (int i = 0; i < decimal.exponent; ++i) text += decimal.Digit(i);
    if (decimals > 0) text += style.decimalSign;
    for (int i = 0; i < decimals; ++i) text += decimal.Digit(decimal.exponent + i);
    return text;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether each byte separates fields: finding them takes a good part of the time of reading.
constexpr auto kSeparates = [] {
    std::array<bool, 256> table{};
    for (const char c : {' ', '\'', ',', ';', '\t', '"'}) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

bool Separates(char c, bool commaIsDecimal = false) {
    return kSeparates[static_cast<unsigned char>(c)] && !(c == ',' && commaIsDecimal);
}

/// A number at the start of a text, and where it ends.
struct FewDigits {
    double value;
    const char* end;
};

/// The value of at most 15 digits with or without a decimal sign; nothing if the text begins with
/// anything else. Both the digits and the power of ten are exact as doubles, so that one division
/// rounds correctly.
std::optional<FewDigits> ReadFewDigits(std::string_view text, char decimalSign) {
    std::uint64_t number = 0;
    const char* next = text.data();
    const char* const end = next + text.size();
    const auto takeDigits = [&next, end, &number] {
        const char* const begin = next;
        for (; next != end; ++next) {
            const unsigned digit = static_cast<unsigned char>(*next) - unsigned{'0'};
            if (digit > 9) break;
            number = number * 10 + digit;
        }
        return next - begin;
    };
    const auto whole = takeDigits();
    std::ptrdiff_t decimals = 0;
    if (next != end && *next == decimalSign) {
        ++next;
        decimals = takeDigits();
    }
    const auto count = whole + decimals;
    if (count == 0 || count > 15) return std::nullopt;
    return FewDigits{static_cast<double>(number) / kPowersOfTen[decimals], next};
}

}  // namespace

std::string FixedText(double value, int decimals, NumberStyle style) {
    std::string text;
    AppendFixed(text, value, decimals, style);
    return text;
}

void AppendFixed(std::string& text, double value, int decimals, NumberStyle style) {
    char buffer[kMostFixed];
    if (const char* const end = WriteFixed(buffer, value, decimals, style)) {
        text.append(static_cast<const char*>(buffer), end);
    } else {
        text += FixedByDigits(value, decimals, style);
    }
}

// The shortest text differs from the value by less than 2^-53 of it, and the product is rounded by
// as much again. Unless a half lies so near, all three round to the same integer.
char* WriteFixed(char* place, double value, int decimals, NumberStyle style) {
    if (decimals < 0 || decimals >= static_cast<int>(std::size(kPowersOfTen))) return nullptr;
    const double scaled = std::abs(value) * kPowersOfTen[decimals];
    if (!(scaled < 1e15)) return nullptr;
    auto number = static_cast<std::uint64_t>(scaled);
    const double fraction = scaled - static_cast<double>(number);
    if (std::abs(fraction - 0.5) <= scaled * 0x1p-51) return nullptr;
    if (fraction > 0.5) ++number;

    const bool negative = std::signbit(value) && number > 0;
    if (negative) *place++ = '-';
    char* const end = place + std::max(DigitCount(number), decimals + 1) + (decimals > 0 ? 1 : 0);
    char* before = TakeDigits(number, decimals, end);
    if (decimals > 0) *--before = style.decimalSign;
    WriteNumber(number, before);
    return end;
}

std::string SciText(double value, NumberStyle style) {
    constexpr int kDigits = 16;
    if (!std::isfinite(value)) return NotFiniteText(value);
    Decimal decimal = ShortestDecimal(value);
    KeepDigits(decimal, kDigits);
    const int power = IsZero(decimal) ? 0 : decimal.exponent - 1;
    std::string text;
    if (decimal.negative && !IsZero(decimal)) text += '-';
    text += decimal.Digit(0);
    text += style.decimalSign;
    for (int i = 1; i < kDigits; ++i) text += decimal.Digit(i);
    text += power < 0 ? "E-" : "E+";
    if (std::abs(power) < 10) text += '0';
    return text + std::to_string(std::abs(power));
}

std::string ShortestText(double value, NumberStyle style) {
    if (!std::isfinite(value)) return NotFiniteText(value);
    if (value == 0.0) return "0";
    const double size = std::abs(value);
    const bool plain = size >= 1e-5 && size < 1e15;
    const auto format = plain ? std::chars_format::fixed : std::chars_format::scientific;
    char buffer[32];
    const auto end = std::to_chars(buffer, std::end(buffer), value, format).ptr;
    std::replace(buffer, end, '.', style.decimalSign);
    return {buffer, end};
}

std::string PadLeft(std::string_view sText, std::uint8_t nWidth) {
    const std::size_t width = DisplayWidth(sText);
    std::string padded(width < nWidth ? nWidth - width : 0, ' ');
    return padded += sText;
}

std::string CleanNumberLine(std::string_view sLine, bool bCommaIsDecimal) {
    std::string cleaned;
    for (char c : sLine) {
        if (c == ',' && bCommaIsDecimal) c = '.';
        if (!Separates(c)) {
            cleaned += c;
        } else if (!cleaned.empty() && cleaned.back() != ' ') {
            cleaned += ' ';
        }
    }
    if (!cleaned.empty() && cleaned.back() == ' ') cleaned.pop_back();
    return cleaned;
}

std::string_view NextField(std::string_view& line, bool commaIsDecimal) {
    const auto separates = [commaIsDecimal](char c) { return Separates(c, commaIsDecimal); };
    const auto begin = std::ranges::find_if_not(line, separates);
    const auto end = std::find_if(begin, line.end(), separates);
    line = {end, line.end()};
    return {begin, end};
}

NumberField NextNumber(std::string_view& line, bool commaIsDecimal) {
    const auto separates = [commaIsDecimal](char c) { return Separates(c, commaIsDecimal); };
    const char* const begin = std::to_address(std::ranges::find_if_not(line, separates));
    const char* const end = line.data() + line.size();
    const bool negative = begin != end && *begin == '-';
    const auto few = ReadFewDigits({begin + (negative ? 1 : 0), end}, commaIsDecimal ? ',' : '.');
    if (few && (few->end == end || separates(*few->end))) {
        line = {few->end, end};
        return {{begin, few->end}, negative ? -few->value : few->value};
    }
    const auto field = NextField(line, commaIsDecimal);
    return {field, ParseNumber(field, commaIsDecimal)};
}

std::optional<double> ParseNumber(std::string_view text, bool commaIsDecimal) {
    std::string withPoint;
    if (commaIsDecimal && text.find(',') != text.npos) {
        withPoint = text;
        std::ranges::replace(withPoint, ',', '.');
        text = withPoint;
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const auto few = ReadFewDigits(text, '.');
    if (few && few->end == text.data() + text.size()) return negative ? -few->value : few->value;
    // from_chars would take another sign and the words inf and nan.
    if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return std::nullopt;

    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return negative ? -value : value;
}

std::optional<double> TypedNumber(std::string_view text) {
    return ParseNumber(CleanNumberLine(text, true));
}

}  // namespace kv_tr
