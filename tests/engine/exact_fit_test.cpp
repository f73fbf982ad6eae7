// Fits against solutions that tools/exact_fit.py computed with 60 digits.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "engine/clsTrCalc.h"
#include "helpers/recording_platform.h"

namespace kv_tr {
namespace {

struct ExactCase {
    const char* set;
    const char* model;
    enuTR_TYPE type;
};

class ExactFit : public testing::TestWithParam<ExactCase> {};

TEST_P(ExactFit, AgreesAtEveryPoint) {
    const auto [set, model, type] = GetParam();
    test::RecordingPlatform platform;
    clsTrCalc engine;
    ASSERT_TRUE(engine.bLoadXYsFromFile(std::string(TEST_DATA "/exact/") + set + ".dat", false));
    engine.eTrType(type);
    engine.DoCalcTr();
    EXPECT_TRUE(platform.messages.empty());
    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetAllXYs(pairs, count);

    // The iterations stop when a correction is below a millimetre; the last one is squared.
    const double tolerance = 1e-7;
    std::ifstream solution(std::string(TEST_DATA "/exact/") + set + "_" + model + ".txt");
    int points = 0;
    int residuals = 0;
    for (std::string line; std::getline(solution, line);) {
        std::istringstream fields(line);
        std::string kind;
        fields >> kind;
        if (kind == "point") {
            ++points;
            double source[2], image[2], first = 0, second = 0;
            fields >> source[0] >> source[1] >> image[0] >> image[1];
            engine.TrXY(source[0], source[1], first, second);
            EXPECT_NEAR(first, image[0], tolerance) << line;
            EXPECT_NEAR(second, image[1], tolerance) << line;
        } else if (kind == "residual") {
            ++residuals;
            std::size_t index = 0;
            double first = 0, second = 0;
            fields >> index >> first >> second;
            EXPECT_NEAR(pairs[index].dXerr, first, tolerance) << line;
            EXPECT_NEAR(pairs[index].dYerr, second, tolerance) << line;
        } else if (kind == "rms") {
            double rms = 0, rmsX = 0, rmsY = 0;
            fields >> rms >> rmsX >> rmsY;
            EXPECT_NEAR(engine.dRmsErr(), rms, tolerance);
            EXPECT_NEAR(engine.dRmsErrX(), rmsX, tolerance);
            EXPECT_NEAR(engine.dRmsErrY(), rmsY, tolerance);
        }
    }
    EXPECT_GE(points, 5);
    EXPECT_EQ(residuals, engine.lFullCnt());
}

INSTANTIATE_TEST_SUITE_P(
    Sets, ExactFit,
    testing::Values(
        ExactCase{"country", "helmert", TR_HELMERT}, ExactCase{"country", "affine", TR_AFFIN},
        ExactCase{"country", "helmert3", TR_HELMERT_3}, ExactCase{"country", "affine5", TR_AFFIN_5},
        ExactCase{"country", "bilinear", TR_BILINEAR}, ExactCase{"country", "poly1", TR_POLI_1},
        ExactCase{"country", "poly2", TR_POLI_2}, ExactCase{"country", "poly3", TR_POLI_3},
        ExactCase{"country", "poly4", TR_POLI_4}, ExactCase{"country", "poly5", TR_POLI_5},
        ExactCase{"town", "helmert", TR_HELMERT}, ExactCase{"town", "affine", TR_AFFIN},
        ExactCase{"town", "helmert3", TR_HELMERT_3}, ExactCase{"town", "affine5", TR_AFFIN_5},
        ExactCase{"town", "bilinear", TR_BILINEAR}, ExactCase{"town", "poly1", TR_POLI_1},
        ExactCase{"town", "poly2", TR_POLI_2}),
    [](const auto& test) { return std::string(test.param.set) + "_" + test.param.model; });

}  // namespace
}  // namespace kv_tr
