// Control points in the formats of other programs: recognised, read, written, refused.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "helpers/files.h"
#include "kv_tr/interchange/point_lists.h"

namespace kv_tr {
namespace {

using Kind = Problem::Kind;
using enum PointFormat;

const std::string kData = TEST_DATA "/interchange/";

/// Points with numbers of all sizes, unusual identifiers, and marks.
std::vector<ControlPoint> UnevenPoints() {
    return {{"A,\"1\"", {0.1 + 0.2, 1e22}, {-1.0 / 3.0, 654321.12345678912}},
            {"Kő <2> & két", {5e-324, -1.7976931348623157e308}, {1e-5, 9.9e-6}, false},
            {"#3", {1e15, 123456789012345.67}, {-0.0, 2}},
            {"", {7, 100000}, {1e6, 3.5}}};
}

struct Ability {
    PointFormat format;
    bool marks, identifiers, sigmas;
};
constexpr Ability kAbilities[] = {
    {kListing, false, true, true}, {kCsv, true, true, true},     {kQgis, true, false, false},
    {kGdal, false, false, false},  {kVrt, false, true, false},   {kEsriLink, false, true, false},
    {kGrass, true, false, false},  {kGeoJson, true, true, true},
};

TEST(WritePoints, IsReadBackToTheSameBitsAsFarAsTheFormatHolds) {
    const auto points = UnevenPoints();
    const std::vector<Point> sigmas{{0.01, 0.02}, {1, 2}, {3, 4}, {1e-3, 0.1}};
    const std::vector<Residual> residuals{{0.1, -0.2}, {1, 2}, {-3, 4}, {5, 6}};
    for (const auto& [format, marks, identifiers, hasSigmas] : kAbilities) {
        SCOPED_TRACE(WordOf(format));
        const auto written = WritePoints(
            {.points = points, .residuals = residuals, .sigmas = sigmas, .crs = "EPSG:23700"},
            format);
        EXPECT_EQ(written.excludedLeftOut, marks ? 0U : 1U);
        EXPECT_EQ(written.identifiersLeftOut, !identifiers);
        EXPECT_EQ(written.sigmasLeftOut, !hasSigmas);
        const bool own = format == kListing || format == kEsriLink;
        const PointFile read =
            ReadPoints(written.text,
                       {.format = own ? std::optional(format) : std::nullopt, .sigmas = hasSigmas});
        ASSERT_TRUE(read.Complete()) << written.text;
        EXPECT_EQ(read.format, format);
        EXPECT_EQ(read.crs.empty(), written.crsLeftOut);
        EXPECT_EQ(read.sigmas.size(), hasSigmas ? read.points.size() : 0U);
        std::vector<ControlPoint> expected;
        for (const ControlPoint& point : points) {
            if (!marks && !point.used) continue;
            expected.push_back(point);
            std::string& id = expected.back().id;
            const std::string number = std::to_string(expected.size());
            if (!identifiers || (id.empty() && format == kVrt)) id = number;
            if (own) id = IdentifierField(point.id);
        }
        ASSERT_EQ(read.points.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(read.points[i], expected[i]) << i << read.points[i].id;
            EXPECT_FALSE(std::signbit(read.points[i].destination.first) && i == 2) << "-0";
        }
        if (hasSigmas) {
            EXPECT_EQ(read.sigmas.back(), sigmas.back());
        }
    }
}

TEST(WritePoints, WritesWhatOtherProgramsRead) {
    const std::vector<ControlPoint> points{{"P 1", {0, -0.5}, {1000, 2000}},
                                           {"2", {1e6, 3}, {4, 5}, false}};
    for (const auto& [format, text] :
         {std::pair<PointFormat, std::string>{
              kListing,
              "                 P_1              0           -0.5           1000"
              "           2000\r\n"},
          {kCsv,
           "id,src_first,src_second,dst_first,dst_second,use\r\nP 1,0,-0.5,1000,2000,1\r\n"
           "2,1000000,3,4,5,0\r\n"},
          {kQgis,
           "#CRS: EPSG:1\nmapX,mapY,sourceX,sourceY,enable,dX,dY,residual\n"
           "1000,2000,0,-0.5,1,0,0,0\n4,5,1000000,3,0,0,0,0\n"},
          {kGdal, "-gcp 0 -0.5 1000 2000\n"},
          {kEsriLink, "P_1\t0\t-0.5\t1000\t2000\r\n"},
          {kCadWorld, "0,-0.5 1000,2000\r\n"}}) {
        EXPECT_EQ(WritePoints({.points = points, .crs = "EPSG:1"}, format).text, text);
    }
    const auto json = WritePoints({.points = points, .crs = "EPSG:23700"}, kGeoJson).text;
    EXPECT_NE(json.find("\"urn:ogc:def:crs:EPSG::23700\""), json.npos) << json;

    auto many = UnevenPoints();
    EXPECT_EQ(WritePoints({.points = many}, kCadWorld).refusal, PointText::Refusal::kTooManyPoints);
    many[0].source.first = HUGE_VAL;
    for (const PointFormat format : kPointFormats) {
        const auto refused = WritePoints({.points = many}, format);
        EXPECT_EQ(refused.refusal, PointText::Refusal::kNotFinite);
        EXPECT_EQ(refused.text, "");
    }
}

TEST(WritePoints, ObeysTheAxesWhereTheFormatIsOnMaps) {
    const std::vector<ControlPoint> points{{"1", {1, 2}, {30, 40}}, {"2", {5, 7}, {11, 13}}};
    for (const PointFormat format : kPointFormats) {
        SCOPED_TRACE(WordOf(format));
        for (const auto source : {AxisMapping::kNe, AxisMapping::kWs, AxisMapping::kSe}) {
            const auto target = AxisMapping::kNw;
            const auto text = [&](AxisMapping of, AxisMapping to) {
                return WritePoints({.points = points, .sourceAxes = of, .targetAxes = to}, format)
                    .text;
            };
            const std::string written = text(source, target);
            EXPECT_EQ(written != text(AxisMapping::kEn, target),
                      IsOnMaps(format) && format != kGeoJson);
            EXPECT_EQ(written != text(source, AxisMapping::kEn), IsOnMaps(format));
            EXPECT_EQ(
                ReadPoints(written, {.format = format, .sourceAxes = source, .targetAxes = target})
                    .points,
                points);
        }
    }
    EXPECT_EQ(
        WritePoints(
            {.points = points, .sourceAxes = AxisMapping::kNw, .targetAxes = AxisMapping::kSe},
            kGdal)
            .text,
        "-gcp -2 1 40 -30\n-gcp -7 5 13 -11\n");
}

/// Points as text: "id source destination", and "-" where a point is not in use.
std::string Shown(const PointFile& file) {
    std::string text(WordOf(file.format));
    for (const auto& [id, from, to, used] : file.points) {
        text += (used ? " | " : " |-") + id;
        for (const double number : {from.first, from.second, to.first, to.second})
            text += " " + FixedText(number, 2);
    }
    return text;
}

TEST(ReadPoints, RecognisesFormatsAndTakesTheirVariants) {
    const std::string two = " | 1 3.00 4.00 1.00 2.00 |-2 7.50 -8.00 5.00 6.00";
    const std::string both = " | A 1.50 2.00 3.00 4.00 | B 5.00 6.00 7.00 8.00";
    const std::string wkt = "PROJCS[\"a\",GEOGCS[\"b\",1,2]]";
    for (const auto& [text, shown] : {
             // clang-format off
             std::pair<std::string, std::string>{"mapX\tmapY\tpixelX\tpixelY\n1\t2\t3\t4\n",
                                                 "qgis | 1 3.00 4.00 1.00 2.00"},
             {"mapX,mapY,pixelX,pixelY,enable\n1,2,3,4,1\n5,6,7.5,-8,0\n", "qgis" + two},
             {"#CRS: " + wkt + "\r\nmapX,mapY,pixelX,pixelY,enable,dX,dY,residual\r\n1,2,3,4,1,9,9,9\r\n"
              "5,6,7.5,-8,0,9,9,9\r\n", "qgis" + two},
             {"mapX,mapY,sourceX,sourceY,enable,dX,dY,residual," + wkt + "\n1,2,3,4,1,0,0,0\n"
              "5,6,7.5,-8,0,0,0,0\n", "qgis" + two},
             {"#CRS: \n1,2,3,4,1\n5,6,7.5,-8,0\n", "qgis" + two},
             {"gdal_translate -gcp 1.5 2 3 4 \\\n -gcp 5 6 7 8 99 -order 1 in.tif out.tif",
              "gcp | 1 1.50 2.00 3.00 4.00 | 2 5.00 6.00 7.00 8.00"},
             {"-gcp 1 2 3 4\n", "gcp | 1 1.00 2.00 3.00 4.00"},
             {"1,2 3,4\r\n", "cad | 1 1.00 2.00 3.00 4.00"},
             {"1.5\t2\t3\t4\n5 6 7 8\n", "link | 1 1.50 2.00 3.00 4.00 | 2 5.00 6.00 7.00 8.00"},
             {"A 1.5 2 3 4\nB,5;6 7 8\n", "listing" + both},
             {"A,1.5,2,3,4\nB,5,6,7,8\n", "listing" + both},
             {"# note\nA;1.5;2;3;4\nB;5;6;7;8\n", "csv" + both},
             {"1.5;2;3;4\n5;6;7;8\n", "csv | 1 1.50 2.00 3.00 4.00 | 2 5.00 6.00 7.00 8.00"},
             {"\"A;\"\"1\"\"\";1;2;3;4\n", "csv | A;\"1\" 1.00 2.00 3.00 4.00"},
             {"\xEF\xBB\xBFh|code|dst first|DST-SECOND|Y1|X 1|Name\n9|9|3|4|1,5|2|A\n9|9|7|8|5|6|B\n\x1A",
              "csv" + both},
             {"mapX;mapY;sourceX;sourceY;enable;id\n3;4;1.5;2;yes;A\n7;8;5;6;False;B\n",
              "csv | A 1.50 2.00 3.00 4.00 |-B 5.00 6.00 7.00 8.00"},
             {"id\tfrom_x\tfrom_y\tto_x\tto_y\nA\t1.001,5\t2\t3\t4.000.000\n",
              "csv | A 1001.50 2.00 3.00 4000000.00"},
             {"{\"type\":\"FeatureCollection\",\"features\":[{\"type\":\"Feature\",\"geometry\":null},"
              "{\"geometry\":{\"type\":\"Point\",\"coordinates\":[3,4,9]},\"properties\":"
              "{\"Y1\":1.5,\"X1\":2,\"name\":12,\"enabled\":0}}]}", "geojson |-12 1.50 2.00 3.00 4.00"},
             {"", "listing"},
             // clang-format on
         }) {
        const PointFile file = ReadPoints(text);
        EXPECT_EQ(Shown(file), shown) << text;
        EXPECT_TRUE(file.Complete()) << text;
    }
    EXPECT_EQ(ReadPoints("#CRS: " + wkt + "\nh\n1\t2\t3\t4\n").crs, wkt);
}

TEST(ReadPoints, TakesFilesOfOtherPrograms) {
    const auto read = [](const char* name) { return ReadPointsOfFile(kData + name); };
    const std::string scan =
        " | 1 100.50 -200.25 650010.12 238110.46 |-2 1100.75 -190.50 650910.50 238120.00"
        " | 3 112.00 -1300.13 650020.75 239105.25";
    EXPECT_EQ(Shown(read("scan.points")), "qgis" + scan);
    EXPECT_EQ(Shown(read("scan_old.points")), "qgis" + scan);
    const auto three = [](const std::string& first, const std::string& second,
                          const std::string& third) {
        return first + " 100.50 200.25 650010.12 238110.46" + second +
               " 1100.75 190.50 650910.50 238120.00" + third +
               " 112.00 1300.13 650020.75 239105.25";
    };
    EXPECT_EQ(Shown(read("scan_gdal.vrt")), three("vrt | 1", " | 2", " | 3"));
    EXPECT_EQ(Shown(read("gcps.opt")), three("gcp | 1", " | 2", " | 3"));
    for (const std::string format : {"geojson", "csv"})
        EXPECT_EQ(Shown(read(("monuments_ogr." + format).c_str())),
                  three(format + " | Őrhegy", " |-P2", " | P3"));
    EXPECT_EQ(Shown(read("links.txt")),
              "listing | A_1 100.50 -200.25 650010.12 238110.46 | B 1100.75 -190.50 650910.50 "
              "238120.00 | C 112.00 -1300.13 650020.75 239105.25");
    EXPECT_EQ(Shown(read("drawing.wld")),
              "cad | 1 0.00 0.00 650010.12 238110.46 | 2 841.00 594.00 650910.50 238745.25");
    EXPECT_EQ(Shown(read("POINTS")),
              "grass | 1 100.50 200.25 650010.12 238110.46"
              " |-2 1100.75 190.50 650910.50 238120.00 | 3 112.00 1300.13 650020.75 239105.25");
    EXPECT_EQ(Shown(read("gcps.vrt")),
              "vrt | Kő <1> 100.50 200.25 650010.12 238110.46"
              " | 2 1100.75 190.50 650910.50 238120.00");
    EXPECT_EQ(read("gcps.vrt").crs, "PROJCS[\"HD72 / EOV & more\"]");
    const PointFile towns = read("towns_1250.csv");
    EXPECT_EQ(Shown(towns),
              "csv | Győr 1 591294.43 255778.25 591294.92 255778.74"
              " |-Győr 2 598602.52 254944.61 598602.93 254945.09"
              " |  601123.50 249871.00 601124.02 249871.46");
    EXPECT_EQ(towns.layout.encoding + towns.layout.separator + towns.layout.decimalSign,
              "windows-1250;,");
    EXPECT_TRUE(towns.layout.header);
    EXPECT_EQ(towns.layout.columns.back(), "-");
}

TEST(ReadPoints, ReadsAListingAsItsReaderDoes) {
    for (const char* folder : {EXAMPLES, TEST_DATA "/adjustment", TEST_DATA "/exact"}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() != ".dat") continue;
            const std::string name = entry.path().string();
            const PointFile file = ReadPointsOfFile(name);
            EXPECT_EQ(file.format, kListing) << name;
            EXPECT_EQ(file.points, ReadControlPointFile(name).points) << name;
        }
    }
    for (const std::string text :
         {"A 0 0 1 1\n\nB 1 1 2\n", "b;0,5;1,5;2,5;3,5\n", "A 1 2\nB x 2\n",
          "1 0 1 2 1\n2 5 6 7 0\n", "# A 1 2 3\n", "A 1 2 3 4 5\nB 1 2 3 4\n"}) {
        std::istringstream stream(text);
        const PointFile file = ReadPoints(text);
        EXPECT_EQ(file.format, kListing) << text;
        EXPECT_EQ(file.problems, ReadControlPoints(stream).problems) << text;
    }
}

TEST(ReadPoints, TakesUtf16AndRefusesWhatItMayMisread) {
    for (const bool big : {false, true}) {
        for (const std::string text : {"id\ty1\tx1\ty2\tx2\nKő\t1,5\t2\t3\t4\n", "A 1 2 3 4\n"}) {
            std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
            for (std::size_t i = 0; i < text.size(); ++i) {
                const bool two = text[i] == '\xC5';  // ő is U+0151
                const char high = two ? '\1' : '\0', low = two ? '\x51' : text[i];
                bytes += big ? std::string{high, low} : std::string{low, high};
                if (two) ++i;
            }
            EXPECT_EQ(ReadPoints(bytes).points, ReadPoints(text).points);
            EXPECT_EQ(ReadPoints(bytes).points.size(), 1U);
            EXPECT_EQ(ReadPoints(bytes).layout.encoding, "UTF-16");
        }
    }
    const PointFile halves = ReadPoints("A,1,5,2,5,3,5,4,5\nB,2,5,3,5,4,5,5,5\n");
    ASSERT_EQ(halves.problems.size(), 1U);
    EXPECT_EQ(halves.problems[0].kind, Kind::kAmbiguousCommas);
    const PointFile mixed = ReadPoints("id;y1;x1;y2;x2\nA;1;2;3;4\nB,5,6,7,8\n");
    EXPECT_EQ(mixed.problems, (std::vector<Problem>{{Kind::kUnequalFields, 3, 1, "B,5,6,7,8"}}));
}

TEST(ReadPoints, TellsEveryProblemWithItsLineColumnAndField) {
    const std::string header = "id;y1;x1;y2;x2;use;sigma\n";
    using Problems = std::vector<Problem>;
    for (const auto& [format, text, problems] : {
             // clang-format off
             std::tuple<PointFormat, std::string, Problems>
             {kCsv, header + "Ő;1;2;3;x 4;1;1\nB;1;2;3;4;?;1\nC;1;2;3;4\n\nD;;1e400;3;4;0;-1\n",
              {{Kind::kNotANumber, 2, 9, "x 4"}, {Kind::kBadMark, 3, 11, "?"}, {Kind::kUnequalFields, 4, 1, "C;1;2;3;4"},
               {Kind::kMissingField, 6, 3, ""}, {Kind::kNotANumber, 6, 4, "1e400"}}},
             {kCsv, header + "A;1;2;3;4;1;0\n", {{Kind::kNotPositive, 2, 13, "0"}}},
             {kCsv, header + "A;1,5;2;3;4;1;1\nB;1;2;3.5;4;1;1\n", {{Kind::kMixedDecimals, 3, 7, "3.5", 2}}},
             {kCsv, header + "A;1,23,456;1.23.456,7;12.34,5;4;1;1\n",
              {{Kind::kNotANumber, 2, 3, "1,23,456"}, {Kind::kNotANumber, 2, 12, "1.23.456,7"},
               {Kind::kNotANumber, 2, 23, "12.34,5"}}},
             {kCsv, "A,1,2,3,4,5,6,7,8\nB,1,2,3,4,5,6,7,8", {{Kind::kAmbiguousCommas, 1, 1, "A,1,2,3,4,5,6,7,8"}}},
             {kCsv, "id,y1,x1,y2,y1\na,1,2,3,4\n", {{Kind::kBadHeader, 1, 1, "id,y1,x1,y2,y1"}}},
             {kCsv, "A;B\n", {{Kind::kUnequalFields, 1, 1, "A;B"}}},
             {kQgis, "mapX,mapY,pixelX,pixelY,enable\n1,2,3\n1,2,x,4,2\n",
              {{Kind::kMissingField, 2, 6, ""}, {Kind::kNotANumber, 3, 5, "x"}, {Kind::kBadMark, 3, 9, "2"}}},
             {kGdal, "-gcp 1 2 3\n-gcp 1 2 3 4", {{Kind::kMissingField, 1, 11, ""}}},
             {kVrt, "<GCPList>\n <GCP Pixel='1' Line='2' X='x' Y='4'/>\n <GCP Pixel='1'/>\n</GCPList>",
              {{Kind::kNotANumber, 2, 29, "x"}, {Kind::kMissingField, 3, 18, ""}}},
             {kVrt, "<VRTDataset>", {{Kind::kDamaged, 1, 13, ""}}},
             {kCadWorld, "1,2 3,4\n1,2 3,4\n1,2 3,4", {{Kind::kDamaged, 3, 1, "1,2 3,4"}}},
             {kCadWorld,
              "1,2 3,4\n1,2,3 4",
              {{Kind::kDamaged, 2, 1, "1,2,3"}, {Kind::kDamaged, 2, 7, "4"}}},
             {kGrass, "# h\n1 2 3 4 x\n", {{Kind::kNotANumber, 2, 9, "x"}}},
             {kEsriLink, "1 2 3\n", {{Kind::kMissingField, 1, 6, ""}}},
             {kGeoJson, "{\"type\":\n }", {{Kind::kDamaged, 2, 2, "}"}}},
             {kGeoJson, "{\"type\": Ő}", {{Kind::kDamaged, 1, 10, "Ő"}}},
             {kGeoJson, "{\"type\":\"Topology\"}", {{Kind::kDamaged, 1, 1, ""}}},
             // clang-format on
         }) {
        EXPECT_EQ(ReadPoints(text, {.format = format}).problems, problems) << text;
    }
    std::string bad = header;
    for (int i = 0; i < 100; ++i) bad += "A;1;2;3;x;1;1\n";
    const PointFile file = ReadPoints(bad);
    EXPECT_EQ(file.problems.size(), PointReading::kMostProblems);
    EXPECT_EQ(ReadPointsOfFile("/no/such/file").problems, (Problems{{Kind::kNotOpened}}));
    EXPECT_EQ(ReadPointsOfFile("/proc/self/mem").Complete(), false);
    EXPECT_EQ(ReadPoints(std::string(5 << 20, 'x')).problems, (Problems{{Kind::kLineTooLong, 1}}));
}

TEST(ReadPoints, SurvivesDamagedFilesOfEveryFormat) {
    std::mt19937 random(7);
    const auto points = UnevenPoints();
    for (const PointFormat format : kPointFormats) {
        const std::string text =
            WritePoints({.points = std::span(points).first(2), .crs = "EPSG:1"}, format).text;
        ASSERT_FALSE(text.empty());
        for (int i = 0; i < 500; ++i) {
            std::string damaged = text.substr(0, random() % text.size());
            for (int k = 0; k < 3 && !damaged.empty(); ++k)
                damaged[random() % damaged.size()] = "\"'<>&;,. \t\n\r#{}[]-e0\xFF"[random() % 21];
            for (const auto given : {std::optional<PointFormat>{}, std::optional(format)}) {
                const PointFile file = ReadPoints(damaged, {.format = given, .sigmas = i % 2 == 0});
                EXPECT_LE(file.problems.size(), PointReading::kMostProblems);
                EXPECT_TRUE(file.sigmas.empty() || file.sigmas.size() == file.points.size());
            }
            ReadPointList(damaged);
        }
    }
}

TEST(JoinByIdentifier, PairsEqualIdentifiersAndTellsTheOthers) {
    const PointList source = ReadPointListOfFile(kData + "source.lst");
    const PointList target = ReadPointListOfFile(kData + "target.csv");
    ASSERT_TRUE(source.Complete() && target.Complete());
    EXPECT_EQ(source.layout.decimalSign, ',');
    const JoinedLists joined = JoinByIdentifier(source, target);
    EXPECT_EQ(joined.points,
              (std::vector<ControlPoint>{{"A1", {100.25, 200.5}, {650100.5, 238200.25}},
                                         {"A2", {900.125, 210.75}, {650900.25, 238211}},
                                         {"B7", {512.5, 777.25}, {650512.25, 238777.125}}}));
    EXPECT_EQ(joined.sigmas, (std::vector<Point>{{0.01, 0.01}, {0.03, 0.03}, {0.02, 0.02}}));
    EXPECT_EQ(joined.onlyInDestination, (std::vector<std::string>{"D4"}));
    EXPECT_EQ(joined.repeated, (std::vector<std::string>{"C3"}));
    EXPECT_EQ(JoinByIdentifier(target, source).onlyInSource, (std::vector<std::string>{"D4"}));

    const PointList sigmas =
        ReadPointList("A 1 2 0.1 0.2\nB 3 4 0.3 0\nC 5 6 1 x", {.sigmas = true});
    EXPECT_EQ(sigmas.points.at(0).sigma, (Point{0.1, 0.2}));
    EXPECT_EQ(sigmas.problems, (std::vector<Problem>{{Kind::kNotPositive, 2, 11, "0"},
                                                     {Kind::kNotANumber, 3, 9, "x"}}));
    EXPECT_EQ(ReadPointList("A 1 2\nB 1\n").problems,
              (std::vector<Problem>{{Kind::kMissingField, 2, 4, ""}}));
}

}  // namespace
}  // namespace kv_tr
