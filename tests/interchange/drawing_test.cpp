// Drawings in DXF: what changes, what stays byte for byte, what is refused.
#include "kv_tr/interchange/drawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <sstream>

#include "helpers/files.h"

namespace kv_tr::test {
namespace {

using Kind = DrawingProblem::Kind;

const std::string kData = TEST_DATA "/interchange/";
const Transformation kShift{.type = Type::kHelmert, .a = {100, 1, 0}, .b = {200, 0, 1}};
const Transformation kTurn{.type = Type::kHelmert, .a = {100, 0, -2}, .b = {200, 2, 0}};
const Transformation kMirror{.type = Type::kAffine, .a = {100, 0, 2}, .b = {200, 2, 0}};
const Transformation kStretch{.type = Type::kAffine, .a = {0, 2, 0}, .b = {0, 0, 1}};

struct Rewritten {
    std::string bytes;
    DrawingReport report;
};

Rewritten Rewrite(const std::string& bytes, const PointMap& map, DrawingOptions options = {}) {
    Rewritten result;
    result.report = TransformDrawing(bytes, map, options,
                                     {[&](std::string_view part) { result.bytes += part; },
                                      [](std::uint64_t, std::uint64_t) { return true; }});
    return result;
}

/// Groups as "code value code value", as lines.
std::string Lines(std::string words, const std::string& end = "\n") {
    std::string lines;
    for (const char c : words) lines += c == ' ' ? end : std::string(1, c);
    return lines;
}

std::string DrawingOf(const std::string& entities, const std::string& version = "AC1015") {
    return Lines("0 SECTION 2 HEADER 9 $ACADVER 1 " + version + " 0 ENDSEC 0 SECTION 2 ENTITIES " +
                 entities + " 0 ENDSEC 0 EOF ");
}

TEST(TransformDrawing, LeavesEveryByteOfADrawingThatStaysWhereItIs) {
    for (const std::string name :
         {"everything_r12.dxf", "everything_r2000_binary.dxf", "gdal.dxf"}) {
        const std::string bytes = ReadFile(kData + name);
        const Rewritten same = Rewrite(bytes, Transformation{});
        EXPECT_TRUE(same.report.complete && same.report.moved > 0) << name;
        EXPECT_TRUE(same.bytes == bytes) << name;
        const Rewritten there = Rewrite(bytes, kMirror);
        EXPECT_FALSE(there.bytes == bytes);
        const Rewritten back = Rewrite(there.bytes, *kMirror.Inverse());
        EXPECT_EQ(back.report.moved, same.report.moved);
        EXPECT_NEAR(static_cast<double>(back.bytes.size()), static_cast<double>(bytes.size()),
                    0.05 * static_cast<double>(bytes.size()));
    }
}

TEST(TransformDrawing, ChangesThoseNumbersThatMean) {
    const std::tuple<std::string, Transformation, std::string> cases[] = {
        {"999 10 0 LINE 5 A 8 0 10 1 20 2 30 3 11 +4.0 21 5 31 6 1011 1 1021 0 1031 7 1010 1 1041 "
         "2",
         kTurn,
         "999 10 0 LINE 5 A 8 0 10 96 20 202 30 3 11 90 21 208 31 6 1011 100 1021 202 1031 7 1010 "
         "1 1041 4"},
        {"0 LINE 67 1 10 1 20 2 11 4 21 5", kTurn, "0 LINE 67 1 10 1 20 2 11 4 21 5"},
        {"0 ARC 10 1 20 2 40 1.5 50 10 51 80", kTurn, "0 ARC 10 96 20 202 40 3 50 100 51 170"},
        {"0 ARC 10 1 20 2 40 1.5 50 10 51 80", kMirror, "0 ARC 10 104 20 202 40 3 50 10 51 80"},
        {"0 ARC 10 1 20 2 40 1.5 50 0 51 30 210 0 220 0 230 -1", kTurn,
         "0 ARC 10 -96 20 198 40 3 50 270 51 300 210 0 220 0 230 -1"},
        {"0 ARC 10 1 20 2 40 3 50 -30.1 51 1e30 0 HATCH 91 1 92 0 93 1 72 2 10 5 20 6 40 4 50 -7.3 "
         "51 8.1 73 0 97 0 0 DIMENSION 70 1 51 -20.3 0 TEXT 10 0 20 0 40 2 50 -30.1",
         kShift,
         "0 ARC 10 101 20 202 40 3 50 -30.1 51 1e30 0 HATCH 91 1 92 0 93 1 72 2 10 105 20 206 40 4 "
         "50 -7.3 51 8.1 73 0 97 0 0 DIMENSION 70 1 51 -20.3 0 TEXT 10 100 20 200 40 2 50 -30.1"},
        {"0 TEXT 10 0 20 0 40 1 1 x 72 1 11 5 21 1", kTurn,
         "0 TEXT 10 0 20 0 40 2  50 90 1 x 72 1 11 98 21 210"},
        {"0 LWPOLYLINE 90 2 70 0 43 0.5 10 0 20 0 42 1 10 1 20 0", kMirror,
         "0 LWPOLYLINE 90 2 70 0 43 1 10 100 20 200 42 -1 10 100 20 202"},
        {"0 ELLIPSE 10 1 20 2 11 2 21 0 40 0.5 41 1 42 2", kStretch,
         "0 ELLIPSE 10 2 20 2 11 4 21 0 40 0.25 41 1 42 2"},
        {"0 HATCH 91 1 92 2 72 1 73 1 93 2 10 1 20 2 42 1 10 3 10 9 20 4 97 0", kMirror,
         "0 HATCH 91 1 92 2 72 1 73 1 93 2 10 104 20 202 42 -1 10 108 10 9 20 206 97 0"},
        {"0 INSERT 2 B 10 1 20 0 30 5 43 3", kMirror,
         "0 INSERT 2 B 10 100 20 202 30 5  41 2  42 -2 43 3  50 90"},
        {"0 INSERT 2 B 10 1 20 0 41 3 42 4 44 5 45 6 50 10", kTurn,
         "0 INSERT 2 B 10 100 20 202 41 6 42 8 44 10 45 12 50 100"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 3", kTurn, "0 VIEWPORT 67 1 69 2 12 96 22 202 45 6"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 3 36 -1", kTurn,
         "0 VIEWPORT 67 1 69 2 12 1 22 2 45 3 36 -1"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 1e308", kTurn,
         "0 VIEWPORT 67 1 69 2 12 1 22 2 45 1e308"},
        {"0 MTEXT 10 1 20 2 40 1 41 5 1 x 44 1 101 Embedded 10 1 20 0 11 1 21 2 40 5 44 3 45 4",
         kTurn,
         "0 MTEXT 10 96 20 202 40 2  50 90 41 10 1 x 44 1 101 Embedded 10 0 20 1 11 96 21 202 40 "
         "10 44 6 "
         "45 8"},
    };
    for (const auto& [before, map, after] : cases) {
        const Rewritten result = Rewrite(DrawingOf(before), map);
        EXPECT_TRUE(result.report.complete);
        std::string expected = DrawingOf(after);  // new groups are padded
        for (std::size_t at; (at = expected.find("\n\n")) != expected.npos;)
            expected.replace(at, 2, "\n ");
        EXPECT_EQ(result.bytes, expected);
    }
    const auto unfinished = [](const std::string& x) {
        return Lines("0 SECTION 2 ENTITIES 0 POLYLINE 66 1 0 VERTEX 10 " + x + " 20 0 0 EOF ");
    };
    EXPECT_EQ(Rewrite(unfinished("3"), kStretch).bytes, unfinished("6"));
    const std::string crlf =
        Lines("0 SECTION 2 ENTITIES 0 POINT 10 1 20 2 0 ENDSEC 0 EOF", "\r\n") + "\r\n\x1A";
    EXPECT_EQ(Rewrite(crlf, kStretch, {.from = AxisMapping::kNe, .to = AxisMapping::kNe}).bytes,
              Lines("0 SECTION 2 ENTITIES 0 POINT 10 1 20 4 0 ENDSEC 0 EOF", "\r\n") + "\r\n\x1A");
}

TEST(TransformDrawing, MovesThePictureOfADimensionButNoOtherBlock) {
    const auto drawing = [](const std::string& x) {
        return Lines("0 SECTION 2 BLOCKS 0 BLOCK 2 *D1 0 POINT 10 " + x +
                     " 20 0 0 ENDBLK 0 BLOCK 2 B 0 POINT 10 1 20 0"
                     " 0 ENDBLK 0 ENDSEC 0 SECTION 2 ENTITIES 0 DIMENSION 2 *d1 70 1 10 " +
                     x + " 20 0 15 1 25 1 0 ENDSEC 0 EOF ");
    };
    EXPECT_EQ(Rewrite(drawing("1"), kStretch).bytes, drawing("2"));
}

TEST(TransformDrawing, TurnsCurvesIntoEllipsesOrPolylinesAndTells) {
    const std::string arc = "0 ARC 8 L 10 0 20 0 40 10 50 0 51 90";
    const Rewritten ellipse = Rewrite(DrawingOf(arc), kStretch);
    EXPECT_EQ(ellipse.report.ellipses, (DrawingReport::Counts{{"ARC", 1}}));
    EXPECT_NE(ellipse.bytes.find("ELLIPSE\n8\nL\n"), std::string::npos);
    const Rewritten misplaced = Rewrite(
        DrawingOf("0 ARC 5 1F 41 x 73 y 100 AcDbCircle 10 0 20 0 40 10 50 0 51 90"),
        kStretch);
    EXPECT_EQ(Rewrite(misplaced.bytes, Transformation{}).bytes, misplaced.bytes);
    EXPECT_NE(misplaced.bytes.find("ELLIPSE\n5\n1F\n"), std::string::npos);
    Transformation bent{.type = Type::kPolynomial2, .a = {0, 0, 1, 0, 1e-2}, .b = {0, 0, 0, 1}};
    for (const auto& [version, map, type] :
         {std::tuple<std::string, Transformation, std::string>{"AC1009", kStretch, "POLYLINE"},
          {"AC1015", bent, "LWPOLYLINE"}}) {
        const Rewritten result = Rewrite(DrawingOf(arc, version), map, {.tolerance = 0.01});
        EXPECT_EQ(result.report.polylines, (DrawingReport::Counts{{"ARC", 1}}));
        EXPECT_NE(result.bytes.find("  0\n" + type + "\n"), std::string::npos);
        EXPECT_EQ(Rewrite(result.bytes, Transformation{}).bytes, result.bytes);
    }
    const Rewritten text = Rewrite(DrawingOf("0 TEXT 10 0 20 0 40 1"), kStretch);
    EXPECT_EQ(text.report.nearly, (DrawingReport::Counts{{"TEXT", 1}}));
    EXPECT_DOUBLE_EQ(text.report.greatestDeparture, 0.5);
}

TEST(TransformDrawing, FollowsARationalSplineWithinTheToleranceAndOnce) {
    // Half a circle of radius 10 in two arcs.
    const std::string half =
        "0 SPLINE 8 L 70 4 71 2 72 8 73 5 40 0 40 0 40 0 40 1 40 1 40 2 40 2 40 2 41 1 41 "
        "0.70710678118654752 41 1 41 0.70710678118654752 41 1 10 10 20 0 30 7 10 10 20 10 30 7 10 "
        "0 "
        "20 10 30 7 10 -10 20 10 30 7 10 -10 20 0 30 7";
    const Transformation bent{
        .type = Type::kPolynomial2, .a = {0, 0, 1, 0, 1e-2}, .b = {0, 0, 0, 1}};
    const Rewritten result = Rewrite(DrawingOf(half), bent, {.tolerance = 0.01});
    EXPECT_EQ(result.report.polylines, (DrawingReport::Counts{{"SPLINE", 1}}));
    EXPECT_NE(result.bytes.find("\n 38\n7\n"), std::string::npos) << result.bytes;

    std::vector<Point> vertices;
    std::istringstream lines(result.bytes);
    for (std::string code, value; std::getline(lines, code) && std::getline(lines, value);) {
        if (std::stoi(code) == 10) vertices.push_back({std::stod(value), 0});
        if (std::stoi(code) == 20) vertices.back().second = std::stod(value);
    }
    std::vector<Point> circle;
    for (int i = 0; i <= 4000; ++i) {
        const double angle = std::acos(-1.0) * i / 4000;
        circle.push_back(bent.Apply({10 * std::cos(angle), 10 * std::sin(angle)}));
    }
    std::size_t at = 0;  // along the half circle the distance to the nearest vertex falls and rises
    for (const Point& vertex : vertices) {
        const auto distance = [&](std::size_t i) {
            return std::hypot(circle[i].first - vertex.first, circle[i].second - vertex.second);
        };
        while (at + 1 < circle.size() && distance(at + 1) <= distance(at)) ++at;
        EXPECT_LT(distance(at), 0.01) << vertex.first << ' ' << vertex.second;
    }
    EXPECT_EQ(at + 1, circle.size());
}

TEST(TransformDrawing, RefusesWhatItCannotTransform) {
    const std::tuple<std::string, Kind, std::uint64_t> cases[] = {
        {"", Kind::kNoDrawing, 0},
        {"0\nLINE\n0\nEOF\n", Kind::kNoDrawing, 2},
        {"0\rSECTION\r", Kind::kNotAGroupCode, 1},
        {DrawingOf("0 POINT 10 1,5 20 2"), Kind::kNotANumber, 18},
        {DrawingOf("0 POINT 10 1e400 20 2"), Kind::kNotANumber, 18},
        {DrawingOf("0 POINT x 1 20 2"), Kind::kNotAGroupCode, 17},
        {Lines("0 SECTION 2 ENTITIES 0 ENDSEC "), Kind::kEndsEarly, 6},
        {Lines("0 SECTION 2 ENTITIES 0 POINT 10"), Kind::kEndsEarly, 8},
        {DrawingOf("0 POINT 5 1F 10 1 30 2"), Kind::kMissingCoordinate, 20},
        {DrawingOf("0 CIRCLE 10 1 20 2 40 1 210 1 220 0 230 0"), Kind::kTiltedPlane, 16},
        {DrawingOf("0 POINT 10 1e308 20 2"), Kind::kNoImage, 16},
        {DrawingOf("0 CIRCLE 10 1 20 2 40 1e308"), Kind::kNoImage, 16},
        {Lines("0 SECTION 2 HEADER 9 $LIMMIN 10 1 20 2 9 $LIMMAX 10 3 20 4 9 $INSBASE 10 1e308 20 2"
               " 0 ENDSEC 0 EOF "),
         Kind::kNoImage, 2},
    };
    for (const auto& [bytes, kind, line] : cases) {
        const DrawingReport report = Rewrite(bytes, kTurn).report;
        ASSERT_EQ(report.problems.size(), 1U) << bytes;
        EXPECT_EQ(report.problems[0].kind, kind) << bytes;
        EXPECT_EQ(report.problems[0].line, line) << bytes;
        EXPECT_FALSE(report.complete);
        const Rewritten kept = Rewrite(bytes, kTurn, {.keepGoing = true});
        EXPECT_EQ(kept.report.complete, kind >= Kind::kMissingCoordinate);
        EXPECT_TRUE(!kept.report.complete || kept.bytes == bytes);
    }
    const std::string solid = DrawingOf("0 3DSOLID 1 x 0 POINT 10 0 20 0");
    const DrawingReport report = Rewrite(solid, kTurn).report;
    EXPECT_FALSE(report.complete);
    EXPECT_EQ(report.unknown, (DrawingReport::Counts{{"3DSOLID", 1}}));
    EXPECT_TRUE(Rewrite(solid, kTurn, {.keepGoing = true}).report.complete);
}

TEST(TransformDrawing, SurvivesDamagedDrawings) {
    std::mt19937 random(11);
    for (const std::string name : {"everything_r12.dxf", "everything_r2000_binary.dxf"}) {
        const std::string bytes = ReadFile(kData + name);
        for (int i = 0; i < 150; ++i) {
            std::string damaged = bytes;
            for (int k = 0; k < 20; ++k)
                damaged[random() % damaged.size()] = "0123456789-.\n e\xFF"[random() % 16];
            if (i % 3 == 0) damaged.resize(random() % damaged.size());
            const Rewritten result =
                Rewrite(damaged, i % 2 == 0 ? kTurn : kStretch, {.keepGoing = true});
            EXPECT_TRUE(result.report.complete || result.report.problems.size() == 1);
        }
    }
}

}  // namespace
}  // namespace kv_tr::test
