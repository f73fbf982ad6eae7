// Control points in the formats of other programs on the command line.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <regex>

#include "cli/command_line.h"

namespace kv_tr::test {
namespace {

TEST_F(CommandLine, ShowsConvertsAndFitsPointsOfAnyFormat) {
    const std::string lists = "interchange/source.lst interchange/target.csv";
    WriteFile(work + "marked.csv",
              "id,y1,x1,y2,x2,use,sigma\nA,0,0,1,1,1,0.1\nB,9,0,10,1,1,0.1\nC,0,7,1,8,1,0.1\n"
              "D,5,5,7,9,0,0.1\nE,8,9,9,10,1,0.2\n");
    WriteFile(work + "bad.csv", "id;y1;x1;y2;x2\nA;1;x;3;4\nB;1;2;3;y\n");
    WriteFile(work + "four", "0 0 1 1\n1 0 2 1\n0 1 1 2.5\n");
    const std::tuple<std::string, int, std::string, std::string> cases[] = {
        // line, exit code, and regular expressions for parts of the output and of the errors
        {"kv_tr points interchange/towns_1250.csv", 0,
         "^Format +csv\nLetters +windows-1250\nSeparator +;\nDecimal sign +,\nColumns +id "
         "src_first .* "
         "\\(named .*\nPoints +3, of which 2 in use\n\nid .*\nGyőr 1 +591294\\.43 .* 1\nGyőr 2 .* "
         "0\n",
         "^$"},
        {"kv_tr points " + lists, 0, "source\\.lst\nFormat +list\n(.*\n)*A1 +100\\.25 .*0\\.01\n",
         "D4\n.*: C3\n$"},
        {"kv_tr points shift --json --language hu", 0,
         "\"format\": \"listing\"(.*\n)*.*\"use\": true", "^$"},
        {"kv_tr points marked.csv --to gcp", 0, "^-gcp 0 0 1 1\n(-gcp .*\n){3}$",
         "left out: 1\n.*\n.*\n$"},
        {"kv_tr points marked.csv --to cad --output old", 1, "", "^old: .* one or two points"},
        {"kv_tr points marked.csv --output new.txt", 2, "^$", "--to .*: new\\.txt\n$"},
        {"kv_tr points marked.csv --output marked.csv", 2, "^$", "same file"},
        {"kv_tr points marked.csv --output no/x.csv", 1, "", "^File open error:no/x\\.csv\n$"},
        {"kv_tr points bad.csv --output old --to csv", 1, "^$",
         "bad\\.csv, line 2, column 5: not a number: x\nbad\\.csv, line 3, column 9: .*: y\n$"},
        {"kv_tr points gone", 1, "^$", "^File open error:gone\n$"},
        {"kv_tr points interchange/scan.points --axes ne,es --to csv", 0,
         "\n1,-200\\.25,100\\.5,650010\\.123,-238110\\.456,1\r\n", "system"},
        {"kv_tr points interchange/scan.points --axes ne,es --to qgis | diff - "
         "interchange/scan.points | grep -c '^[<>]'",
         0, "^4\n$", "^$"},  // two lines of residuals, which are not kept
        {"kv_tr points shift --axes ne --to csv", 2, "^$", "^--axes .* no file with map "},
        {"kv_tr adjust shift --axes ne", 1, "^$", "^--axes .* no file with map "},
        {"kv_tr adjust interchange/scan.points --type helmert --inverse --axes ne,en --export "
         "gcps",
         0, "^-gcp 650010\\.123 238110\\.456 100\\.5 -200\\.25\n", "surplus"},
        {"kv_tr adjust shift --save-format csv", 2, "^$", "^--save-format .* --save-points\n$"},
        {"kv_tr adjust shift --a-priori", 2, "^$", "^--a-priori .* --sigma\n$"},
        {"kv_tr adjust shift --vector-scale 5", 2, "^$",
         "^--vector-scale .* --residual-vectors\n$"},
        {"kv_tr adjust shift --residual-vectors x --vector-scale 0", 2, "^$", "number: 0\n"},
        {"kv_tr points shift --format xls", 2, "^$", "xls; .* listing, csv, qgis, "},
        {"kv_tr points shift four --format csv", 2, "^$", "^--format .* two lists"},
        {"kv_tr points shift --sigma columns --format csv", 1, "^$", "no columns of standard"},
        {"kv_tr adjust marked.csv --statistics", 0,
         "Excluded points:\n.*\n +D (.*\n)*.*σ \\(s0\\)\n",
         "^marked\\.csv: the standard deviations"},
        {"kv_tr adjust marked.csv --type helmert --exclude D --exclude E --json", 0,
         "\"sId\": \"D\",(.*\n){7}.*\"bNotUsed\": true(.*\n)*.*\"sId\": \"E\",(.*\n){7}.*true",
         "."},
        {"kv_tr adjust marked.csv --type poly2", 1, "^$", "needs? .*6.* 4|6 .* 4"},
        {"kv_tr adjust bad.csv", 1, "^$", "line 2, column 5: .*\n.*line 3, column 9: "},
        {"kv_tr adjust interchange/source.lst --target interchange/target.csv --type helmert "
         "--sigma columns",
         0, "\tHELMERT ", "D4\n.*: C3\n"},
        {"kv_tr adjust four", 0, "\ta0 = 1\\.000\n", "^W3: "},
        {"kv_tr adjust four --format listing", 1, "^$", "^Invalid .*\nfour, line 1: "},
        {"kv_tr transform shift --points interchange/scan.points --type affine", 1, "^$", "To few"},
    };
    for (const auto& [line, code, output, errors] : cases) {
        SCOPED_TRACE(line);
        const auto before = Files();
        EXPECT_EQ(Run(line), code);
        EXPECT_TRUE(std::regex_search(out, std::regex(output))) << out;
        EXPECT_TRUE(std::regex_search(err, std::regex(errors))) << err;
        EXPECT_TRUE(Files() == before);
        EXPECT_TRUE(line.find("--json") == line.npos || nlohmann::json::accept(out));
    }
}

TEST_F(CommandLine, LosesNothingFromFormatToFormat) {
    const std::string json = "kv_tr points interchange/towns_1250.csv --json";
    Run(json);
    const auto points = nlohmann::json::parse(out)["points"];
    std::string from = "interchange/towns_1250.csv";
    for (const char* to : {"a.csv", "b.geojson", "c.csv"}) {
        EXPECT_EQ(Run("kv_tr points " + from + " --output " + to), 0) << err;
        EXPECT_EQ(err, "");
        from = to;
    }
    Run("kv_tr points c.csv --json");
    EXPECT_EQ(nlohmann::json::parse(out)["points"], points);
    EXPECT_EQ(Files()["a.csv"], Files()["c.csv"]);
    EXPECT_EQ(Run("kv_tr points c.csv --output d.dat && kv_tr points d.dat"), 0);
    EXPECT_NE(out.find("windows-1250"), out.npos) << out;
}

TEST_F(CommandLine, SavesTheAdjustedPointsWithTheirMarksAndResiduals) {
    const std::string adjust =
        "kv_tr adjust examples/swiss_helmert_9.dat --type helmert --exclude 66.301 --save-points ";
    const std::string crs = " --target-crs EPSG:21781";
    for (const std::string& to :
         {std::string("a.csv"), "b.x --save-format geojson" + crs, "c.points --axes sw" + crs})
        EXPECT_EQ(Run(adjust + to), 0) << err;
    for (const char* from : {"a.csv", "b.x", "c.points --axes sw"}) {
        Run(std::string("kv_tr points --json ") + from);
        const auto read = nlohmann::json::parse(out);
        EXPECT_EQ(read["used"], 8) << from;
        EXPECT_EQ(read["points"][0]["use"], false) << from;
        EXPECT_EQ(read["points"][0]["src_first"], 591294.43) << from;
        EXPECT_EQ(read["points"][0]["dst_second"], 255778.741) << from;
    }
    EXPECT_NE(Files()["a.csv"].find(",0,-0.0"), std::string::npos) << "residuals";
    EXPECT_NE(Files()["c.points"].find("#CRS: EPSG:21781\n"), std::string::npos);
    EXPECT_EQ(Run(adjust + "d.dat --save-format gcp"), 0);
    EXPECT_NE(err.find("left out: 1\n"), std::string::npos) << err;
    EXPECT_EQ(Run(adjust + "e.dat"), 0);
    EXPECT_NE(err.find("like the others: 1\n"), std::string::npos) << err;
}

TEST_F(CommandLine, DrawsResidualsOnTheMap) {
    const std::string adjust = "kv_tr adjust examples/swiss_helmert_9.dat --type helmert ";
    EXPECT_EQ(Run(adjust + "--axes ws --residual-vectors a.json --vector-scale 1000 --json"), 0);
    const auto points = nlohmann::json::parse(out)["points"];
    const auto features = nlohmann::json::parse(Files()["a.json"])["features"];
    ASSERT_EQ(features.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto& point = points[i];
        const auto& line = features[i]["geometry"]["coordinates"];
        EXPECT_EQ(features[i]["properties"]["vector_scale"], 1000);
        EXPECT_EQ(features[i]["properties"]["res_first"], point["dXerr"]);
        EXPECT_EQ(line[0][0], -point["dXdest"].get<double>());
        EXPECT_EQ(line[1][0],
                  -(point["dXdest"].get<double>() + 1000 * point["dXerr"].get<double>()));
        EXPECT_EQ(line[1][1],
                  -(point["dYdest"].get<double>() + 1000 * point["dYerr"].get<double>()));
    }
    EXPECT_EQ(Run(adjust + "--residual-vectors b.json"), 0);
    EXPECT_NE(err.find("b.json: the lines are so many times longer than the residuals: 10000\n"),
              std::string::npos)
        << err;
}

}  // namespace
}  // namespace kv_tr::test
