// The published classes of a transformation and of its engine.
#include <cmath>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/console_platform.h"
#include "kv_tr/published/number_format.h"

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
    auto& [a0, a1, a2, b0, b1, b2] = six;
    Transformation own{Type::kAffine, {1, 2, 3, 4}, {5, 7, 11, 13}};
    own.a[21] = 17;
    own.b[21] = 19;
    tr.udtTrPrm(RecordOf(own));
    EXPECT_TRUE(tr.bGetAffinPrm(a0, a1, a2, b0, b1, b2));
    EXPECT_EQ(six, (std::array<double, 6>{1, 2, 3, 5, 7, 11}));
    AFFIN_PRM affine = AffineOf(own);
    tr.udtTrAffinPrm({.eType = TR_HELMERT, .dA0 = 9});
    EXPECT_EQ(tr.udtTrPrm().dA0 + tr.udtTrPrm().dB1, 9.0);
    tr.udtTrAffinPrm(affine);
    EXPECT_EQ(TransformationOf(tr.udtTrPrm()), own);

    tr.udtTrPrmByDAT2M1(TR_EOV_BOV);
    EXPECT_FALSE(tr.bGetHelmertPrm(a0, a1, a2, b0, b1, b2) || tr.bGetInversePrm(affine));
    EXPECT_EQ(b2 + affine.dB2, 22.0) << "as they were";
    tr.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {0, 1, 2}, .b = {0, 2, 4}}));  // everything on a line
    test::ExpectError(ErrorNumber::kDivisionByZero, [&] { tr.bGetInversePrm(affine); });
    tr.udtTrPrm(MakeRecord(TR_AFFIN_5, {.a = {1, 2, 3}, .b = {4, 5, 6}}));
    EXPECT_TRUE(tr.bGetInversePrm(affine));
    EXPECT_EQ(affine.eType, TR_AFFIN_5);
    EXPECT_EQ(affine.dA0 + affine.dB0 * 10, -2.0 + 10.0);
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
    EXPECT_EQ(platform.opened,
              (Texts{"choose parameters", "affine", "apply", "polynomial", "town", "adjust"}));
}

TEST_F(ClsTr, SaysThatAConsoleHasNoWindows) {
    const auto dialogs = ConsolePlatform().dialogs;
    EXPECT_FALSE(dialogs->Adjust(engine, true) || dialogs->ChooseParameters(tr) ||
                 dialogs->EditAffine(tr) || dialogs->ViewPolynomial(tr) ||
                 dialogs->ListControlPoints(tr, ""));
    EXPECT_EQ(platform.TakeTexts(), Texts(5, "This program cannot open windows."));
}

TEST_F(ClsTr, TakesNationalRecordsByTheirType) {
    tr.udtTrPrmByDAT2M1(static_cast<enuTR_TYPE>(7));
    EXPECT_EQ(tr.udtTrPrm().eType, TR_HELMERT);
    for (const auto& [chosen, loaded] : {std::pair{TR_HKR_STG, TR_HKR_STG},
                                         {TR_HER_STG, TR_STG_HKR},  // kept as it is
                                         {TR_BOV_EOV, TR_STG_HER}}) {
        tr.udtTrPrmByDAT2M1(TR_STG_HER);
        platform.nationalChoice = chosen;
        platform.confirm = chosen != TR_BOV_EOV;
        EXPECT_FALSE(tr.bLoadByDAT2M1());
        EXPECT_EQ(TransformationOf(tr.udtTrPrm()), NationalTransformation(Type{loaded}));
    }
    EXPECT_EQ(platform.opened.back(), "national from 10");
}

TEST_F(ClsTr, ConvertsFathomsNotQuiteBack) {
    tr.udtTrPrm(RecordOf(MetreToFathom()));
    EXPECT_NEAR(test::Map(tr, {0, 1896.48384}).second, 1000.00000026, 5e-9);
}

TEST_F(ClsTr, TurnsDirectionsWithItsOwnConstants) {
    for (int degrees = 0; degrees < 360; degrees += 5) {
        const double angle = degrees * tr.PI / 180.0;
        // Single precision at 2 km: the ends of 100 m are rounded to 0.1 mm.
        EXPECT_NEAR(Turned(angle - tr.RAD_360), angle, 3e-6) << degrees;
    }
    EXPECT_EQ(Turned(tr.RAD_180), std::acos(-1.0));
    EXPECT_EQ(Turned(-tr.RAD_90), tr.RAD_270);
    EXPECT_EQ(Turned(1.0, 1e-6), 0.0) << "the two ends coincide in single precision";

    tr.udtTrPrm(MakeRecord(TR_HELMERT, {.a = {0, 0, -1}, .b = {0, 1, 0}}));  // a quarter turn
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
    test::ExpectError(ErrorNumber::kObjectNotSet, [this] { tr.oCalcTr(); });
}

TEST(clsDebug, ListsTheObjectsThatAreAlive) {
    test::RecordingPlatform platform;
    const auto tr = std::make_unique<clsTr>();
    const clsTrCalc second;
    EXPECT_EQ(clsDebug().colTraceObj()[tr->lDebugId()], "clsTr");
    EXPECT_EQ(clsDebug().colTraceObj()[second.lDebugId()], "clsTrCalc");
    EXPECT_EQ(clsDebug().colTraceObj().size(), 3U);
}

using Engine = test::EngineTest;

TEST_F(Engine, AddsReplacesAndSelectsPairs) {
    auto five = test::ShiftedPairs(5);
    five[1].bNotUsed = five[3].bNotUsed = true;
    five[2].dXerr = 0.25;
    five[2].dYerr = -0.5;
    double extent[4];
    engine.GetRect4Dest(extent[0], extent[1], extent[2], extent[3]);
    EXPECT_EQ(std::vector(extent, extent + 4), (std::vector{-1e8, -1e8, 1e8, 1e8}));
    engine.AddXY4Tr(five, false);
    engine.AddXY4Tr(Pairs(), true);
    EXPECT_EQ(Pairs()[7].dXerr * 10.0 + Pairs()[7].dYerr, 2.0) << "residuals come along";
    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetXYs(pairs, count, true);
    EXPECT_EQ(count, 6);
    EXPECT_EQ(pairs.at(5).sId, "5");
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(pairs.at(3).sId, "4");

    engine.AddXY4Tr(test::ShiftedPairs(3), false);
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(pairs.size(), 4u) << "nothing to copy leaves the array as it was";
    engine.GetRect4Dest(extent[0], extent[1], extent[2], extent[3]);
    EXPECT_EQ(std::vector(extent, extent + 4), (std::vector{1100.0, 1950.0, 1730.0, 2410.0}));
}

TEST_F(Engine, RefusesToExcludeOneOfTwoUsedPairs) {
    engine.AddXY4Tr(test::ShiftedPairs(3), false);
    for (const int index : {-1, 3, 0, 1}) engine.ExcludeByIx(index, true);
    EXPECT_EQ(platform.messages.at(0).icon, Icon::kExclamation);
    EXPECT_EQ(platform.TakeTexts(), Texts{"There must be at least 2 points!"});
    EXPECT_EQ(engine.lNotUsedCnt(), 1);
    engine.AddXY4Tr(test::ShiftedPairs(1), false);
    engine.ExcludeByIx(0, false);
    EXPECT_EQ(engine.lNotUsedCnt(), 1) << "only exactly two are protected";
}

TEST_F(Engine, LowersTheTypeStepByStepAndTellsOfEachWhenItIsSet) {
    const std::tuple<int, std::size_t, std::vector<int>> cases[] = {
        {5, 3, {4, 3, 2, 6, 1, 0}}, {-3, 3, {0}}, {34, 21, {4}}, {2, 7, {}}, {7, 20, {}}};
    std::vector<int> events;
    const Subscription subscription = engine.TypeChanched.Subscribe([&](enuTR_TYPE& type) {
        events.push_back(type);
        EXPECT_EQ(engine.eTrType(), type);
    });
    for (const auto& [type, pairs, expected] : cases) {
        events.clear();
        engine.AddXY4Tr(test::ShiftedPairs(pairs), false);
        engine.eTrType(static_cast<enuTR_TYPE>(type));
        engine.ExcludeByIx(1, false);
        EXPECT_EQ(events, expected);
        EXPECT_EQ(engine.eTrType(), expected.empty() ? type : expected.back());
        EXPECT_EQ(engine.bXYCntIsValid4TrType(engine.eTrType()), type != 7);
        EXPECT_FALSE(engine.bXYCntIsValid4TrType(TR_POLI_5));
    }
}

TEST_F(Engine, FitsWhenItIsTold) {
    auto pairs = test::ShiftedPairs(8);
    pairs[4].dXdest += 5.0;
    Fit(pairs, TR_POLI_1);
    const TR_PRM before = engine.udtTrPrm();
    engine.ExcludeByIx(4, false);
    EXPECT_EQ(CoefficientsOf(engine.udtTrPrm()).a, CoefficientsOf(before).a);
    engine.ExcludeByIx(4, false);
    engine.ExcludeByIx(4, true);
    EXPECT_EQ(engine.udtTrPrm().dA0 - before.dA0, 0.0) << "the origin is that of all";
    EXPECT_NEAR(engine.dRmsErr(), 0.0, 1e-9);  // the rest is a shift
    EXPECT_NEAR(Pairs()[4].dXerr, -5.0, 1e-9);
    engine.ResetAllNotUsed();
    EXPECT_EQ(engine.lNotUsedCnt(), 0);
    EXPECT_GT(engine.dRmsErrX(), 1.0);
    EXPECT_LT(engine.dRmsErrY(), 1e-9);
    Fit(test::ShiftedPairs(4), TR_HELMERT);
    engine.SwapSourDest();
    EXPECT_NEAR(engine.udtTrPrm().dA0, 100.0, 1e-9);
    engine.DoCalcTr();
    EXPECT_NEAR(engine.udtTrPrm().dA0, -100.0, 1e-9);
}

TEST_F(Engine, TransformsArrays) {
    engine.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {5, 2, 0}, .b = {7, 0, 3}}));
    std::vector<double> x{10, 20}, y{100, 200}, xTr{1, 2, 3}, yTr;
    EXPECT_TRUE(engine.bTrXYArr(x, y, xTr, yTr));
    EXPECT_TRUE(engine.bTrXYArr(x, y, y, x)) << "in place, and crossed";
    EXPECT_EQ(y, (std::vector<double>{25, 45}));
    EXPECT_EQ(x, (std::vector<double>{307, 607}));
    EXPECT_EQ(std::pair(xTr, yTr), std::pair(y, x));
    EXPECT_FALSE(engine.bTrXYArr({1, 2}, {1}, xTr, yTr));
}

TEST_F(Engine, LaysOutItsLogByteForByte) {
    // One pass of an iterated type from a bad start: every figure is another one.
    auto pairs =
        test::PairsBy({{1000, 2000}, {1500, 2500}, {1200, 2900}, {1700, 2100}}, [](PlanePoint p) {
            return PlanePoint{p.first + 100.5, p.second - 50};
        });
    pairs[0].dXdest += 1.25;
    pairs[0].dYdest -= 7.5;
    pairs[1].sId = "P-2";
    pairs[2].sId = "1234567890123456789012345";
    pairs[3].sId = "Tő/4";
    pairs[3].dXdest += 12345.678;
    pairs[3].bNotUsed = true;
    Fit(pairs, TR_HELMERT_3);
    engine.DoCalc_Helmert3(0);
    engine.SaveLog(name, kHungarian);
    EXPECT_EQ(test::ReadFile(name), test::ReadFile(TEST_DATA "/log/helmert3_hu.txt"));
    EXPECT_EQ(CurrentMlLanguage(), kHungarian) << "the language stays";

    pairs.resize(2);
    Fit(pairs, TR_HELMERT);
    Coefficients coefficients;
    for (std::size_t k = 0; k < 22; ++k) {
        coefficients.a[k] = static_cast<double>(k) + 0.5;
        coefficients.b[k] = -static_cast<double>(k + 1) / 1000.0;
    }
    engine.udtTrPrm(MakeRecord(TR_POLI_4, coefficients));
    engine.setLanguageID(kEnglish);
    DecimalSeparator(',');
    engine.SaveLog(name);  // replaces the longer one
    EXPECT_EQ(test::ReadFile(name), test::ReadFile(TEST_DATA "/log/poly4_en_comma.txt"));
}

}  // namespace
}  // namespace kv_tr
