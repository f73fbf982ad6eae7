// What the published engine tells of a fit, and fits whose result is known to many digits.
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/pairs.h"

namespace kv_tr {
namespace {

class FitTest : public test::EngineTest {
protected:
    const Texts singular{"KORVANEL --> matrix inv.: DET=0 !"};

    void FitPoints(const std::vector<ControlPoint>& points, enuTR_TYPE type) {
        std::vector<typeXYs4Tr> pairs;
        for (const ControlPoint& point : points) pairs.push_back(PairOf(point, {}));
        Fit(pairs, type);
    }
};

TEST_F(FitTest, SaysThatASystemIsSingularOnlyForExactZeros) {
    // All first coordinates equal: their reduced column is exactly zero.
    auto line = test::PairsBy({{100, 0}, {100, 10}, {100, 30}, {100, 60}}, test::Identity);
    Fit(line, TR_AFFIN);
    EXPECT_EQ(platform.TakeTexts(), singular);
    EXPECT_TRUE(std::isfinite(engine.dRmsErr())) << "stored all the same";

    Fit(test::ShiftedPairs(25), TR_OL_METER);
    EXPECT_EQ(platform.TakeTexts(), singular);

    for (auto& pair : line) pair.bNotUsed = true;
    Fit(line, TR_HELMERT);
    EXPECT_EQ(platform.TakeTexts(), singular);
    EXPECT_TRUE(std::isnan(engine.dMiddleErrX()));

    // A type beyond the known ones is named for every used pair.
    auto pairs = test::ShiftedPairs(22);
    pairs[5].bNotUsed = true;
    Fit(pairs, static_cast<enuTR_TYPE>(34));
    EXPECT_EQ(platform.TakeTexts(), Texts(21, "KORVANEL --> mudtTR_PRM.eType=34"));
    Fit(pairs, TR_EOV_HDR_10e);
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(FitTest, TellsOfAnIterationThatDoesNotConvergeInTheWordsOfItsType) {
    engine.setLanguageID(kHungarian);  // where the two texts differ
    for (const auto& [type, own, other, text] :
         {std::tuple{TR_HELMERT_3, &clsTrCalc::DoCalc_Helmert3, &clsTrCalc::DoCalc_Affin5,
                     "A transzformáció nem számítható!"},
          {TR_AFFIN_5, &clsTrCalc::DoCalc_Affin5, &clsTrCalc::DoCalc_Helmert3,
           "A transzformáció nem számítható !"}}) {
        auto points = test::NoisyPointsBy(test::General(static_cast<Type>(type)), 9);
        FitPoints(points, type);
        const double rms = engine.dRmsErr();
        (engine.*own)(0);
        EXPECT_EQ(platform.TakeTexts(), Texts{text});
        EXPECT_NE(engine.dRmsErr(), rms) << "the last iterate is stored";
        (engine.*other)(0);  // is DoCalcTr
        EXPECT_EQ(engine.dRmsErr(), rms);
        EXPECT_EQ(platform.TakeTexts(), Texts{});
        points[2].destination.first = std::numeric_limits<double>::quiet_NaN();
        FitPoints(points, type);
        EXPECT_EQ(platform.TakeTexts().back(), text);
    }
}

TEST_F(FitTest, ChangesNothingWithoutAStartOrWithoutPairs) {
    FitPoints(test::NoisyPointsBy(test::General(Type::kAffine), 9), TR_AFFIN);
    const Transformation before = engine.Held().Result();
    const double rms = engine.dRmsErr();
    const auto onCentroid =
        test::PairsBy({{10, 10}, {0, 10}, {20, 10}, {10, 0}, {10, 20}}, test::Identity);
    test::ExpectError(ErrorNumber::kDivisionByZero, [&] { Fit(onCentroid, TR_AFFIN_5); });
    Fit({}, TR_AFFIN);
    EXPECT_EQ(engine.Held().Result(), before);
    EXPECT_EQ(engine.dRmsErr(), rms);
}

// Against solutions that tools/exact_fit.py computed with 60 digits.
TEST_F(FitTest, AgreesWithExactSolutionsAtEveryPoint) {
    const std::pair<const char*, enuTR_TYPE> cases[] = {
        {"helmert", TR_HELMERT}, {"affine", TR_AFFIN},      {"helmert3", TR_HELMERT_3},
        {"affine5", TR_AFFIN_5}, {"bilinear", TR_BILINEAR}, {"poly1", TR_POLI_1},
        {"poly2", TR_POLI_2},    {"poly3", TR_POLI_3},      {"poly4", TR_POLI_4},
        {"poly5", TR_POLI_5}};
    // The iterations stop when a correction is below a millimetre; the last one is squared.
    const double tolerance = 1e-7;
    int points = 0, residuals = 0;
    for (const std::string set : {TEST_DATA "/exact/country", TEST_DATA "/exact/town"}) {
        ASSERT_TRUE(engine.bLoadXYsFromFile(set + ".dat", false));
        for (const auto& [model, type] : cases) {
            SCOPED_TRACE(set + "_" + model);
            Fit(Pairs(), type);
            const auto pairs = Pairs();
            std::ifstream solution(set + "_" + model + ".txt");
            for (std::string line; std::getline(solution, line);) {
                std::istringstream fields(line);
                std::string kind;
                double v[4] = {};
                fields >> kind >> v[0] >> v[1] >> v[2] >> v[3];
                if (kind == "point") {
                    ++points;
                    test::ExpectNear(test::Map(engine, {v[0], v[1]}), {v[2], v[3]}, tolerance);
                } else if (kind == "residual") {
                    ++residuals;
                    const typeXYs4Tr& pair = pairs.at(static_cast<std::size_t>(v[0]));
                    test::ExpectNear({pair.dXerr, pair.dYerr}, {v[1], v[2]}, tolerance);
                } else if (kind == "rms") {
                    test::ExpectNear({engine.dRmsErr(), engine.dRmsErrX()}, {v[0], v[1]},
                                     tolerance);
                    EXPECT_NEAR(engine.dRmsErrY(), v[2], tolerance);
                }
            }
        }
    }
    EXPECT_EQ(points, 170);
    EXPECT_EQ(residuals, 684);
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

}  // namespace
}  // namespace kv_tr
