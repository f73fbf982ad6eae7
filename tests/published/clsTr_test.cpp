#include "kv_tr/published/clsTr.h"

#include <cmath>

#include "helpers/engine_test.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/eval_tr_prm.h"

namespace kv_tr {
namespace {

class ClsTr : public test::EngineTest {
protected:
    clsTr tr;

    double Turned(double angle, double length = 100.0) const {
        double image = -1.0;
        tr.TrAngle(angle, image, 1000.0, 2000.0, length);
        return image;
    }
};

TEST_F(ClsTr, StartsAsTheIdentityInTheLanguageOfTheHost) {
    test::ExpectNear(test::Map(tr, {123.5, -7.25}), {123.5, -7.25}, 0.0);
    platform.texts->SwitchLanguage(kHungarian, "Hungarian");
    EXPECT_EQ(tr.sTrTypeName(), "HELMERT transzformáció");
}

TEST_F(ClsTr, CopiesSixParametersByName) {
    std::array<double, 6> six{};
    tr.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {1, 2, 3}, .b = {5, 7, 11}}));
    EXPECT_TRUE(tr.bGetAffinPrm(six[0], six[1], six[2], six[3], six[4], six[5]));
    tr.udtTrPrmByDAT2M1(TR_STG_HER);
    EXPECT_FALSE(tr.bGetHelmertPrm(six[0], six[1], six[2], six[3], six[4], six[5]));
    EXPECT_EQ(six, (std::array<double, 6>{1, 2, 3, 5, 7, 11}));
}

TEST_F(ClsTr, CountsTheParametersOfItsType) {
    const std::pair<int, int> cases[] = {{-3, 3}, {-2, 3}, {-1, 0}, {0, 0}, {1, 3}, {2, 6},
                                         {4, 15}, {5, 21}, {6, 4},  {8, 0}, {10, 0}};
    for (const auto& [type, count] : cases) {
        tr.udtTrPrm({.eType = static_cast<enuTR_TYPE>(type)});
        EXPECT_EQ(tr.lNumberOfParameters(), count) << type;
    }
}

TEST_F(ClsTr, OpensItsDialogs) {
    EXPECT_TRUE(tr.bChooseTrPrm() && tr.bShowAffinTrPrm() && tr.oCalcTr()->bDoModal(true));
    platform.confirm = false;
    EXPECT_FALSE(tr.bShowPoliTrPrm() || tr.bShowXYs4Tr("town") || tr.oCalcTr()->bDoModal(false));
    EXPECT_EQ(platform.opened, (std::vector<std::string>{"choose parameters", "affine", "apply",
                                                         "polynomial", "town", "adjust"}));
}

TEST_F(ClsTr, InvertsLinearRecordsOnly) {
    AFFIN_PRM inverse;
    for (const enuTR_TYPE type : {TR_HELMERT, TR_AFFIN, TR_AFFIN_5}) {
        tr.udtTrPrm(MakeRecord(type, {.a = {500.5, 0.8, -0.7}, .b = {-30.25, 0.6, 0.9}}));
        EXPECT_TRUE(tr.bGetInversePrm(inverse));
        EXPECT_EQ(inverse.eType, type);
        const PlanePoint image = test::Map(tr, {1234.5, 987.25});
        test::ExpectNear(WithAffine({}, inverse).Apply(image), {1234.5, 987.25}, 1e-9);
    }
    tr.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {0, 1, 2}, .b = {0, 2, 4}}));  // everything on a line
    EXPECT_THROW(tr.bGetInversePrm(inverse), RuntimeError);
    tr.udtTrPrmByDAT2M1(TR_EOV_BOV);
    EXPECT_FALSE(tr.bGetInversePrm(inverse));
    EXPECT_EQ(inverse.eType, TR_AFFIN_5);
}

TEST_F(ClsTr, TakesNationalRecordsByTheirType) {
    tr.udtTrPrmByDAT2M1(static_cast<enuTR_TYPE>(7));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_HELMERT);
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
        EXPECT_EQ(CoefficientsOf(tr.udtTrPrm()).a,
                  NationalTransformation(static_cast<Type>(loaded))->a);
    }
    EXPECT_EQ(platform.opened.back(), "national from 10");
}

TEST_F(ClsTr, ConvertsFathomsThereAndNotQuiteBack) {
    tr.udtTrPrm(RecordOf(FathomToMetre()));
    EXPECT_DOUBLE_EQ(test::Map(tr, {1000, 1000}).first, 1896.48384);
    tr.udtTrPrm(RecordOf(MetreToFathom()));
    EXPECT_NEAR(test::Map(tr, {0, 1896.48384}).second, 1000.00000026, 5e-9);
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

    tr.udtTrPrm(MakeRecord(TR_HELMERT, {.a = {0, 0, -1}, .b = {0, 1, 0}}));  // a quarter turn
    EXPECT_NEAR(Turned(0.25), 0.25 + tr.RAD_90, 3e-6);
    tr.RAD_90 = 10.0;  // the object's own constants take part
    EXPECT_NEAR(Turned(0.25), tr.PI - (10.0 - 0.25), 3e-6);

    // At 650 km single precision steps by 0.0625 m: the result is that of the rounded ends.
    tr.udtTrPrm(MakeRecord(TR_HELMERT, {.a = {650000.03, 1, 0}, .b = {200000.01, 0, 1}}));
    const float dFirst = static_cast<float>(651000.03 + 100 * std::cos(0.3)) - 651000.0F;
    const float dSecond = static_cast<float>(202000.01 + 100 * std::sin(0.3)) - 202000.015625F;
    EXPECT_NEAR(Turned(0.3), std::atan(double{dSecond} / double{dFirst}), 1e-12);
    EXPECT_GT(std::abs(Turned(0.3) - 0.3), 1e-5);
}

TEST_F(ClsTr, LetsItsEngineGo) {
    const auto own = tr.oCalcTr();
    own->AddXY4Tr(std::vector<typeXYs4Tr>(3), false);
    tr.TearDown();
    EXPECT_THROW(own->sListXYs(), RuntimeError) << "the host's own reference stays valid";
    test::ExpectError(ErrorNumber::kObjectNotSet, [this] { tr.oCalcTr(); });
}

TEST(clsDebug, ListsTheObjectsThatAreAlive) {
    test::RecordingPlatform platform;
    const clsDebug debug;
    {
        clsTr tr;
        tr.sInitDir("/survey");
        EXPECT_EQ(debug.colTraceObj()[tr.lDebugId()], "clsTr");
    }
    EXPECT_TRUE(debug.colTraceObj().empty());
    EXPECT_EQ(platform.settings["KV_Tr/Settings/Path"], "/survey");
}

}  // namespace
}  // namespace kv_tr
