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
    EXPECT_TRUE(platform.messages.empty());
}

TEST_F(ControlPointFile, KeepsALineForEachPairAsTheLogDoesWhateverTheIdentifiers) {
    const std::string hostile = "A\r\nB 0\x1B[2J\xC2\x9B\x7FŐ";
    Fit({{.sId = hostile}, {.sId = "P", .dXsour = 1, .dXdest = 1}, {.dYsour = 1, .dYdest = 1}},
        TR_HELMERT);
    EXPECT_TRUE(engine.sListXYs().starts_with("       A__B_0_[2J__Ő          0.000 "));
    EXPECT_NE(engine.sListXYs().find("\n                   _          0.000 "), std::string::npos);
    engine.SaveLog(name);
    EXPECT_NE(test::ReadFile(name).find("\n       A__B 0_[2J__\xD5          0.000 "),
              std::string::npos);
    EXPECT_EQ(Pairs()[0].sId, hostile);
}

TEST_F(ControlPointFile, KeepsWhatWasReadBeforeABadLine) {
    const std::string good = "a 1 2 3 4\r\n";
    const struct {
        std::string text;
        bool accepted;
        const char* line;  // none for a file that is good
        int pairs;
    } cases[] = {
        {"P1;100,5 200,5 300 400\n\r\n\"P2\"\t 1.5e3 ,-.25;+4. '7' ignored words\r\nP3 1 2 3 4",
         true, nullptr, 3},
        {"", true, nullptr, 0},
        {good + good + "c 5 6 7\r\nd 1\r\n" + good, true, "2.line", 2},
        {good + good + good + "   \r\n", true, "3.line", 3},  // blanks are no pair
        {"b 5 1e999 7 8\r\n" + good, false, "1.line", 1},
        {"b 5 nan 7 8\r\n", false, "1.line", 1},
        {std::string("\0\1\2\3", 4), false, "1.line", 1},
        {good + good + std::string(2 << 20, '7'), true, "3.line", 2},  // no text file
        {good + "b 5 6 x 8\r\n" + good, false, "1.line", 2},
    };
    for (const auto& [text, accepted, line, pairs] : cases) {
        EXPECT_EQ(engine.bLoadXYsFromFile(Written(text), false), accepted);
        for (const Message& message : platform.messages)
            EXPECT_EQ(message.icon, Icon::kExclamation);
        const Texts told{std::string("Invalid file format!\r\n") + (line == nullptr ? "" : line)};
        EXPECT_EQ(platform.TakeTexts(), line == nullptr ? Texts{} : told);
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
