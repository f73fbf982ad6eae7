// The rules of the adjustment dialog, as plain calls.
#include "kv_tr/forms/frmTr.h"

#include <gtest/gtest.h>

#include <cmath>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/dialogs.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/settings.h"

namespace kv_tr::test {
namespace {

using Mode = frmTr::Mode;

class FrmTr : public EngineTest {
protected:
    /// Opens the dialog, plays the script in it and closes it by its frame.
    bool Open(const std::function<void(frmTr&)>& script, bool showApplyButton = false) {
        frmTr form;
        return form.bDoModal(engine, showApplyButton, [&] { script(form); });
    }

    /// Pairs that no type maps exactly; the last one is far off.
    static std::vector<typeXYs4Tr> RoughPairs(std::size_t count) {
        auto pairs = ShiftedPairs(count);
        for (std::size_t i = 0; i < count; ++i) pairs[i].dXdest += 0.01 * double(i * 7 % 5);
        pairs.back().dYdest += 1;
        return pairs;
    }

    std::string Excluded() const {
        std::string marks;
        for (const typeXYs4Tr& pair : engine.Pairs()) marks += pair.bNotUsed ? 'x' : '.';
        return marks;
    }
};

TEST_F(FrmTr, IsTrueOnlyWhenLeftByTheButtonThatCounts) {
    engine.AddXY4Tr(ShiftedPairs(5), false);
    const auto byFrame = [](frmTr&) {};
    const auto byExit = [](frmTr& form) { form.cmdExit(); };
    const auto byApply = [](frmTr& form) { form.cmdApplyResult(); };
    EXPECT_FALSE(Open(byFrame));
    EXPECT_TRUE(Open(byExit));
    EXPECT_FALSE(Open(byFrame, true));
    EXPECT_FALSE(Open(byExit, true));
    EXPECT_TRUE(Open(byApply, true));
}

TEST_F(FrmTr, IsOpenedByTheDialogsOfWindows) {
    engine.AddXY4Tr(ShiftedPairs(5), false);
    const auto dialogs = MakeDialogs({.tr = [](frmTr& form) { form.cmdApplyResult(); }});
    EXPECT_TRUE(dialogs->Adjust(engine, true));
    EXPECT_FALSE(MakeDialogs({})->Adjust(engine, true));
    EXPECT_EQ(platform.TakeTexts().size(), 1U) << "no window: the user is told";
}

TEST_F(FrmTr, SpeaksTheLanguageOfTheMoment) {
    engine.AddXY4Tr(RoughPairs(5), false);
    Open([&](frmTr& form) {
        const auto text = [&](const char* control) { return form.ControlTexts().TextOf(control); };
        const auto toolTip = [&](const char* control) {
            return form.ControlTexts().ToolTip(control);
        };
        EXPECT_EQ(text("cmdExit"), "Continue");  // there is nothing to apply
        EXPECT_EQ(text("chkDx"), "Dy");
        EXPECT_EQ(text("chkDy"), "Dx");
        EXPECT_EQ(toolTip("RadioTrType(7)"), "5 unknowns: translation(YX),scaling(YX), rotation.");

        platform.texts->SwitchLanguage(kHungarian, "");
        EXPECT_EQ(text("frmTr"), "Transzformáció");
        EXPECT_EQ(text("cmdExit"), "Folytatás");
        EXPECT_EQ(text("lblExtCnt"), "Kizárt:0");
        EXPECT_EQ(form.Table().CellText(0, 0), "Ssz.");
        EXPECT_EQ(toolTip("RadioTrType(8)"), "3 ismeretlen: Y,X eltolás, elforgatás. Ma=1");
    });
    EXPECT_EQ(frmTr().ControlTexts().TextOf("lblKh"), "Kh [m]:");  // until there is a result
}

TEST_F(FrmTr, ShowsTheFiguresOfTheEngine) {
    engine.AddXY4Tr(RoughPairs(6), false);
    engine.ExcludeByIx(1, false);
    Open([&](frmTr& form) {
        const auto figure = [](double value) { return FormatFixed(value, 3, 0); };
        EXPECT_EQ(form.ControlTexts().TextOf("lblKh"),
                  "RMS=" + figure(engine.dRmsErr()) + "\r\nmY=" + figure(engine.dRmsErrX()) +
                      "  mX=" + figure(engine.dRmsErrY()) + "\r\nRMS values[m]:\r\nY=" +
                      figure(engine.dMiddleErrX()) + "  X=" + figure(engine.dMiddleErrY()));
        EXPECT_EQ(form.ControlTexts().TextOf("lblCnt"), "Calculated:5");
        EXPECT_EQ(form.ControlTexts().TextOf("lblExtCnt"), "Excluded:1");
        EXPECT_EQ(form.Table().CellText(1, 8), figure(ResidualLength(engine.Pairs()[0])));
    });
}

TEST_F(FrmTr, FitsTheTypeOfAButtonOrKeepsTheOneItHas) {
    constexpr enuTR_TYPE kTypes[] = {TR_HELMERT, TR_AFFIN,  TR_POLI_1,  TR_POLI_2,    TR_POLI_3,
                                     TR_POLI_4,  TR_POLI_5, TR_AFFIN_5, TR_HELMERT_3, TR_BILINEAR};
    engine.AddXY4Tr(RoughPairs(21), false);
    Open([&](frmTr& form) {
        for (int index = 0; index < 10; ++index) {
            SCOPED_TRACE(index);
            engine.udtTrPrm({.eType = TR_OL_METER});
            form.RadioTrType(index);
            EXPECT_EQ(engine.eTrType(), kTypes[index]);
            EXPECT_EQ(form.SelectedType(), index);
            EXPECT_NE(double{engine.udtTrPrm().dA0}, 0) << "not fitted";
        }
    });
    EXPECT_EQ(platform.TakeTexts(), Texts{});

    engine.AddXY4Tr(RoughPairs(3), false);
    engine.eTrType(TR_STG_HER);
    Open([](frmTr& form) { EXPECT_EQ(form.SelectedType(), 0) << "a type without a button"; });
    platform.TakeTexts();
    engine.eTrType(TR_AFFIN);
    Open([&](frmTr& form) {
        form.RadioTrType(3);
        EXPECT_EQ(platform.TakeTexts(), Texts{"To few GCPs for this transformation!"});
        EXPECT_EQ(form.SelectedType(), 1);
        EXPECT_EQ(engine.eTrType(), TR_AFFIN);
        form.Grid1DblClick(2, 1);
        EXPECT_EQ(form.SelectedType(), 0) << "two pairs are left: lowered to Helmert";
    });
}

TEST_F(FrmTr, GoesBackToATypeThatCanBeFitted) {
    auto pairs = PairsBy({{10, 10}, {0, 0}, {20, 0}, {0, 20}, {20, 20}}, Shift);
    engine.AddXY4Tr(pairs, false);  // the first is the centroid
    engine.eTrType(TR_AFFIN);
    const Texts failure{"A transzformáció nem számítható !"};
    platform.texts->SwitchLanguage(kHungarian, {});  // where that text is not like another
    Open([&](frmTr& form) {
        form.RadioTrType(7);
        EXPECT_EQ(platform.TakeTexts(), failure);
        EXPECT_EQ(engine.eTrType(), TR_AFFIN);
        EXPECT_EQ(form.SelectedType(), 1);
    });
    engine.eTrType(TR_AFFIN_5);  // nothing was fitted before: a step down
    Open([&](frmTr& form) {
        EXPECT_EQ(platform.TakeTexts(), failure);
        EXPECT_EQ(form.SelectedType(), 0);
        EXPECT_EQ(form.ControlTexts().TextOf("lblKh").substr(0, 9), "Kh.=0.000");
        EXPECT_NEAR(engine.udtTrPrm().dA0, 100, 1e-9);
    });
}

TEST_F(FrmTr, FitsAgainAfterAnEdit) {
    engine.AddXY4Tr(RoughPairs(4), false);
    Open([&](frmTr& form) {
        form.Table().Grid1KeyPress("9");
        form.Table().Grid1GotFocus();
        EXPECT_NE(engine.Pairs()[0].sId, "9") << "not in table mode";
        form.opMode(Mode::kEdit);
        EXPECT_FALSE(form.EscLeaves());
        form.Table().Grid1Click(1, 4);
        form.Table().txtEditChange("5");
        form.Table().txtEditKeyDown(PairTable::EditKey::kEnter);
        EXPECT_EQ(engine.Pairs()[0].dXdest, 5);
        const double residual = engine.Pairs()[0].dXerr;
        engine.DoCalcTr();
        EXPECT_EQ(engine.Pairs()[0].dXerr, residual);
        EXPECT_GT(std::abs(residual), 1);
        form.Table().Grid1KeyPress("7");
        form.opMode(Mode::kTable);
        EXPECT_FALSE(form.Table().CellEditor().visible);
        EXPECT_TRUE(form.EscLeaves());
        EXPECT_EQ(engine.Pairs()[0].dXdest, 5);
    });
}

TEST_F(FrmTr, ExcludesFromTheTableOnly) {
    engine.AddXY4Tr(RoughPairs(8), false);
    engine.eTrType(TR_POLI_2);
    Open([&](frmTr& form) {
        form.Grid1DblClick(0, 3);
        EXPECT_EQ(Excluded(), "........") << "the headings are no pair";
        form.Grid1DblClick(8, 3);
        EXPECT_EQ(Excluded(), ".......x");
        EXPECT_EQ(std::pair(form.Table().CurrentRow(), form.Table().CurrentColumn()),
                  std::pair(0, 3));
        EXPECT_LT(engine.dRmsErr(), 0.05) << "the bad pair still counts";
        form.Grid1MouseUp(7, 5);
        EXPECT_EQ(Excluded(), "....xxxx");
        EXPECT_EQ(engine.eTrType(), TR_BILINEAR);
        EXPECT_EQ(form.SelectedType(), 9);
        form.Grid1MouseUp(5, 8);
        EXPECT_EQ(Excluded(), "........") << "upwards and downwards toggle the same rows";
        EXPECT_NEAR(engine.Pairs()[7].dYerr, -1, 0.9) << "not fitted again";
        for (const Mode mode : {Mode::kEdit, Mode::kGraph}) {
            form.opMode(mode);
            form.Grid1DblClick(1, 1);
            form.Grid1MouseUp(1, 2);
            EXPECT_EQ(Excluded(), "........");
        }
    });
}

TEST_F(FrmTr, TakesALimitThatIsANumber) {
    engine.AddXY4Tr(RoughPairs(4), false);
    Open([&](frmTr& form) {
        const std::pair<double, const char*> shown[] = {{5, "5.00"},
                                                        {0.2, "0.20"},
                                                        {0.126, "0.126"},
                                                        {1.0 / 3, "0.3333333333333333"},
                                                        {1e-20, "0.00000000000000000"}};
        for (const auto& [limit, text] : shown) {
            engine.gdErrLimit = limit;
            form.Activate();
            EXPECT_EQ(form.LimitText(), text);
            EXPECT_TRUE(form.txtLimit(text));
            EXPECT_EQ(engine.gdErrLimit, limit) << "an untouched text keeps all digits";
        }
        EXPECT_TRUE(form.txtLimit("0,035"));
        EXPECT_EQ(engine.gdErrLimit, 0.035);
        EXPECT_EQ(form.LimitText(), "0,035");
        form.Activate();
        EXPECT_EQ(form.LimitText(), "0.035");
        EXPECT_FALSE(form.txtLimit("nan"));
        EXPECT_EQ(engine.gdErrLimit, 0.035);
        ASSERT_EQ(platform.messages.size(), 1u);
        EXPECT_EQ(platform.messages[0].text, "nan");
        EXPECT_EQ(platform.messages[0].title, "Wrong value!");
        EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
    });
}

TEST_F(FrmTr, SwapsDeletesAndResumes) {
    engine.AddXY4Tr(RoughPairs(4), false);
    Open([&](frmTr& form) {
        const TR_PRM there = engine.udtTrPrm();
        form.chkInverz();
        EXPECT_TRUE(form.InverseChecked());
        EXPECT_NEAR(engine.udtTrPrm().dA0, -there.dA0, 10);
        frmTr again;
        again.bDoModal(engine, true, [&] { EXPECT_TRUE(again.InverseChecked()); });
        form.chkInverz();
        EXPECT_EQ(double{engine.udtTrPrm().dA0}, double{there.dA0});

        form.Grid1DblClick(4, 1);
        form.cmdRemoveExt();
        EXPECT_EQ(form.Table().RowCount(), 4);
        EXPECT_EQ(form.ControlTexts().TextOf("lblExtCnt"), "Excluded:0");
        form.Grid1DblClick(3, 1);
        form.cmsResetExt();
        EXPECT_EQ(Excluded(), "...");

        auto pairs = RoughPairs(2);
        pairs[0].bNotUsed = true;
        engine.AddXY4Tr(pairs, false);
        form.cmdRemoveExt();
        EXPECT_EQ(Excluded(), "x.");
        ASSERT_EQ(platform.messages.size(), 1u);
        EXPECT_EQ(platform.messages[0].text, "There must be at least 2 valid point pairs!");
        EXPECT_EQ(platform.messages[0].title, "Delete excluded GCPs");
        EXPECT_EQ(platform.messages[0].icon, Icon::kInformation);
    });
}

TEST_F(FrmTr, SavesLogAndParametersAndRemembersTheFolder) {
    engine.AddXY4Tr(RoughPairs(5), false);
    engine.eTrType(TR_POLI_1);
    platform.settings["KV_Tr/Settings/Path"] = folder.File("");
    const std::string start = InitDir();
    Open([&](frmTr& form) {
        form.cmdSaveLog();
        form.cmdSavePrm();  // both cancelled
        EXPECT_EQ(InitDir(), start);
        EXPECT_EQ(platform.requests[0].title, "Save report");
        EXPECT_EQ(platform.requests[0].defaultExtension, "txt");
        EXPECT_EQ(platform.requests[1].initialFolder, start);

        engine.setLanguageID(kHungarian);  // other than the host's
        platform.choices = {FileChoice{folder.File("log.txt")}, FileChoice{folder.File("p.all")}};
        form.cmdSaveLog();
        EXPECT_NE(ReadFile(folder.File("log.txt")).find("1. fok"), std::string::npos);
        EXPECT_EQ(InitDir() + "/", folder.File(""));
        form.cmdSavePrm();
        EXPECT_NE(ReadFile(folder.File("p.all")), "");
        EXPECT_EQ(InitDir() + "/", folder.File(""));
        EXPECT_EQ(CurrentMlLanguage(), kHungarian);
        platform.TakeTexts();
        platform.choices = {FileChoice{folder.File("p.trp")}};
        form.cmdSavePrm();
        EXPECT_EQ(platform.TakeTexts().size(), 1U);
        EXPECT_FALSE(std::filesystem::exists(folder.File("p.trp")));
    });
}

}  // namespace
}  // namespace kv_tr::test
