#include "engine/transformation_log.h"

#include <gtest/gtest.h>

#include "engine/clsTrCalc.h"
#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "helpers/sample_points.h"
#include "model/coefficients.h"
#include "support/number_text.h"

namespace kv_tr {
namespace {

class TransformationLogTest : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    clsTrCalc engine;
    std::vector<typeXYs4Tr> pairs =
        test::PairsBy({{1000, 2000}, {1500, 2500}, {1200, 2900}, {1700, 2100}}, [](PlanePoint p) {
            return PlanePoint{p.first + 100, p.second - 50};
        });

    void Fit() {
        engine.AddXY4Tr(pairs, false);
        engine.DoCalcTr();
    }
};

TEST_F(TransformationLogTest, IsLaidOutByteForByte) {
    pairs[1].sId = "P-2";
    pairs[2].sId = "1234567890123456789012345";
    pairs[3].sId = "Tő/4";
    pairs[3].dXdest += 12345.678;
    pairs[3].bNotUsed = true;
    Fit();
    engine.SaveLog(folder.File("log.txt"), kHungarian);
    EXPECT_EQ(test::ReadFile(folder.File("log.txt")),
              test::ReadFile(TEST_DATA "/log/helmert_hu.txt"));
    EXPECT_EQ(CurrentMlLanguage(), kHungarian) << "the language stays";

    pairs.resize(2);
    Fit();
    Coefficients coefficients;
    for (std::size_t k = 0; k < 22; ++k) {
        coefficients.a[k] = static_cast<double>(k) + 0.5;
        coefficients.b[k] = -static_cast<double>(k + 1) / 1000.0;
    }
    engine.udtTrPrm(MakeRecord(TR_POLI_4, coefficients));
    engine.setLanguageID(kEnglish);
    DecimalSeparator(',');
    engine.SaveLog(folder.File("log.txt"));  // replaces the longer one
    EXPECT_EQ(test::ReadFile(folder.File("log.txt")),
              test::ReadFile(TEST_DATA "/log/poly4_en_comma.txt"));
}

TEST_F(TransformationLogTest, ListsTheCoefficientsOfEachType) {
    Fit();
    const struct {
        int type;
        const char* last;
        const char* absent;
    } cases[] = {{-5, "b2 = ", "a3 = "}, {1, "b3 = ", "a4 = "},  {2, "b6 = ", "a7 = "},
                 {3, "b10= ", "a11= "},  {6, "b4 = ", "a5 = "},  {5, "b21= ", "a22= "},
                 {8, "b21= ", "a22= "},  {33, "b21= ", "a22= "}, {99, "b21= ", "a22= "}};
    for (const auto& [type, last, absent] : cases) {
        engine.eTrType(static_cast<enuTR_TYPE>(type));
        const std::string parameters = TransformationLog(engine)[2];
        EXPECT_NE(parameters.find(last), std::string::npos) << type;
        EXPECT_EQ(parameters.find(absent), std::string::npos) << type;
    }
    EXPECT_EQ(TransformationLog(engine)[4], "");
}

TEST_F(TransformationLogTest, WritesNothingWhereNoFileOpens) {
    Fit();
    engine.SaveLog(folder.File("none/log.txt"));
    EXPECT_EQ(platform.TakeTexts(),
              std::vector<std::string>{"File open error:" + folder.File("none/log.txt")});
}

}  // namespace
}  // namespace kv_tr
