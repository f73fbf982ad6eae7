// The two code pages of files, the letters that are composed with marks, and UTF-8.
#include "kv_tr/text/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>

namespace kv_tr {
namespace {

constexpr char32_t kReplacement = U'\uFFFD';

// clang-format off

/// The code points of the bytes 80 to FF, in order.
using UpperHalf = std::array<char16_t, 128>;

constexpr UpperHalf kWindows1250 = {
    0x20AC, 0x0081, 0x201A, 0x0083, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x0088, 0x2030, 0x0160, 0x2039, 0x015A, 0x0164, 0x017D, 0x0179,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x0098, 0x2122, 0x0161, 0x203A, 0x015B, 0x0165, 0x017E, 0x017A,  // 98
    0x00A0, 0x02C7, 0x02D8, 0x0141, 0x00A4, 0x0104, 0x00A6, 0x00A7,  // A0
    0x00A8, 0x00A9, 0x015E, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x017B,  // A8
    0x00B0, 0x00B1, 0x02DB, 0x0142, 0x00B4, 0x00B5, 0x00B6, 0x00B7,  // B0
    0x00B8, 0x0105, 0x015F, 0x00BB, 0x013D, 0x02DD, 0x013E, 0x017C,  // B8
    0x0154, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x0139, 0x0106, 0x00C7,  // C0
    0x010C, 0x00C9, 0x0118, 0x00CB, 0x011A, 0x00CD, 0x00CE, 0x010E,  // C8
    0x0110, 0x0143, 0x0147, 0x00D3, 0x00D4, 0x0150, 0x00D6, 0x00D7,  // D0
    0x0158, 0x016E, 0x00DA, 0x0170, 0x00DC, 0x00DD, 0x0162, 0x00DF,  // D8
    0x0155, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x013A, 0x0107, 0x00E7,  // E0
    0x010D, 0x00E9, 0x0119, 0x00EB, 0x011B, 0x00ED, 0x00EE, 0x010F,  // E8
    0x0111, 0x0144, 0x0148, 0x00F3, 0x00F4, 0x0151, 0x00F6, 0x00F7,  // F0
    0x0159, 0x016F, 0x00FA, 0x0171, 0x00FC, 0x00FD, 0x0163, 0x02D9,  // F8
};

constexpr UpperHalf kWindows1258 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80
    0x02C6, 0x2030, 0x008A, 0x2039, 0x0152, 0x008D, 0x008E, 0x008F,  // 88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90
    0x02DC, 0x2122, 0x009A, 0x203A, 0x0153, 0x009D, 0x009E, 0x0178,  // 98
    0x00A0, 0x00A1, 0x00A2, 0x00A3, 0x00A4, 0x00A5, 0x00A6, 0x00A7,  // A0
    0x00A8, 0x00A9, 0x00AA, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x00AF,  // A8
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7,  // B0
    0x00B8, 0x00B9, 0x00BA, 0x00BB, 0x00BC, 0x00BD, 0x00BE, 0x00BF,  // B8
    0x00C0, 0x00C1, 0x00C2, 0x0102, 0x00C4, 0x00C5, 0x00C6, 0x00C7,  // C0
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x0300, 0x00CD, 0x00CE, 0x00CF,  // C8
    0x0110, 0x00D1, 0x0309, 0x00D3, 0x00D4, 0x01A0, 0x00D6, 0x00D7,  // D0
    0x00D8, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x01AF, 0x0303, 0x00DF,  // D8
    0x00E0, 0x00E1, 0x00E2, 0x0103, 0x00E4, 0x00E5, 0x00E6, 0x00E7,  // E0
    0x00E8, 0x00E9, 0x00EA, 0x00EB, 0x0301, 0x00ED, 0x00EE, 0x00EF,  // E8
    0x0111, 0x00F1, 0x0323, 0x00F3, 0x00F4, 0x01A1, 0x00F6, 0x00F7,  // F0
    0x00F8, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x01B0, 0x20AB, 0x00FF,  // F8
};

/// What a combining mark makes of the letters before it: composed[i] from base[i].
struct Composition {
    char32_t mark;
    std::u32string_view base;
    std::u32string_view composed;
};

// All letters of both pages and of Vietnamese, and whatever windows-1258 can write as two bytes.
// A letter with two marks has a row entry for each order in which they may come.
constexpr Composition kCompositions[] = {
    {U'\u0300',  // grave
     U"AEINOUWYaeinouwyÂÊÔÜâêôüĂăƠơƯư",
     U"ÀÈÌǸÒÙẀỲàèìǹòùẁỳẦỀỒǛầềồǜẰằỜờỪừ"},
    {U'\u0301',  // acute
     U"ACEGIKLMNOPRSUWYZacegiklmnoprsuwyzÂÅÆÇÊÏÔØÜâåæçêïôøüĂăƠơƯư",
     U"ÁĆÉǴÍḰĹḾŃÓṔŔŚÚẂÝŹáćéǵíḱĺḿńóṕŕśúẃýźẤǺǼḈẾḮỐǾǗấǻǽḉếḯốǿǘẮắỚớỨứ"},
    {U'\u0302',  // circumflex
     U"AEIOUaeiouẠạẸẹỌọ",
     U"ÂÊÎÔÛâêîôûẬậỆệỘộ"},
    {U'\u0303',  // tilde
     U"AEINOUVYaeinouvyÂÊÔâêôĂăƠơƯư",
     U"ÃẼĨÑÕŨṼỸãẽĩñõũṽỹẪỄỖẫễỗẴẵỠỡỮữ"},
    {U'\u0306',  // breve
     U"AaẠạ",
     U"ĂăẶặ"},
    {U'\u0307',  // dot above
     U"Zz",
     U"Żż"},
    {U'\u0308',  // diaeresis
     U"AEIOUYaeiouy",
     U"ÄËÏÖÜŸäëïöüÿ"},
    {U'\u0309',  // hook above
     U"AEIOUYaeiouyÂÊÔâêôĂăƠơƯư",
     U"ẢẺỈỎỦỶảẻỉỏủỷẨỂỔẩểổẲẳỞởỬử"},
    {U'\u030A',  // ring above
     U"AUau",
     U"ÅŮåů"},
    {U'\u030B',  // double acute
     U"OUou",
     U"ŐŰőű"},
    {U'\u030C',  // caron
     U"CDELNRSTZcdelnrstz",
     U"ČĎĚĽŇŘŠŤŽčďěľňřšťž"},
    {U'\u031B',  // horn
     U"OUouÒÓÕÙÚòóõùúŨũỌọỎỏỤụỦủ",
     U"ƠƯơưỜỚỠỪỨờớỡừứỮữỢợỞởỰựỬử"},
    {U'\u0323',  // dot below
     U"ABDEHIKLMNORSTUVWYZabdehiklmnorstuvwyzÂÊÔâêôĂăƠơƯư",
     U"ẠḄḌẸḤỊḲḶṂṆỌṚṢṬỤṾẈỴẒạḅḍẹḥịḳḷṃṇọṛṣṭụṿẉỵẓẬỆỘậệộẶặỢợỰự"},
    {U'\u0326',  // comma below
     U"STst",
     U"ȘȚșț"},
    {U'\u0327',  // cedilla
     U"CSTcstĆć",
     U"ÇŞŢçşţḈḉ"},
    {U'\u0328',  // ogonek
     U"AEae",
     U"ĄĘąę"},
};

// clang-format on

constexpr bool EachBaseHasOneLetter() {
    return std::ranges::all_of(kCompositions, [](const Composition& row) {
        return row.base.size() == row.composed.size() && std::ranges::is_sorted(row.base) &&
               std::ranges::adjacent_find(row.base) == row.base.end();
    });
}
static_assert(EachBaseHasOneLetter());

struct PageLetter {
    char32_t codePoint;
    unsigned char byte;
};
using PageLetters = std::array<PageLetter, 128>;

constexpr PageLetters SortedByCodePoint(const UpperHalf& page) {
    PageLetters letters{};
    for (std::size_t i = 0; i < letters.size(); ++i)
        letters[i] = {page[i], static_cast<unsigned char>(0x80 + i)};
    std::ranges::sort(letters, {}, &PageLetter::codePoint);
    return letters;
}

constexpr PageLetters kLetters1250 = SortedByCodePoint(kWindows1250);
constexpr PageLetters kLetters1258 = SortedByCodePoint(kWindows1258);

constexpr bool IsCombiningMark(char32_t codePoint) {
    return codePoint >= U'\u0300' && codePoint <= U'\u036F';
}

std::optional<char> ByteOf(char32_t codePoint, CodePage page) {
    if (codePoint < 0x80) return static_cast<char>(codePoint);
    const PageLetters& letters = page == CodePage::kWindows1258 ? kLetters1258 : kLetters1250;
    const auto found = std::ranges::lower_bound(letters, codePoint, {}, &PageLetter::codePoint);
    if (found == letters.end() || found->codePoint != codePoint) return std::nullopt;
    return static_cast<char>(found->byte);
}

char32_t CodePointOf(char byte, CodePage page) {
    const auto value = static_cast<unsigned char>(byte);
    if (value < 0x80) return value;
    return (page == CodePage::kWindows1258 ? kWindows1258 : kWindows1250)[value - 0x80U];
}

char32_t WithCedilla(char32_t letter) {
    constexpr std::u32string_view kCommaBelow = U"ȘșȚț";
    const auto place = kCommaBelow.find(letter);
    return place == kCommaBelow.npos ? letter : U"ŞşŢţ"[place];
}

std::optional<char32_t> Compose(char32_t base, char32_t mark) {
    const auto row = std::ranges::find(kCompositions, mark, &Composition::mark);
    if (row == std::end(kCompositions)) return std::nullopt;
    const auto place = row->base.find(base);
    if (place == row->base.npos) return std::nullopt;
    return row->composed[place];
}

/// Joins each mark with the letter right before it where the two have a composed form.
void ComposeAll(std::u32string& text) {
    std::size_t length = 0;
    for (const char32_t next : text) {
        if (IsCombiningMark(next) && length > 0) {
            if (const auto composed = Compose(text[length - 1], next)) {
                text[length - 1] = *composed;
                continue;
            }
        }
        text[length++] = next;
    }
    text.resize(length);
}

void AppendByteOrTwo(std::string& bytes, char32_t letter, CodePage page) {
    auto direct = ByteOf(letter, page);
    if (!direct) direct = ByteOf(WithCedilla(letter), page);
    if (direct) {
        bytes += *direct;
        return;
    }
    for (const auto& [mark, base, composed] : kCompositions) {
        const auto markByte = ByteOf(mark, page);
        if (!markByte) continue;
        const auto place = composed.find(letter);
        if (place == composed.npos) continue;
        if (const auto baseByte = ByteOf(base[place], page)) {
            bytes += {*baseByte, *markByte};
            return;
        }
    }
    bytes += '?';
}

/// What may follow a leading byte: how many bytes, and the range of the first of them. The range
/// is narrower than 80 to BF where it keeps out overlong forms, surrogates and values too large.
struct Continuation {
    int count = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
};

constexpr Continuation ContinuationOf(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) return {1};
    if (lead == 0xE0) return {2, 0xA0};
    if (lead == 0xED) return {2, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF) return {2};
    if (lead == 0xF0) return {3, 0x90};
    if (lead >= 0xF1 && lead <= 0xF3) return {3};
    if (lead == 0xF4) return {3, 0x80, 0x8F};
    return {};
}

/// Takes one code point from the front of a text that is not empty, U+FFFD for an ill-formed part.
char32_t TakeCodePoint(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    text.remove_prefix(1);
    if (lead < 0x80) return lead;

    auto [count, lowest, highest] = ContinuationOf(lead);
    if (count == 0) return kReplacement;
    auto codePoint = static_cast<char32_t>(lead & (0x3F >> count));
    for (; count > 0; --count) {
        if (text.empty()) return kReplacement;
        const auto next = static_cast<unsigned char>(text.front());
        if (next < lowest || next > highest) return kReplacement;
        codePoint = codePoint << 6 | (next & 0x3FU);
        text.remove_prefix(1);
        lowest = 0x80, highest = 0xBF;
    }
    return codePoint;
}

void AppendUtf8(std::string& utf8, char32_t codePoint) {
    const auto tail = [&](int shift) {
        utf8 += static_cast<char>(0x80 | (codePoint >> shift & 0x3F));
    };
    if (codePoint < 0x80) {
        utf8 += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        utf8 += static_cast<char>(0xC0 | codePoint >> 6);
        tail(0);
    } else if (codePoint < 0x10000) {
        utf8 += static_cast<char>(0xE0 | codePoint >> 12);
        tail(6), tail(0);
    } else {
        utf8 += static_cast<char>(0xF0 | codePoint >> 18);
        tail(12), tail(6), tail(0);
    }
}

}  // namespace

bool IsAscii(std::string_view text) {  // eight bytes at a time: most lines need no more
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::uint64_t any = 0;
    for (; text.size() >= sizeof any; text.remove_prefix(sizeof any)) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, text.data(), sizeof eight);
        any |= eight;
    }
    for (const char byte : text) any |= static_cast<unsigned char>(byte);
    return (any & kHighBits) == 0;
}

std::string ToCodePage(std::string_view utf8, CodePage page) {
    if (IsAscii(utf8)) return std::string(utf8);

    std::u32string letters;
    letters.reserve(utf8.size());
    for (auto rest = utf8; !rest.empty();) letters += TakeCodePoint(rest);
    ComposeAll(letters);

    std::string bytes;
    bytes.reserve(utf8.size());
    for (const char32_t letter : letters) AppendByteOrTwo(bytes, letter, page);
    return bytes;
}

std::optional<std::string> FromUtf16(std::string_view bytes) {
    const bool bigFirst = bytes.starts_with("\xFE\xFF");
    if (!bigFirst && !bytes.starts_with("\xFF\xFE")) return std::nullopt;
    const auto unit = [&](std::size_t at) {
        const char32_t one = static_cast<unsigned char>(bytes[at]);
        const char32_t other = static_cast<unsigned char>(bytes[at + 1]);
        return bigFirst ? one << 8 | other : other << 8 | one;
    };
    std::string utf8;
    std::size_t at = 2;
    for (; at + 1 < bytes.size(); at += 2) {
        char32_t letter = unit(at);
        const bool high = letter >= 0xD800 && letter < 0xDC00;
        const char32_t low = high && at + 3 < bytes.size() ? unit(at + 2) : 0;
        if (low >= 0xDC00 && low < 0xE000) {
            letter = 0x10000 + ((letter - 0xD800) << 10) + (low - 0xDC00);
            at += 2;
        } else if (letter >= 0xD800 && letter < 0xE000) {
            letter = kReplacement;
        }
        AppendUtf8(utf8, letter);
    }
    if (at < bytes.size()) AppendUtf8(utf8, kReplacement);
    return utf8;
}

std::string FromCodePage(std::string_view bytes, CodePage page) {
    if (IsAscii(bytes)) return std::string(bytes);

    std::u32string letters;
    letters.reserve(bytes.size());
    for (const char byte : bytes) letters += CodePointOf(byte, page);
    ComposeAll(letters);

    std::string utf8;
    utf8.reserve(2 * bytes.size());
    for (const char32_t letter : letters) AppendUtf8(utf8, letter);
    return utf8;
}

bool IsUtf8(std::string_view text) { return IsAscii(text) || ValidUtf8(text) == text; }

std::string ValidUtf8(std::string_view text) {
    if (IsAscii(text)) return std::string(text);
    std::string valid;
    valid.reserve(text.size());
    for (auto rest = text; !rest.empty();) AppendUtf8(valid, TakeCodePoint(rest));
    return valid;
}

std::size_t DisplayWidth(std::string_view utf8) {
    if (IsAscii(utf8)) return utf8.size();
    std::size_t width = 0;
    for (auto rest = utf8; !rest.empty();) width += IsCombiningMark(TakeCodePoint(rest)) ? 0 : 1;
    return width;
}

}  // namespace kv_tr
