#include "kv_tr/published/clsTrCalc.h"

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/number_format.h"

namespace kv_tr {
namespace {

using Engine = test::EngineTest;
using test::ShiftedPairs;

TEST_F(Engine, AddsReplacesAndSelectsPairs) {
    auto five = ShiftedPairs(5);
    five[1].bNotUsed = five[3].bNotUsed = true;
    five[2].dXerr = 0.25;
    five[2].dYerr = -0.5;
    double extent[4];
    engine.GetRect4Dest(extent[0], extent[1], extent[2], extent[3]);
    EXPECT_EQ(std::vector(extent, extent + 4), (std::vector{-1e8, -1e8, 1e8, 1e8}));
    engine.AddXY4Tr(five, false);
    engine.AddXY4Tr(engine.Pairs(), true);
    EXPECT_EQ(engine.Pairs()[7].dXerr, 0.25) << "residuals come along";
    EXPECT_EQ(engine.Pairs()[7].dYerr, -0.5);
    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetXYs(pairs, count, true);
    EXPECT_EQ(count, 6);
    EXPECT_EQ(pairs.at(5).sId, "5");
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(pairs[3].sId, "4");

    engine.AddXY4Tr(ShiftedPairs(3), false);
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(pairs.size(), 4u) << "nothing to copy leaves the array as it was";
    engine.GetRect4Dest(extent[0], extent[1], extent[2], extent[3]);
    EXPECT_EQ(std::vector(extent, extent + 4), (std::vector{1100.0, 1950.0, 1730.0, 2410.0}));
}

TEST_F(Engine, TakesPairsOneByOneAsItTakesThemAtOnce) {
    // So many that summing up all of them for each one would not end.
    auto pairs = ShiftedPairs(300000);
    pairs[7].bNotUsed = true;
    clsTrCalc other;
    other.AddXY4Tr(ShiftedPairs(2), false);
    other.AddXY4Tr({}, false);
    for (const typeXYs4Tr& pair : pairs) other.AddXY4Tr({&pair, 1}, true);
    engine.AddXY4Tr(pairs, false);
    for (clsTrCalc* each : {&engine, &other}) {
        each->eTrType(TR_POLI_1);
        each->DoCalcTr();
    }
    EXPECT_EQ(other.Held().Result(), engine.Held().Result());
    EXPECT_EQ(other.lNotUsedCnt(), 1);
}

TEST_F(Engine, RefusesToExcludeOneOfTwoUsedPairs) {
    engine.AddXY4Tr(ShiftedPairs(3), false);
    for (const int index : {-1, 3, 0, 1}) engine.ExcludeByIx(index, true);
    ASSERT_EQ(platform.messages.size(), 1u);
    EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
    EXPECT_EQ(platform.TakeTexts(), Texts{"There must be at least 2 points!"});
    EXPECT_EQ(engine.lNotUsedCnt(), 1);
    engine.AddXY4Tr(ShiftedPairs(1), false);
    engine.ExcludeByIx(0, false);
    EXPECT_EQ(engine.lNotUsedCnt(), 1) << "only exactly two are protected";
}

TEST_F(Engine, LowersTheTypeStepByStepAndTellsOfEachWhenItIsSet) {
    const std::tuple<int, std::size_t, std::vector<int>> cases[] = {
        {5, 21, {4}}, {5, 3, {4, 3, 2, 6, 1, 0}}, {-3, 3, {0}}, {34, 21, {4}}, {2, 7, {}},
        {7, 20, {}}};
    std::vector<int> events;
    const Subscription subscription = engine.TypeChanched.Subscribe([&](enuTR_TYPE& type) {
        events.push_back(type);
        EXPECT_EQ(engine.eTrType(), type);
    });
    for (const auto& [type, pairs, expected] : cases) {
        SCOPED_TRACE(testing::Message() << "type " << type << " with " << pairs);
        events.clear();
        engine.AddXY4Tr(ShiftedPairs(pairs), false);
        engine.eTrType(static_cast<enuTR_TYPE>(type));
        engine.ExcludeByIx(1, false);
        EXPECT_EQ(events, expected);
        EXPECT_EQ(engine.eTrType(), expected.empty() ? type : expected.back());
        EXPECT_EQ(engine.bXYCntIsValid4TrType(engine.eTrType()), type != 7);
        EXPECT_FALSE(engine.bXYCntIsValid4TrType(TR_POLI_5));
    }
}

TEST_F(Engine, FitsWhenItIsTold) {
    auto pairs = ShiftedPairs(8);
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
    Fit(ShiftedPairs(4), TR_HELMERT);
    EXPECT_NEAR(engine.udtTrPrm().dA0, 100.0, 1e-9);
    engine.SwapSourDest();
    EXPECT_NEAR(engine.udtTrPrm().dA0, 100.0, 1e-9);
    engine.DoCalcTr();
    EXPECT_NEAR(engine.udtTrPrm().dA0, -100.0, 1e-9);
}

TEST_F(Engine, TransformsArrays) {
    engine.udtTrPrm(MakeRecord(TR_AFFIN, {.a = {5, 2, 0}, .b = {7, 0, 3}}));
    EXPECT_FALSE(engine.bTypeIsPolinom());
    std::vector<double> x{10, 20}, y{100, 200}, xTr{1, 2, 3}, yTr;
    EXPECT_TRUE(engine.bTrXYArr(x, y, xTr, yTr));
    EXPECT_TRUE(engine.bTrXYArr(x, y, y, x)) << "in place, and crossed";
    EXPECT_EQ(y, (std::vector<double>{25, 45}));
    EXPECT_EQ(x, (std::vector<double>{307, 607}));
    EXPECT_EQ(std::pair(xTr, yTr), std::pair(y, x));
    EXPECT_FALSE(engine.bTrXYArr({1, 2}, {1}, xTr, yTr));
    test::ExpectNear(test::Map(engine, {10, 100}), {25, 307}, 0.0);
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

    platform.texts->SwitchLanguage(kVietnamese, "");  // which has a code page of its own
    engine.SaveLog(name);
    EXPECT_NE(test::ReadFile(name).find(" S\xF4\xEC hi\xEA\xF2u \xF0i\xEA\xD2m "),
              std::string::npos);
    engine.setLanguageID(kEnglish);

    platform.TakeTexts();
    const std::string missing = folder.File("none/log.txt");
    engine.SaveLog(missing);
    EXPECT_EQ(platform.TakeTexts(), Texts{"File open error:" + missing});
}

TEST_F(Engine, GoesAwayEvenWhenItsFolderCannotBeRemembered) {
    struct Full : SettingsStore {
        std::string Read(const SettingKey&, const std::string&) override { return {}; }
        void Write(const SettingKey&, const std::string&) override { throw std::bad_alloc(); }
    };
    Platform full;
    full.settings = std::make_unique<Full>();
    const ComponentScope scope(std::move(full));
    { const clsTrCalc other; }
    EXPECT_TRUE(clsDebug().colTraceObj().empty());
}

}  // namespace
}  // namespace kv_tr
