// Parameters through the command line: files, built-in transformations, directions.
#include <gtest/gtest.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>

#include "cli/shell.h"
#include "params/national.h"

namespace kv_tr::test {
namespace {

TEST(CommandLineParameters, ReportAndExitAsPromised) {
    const struct {
        std::string line;
        int code;
        std::string out, err;  // regular expressions for parts
    } cases[] = {
        {"kv_tr adjust shift --save-params new.trp", 0, "a0 = 100", "^$"},
        {"kv_tr params new.trp", 0, "^\ta0 = 100\\.000\n(.*\n)*\tX2 = b0 .*\n\n\n\n$", "^$"},
        {"kv_tr params new.trp --format prm", 0, "^100\\.000\n200\\.000\n1\\.0{8}\n", "^$"},
        {"kv_tr params new.trp --format trp --inverse", 0, "^-100\\.000\n1\\.0{8}\n", "^$"},
        {"kv_tr params new.trp --type helmert --format json", 0, "\"type\": 0,", "^$"},
        {"kv_tr params new.trp --format all", 1, "^$", "all: .* hold the type AFFINE"},
        {"kv_tr params new.trp --type poly1", 1, "^$", "new\\.trp: .* hold the type 1\\. order"},
        {"kv_tr adjust shift --type poly1 --save-params new.all", 0, "a1 = ", "^$"},
        {"kv_tr params new.all --format all", 0,
         "^1\\. order.*\n\n sy = .*\n  1 .*\n.*\n  3 .*\n\n$", "^$"},
        {"kv_tr params new.all --type poly2", 1, "^$", "new\\.all: .* 1\\. order.* 2\\. order"},
        {"kv_tr params new.all --inverse", 1, "^$", "Only linear .* 1\\. order"},
        {"kv_tr adjust shift --type poly1 --save-params old.prm", 1, "a1 = ", "hold the type 1\\."},
        {"kv_tr adjust shift --save-params gone/x.prm", 1,
         "a0 = ", "^File open error:gone/x.prm\n$"},
        {"kv_tr adjust shift --save-params x.txt", 2, "^$", "x\\.txt"},
        {"cp binary x.trp; kv_tr params x.trp", 1, "^$", "^Invalid .*\nx\\.trp: .* six numbers"},
        {"cp new.trp x.all; kv_tr params x.all", 1, "^$", "^Invalid .*\nx\\.all: .* line 3 on"},
        {"head -5 new.all > x.all; kv_tr params x.all", 1, "^$", "^Invalid .*\nx\\.all: no poly"},
        {"kv_tr params gone.all", 1, "^$", "^File open error:gone\\.all\n$"},
        {"kv_tr params gone.trp", 1, "^$", "^File open error:gone\\.trp\n$"},
        {"kv_tr params --national STG", 1, "^$", "named STG\n$"},
        {"kv_tr params --national OL_METER --type affine", 1, "^$", "OL_METER: .*Fathom.*AFFINE"},
        {"kv_tr params", 2, "^$", "--help"},
        {"kv_tr params new.trp --national STG_HER", 2, "^$", "--help"},
        {"kv_tr params new.trp --format xml", 2, "^$", "xml; .* listing, trp, prm, all, json"},
        {"kv_tr transform bad --params new.trp", 1, "^A 101.000 202.000\n$", "line 2"},
        {"kv_tr transform bad --params gone.trp --output old", 1, "^$", "open .*\nNothing was"},
        {"kv_tr transform bad --params new.all --points shift --type affine", 2, "^$", "--help"},
        {"echo 1 2 | kv_tr transform --params new.all", 0, "^101\\.000 202\\.000\n$", "^$"},
        {"echo 1 2 | kv_tr transform --params new.trp --inverse", 0, "^-99\\.000 -198\\.000\n$",
         "^$"},
        {"echo 1 2 | kv_tr transform --national METER_OL --inverse --decimals 6", 0,
         "^1\\.896484 3\\.792968\n$", "^$"},
        {"echo 1 2 | kv_tr transform --national STG_HER --inverse", 1, "^$",
         "Only linear .* STG-HÉR"},
        {"printf '0 1 2\\n0 2\\n' > x.trp; kv_tr params x.trp", 1, "^$", "six numbers"},
        {"printf '0 1 2 0 2 4' > x.trp; kv_tr params x.trp --inverse", 1, "^$", "no inverse"},
        {"kv_tr angle 1.5 2 3 --params new.trp", 0, "^1\\.(5000|4999)\\d{5}\n$", "^$"},
        {"kv_tr angle -90 -2 3 --params new.trp --unit deg", 0, "^270\\.000\\d{4}\n$", "^$"},
        {"kv_tr angle 50 650000 240000 --national EOV_STG_10e --unit gon", 0, "^24[0-9.]+\n$",
         "^$"},
        {"kv_tr angle 50 6 2 --national STG_HER --inverse", 1, "^$", "Only linear"},
        {"kv_tr angle 1 2 x --params new.trp", 2, "^$", "SECOND: .*x"},
        {"kv_tr angle 1 2 3 --params new.trp --unit mil", 2, "^$", "mil; .* rad, deg, gon"},
        {"kv_tr national", 0, "\nEOV_STG_10e +30 +EOV +STG +0\\.400 +Hungary\n", "^$"},
        {"kv_tr national --language hu", 0, "\nBOV_EOV +20 +BOV +EOV +0\\.050 +Budapest\n", "^$"},
    };
    const Shell shell;
    for (const auto& [line, code, out, err] : cases) {
        SCOPED_TRACE(line);
        const Result result = shell.Run(line);
        EXPECT_EQ(result.code, code);
        EXPECT_TRUE(std::regex_search(result.out, std::regex(out))) << result.out;
        EXPECT_TRUE(std::regex_search(result.err, std::regex(err))) << result.err;
    }
    EXPECT_EQ(shell.Files()["old"], "old");
    EXPECT_EQ(shell.Files().count("old.prm") + shell.Files().count("x.txt"), 0u);
}

TEST(CommandLineParameters, ApplyEveryNationalTransformation) {
    // The published check points, one run a type.
    struct CheckPoint {
        double numbers[4], tolerance;
    };
    std::map<int, std::vector<CheckPoint>> points;
    std::istringstream table(ReadFile(TEST_DATA "/national/checkpoints.csv"));
    for (std::string line; std::getline(table, line);) {
        std::replace(line.begin(), line.end(), ',', ' ');
        std::istringstream fields(line);
        int type = 0;
        CheckPoint p{};
        if (fields >> type >> p.numbers[0] >> p.numbers[1] >> p.numbers[2] >> p.numbers[3] >>
            p.tolerance) {
            points[type].push_back(p);
        }
    }
    const Shell shell;
    ASSERT_EQ(points.size(), NationalInfos().size() - 2);  // none for EOV_BOV and BOV_STG
    for (const NationalInfo& info : NationalInfos()) {
        SCOPED_TRACE(info.name);
        std::ostringstream input;
        input.precision(12);
        for (const CheckPoint& p : points[info.type])
            input << p.numbers[0] << ' ' << p.numbers[1] << '\n';
        const Result result = shell.Run(
            std::string("kv_tr transform --decimals 6 --national ") + info.name, input.str());
        EXPECT_EQ(result.code, 0) << result.err;
        std::istringstream output(result.out);
        for (const CheckPoint& p : points[info.type]) {
            double first = 0, second = 0;
            ASSERT_TRUE(output >> first >> second);
            EXPECT_LE(std::hypot(first - p.numbers[2], second - p.numbers[3]), p.tolerance);
        }
    }
}

TEST(CommandLineParameters, ComeBackThroughTheTypesWithoutCheckPoints) {
    // Closure of the pairs within 30 km of the city: 1.7 and 0.5 mm at most.
    const Shell shell;
    const std::string apply = "kv_tr transform --decimals 6 --national ";
    for (const auto& [there, back] : {std::pair{"BOV_EOV", "EOV_BOV"}, {"STG_BOV", "BOV_STG"}}) {
        const Result result =
            shell.Run("echo 2000 -8000 | " + apply + there + " | " + apply + back);
        EXPECT_EQ(result.code, 0) << result.err;
        std::istringstream output(result.out);
        double first = 0, second = 0;
        ASSERT_TRUE(output >> first >> second) << result.out;
        EXPECT_NEAR(first, 2000.0, 0.002) << back;
        EXPECT_NEAR(second, -8000.0, 0.002) << back;
    }
}

}  // namespace
}  // namespace kv_tr::test
