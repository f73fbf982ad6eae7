// The lines of a text file as UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <streambuf>
#include <string>

#include "kv_tr/files/problem.h"
#include "kv_tr/text/code_page.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr {

/// Reads a text line by line. A text is UTF-8 when it begins with a UTF-8 mark, or when its first
/// part with letters beyond ASCII is valid UTF-8; otherwise it has single bytes of a code page.
/// Whatever follows, the lines are valid UTF-8. Throws TextError where the text cannot be read on.
class TextLines {
public:
    /// The source must outlive the object.
    TextLines(std::streambuf& source, CodePage page);

    bool AtEnd() { return reader_.AtEnd(); }
    /// The next line without its end. There must be one.
    std::string Next();
    /// The bytes that have been read already and come next; the last line may lack its end.
    std::string Ahead() const { return reader_.AllAhead(); }
    /// The number of the line that Next yielded last, from 1; 0 before the first.
    std::uint64_t Number() const { return number_; }

private:
    LineReader reader_;
    CodePage page_;
    std::optional<bool> utf8_;  // not known while all lines were ASCII
    std::uint64_t number_ = 0;
};

/// What is wrong with a file whose line of this number cannot be read.
Problem ProblemOf(const TextError& error, std::uint64_t line);

}  // namespace kv_tr
