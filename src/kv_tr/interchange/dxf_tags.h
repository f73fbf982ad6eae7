// The groups of a DXF file, text or binary, as they stand in it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "kv_tr/interchange/dxf_trouble.h"

namespace kv_tr::dxf {

/// How the groups of a file are written.
struct Form {
    bool binary = false;
    bool wideCodes = true;            // two bytes for the code of a binary group
    std::string_view lineEnd = "\n";  // of a text
};

/// Where in an entity a group stands.
enum class Scope : std::uint8_t {
    kPlain,
    kForeign,   // between a 102 that opens a group of an application and the one that closes it
    kEmbedded,  // in an object inside the entity, after 101
    kExtended,  // extended data, from 1000 on
};

/// A group of the file, or a new one; `now` stands in the place of the value.
struct Tag {
    int code = 0;
    std::string_view head{};  // the bytes before the value
    std::string_view value{};
    std::string_view tail{};  // the bytes after the value, those of its line end
    std::uint64_t line = 0;   // of the value; in a binary file the number of the group
    Scope scope = Scope::kPlain;
    bool binary = false;
    std::variant<std::monostate, double, std::int64_t, std::string> now{};

    /// Text without blanks around it.
    std::string_view Text() const;
    /// What the value is; a Trouble where it is no number.
    double Number() const;
    std::int64_t Integer() const;
    /// Puts a number in the place of another one; a Trouble where the number is not finite.
    void Set(double number);
    void SetInteger(std::int64_t number);
};

/// A Trouble where the number is not finite.
Tag NewTag(int code, double number);
Tag NewInteger(int code, std::int64_t number);
Tag NewText(int code, std::string text);

/// Reads one group after the other; a Trouble where there is none.
class Reader {
public:
    explicit Reader(std::string_view bytes);

    const Form& FormOfFile() const { return form_; }
    /// The bytes before the first group.
    std::string_view Mark() const { return bytes_.substr(0, begin_); }
    /// False at the end of the file.
    bool Next(Tag& tag);
    std::uint64_t Line() const { return line_; }
    std::size_t Position() const { return at_; }
    std::string_view Rest() const { return bytes_.substr(at_); }

private:
    struct TextLine {
        std::string_view text, end;
    };
    TextLine NextLine();
    void NextText(Tag& tag);
    void NextBinary(Tag& tag);
    std::string_view Take(std::size_t count);
    [[noreturn]] void EndsEarly() const;

    std::string_view bytes_;
    Form form_;
    std::size_t begin_ = 0;
    std::size_t at_ = 0;
    std::uint64_t line_ = 0;
};

void Append(std::string& out, const Tag& tag, const Form& form);

}  // namespace kv_tr::dxf
