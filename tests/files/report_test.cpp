// The report of an adjustment: what stands in it, and that it is safe to show.
#include <gtest/gtest.h>

#include <cmath>

#include "helpers/report_sample.h"
#include "kv_tr/files/report_file.h"
#include "kv_tr/files/report_html.h"

namespace kv_tr {
namespace {

using test::ReportFor;
using test::RoughPoints;

/// All blocks of a kind.
template <typename Block>
std::vector<Block> BlocksOf(const Report& report) {
    std::vector<Block> blocks;
    for (const ReportSection& section : report.sections) {
        for (const ReportBlock& block : section.blocks) {
            if (const auto* one = std::get_if<Block>(&block)) blocks.push_back(*one);
        }
    }
    return blocks;
}

/// The row of any table that begins with a text.
std::vector<std::string> RowOf(const Report& report, const std::string& beginning) {
    for (const ReportTable& table : BlocksOf<ReportTable>(report)) {
        for (const auto& row : table.rows) {
            if (row.front().starts_with(beginning)) return row;
        }
    }
    return {};
}

bool HasParagraph(const Report& report, const std::string& part) {
    for (const ReportParagraph& paragraph : BlocksOf<ReportParagraph>(report)) {
        if (paragraph.text.find(part) != std::string::npos) return true;
    }
    return false;
}

TEST(ReportOf, SpeaksEachLanguageWholly) {
    const auto points = RoughPoints(12);
    for (const std::int32_t language : {kHungarian, kRomanian, kEnglish, kVietnamese, kSerbian}) {
        for (int id = 1400; id <= 1479; ++id) {
            EXPECT_NE(BuiltInText(static_cast<Text>(id), language), nullptr) << id << language;
        }
        for (const Type type : {Type::kHelmert, Type::kPolynomial2}) {
            const std::string html = HtmlOf(ReportFor(points, type, language));
            const std::string body = html.substr(html.find("<body>"));
            EXPECT_EQ(body.find('{'), body.npos) << "a place that nobody filled";
        }
    }
    EXPECT_NE(HtmlOf(ReportFor(points, Type::kHelmert, kSerbian)).find("<html lang=\"sr-Latn\">"),
              std::string::npos);
}

TEST(ReportOf, GivesTheFiguresTheirDivisorsAndTheAdviceItsGain) {
    const Report report = ReportFor(RoughPoints(12), Type::kAffine, kEnglish, {','});
    EXPECT_EQ(RowOf(report, "dRmsErr")[1], "m − 1 = 12 − 1");
    EXPECT_EQ(RowOf(report, "rms,")[1], "m = 12");
    EXPECT_EQ(RowOf(report, "s0,")[1], "r = 18");
    const double documented = std::stod(RowOf(report, "dRmsErr")[2].replace(1, 1, "."));
    const double sigma = std::stod(RowOf(report, "s0,")[2].replace(1, 1, "."));
    EXPECT_NEAR(sigma, documented * std::sqrt(11.0 / 18.0), 1e-4) << "four decimals";

    TypeAdvice advice;
    const auto add = [&advice](Type type, bool eligible, double error) {
        advice.types.push_back({.type = type, .isEligible = eligible, .leaveOneOut = error});
    };
    EXPECT_EQ(DescribeAdvice(advice, TextsIn(kEnglish)),
              "The points are too few, or too badly spread, to compare types.");
    add(Type::kHelmert, false, 0.001);
    add(Type::kAffine, true, 0.045);
    add(Type::kPolynomial2, true, 0.005);
    add(Type::kPolynomial3, true, 0.016);
    advice.advised = Type::kPolynomial2;
    EXPECT_EQ(DescribeAdvice(advice, TextsIn(kEnglish)),
              "Advised type: 2. order of polynomial transformation; it cuts the error at unseen "
              "points from 45 to 5.0 mm. 3. order of polynomial transformation would raise it to "
              "16 mm.");
    advice.advised = Type::kAffine;
    EXPECT_EQ(DescribeAdvice(advice, TextsIn(kEnglish)),
              "Advised type: AFFINE transformation; the error at unseen points is 45 mm. 2. order "
              "of polynomial transformation would lower it to 5.0 mm, which may be chance.");
}

TEST(ReportOf, ShowsWhatIsNotDefinedAsADash) {
    std::vector<ControlPoint> line;
    for (int i = 0; i < 5; ++i) line.push_back({"L", {1.0 * i, 2.0 * i}, {3.0 * i, 4.0 * i}});
    const Report exact = ReportFor(RoughPoints(2), Type::kHelmert);
    EXPECT_EQ(RowOf(exact, "s0,")[2], "–");
    EXPECT_EQ(RowOf(exact, "loo,")[2], "–");
    EXPECT_EQ(RowOf(exact, "PRESS")[2], "–");
    EXPECT_EQ(RowOf(exact, "A1")[2], "–") << "its standard deviation";
    for (const Report& report : {exact, ReportFor(line, Type::kAffine)}) {
        for (const ReportTable& table : BlocksOf<ReportTable>(report)) {
            for (const auto& row : table.rows) {
                for (const std::string& cell : row) {
                    EXPECT_EQ(cell.find("nan"), cell.npos);
                    EXPECT_FALSE(cell == "inf" || cell == "-inf");
                }
            }
        }
    }
    EXPECT_TRUE(HasParagraph(exact, "W3: ")) << "no redundancy";
    EXPECT_TRUE(HasParagraph(ReportFor(line, Type::kAffine), "W2: ")) << "not determined";
    EXPECT_FALSE(HasParagraph(ReportFor(line, Type::kAffine), "Checked: ")) << "as if it were good";
}

TEST(ReportOf, TellsOfExcludedPointsAndOfTheSuspect) {
    auto points = RoughPoints(12);
    points[4].destination.first += 5.0;
    EXPECT_EQ(ReportFor(points, Type::kHelmert).sections.size(), 11U);
    const Report suspect = ReportFor(points, Type::kHelmert);
    EXPECT_TRUE(HasParagraph(suspect, "W8: Point P4 "));
    points[4].used = false;
    points[5].used = false;
    const Report report = ReportFor(points, Type::kHelmert);
    EXPECT_EQ(report.sections.size(), 12U);
    EXPECT_EQ(RowOf(report, "P4").back(), "No");
    EXPECT_EQ(RowOf(report, "P5").back(), "Yes");
}

TEST(ReportOf, DrawsVectorsAtTheScaleThatItTells) {
    auto points = RoughPoints(12);
    points[0].destination.second += 0.4;
    const Report report = ReportFor(points, Type::kHelmert);
    const ReportPicture picture = BlocksOf<ReportPicture>(report).at(0);
    using Ink = ReportPicture::Ink;
    double longest = 0.0;
    double bar = 0.0;
    std::string barText;
    for (const auto& [from, to, ink] : picture.lines) {
        for (const Point& end : {from, to}) {
            EXPECT_TRUE(end.first >= 0 && end.first <= picture.width && end.second >= 0 &&
                        end.second <= picture.height);
        }
        const double length = std::hypot(to.first - from.first, to.second - from.second);
        const bool isBar = ink == Ink::kResidual && from.second > picture.height - 20;
        if (isBar) bar = std::max(bar, length);
        if (ink == Ink::kSuspect && length > longest) {
            longest = length;
            EXPECT_GT(to.second, from.second) << "computed less measured: downwards";
        }
    }
    for (const auto& label : picture.labels) {
        if (label.text.starts_with("v: ")) barText = label.text;
    }
    EXPECT_EQ(barText, "v: 200 mm");
    const double residual = std::stod(RowOf(report, "P0").at(7));
    EXPECT_NEAR(longest / residual, bar / 0.2, 0.01 * bar / 0.2) << "both tell one scale";
}

TEST(IsCalendarDay, TakesDaysOfTheCalendarWrittenOneWay) {
    EXPECT_TRUE(IsCalendarDay("2028-02-29"));
    for (const char* other :
         {"2026-02-29", "2026/05-31", "2026-05/31", "2026-05-3", "-026-05-31"}) {
        EXPECT_FALSE(IsCalendarDay(other)) << other;
    }
}

TEST(HtmlOf, EscapesForeignTextAndGivesTheSameBytes) {
    const auto points = RoughPoints(5, "<script>&\"\x1B\xFF");
    const std::string html = HtmlOf(ReportFor(points, Type::kHelmert));
    EXPECT_EQ(html, HtmlOf(ReportFor(points, Type::kHelmert)));
    EXPECT_EQ(html.find("<script"), html.npos);
    EXPECT_NE(html.find("<bdi translate=\"no\">&lt;script&gt;&amp;&quot;_\uFFFD0</bdi>"),
              html.npos);
    EXPECT_NE(html.find("points&lt;1&gt;.dat"), html.npos);
    EXPECT_NE(html.find("<td class=\"number\">"), html.npos);
}

}  // namespace
}  // namespace kv_tr
