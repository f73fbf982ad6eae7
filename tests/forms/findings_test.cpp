// What the adjustment dialog shows of the worth of a fit, and what it offers.
#include <gtest/gtest.h>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/frmTr.h"

namespace kv_tr::test {
namespace {

using Look = StripLine::Look;

constexpr int kStudentised = 9;  // the first column of the statistics
constexpr int kProbability = 13;

class FindingsOfTheDialog : public EngineTest {
protected:
    void Open(const std::function<void(frmTr&)>& script) {
        frmTr form;
        form.bDoModal(engine, false, [&] { script(form); });
    }
    void Load(const std::string& file, enuTR_TYPE type) {
        ASSERT_TRUE(engine.bLoadXYsFromFile(TEST_DATA "/adjustment/" + file, false));
        engine.eTrType(type);
    }
    void LoadLine() {
        const auto along = [](double t) { return PlanePoint{100 + 10 * t, 50 + 5 * t}; };
        engine.AddXY4Tr(PairsBy({along(0), along(1), along(4), along(7), along(9)}, Shift), false);
        engine.eTrType(TR_AFFIN);
    }
    /// How often the form changes in an action.
    static int Changes(frmTr& form, const std::function<void()>& action) {
        int raised = 0;
        const Subscription counted = form.Changed.Subscribe([&raised] { ++raised; });
        action();
        return raised;
    }
    static std::string CellsOf(const FindingsTable& table) {
        std::string text;
        for (const auto& row : table.rows) {
            for (const std::string& cell : row.cells) text += cell + "|";
        }
        return text;
    }
};

TEST_F(FindingsOfTheDialog, OfferToExcludeThePointThatDoesNotFit) {
    Load("swiss_helmert_9.dat", TR_HELMERT);
    Open([&](frmTr& form) {
        const StripLine line = form.Strip()[0];
        EXPECT_EQ(line.look, Look::kWarning);
        EXPECT_EQ(line.offer + ", " + line.text.substr(0, 21),
                  "Exclude 66.301, Warning: Point 66.301");
        for (int time = 0; time < 2; ++time) {  // the second time it is out of date
            form.cmdOffer(line);
            EXPECT_TRUE(engine.Pairs()[0].bNotUsed);
            EXPECT_EQ(engine.lNotUsedCnt(), 1);
        }
        EXPECT_EQ(form.Strip().size(), 1U);
        EXPECT_EQ(form.Strip()[0].look, Look::kChecked);
        EXPECT_EQ(form.Strip()[0].offer, "");
        form.Grid1DblClick(1, 1);
        EXPECT_EQ(form.Strip()[0].text, line.text) << "the strip follows each toggle";
    });
    EXPECT_EQ(platform.messages.size(), 0U);
}

TEST_F(FindingsOfTheDialog, OfferATypeThatIsDetermined) {
    LoadLine();
    Open([&](frmTr& form) {
        platform.messages.clear();
        EXPECT_EQ(form.Strip()[0].look, Look::kSevere);
        EXPECT_EQ(Changes(form, [&] { form.cmdOffer(form.Strip()[0]); }), 1);
        EXPECT_EQ(engine.eTrType(), TR_HELMERT);
        EXPECT_NE(form.Strip()[0].look, Look::kSevere);
    });
    EXPECT_EQ(platform.messages.size(), 0U);
}

TEST_F(FindingsOfTheDialog, OfferTheAccurateSolutionWhileTheDialogIsOpen) {
    Load("truth_strip_affine.dat", TR_AFFIN);
    Open([&](frmTr& form) {
        const StripLine line = form.Strip()[0];
        ASSERT_EQ(line.warning.offer, Warning::Offer::kAccurate) << line.text;
        const TR_PRM documented = engine.udtTrPrm();
        form.cmdOffer(line);
        EXPECT_TRUE(form.AccurateChecked());
        EXPECT_EQ(engine.Truth().level, TruthCheck::Level::kVerified);
        form.Grid1DblClick(2, 1);
        form.Grid1DblClick(2, 1);
        EXPECT_EQ(engine.Truth().level, TruthCheck::Level::kVerified) << "from then on";
        EXPECT_EQ(Changes(form, [&] { form.chkAccurate(); }), 1);
        EXPECT_EQ(double{engine.udtTrPrm().dA0}, double{documented.dA0}) << "and back";
        form.chkAccurate();
    });
    EXPECT_EQ(engine.Solution(), Solution::kDocumented);
    EXPECT_EQ(engine.Truth().level, TruthCheck::Level::kVerified) << "the result stays";
}

TEST_F(FindingsOfTheDialog, OfferToDeleteFarPointsThatAreExcluded) {
    Load("truth_far_origin_poly3.dat", TR_POLI_3);
    for (int i = 60; i < 65; ++i) engine.ExcludeByIx(i, false);
    Open([&](frmTr& form) {
        const StripLine line = form.Strip()[0];
        ASSERT_EQ(line.warning.offer, Warning::Offer::kDeleteExcluded) << line.text;
        const double before = engine.Truth().errorInHull;
        EXPECT_EQ(Changes(form, [&] { form.cmdOffer(line); }), 1);
        EXPECT_EQ(engine.lFullCnt(), 60);
        EXPECT_LT(engine.Truth().errorInHull, before / 10) << "not fitted again";
    });
}

TEST_F(FindingsOfTheDialog, AreComputedWhenSomethingShowsThemOnceAFit) {
    engine.Take(PointsBy(General(Type::kHelmert), FindingsCache::kAssessedPoints + 2, 0.01), false);
    Open([&](frmTr& form) {
        const auto expect = [&](int assessments, int advices) {
            form.Strip();
            EXPECT_EQ(form.Findings().Computed().assessments, assessments);
            EXPECT_EQ(form.Findings().Computed().advices, advices);
        };
        expect(0, 0);
        form.Grid1DblClick(1, 1);
        expect(0, 0);
        form.cmdColumns();
        form.cmdStatistics();
        for (int row = 1; row < 4; ++row) form.Table().CellText(row, kStudentised);
        form.Figures(), form.Parameters(), form.chkNr(), form.txtLimit("0.7");
        expect(1, 0);
        form.cmdColumns();
        form.cmdTypes();
        form.Types(), form.Advice();
        expect(1, 1);
        form.cmdTypes();
        form.Grid1DblClick(2, 1);
        expect(2, 1);  // few enough for the strip now
        form.cmdRemoveExt();
        expect(3, 1);  // the points have other places
    });
}

TEST_F(FindingsOfTheDialog, FollowTheFitInTableAndPanel) {
    Load("swiss_helmert_9.dat", TR_HELMERT);
    Open([&](frmTr& form) {
        PairTable& table = form.Table();
        EXPECT_FALSE(table.IsColumnShown(kStudentised));
        EXPECT_EQ(table.TableText(std::vector{1}).find("tY"), std::string::npos);
        form.cmdColumns();
        form.Grid1DblClick(3, 1);
        const Assessment assessment = Assess(engine.Held().Points(), Type::kHelmert);
        const PointAssessment& point = assessment.points[3];  // the fifth: one before is excluded
        const std::array expected{point.external.first, point.external.second,
                                  point.redundancy.first, point.redundancy.second};
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(table.CellText(5, kStudentised + i),
                      FixedFigure(expected[static_cast<std::size_t>(i)], 2));
        }
        EXPECT_EQ(table.CellText(5, kProbability), ShortFigure(point.adjustedProbability));
        table.ToggleGroup(1);
        const std::string text = table.TableText(std::vector{3});
        EXPECT_TRUE(text.ends_with("\t–\t–\t–\n")) << text;
        const auto rows = form.Figures().rows;
        EXPECT_EQ(rows[0].cells[1] + rows[0].cells[2],
                  FixedFigure(engine.dRmsErr(), 4) + " mm − 1 = 7");
        EXPECT_EQ(rows[2].cells[1] + rows[2].cells[2],
                  FixedFigure(assessment.sigma0, 4) + " mr = 12");
    });
}

TEST_F(FindingsOfTheDialog, FitTheTypeOfARowAndMarkTheAdvisedOne) {
    Load("greek_orders_15.dat", TR_AFFIN);
    Open([&](frmTr& form) {
        const TypeAdvice advice = Advise(engine.Held().Points());
        const auto rows = form.Types().rows;
        ASSERT_EQ(rows.size(), advice.types.size());
        for (int row = 0; row < std::ssize(rows); ++row) {
            const Type type = advice.types[static_cast<std::size_t>(row)].type;
            EXPECT_EQ(rows[static_cast<std::size_t>(row)].isMarked, type == advice.advised);
            EXPECT_EQ(Changes(form, [&] { form.FitTypeOf(row); }), 1);
            EXPECT_EQ(static_cast<int>(engine.eTrType()), static_cast<int>(type));
            EXPECT_EQ(form.TypesRow(), row);
        }
    });
}

TEST_F(FindingsOfTheDialog, ShowADashForFiguresThatAreNotDefined) {
    const auto expectDashes = [&](frmTr& form) {
        form.cmdColumns();
        std::string all =
            CellsOf(form.Figures()) + CellsOf(form.Parameters()) + CellsOf(form.Types());
        for (int column = kStudentised; column <= kProbability; ++column) {
            all += form.Table().CellText(1, column) + "|";
        }
        EXPECT_EQ(all.find("nan"), std::string::npos) << all;
        EXPECT_EQ(all.find("inf"), std::string::npos) << all;
        for (const std::size_t row : {2U, 3U, 4U}) {
            const std::string cell = form.Figures().rows[row].cells[1];
            EXPECT_EQ(cell, kNoFigure) << row;
        }
        EXPECT_EQ(form.Table().CellText(1, kProbability), kNoFigure);
        EXPECT_EQ(form.Table().CellText(1, kStudentised), kNoFigure);
    };
    engine.AddXY4Tr(ShiftedPairs(2), false);  // no redundancy
    Open(expectDashes);
    LoadLine();
    Open(expectDashes);
    engine.AddXY4Tr({}, false);
    Open([](frmTr& form) { EXPECT_TRUE(form.Strip().empty()); });
}

}  // namespace
}  // namespace kv_tr::test
