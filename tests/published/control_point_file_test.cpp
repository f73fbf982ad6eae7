#include "kv_tr/published/control_point_file.h"

#include "helpers/engine_test.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

using ControlPointFile = test::EngineTest;

TEST_F(ControlPointFile, HoldsPairsInFixedColumnsAndIsReadBack) {
    const std::vector<typeXYs4Tr> pairs = {
        {.sId = "Győr-12", .dXsour = 1, .dYsour = -2.0005, .dXdest = 1e6, .dYdest = -0.0001},
        {.sId = "1234567890 2345,78\t0'2345", .dXdest = -123456789.123, .bNotUsed = true}};
    engine.AddXY4Tr(pairs, false);
    EXPECT_EQ(engine.sListXYs(),
              "             Győr-12          1.000         -2.001    1000000.000          0.000\r\n"
              "1234567890_2345_78_0_2345          0.000          0.000 -123456789.123          "
              "0.000\r\n");
    EXPECT_TRUE(engine.bSaveXYs4Tr(name));
    EXPECT_EQ(test::ReadFile(name).find("Gy\xF5r-12"), 13u);
    DecimalSeparator(',');
    EXPECT_NE(engine.sListXYs().find("      -2,001 "), std::string::npos);
    engine.AddXY4Tr({pairs.data(), 1}, false);
    EXPECT_TRUE(engine.bLoadXYsFromFile(name, true));
    ASSERT_EQ(engine.lFullCnt(), 3);
    EXPECT_EQ(Pairs()[1].sId, "Győr-12");
    EXPECT_EQ(Pairs()[1].dYsour, -2.001);
    EXPECT_FALSE(Pairs()[2].bNotUsed);
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ControlPointFile, KeepsALineForEachPairAsTheLogDoesWhateverTheIdentifiers) {
    const std::string hostile = "A\r\nB 0\x1B[2J\xC2\x9B\x7FŐ";
    Fit({{.sId = hostile},
         {.sId = "P", .dXsour = 1, .dXdest = 1, .bNotUsed = true},
         {.sId = "Q", .dYsour = 1, .dYdest = 1}},
        TR_HELMERT);
    EXPECT_TRUE(engine.sListXYs().starts_with("       A__B_0_[2J__Ő          0.000 "));
    engine.SaveLog(name);
    EXPECT_NE(test::ReadFile(name).find("\n       A__B 0_[2J__\xD5          0.000 "),
              std::string::npos)
        << test::ReadFile(name);
    EXPECT_EQ(Pairs()[0].sId, hostile);
}

TEST_F(ControlPointFile, TakesAnySeparatorsAndLineEnds) {
    EXPECT_TRUE(engine.bLoadXYsFromFile(Written("P1;100,5 200,5 300 400\n\r\n"
                                                "\"P2\"\t 1.5e3 ,-.25;+4. '7' ignored words\r"
                                                "\nP3 1 2 3 4"),
                                        false));
    EXPECT_EQ(engine.sListXYs(),
              "                  P1        100.000          5.000        200.000          5.000\r\n"
              "                  P2       1500.000         -0.250          4.000          7.000\r\n"
              "                  P3          1.000          2.000          3.000          "
              "4.000\r\n");
    EXPECT_TRUE(engine.bLoadXYsFromFile(Written("\xEF\xBB\xBFŰ1 1 2 3 4\n"), false))
        << "UTF-8 by its mark";
    EXPECT_EQ(Pairs()[0].sId, "Ű1");
    EXPECT_TRUE(engine.bLoadXYsFromFile(Written(""), false));
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
        {"b 5 1e999 7 8\r\n" + good, false, "1.line", 1},
        {"b 5 nan 7 8\r\n", false, "1.line", 1},
        {std::string("\0\1\2\3", 4), false, "1.line", 1},
        {good + good + std::string(2 << 20, '7'), true, "3.line", 2},  // no text file
        {good + "b 5 6 x 8\r\n" + good, false, "1.line", 2},
    };
    for (const auto& [text, accepted, line, pairs] : cases) {
        EXPECT_EQ(engine.bLoadXYsFromFile(Written(text), false), accepted);
        EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
        EXPECT_EQ(platform.TakeTexts(), Texts{std::string("Invalid file format!\r\n") + line});
        EXPECT_EQ(engine.lFullCnt(), pairs);
    }
    EXPECT_EQ(Pairs()[1].dYsour, 6.0) << "the bad pair stays as far as it was read";
    EXPECT_EQ(Pairs()[1].dXdest, 0.0);

    const std::string missing = folder.File("none") + "/points.dat";
    const std::string told = "File open error:" + missing;
    EXPECT_FALSE(engine.bLoadXYsFromFile(missing, true));
    EXPECT_EQ(platform.TakeTexts(), (Texts{told, "Invalid file format!\r\n1.line"}));
    EXPECT_EQ(engine.lFullCnt(), 2);
    test::ExpectError(ErrorNumber::kFileNotOpen, [&] { engine.bSaveXYs4Tr(missing); });
    EXPECT_EQ(platform.TakeTexts(), Texts{told});
}

}  // namespace
}  // namespace kv_tr
