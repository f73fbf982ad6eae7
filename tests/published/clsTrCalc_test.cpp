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
    engine.AddXY4Tr(five, false);
    engine.AddXY4Tr(engine.Pairs(), true);
    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetXYs(pairs, count, true);
    EXPECT_EQ(pairs.at(5).sId, "5");
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(pairs[3].sId, "4");

    engine.AddXY4Tr(ShiftedPairs(3), false);
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(pairs.size(), 4u) << "nothing to copy leaves the array as it was";
}

TEST_F(Engine, TakesPairsOneByOneAsItTakesThemAtOnce) {
    // So many that summing up all of them for each one would not end.
    auto pairs = ShiftedPairs(300000);
    pairs[7].bNotUsed = true;
    pairs[9].dYdest = -7.1;
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
    double extent[4];
    other.GetRect4Dest(extent[0], extent[1], extent[2], extent[3]);
    EXPECT_EQ(extent[1], -7.1);
    EXPECT_EQ(extent[2], 2095.0);
}

TEST_F(Engine, SwapsThereAndBack) {
    const auto pairs = ShiftedPairs(4);
    engine.AddXY4Tr(pairs, false);
    engine.SwapSourDest();
    double extent[4];
    engine.GetRect4Dest(extent[0], extent[1], extent[2], extent[3]);
    EXPECT_EQ(extent[0], 1000.0);
    engine.DoCalcTr();  // needs the means swapped too
    EXPECT_NEAR(engine.udtTrPrm().dA0, -100.0, 1e-9);
    engine.SwapSourDest();
    engine.DoCalcTr();
    EXPECT_NEAR(engine.udtTrPrm().dA0, 100.0, 1e-9);

    engine.SwapSourDest();
    engine.AddXY4Tr(pairs, true);  // goes on with the sums as they were swapped
    engine.SwapSourDest();
    engine.eTrType(TR_POLI_1);
    engine.DoCalcTr();
    double mean = 0.0;
    for (const typeXYs4Tr& pair : pairs) mean += pair.dXsour / 4.0;
    EXPECT_EQ(engine.Held().Result().a[0], mean + 50.0);
}

TEST_F(Engine, RefusesToExcludeOneOfTwoUsedPairs) {
    engine.AddXY4Tr(ShiftedPairs(3), false);
    engine.ExcludeByIx(0, true);
    engine.ExcludeByIx(1, true);
    EXPECT_EQ(platform.TakeTexts(), Texts{"There must be at least 2 points!"});
    EXPECT_EQ(engine.lNotUsedCnt(), 1);
    engine.ExcludeByIx(0, true);  // taking back is always allowed
    engine.ExcludeByIx(-1, true);
    engine.ExcludeByIx(3, true);
    EXPECT_EQ(engine.lNotUsedCnt(), 0);

    engine.AddXY4Tr(ShiftedPairs(1), false);
    engine.ExcludeByIx(0, false);
    EXPECT_EQ(engine.lNotUsedCnt(), 1) << "only exactly two are protected";
}

TEST_F(Engine, LowersTheTypeStepByStep) {
    const struct {
        int type;
        std::size_t pairs;
        std::vector<int> events;
    } cases[] = {
        {5, 21, {4}},  {4, 15, {3}},  {3, 10, {2}},
        {2, 6, {6}},   {6, 4, {1}},   {1, 3, {0}},
        {-1, 3, {0}},  {-3, 3, {0}},  {5, 3, {4, 3, 2, 6, 1, 0}},
        {20, 21, {4}}, {34, 21, {4}}, {2, 7, {}},
        {7, 20, {}},   {-4, 21, {}},  {-2, 3, {}},
        {33, 22, {}},
    };
    std::vector<int> events;
    const Subscription subscription =
        engine.TypeChanched.Subscribe([&events](enuTR_TYPE& type) { events.push_back(type); });
    for (const auto& [type, pairs, expected] : cases) {
        SCOPED_TRACE(testing::Message() << "type " << type << " with " << pairs);
        events.clear();
        engine.AddXY4Tr(ShiftedPairs(pairs), false);
        engine.eTrType(static_cast<enuTR_TYPE>(type));
        engine.ExcludeByIx(1, false);
        EXPECT_EQ(events, expected);
        EXPECT_EQ(engine.eTrType(), expected.empty() ? type : expected.back());
    }
}

TEST_F(Engine, ExcludesFromTheFitButNotFromTheOriginOrTheResiduals) {
    auto pairs = ShiftedPairs(8);
    pairs[4].dXdest += 5.0;
    Fit(pairs, TR_POLI_1);
    const TR_PRM before = engine.udtTrPrm();
    engine.ExcludeByIx(4, true);
    EXPECT_EQ(engine.udtTrPrm().dA0 - before.dA0, 0.0);
    EXPECT_EQ(engine.udtTrPrm().dB0 - before.dB0, 0.0);
    EXPECT_NEAR(engine.dRmsErr(), 0.0, 1e-9);  // the rest is a shift
    EXPECT_NEAR(Pairs()[4].dXerr, -5.0, 1e-9);

    engine.ResetAllNotUsed();
    EXPECT_EQ(engine.lNotUsedCnt(), 0);
    EXPECT_GT(engine.dRmsErrX(), 1.0);
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
    auto pairs =
        test::PairsBy({{1000, 2000}, {1500, 2500}, {1200, 2900}, {1700, 2100}}, test::Shift);
    pairs[1].sId = "P-2";
    pairs[2].sId = "1234567890123456789012345";
    pairs[3].sId = "Tő/4";
    pairs[3].dXdest += 12345.678;
    pairs[3].bNotUsed = true;
    Fit(pairs, TR_HELMERT);
    engine.SaveLog(folder.File("log.txt"), kHungarian);
    EXPECT_EQ(test::ReadFile(folder.File("log.txt")),
              test::ReadFile(TEST_DATA "/log/helmert_hu.txt"));
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
    engine.SaveLog(folder.File("log.txt"));  // replaces the longer one
    EXPECT_EQ(test::ReadFile(folder.File("log.txt")),
              test::ReadFile(TEST_DATA "/log/poly4_en_comma.txt"));

    const std::string missing = folder.File("none/log.txt");
    engine.SaveLog(missing);
    EXPECT_EQ(platform.TakeTexts(), Texts{"File open error:" + missing});
}

TEST_F(Engine, WritesItsLogInTheLanguageAndCodePageThatTheHostSwitchesTo) {
    auto pairs = test::PairsBy(test::SpreadPoints(4), test::Identity);
    pairs[0].sId = "Tő";
    Fit(pairs, TR_HELMERT);
    const std::pair<std::int32_t, std::vector<std::string>> languages[] = {
        {kHungarian,
         {"\tTranszform\xE1"
          "ci\xF3s jegyz\xF5"
          "k\xF6nyv\r\n",
          " T\xF5 "}},
        {kRomanian, {"\tRaportul transform\xE3rii\r\n", " T\xF5 "}},
        {kVietnamese,
         {"\xF0\xF4\xD2"
          "i\r\n",
          " S\xF4\xEC hi\xEA\xF2u \xF0"
          "i\xEA\xD2m ",
          " T? "}},
        {kEnglish, {"\tTransformation log\r\n", " T\xF5 "}},
        {kSerbian, {"\tIzve\x9Ataj o transformaciji\r\n", " Broj ta\xE8ke ", " T\xF5 "}}};
    for (const auto& [language, bytes] : languages) {
        platform.texts->SwitchLanguage(language, "");
        engine.SaveLog(name);
        for (const std::string& part : bytes) {
            EXPECT_NE(test::ReadFile(name).find(part), std::string::npos) << language << part;
        }
    }
}

TEST_F(Engine, ChoosesFilesWithACaptionThatTheChoiceReplaces) {
    platform.choices = {FileChoice{.path = "/data/town.dat"}, std::nullopt};
    engine.setLanguageID(kHungarian);  // the caption keeps the language of the creation
    engine.setLanguageID(kEnglish);
    std::string file = "old.dat";
    std::string initDir = "/data";
    EXPECT_TRUE(engine.bChooseFile4LoadXYs4Tr(file, initDir));
    EXPECT_EQ(file, "/data/town.dat");
    EXPECT_FALSE(engine.bChooseFile4SaveXYs4Tr(file, initDir));
    EXPECT_EQ(file, "");
    EXPECT_EQ(platform.requests[0].title, "File of GCPs loading");
    EXPECT_EQ(platform.requests[0].flags, 0x1000);
    EXPECT_EQ(platform.requests[1].title, "town.dat saving");
    EXPECT_EQ(platform.requests[1].flags, 0);
}

TEST(clsTrCalc, GoesAwayEvenWhenItsFolderCannotBeRemembered) {
    struct Full : SettingsStore {
        std::string Read(const SettingKey&, const std::string&) override { return {}; }
        void Write(const SettingKey&, const std::string&) override { throw std::bad_alloc(); }
    };
    Platform platform;
    platform.settings = std::make_unique<Full>();
    const ComponentScope scope(std::move(platform));
    { const clsTrCalc engine; }
    EXPECT_TRUE(clsDebug().colTraceObj().empty());
}

}  // namespace
}  // namespace kv_tr
