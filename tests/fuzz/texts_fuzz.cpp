// Code pages, UTF-16 and UTF-8: whatever the bytes, what is read is valid and is written back.
#include <sstream>

#include "common/excerpt.h"
#include "fuzz/fuzz.h"
#include "kv_tr/files/text_lines.h"
#include "kv_tr/text/code_page.h"

namespace kv_tr::test {
namespace {

void CheckCodePage(std::string_view bytes, CodePage page) {
    const std::string utf8 = FromCodePage(bytes, page);
    Require(IsUtf8(utf8), "what a code page says is valid");
    const std::string back = ToCodePage(utf8, page);
    Require(FromCodePage(back, page) == utf8, "a text survives its way through the code page");
    Require(page != CodePage::kWindows1250 || back == bytes, "its bytes do, without marks");
    Require(ToCodePage(bytes, page).size() <= 2 * bytes.size(), "a letter takes two bytes at most");
}

void CheckLines(std::string_view bytes, CodePage page) {
    std::stringbuf source{std::string(bytes)};
    TextLines lines(source, page);
    try {
        std::uint64_t count = 0;
        for (; !lines.AtEnd(); ++count) {
            const std::string line = lines.Next();
            Require(IsUtf8(line) && line.find_first_of("\r\n") == line.npos, "lines are valid");
        }
        Require(lines.Number() == count && count <= LineCount(bytes), "lines are counted");
    } catch (const TextError&) {
        Require(bytes.size() > BlockReader::kLongestLine, "only long lines are too long");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = Input(data, size).Rest();
    for (const CodePage page : {CodePage::kWindows1250, CodePage::kWindows1258}) {
        CheckCodePage(bytes, page);
        CheckLines(bytes, page);
    }
    if (const auto utf8 = FromUtf16(bytes)) Require(IsUtf8(*utf8), "UTF-16 becomes valid UTF-8");
    const std::string valid = ValidUtf8(bytes);
    Require(IsUtf8(valid) && (valid == bytes) == IsUtf8(bytes), "only what is ill-formed changes");
    Require(DisplayWidth(bytes) <= bytes.size(), "a letter takes one column");
    const std::string shown = app::Excerpt(std::string(bytes));
    Require(std::ranges::none_of(shown, [](unsigned char c) { return c < ' ' || c == 0x7F; }),
            "no control character is shown");
    return 0;
}

}  // namespace kv_tr::test
