// Drawings in DXF: what changes, what stays byte for byte, what is refused.
#include "kv_tr/interchange/drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
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

/// The values of the groups with a code, which are numbers.
std::vector<double> NumbersOf(const std::string& drawing, int wanted) {
    std::vector<double> numbers;
    std::istringstream lines(drawing);
    for (std::string code, value; std::getline(lines, code) && std::getline(lines, value);)
        if (std::stoi(code) == wanted) numbers.push_back(std::stod(value));
    return numbers;
}

double NumberOf(const std::string& drawing, int wanted) {
    return NumbersOf(drawing, wanted).back();
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
    const auto expectRewritten = [](const std::string& before, const Transformation& map,
                                    const std::string& after) {
        const Rewritten result = Rewrite(DrawingOf(before), map);
        EXPECT_TRUE(result.report.complete) << before;
        std::string expected = DrawingOf(after);  // new groups are padded
        for (std::size_t at; (at = expected.find("\n\n")) != expected.npos;)
            expected.replace(at, 2, "\n ");
        EXPECT_EQ(result.bytes, expected);
    };
    const std::tuple<std::string, Transformation, std::string> cases[] = {
        {"999 10 0 LINE 5 A 8 0 10 1 20 2 30 3 11 +4.0 21 5 31 6 1011 1 1021 0 1031 7 1010 1 1041 "
         "2",
         kTurn,
         "999 10 0 LINE 5 A 8 0 10 96 20 202 30 3 11 90 21 208 31 6 1011 100 1021 202 1031 7 1010 "
         "1 1041 4"},
        {"0 LINE 67 1 10 1 20 2 11 4 21 5", kTurn, "0 LINE 67 1 10 1 20 2 11 4 21 5"},
        {"0 ARC 10 1 20 2 40 1.5 50 10 51 80", kTurn, "0 ARC 10 96 20 202 40 3 50 100 51 170"},
        {"0 CIRCLE 10 1 20 2 40 1.5", kTurn, "0 CIRCLE 10 96 20 202 40 3"},
        {"0 ARC 10 1 20 2 40 1.5 50 10 51 80", kMirror, "0 ARC 10 104 20 202 40 3 50 10 51 80"},
        {"0 ARC 10 1 20 2 40 1.5 50 0 51 30 210 0 220 0 230 -1", kTurn,
         "0 ARC 10 -96 20 198 40 3 50 270 51 300 210 0 220 0 230 -1"},
        {"0 ARC 10 1 20 2 40 3 50 -30.1 51 1e30 0 HATCH 91 1 92 0 93 1 72 2 10 5 20 6 40 4 50 -7.3 "
         "51 8.1 73 0 97 0 0 DIMENSION 70 1 51 -20.3 0 TEXT 10 0 20 0 40 2 50 -30.1",
         kShift,
         "0 ARC 10 101 20 202 40 3 50 -30.1 51 1e30 0 HATCH 91 1 92 0 93 1 72 2 10 105 20 206 40 4 "
         "50 -7.3 51 8.1 73 0 97 0 0 DIMENSION 70 1 51 -20.3 0 TEXT 10 100 20 200 40 2 50 -30.1"},
        {"0 ATTDEF 10 0 20 0 72 1 11 5 21 1 0 ATTRIB 10 0 20 0 74 2 11 5 21 1 0 TEXT 10 5 20 1 11 "
         "0 21 0",
         kShift,
         "0 ATTDEF 10 0 20 0 72 1 11 105 21 201 0 ATTRIB 10 0 20 0 74 2 11 105 21 201 0 TEXT 10 "
         "105 20 201 11 0 21 0"},
        {"0 TEXT 10 0 20 0 40 1 1 x 72 1 11 5 21 1", kTurn,
         "0 TEXT 10 0 20 0 40 2  50 90 1 x 72 1 11 98 21 210"},
        {"0 LWPOLYLINE 90 2 70 0 43 0.5 10 0 20 0 42 1 10 1 20 0", kMirror,
         "0 LWPOLYLINE 90 2 70 0 43 1 10 100 20 200 42 -1 10 100 20 202"},
        {"0 ELLIPSE 10 1 20 2 11 2 21 0 40 0.5 41 1 42 2", kStretch,
         "0 ELLIPSE 10 2 20 2 11 4 21 0 40 0.25 41 1 42 2"},
        {"0 HATCH 91 1 92 2 72 1 73 1 93 2 10 1 20 2 42 1 10 3 10 9 20 4 97 0", kMirror,
         "0 HATCH 91 1 92 2 72 1 73 1 93 2 10 104 20 202 42 -1 10 108 10 9 20 206 97 0"},
        {"0 HATCH 91 1 92 0 93 4 72 1 10 1 20 2 11 3 21 4 72 2 10 5 20 6 40 7 50 10 51 80 73 0 72 "
         "2 10 5 20 6 40 7 50 10 51 80 73 1 72 4 94 1 73 0 74 0 95 4 96 2 40 0 40 0 40 1 40 1 10 1 "
         "20 2 10 3 20 5 97 2 11 1 21 2 11 3 21 6 12 1 22 7 13 2 23 9 97 0 75 0 76 1 52 10 41 3 78 "
         "1 53 20 43 1 44 2 45 3 46 4 79 1 49 5 98 1 10 7 20 8",
         kTurn,
         "0 HATCH 91 1 92 0 93 4 72 1 10 96 20 202 11 92 21 206 72 2 10 88 20 210 40 14 50 280 51 "
         "350 73 0 72 2 10 88 20 210 40 14 50 100 51 170 73 1 72 4 94 1 73 0 74 0 95 4 96 2 40 0 "
         "40 0 40 1 40 1 10 96 20 202 10 90 20 206 97 2 11 96 21 202 11 88 21 206 12 -14 22 2 13 "
         "-18 23 4 97 0 75 0 76 1 52 100 41 6 78 1 53 110 43 96 44 202 45 -8 46 6 79 1 49 10 98 1 "
         "10 84 20 214"},
        {"0 HATCH 91 1 92 0 93 2 72 2 10 5 20 6 40 7 50 10 51 70 73 1 72 3 10 1 20 2 11 3 21 1 40 "
         "0.5 50 10 51 80 73 1 97 0",
         kMirror,
         "0 HATCH 91 1 92 0 93 2 72 2 10 112 20 210 40 14 50 280 51 340 73 0 72 3 10 104 20 202 11 "
         "2 21 6 40 0.5 50 10 51 80 73 0 97 0"},
        {"0 POLYLINE 66 1 40 1 41 2 0 VERTEX 10 1 20 2 40 3 41 4 42 0.5 50 10 0 SEQEND", kMirror,
         "0 POLYLINE 66 1 40 2 41 4 0 VERTEX 10 104 20 202 40 6 41 8 42 -0.5 50 80 0 SEQEND"},
        {"0 INSERT 2 B 10 1 20 0 30 5 43 3", kMirror,
         "0 INSERT 2 B 10 100 20 202 30 5  41 2  42 -2 43 3  50 90"},
        {"0 INSERT 2 B 10 1 20 0 41 3 42 4 44 5 45 6 50 10", kTurn,
         "0 INSERT 2 B 10 100 20 202 41 6 42 8 44 10 45 12 50 100"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 3", kTurn, "0 VIEWPORT 67 1 69 2 12 96 22 202 45 6"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 3 36 -1", kTurn,
         "0 VIEWPORT 67 1 69 2 12 1 22 2 45 3 36 -1"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 3 26 1", kTurn,
         "0 VIEWPORT 67 1 69 2 12 1 22 2 45 3 26 1"},
        {"0 VIEWPORT 67 1 69 2 12 1 22 2 45 1e308", kTurn,
         "0 VIEWPORT 67 1 69 2 12 1 22 2 45 1e308"},
        {"0 MTEXT 10 1 20 2 40 1 41 5 1 x 44 1 101 Embedded 10 1 20 0 11 1 21 2 40 5 44 3 45 4",
         kTurn,
         "0 MTEXT 10 96 20 202 40 2  50 90 41 10 1 x 44 1 101 Embedded 10 0 20 1 11 96 21 202 40 "
         "10 44 6 "
         "45 8"},
    };
    for (const auto& [before, map, after] : cases) expectRewritten(before, map, after);
    const std::tuple<std::vector<std::string>, std::string, std::string> alike[] = {
        {{"SOLID", "TRACE", "3DFACE"},
         "10 1 20 2 11 3 21 4 12 5 22 6 13 7 23 8",
         "10 96 20 202 11 92 21 206 12 88 22 210 13 84 23 214"},
        {{"RAY", "XLINE", "TOLERANCE"}, "10 1 20 2 11 0.6 21 0.8", "10 96 20 202 11 -0.8 21 0.6"},
        {{"IMAGE", "WIPEOUT"},
         "10 1 20 2 11 3 21 4 12 5 22 6",
         "10 96 20 202 11 -8 21 6 12 -12 22 10"},
        {{"SPLINE"},
         "10 1 20 2 11 3 21 4 12 5 22 6 13 7 23 8",
         "10 96 20 202 11 92 21 206 12 -12 22 10 13 -16 23 14"},
        {{"SHAPE", "TEXT", "ATTRIB", "ATTDEF"}, "10 1 20 2 40 3 50 10", "10 96 20 202 40 6 50 100"},
        {{"POINT"}, "10 1 20 2 50 10", "10 96 20 202 50 100"},
        {{"MESH"}, "10 1 20 2 10 3 20 4", "10 96 20 202 10 92 20 206"},
        {{"LEADER"},
         "10 1 20 2 10 3 20 4 40 5 41 6 211 0.6 221 0.8 212 3 222 4 213 5 223 6",
         "10 96 20 202 10 92 20 206 40 10 41 12 211 -0.8 221 0.6 212 -8 222 6 213 -12 223 10"},
        {{"MTEXT"},
         "10 1 20 2 11 0.6 21 0.8 40 1 41 2 42 3 43 4 46 5 48 6 49 7",
         "10 96 20 202 11 -0.8 21 0.6 40 2 41 4 42 6 43 8 46 10 48 12 49 14"},
    };
    for (const auto& [types, before, after] : alike) {
        for (const std::string& type : types) {
            const std::string begin = "0 " + type + " ";
            expectRewritten(begin + before, kTurn, begin + after);
        }
    }
}

TEST(TransformDrawing, MovesTheBoxOfTheHeaderAndKeepsLineEnds) {
    const auto box = [](const std::string& least, const std::string& greatest) {
        return Lines("0 SECTION 2 HEADER 9 $EXTMIN 10 " + least + " 9 $EXTMAX 10 " + greatest +
                     " 0 ENDSEC 0 EOF ");
    };
    const Transformation eighth{.type = Type::kHelmert, .a = {100, 1, -1}, .b = {200, 1, 1}};
    EXPECT_EQ(Rewrite(box("1 20 2", "3 20 5"), eighth).bytes, box("96 20 203", "101 20 208"));
    const std::string half = Lines("0 SECTION 2 HEADER 9 $EXTMIN 10 1 20 2 0 ENDSEC 0 EOF ");
    EXPECT_EQ(Rewrite("\xEF\xBB\xBF" + half, kTurn).bytes, "\xEF\xBB\xBF" + half);
    EXPECT_EQ(Rewrite(Lines("0 SECTION 2 TABLES 0 VIEW 10 1 20 2 40 3 41 4 0 VPORT 12 5 22 6 40 7 "
                            "17 1 27 1 0 ENDSEC 0 EOF "),
                      kTurn)
                  .bytes,
              Lines("0 SECTION 2 TABLES 0 VIEW 10 96 20 202 40 6 41 8 0 VPORT 12 85 22 211 40 14 "
                    "17 1 27 1 0 ENDSEC 0 EOF "));
    const auto unfinished = [](const std::string& x) {
        return Lines("0 SECTION 2 ENTITIES 0 POLYLINE 66 1 0 VERTEX 10 " + x + " 20 0 0 EOF ");
    };
    EXPECT_EQ(Rewrite(unfinished("3"), kStretch).bytes, unfinished("6"));
    const std::string crlf =
        Lines("0 SECTION 2 ENTITIES 0 POINT 10 1 20 2 0 ENDSEC 0 EOF", "\r\n") + "\r\n\x1A";
    EXPECT_EQ(Rewrite(crlf, kStretch, {.from = AxisMapping::kNe, .to = AxisMapping::kNe}).bytes,
              Lines("0 SECTION 2 ENTITIES 0 POINT 10 1 20 4 0 ENDSEC 0 EOF", "\r\n") + "\r\n\x1A");
    EXPECT_NE(Rewrite(Lines("0 SECTION 2 ENTITIES 0 INSERT 10 1 20 2 0 EOF ", "\r\n"), kTurn)
                  .bytes.find("202\r\n 41\r\n2\r\n 42\r\n2\r\n 50\r\n90\r\n0\r\nEOF\r\n"),
              std::string::npos);
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

TEST(TransformDrawing, MovesThosePlacesThatADimensionOfItsKindHas) {
    const std::vector<int> expected[] = {
        {10, 11, 13, 14}, {10, 11, 13, 14},     {10, 11, 13, 14, 15, 16}, {10, 11, 15},
        {10, 11, 15},     {10, 11, 13, 14, 15}, {10, 11, 13, 14}};
    for (int kind = 0; kind <= 6; ++kind) {
        std::string dimension = "0 DIMENSION 50 0 70 " + std::to_string(kind + 32);
        for (int code = 10; code <= 16; ++code)
            dimension += " " + std::to_string(code) + " 1 " + std::to_string(code + 10) + " 2";
        const std::string moved = Rewrite(DrawingOf(dimension), kShift).bytes;
        std::vector<int> places;
        for (int code = 10; code <= 16; ++code)
            if (NumberOf(moved, code) == 101 && NumberOf(moved, code + 10) == 202)
                places.push_back(code);
        EXPECT_EQ(places, expected[kind]) << kind;
    }
}

TEST(TransformDrawing, TurnsCurvesIntoEllipsesOrPolylinesAndTells) {
    const std::string arc = "0 ARC 8 L 10 0 20 0 40 10 50 0 51 90";
    const Rewritten ellipse = Rewrite(DrawingOf(arc), kStretch);
    EXPECT_EQ(ellipse.report.ellipses, (DrawingReport::Counts{{"ARC", 1}}));
    EXPECT_NE(ellipse.bytes.find("ELLIPSE\n8\nL\n"), std::string::npos);
    const Rewritten misplaced = Rewrite(
        DrawingOf("0 ARC 5 1F 41 x 73 y 100 AcDbCircle 10 0 20 0 40 10 50 0 51 90"), kStretch);
    EXPECT_EQ(Rewrite(misplaced.bytes, Transformation{}).bytes, misplaced.bytes);
    EXPECT_NE(misplaced.bytes.find("ELLIPSE\n5\n1F\n"), std::string::npos);
    const std::string common =
        " 5 A 6 T 8 L 48 2 60 0 62 3 67 0 370 5 390 B 410 Model 420 1 430 c 440 7 999 d ";
    EXPECT_NE(Rewrite(DrawingOf("0 CIRCLE" + common + "10 1 20 2 40 1"), kStretch)
                  .bytes.find(Lines(" ELLIPSE" + common)),
              std::string::npos);
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
    EXPECT_EQ(text.report.moved, 1U);
    EXPECT_DOUBLE_EQ(text.report.greatestDeparture, 0.5);
}

double DistanceFromSegment(Point place, Point a, Point b) {
    const Point along{b.first - a.first, b.second - a.second};
    const Point from{place.first - a.first, place.second - a.second};
    const double size = along.first * along.first + along.second * along.second;
    const double part =
        size == 0 ? 0 : (from.first * along.first + from.second * along.second) / size;
    const double t = std::clamp(part, 0.0, 1.0);
    return std::hypot(from.first - t * along.first, from.second - t * along.second);
}

/// The greatest distance of a place of one line from the other line.
double Departure(const std::vector<Point>& places, const std::vector<Point>& line) {
    double greatest = 0;
    for (const Point& place : places) {
        double least = 1e300;
        for (std::size_t i = 1; i < line.size(); ++i)
            least = std::min(least, DistanceFromSegment(place, line[i - 1], line[i]));
        greatest = std::max(greatest, least);
    }
    return greatest;
}

/// The vertices of a polyline, or of the lines of a hatch, whose number the hatch must tell.
std::vector<Point> VerticesOf(const std::string& drawing) {
    std::vector<Point> vertices;
    Point end;
    int edges = 0;
    int told = 0;
    std::istringstream lines(drawing);
    for (std::string code, value; std::getline(lines, code) && std::getline(lines, value);) {
        const int number = std::stoi(code);
        if (number == 10) vertices.push_back({std::stod(value), 0});
        if (number == 20) vertices.back().second = std::stod(value);
        if (number == 11) end.first = std::stod(value);
        if (number == 21) end.second = std::stod(value);
        if (number == 72 && std::stoi(value) == 1) ++edges;
        if (number == 93 || number == 90) told = std::stoi(value);
    }
    if (edges > 0) vertices.push_back(end);
    EXPECT_EQ(told, edges > 0 ? edges : static_cast<int>(vertices.size()));
    return vertices;
}

TEST(TransformDrawing, FollowsCurvesWithinTheTolerance) {
    const auto radians = [](double degrees) { return degrees * std::acos(-1.0) / 180; };
    const auto arc = [&](double from, double to) {
        return [=](double t) {
            const double angle = radians(from + t * (to - from));
            return Point{3 + 10 * std::cos(angle), 4 + 10 * std::sin(angle)};
        };
    };
    const auto ellipse = [](double along, double across) {
        return Point{3 + 0.8 * along - 0.6 * across, 4 + 0.6 * along + 0.8 * across};
    };
    const auto ofParameter = [&](double t) {
        const double u = 0.4 + t * 1.3;
        return ellipse(10 * std::cos(u), 5 * std::sin(u));
    };
    const auto ofAngle = [&](double t) {  // between the axis and the radius
        const double angle = radians(30 + t * 90);
        const double radius = 50 / std::hypot(5 * std::cos(angle), 10 * std::sin(angle));
        return ellipse(radius * std::cos(angle), radius * std::sin(angle));
    };
    const auto bulge = [&](double t) {  // from 1, 0 over the apex 4, -1 to 7, 0
        const double half = std::asin(3.0 / 5);
        const double angle = radians(270) + half * (2 * t - 1);
        return Point{4 + 5 * std::cos(angle), 4 + 5 * std::sin(angle)};
    };
    const std::string spline =
        "40 0 40 0 40 0 40 1 40 1 40 2 40 2 40 2 ";  // two quarters of a circle
    const std::tuple<std::string, std::function<Point(double)>> cases[] = {
        {"0 SPLINE 8 L 70 4 71 2 72 8 73 5 " + spline +
             "41 1 41 0.70710678118654752 41 1 41 0.70710678118654752 41 1 10 13 20 4 30 7 10 13 "
             "20 14 30 7 10 3 20 14 30 7 10 -7 20 14 30 7 10 -7 20 4 30 7",
         arc(0, 180)},
        {"0 ARC 10 3 20 4 40 10 50 350 51 80", arc(-10, 80)},
        {"0 ELLIPSE 10 3 20 4 11 8 21 6 40 0.5 41 0.4 42 1.7", ofParameter},
        {"0 LWPOLYLINE 90 2 70 0 10 1 20 0 42 0.33333333333333333 10 7 20 0", bulge},
        {"0 HATCH 91 1 92 2 72 1 73 0 93 2 10 1 20 0 42 0.33333333333333333 10 7 20 0 97 0", bulge},
        {"0 HATCH 91 1 92 0 93 1 72 2 10 3 20 4 40 10 50 -10 51 80 73 1 97 0", arc(-10, 80)},
        {"0 HATCH 91 1 92 0 93 1 72 2 10 3 20 4 40 10 50 -10 51 80 73 0 97 0", arc(10, -80)},
        {"0 HATCH 91 1 92 0 93 1 72 3 10 3 20 4 11 8 21 6 40 0.5 50 30 51 120 73 1 97 0", ofAngle},
        {"0 HATCH 91 1 92 0 93 1 72 4 94 2 73 1 74 0 95 8 96 5 " + spline +
             "10 13 20 4 42 1 10 13 20 14 42 0.70710678118654752 10 3 20 14 42 1 10 -7 20 14 42 "
             "0.70710678118654752 10 -7 20 4 42 1 97 1 11 13 21 4 12 0 22 1 13 0 23 1 97 0",
         arc(0, 180)},
    };
    const Transformation bent{
        .type = Type::kPolynomial2, .a = {0, 0, 1, 0, 1e-2}, .b = {0, 0, 0, 1}};
    for (const auto& [entity, curve] : cases) {
        const Rewritten result = Rewrite(DrawingOf(entity), bent, {.tolerance = 0.01});
        EXPECT_EQ(result.report.polylines.size(), 1U) << entity;
        const std::vector<Point> vertices = VerticesOf(result.bytes);
        std::vector<Point> exact;
        for (int i = 0; i <= 2000; ++i) exact.push_back(bent.Apply(curve(i / 2000.0)));
        EXPECT_LT(Departure(vertices, exact), 1e-5) << entity;
        EXPECT_LT(Departure(exact, vertices), 0.01) << entity;
        for (const auto& [end, expected] : {std::pair{vertices.front(), exact.front()},
                                            std::pair{vertices.back(), exact.back()}}) {
            EXPECT_NEAR(end.first, expected.first, 1e-9) << entity;
            EXPECT_NEAR(end.second, expected.second, 1e-9) << entity;
        }
        const bool hasHeight = entity.starts_with("0 SPLINE");
        EXPECT_EQ(result.bytes.find("\n 38\n7\n") != std::string::npos, hasHeight);
        EXPECT_EQ(result.bytes.find("\n 38\n") != std::string::npos, hasHeight);
    }
}

TEST(TransformDrawing, MovesEveryPlaceOfAnEllipseUnderAShear) {
    const std::string arc = "0 ARC 10 3 20 4 40 10 50 350 51 80";
    Transformation map{.type = Type::kAffine, .a = {5, 1.1, -0.2}, .b = {7, 0.3, 0.9}};
    for (const Type type : {Type::kAffine, Type::kPolynomial1}) {
        map.type = type;
        map.b[2] = -map.b[2];  // the second one does not mirror
        const Rewritten there = Rewrite(DrawingOf(arc), map);
        const auto moved = [&](int code) { return NumberOf(there.bytes, code); };
        EXPECT_EQ(there.report.ellipses.size(), 1U);
        for (const double part : {0.0, 0.3, 1.0}) {
            const double before = (-10 + 90 * part) * std::acos(-1.0) / 180;
            const Point expected =
                map.Apply({3 + 10 * std::cos(before), 4 + 10 * std::sin(before)});
            const double fraction = map.b[2] < 0 ? 1 - part : part;
            const double t = moved(41) + (moved(42) - moved(41)) * fraction;
            const double across = moved(40) * std::sin(t);
            EXPECT_NEAR(moved(10) + std::cos(t) * moved(11) - across * moved(21), expected.first,
                        1e-9);
            EXPECT_NEAR(moved(20) + std::cos(t) * moved(21) + across * moved(11), expected.second,
                        1e-9);
        }
        EXPECT_LE(moved(40), 1);
    }
    const Rewritten back =
        Rewrite(Rewrite(DrawingOf("0 XLINE 10 1 20 2 11 0.6 21 0.8"), map).bytes, *map.Inverse());
    for (const auto& [code, number] : {std::pair{10, 1.0}, {20, 2.0}, {11, 0.6}, {21, 0.8}})
        EXPECT_NEAR(NumberOf(back.bytes, code), number, 1e-12);
}

TEST(TransformDrawing, WidensTheLinesOfOldPolylinesAlongTheirArcs) {
    const std::string old =
        "0 POLYLINE 8 L 66 1 10 0 20 0 30 7 39 2 70 129 40 1 41 3 0 VERTEX 8 L 10 1 20 0 42 1 0 "
        "VERTEX 8 L 10 7 20 0 41 5 0 SEQEND 8 L";
    const Rewritten result = Rewrite(DrawingOf(old, "AC1009"), kStretch, {.tolerance = 100});
    EXPECT_EQ(Rewrite(result.bytes, Transformation{}).bytes, result.bytes);
    const auto starts = NumbersOf(result.bytes, 40);
    const auto ends = NumbersOf(result.bytes, 41);
    ASSERT_EQ(starts.size(), 9U);  // eight for the arc
    ASSERT_EQ(ends.size(), 9U);
    for (int i = 0; i < 8; ++i) {
        EXPECT_NEAR(starts[static_cast<std::size_t>(i)], std::sqrt(2.0) * (1 + i / 4.0), 1e-12);
        EXPECT_NEAR(ends[static_cast<std::size_t>(i)], std::sqrt(2.0) * (1.25 + i / 4.0), 1e-12);
    }
    EXPECT_NEAR(starts.back(), std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(ends.back(), std::sqrt(2.0) * 5, 1e-12);
    EXPECT_EQ(NumbersOf(result.bytes, 30), std::vector{7.0});
    EXPECT_EQ(NumbersOf(result.bytes, 39), std::vector{2.0});
    EXPECT_EQ(NumbersOf(result.bytes, 70), std::vector{129.0});
    EXPECT_TRUE(result.bytes.ends_with("  0\nSEQEND\n8\nL\n0\nENDSEC\n0\nEOF\n"));
}

TEST(TransformDrawing, KeepsASplineInSpaceInSpace) {
    const Transformation bent{
        .type = Type::kPolynomial2, .a = {0, 0, 1, 0, 1e-2}, .b = {0, 0, 0, 1}};
    const std::string made =
        Rewrite(DrawingOf("0 SPLINE 70 1 71 1 72 4 73 2 40 0 40 0 40 1 40 1 10 1 20 2 30 3 10 9 20 "
                          "4 30 11"),
                bent, {.tolerance = 100})
            .bytes;
    EXPECT_EQ(NumbersOf(made, 30), (std::vector<double>{3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(NumbersOf(made, 40), (std::vector<double>{0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 8}));
    const auto x = NumbersOf(made, 10);
    ASSERT_EQ(x.size(), 9U);
    for (int i = 0; i < 9; ++i)
        EXPECT_NEAR(x[static_cast<std::size_t>(i)], bent.Apply({1.0 + i, 2 + i / 4.0}).first,
                    1e-12);
    for (const auto& [code, number] : {std::pair{71, 1.0}, {72, 11.0}, {73, 9.0}})
        EXPECT_EQ(NumberOf(made, code), number) << code;
    EXPECT_EQ(Rewrite(made, Transformation{}).bytes, made);
}

TEST(TransformDrawing, ScalesTextsAtTheirPlacesSeenFromBelowToo) {
    const Transformation bent{.type = Type::kPolynomial2,
                              .a = {5, 1.1, -0.2, 0.02, 0.03, -0.01},
                              .b = {7, 0.3, 0.9, -0.02, 0.01, 0.04}};
    const double scale = std::sqrt(std::abs(DerivativeAt(bent, {3, 4}).Determinant()));
    for (const std::string entity :
         {"0 TEXT 10 3 20 4 40 2", "0 TEXT 10 -3 20 4 40 2 210 0 220 0 230 -1",
          "0 MTEXT 10 3 20 4 40 2 210 0 220 0 230 -1"}) {
        EXPECT_NEAR(NumberOf(Rewrite(DrawingOf(entity), bent).bytes, 40), 2 * scale, 1e-12)
            << entity;
    }
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
