// Lines of coordinates: the same result as one text and as blocks on several threads, every byte
// that is no coordinate kept.
#include <sstream>

#include "common/coordinate_file.h"
#include "fuzz/fuzz.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/errors.h"

namespace kv_tr::test {
namespace {

/// A source that hands over few bytes at a time, as a pipe may.
class Pipe : public std::streambuf {
public:
    Pipe(std::string text, std::size_t most) : text_(std::move(text)), most_(most) {}

protected:
    int_type underflow() override {
        if (at_ >= text_.size()) return traits_type::eof();
        const std::size_t count = std::min(most_, text_.size() - at_);
        setg(&text_[at_], &text_[at_], &text_[at_] + count);
        at_ += count;
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string text_;
    std::size_t most_;
    std::size_t at_ = 0;
};

PointMap AnyMap(Input& input) {
    const int kind = input.Below(27);
    if (kind < 24) {
        const auto number = NumberOf(Type::kFirstNational) + kind;
        const Transformation national = *NationalTransformation(static_cast<Type>(number));
        const auto inverse = ExactInverse::Of(national);
        if (input.Flag() && inverse) return *inverse;
        return national;
    }
    return Transformation{.type = Type::kAffine,
                          .a = {100.5, 1.0001, -0.0002},
                          .b = {-7, 0.0002, kind == 25 ? 1e300 : 1.0001}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const int flags = input.Byte();
    const PointMap map = AnyMap(input);
    const app::CoordinateOptions options{.decimals = input.Below(16),
                                         .noId = flags % 2 == 1,
                                         .keepGoing = flags / 2 % 2 == 1,
                                         .decimalComma = flags / 4 % 2 == 1};
    const auto most = static_cast<std::size_t>(1 + input.Byte());
    const std::string text(input.Rest());
    const app::TransformedLines whole = app::TransformLines(text, map, options);
    std::string written;
    const app::CoordinateOutput output{.write = [&](std::string_view bytes) { written += bytes; },
                                       .goOn = [](auto, auto) { return true; }};
    Pipe pipe(text, most);
    app::CoordinateResult result;
    try {
        result = app::TransformText(pipe, output, map, options);
    } catch (const RuntimeError&) {
        Require(text.size() > BlockReader::kLongestLine, "only long lines are too long");
        return 0;
    }
    const std::size_t end = text.find_last_not_of('\x1A') + 1;  // what ends a text of old programs
    if (!text.starts_with("\xEF\xBB\xBF") && end == text.size()) {
        Require(written == whole.text, "blocks give the text of the whole");
        Require(result.lines == whole.lines && result.badLines == whole.badLines, "and its counts");
        Require(result.endedBy == whole.stoppedAt, "and its end");
    }
    Require(result.lines <= LineCount(text), "the line that ended the work exists");
    if (options.keepGoing) {
        Require(!whole.stoppedAt, "bad lines are passed on");
        for (const char sign : {'\n', '\r', '"', '\'', '\t', ';'})
            Require(std::ranges::count(whole.text, sign) == std::ranges::count(text, sign),
                    "what is no coordinate stays");
    }
    return 0;
}

}  // namespace kv_tr::test
