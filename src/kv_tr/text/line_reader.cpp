// Lines of a text of any length, whatever ends them.
#include "kv_tr/text/line_reader.h"

#include <algorithm>
#include <ios>
#include <utility>

namespace kv_tr {
namespace {

constexpr std::size_t kBlockSize = 1 << 18;

/// Where the first line ends, the size of the text if nowhere. A text may lack one kind of line
/// end throughout, so it is searched for both kinds a piece at a time.
std::size_t FirstLineEnd(std::string_view text) {
    constexpr std::size_t kPiece = 512;
    for (std::size_t begin = 0; begin < text.size(); begin += kPiece) {
        const auto piece = text.substr(begin, kPiece);
        const auto beforeLf = piece.substr(0, piece.find('\n'));
        const auto beforeCr = beforeLf.substr(0, beforeLf.find('\r'));
        if (beforeCr.size() < piece.size()) return begin + beforeCr.size();
    }
    return text.size();
}

/// Where the last whole line behind a place ends; 0 if none does. A CR at the very end of the
/// text may yet be followed by its LF.
std::size_t LastLineEnd(std::string_view text, std::size_t from) {
    auto searched = text.substr(from);
    if (searched.ends_with('\r')) searched.remove_suffix(1);
    const std::size_t place = searched.find_last_of("\r\n");
    return place == searched.npos ? 0 : from + place + 1;
}

}  // namespace

TextError::TextError(Cause cause)
    : std::runtime_error(cause == Cause::kLineTooLong ? "a line is too long for a text file"
                                                      : "the file cannot be read to its end"),
      cause_(cause) {}

TextLine TakeLine(std::string_view& text) {
    const std::size_t end = FirstLineEnd(text);
    const auto line = text.substr(0, end);
    text.remove_prefix(end);
    const std::size_t length = text.starts_with("\r\n") ? 2 : std::min<std::size_t>(text.size(), 1);
    const auto ending = text.substr(0, length);
    text.remove_prefix(length);
    return {line, ending};
}

bool BlockReader::Append(std::string& text) {
    using Traits = std::char_traits<char>;
    try {
        if (Traits::eq_int_type(source_.sgetc(), Traits::eof())) return false;
        constexpr std::streamsize kMost = kBlockSize / 4;
        const auto count = std::clamp<std::streamsize>(source_.in_avail(), 1, kMost);
        const std::size_t before = text.size();
        text.resize(before + static_cast<std::size_t>(count));
        const auto got = source_.sgetn(text.data() + before, count);
        text.resize(before + static_cast<std::size_t>(got));
        return true;
    } catch (const std::ios_base::failure&) {
        throw TextError(TextError::Cause::kUnreadable);
    }
}

bool BlockReader::SkipUtf8Mark() {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    while (rest_.size() < kMark.size() && kMark.starts_with(rest_) && Append(rest_)) {
    }
    if (!rest_.starts_with(kMark)) return false;
    rest_.erase(0, kMark.size());
    return true;
}

bool BlockReader::Next(std::string& block) {
    block = std::exchange(rest_, {});
    std::size_t whole = LastLineEnd(block, 0);
    while (whole == 0 ? block.size() <= kLongestLine : block.size() < kBlockSize && !IsWaiting()) {
        const std::size_t before = block.size();
        try {
            if (!Append(block)) {
                constexpr char kEndOfText = 26;
                block.resize(block.find_last_not_of(kEndOfText) + 1);
                whole = block.size();
                break;
            }
        } catch (const TextError&) {
            if (whole == 0) throw;
            break;  // the same will happen when the next block is read
        }
        whole = std::max(whole, LastLineEnd(block, before - std::min<std::size_t>(before, 1)));
    }
    if (block.size() > kLongestLine && FirstLineEnd(block) > kLongestLine) {
        throw TextError(TextError::Cause::kLineTooLong);
    }
    rest_ = block.substr(whole);
    block.resize(whole);
    return whole > 0;
}

bool LineReader::AtEnd() {
    if (rest_.empty() && blocks_.Next(block_)) rest_ = block_;
    return rest_.empty();
}

}  // namespace kv_tr
