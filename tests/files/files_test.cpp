// Readers and writers without any surroundings: what they take, and what they say is wrong.
#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "helpers/sample_points.h"
#include "kv_tr/files/control_point_file.h"
#include "kv_tr/files/formula_text.h"
#include "kv_tr/files/parameter_file.h"
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

/// Begins like a file and then fails, as a disk may.
struct Failing : std::streambuf {
    explicit Failing(std::string text) : begin(std::move(text)) {
        setg(begin.data(), begin.data(), begin.data() + begin.size());
    }
    int_type underflow() override { throw std::ios_base::failure("disk"); }
    std::string begin;
};

TEST(Readers, TellTheLineWhereTheSystemFails) {
    for (const auto& [text, format, line] : {std::tuple{"", ParameterFormat::kNative, 1U},
                                             {"", ParameterFormat::kPolynomial, 1U},
                                             {"1 2\n3", ParameterFormat::kNative, 2U},
                                             {"t\n\n 1", ParameterFormat::kPolynomial, 3U}}) {
        Failing source(text);
        std::istream file(&source);
        EXPECT_EQ(ReadParameters(file, format).problem, (Problem{Kind::kUnreadable, line}));
    }
    Failing source("A 1 2 3 4\nB 1 2");
    std::istream file(&source);
    EXPECT_EQ(ReadControlPoints(file).problems, (std::vector<Problem>{{Kind::kUnreadable, 2}}));
}

TEST(ReadControlPoints, TakesCommasAsItIsTold) {
    const std::string line = "A,1,5;2,5 3,5 4,5";
    EXPECT_EQ(Read(line, Comma::kSeparator).points.at(0), (ControlPoint{"A", {1, 5}, {2, 5}}));
    EXPECT_EQ(Read("A;1,5;2,5 3,5 4", Comma::kDecimalSign).points.at(0),
              (ControlPoint{"A", {1.5, 2.5}, {3.5, 4}}));
    EXPECT_EQ(Read("\"P2\"\t 1.5e3 ,-.25;+4. '7' ignored words\r", Comma::kSeparator).points.at(0),
              (ControlPoint{"P2", {1500, -0.25}, {4, 7}}));
    const auto points = Read("A 1 2 3 4\nB -5 6 7.0005 8\n").points;
    EXPECT_EQ(Read(ListControlPoints(points, {','}), Comma::kDecimalSign).points[1].destination,
              (Point{7.001, 8}));
}

TEST(ReadParameters, TellsWhereItStopped) {
    for (const auto& [text, format, problem] :
         {std::tuple{"1 2\n 3 x4\n", ParameterFormat::kNative,
                     Problem{Kind::kNotANumber, 2, 4, " 3 x4"}},
          {"1 2\n3\n", ParameterFormat::kItr25, {Kind::kMissingField, 3}},
          {"1,304\n2\n3\n4\n5\n6", ParameterFormat::kNative, {Kind::kDecimalCommas}},
          {"t,5\n\n sy = 1 sx = 2,5\n 1 3 4\n",
           ParameterFormat::kPolynomial,
           {Kind::kDecimalCommas}},
          {"t\n\n sy = 1 sx = 2\n 1 3 4\n", ParameterFormat::kPolynomial, {Kind::kUnknownLayout}},
          {"t\n\n sy = 1 sx = 2\n 1 3\n 2 5 1.2.3 4\n",
           ParameterFormat::kPolynomial,
           {Kind::kMissingField, 4, 0, " 1 3"}},  // the first of two
          {"t\n\n sy = 1 sx = 2\n 1 3 4\n 2 5 1.2.3 4\n",
           ParameterFormat::kPolynomial,
           {Kind::kNotANumber, 5, 0, " 2 5 1.2.3 4"}}}) {
        std::istringstream file(text);
        EXPECT_EQ(ReadParameters(file, format).problem, problem) << text;
    }
    for (const auto& [commas, first] :
         {std::pair{SuspectCommas::kTaken, 1.304}, {SuspectCommas::kIgnored, 1.0}}) {
        std::istringstream file("1,304\r\n0\r\n0\r\n2\r\n0\r\n1");
        EXPECT_EQ(ReadParameters(file, ParameterFormat::kNative, Type::kHelmert,
                                 {.suspectCommas = commas})
                      .transformation.a[0],
                  first);
    }
    EXPECT_EQ(FormatNamed("T.PRM"), ParameterFormat::kItr25);
    EXPECT_EQ(FormatNamed("t.All"), ParameterFormat::kPolynomial);
    for (const char* name : {"t.trp", "t.txt", "prm", "t.prm.x"})
        EXPECT_EQ(FormatNamed(name), ParameterFormat::kNative) << name;
}

TEST(LogOf, ShowsUnequalFiguresInTheirPlacesAndNamesThePointOfEachRow) {
    auto points = test::PointsBy(test::General(Type::kHelmert3), 5, 0.03);
    points[0].destination.first += 100.0;
    points[0].destination.second -= 30.0;
    Adjustment adjustment(points, Type::kHelmert3);
    adjustment.Toggle(3);
    adjustment.Fit({.passLimit = 0});  // one pass from a bad start, so that means are not zero
    const auto log = LogOf(adjustment, TextsIn(kEnglish), {','});
    std::vector<std::size_t> rows;
    for (const LogLine& line : log) {
        if (line.point) rows.push_back(*line.point);
    }
    EXPECT_EQ(rows, (std::vector<std::size_t>{0, 1, 2, 4, 3})) << "the excluded one comes last";
    const Statistics& f = adjustment.Figures();
    const auto metres = [](double value) { return FixedText(value, 3, {','}) + " m"; };
    const std::string text = TextOf(log);
    const std::string figures = "\tRMS errors\tY =" + metres(f.rmsFirst) +
                                "\tX =" + metres(f.rmsSecond) + "\tYX=" + metres(f.rms) +
                                "\r\n\tRMS values:\tY =" + metres(f.meanFirst) +
                                "\tX =" + metres(f.meanSecond) + "\r\n";
    EXPECT_NE(text.find(figures), text.npos) << text;
    std::set<std::string> different;
    for (const double figure : {0.0, f.rms, f.rmsFirst, f.rmsSecond, f.meanFirst, f.meanSecond})
        different.insert(metres(figure));
    EXPECT_EQ(different.size(), 6U);
    EXPECT_TRUE(text.ends_with("\r\n\r\n"));
}

TEST(HigherTermsText, AddsTheTermsOrderByOrder) {
    EXPECT_EQ(HigherTermsText(Type::kAffine), "");
    EXPECT_EQ(HigherTermsText(Type::kPolynomial1), "");
    EXPECT_EQ(HigherTermsText(Type::kBilinear), " + y*x*a4");
    EXPECT_EQ(HigherTermsText(Type::kPolynomial3),
              " + y^2*a4 + y*x*a5 + x^2*a6 + y^3*a7 + x*y^2*a8 + x^2*y*a9 + x^3*a10");
    EXPECT_EQ(
        HigherTermsText(Type::kFirstNational),
        HigherTermsText(Type::kPolynomial3) +
            "\r\n\t\t+ y^4*a11 + x*y^3*a12 + x^2*y^2*a13 + x^3*y*a14 + x^4*a15"
            "\r\n\t\t+ y^5*a16 + x*y^4*a17 + x^2*y^3*a18 + x^3*y^2*a19 + x^4*y*a20 + x^5*a21");
}

}  // namespace
}  // namespace kv_tr
