#include "engine/control_point_file.h"

#include <gtest/gtest.h>

#include "engine/clsTrCalc.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "support/errors.h"
#include "support/number_text.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

class ControlPointFile : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    clsTrCalc engine;

    bool Load(const std::string& text, bool append = false) {
        test::WriteFile(folder.File("points.dat"), text);
        return engine.bLoadXYsFromFile(folder.File("points.dat"), append);
    }

    std::vector<typeXYs4Tr> Pairs() const {
        std::vector<typeXYs4Tr> pairs;
        std::int32_t count = 0;
        engine.GetAllXYs(pairs, count);
        return pairs;
    }
};

TEST_F(ControlPointFile, ListsPairsInFixedColumns) {
    EXPECT_EQ(engine.sListXYs(), "");
    const std::vector<typeXYs4Tr> pairs = {
        {.sId = "Győr-12", .dXsour = 1, .dYsour = -2.0005, .dXdest = 1e6, .dYdest = -0.0001},
        {.sId = "1234567890123456789012345", .dXdest = -1234567890.123, .bNotUsed = true}};
    engine.AddXY4Tr(pairs, false);
    EXPECT_EQ(engine.sListXYs(),
              "             Győr-12          1.000         -2.001    1000000.000          0.000\r\n"
              "1234567890123456789012345          0.000          0.000-1234567890.123          "
              "0.000\r\n");
    DecimalSeparator(',');
    EXPECT_NE(engine.sListXYs().find("      -2,001 "), std::string::npos);
}

TEST_F(ControlPointFile, ReadsBackWhatItWrote) {
    std::vector<typeXYs4Tr> pairs = {
        {.sId = "Szőlőhegy", .dXsour = 650123.4567, .dYsour = 1, .dXdest = 2, .dYdest = 3},
        {.sId = "1234567890123456789012345", .dXsour = -7.5, .bNotUsed = true}};
    engine.AddXY4Tr(pairs, false);
    const std::string file = folder.File("saved.dat");
    EXPECT_TRUE(engine.bSaveXYs4Tr(file));
    EXPECT_EQ(test::ReadFile(file).find("Sz\xF5l\xF5hegy"), 11u) << "windows-1250";
    EXPECT_TRUE(engine.bLoadXYsFromFile(file, true));
    EXPECT_EQ(engine.lFullCnt(), 4);
    EXPECT_EQ(Pairs()[2].sId, "Szőlőhegy");
    EXPECT_EQ(Pairs()[2].dXsour, 650123.457);
    EXPECT_EQ(Pairs()[3].sId, pairs[1].sId);
    EXPECT_FALSE(Pairs()[3].bNotUsed);
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ControlPointFile, TakesAnySeparatorsAndLineEnds) {
    EXPECT_TRUE(
        Load("P1;100,5 200,5 300 400\n\r\n"
             "\"P2\"\t 1.5e3 ,-.25;+4. '7' ignored words\r"
             "\nP3 1 2 3 4"));
    ASSERT_EQ(engine.lFullCnt(), 3);
    EXPECT_EQ(Pairs()[0].dYsour, 5.0) << "a comma separates";
    EXPECT_EQ(Pairs()[0].dYdest, 5.0);
    EXPECT_EQ(Pairs()[1].sId, "P2");
    EXPECT_EQ(Pairs()[1].dXsour, 1500.0);
    EXPECT_EQ(Pairs()[1].dYsour, -0.25);
    EXPECT_EQ(Pairs()[1].dYdest, 7.0);
    EXPECT_TRUE(Load("\xEF\xBB\xBFŰ1 1 2 3 4\n")) << "UTF-8 by its mark";
    EXPECT_EQ(Pairs()[0].sId, "Ű1");
    EXPECT_TRUE(Load(""));
    EXPECT_EQ(engine.lFullCnt(), 0);
}

TEST_F(ControlPointFile, KeepsWhatWasReadBeforeABadLine) {
    const std::string good = "a 1 2 3 4\r\n";
    const struct {
        std::string text;
        bool accepted;
        const char* line;
        int pairs;
    } cases[] = {
        {good + good + "c 5 6 7\r\n" + good, true, "2.line", 2},
        {good + good + good + "   \r\n", true, "3.line", 3},  // blanks are no pair
        {good + "b 5 6 x 8\r\n" + good, false, "1.line", 2},
        {"b 5 1e999 7 8\r\n" + good, false, "1.line", 1},
        {"b 5 nan 7 8\r\n", false, "1.line", 1},
        {std::string("\0\1\2\3", 4), false, "1.line", 1},
        {good + good + std::string(2 << 20, '7'), true, "3.line", 2},  // no text file
    };
    for (const auto& [text, accepted, line, pairs] : cases) {
        EXPECT_EQ(Load(text), accepted);
        EXPECT_EQ(platform.TakeTexts(), Texts{std::string("Invalid file format!\r\n") + line});
        EXPECT_EQ(engine.lFullCnt(), pairs);
    }
    Load(good + "b 5 6 x 8\r\n");
    EXPECT_EQ(Pairs()[1].dYsour, 6.0) << "the bad pair stays as far as it was read";
    EXPECT_EQ(Pairs()[1].dXdest, 0.0);
}

TEST_F(ControlPointFile, TellsOfFilesThatDoNotOpen) {
    Load("a 1 2 3 4\n");
    const std::string missing = folder.File("none") + "/points.dat";
    EXPECT_FALSE(engine.bLoadXYsFromFile(missing, true));
    EXPECT_EQ(platform.TakeTexts(),
              (Texts{"File open error:" + missing, "Invalid file format!\r\n1.line"}));
    EXPECT_EQ(engine.lFullCnt(), 1);
    try {
        engine.bSaveXYs4Tr(missing);
        FAIL() << "should have thrown";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::kFileNotOpen);
    }
    EXPECT_EQ(platform.TakeTexts(), Texts{"File open error:" + missing});
}

}  // namespace
}  // namespace kv_tr
