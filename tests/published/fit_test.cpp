// The fits where their result is known without a computation of its own, or to many digits.
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
    const Texts impossible{"Transformation can't be calculated!"};

    double Largest() const {
        double largest = 0.0;
        for (const auto& pair : Pairs()) {
            largest = std::max({largest, std::abs(pair.dXerr), std::abs(pair.dYerr)});
        }
        return largest;
    }
};

/// A rotation by 30 degrees with scales along the source axes and a shift.
std::vector<typeXYs4Tr> Rotated(double scaleFirst, double scaleSecond) {
    return test::PairsBy(test::SpreadPoints(7), [=](PlanePoint p) {
        const double c = std::sqrt(0.75);
        const double y = scaleFirst * p.first;
        const double x = scaleSecond * p.second;
        return PlanePoint{5000.0 + c * y - 0.5 * x, -800.0 + 0.5 * y + c * x};
    });
}

TEST_F(FitTest, ReproducesPairsOfItsOwnModel) {
    const auto quintic = test::PairsBy(test::SpreadPoints(30), [](PlanePoint p) {
        const double u = (p.first - 1500) / 500;
        const double v = (p.second - 2500) / 500;
        return PlanePoint{p.first + u * u * u * u * u, p.second - u * u * v * v * v};
    });
    // Residuals are rounding only: coordinates of some thousand metres carry about 1e-12.
    const struct {
        enuTR_TYPE type;
        std::vector<typeXYs4Tr> pairs;
        double limit;
    } cases[] = {{TR_HELMERT, Rotated(1.2, 1.2), 1e-9},   {TR_AFFIN, Rotated(1.2, 0.7), 1e-9},
                 {TR_HELMERT_3, Rotated(1.0, 1.0), 1e-9}, {TR_AFFIN_5, Rotated(1.2, 0.7), 1e-8},
                 {TR_STG_EOV_10e, quintic, 1e-6},         {TR_POLI_5, quintic, 1e-6}};
    for (const auto& [type, pairs, limit] : cases) {
        Fit(pairs, type);
        EXPECT_EQ(engine.eTrType(), type);
        EXPECT_LT(Largest(), limit) << type;
    }
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

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
}

TEST_F(FitTest, StopsTheIterationAtItsCap) {
    auto pairs = Rotated(1.0, 1.0);
    engine.AddXY4Tr(pairs, false);
    engine.eTrType(TR_HELMERT_3);
    for (const int cap : {0, -5, 1}) {  // one pass, which converges too late to be seen
        engine.DoCalc_Helmert3(static_cast<std::int16_t>(cap));
        EXPECT_EQ(platform.TakeTexts(), impossible);
        EXPECT_LT(Largest(), 1e-6) << "the last iterate is stored";
    }
    engine.DoCalc_Helmert3(2);
    EXPECT_EQ(platform.TakeTexts(), Texts{});

    pairs[2].dXdest = std::numeric_limits<double>::quiet_NaN();
    platform.texts->SwitchLanguage(kHungarian, {});  // where the two texts differ
    Fit(pairs, TR_HELMERT_3);
    EXPECT_EQ(platform.TakeTexts().back(), "A transzformáció nem számítható!");
    Fit(pairs, TR_AFFIN_5);
    EXPECT_EQ(platform.TakeTexts().back(), "A transzformáció nem számítható !");
}

TEST_F(FitTest, StartsFromTheFirstPairEvenWhenItIsExcluded) {
    auto pairs = Rotated(1.0, 1.0);
    pairs[0].bNotUsed = true;
    Fit(pairs, TR_HELMERT_3);
    EXPECT_LT(Largest(), 1e-9);

    // The first pair on the centroid gives no start for the scales: an error, nothing changed.
    const Coefficients before = CoefficientsOf(engine.udtTrPrm());
    const auto onCentroid =
        test::PairsBy({{10, 10}, {0, 10}, {20, 10}, {10, 0}, {10, 20}}, test::Identity);
    test::ExpectError(ErrorNumber::kDivisionByZero, [&] { Fit(onCentroid, TR_AFFIN_5); });
    EXPECT_EQ(CoefficientsOf(engine.udtTrPrm()).a, before.a);
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
