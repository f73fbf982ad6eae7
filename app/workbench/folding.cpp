// Texts compared as users expect: without regard to case and marks, numbers by their value.
#include "workbench/folding.h"

#include <algorithm>
#include <cstdint>

namespace kv_tr::workbench {
namespace {

/// Letters from one code point on, each as the plain letter that it is made of; "." for what stays.
struct Range {
    std::uint32_t first;
    std::string_view plain;
};

constexpr Range kRanges[] = {
    {0xC0, "aaaaaaaceeeeiiiidnooooo.ouuuuy..aaaaaaaceeeeiiiidnooooo.ouuuuy.y"},
    {0x100,
     "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiii..jjkkkllllllllll"
     "nnnnnnnnnoooooo..rrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs"},
    {0x1A0, "oo"},
    {0x1AF, "uu"},
    {0x218, "sstt"},
    {0x1EA0,
     "aaaaaaaaaaaaaaaaaaaaaaaaeeeeeeeeeeeeeeeeiiiioooooooooooooooooooooooo"
     "uuuuuuuuuuuuuuyyyyyyyy"},
};

/// The code point that a valid text begins with, which is taken off.
std::uint32_t TakeLetter(std::string_view& text) {
    const auto byte = [&text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const std::uint32_t lead = byte(0);
    std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint32_t letter = lead < 0x80 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) letter = letter << 6U | (byte(i) & 0x3FU);
    text.remove_prefix(std::min(length, text.size()));
    return letter;
}

bool IsIn(std::uint32_t letter, std::uint32_t first, std::uint32_t last) {
    return letter >= first && letter <= last;
}

/// The code point of the small letter where a simple rule gives that.
std::uint32_t Small(std::uint32_t letter) {
    if (IsIn(letter, 0x391, 0x3A9) || IsIn(letter, 0x410, 0x42F)) return letter + 0x20;
    if (IsIn(letter, 0x400, 0x40F)) return letter + 0x50;
    return letter;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes the digits off that a text begins with, without leading zeros.
std::string_view TakeDigits(std::string_view& text) {
    const auto end = std::ranges::find_if_not(text, IsDigit);
    std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

}  // namespace

std::string Folded(std::string_view utf8) {
    std::string folded;
    folded.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::string_view rest = utf8;
        const std::uint32_t letter = TakeLetter(utf8);
        if (letter < 0x80) {
            const char c = static_cast<char>(letter);
            folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            continue;
        }
        if (IsIn(letter, 0x300, 0x36F)) continue;  // a mark of the letter before
        const auto range = std::ranges::find_if(kRanges, [letter](const Range& one) {
            return letter >= one.first && letter - one.first < one.plain.size();
        });
        const char plain = range == std::end(kRanges) ? '.' : range->plain[letter - range->first];
        if (plain != '.') {
            folded += plain;
        } else if (const std::uint32_t small = Small(letter); small != letter) {
            folded += static_cast<char>(0xC0U | small >> 6U);  // all of two bytes
            folded += static_cast<char>(0x80U | (small & 0x3FU));
        } else {
            folded += rest.substr(0, rest.size() - utf8.size());
        }
    }
    return folded;
}

bool IsBefore(std::string_view folded, std::string_view other) {
    while (!folded.empty() && !other.empty()) {
        if (IsDigit(folded[0]) && IsDigit(other[0])) {
            const std::string_view number = TakeDigits(folded);
            const std::string_view otherNumber = TakeDigits(other);
            if (number.size() != otherNumber.size()) return number.size() < otherNumber.size();
            if (number != otherNumber) return number < otherNumber;
        } else {
            if (folded[0] != other[0])
                return static_cast<unsigned char>(folded[0]) < static_cast<unsigned char>(other[0]);
            folded.remove_prefix(1);
            other.remove_prefix(1);
        }
    }
    return folded.size() < other.size();
}

}  // namespace kv_tr::workbench
