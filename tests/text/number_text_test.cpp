// The short ways of writing and reading numbers against the long ones.
#include "kv_tr/text/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <iterator>
#include <random>

namespace kv_tr::test {
namespace {

/// Numbers of all sizes with a few decimals, as surveyors write them, and their neighbours.
double Number(std::mt19937_64& random) {
    const auto digits = static_cast<double>(random() % 1'000'000'000'000'000);
    const double value = std::trunc(digits / std::pow(10, static_cast<double>(random() % 15))) /
                         std::pow(10, static_cast<double>(random() % 5));
    const double neighbour = random() % 4 == 0 ? std::nextafter(value, 1e300) : value;
    return random() % 2 == 0 ? -neighbour : neighbour;
}

TEST(FixedText, RoundsTheShortestTextHalfAwayFromZero) {
    const std::tuple<double, int, std::string> cases[] = {{0.0, 0, "0"},
                                                          {-0.0004, 3, "0.000"},
                                                          {-0.0005, 3, "-0.001"},
                                                          {1.0005, 3, "1.001"},
                                                          {99.9995, 3, "100.000"},
                                                          {0.05, 1, "0.1"},
                                                          {9.5, 0, "10"},
                                                          {1e15, 1, "1000000000000000.0"},
                                                          {0.1, 15, "0.100000000000000"},
                                                          {123456789.0625, 3, "123456789.063"}};
    for (const auto& [value, decimals, text] : cases) {
        EXPECT_EQ(FixedText(value, decimals), text);
    }
    std::mt19937_64 random(5);
    for (int i = 0; i < 20000; ++i) {
        const double value = Number(random);
        const int decimals = static_cast<int>(random() % 7);
        const std::string text = FixedText(value, decimals, {','});
        const auto sign = text.find(',');
        EXPECT_EQ(sign,
                  decimals > 0 ? text.size() - 1 - static_cast<std::size_t>(decimals) : text.npos);
        const auto back = ParseNumber(text, true);
        ASSERT_TRUE(back) << text;
        EXPECT_LE(std::abs(*back - value), 0.5 * std::pow(10, -decimals) + 2e-16 * std::abs(value))
            << text;
        EXPECT_FALSE(text.starts_with("-") && *back == 0) << text;
        char place[kMostFixed + 1];
        std::fill(std::begin(place), std::end(place), '#');
        if (const char* end = WriteFixed(place, value, decimals, {','})) {
            EXPECT_EQ(std::string(place, end - place), text);
            EXPECT_EQ(*end, '#') << "no more than the text";
        }
    }
}

TEST(NextNumber, IsTheNextFieldParsed) {
    std::mt19937_64 random(7);
    const std::string bytes = "0123456789012345678901234567890123456789..,,-+e;'\" \t  x";
    for (int i = 0; i < 50000; ++i) {
        std::string line;
        for (auto left = random() % 24; left > 0; --left) line += bytes[random() % bytes.size()];
        for (const bool comma : {false, true}) {
            std::string_view fused = line;
            std::string_view apart = line;
            for (int field = 0; field < 3; ++field) {
                const auto [text, value] = NextNumber(fused, comma);
                const auto expected = NextField(apart, comma);
                ASSERT_EQ(text, expected) << line;
                ASSERT_EQ(fused, apart) << line;
                ASSERT_EQ(value, ParseNumber(expected, comma)) << line;
                if (!value || comma) continue;
                ASSERT_EQ(*value, std::strtod(std::string(text).c_str(), nullptr)) << line;
            }
        }
    }
}

}  // namespace
}  // namespace kv_tr::test
