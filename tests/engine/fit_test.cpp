// The fits where their result is known without a computation of its own.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "engine/clsTrCalc.h"
#include "engine/normal_equations.h"
#include "helpers/recording_platform.h"
#include "helpers/sample_points.h"
#include "model/coefficients.h"
#include "model/evaluate.h"
#include "support/errors.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

const std::string kSingular = "KORVANEL --> matrix inv.: DET=0 !";

class FitTest : public testing::Test {
protected:
    test::RecordingPlatform platform;
    clsTrCalc engine;

    void Fit(const std::vector<typeXYs4Tr>& pairs, enuTR_TYPE type) {
        engine.AddXY4Tr(pairs, false);
        engine.eTrType(type);
        engine.DoCalcTr();
    }

    double Largest() const {
        std::vector<typeXYs4Tr> pairs;
        std::int32_t count = 0;
        engine.GetAllXYs(pairs, count);
        double largest = 0.0;
        for (const auto& pair : pairs) {
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

TEST_F(FitTest, FindsAShiftExactly) {
    Fit(test::PairsBy({{0, 0}, {100, 0}, {0, 100}},
                      [](PlanePoint p) {
                          return PlanePoint{p.first + 8, p.second - 4};
                      }),
        TR_HELMERT);
    const auto [a, b] = CoefficientsOf(engine.udtTrPrm());
    EXPECT_NEAR(a[0], 8.0, 1e-12);
    EXPECT_NEAR(b[0], -4.0, 1e-12);
    EXPECT_NEAR(a[1], 1.0, 1e-14);
    EXPECT_EQ(a[1], b[2]);
    EXPECT_EQ(a[2], -b[1]);
    EXPECT_NEAR(engine.dRmsErr(), 0.0, 1e-12);
}

TEST_F(FitTest, ReproducesPairsOfItsOwnModel) {
    // Residuals are rounding only: coordinates of some thousand metres carry about 1e-12.
    Fit(Rotated(1.2, 1.2), TR_HELMERT);
    EXPECT_LT(Largest(), 1e-9);
    Fit(Rotated(1.2, 0.7), TR_AFFIN);
    EXPECT_LT(Largest(), 1e-9);
    Fit(Rotated(1.0, 1.0), TR_HELMERT_3);
    EXPECT_LT(Largest(), 1e-9);
    EXPECT_NEAR(engine.udtTrPrm().dA1, std::sqrt(0.75), 1e-12);
    EXPECT_NEAR(engine.udtTrPrm().dB1, 0.5, 1e-12);
    Fit(Rotated(1.2, 0.7), TR_AFFIN_5);
    EXPECT_LT(Largest(), 1e-8);
    EXPECT_NEAR(engine.udtTrPrm().dA2, -0.7 * 0.5, 1e-11);
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(FitTest, KeepsTheNumberOfANationalTypeAndFitsOrderFive) {
    const auto pairs = test::PairsBy(test::SpreadPoints(30), [](PlanePoint p) {
        const double u = (p.first - 1500) / 500;
        const double v = (p.second - 2500) / 500;
        return PlanePoint{p.first + u * u * u * u * u, p.second - u * u * v * v * v};
    });
    for (const enuTR_TYPE type : {TR_STG_EOV_10e, TR_POLI_5}) {
        Fit(pairs, type);
        EXPECT_EQ(engine.eTrType(), type);
        EXPECT_LT(Largest(), 1e-6);
    }
}

TEST_F(FitTest, SaysThatASystemIsSingularOnlyForExactZeros) {
    // All first coordinates equal: their reduced column is exactly zero.
    const auto line =
        test::PairsBy({{100, 0}, {100, 10}, {100, 30}, {100, 60}}, [](PlanePoint p) { return p; });
    Fit(line, TR_AFFIN);
    EXPECT_EQ(platform.TakeTexts(), Texts{kSingular});
    EXPECT_TRUE(std::isfinite(engine.dRmsErr())) << "stored all the same";

    Fit(test::PairsBy(test::SpreadPoints(25), [](PlanePoint p) { return p; }), TR_OL_METER);
    EXPECT_EQ(platform.TakeTexts(), Texts{kSingular});

    auto none = line;
    for (auto& pair : none) pair.bNotUsed = true;
    Fit(none, TR_HELMERT);
    EXPECT_EQ(platform.TakeTexts(), Texts{kSingular});
    EXPECT_TRUE(std::isnan(engine.dMiddleErrX()));
}

TEST_F(FitTest, NamesATypeBeyondTheKnownOnesForEveryUsedPair) {
    auto pairs = test::PairsBy(test::SpreadPoints(22), [](PlanePoint p) { return p; });
    pairs[5].bNotUsed = true;
    Fit(pairs, static_cast<enuTR_TYPE>(34));
    EXPECT_EQ(platform.TakeTexts(), Texts(21, "KORVANEL --> mudtTR_PRM.eType=34"));
    EXPECT_EQ(engine.eTrType(), 34);
}

TEST_F(FitTest, StopsTheIterationAtItsCap) {
    engine.AddXY4Tr(Rotated(1.0, 1.0), false);
    engine.eTrType(TR_HELMERT_3);
    for (const std::int16_t cap :
         {std::int16_t{0}, std::int16_t{-5}}) {  // one pass, which converges too late to be seen
        engine.DoCalc_Helmert3(cap);
        EXPECT_EQ(platform.TakeTexts(), Texts{"Transformation can't be calculated!"});
        EXPECT_LT(Largest(), 1e-6) << "the last iterate is stored";
    }
    engine.DoCalc_Helmert3(1);
    EXPECT_EQ(platform.TakeTexts(), Texts{"Transformation can't be calculated!"});
    engine.DoCalc_Helmert3(2);
    EXPECT_EQ(platform.TakeTexts(), Texts{});

    auto lost = Rotated(1.0, 1.0);
    lost[2].dXdest = std::numeric_limits<double>::quiet_NaN();
    for (const enuTR_TYPE type : {TR_HELMERT_3, TR_AFFIN_5}) {
        Fit(lost, type);
        EXPECT_EQ(platform.TakeTexts().back(), "Transformation can't be calculated!");
    }
}

TEST_F(FitTest, LeavesOtherTypesToTheLinearFit) {
    engine.AddXY4Tr(Rotated(1.2, 0.7), false);
    engine.eTrType(TR_AFFIN);
    engine.DoCalc_Helmert3();
    EXPECT_LT(Largest(), 1e-9);
    engine.udtTrPrm(TR_PRM{.eType = TR_AFFIN});
    engine.DoCalc_Affin5();
    EXPECT_LT(Largest(), 1e-9);
}

TEST_F(FitTest, StartsFromTheFirstPairEvenWhenItIsExcluded) {
    auto pairs = Rotated(1.0, 1.0);
    pairs[0].bNotUsed = true;
    Fit(pairs, TR_HELMERT_3);
    EXPECT_LT(Largest(), 1e-9);

    // The first pair on the centroid gives no start for the scales: an error, nothing changed.
    const auto onCentroid = test::PairsBy({{10, 10}, {0, 10}, {20, 10}, {10, 0}, {10, 20}},
                                          [](PlanePoint p) { return p; });
    engine.AddXY4Tr(onCentroid, false);
    engine.eTrType(TR_AFFIN_5);
    const Coefficients before = CoefficientsOf(engine.udtTrPrm());
    try {
        engine.DoCalcTr();
        FAIL() << "should have thrown";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::kDivisionByZero);
    }
    EXPECT_EQ(CoefficientsOf(engine.udtTrPrm()).a, before.a);
    engine.eTrType(TR_HELMERT_3);  // needs no scale
    engine.DoCalcTr();
    EXPECT_LT(Largest(), 1e-9);
}

TEST_F(FitTest, TurnsANegativeFirstScalePositiveAndGoesOn) {
    // A reflection is beyond the model; the iteration must end all the same, with a message.
    const auto mirrored = test::PairsBy(test::SpreadPoints(6), [](PlanePoint p) {
        return PlanePoint{-p.first, p.second};
    });
    Fit(mirrored, TR_AFFIN_5);
    EXPECT_TRUE(std::isfinite(engine.dRmsErr()));
    const auto [a, b] = CoefficientsOf(engine.udtTrPrm());
    EXPECT_NEAR(a[1] * a[2] + b[1] * b[2], 0.0, 1e-9) << "rotation and scales, no shear";
}

TEST(UpdateResiduals, DividesByTheUsedPairsLessOne) {
    TR_PRM identity;
    identity.dA1 = identity.dB2 = 1.0;
    std::vector<typeXYs4Tr> pairs = {
        {.sId = "1", .dXdest = -0.1, .dYdest = 0.1},
        {.sId = "2", .dXdest = 0.1, .dYdest = -0.1},
        {.sId = "3", .dXdest = -5.0, .dYdest = 0.0, .bNotUsed = true},
    };
    const Statistics two = UpdateResiduals(pairs, identity);
    EXPECT_EQ(pairs[0].dXerr, 0.1);  // computed minus measured
    EXPECT_EQ(pairs[2].dXerr, 5.0);
    EXPECT_NEAR(two.rmsFirst, std::sqrt(0.02), 1e-15);
    EXPECT_NEAR(two.rmsSecond, std::sqrt(0.02), 1e-15);
    EXPECT_NEAR(two.rms, 0.2, 1e-15);
    EXPECT_EQ(two.meanFirst, 0.0);

    pairs[1].bNotUsed = true;
    EXPECT_TRUE(std::isinf(UpdateResiduals(pairs, identity).rms));
    pairs[0].dXdest = pairs[0].dYdest = 0.0;
    EXPECT_TRUE(std::isnan(UpdateResiduals(pairs, identity).rms));
}

TEST(NormalEquations, SumLikeTheProductOfTheWholeDesign) {
    // The design of both coordinates with its zeros, as one matrix, against the summed block.
    constexpr std::size_t kPairs = 40;
    constexpr std::size_t kUnknowns = 21;
    Matrix design(2 * kPairs, 2 * kUnknowns);
    NormalEquations block(kUnknowns);
    const auto points = test::SpreadPoints(kPairs);
    for (std::size_t k = 0; k < kPairs; ++k) {
        const Terms terms = ReducedTerms(TR_POLI_5, points[k].first / 7, points[k].second / 3);
        block.Add(terms.value, 1.0);
        for (std::size_t j = 0; j < kUnknowns; ++j) {
            design(k, j) = design(kPairs + k, kUnknowns + j) = terms.value[j];
        }
    }
    Matrix whole(2 * kUnknowns, 2 * kUnknowns);
    MatrixTimesTranspose(design, whole);
    const Matrix summed = block.Normal();
    for (std::size_t i = 0; i < kUnknowns; ++i) {
        for (std::size_t j = 0; j < kUnknowns; ++j) {
            EXPECT_EQ(summed(i, j), whole(i, j));
            EXPECT_EQ(summed(i, j), whole(kUnknowns + i, kUnknowns + j));
            EXPECT_EQ(whole(i, kUnknowns + j), 0.0);
        }
    }
}

}  // namespace
}  // namespace kv_tr
