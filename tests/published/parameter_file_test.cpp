#include "kv_tr/files/parameter_file.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "helpers/engine_test.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr {
namespace {

/// Numbers that are all different, of many digits.
Coefficients Many() {
    Coefficients numbers;
    for (std::size_t k = 0; k < 22; ++k) {
        numbers.a[k] = 1234.5678912345 / std::pow(-17.0, static_cast<double>(k));
        numbers.b[k] = -76543.219876543 / std::pow(-19.0, static_cast<double>(k));
    }
    return numbers;
}

class ParameterFile : public test::EngineTest {
protected:
    clsTr tr;
    Coefficients Loaded() const { return CoefficientsOf(tr.udtTrPrm()); }
};

TEST_F(ParameterFile, HoldsSixNumbersInTheOrderOfItsFormat) {
    tr.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {1.0005, 2, -3e-9}, .b = {4, 5.123456785, 6}}));
    EXPECT_TRUE(tr.bSaveAffinTrPrm(name));
    EXPECT_EQ(test::ReadFile(name),
              "1.001\r\n2.00000000\r\n0.00000000\r\n4.000\r\n5.12345679\r\n6.00000000\r\n");
    EXPECT_TRUE(tr.bSaveAffinTrPrm(name, true));
    EXPECT_EQ(test::ReadFile(name),
              "1.001\r\n4.000\r\n2.00000000\r\n5.12345679\r\n0.00000000\r\n6.00000000\r\n");
}

TEST_F(ParameterFile, RestoresEveryTypeWithPointAndComma) {
    const Coefficients expected = Many();
    for (int code = TR_METER_OL; code <= TR_EOV_HDR_10e; ++code) {
        for (const char separator : {'.', ','}) {
            SCOPED_TRACE(testing::Message() << code << separator);
            DecimalSeparator(separator);
            const auto type = static_cast<enuTR_TYPE>(code);
            const bool linear = code <= TR_HELMERT;
            for (const bool itr25 : {false, true}) {
                tr.udtTrPrm(MakeRecord(type, expected));
                EXPECT_EQ(tr.bSaveAffinTrPrm(name, itr25), linear);
                EXPECT_EQ(tr.bSavePoliTrPrm(name), !linear);
                tr.udtTrPrm({.eType = linear ? type : TR_HELMERT});
                ASSERT_TRUE(linear ? tr.bLoadAffinTrPrmFromFile(name, itr25)
                                   : tr.bLoadPoliTrPrmFromFile(name));
                EXPECT_EQ(tr.udtTrPrm().eType, code > TR_BILINEAR ? TR_POLI_5 : type);
                const std::size_t last = linear ? 2 : static_cast<std::size_t>(TermCount(type));
                for (std::size_t k = 0; k <= last; ++k) {
                    const double limit = k == 0 ? 0.5e-3 : linear ? 0.5e-8 : 5e-16;
                    const bool relative = k != 0 && !linear;
                    const double a = expected.a[k];
                    const double b = expected.b[k];
                    EXPECT_NEAR((Loaded().a[k] - a) / (relative ? a : 1.0), 0.0, limit);
                    EXPECT_NEAR((Loaded().b[k] - b) / (relative ? b : 1.0), 0.0, limit);
                }
            }
        }
    }
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
        EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
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

TEST_F(ParameterFile, ReadsPolynomialsOfOtherPrograms) {
    EXPECT_TRUE(tr.bLoadPoliTrPrmFromFile(
        Written("A title with 5 words\r\n\r\n sy = 10.5  sx = -20\r\n"
                "  1 1.5D-03  -2.0d+00\r\n  2 +3 (m) 4\n  x 5 6 7 8\n\r\n  4 1 1\n")));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_POLI_1) << "an empty line ends it, the label is no number";
    const auto [a, b] = Loaded();
    EXPECT_EQ(std::vector(&a[0], &a[4]), (std::vector<double>{10.5, 1.5e-3, 3, 6}))
        << "letters are passed over: 5 is the label";
    EXPECT_EQ(std::vector(&b[0], &b[4]), (std::vector<double>{-20, -2, 4, 7}));
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
        {head + times(2) + "  3 7\r\n", true, 1, 6, 2},  // a missing number
        {head + times(2) + "     \r\n", true, 1, 6, 2},  // blanks count as a line
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
        EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(Loaded().b, 4.0)), last);
        EXPECT_EQ(Loaded().a[3] == 7.0, text.ends_with(" 7\r\n"));
        std::istringstream file(text);
        const auto reading = ReadParameters(file, ParameterFormat::kPolynomial);
        EXPECT_EQ(reading.problem.value_or(Problem{}).line, badLine);
        EXPECT_EQ(reading.Complete(), accepted && badLine == 0);
    }
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ParameterFile, IsChosenAndSavedInTheFormatOfItsExtension) {
    std::string file;
    std::string maps = "/maps";
    platform.choices = {FileChoice{.path = folder.File("a.PRM")},
                        FileChoice{.path = folder.File("b.trp")},
                        FileChoice{.path = folder.File("c.all")}};
    tr.udtTrPrm(MakeRecord(TR_AFFIN, Many()));
    tr.bChooseFileAndSaveTrPrm(file, maps);
    tr.bChooseFileAndSaveTrPrm(file, maps);
    EXPECT_NE(test::ReadFile(folder.File("a.PRM")), test::ReadFile(folder.File("b.trp")));
    tr.udtTrPrm(MakeRecord(TR_BILINEAR, Many()));
    tr.bChooseFileAndSaveTrPrm(file, maps);
    EXPECT_EQ(test::ReadFile(folder.File("c.all")), tr.sListPoliTrPrm() + "\r\n");
    EXPECT_FALSE(tr.bChooseFile4LoadAffinTrPrm(file, maps));
    EXPECT_EQ(file, "");
    EXPECT_EQ(platform.requests[0].title, "Parameters of Helmert/Affine tr saving");
    EXPECT_EQ(platform.requests[3].filters.size(), 3u);
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
