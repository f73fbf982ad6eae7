// Lines of a text of any length, whatever ends them.
#pragma once

#include <streambuf>
#include <string>
#include <string_view>

namespace kv_tr {

/// Reads lines that end in CR LF, LF or CR; the last line may lack an end.
/// Memory stays bounded: a line of more than kLongestLine bytes is RuntimeError kLineTooLong, a
/// failure of the system RuntimeError kDeviceError.
class LineReader {
public:
    static constexpr std::size_t kLongestLine = 1 << 20;

    /// The source must outlive the reader.
    explicit LineReader(std::streambuf& source) : source_(source) {}

    /// Skips a UTF-8 mark at the start of the text; true when there was one.
    bool SkipUtf8Mark();

    /// Reads the next line into Line() and Ending(); false at the end of the text.
    bool Next();

    bool AtEnd();

    std::string_view Line() const { return line_; }
    /// What ended the line: CR LF, LF, CR, or nothing.
    std::string_view Ending() const { return ending_; }

private:
    std::streambuf& source_;
    std::string begun_;  // of a line, while looking for the mark
    std::string line_;
    std::string_view ending_ = "";
};

}  // namespace kv_tr
