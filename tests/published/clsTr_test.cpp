#include "kv_tr/published/clsTr.h"

#include <cmath>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/console_platform.h"

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

TEST_F(ClsTr, CopiesSixParametersByNameAndKeepsTheOthers) {
    std::array<double, 6> six{};
    Coefficients coefficients{.a = {1, 2, 3, 4}, .b = {5, 7, 11, 13}};
    coefficients.a[21] = 17;
    coefficients.b[21] = 19;
    tr.udtTrPrm(MakeRecord(TR_AFFIN, coefficients));
    EXPECT_TRUE(tr.bGetAffinPrm(six[0], six[1], six[2], six[3], six[4], six[5]));
    EXPECT_EQ(six, (std::array<double, 6>{1, 2, 3, 5, 7, 11}));
    const AFFIN_PRM affine = AffineOf(TransformationOf(tr.udtTrPrm()));
    tr.udtTrAffinPrm({.eType = TR_HELMERT, .dA0 = 9});
    EXPECT_EQ(tr.udtTrPrm().dA3 * 1000 + tr.udtTrPrm().dA21, 4017.0);
    EXPECT_EQ(tr.udtTrPrm().dB3 * 1000 + tr.udtTrPrm().dB21, 13019.0);
    EXPECT_EQ(tr.udtTrPrm().dA0 + tr.udtTrPrm().dB1, 9.0);
    tr.udtTrAffinPrm(affine);
    EXPECT_EQ(CoefficientsOf(tr.udtTrPrm()).a, coefficients.a);
    EXPECT_EQ(CoefficientsOf(tr.udtTrPrm()).b, coefficients.b);
    EXPECT_EQ(tr.udtTrPrm().eType, TR_AFFIN);

    tr.udtTrPrmByDAT2M1(TR_EOV_BOV);
    EXPECT_FALSE(tr.bGetHelmertPrm(six[0], six[1], six[2], six[3], six[4], six[5]));
    EXPECT_EQ(six, (std::array<double, 6>{1, 2, 3, 5, 7, 11}));
    AFFIN_PRM inverse = affine;
    EXPECT_FALSE(tr.bGetInversePrm(inverse));
    EXPECT_EQ(inverse.dB2 + 0.0, 11.0);
    tr.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {0, 1, 2}, .b = {0, 2, 4}}));  // everything on a line
    test::ExpectError(ErrorNumber::kDivisionByZero, [&] { tr.bGetInversePrm(inverse); });
    tr.udtTrPrm(MakeRecord(TR_AFFIN_5, {.a = {1, 2, 3}, .b = {4, 5, 6}}));
    EXPECT_TRUE(tr.bGetInversePrm(inverse));
    EXPECT_EQ(inverse.eType, TR_AFFIN_5);
    EXPECT_EQ(inverse.dA0 + inverse.dB0 * 10, -2.0 + 10.0);
}

TEST_F(ClsTr, CountsTheParametersOfItsType) {
    const std::pair<int, int> cases[] = {{-4, 0}, {-3, 3}, {-2, 3}, {-1, 0}, {0, 0}, {1, 3},
                                         {2, 6},  {4, 15}, {5, 21}, {6, 4},  {7, 0}, {10, 0}};
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

TEST_F(ClsTr, SaysThatAConsoleHasNoWindows) {
    const auto dialogs = ConsolePlatform().dialogs;
    enuTR_TYPE type = TR_STG_HER;
    EXPECT_FALSE(dialogs->Adjust(engine, true) || dialogs->ChooseParameters(tr) ||
                 dialogs->EditAffine(tr) || dialogs->ViewPolynomial(tr) ||
                 dialogs->ChooseNational(type) || dialogs->ListControlPoints(tr, ""));
    EXPECT_EQ(platform.TakeTexts(), Texts(6, "This program cannot open windows."));
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
    EXPECT_EQ(tr.udtTrPrm().eType, TR_OL_METER);
    tr.udtTrPrm(RecordOf(MetreToFathom()));
    EXPECT_NEAR(test::Map(tr, {0, 1896.48384}).second, 1000.00000026, 5e-9);
    EXPECT_EQ(tr.udtTrPrm().eType, TR_METER_OL);
}

TEST_F(ClsTr, TurnsDirectionsWithItsOwnConstants) {
    for (int degrees = 0; degrees < 360; degrees += 5) {
        const double angle = degrees * tr.PI / 180.0;
        // Single precision at 2 km: the ends of 100 m are rounded to 0.1 mm.
        EXPECT_NEAR(Turned(angle), angle, 3e-6) << degrees;
        EXPECT_NEAR(Turned(angle - tr.RAD_360), angle, 3e-6) << degrees;
    }
    EXPECT_EQ(Turned(tr.RAD_180), std::acos(-1.0));
    EXPECT_EQ(Turned(-tr.RAD_90), tr.RAD_270);
    EXPECT_EQ(Turned(1.0, 1e-6), 0.0) << "the two ends coincide in single precision";

    tr.udtTrPrm(MakeRecord(TR_HELMERT, {.a = {0, 0, -1}, .b = {0, 1, 0}}));  // a quarter turn
    EXPECT_NEAR(Turned(0.25), 0.25 + tr.RAD_90, 3e-6);
    tr.RAD_90 = 10.0;  // the object's own constants take part
    tr.PI = 20.0;
    tr.RAD_360 = 50.0;
    EXPECT_NEAR(Turned(0.25), 20.0 - (10.0 - 0.25), 3e-6);
    EXPECT_NEAR(Turned(std::acos(-1.0)), 50.0 - 10.0, 3e-6);

    // At 650 km single precision steps by 0.0625 m: the result is that of the rounded ends.
    tr.udtTrPrm(MakeRecord(TR_HELMERT, {.a = {650000.03, 1, 0}, .b = {200000.01, 0, 1}}));
    const float dFirst = static_cast<float>(651000.03 + 100 * std::cos(0.3)) - 651000.0F;
    const float dSecond = static_cast<float>(202000.01 + 100 * std::sin(0.3)) - 202000.015625F;
    EXPECT_NEAR(Turned(0.3), std::atan(double{dSecond} / double{dFirst}), 1e-12);
    EXPECT_GT(std::abs(Turned(0.3) - 0.3), 1e-5);
    double usual = 0.0;
    tr.TrAngle(0.3, usual, 1000.0, 2000.0);
    EXPECT_EQ(usual, Turned(0.3, 100.0)) << "over 100 m";
}

TEST_F(ClsTr, LetsItsEngineGo) {
    const auto own = tr.oCalcTr();
    own->AddXY4Tr(test::ShiftedPairs(3), false);
    own->ExcludeByIx(1, false);
    tr.TearDown();
    EXPECT_EQ(own->lFullCnt() * 10 + own->lNotUsedCnt(), 31) << "the counts stay";
    test::ExpectError(ErrorNumber::kSubscript, [&] { own->sListXYs(); });
    test::ExpectError(ErrorNumber::kSubscript, [&] { own->DoCalcTr(); });
    test::ExpectError(ErrorNumber::kSubscript, [&] { own->AddXY4Tr({}, true); });
    own->AddXY4Tr(test::ShiftedPairs(2), false);
    EXPECT_EQ(own->lFullCnt(), 2) << "the host's own reference stays valid";
    test::ExpectError(ErrorNumber::kObjectNotSet, [this] { tr.oCalcTr(); });
    tr.TearDown();
}

TEST(clsDebug, ListsTheObjectsThatAreAlive) {
    test::RecordingPlatform platform;
    const clsDebug debug;
    {
        clsTr tr;
        const clsTrCalc second;
        EXPECT_EQ(debug.colTraceObj()[tr.lDebugId()], "clsTr");
        EXPECT_EQ(debug.colTraceObj()[second.lDebugId()], "clsTrCalc");
        EXPECT_EQ(debug.colTraceObj().size(), 3U);
    }
    EXPECT_TRUE(debug.colTraceObj().empty());
}

}  // namespace
}  // namespace kv_tr
