// The groups of a DXF file, text or binary, as they stand in it.
#include "kv_tr/interchange/dxf_tags.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "kv_tr/text/number_text.h"

namespace kv_tr::dxf {
namespace {

using Kind = DrawingProblem::Kind;

constexpr std::string_view kBinaryMark("AutoCAD Binary DXF\r\n\x1A\0", 22);
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestExcerpt = 60;

/// What the value of a binary group is, by its code.
enum class Storage { kText, kReal, kShort, kLong, kLongLong, kByte, kChunk };
struct Codes {
    int last;
    Storage storage;
};
constexpr std::array kStorages{
    Codes{9, Storage::kText},     Codes{59, Storage::kReal},   Codes{79, Storage::kShort},
    Codes{89, Storage::kText},    Codes{99, Storage::kLong},   Codes{109, Storage::kText},
    Codes{149, Storage::kReal},   Codes{159, Storage::kText},  Codes{169, Storage::kLongLong},
    Codes{179, Storage::kShort},  Codes{209, Storage::kText},  Codes{239, Storage::kReal},
    Codes{269, Storage::kText},   Codes{289, Storage::kShort}, Codes{299, Storage::kByte},
    Codes{309, Storage::kText},   Codes{319, Storage::kChunk}, Codes{369, Storage::kText},
    Codes{389, Storage::kShort},  Codes{399, Storage::kText},  Codes{409, Storage::kShort},
    Codes{419, Storage::kText},   Codes{429, Storage::kLong},  Codes{439, Storage::kText},
    Codes{459, Storage::kLong},   Codes{469, Storage::kReal},  Codes{1003, Storage::kText},
    Codes{1004, Storage::kChunk}, Codes{1009, Storage::kText}, Codes{1059, Storage::kReal},
    Codes{1070, Storage::kShort}, Codes{1071, Storage::kLong}, Codes{32767, Storage::kText},
};

Storage StorageOf(int code) {
    return std::ranges::lower_bound(kStorages, code, {}, &Codes::last)->storage;
}

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

template <class Number>
Number FromBytes(std::string_view bytes) {
    Number number;
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

template <class Number>
void AppendBytes(std::string& out, Number number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    out.append(bytes, sizeof number);
}

std::int64_t SignedOf(std::string_view bytes) {
    switch (bytes.size()) {
        case 1: return FromBytes<std::int8_t>(bytes);
        case 2: return FromBytes<std::int16_t>(bytes);
        case 4: return FromBytes<std::int32_t>(bytes);
        default: return FromBytes<std::int64_t>(bytes);
    }
}

std::optional<std::int64_t> WholeNumber(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc{} || end != text.data() + text.size()) return {};
    return number;
}

std::string Excerpt(std::string_view text) { return std::string(text.substr(0, kLongestExcerpt)); }

[[noreturn]] void NotANumber(const Tag& tag) {
    throw Trouble{{.kind = Kind::kNotANumber, .line = tag.line, .text = Excerpt(tag.Text())}};
}

/// A number that a drawing can hold: what leaves the range of doubles has no image.
double Finite(double number) {
    if (std::isfinite(number)) return number;
    throw Trouble{{.kind = Kind::kNoImage, .reason = NoSource::kNotReached}};
}

void AppendBinary(std::string& out, const Tag& tag) {
    const Storage storage = StorageOf(tag.code);
    if (const auto* text = std::get_if<std::string>(&tag.now)) {
        out += *text;
        out += '\0';
    } else if (const auto* real = std::get_if<double>(&tag.now)) {
        AppendBytes(out, *real);
    } else {
        const auto number = std::get<std::int64_t>(tag.now);
        if (storage == Storage::kLong) {
            AppendBytes(out, static_cast<std::int32_t>(number));
        } else {
            AppendBytes(out, static_cast<std::int16_t>(number));
        }
    }
}

void AppendText(std::string& out, const Tag& tag) {
    if (const auto* text = std::get_if<std::string>(&tag.now)) {
        out += *text;
    } else if (const auto* real = std::get_if<double>(&tag.now)) {
        out += ShortestText(*real);
    } else {
        out += std::to_string(std::get<std::int64_t>(tag.now));
    }
}

void AppendCode(std::string& out, int code, const Form& form) {
    if (!form.binary) {
        out += PadLeft(std::to_string(code), 3);
        out += form.lineEnd;
    } else if (form.wideCodes) {
        AppendBytes(out, static_cast<std::int16_t>(code));
    } else if (code < 255) {
        out += static_cast<char>(code);
    } else {
        out += '\xFF';
        AppendBytes(out, static_cast<std::int16_t>(code));
    }
}

}  // namespace

std::string_view Tag::Text() const {
    if (const auto* text = std::get_if<std::string>(&now)) return *text;
    return binary ? value : Trimmed(value);
}

double Tag::Number() const {
    if (const auto* number = std::get_if<double>(&now)) return *number;
    if (binary) {
        if (StorageOf(code) == Storage::kReal) return FromBytes<double>(value);
        return static_cast<double>(Integer());
    }
    const auto number = ParseNumber(Trimmed(value));
    if (!number) NotANumber(*this);
    return *number;
}

std::int64_t Tag::Integer() const {
    if (const auto* number = std::get_if<std::int64_t>(&now)) return *number;
    if (binary) return SignedOf(value);
    const auto number = WholeNumber(Trimmed(value));
    if (!number) NotANumber(*this);
    return *number;
}

void Tag::Set(double number) {
    if (number != Number()) now = Finite(number);
}

void Tag::SetInteger(std::int64_t number) {
    if (number != Integer()) now = number;
}

Tag NewTag(int code, double number) { return {.code = code, .now = Finite(number)}; }
Tag NewInteger(int code, std::int64_t number) { return {.code = code, .now = number}; }
Tag NewText(int code, std::string text) { return {.code = code, .now = std::move(text)}; }

Reader::Reader(std::string_view bytes) : bytes_(bytes) {
    if (bytes_.starts_with(kBinaryMark)) {
        form_.binary = true;
        at_ = begin_ = kBinaryMark.size();
        // The first group is 0 SECTION: after the bytes of the code comes a letter.
        form_.wideCodes = bytes_.size() > at_ + 1 && bytes_[at_ + 1] == '\0';
        return;
    }
    if (bytes_.starts_with(kUtf8Mark)) at_ = begin_ = kUtf8Mark.size();
    const auto end = bytes_.find('\n');
    if (end != bytes_.npos && end > 0 && bytes_[end - 1] == '\r') form_.lineEnd = "\r\n";
}

void Reader::EndsEarly() const { throw Trouble{{.kind = Kind::kEndsEarly, .line = line_}}; }

Reader::TextLine Reader::NextLine() {
    ++line_;
    if (at_ == bytes_.size()) EndsEarly();
    const std::string_view rest = bytes_.substr(at_);
    const auto end = std::min(rest.find('\n'), rest.size());
    const std::size_t text = end > 0 && end < rest.size() && rest[end - 1] == '\r' ? end - 1 : end;
    const std::size_t all = std::min(end + 1, rest.size());
    at_ += all;
    return {rest.substr(0, text), rest.substr(text, all - text)};
}

void Reader::NextText(Tag& tag) {
    const std::size_t start = at_;
    const auto code = NextLine();
    const auto number = WholeNumber(Trimmed(code.text));
    if (!number || *number < -9 || *number > 32767) {
        throw Trouble{
            {.kind = Kind::kNotAGroupCode, .line = line_, .text = Excerpt(Trimmed(code.text))}};
    }
    tag.code = static_cast<int>(*number);
    tag.head = bytes_.substr(start, at_ - start);
    const auto value = NextLine();
    tag.value = value.text;
    tag.tail = value.end;
}

std::string_view Reader::Take(std::size_t count) {
    if (bytes_.size() - at_ < count) EndsEarly();
    const auto taken = bytes_.substr(at_, count);
    at_ += count;
    return taken;
}

void Reader::NextBinary(Tag& tag) {
    ++line_;
    const std::size_t start = at_;
    if (form_.wideCodes) {
        tag.code = FromBytes<std::int16_t>(Take(2));
    } else {
        tag.code = static_cast<unsigned char>(Take(1)[0]);
        if (tag.code == 255) tag.code = FromBytes<std::int16_t>(Take(2));
    }
    tag.head = bytes_.substr(start, at_ - start);
    tag.tail = {};
    switch (StorageOf(tag.code)) {
        case Storage::kText: {
            const auto end = bytes_.find('\0', at_);
            if (end == bytes_.npos) EndsEarly();
            tag.value = Take(end - at_);
            tag.tail = Take(1);
            return;
        }
        case Storage::kReal:
        case Storage::kLongLong: tag.value = Take(8); return;
        case Storage::kShort: tag.value = Take(2); return;
        case Storage::kLong: tag.value = Take(4); return;
        case Storage::kByte: tag.value = Take(1); return;
        case Storage::kChunk:
            tag.value = Take(1);
            tag.tail = Take(static_cast<unsigned char>(tag.value[0]));
            return;
    }
}

bool Reader::Next(Tag& tag) {
    if (at_ == bytes_.size()) return false;
    tag.scope = Scope::kPlain;
    tag.binary = form_.binary;
    tag.now = std::monostate{};
    if (form_.binary) {
        NextBinary(tag);
    } else {
        NextText(tag);
    }
    tag.line = line_;
    return true;
}

void Append(std::string& out, const Tag& tag, const Form& form) {
    if (std::holds_alternative<std::monostate>(tag.now)) {
        out.append(tag.head).append(tag.value).append(tag.tail);
        return;
    }
    if (tag.head.empty()) {
        AppendCode(out, tag.code, form);
    } else {
        out += tag.head;
    }
    if (form.binary) {
        AppendBinary(out, tag);
    } else {
        AppendText(out, tag);
        out += tag.head.empty() ? form.lineEnd : tag.tail;
    }
}

}  // namespace kv_tr::dxf
