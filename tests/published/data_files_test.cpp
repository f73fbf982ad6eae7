// The files of control points and of parameters as the published classes read and write them; the
// laws have the way there and back.
#include <algorithm>

#include "helpers/engine_test.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/decimal_commas.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/decimal_commas.h"

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
    EXPECT_TRUE(engine.bLoadXYsFromFile(name, true));
    ASSERT_EQ(engine.lFullCnt(), 4);
    EXPECT_EQ(Pairs()[2].sId, "Győr-12");
    EXPECT_EQ(Pairs()[2].dYsour, -2.001);
    EXPECT_FALSE(Pairs()[3].bNotUsed);
}

TEST_F(ControlPointFile, KeepsALineForEachPairAsTheLogDoesWhateverTheIdentifiers) {
    const std::string hostile = "A\r\nB 0\x1B[2J\xC2\x9B\x7FŐ";
    Fit({{.sId = hostile}, {.sId = "P", .dXsour = 1, .dXdest = 1}, {.dYsour = 1, .dYdest = 1}},
        TR_HELMERT);
    EXPECT_TRUE(engine.sListXYs().starts_with("       A__B_0_[2J__Ő          0.000 "));
    engine.SaveLog(name);
    EXPECT_NE(test::ReadFile(name).find("\n       A__B 0_[2J__\xD5          0.000 "),
              std::string::npos);
    EXPECT_EQ(Pairs()[0].sId, hostile);
}

TEST_F(ControlPointFile, KeepsWhatWasReadBeforeABadLine) {
    const std::string good = "a 1 2 3 4\r\n";
    const std::tuple<std::string, bool, std::string, int> cases[] = {
        // text, whether that is accepted, the line that is named, pairs
        {"P1;100,5 200,5 300 400\n\r\n\"P2\"\t 1.5e3 ,-.25;+4. '7' ignored words\r\nP3 1 2 3 4",
         true, "", 3},
        {"", true, "", 0},
        {good + good + "c 5 6 7\r\nd 1\r\n" + good, true, "2.line", 2},
        {good + good + good + "   \r\n", true, "3.line", 3},  // blanks are no pair
        {"b 5 1e999 7 8\r\n" + good, false, "1.line", 1},
        {std::string("\0\1\2\3", 4), false, "1.line", 1},
        {good + good + std::string(2 << 20, '7'), true, "3.line", 2},  // no text file
        {good + "b 5 6 x 8\r\n" + good, false, "1.line", 2},
    };
    for (const auto& [text, accepted, line, pairs] : cases) {
        EXPECT_EQ(engine.bLoadXYsFromFile(test::WriteFile(name, text), false), accepted);
        for (const Message& message : platform.messages)
            EXPECT_EQ(message.icon, Icon::kExclamation);
        EXPECT_EQ(platform.TakeTexts(),
                  line.empty() ? Texts{} : Texts{"Invalid file format!\r\n" + line});
        EXPECT_EQ(engine.lFullCnt(), pairs);
    }
    EXPECT_EQ(Pairs()[1].dYsour, 6.0) << "the bad pair stays as far as it was read";

    const std::string missing = folder.File("none") + "/points.dat";
    const std::string told = "File open error:" + missing;
    EXPECT_FALSE(engine.bLoadXYsFromFile(missing, true));
    EXPECT_EQ(engine.lFullCnt(), 2);
    test::ExpectError(ErrorNumber::kFileNotOpen, [&] { engine.bSaveXYs4Tr(missing); });
    EXPECT_EQ(platform.TakeTexts(), (Texts{told, "Invalid file format!\r\n1.line", told}));
}

TEST_F(ControlPointFile, ShowsItsDecimalCommasAsParameterFilesDo) {
    const std::string integers = "A 1 2 3 4\nA 1 2 3 4\n";
    for (const auto& [file, text, has] : {
             std::tuple{"points", integers + "B 1 2 3,5 4\r\n", true},
             {"points", integers + "\"B\";\"1\";\"2\";'3'\t4,5;rest", true},
             {"points", integers + "B,1.5,2.5,3.5,4.5\nC 1,2 3,4\n1,2 3 4 5 x\n", false},
             {"a.trp", "1,304\n0,99\n0\n2\n0\n1", true},
             {"a.trp", "1.5, 2, 3, 4, 5, 6", false},
             {"a.ALL", "t\n\n sy = -9166,023  sx = 1\n  1  3,6E+05  4\n", true},
             {"a.all", "t, 1,5\n\n sy = -9166.023,1 sx = 1\n  1  3.6E+05  4\n", false},
         }) {
        const std::string path = test::WriteFile(folder.File(file), text);
        const bool points = path.ends_with("points");
        EXPECT_EQ(points ? ReportDecimalCommas(path) : ParametersHaveDecimalCommas(path), has);
        EXPECT_EQ(platform.TakeTexts().size(), points && has ? 1U : 0U);
    }
}

TEST(WithDecimalPoints, ChangesOnlyTheNumbersOfLinesThatHaveDecimalCommas) {
    EXPECT_EQ(WithDecimalPoints("1,5 1,5 2 3 4,25\r\nB,1,2 3 4\n\"C\" 1 2 3,5 4"),
              "1,5 1.5 2 3 4.25\r\nB,1,2 3 4\n\"C\" 1 2 3.5 4");
}

/// An affine transformation whose numbers are all different.
Transformation Many() {
    Transformation numbers{.type = Type::kAffine};
    for (int k = 0; k < 22; ++k) numbers.a[k] = 1000.5 + k, numbers.b[k] = -2000.25 - 3 * k;
    return numbers;
}

class ParameterFile : public test::EngineTest {
protected:
    clsTr tr;
    Transformation Loaded() const { return TransformationOf(tr.udtTrPrm()); }
};

TEST_F(ParameterFile, IsWrittenInTheOrderAndFormatOfTheExtensionThatTheUserChooses) {
    const std::string native =
        "1.001\r\n2.00000000\r\n0.00000000\r\n4.000\r\n5.12345679\r\n6.00000000\r\n";
    const std::string itr25 =
        "1.001\r\n4.000\r\n2.00000000\r\n5.12345679\r\n0.00000000\r\n6.00000000\r\n";
    std::string file, maps = "/maps";
    const auto saved = [&](const std::string& chosen) {
        platform.choices = {FileChoice{.path = chosen}};
        tr.bChooseFileAndSaveTrPrm(file, maps);
        return test::ReadFile(chosen);
    };
    tr.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {1.0005, 2, -3e-9}, .b = {4, 5.123456785, 6}}));
    EXPECT_EQ(saved(folder.File("town.PRM")), itr25);
    EXPECT_EQ(saved(folder.File("town.txt")), native);
    for (const bool asItr25 : {false, true}) {
        EXPECT_TRUE(tr.bSaveAffinTrPrm(name, asItr25));
        EXPECT_EQ(test::ReadFile(name), asItr25 ? itr25 : native);
    }
    tr.udtTrPrm({.eType = TR_BILINEAR, .dA0 = 1e5, .dB4 = -3.5});
    EXPECT_EQ(saved(name), tr.sListPoliTrPrm() + "\r\n");
    EXPECT_EQ(tr.sListHelmertTrPrm(), "");
}

TEST_F(ParameterFile, TakesLinearNumbersInAnyLayout) {
    const Transformation expected{Type::kAffine, {1.5, -2, 3000}, {4, 5, 6}};
    tr.udtTrPrm({.eType = TR_POLI_3});
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(
        test::WriteFile(name, "1.5 -2,3e3\n\n\t4,\r\n5\r6 rest is not read")));
    EXPECT_EQ(Loaded(), expected) << "a polynomial record becomes affine";
    EXPECT_EQ(name, tr.gName + "/file");

    DecimalSeparator(',');
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(test::WriteFile(name, "1,5, -2, 3000 4.0,5,0,6")));
    EXPECT_EQ(Loaded(), expected) << "a comma between digits is the decimal sign";
}

TEST_F(ParameterFile, SaysWhatCannotBeReadAndKeepsWhatWas) {
    for (const char* text : {"7\n8\nx\n", "7\n8\n", "7 8 nan 1 1 1", "7 8 1e999 1 1 1"}) {
        tr.udtTrPrm(RecordOf(Many()));
        tr.gName = "before";
        EXPECT_FALSE(tr.bLoadAffinTrPrmFromFile(test::WriteFile(name, text)));
        EXPECT_EQ(platform.messages.at(0).icon, Icon::kExclamation);
        EXPECT_EQ(platform.TakeTexts(), Texts{"Invalid file format!"});
        EXPECT_EQ(Loaded().a[1], 8.0) << "the numbers before are taken";
        EXPECT_EQ(Loaded().b, Many().b);
        EXPECT_EQ(tr.gName, "before");
    }
    const std::string missing = folder.File("none/x.trp");
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(missing));
    EXPECT_EQ(tr.gName, folder.File("none"));
    EXPECT_FALSE(tr.bLoadPoliTrPrmFromFile(missing));
    EXPECT_FALSE(tr.bSaveAffinTrPrm(missing));
    tr.udtTrPrm({.eType = TR_POLI_2});
    EXPECT_TRUE(tr.bSavePoliTrPrm(missing));
    EXPECT_EQ(platform.TakeTexts(), Texts(4, "File open error:" + missing));
}

TEST_F(ParameterFile, ReadsPolynomialsOfOtherProgramsAndNoLabels) {
    tr.gName = "before";
    EXPECT_TRUE(tr.bLoadPoliTrPrmFromFile(
        test::WriteFile(name,
                        "A title with 5 words\r\n\r\n sy = 10.5  sx = -20\r\n"
                        "  1 1.5D-03  -2.0d+00\r\n  1-2.3 +3 (m) 4\n  x 5 6 7 8\n\r\n  4 1 1\n")));
    EXPECT_EQ(Loaded(), (Transformation{Type::kPolynomial1, {10.5, 1.5e-3, 3, 6}, {-20, -2, 4, 7}}))
        << "letters are passed over: 5 is the label";
    EXPECT_EQ(name, tr.gName + "/file");
}

TEST_F(ParameterFile, EndsQuietlyAtAPolynomialLineItCannotUse) {
    const std::string head = "title\r\n\r\n sy = 1  sx = 2\r\n";
    const auto times = [](int count) {
        std::string lines;
        for (int i = 0; i < count; ++i) lines += "  1 3 4\r\n";
        return lines;
    };
    const std::tuple<std::string, bool, int, std::size_t> cases[] = {
        // text, whether that is accepted, the type then, the last coefficient that is stored
        {head + times(5), false, -1, 5},
        {head + times(4) + "  5 1.52.5 1\r\n" + times(3), true, 6, 4},
        {head + times(1) + "  5\r\n  5 7\r\n", true, 1, 1},  // missing numbers stay
        {head + times(2) + "     \r\n", true, 1, 2},         // blanks count as a line
        {"title\r\n\r\n\r\n" + times(3), false, -1, 0},
        {"", false, -1, 0},
    };
    for (const auto& [text, accepted, type, last] : cases) {
        tr.udtTrPrm(RecordOf(Many()));
        EXPECT_EQ(tr.bLoadPoliTrPrmFromFile(test::WriteFile(name, text)), accepted);
        auto expected = Many();
        expected.type = Type{type};
        std::fill_n(&expected.b[1], last, 4.0);
        std::fill_n(&expected.a[1], last, 3.0);
        if (text.ends_with(" 7\r\n")) expected.a[3] = 7.0;
        if (text.starts_with(head)) expected.a[0] = 1.0, expected.b[0] = 2.0;
        EXPECT_EQ(Loaded(), expected);
    }
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ParameterFile, ListsParametersByteForByte) {
    TR_PRM record = MakeRecord(TR_HELMERT, {.a = {1234.5, 1, 0, 2e100}, .b = {0, -3.12292e-05, 1}});
    tr.udtTrPrm(record);
    EXPECT_EQ(tr.sListHelmertTrPrm("A title"),
              "\ta0 = 1234.500\r\n\ta1 = 1.00000000\r\n\ta2 = 0.00000000\r\n\r\n"
              "\tb0 = 0.000\r\n\tb1 = -0.00003123\r\n\tb2 = 1.00000000\r\n\r\n"
              "\tY2 = a0 + a1 * Y1 + a2 * X1\r\n\tX2 = b0 + b1 * Y1 + b2 * X1\r\n\r\n\r\n\r\n");

    record.eType = TR_POLI_1;
    tr.udtTrPrm(record);
    const std::string lines =
        "\r\n\r\n sy = 1234.500                  sx = 0.000\r\n"
        "  1         1.000000000000000E+00          -3.122920000000000E-05\r\n"
        "  2         0.000000000000000E+00           1.000000000000000E+00\r\n"
        "  3        2.000000000000000E+100           0.000000000000000E+00\r\n";
    EXPECT_EQ(tr.sListPoliTrPrm(), "1. order of polynomial transformation" + lines);
    EXPECT_EQ(tr.sListPoliTrPrm("Város"), "Város" + lines);
}

}  // namespace
}  // namespace kv_tr
