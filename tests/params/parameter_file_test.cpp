#include "params/parameter_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "model/coefficients.h"
#include "model/transformation_type.h"
#include "params/clsTr.h"
#include "support/number_text.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

/// A record of which every coefficient is used and has its own value, of many digits.
TR_PRM FullRecord(enuTR_TYPE type) {
    Coefficients numbers;
    for (std::size_t k = 0; k < 22; ++k) {
        const double sign = k % 2 == 0 ? 1.0 : -1.0;
        numbers.a[k] = sign * 1234.5678912345 / std::pow(17.0, static_cast<double>(k));
        numbers.b[k] = -sign * 76543.219876543 / std::pow(19.0, static_cast<double>(k));
    }
    return MakeRecord(type, numbers);
}

class ParameterFile : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    clsTr tr;
    std::string name = folder.File("parameters");

    bool LoadLinear(const std::string& text, bool itr25 = false) {
        test::WriteFile(name, text);
        return tr.bLoadAffinTrPrmFromFile(name, itr25);
    }

    bool LoadPolynomial(const std::string& text) {
        test::WriteFile(name, text);
        return tr.bLoadPoliTrPrmFromFile(name);
    }

    Coefficients Loaded() const { return CoefficientsOf(tr.udtTrPrm()); }
};

TEST_F(ParameterFile, HoldsSixNumbersInTheOrderOfItsFormat) {
    TR_PRM record{.eType = TR_AFFIN};
    record.dA0 = 1.0005, record.dA1 = 2, record.dA2 = -3e-9;
    record.dB0 = 4, record.dB1 = 5.123456785, record.dB2 = 6;
    tr.udtTrPrm(record);
    EXPECT_TRUE(tr.bSaveAffinTrPrm(name));
    EXPECT_EQ(test::ReadFile(name),
              "1.001\r\n2.00000000\r\n0.00000000\r\n4.000\r\n5.12345679\r\n6.00000000\r\n");
    EXPECT_TRUE(tr.bSaveAffinTrPrm(name, true));
    EXPECT_EQ(test::ReadFile(name),
              "1.001\r\n4.000\r\n2.00000000\r\n5.12345679\r\n0.00000000\r\n6.00000000\r\n");
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(name, false));  // the other order: fields change places
    EXPECT_EQ(Loaded().a[1], 4.0);
}

TEST_F(ParameterFile, RestoresEveryTypeWithPointAndComma) {
    for (const char separator : {'.', ','}) {
        DecimalSeparator(separator);
        for (const enuTR_TYPE type :
             {TR_HELMERT, TR_AFFIN, TR_HELMERT_3, TR_AFFIN_5, TR_OL_METER}) {
            for (const bool itr25 : {false, true}) {
                tr.udtTrPrm(FullRecord(type));
                ASSERT_TRUE(tr.bSaveAffinTrPrm(name, itr25));
                EXPECT_FALSE(tr.bSavePoliTrPrm(name));
                tr.udtTrPrm({.eType = type});
                ASSERT_TRUE(tr.bLoadAffinTrPrmFromFile(name, itr25));
                EXPECT_EQ(tr.udtTrPrm().eType, type);
                const Coefficients expected = CoefficientsOf(FullRecord(type));
                for (std::size_t k = 0; k < 3; ++k) {
                    const double digit = k == 0 ? 0.5e-3 : 0.5e-8;
                    EXPECT_NEAR(Loaded().a[k], expected.a[k], digit) << type << separator << k;
                    EXPECT_NEAR(Loaded().b[k], expected.b[k], digit) << type << separator << k;
                }
            }
        }
        for (int type = TR_POLI_1; type <= TR_EOV_HDR_10e; ++type) {
            tr.udtTrPrm(FullRecord(static_cast<enuTR_TYPE>(type)));
            const int terms = TermCount(tr.udtTrPrm().eType);
            ASSERT_TRUE(tr.bSavePoliTrPrm(name));
            EXPECT_FALSE(tr.bSaveAffinTrPrm(name));
            tr.udtTrPrm({});
            ASSERT_TRUE(tr.bLoadPoliTrPrmFromFile(name)) << type << separator;
            EXPECT_EQ(tr.udtTrPrm().eType, type > TR_BILINEAR ? TR_POLI_5 : type);
            const Coefficients expected = CoefficientsOf(FullRecord(static_cast<enuTR_TYPE>(type)));
            EXPECT_NEAR(Loaded().a[0], expected.a[0], 0.5e-3);
            EXPECT_NEAR(Loaded().b[0], expected.b[0], 0.5e-3);
            for (std::size_t k = 1; k <= static_cast<std::size_t>(terms); ++k) {
                EXPECT_NEAR(Loaded().a[k] / expected.a[k], 1.0, 5e-16) << type << separator << k;
                EXPECT_NEAR(Loaded().b[k] / expected.b[k], 1.0, 5e-16) << type << separator << k;
            }
        }
    }
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ParameterFile, TakesLinearNumbersInAnyLayout) {
    const Coefficients expected{.a = {1.5, -2, 3000}, .b = {4, 5, 6}};
    tr.udtTrPrm({.eType = TR_POLI_3});
    EXPECT_TRUE(LoadLinear("1.5 -2,3e3\n\n\t4,\r\n5\r6 rest is not read"));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_AFFIN) << "a polynomial record becomes affine";
    EXPECT_EQ(Loaded().a, expected.a);
    EXPECT_EQ(Loaded().b, expected.b);
    EXPECT_EQ(tr.gName, std::filesystem::path(name).parent_path().string());

    DecimalSeparator(',');
    EXPECT_TRUE(LoadLinear("1,5, -2, 3000 4.0,5,0,6"));
    EXPECT_EQ(Loaded().a, expected.a) << "a comma between digits is the decimal sign";
    EXPECT_EQ(Loaded().b, expected.b);
}

TEST_F(ParameterFile, SaysWhatCannotBeReadAndKeepsWhatWas) {
    for (const char* text : {"7\n8\nx\n", "7\n8\n", "7 8 nan 1 1 1", "7 8 1e999 1 1 1"}) {
        tr.udtTrPrm(FullRecord(TR_AFFIN));
        tr.gName = "before";
        EXPECT_FALSE(LoadLinear(text));
        EXPECT_EQ(platform.TakeTexts(), Texts{"Invalid file format!"});
        EXPECT_EQ(Loaded().a[1], 8.0) << "the numbers before are taken";
        EXPECT_EQ(Loaded().b, CoefficientsOf(FullRecord(TR_AFFIN)).b);
        EXPECT_EQ(tr.gName, "before");
    }
    EXPECT_FALSE(LoadLinear(""));
    platform.TakeTexts();

    const std::string missing = folder.File("none/x.trp");
    const Texts told{"File open error:" + missing};
    EXPECT_TRUE(tr.bLoadAffinTrPrmFromFile(missing));
    EXPECT_EQ(platform.TakeTexts(), told);
    EXPECT_EQ(tr.gName, folder.File("none"));
    EXPECT_FALSE(tr.bLoadPoliTrPrmFromFile(missing));
    EXPECT_EQ(platform.TakeTexts(), told);
    EXPECT_FALSE(tr.bSaveAffinTrPrm(missing));
    EXPECT_EQ(platform.TakeTexts(), told);
    tr.udtTrPrm({.eType = TR_POLI_2});
    EXPECT_TRUE(tr.bSavePoliTrPrm(missing));
    EXPECT_EQ(platform.TakeTexts(), told);
}

TEST_F(ParameterFile, ReadsPolynomialsOfOtherPrograms) {
    const std::string head = "A title with 5 words\r\n\r\n sy = 10.5  sx = -20\r\n";
    const std::string one = "  1 1.5D-03  -2.0d+00\r\n";
    EXPECT_TRUE(LoadPolynomial(head + one + "  2 +3 (m) 4\n  x 5 6 7 8\n\r\n  4 1 1\n"));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_POLI_1) << "an empty line ends it, the label is no number";
    EXPECT_EQ(Loaded().a[0], 10.5);
    EXPECT_EQ(Loaded().b[0], -20.0);
    EXPECT_EQ(Loaded().a[1], 1.5e-3);
    EXPECT_EQ(Loaded().b[1], -2.0);
    EXPECT_EQ(Loaded().b[2], 4.0);
    EXPECT_EQ(Loaded().a[3], 6.0) << "letters are passed over: 5 is the label";
    EXPECT_EQ(tr.gName, std::filesystem::path(name).parent_path().string());
}

TEST_F(ParameterFile, EndsQuietlyAtAPolynomialLineItCannotUse) {
    const std::string head = "title\r\n\r\n sy = 1  sx = 2\r\n";
    const std::string line = "  1 3 4\r\n";
    const auto times = [&line](int count) {
        std::string lines;
        for (int i = 0; i < count; ++i) lines += line;
        return lines;
    };
    const struct {
        std::string text;
        bool accepted;
        int type;
        int badLine;
    } cases[] = {
        {head + times(5), false, -1, 0},
        {head + times(4) + "  5 1.52.5 1\r\n" + times(3), true, 6, 8},
        {head + times(2) + "  3 7\r\n", true, 1, 6},  // a missing number
        {head + times(2) + "     \r\n", true, 1, 6},  // blanks count as a line
        {head + times(22), false, -1, 0},
        {head, false, -1, 0},
        {"title\r\n\r\n\r\n" + times(3), false, -1, 3},
        {"title\r\n", false, -1, 2},
        {"", false, -1, 1},
    };
    for (const auto& [text, accepted, type, badLine] : cases) {
        SCOPED_TRACE(text);
        tr.udtTrPrm({.eType = TR_AFFIN});
        EXPECT_EQ(LoadPolynomial(text), accepted);
        EXPECT_EQ(tr.udtTrPrm().eType, type);
        TR_PRM ignored;
        EXPECT_EQ(ReadPolynomialFile(name, ignored).badLine, badLine);
    }
    LoadPolynomial(head + times(22));
    EXPECT_EQ(Loaded().b[21], 4.0) << "the first 21 are stored";
    tr.udtTrPrm(FullRecord(TR_AFFIN));
    LoadPolynomial(head + times(2) + "  3 7\r\n");
    EXPECT_EQ(Loaded().a[3], 7.0);
    EXPECT_EQ(Loaded().b[3], CoefficientsOf(FullRecord(TR_AFFIN)).b[3]) << "left as it was";
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(ParameterFile, IsChosenWithTheFiltersOfItsKind) {
    std::string file;
    std::string initDir = "/maps";
    platform.choices = {FileChoice{.path = folder.File("a.trp")}, std::nullopt};
    EXPECT_TRUE(tr.bChooseFile4LoadAffinTrPrm(file, initDir));
    EXPECT_EQ(file, folder.File("a.trp"));
    EXPECT_FALSE(tr.bChooseFile4SaveAffinTrPrm(file, initDir));
    EXPECT_EQ(file, "");
    tr.bChooseFile4LoadPoliTrPrm(file, initDir);
    tr.bChooseFile4SavePoliTrPrm(file, initDir, 5);
    const struct {
        const char *title, *extension, *first;
        std::size_t filters;
    } expected[] = {
        {"Parameters of Helmert/Affine tr loading", "trp",
         "Parameters of Helmert/Affine tr (*.trp)", 3},
        {"Parameters of Helmert/Affine tr saving", "trp", "Parameters of Helmert/Affine tr (*.trp)",
         2},
        {"Parameters of polynomal transformation (1-5 order) loading", "all",
         "Parameters of polynomal transformation (1-5 order) (*.all)", 2},
        {"Parameters of polynomal transformation (1-5 order) saving", "all",
         "Parameters of polynomal transformation (1-5 order) (*.all)", 1},
    };
    ASSERT_EQ(platform.requests.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(platform.requests[i].title, expected[i].title);
        EXPECT_EQ(platform.requests[i].defaultExtension, expected[i].extension);
        EXPECT_EQ(platform.requests[i].filters[0].description, expected[i].first);
        EXPECT_EQ(platform.requests[i].filters.size(), expected[i].filters);
        EXPECT_EQ(platform.requests[i].initialFolder, "/maps");
    }
    EXPECT_EQ(platform.requests[3].owner, 5);
}

TEST_F(ParameterFile, IsSavedUnderTheChosenNameInTheFormatOfItsExtension) {
    std::string file;
    std::string initDir;
    platform.choices = {FileChoice{.path = folder.File("a.PRM")},
                        FileChoice{.path = folder.File("b.trp")},
                        FileChoice{.path = folder.File("c.all")}, std::nullopt};
    tr.udtTrPrm(FullRecord(TR_AFFIN));
    tr.bChooseFileAndSaveTrPrm(file, initDir);
    tr.bChooseFileAndSaveTrPrm(file, initDir);
    EXPECT_NE(test::ReadFile(folder.File("a.PRM")), test::ReadFile(folder.File("b.trp")));
    tr.udtTrPrm(FullRecord(TR_BILINEAR));
    tr.bChooseFileAndSaveTrPrm(file, initDir);
    EXPECT_EQ(test::ReadFile(folder.File("c.all")), tr.sListPoliTrPrm() + "\r\n");
    tr.bChooseFileAndSaveTrPrm(file, initDir);
    EXPECT_EQ(file, "");
}

TEST_F(ParameterFile, ListsParametersByteForByte) {
    TR_PRM record{.eType = TR_HELMERT};
    record.dA0 = 1234.5, record.dA1 = 1, record.dB2 = 1, record.dB1 = -3.12292e-05;
    tr.udtTrPrm(record);
    EXPECT_EQ(tr.sListHelmertTrPrm("A title"),
              "\ta0 = 1234.500\r\n\ta1 = 1.00000000\r\n\ta2 = 0.00000000\r\n\r\n"
              "\tb0 = 0.000\r\n\tb1 = -0.00003123\r\n\tb2 = 1.00000000\r\n\r\n"
              "\tY2 = a0 + a1 * Y1 + a2 * X1\r\n\tX2 = b0 + b1 * Y1 + b2 * X1\r\n\r\n\r\n\r\n");
    EXPECT_EQ(tr.sListPoliTrPrm(), "");

    record.eType = TR_POLI_1;
    record.dA3 = 2e100;
    tr.udtTrPrm(record);
    EXPECT_EQ(tr.sListHelmertTrPrm(), "");
    const std::string lines =
        "\r\n\r\n sy = 1234.500                  sx = 0.000\r\n"
        "  1         1.000000000000000E+00          -3.122920000000000E-05\r\n"
        "  2         0.000000000000000E+00           1.000000000000000E+00\r\n"
        "  3        2.000000000000000E+100           0.000000000000000E+00\r\n";
    EXPECT_EQ(tr.sListPoliTrPrm(), "1. order of polynomial transformation" + lines);
    EXPECT_EQ(tr.sListPoliTrPrm("Város"), "Város" + lines);
    tr.udtTrPrmByDAT2M1(TR_HER_HKR);
    const std::string national = tr.sListPoliTrPrm();
    EXPECT_EQ(std::ranges::count(national, '\n'), 3 + 21);
    EXPECT_NE(national.find("\r\n 21"), std::string::npos);
}

}  // namespace
}  // namespace kv_tr
