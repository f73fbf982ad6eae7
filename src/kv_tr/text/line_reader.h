// Lines of a text of any length, whatever ends them.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <string_view>

namespace kv_tr {

/// A line, and what ended it: CR LF, LF, CR, or nothing for the last line of a text.
struct TextLine {
    std::string_view text;
    std::string_view ending;
};

/// Takes the first line off a text that is not empty.
TextLine TakeLine(std::string_view& text);

/// Why a text cannot be read on.
class TextError : public std::runtime_error {
public:
    enum class Cause {
        kLineTooLong,  ///< a line too long to be one of a text
        kUnreadable,   ///< the system failed
    };

    explicit TextError(Cause cause);

    Cause Why() const { return cause_; }

private:
    Cause cause_;
};

/// Reads a text in blocks of whole lines.
///
/// Bytes 26, with which old programs end a text, are not read where the text ends with them.
/// Memory stays bounded: a line of more than kLongestLine bytes is a TextError, as is a failure of
/// the system, either after the lines before it.
class BlockReader {
public:
    static constexpr std::size_t kLongestLine = 1 << 20;

    /// The source must outlive the reader.
    explicit BlockReader(std::streambuf& source) : source_(source) {}

    /// Skips a UTF-8 mark at the start of the text; true when there was one.
    bool SkipUtf8Mark();

    /// Replaces the block by the next lines; false at the end of the text. Yields what there is
    /// when the source has nothing more at the moment, so that nobody waits for an answer.
    bool Next(std::string& block);

    /// Whether the source has nothing more at the moment.
    bool IsWaiting() { return source_.in_avail() <= 0; }

    /// What has been read already behind the block.
    std::string_view Behind() const { return rest_; }

private:
    bool Append(std::string& text);

    std::streambuf& source_;
    std::string rest_;  // read, but in no block yet
};

/// Reads a text line by line, as BlockReader does.
class LineReader {
public:
    explicit LineReader(std::streambuf& source) : blocks_(source) {}

    bool SkipUtf8Mark() { return blocks_.SkipUtf8Mark(); }
    bool AtEnd();
    /// The next line without its end, valid until another is read. There must be one.
    std::string_view Next() { return TakeLine(rest_).text; }
    /// Lines that have been read already and come next, valid until AtEnd is called.
    std::string_view Ahead() const { return rest_; }
    /// The same and the part of a line that has been read behind them.
    std::string AllAhead() const { return std::string(rest_).append(blocks_.Behind()); }

private:
    BlockReader blocks_;
    std::string block_;
    std::string_view rest_;  // of the block
};

}  // namespace kv_tr
