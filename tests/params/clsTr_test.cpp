#include "params/clsTr.h"

#include <gtest/gtest.h>

#include <cmath>

#include "helpers/recording_platform.h"
#include "model/coefficients.h"
#include "model/evaluate.h"
#include "params/affine_record.h"
#include "params/national.h"
#include "support/errors.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

AFFIN_PRM Affine(enuTR_TYPE type, const std::array<double, 6>& numbers) {
    AFFIN_PRM record{.eType = type};
    record.dA0 = numbers[0], record.dA1 = numbers[1], record.dA2 = numbers[2];
    record.dB0 = numbers[3], record.dB1 = numbers[4], record.dB2 = numbers[5];
    return record;
}

std::array<double, 6> Numbers(const AFFIN_PRM& r) {
    return {r.dA0, r.dA1, r.dA2, r.dB0, r.dB1, r.dB2};
}

class ClsTr : public testing::Test {
protected:
    test::RecordingPlatform platform;
    clsTr tr;

    PlanePoint Map(double first, double second) const {
        PlanePoint image;
        tr.TrXY(first, second, image.first, image.second);
        return image;
    }

    double Turned(double angle, double length = 100.0) const {
        double image = -1.0;
        tr.TrAngle(angle, image, 1000.0, 2000.0, length);
        return image;
    }
};

TEST_F(ClsTr, StartsAsTheIdentity) {
    EXPECT_EQ(tr.udtTrPrm().eType, TR_HELMERT);
    EXPECT_EQ(tr.oCalcTr()->eTrType(), TR_HELMERT);
    EXPECT_EQ(Map(123.5, -7.25).first, 123.5);
    EXPECT_EQ(Map(123.5, -7.25).second, -7.25);
    EXPECT_EQ(tr.PI, 4.0 * std::atan(1.0));
    EXPECT_EQ(tr.RAD_270, tr.PI / 2.0 + tr.PI);
    EXPECT_EQ(tr.RAD_360, 2.0 * tr.PI);
}

TEST_F(ClsTr, CopiesSixParametersByName) {
    TR_PRM whole = *NationalRecord(TR_STG_HER);
    tr.udtTrPrm(whole);
    const double kept = whole.dA5;
    tr.udtTrAffinPrm(Affine(TR_AFFIN, {1, 2, 3, 5, 7, 11}));
    whole = tr.udtTrPrm();
    EXPECT_EQ(whole.eType, TR_AFFIN);
    EXPECT_EQ(Numbers(AffineOf(whole)), (std::array<double, 6>{1, 2, 3, 5, 7, 11}));
    EXPECT_EQ(whole.dA5 - kept, 0.0);

    double a0 = 0, a1 = 0, a2 = 0, b0 = 0, b1 = 0, b2 = 0;
    EXPECT_TRUE(tr.bGetAffinPrm(a0, a1, a2, b0, b1, b2));
    EXPECT_EQ((std::array{a0, a1, a2, b0, b1, b2}), (std::array<double, 6>{1, 2, 3, 5, 7, 11}));
    whole.eType = TR_BILINEAR;
    tr.udtTrPrm(whole);
    a0 = 99;
    EXPECT_FALSE(tr.bGetHelmertPrm(a0, a1, a2, b0, b1, b2));
    EXPECT_EQ(a0, 99);
}

TEST_F(ClsTr, CountsTheParametersOfItsType) {
    const std::pair<int, int> cases[] = {{-5, 0}, {-3, 3}, {-2, 3}, {-1, 0}, {0, 0},
                                         {1, 3},  {2, 6},  {3, 10}, {4, 15}, {5, 21},
                                         {6, 4},  {8, 0},  {10, 0}, {33, 0}};
    for (const auto& [type, count] : cases) {
        tr.udtTrPrm({.eType = static_cast<enuTR_TYPE>(type)});
        EXPECT_EQ(tr.lNumberOfParameters(), count) << type;
        EXPECT_EQ(tr.bTypeIsPolinom(), type >= 1);
    }
}

TEST_F(ClsTr, InvertsLinearRecordsOnly) {
    for (const enuTR_TYPE type : {TR_HELMERT, TR_AFFIN, TR_AFFIN_5}) {
        tr.udtTrAffinPrm(Affine(type, {500.5, 0.8, -0.7, -30.25, 0.6, 0.9}));
        const PlanePoint image = Map(1234.5, 987.25);
        AFFIN_PRM inverse;
        EXPECT_TRUE(tr.bGetInversePrm(inverse));
        EXPECT_EQ(inverse.eType, type);
        const PlanePoint back = EvalTrPrm(WithAffine({}, inverse), image);
        EXPECT_NEAR(back.first, 1234.5, 1e-9);
        EXPECT_NEAR(back.second, 987.25, 1e-9);
    }
    AFFIN_PRM untouched = Affine(TR_HELMERT, {1, 2, 3, 4, 5, 6});
    tr.udtTrAffinPrm(Affine(TR_AFFIN, {0, 1, 2, 0, 2, 4}));  // everything on a line
    EXPECT_THROW(tr.bGetInversePrm(untouched), RuntimeError);
    tr.udtTrPrmByDAT2M1(TR_EOV_BOV);
    EXPECT_FALSE(tr.bGetInversePrm(untouched));
    EXPECT_EQ(Numbers(untouched), (std::array<double, 6>{1, 2, 3, 4, 5, 6}));
}

TEST_F(ClsTr, TakesNationalRecordsByTheirType) {
    tr.udtTrPrmByDAT2M1(static_cast<enuTR_TYPE>(7));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_HELMERT);
    tr.udtTrPrmByDAT2M1(TR_STG_HER);
    EXPECT_EQ(tr.sTrTypeName(), "STG-HÉR transzformáció");
    EXPECT_EQ(Map(0, 0).second, 136720.801);

    const struct {
        enuTR_TYPE chosen;
        bool confirmed;
        enuTR_TYPE loaded;
    } cases[] = {{TR_HKR_STG, true, TR_HKR_STG},
                 {TR_HER_STG, true, TR_STG_HKR},  // kept as it is
                 {TR_BOV_EOV, false, TR_STG_HER}};
    for (const auto& [chosen, confirmed, loaded] : cases) {
        tr.udtTrPrmByDAT2M1(TR_STG_HER);
        platform.nationalChoice = chosen;
        platform.confirm = confirmed;
        EXPECT_FALSE(tr.bLoadByDAT2M1());
        EXPECT_EQ(tr.udtTrPrm().eType, loaded);
        EXPECT_EQ(CoefficientsOf(tr.udtTrPrm()).a, CoefficientsOf(*NationalRecord(loaded)).a);
    }
    EXPECT_EQ(platform.opened.back(), "national from 10");
}

TEST_F(ClsTr, ConvertsFathomsThereAndNotQuiteBack) {
    tr.udtTrAffinPrm(FathomToMetre());
    EXPECT_EQ(tr.udtTrPrm().eType, TR_OL_METER);
    const PlanePoint metres = Map(1000, 1000);
    EXPECT_DOUBLE_EQ(metres.first, 1896.48384);
    tr.udtTrAffinPrm(MetreToFathom());
    EXPECT_NEAR(Map(metres.first, metres.second).second, 1000.00000026, 5e-9);
}

TEST_F(ClsTr, TurnsDirections) {
    for (int degrees = 0; degrees < 360; degrees += 5) {
        const double angle = degrees * tr.PI / 180.0;
        // Single precision at 2 km: the ends of 100 m are rounded to 0.1 mm.
        EXPECT_NEAR(Turned(angle), angle, 3e-6) << degrees;
        EXPECT_NEAR(Turned(angle - tr.RAD_360), angle, 3e-6) << degrees;
    }
    EXPECT_EQ(Turned(tr.PI), tr.PI);
    EXPECT_EQ(Turned(-tr.RAD_90), tr.RAD_360 - tr.RAD_90);
    EXPECT_EQ(Turned(1.0, 1e-6), 0.0) << "the two ends coincide in single precision";

    tr.udtTrAffinPrm(Affine(TR_HELMERT, {0, 0, -1, 0, 1, 0}));  // a quarter turn
    EXPECT_NEAR(Turned(0.25), 0.25 + tr.RAD_90, 3e-6);
    tr.RAD_90 = 10.0;  // the object's own constants take part
    EXPECT_NEAR(Turned(0.25), tr.PI - (10.0 - 0.25), 3e-6);

    // At 650 km single precision steps by 0.0625 m: the result is that of the rounded ends.
    tr.udtTrAffinPrm(Affine(TR_HELMERT, {650000.03, 1, 0, 200000.01, 0, 1}));
    const float dFirst = static_cast<float>(651000.03 + 100 * std::cos(0.3)) - 651000.0F;
    const float dSecond = static_cast<float>(202000.01 + 100 * std::sin(0.3)) - 202000.015625F;
    EXPECT_NEAR(Turned(0.3), std::atan(double{dSecond} / double{dFirst}), 1e-12);
    EXPECT_GT(std::abs(Turned(0.3) - 0.3), 1e-5);
}

TEST_F(ClsTr, OpensItsDialogs) {
    EXPECT_TRUE(tr.bChooseTrPrm());
    EXPECT_TRUE(tr.bShowAffinTrPrm());
    platform.confirm = false;
    EXPECT_FALSE(tr.bShowPoliTrPrm());
    EXPECT_FALSE(tr.bShowXYs4Tr("town.dat"));
    EXPECT_EQ(platform.opened,
              (Texts{"choose parameters", "affine", "polynomial", "control points town.dat"}));
}

TEST_F(ClsTr, LetsItsEngineGo) {
    const auto engine = tr.oCalcTr();
    EXPECT_EQ(engine.get(), tr.oCalcTr().get());
    engine->AddXY4Tr(std::vector<typeXYs4Tr>(3), false);
    tr.TearDown();
    EXPECT_THROW(engine->sListXYs(), RuntimeError) << "the host's own reference stays valid";
    try {
        tr.oCalcTr();
        FAIL() << "should have thrown";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::kObjectNotSet);
    }
    tr.TearDown();
}

TEST_F(ClsTr, FollowsTheLanguageOfTheHost) {
    EXPECT_EQ(tr.sTrTypeName(), "HELMERT transformation");
    platform.texts->SwitchLanguage(kHungarian, "Hungarian");
    EXPECT_EQ(tr.sTrTypeName(), "HELMERT transzformáció");
}

TEST(clsDebug, ListsTheObjectsThatAreAlive) {
    test::RecordingPlatform platform;
    const clsDebug debug;
    clsComponent component;
    component.sAppTitle("Land office");
    {
        clsTr tr;
        tr.sInitDir("/survey");
        EXPECT_NE(tr.lDebugId(), tr.oCalcTr()->lDebugId());
        EXPECT_EQ(debug.colTraceObj()[tr.lDebugId()], "clsTr");
        EXPECT_EQ(debug.colTraceObj().size(), 3u);
    }
    EXPECT_EQ(debug.colTraceObj(),
              (std::map<std::int32_t, std::string>{{component.lDebugId(), "clsComponent"}}));
    EXPECT_EQ(platform.settings["Land office/Settings/Path"], "/survey");
}

}  // namespace
}  // namespace kv_tr
