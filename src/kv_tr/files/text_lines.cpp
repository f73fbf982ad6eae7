// The lines of a text file as UTF-8.
#include "kv_tr/files/text_lines.h"

namespace kv_tr {

TextLines::TextLines(std::streambuf& source, CodePage page) : reader_(source), page_(page) {
    if (reader_.SkipUtf8Mark()) utf8_ = true;
}

std::string TextLines::Next() {
    ++number_;
    const std::string_view line = reader_.Next();
    if (IsAscii(line)) return std::string(line);
    if (!utf8_) utf8_ = IsUtf8(line) && IsUtf8(reader_.Ahead());
    return *utf8_ ? ValidUtf8(line) : FromCodePage(line, page_);
}

Problem ProblemOf(const TextError& error, std::uint64_t line) {
    const bool tooLong = error.Why() == TextError::Cause::kLineTooLong;
    return {.kind = tooLong ? Problem::Kind::kLineTooLong : Problem::Kind::kUnreadable,
            .line = line};
}

}  // namespace kv_tr
