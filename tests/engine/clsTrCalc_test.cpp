#include "engine/clsTrCalc.h"

#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "helpers/sample_points.h"
#include "support/errors.h"

namespace kv_tr {
namespace {

using Texts = std::vector<std::string>;

std::vector<typeXYs4Tr> Shifted(std::size_t count) {
    return test::PairsBy(test::SpreadPoints(count), [](PlanePoint p) {
        return PlanePoint{p.first + 100.0, p.second - 50.0};
    });
}

std::vector<typeXYs4Tr> AllOf(const clsTrCalc& engine) {
    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = -1;
    engine.GetAllXYs(pairs, count);
    EXPECT_EQ(static_cast<std::size_t>(count), pairs.size());
    return pairs;
}

class Engine : public testing::Test {
protected:
    test::RecordingPlatform platform;
    clsTrCalc engine;
    std::vector<int> events;
    Subscription subscription =
        engine.TypeChanched.Subscribe([this](enuTR_TYPE& type) { events.push_back(type); });

    void Fill(std::size_t count, enuTR_TYPE type) {
        engine.AddXY4Tr(Shifted(count), false);
        engine.eTrType(type);
    }
};

TEST_F(Engine, StartsEmptyWithAnAllEnclosingExtent) {
    double least[2], greatest[2];
    engine.GetRect4Dest(least[0], least[1], greatest[0], greatest[1]);
    EXPECT_EQ(engine.eTrType(), TR_HELMERT);
    EXPECT_EQ(engine.udtTrPrm().dA1 + engine.udtTrPrm().dB2, 0.0);
    EXPECT_EQ(engine.lFullCnt(), 0);
    EXPECT_EQ(engine.gdErrLimit, 0.2);
    EXPECT_EQ(least[0], -100000000.0);
    EXPECT_EQ(greatest[1], 100000000.0);
    engine.DoCalcTr();  // does nothing, says nothing
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(Engine, AddsReplacesAndSelectsPairs) {
    auto five = Shifted(5);
    five[1].bNotUsed = five[3].bNotUsed = true;
    engine.AddXY4Tr(five, false);
    EXPECT_EQ(engine.lNotUsedCnt(), 2);
    engine.AddXY4Tr(five, true);
    EXPECT_EQ(engine.lFullCnt(), 10);
    EXPECT_EQ(engine.lNotUsedCnt(), 4);

    std::vector<typeXYs4Tr> pairs;
    std::int32_t count = 0;
    engine.GetXYs(pairs, count, true);
    EXPECT_EQ(count, 6);
    EXPECT_EQ(pairs[1].sId, "3");
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 4);
    EXPECT_EQ(pairs[3].sId, "4");

    engine.AddXY4Tr(Shifted(3), false);
    EXPECT_EQ(engine.lFullCnt(), 3);
    EXPECT_EQ(engine.lNotUsedCnt(), 0);
    engine.GetXYs(pairs, count, false);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(pairs.size(), 4u) << "nothing to copy leaves the array as it was";

    engine.AddXY4Tr({}, false);
    engine.DoCalcTr();
    EXPECT_EQ(engine.lFullCnt(), 0);
    EXPECT_EQ(platform.TakeTexts(), Texts{});
}

TEST_F(Engine, SwapsThereAndBack) {
    const auto pairs = Shifted(4);
    engine.AddXY4Tr(pairs, false);
    engine.SwapSourDest();
    EXPECT_EQ(AllOf(engine)[2].dXsour, pairs[2].dXdest);
    EXPECT_EQ(AllOf(engine)[2].dYdest, pairs[2].dYsour);
    engine.DoCalcTr();  // needs the means swapped too
    EXPECT_NEAR(engine.udtTrPrm().dA0, -100.0, 1e-9);
    double least[2], greatest[2];
    engine.GetRect4Dest(least[0], least[1], greatest[0], greatest[1]);
    EXPECT_EQ(least[0], 1000.0);

    engine.SwapSourDest();
    engine.DoCalcTr();
    EXPECT_EQ(AllOf(engine)[2].dXsour, pairs[2].dXsour);
    EXPECT_NEAR(engine.udtTrPrm().dA0, 100.0, 1e-9);
}

TEST_F(Engine, RefusesToExcludeOneOfTwoUsedPairs) {
    Fill(3, TR_HELMERT);
    engine.ExcludeByIx(0, true);
    engine.ExcludeByIx(1, true);
    EXPECT_EQ(platform.TakeTexts(), Texts{"There must be at least 2 points!"});
    EXPECT_EQ(engine.lNotUsedCnt(), 1);
    engine.ExcludeByIx(0, true);  // taking back is always allowed
    EXPECT_EQ(engine.lNotUsedCnt(), 0);

    engine.ExcludeByIx(-1, true);
    engine.ExcludeByIx(3, true);
    EXPECT_EQ(engine.lNotUsedCnt(), 0);

    Fill(1, TR_HELMERT);
    engine.ExcludeByIx(0, false);
    EXPECT_EQ(engine.lNotUsedCnt(), 1) << "only exactly two are protected";
}

TEST_F(Engine, LowersTheTypeStepByStep) {
    const struct {
        int type;
        std::size_t pairs;
        std::vector<int> events;
    } cases[] = {
        {5, 21, {4}},  {4, 15, {3}}, {3, 10, {2}},
        {2, 6, {6}},   {6, 4, {1}},  {1, 3, {0}},
        {-1, 3, {0}},  {-3, 3, {0}}, {5, 3, {4, 3, 2, 6, 1, 0}},
        {20, 16, {4}}, {2, 7, {}},   {-4, 21, {}},
    };
    for (const auto& [type, pairs, expected] : cases) {
        SCOPED_TRACE(testing::Message() << "type " << type << " with " << pairs);
        events.clear();
        Fill(pairs, static_cast<enuTR_TYPE>(type));
        engine.ExcludeByIx(1, false);
        EXPECT_EQ(events, expected);
        EXPECT_EQ(engine.eTrType(), expected.empty() ? type : expected.back());
    }
}

TEST_F(Engine, ExcludesFromTheFitButNotFromTheOriginOrTheResiduals) {
    auto pairs = Shifted(8);
    pairs[4].dXdest += 5.0;
    engine.AddXY4Tr(pairs, false);
    engine.eTrType(TR_POLI_1);
    engine.DoCalcTr();
    const TR_PRM before = engine.udtTrPrm();
    EXPECT_GT(engine.dRmsErrX(), 1.0);

    engine.ExcludeByIx(4, true);
    EXPECT_EQ(engine.udtTrPrm().dA0 - before.dA0, 0.0);
    EXPECT_EQ(engine.udtTrPrm().dB0 - before.dB0, 0.0);
    EXPECT_NE(engine.udtTrPrm().dA1 - before.dA1, 0.0);
    EXPECT_NEAR(engine.dRmsErr(), 0.0, 1e-9);  // the rest is a shift
    EXPECT_NEAR(AllOf(engine)[4].dXerr, -5.0, 1e-9);

    engine.ResetAllNotUsed();
    EXPECT_EQ(engine.lNotUsedCnt(), 0);
    EXPECT_GT(engine.dRmsErrX(), 1.0);
}

TEST_F(Engine, TransformsPointsAndArrays) {
    TR_PRM record{.eType = TR_AFFIN};
    record.dA0 = 5, record.dA1 = 2, record.dB0 = 7, record.dB2 = 3;
    engine.udtTrPrm(record);
    double first = 0, second = 0;
    engine.TrXY(10, 100, first, second);
    EXPECT_EQ(first, 25.0);
    EXPECT_EQ(second, 307.0);

    std::vector<double> x{10, 20}, y{100, 200}, xTr{1, 2, 3}, yTr;
    EXPECT_TRUE(engine.bTrXYArr(x, y, xTr, yTr));
    EXPECT_EQ(xTr, (std::vector<double>{25, 45}));
    EXPECT_EQ(yTr, (std::vector<double>{307, 607}));
    EXPECT_TRUE(engine.bTrXYArr(x, y, y, x)) << "in place, and crossed";
    EXPECT_EQ(y, xTr);
    EXPECT_EQ(x, yTr);
    EXPECT_FALSE(engine.bTrXYArr({1, 2}, {1}, xTr, yTr));
    EXPECT_EQ(xTr, (std::vector<double>{25, 45}));
}

TEST_F(Engine, FailsCleanlyAfterTearDown) {
    Fill(4, TR_AFFIN);
    engine.TearDown();
    EXPECT_EQ(engine.lFullCnt(), 4);
    EXPECT_THROW(AllOf(engine), RuntimeError);
    EXPECT_THROW(engine.DoCalcTr(), RuntimeError);
    EXPECT_THROW(engine.ExcludeByIx(0, true), RuntimeError);
    EXPECT_THROW(engine.SwapSourDest(), RuntimeError);
    engine.AddXY4Tr(Shifted(3), false);
    engine.DoCalcTr();
    EXPECT_EQ(AllOf(engine).size(), 3u);
}

TEST_F(Engine, AsksItsSurroundings) {
    EXPECT_TRUE(engine.bDoModal(true));
    platform.confirm = false;
    EXPECT_FALSE(engine.bDoModal(false));
    EXPECT_EQ(platform.opened, (Texts{"adjust, apply", "adjust"}));

    engine.setLanguageID(kHungarian);
    Fill(2, TR_HELMERT);
    engine.ExcludeByIx(0, true);
    EXPECT_EQ(platform.TakeTexts(), Texts{"Nem lehet 2-nél kevesebb pont!"});
    platform.texts->SwitchLanguage(kEnglish, "English");
    engine.ExcludeByIx(0, true);
    EXPECT_EQ(platform.TakeTexts(), Texts{"There must be at least 2 points!"});
    {
        clsTrCalc other;
        other.sInitDir("/survey/2026");
    }
    EXPECT_EQ(platform.settings["KV_Tr/Settings/Path"], "/survey/2026");
}

TEST_F(Engine, ChoosesFilesWithACaptionThatTheChoiceReplaces) {
    platform.choices = {FileChoice{.path = "/data/town.dat"}, std::nullopt};
    std::string file = "old.dat";
    std::string folder = "/data";
    engine.setLanguageID(kHungarian);  // the caption keeps the language of the creation
    engine.setLanguageID(kEnglish);
    EXPECT_TRUE(engine.bChooseFile4LoadXYs4Tr(file, folder));
    EXPECT_EQ(file, "/data/town.dat");
    const FileRequest& load = platform.requests[0];
    EXPECT_EQ(load.title, "File of GCPs loading");
    EXPECT_EQ(load.fileName, "old.dat");
    EXPECT_EQ(load.initialFolder, "/data");
    EXPECT_EQ(load.defaultExtension, "dat");
    EXPECT_EQ(load.flags, 0x1000);
    ASSERT_EQ(load.filters.size(), 3u);
    EXPECT_EQ(load.filters[0].description, "File of GCPs (*.dat)");
    EXPECT_EQ(load.filters[1].pattern, "*.txt;*.lst;");

    EXPECT_FALSE(engine.bChooseFile4SaveXYs4Tr(file, folder, 7));
    EXPECT_EQ(file, "");
    const FileRequest& save = platform.requests[1];
    EXPECT_EQ(save.title, "town.dat saving");
    EXPECT_EQ(save.flags, 0);
    EXPECT_EQ(save.owner, 7);
    EXPECT_TRUE(save.filters.empty());

    EXPECT_FALSE(engine.bChooseFile4LoadXYs4Tr(file, folder));
    EXPECT_EQ(platform.requests[2].title, " loading");
}

}  // namespace
}  // namespace kv_tr
