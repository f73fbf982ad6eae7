// Numbers written and read at their edges, with both decimal signs.
#include "support/number_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "helpers/recording_platform.h"

namespace kv_tr {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(FormatFixed, WritesEveryKindOfValue) {
    const test::RecordingPlatform platform;
    const std::tuple<double, std::uint8_t, std::uint8_t, std::string> cases[] = {
        // clang-format off
        {3.14159, 3, 10, "     3.142"}, {-1234567.5, 1, 5, "-1234567.5"}, {999.9995, 3, 0, "1000.000"},
        {0.5, 0, 0, "1"}, {0.49999999999999994, 0, 0, "0"}, {-0.0, 2, 0, "0.00"}, {-0.0004, 3, 0, "0.000"},
        {0.0006, 3, 0, "0.001"}, {1e-300, 3, 0, "0.000"}, {0.1, 20, 0, "0.10000000000000000000"},
        {1e23, 1, 0, "1" + std::string(23, '0') + ".0"}, {1e300, 0, 0, "1" + std::string(300, '0')},
        {kInfinity, 3, 5, "  inf"}, {-kInfinity, 3, 0, "-inf"}, {-std::nan(""), 3, 0, "nan"},
        // clang-format on
    };
    for (const auto& [value, decimals, width, text] : cases)
        EXPECT_EQ(FormatFixed(value, decimals, width), text);
}

TEST(FormatFixed, RoundsEveryTieAwayFromZero) {
    const test::RecordingPlatform platform;
    const auto text = [](int n) {
        return std::to_string(n / 1000) + "." + std::to_string(1000 + n % 1000).substr(1);
    };
    for (int thousandths = 0; thousandths < 20000; ++thousandths) {
        const double tie = std::stod(text(thousandths) + "5");
        ASSERT_EQ(FormatFixed(tie, 3, 0), text(thousandths + 1));
        ASSERT_EQ(FormatFixed(-tie, 3, 0), "-" + text(thousandths + 1));
    }
}

TEST(FormatSci, HasSixteenDigitsAndThirtyColumns) {
    const test::RecordingPlatform platform;
    EXPECT_EQ(FormatSci(1234.5), "         1.234500000000000E+03");
    EXPECT_EQ(FormatSci(-5e-324), "       -5.000000000000000E-324");
    EXPECT_EQ(FormatSci(-0.0), "         0.000000000000000E+00");
    EXPECT_EQ(FormatSci(kInfinity), std::string(27, ' ') + "inf");
    DecimalSeparator(',');
    EXPECT_EQ(FormatSci(-1.2345678901234565), "        -1,234567890123457E+00");
    EXPECT_EQ(FormatFixed(-1.25, 2, 0), "-1,25");
}

TEST(PadLeft, CountsColumns) {
    EXPECT_EQ(PadLeft("e\u0301u\u0302\u0323ő", 4), " e\u0301u\u0302\u0323ő");
    EXPECT_EQ(PadLeft("longer", 3), "longer");
}

TEST(CleanNumberLine, LeavesSingleBlanksBetweenFields) {
    EXPECT_EQ(CleanNumberLine("  1,5;'2'\t3  ", true), "1.5 2 3");
    EXPECT_EQ(CleanNumberLine("  1,5;'2'\t3  ", false), "1 5 2 3");
    EXPECT_EQ(CleanNumberLine(" \t;\"' ", true), "");
}

TEST(ParseNumber, TakesWholeTextsOnly) {
    const std::pair<std::string, double> numbers[] = {
        // clang-format off
        {"007", 7}, {"+1.5", 1.5}, {"-.5", -0.5}, {"5.", 5}, {"1e3", 1000}, {"1.e+2", 100},
        {"2.5E-1", 0.25}, {"5e-324", 5e-324}, {"1.7976931348623157e308", 1.7976931348623157e308},
        // clang-format on
    };
    for (const auto& [text, value] : numbers) {
        std::string withComma = text;
        std::ranges::replace(withComma, '.', ',');
        EXPECT_EQ(ParseNumber(text), value);
        EXPECT_EQ(ParseNumber(text, true), value);
        EXPECT_EQ(ParseNumber(withComma, true), value);
        EXPECT_EQ(ParseNumber(withComma).has_value(), withComma == text);
    }
    for (const char* text :
         {"",      "+",     "-.",    ".",     ",",   "e5",  "1e",    "1e+",      "1e2.5",
          "--1",   "+-1",   " 1",    "1 ",    "1\r", "nan", "-inf",  "infinity", "0x10",
          "1.2.3", "1,2,3", "1,2.3", "1'000", "1d5", "12a", "1e400", "-1e400",   "١"}) {
        EXPECT_FALSE(ParseNumber(text)) << text;
        EXPECT_FALSE(ParseNumber(text, true)) << text;
    }
}

}  // namespace
}  // namespace kv_tr
