// Parameter files as the published class reads and writes them; the laws have the way there and
// back.
#include "kv_tr/files/parameter_file.h"

#include <algorithm>
#include <sstream>

#include "helpers/engine_test.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

/// Numbers that are all different.
Coefficients Many() {
    Coefficients numbers;
    for (std::size_t k = 0; k < 22; ++k) {
        numbers.a[k] = 1000.5 + static_cast<double>(k);
        numbers.b[k] = -2000.25 - static_cast<double>(3 * k);
    }
    return numbers;
}

class ParameterFile : public test::EngineTest {
protected:
    clsTr tr;
    Coefficients Loaded() const { return CoefficientsOf(tr.udtTrPrm()); }

    /// Expects that one message was shown, in the way of a warning.
    void ExpectWarning(const std::string& text) {
        ASSERT_EQ(platform.messages.size(), 1U);
        EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
        EXPECT_EQ(platform.TakeTexts(), Texts{text});
    }
};

TEST_F(ParameterFile, IsWrittenInTheOrderAndFormatOfTheExtensionThatTheUserChooses) {
    const std::string native =
        "1.001\r\n2.00000000\r\n0.00000000\r\n4.000\r\n5.12345679\r\n6.00000000\r\n";
    const std::string itr25 =
        "1.001\r\n4.000\r\n2.00000000\r\n5.12345679\r\n0.00000000\r\n6.00000000\r\n";
    std::string file;
    std::string maps = "/maps";
    for (const auto& [type, extension, text] : {std::tuple{TR_AFFIN, "PRM", itr25},
                                                {TR_AFFIN, "trp", native},
                                                {TR_AFFIN, "txt", native}}) {
        tr.udtTrPrm(MakeRecord(type, {.a = {1.0005, 2, -3e-9}, .b = {4, 5.123456785, 6}}));
        const std::string chosen = folder.File("town.") + extension;
        platform.choices = {FileChoice{.path = chosen}};
        tr.bChooseFileAndSaveTrPrm(file, maps);
        EXPECT_EQ(test::ReadFile(chosen), text);
        tr.bChooseFileAndSaveTrPrm(file, maps);  // cancelled
        EXPECT_EQ(file, "");
        for (const bool asItr25 : {false, true}) {
            EXPECT_TRUE(tr.bSaveAffinTrPrm(chosen, asItr25));
            EXPECT_EQ(test::ReadFile(chosen), asItr25 ? itr25 : native);
        }
    }
    tr.udtTrPrm(MakeRecord(TR_BILINEAR, Many()));
    platform.choices = {FileChoice{.path = name}};
    tr.bChooseFileAndSaveTrPrm(file, maps);
    EXPECT_EQ(test::ReadFile(name), tr.sListPoliTrPrm() + "\r\n");
    EXPECT_EQ(tr.sListHelmertTrPrm(), "");
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ParameterFile, TakesLinearNumbersInAnyLayout) {
    const Coefficients expected{.a = {1.5, -2, 3000}, .b = {4, 5, 6}};
    tr.udtTrPrm({.eType = TR_POLI_3});
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(Written("1.5 -2,3e3\n\n\t4,\r\n5\r6 rest is not read")));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_AFFIN) << "a polynomial record becomes affine";
    EXPECT_EQ(Loaded().a, expected.a);
    EXPECT_EQ(Loaded().b, expected.b);
    EXPECT_EQ(name, tr.gName + "/file");

    DecimalSeparator(',');
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(Written("1,5, -2, 3000 4.0,5,0,6")));
    EXPECT_EQ(Loaded().a, expected.a) << "a comma between digits is the decimal sign";
    EXPECT_EQ(Loaded().b, expected.b);
}

TEST_F(ParameterFile, SaysWhatCannotBeReadAndKeepsWhatWas) {
    for (const char* text : {"7\n8\nx\n", "7\n8\n", "7 8 nan 1 1 1", "7 8 1e999 1 1 1"}) {
        tr.udtTrPrm(MakeRecord(TR_AFFIN, Many()));
        tr.gName = "before";
        EXPECT_FALSE(tr.bLoadAffinTrPrmFromFile(Written(text)));
        ExpectWarning("Invalid file format!");
        EXPECT_EQ(Loaded().a[1], 8.0) << "the numbers before are taken";
        EXPECT_EQ(Loaded().b, Many().b);
        EXPECT_EQ(tr.gName, "before");
    }
    const std::string missing = folder.File("none/x.trp");
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(missing));
    ExpectWarning("File open error:" + missing);
    EXPECT_EQ(tr.gName, folder.File("none"));
    EXPECT_FALSE(tr.bLoadPoliTrPrmFromFile(missing));
    EXPECT_FALSE(tr.bSaveAffinTrPrm(missing));
    tr.udtTrPrm({.eType = TR_POLI_2});
    EXPECT_TRUE(tr.bSavePoliTrPrm(missing));
    EXPECT_EQ(platform.TakeTexts(), Texts(3, "File open error:" + missing));
}

TEST_F(ParameterFile, ReadsPolynomialsOfOtherProgramsAndNoLabels) {
    tr.gName = "before";
    EXPECT_TRUE(tr.bLoadPoliTrPrmFromFile(
        Written("A title with 5 words\r\n\r\n sy = 10.5  sx = -20\r\n"
                "  1 1.5D-03  -2.0d+00\r\n  1-2.3 +3 (m) 4\n  x 5 6 7 8\n\r\n  4 1 1\n")));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_POLI_1) << "an empty line ends it, the label is no number";
    const auto [a, b] = Loaded();
    EXPECT_EQ(std::vector(&a[0], &a[4]), (std::vector<double>{10.5, 1.5e-3, 3, 6}))
        << "letters are passed over: 5 is the label";
    EXPECT_EQ(std::vector(&b[0], &b[4]), (std::vector<double>{-20, -2, 4, 7}));
    EXPECT_EQ(name, tr.gName + "/file");
}

TEST_F(ParameterFile, EndsQuietlyAtAPolynomialLineItCannotUse) {
    const std::string head = "title\r\n\r\n sy = 1  sx = 2\r\n";
    const auto times = [](int count) {
        std::string lines;
        for (int i = 0; i < count; ++i) lines += "  1 3 4\r\n";
        return lines;
    };
    const struct {
        std::string text;
        bool accepted;
        int type, badLine;
        std::size_t last;  // coefficient that is stored
    } cases[] = {
        {head + times(5), false, -1, 0, 5},
        {head + times(4) + "  5 1.52.5 1\r\n" + times(3), true, 6, 8, 4},
        {head + times(1) + "  5\r\n  5 7\r\n", true, 1, 5, 1},  // missing numbers stay
        {head + times(2) + "     \r\n", true, 1, 6, 2},         // blanks count as a line
        {head + times(22), false, -1, 0, 21},
        {head, false, -1, 0, 0},
        {"title\r\n\r\n\r\n" + times(3), false, -1, 3, 0},
        {"title\r\n", false, -1, 2, 0},
        {"", false, -1, 1, 0},
    };
    for (const auto& [text, accepted, type, badLine, last] : cases) {
        SCOPED_TRACE(text);
        tr.udtTrPrm(MakeRecord(TR_AFFIN, Many()));
        EXPECT_EQ(tr.bLoadPoliTrPrmFromFile(Written(text)), accepted);
        EXPECT_EQ(tr.udtTrPrm().eType, type);
        auto expected = Many();
        std::fill_n(&expected.b[1], last, 4.0);
        std::fill_n(&expected.a[1], last, 3.0);
        if (text.ends_with(" 7\r\n")) expected.a[3] = 7.0;
        if (text.starts_with(head)) expected.a[0] = 1.0, expected.b[0] = 2.0;
        EXPECT_EQ(Loaded().a, expected.a);
        EXPECT_EQ(Loaded().b, expected.b);
        std::istringstream file(text);
        const auto reading = ReadParameters(file, ParameterFormat::kPolynomial);
        EXPECT_EQ(reading.problem.value_or(Problem{}).line, badLine);
        EXPECT_EQ(reading.Complete(), accepted && badLine == 0);
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
    EXPECT_EQ(tr.sListPoliTrPrm(), "");

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
