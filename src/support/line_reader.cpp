// Lines of a text of any length, whatever ends them.
#include "support/line_reader.h"

#include <ios>
#include <utility>

#include "support/errors.h"
#include "support/ml_strings.h"

namespace kv_tr {
namespace {

using Traits = std::char_traits<char>;

Traits::int_type Peek(std::streambuf& source) {
    try {
        return source.sgetc();
    } catch (const std::ios_base::failure&) {
        throw RuntimeError(ErrorNumber::kDeviceError,
                           GetMlString(1088, "A fájlt nem sikerült végigolvasni"));
    }
}

bool Skip(std::streambuf& source, char expected) {
    if (Peek(source) != Traits::to_int_type(expected)) return false;
    source.sbumpc();
    return true;
}

}  // namespace

bool LineReader::SkipUtf8Mark() {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    while (begun_.size() < kMark.size() && Skip(source_, kMark[begun_.size()])) {
        begun_ += kMark[begun_.size()];
    }
    if (begun_ != kMark) return false;
    begun_.clear();
    return true;
}

bool LineReader::AtEnd() {
    return begun_.empty() && Traits::eq_int_type(Peek(source_), Traits::eof());
}

bool LineReader::Next() {
    line_ = std::exchange(begun_, {});
    ending_ = "";
    if (line_.empty() && AtEnd()) return false;
    for (auto c = Peek(source_); !Traits::eq_int_type(c, Traits::eof()); c = Peek(source_)) {
        source_.sbumpc();
        if (c == '\n') {
            ending_ = "\n";
            return true;
        }
        if (c == '\r') {
            ending_ = Skip(source_, '\n') ? "\r\n" : "\r";
            return true;
        }
        if (line_.size() == kLongestLine) {
            throw RuntimeError(ErrorNumber::kLineTooLong,
                               GetMlString(1089, "Egy sor túl hosszú egy szövegfájlhoz"));
        }
        line_ += Traits::to_char_type(c);
    }
    return true;
}

}  // namespace kv_tr
