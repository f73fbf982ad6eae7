// Which files are taken for ones with decimal commas.
#include "kv_tr/published/decimal_commas.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/decimal_commas.h"

namespace kv_tr {
namespace {

TEST(DecimalCommas, AreSeenWhereverTheyStandInAFile) {
    test::RecordingPlatform platform;
    const test::TemporaryFolder folder;
    std::string integers;
    for (int i = 0; i < 100; ++i) integers += "A 1 2 3 4\n";
    for (const auto& [name, text, has] : {
             std::tuple{"points", integers + "B 1 2 3,5 4\r\n", true},
             {"points", integers + "\"B\";\"1\";\"2\";'3'\t4,5;rest", true},
             {"points", integers + "B,1.5,2.5,3.5,4.5\nC 1,2 3,4\n1,2 3 4 5 x\n", false},
             {"a.trp", "1,304\n0,99\n0\n2\n0\n1", true},
             {"a.PRM", "1 2 3 4 5 6,5 rest", true},
             {"a.trp", "1,2,3,4,5,6", false},
             {"a.trp", "1.5, 2, 3, 4, 5, 6", false},
             {"a.ALL", "t\n\n sy = -9166,023  sx = 1\n  1  3,6E+05  4\n", true},
             {"a.all", "t, 1,5\n\n sy = -9166.023,1 sx = 1\n  1  3.6E+05  4\n", false},
         }) {
        SCOPED_TRACE(text.substr(text.size() - std::min<std::size_t>(text.size(), 20)));
        test::WriteFile(folder.File(name), text);
        const bool points = std::string_view(name) == "points";
        EXPECT_EQ(points ? PointsMayHaveDecimalCommas(folder.File(name))
                         : ParametersHaveDecimalCommas(folder.File(name)),
                  has);
        if (!points) continue;
        EXPECT_EQ(ReportDecimalCommas(folder.File(name)), has);
        EXPECT_EQ(platform.TakeTexts().size(), has ? 1U : 0U);
    }
    EXPECT_FALSE(PointsMayHaveDecimalCommas(folder.File("none")));
    EXPECT_FALSE(ParametersHaveDecimalCommas(folder.File("")));
}

TEST(WithDecimalPoints, ChangesOnlyTheNumbersOfLinesThatHaveDecimalCommas) {
    EXPECT_EQ(WithDecimalPoints("1,5 1,5 2 3 4,25\r\nB,1,2 3 4\n\"C\" 1 2 3,5 4"),
              "1,5 1.5 2 3 4.25\r\nB,1,2 3 4\n\"C\" 1 2 3.5 4");
}

}  // namespace
}  // namespace kv_tr
