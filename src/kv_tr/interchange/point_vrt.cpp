// The ground control points of a GDAL virtual raster.
#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <utility>

#include "kv_tr/interchange/point_readers.h"

namespace kv_tr {
namespace {

constexpr std::string_view kXmlBlanks = " \t\r\n";

void AppendUtf8(std::string& text, std::uint32_t code) {
    const auto byte = [&text](std::uint32_t value) { text += static_cast<char>(value); };
    if (code < 0x80) {
        byte(code);
    } else if (code < 0x800) {
        byte(0xC0 | (code >> 6));
        byte(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        byte(0xE0 | (code >> 12));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    } else {
        byte(0xF0 | (code >> 18));
        byte(0x80 | ((code >> 12) & 0x3F));
        byte(0x80 | ((code >> 6) & 0x3F));
        byte(0x80 | (code & 0x3F));
    }
}

/// The character of an entity without "&" and ";"; false for one that XML does not know.
bool AppendEntity(std::string& text, std::string_view name) {
    constexpr std::pair<std::string_view, char> kEntities[] = {
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& [known, character] : kEntities) {
        if (name != known) continue;
        text += character;
        return true;
    }
    if (!name.starts_with('#')) return false;
    name.remove_prefix(1);
    const bool hexadecimal = name.starts_with('x');
    if (hexadecimal) name.remove_prefix(1);
    std::uint32_t code = 0;
    const auto [end, error] =
        std::from_chars(name.data(), name.data() + name.size(), code, hexadecimal ? 16 : 10);
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (error != std::errc{} || end != name.data() + name.size() || code == 0 || surrogate ||
        code > 0x10FFFF) {
        return false;
    }
    AppendUtf8(text, code);
    return true;
}

/// The text of an attribute; an entity that nobody knows stays as it is.
std::string Unescaped(std::string_view value) {
    std::string text;
    while (!value.empty()) {
        const auto end = value.find(';');
        if (value.front() == '&' && end != value.npos &&
            AppendEntity(text, value.substr(1, end - 1))) {
            value.remove_prefix(end + 1);
        } else {
            text += value.front();
            value.remove_prefix(1);
        }
    }
    return text;
}

/// A start tag: its name, and its attributes as they stand in the text.
struct Tag {
    std::string_view name;  // with "/" before that of an end tag
    std::string_view all;
    std::map<std::string_view, std::string_view> attributes;
    bool whole = false;  // it ends, and its attributes have values between quotes
};

std::string_view TakeUntil(std::string_view& text, std::string_view ends) {
    const auto taken = text.substr(0, text.find_first_of(ends));
    text.remove_prefix(taken.size());
    return taken;
}

void SkipBlanks(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kXmlBlanks), text.size()));
}

/// Takes all up to the next tag off a text, comments too, and the tag.
std::optional<Tag> TakeTag(std::string_view& text) {
    for (;;) {
        TakeUntil(text, "<");
        if (text.empty()) return std::nullopt;
        if (!text.starts_with("<!--")) break;
        const auto end = text.find("-->");
        text.remove_prefix(end == text.npos ? text.size() : end + 3);
    }
    const std::string_view begin = text;
    text.remove_prefix(1);
    Tag tag{.name = TakeUntil(text, " \t\r\n>"), .all = {}, .attributes = {}};
    if (tag.name.ends_with('/')) tag.name.remove_suffix(1);
    for (SkipBlanks(text); !text.empty(); SkipBlanks(text)) {
        if (text.front() == '>') {
            text.remove_prefix(1);
            tag.whole = true;
            break;
        }
        if (text.front() == '/' || text.front() == '?') {
            text.remove_prefix(1);
            continue;
        }
        const auto name = TakeUntil(text, " \t\r\n=<>");
        SkipBlanks(text);
        if (!text.starts_with('=')) break;
        text.remove_prefix(1);
        SkipBlanks(text);
        if (!text.starts_with('"') && !text.starts_with('\'')) break;
        const auto quote = text.substr(0, 1);
        text.remove_prefix(1);
        tag.attributes[name] = TakeUntil(text, quote);
        if (text.empty()) break;
        text.remove_prefix(1);
    }
    tag.all = begin.substr(0, begin.size() - text.size());
    return tag;
}

}  // namespace

void ReadVrt(std::string_view text, PointFile& file) {
    PointTaker taker(text, file.problems);
    file.layout.columns = {"id", "src_first", "src_second", "dst_first", "dst_second"};
    bool inList = false;
    bool found = false;
    std::string_view rest = text;
    while (const auto tag = TakeTag(rest)) {
        if (taker.IsFull()) return;
        const auto& attributes = tag->attributes;
        if (tag->name == "GCPList") {
            inList = found = true;
            if (const auto crs = attributes.find("Projection"); crs != attributes.end())
                file.crs = Unescaped(crs->second);
        } else if (tag->name == "/GCPList") {
            inList = false;
        }
        if (!tag->whole) taker.Add(Problem::Kind::kDamaged, tag->all);
        if (!inList || !tag->whole || tag->name != "GCP") continue;
        std::vector<std::string_view> numbers;
        for (const char* name : {"Pixel", "Line", "X", "Y"}) {
            const auto value = attributes.find(name);
            if (value != attributes.end()) numbers.push_back(value->second);
        }
        auto point = taker.PointOf(numbers, tag->all);
        if (!point || !taker.Complete()) continue;
        const auto id = attributes.find("Id");
        const bool named = id != attributes.end() && !id->second.empty();
        point->id = named ? Unescaped(id->second) : std::to_string(file.points.size() + 1);
        file.points.push_back(std::move(*point));
    }
    if (!found || inList) taker.Add(Problem::Kind::kDamaged, text.substr(text.size()));
}

}  // namespace kv_tr
