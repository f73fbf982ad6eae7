// Readers and writers without any surroundings: what they take, and what they say is wrong.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/files/transformation_log.h"

namespace kv_tr {
namespace {

using Kind = Problem::Kind;

PointReading Read(const std::string& text, Comma comma = Comma::kSuspect) {
    std::istringstream file(text);
    return ReadControlPoints(file, {.comma = comma});
}

TEST(ReadControlPoints, TellsEveryProblemWithItsLineAndColumn) {
    const PointReading reading =
        Read("A 1 2 3 4\n\nGyőr 5  x7 8\r\nB 1 2 3\nC 1,5 2,5 3,5 4,5\rD 5 6 7 8\n");
    ASSERT_EQ(reading.points.size(), 1U) << "those above the first problem";
    EXPECT_EQ(reading.points[0], (ControlPoint{"A", {1, 2}, {3, 4}}));
    EXPECT_EQ(reading.problems,
              (std::vector<Problem>{{Kind::kNotANumber, 3, 9, "Győr 5  x7 8"},
                                    {Kind::kMissingField, 4, 8, "B 1 2 3"},
                                    {Kind::kDecimalCommas, 5, 0, "C 1,5 2,5 3,5 4,5"}}));
    EXPECT_EQ(reading.partial, (ControlPoint{"Győr", {5, 0}, {}})) << "as far as it was read";

    std::string bad;
    for (int i = 0; i < 100; ++i) bad += "bad\n";
    EXPECT_EQ(Read(bad).problems.back().line, PointReading::kMostProblems);
    EXPECT_EQ(Read("A 1 2 3 4\n" + std::string(2 << 20, 'x')).problems,
              (std::vector<Problem>{{Kind::kLineTooLong, 2}}));
    EXPECT_EQ(ReadControlPointFile("/no/such/file").problems,
              (std::vector<Problem>{{Kind::kNotOpened}}));
    EXPECT_FALSE(ReadControlPointFile("/proc/self/mem").Complete());
}

TEST(ReadControlPoints, TakesCommasAsItIsTold) {
    const std::string line = "A,1,5;2,5 3,5 4,5";
    EXPECT_EQ(Read(line, Comma::kSeparator).points.at(0), (ControlPoint{"A", {1, 5}, {2, 5}}));
    EXPECT_EQ(Read("A;1,5;2,5 3,5 4", Comma::kDecimalSign).points.at(0),
              (ControlPoint{"A", {1.5, 2.5}, {3.5, 4}}));
    const auto points = Read("A 1 2 3 4\nB -5 6 7.0005 8\n").points;
    EXPECT_EQ(Read(ListControlPoints(points, {','}), Comma::kDecimalSign).points[1].destination,
              (Point{7.001, 8}));
}

TEST(ReadParameters, ReadsBackWhatWasWritten) {
    Transformation t{.type = Type::kAffine, .a = {1.5, 2.25, -3.125}, .b = {4, -5.5, 6.0625}};
    for (const auto format : {LinearFormat::kNative, LinearFormat::kItr25}) {
        std::string text;
        for (const std::string& line : LinearFileLines(t, format, {','})) text += line + "\r\n";
        std::istringstream file(text);
        const auto reading = ReadParameters(
            file,
            format == LinearFormat::kNative ? ParameterFormat::kNative : ParameterFormat::kItr25,
            Type::kAffine, {.numbers = {','}});
        EXPECT_TRUE(reading.Complete());
        EXPECT_EQ(reading.transformation, t);
    }
    t = {.type = Type::kPolynomial2, .a = {7.5, 1}, .b = {-8.5, 2}};
    for (std::size_t k = 2; k <= 6; ++k) {  // with no more digits than a listing has
        t.a[k] = static_cast<double>(k) / 64;
        t.b[k] = -static_cast<double>(k * k) / 32;
    }
    std::istringstream listing(ListPolynomial(t, "two\r\nlines"));
    EXPECT_EQ(ReadParameters(listing, ParameterFormat::kPolynomial).transformation, t);
}

TEST(ReadParameters, TellsWhereItStopped) {
    for (const auto& [text, format, problem] :
         {std::tuple{"1 2\n 3 x4\n", ParameterFormat::kNative,
                     Problem{Kind::kNotANumber, 2, 4, " 3 x4"}},
          {"1 2\n3\n", ParameterFormat::kItr25, {Kind::kMissingField, 3}},
          {"t\n\n sy = 1 sx = 2\n 1 3 4\n", ParameterFormat::kPolynomial, {Kind::kUnknownLayout}},
          {"t\n\n sy = 1 sx = 2\n 1 3 4\n 2 5 1.2.3 4\n",
           ParameterFormat::kPolynomial,
           {Kind::kNotANumber, 5, 0, " 2 5 1.2.3 4"}}}) {
        std::istringstream file(text);
        EXPECT_EQ(ReadParameters(file, format).problem, problem) << text;
    }
    EXPECT_EQ(FormatNamed("T.PRM"), ParameterFormat::kItr25);
    EXPECT_EQ(FormatNamed("t.All"), ParameterFormat::kPolynomial);
}

TEST(LogOf, NamesThePointOfEachRowWithUnequalFigures) {
    Adjustment adjustment(Read("A 0 0 100.1 200.3\nB 10 0 110 200\nC 0 10 100 210.7\n"
                               "D 10 10 110 205\nE 5 5 105.2 205\n")
                              .points);
    adjustment.Toggle(3);
    adjustment.Fit();
    const auto log = LogOf(adjustment, TextsIn(kEnglish), {','});
    std::vector<std::size_t> rows;
    for (const LogLine& line : log) {
        if (line.point) rows.push_back(*line.point);
    }
    EXPECT_EQ(rows, (std::vector<std::size_t>{0, 1, 2, 4, 3})) << "the excluded one comes last";
    const auto starts = [&](const std::string& text) {
        return std::ranges::count_if(
            log, [&](const LogLine& line) { return line.text.starts_with(text); });
    };
    const Statistics& f = adjustment.Figures();
    EXPECT_EQ(starts("\tRMS errors\tY =" + FixedText(f.rmsFirst, 3, {','}) +
                     " m\tX =" + FixedText(f.rmsSecond, 3, {','}) + " m\tYX="),
              1);
    EXPECT_EQ(starts("\tRMS values:\tY =" + FixedText(f.meanFirst, 3, {','}) +
                     " m\tX =" + FixedText(f.meanSecond, 3, {','})),
              1);
    EXPECT_NE(FixedText(f.rmsFirst, 3), FixedText(f.rmsSecond, 3));
    EXPECT_TRUE(TextOf(log).ends_with("\r\n\r\n"));
}

}  // namespace
}  // namespace kv_tr
