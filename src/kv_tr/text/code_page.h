// Text is UTF-8 inside the program and single-byte in files: the conversion both ways.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kv_tr {

enum class CodePage {
    kWindows1250,  // Hungarian, Romanian, Serbian Latin, English
    kWindows1258,  // Vietnamese
};

/// UTF-8 to single-byte text. A letter the page lacks and every ill-formed part become '?'.
///
/// Letters may come composed or as a base with combining marks, the result is the same. What
/// windows-1258 lacks as one byte but has as a letter and a tone mark is written as these two
/// bytes (ế as ê and acute). The page's own letters with cedilla stand for the Romanian ones
/// with a comma below. A byte that a page leaves unassigned stands for the C1 control of the
/// same value, so that reading and writing back loses nothing.
std::string ToCodePage(std::string_view utf8, CodePage page);

/// Single-byte text to UTF-8, always valid. A letter and a tone mark after it become the composed
/// letter where there is one; any other mark stays as it is.
std::string FromCodePage(std::string_view bytes, CodePage page);

/// UTF-16 that begins with its mark, in either order of bytes, as UTF-8 without one; nothing for
/// other bytes. A surrogate without its other half and half a unit at the end become U+FFFD.
std::optional<std::string> FromUtf16(std::string_view bytes);

bool IsAscii(std::string_view text);

/// Whether a text is valid UTF-8.
bool IsUtf8(std::string_view text);

/// The text itself when it is valid UTF-8, else with every ill-formed part replaced by U+FFFD.
///
/// An ill-formed part is a byte that cannot begin a code point, or the longest beginning of a
/// sequence that breaks off. Overlong forms, surrogates and values above U+10FFFF are ill-formed.
std::string ValidUtf8(std::string_view text);

/// How many columns a UTF-8 text takes: its code points without the combining marks U+0300 to
/// U+036F. An ill-formed part counts as one.
std::size_t DisplayWidth(std::string_view utf8);

}  // namespace kv_tr
