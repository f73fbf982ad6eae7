#include "kv_tr/text/line_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "kv_tr/published/errors.h"

namespace kv_tr {
namespace {

/// Hands over a text in pieces, as a pipe does; between two of them nothing is at hand.
class Pieces : public std::streambuf {
public:
    Pieces(std::string text, std::size_t length) : text_(std::move(text)), length_(length) {}

protected:
    int_type underflow() override {
        if (next_ == text_.size()) return traits_type::eof();
        const std::size_t count = std::min(length_, text_.size() - next_);
        setg(&text_[next_], &text_[next_], &text_[next_] + count);
        next_ += count;
        return traits_type::to_int_type(*gptr());
    }

private:
    std::string text_;
    std::size_t length_;
    std::size_t next_ = 0;
};

TEST(BlockReader, YieldsWholeLinesHoweverTheTextArrives) {
    std::mt19937 random(1);
    for (const std::size_t length : {1U, 2U, 7U, 300U, 1000000U}) {
        std::string text;
        for (std::size_t lines = 4000; lines-- > 0;) {
            text.append(1 + random() % (random() % 50 == 0 ? 2000 : 20), 'x');
            text += std::array{"\r\n", "\n", "\r"}[random() % 3];
        }
        text += "end";
        Pieces pieces(text, length);
        BlockReader reader(pieces);
        std::string joined;
        for (std::string block; reader.Next(block); joined += block) {
            if (joined.size() + block.size() == text.size()) continue;
            EXPECT_TRUE(block.ends_with('\n') || block.ends_with('\r'));
            EXPECT_FALSE(block.ends_with('\r') && text[joined.size() + block.size()] == '\n');
            EXPECT_LE(block.size(), 1U << 20);
        }
        EXPECT_EQ(joined, text);

        std::string_view rest = joined;
        std::size_t lines = 0;
        for (; !rest.empty(); ++lines) {
            const auto [line, ending] = TakeLine(rest);
            EXPECT_EQ(line.find_first_of("\r\n"), line.npos);
            EXPECT_EQ(ending.empty(), rest.empty());
        }
        EXPECT_EQ(lines, 4001U);
    }
}

TEST(BlockReader, RefusesALineThatIsTooLongAfterTheLinesBeforeIt) {
    for (const std::size_t piece : {100U, 3000000U}) {
        for (const char* ending : {"", "\nmore\n"}) {
            const std::string longest(BlockReader::kLongestLine, 'x');
            Pieces pieces("a\n" + longest + "\nb\n" + longest + "x" + ending, piece);
            LineReader reader(pieces);
            EXPECT_FALSE(reader.AtEnd());
            EXPECT_EQ(reader.Next(), "a");
            EXPECT_FALSE(reader.AtEnd());
            EXPECT_EQ(reader.Next(), longest);
            EXPECT_FALSE(reader.AtEnd());
            EXPECT_EQ(reader.Next(), "b");
            EXPECT_THROW(reader.AtEnd(), TextError);
        }
    }
}

}  // namespace
}  // namespace kv_tr
