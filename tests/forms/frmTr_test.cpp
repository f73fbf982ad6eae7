// The rules of the adjustment dialog, as plain calls.
#include "kv_tr/forms/frmTr.h"

#include <gtest/gtest.h>

#include <algorithm>
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
        const auto text = [&](const char* control) { return form.ControlTexts().Text(control); };
        const auto toolTip = [&](const char* control) {
            return form.ControlTexts().ToolTip(control);
        };
        for (const Caption& row : form.ControlTexts().Rows()) {
            EXPECT_FALSE(text(row.control.data()).empty() && toolTip(row.control.data()).empty())
                << row.control;
        }
        EXPECT_EQ(text("cmdExit"), "Continue");  // there is nothing to apply
        EXPECT_EQ(text("chkDx"), "Dy");
        EXPECT_EQ(text("chkDy"), "Dx");
        EXPECT_EQ(toolTip("RadioTrType(7)"), "5 unknowns: translation(YX),scaling(YX), rotation.");

        int redrawn = 0;
        const auto subscription = form.Changed.Subscribe([&] { ++redrawn; });
        platform.texts->SwitchLanguage(kHungarian, "");
        EXPECT_GT(redrawn, 0);
        EXPECT_EQ(text("frmTr"), "Transzformáció");
        EXPECT_EQ(text("cmdExit"), "Folytatás");
        EXPECT_EQ(text("lblExtCnt"), "Kizárt:0");
        EXPECT_EQ(form.CellText(0, 0), "Ssz.");
        EXPECT_EQ(toolTip("RadioTrType(8)"), "3 ismeretlen: Y,X eltolás, elforgatás. Ma=1");
    });
    EXPECT_EQ(frmTr().ControlTexts().Text("lblKh"), "Kh [m]:");  // until there is a result
}

TEST_F(FrmTr, ShowsTheFiguresOfTheEngine) {
    engine.AddXY4Tr(RoughPairs(6), false);
    engine.ExcludeByIx(1, false);
    Open([&](frmTr& form) {
        const auto figure = [](double value) { return FormatFixed(value, 3, 0); };
        EXPECT_EQ(form.ControlTexts().Text("lblKh"),
                  "RMS=" + figure(engine.dRmsErr()) + "\r\nmY=" + figure(engine.dRmsErrX()) +
                      "  mX=" + figure(engine.dRmsErrY()) + "\r\nRMS values[m]:\r\nY=" +
                      figure(engine.dMiddleErrX()) + "  X=" + figure(engine.dMiddleErrY()));
        EXPECT_EQ(form.ControlTexts().Text("lblCnt"), "Calculated:5");
        EXPECT_EQ(form.ControlTexts().Text("lblExtCnt"), "Excluded:1");

        std::string first;
        for (int column = 0; column < frmTr::kColumns; ++column) {
            first += form.CellText(0, column) + "|" + form.CellText(1, column) + "|";
        }
        const typeXYs4Tr pair = engine.Pairs()[0];
        EXPECT_EQ(first,
                  "Nr.|1| PtNr.|1|    Y1|1000.000|    X1|2000.000|    Y2|1100.000|    X2|"
                  "1950.000|    Dy|" +
                      figure(pair.dXerr) + "|    Dx|" + figure(pair.dYerr) + "|    DyDx|" +
                      figure(ResidualLength(pair)) + "|");
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
    const Texts failure{"Transformation can't be calculated!"};
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
        EXPECT_EQ(form.ControlTexts().Text("lblKh").substr(0, 9), "RMS=0.000");
        EXPECT_NEAR(engine.udtTrPrm().dA0, 100, 1e-9);
    });
}

TEST_F(FrmTr, ColoursTheTableByLimitAndUse) {
    auto pairs = ShiftedPairs(3);
    engine.AddXY4Tr(pairs, false);
    Open([&](frmTr& form) {
        pairs[0].dXerr = 3, pairs[0].dYerr = 4;  // 5: the limit itself
        pairs[1].dXerr = 3, pairs[1].dYerr = std::nextafter(4.0, 5.0) + 1e-12,
        pairs[1].bNotUsed = true;
        pairs[2].dXerr = std::nan("");
        engine.AddXY4Tr(pairs, false);
        engine.gdErrLimit = 5;
        using Colours = frmTr::CellColours;
        const auto expect = [&](int row, Colour text, std::optional<Colour> background) {
            for (int column = 0; column < frmTr::kColumns; ++column) {
                SCOPED_TRACE(column);
                const std::optional<Colours> colours = form.ColoursOf(row, column);
                ASSERT_EQ(colours.has_value(), column == 1 || column == 8);
                if (!colours) continue;
                EXPECT_EQ(colours->text, text);
                EXPECT_EQ(colours->background, background);
            }
        };
        expect(1, kBlue, std::nullopt);
        expect(2, kRed, kYellow);
        expect(3, kRed, std::nullopt);
        EXPECT_EQ(form.CellText(3, 6), "nan");
        EXPECT_FALSE(form.ColoursOf(0, 1));
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
        EXPECT_EQ(std::pair(form.CurrentRow(), form.CurrentColumn()), std::pair(0, 3));
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

TEST_F(FrmTr, TakesEditedCellsThatAreValid) {
    engine.AddXY4Tr(RoughPairs(4), false);
    Open([&](frmTr& form) {
        const auto type = [&](int row, int column, const std::string& text) {
            form.Grid1EnterCell(row, column);
            form.Grid1KeyPress(text.substr(0, 1));
            form.txtEditChange(text);
            form.txtEditKeyDown(frmTr::EditKey::kEnter);
            return form.CellText(row, column);
        };
        EXPECT_EQ(type(1, 1, "new"), "1") << "not in table mode";
        form.opMode(Mode::kEdit);
        EXPECT_EQ(type(1, 1, "new id"), "new id");
        const struct {
            int column;
            std::string text, shown;
        } cases[] = {{2, "1.5", "1.500"}, {3, " 2,25 ", "2.250"}, {4, "-3e1", "-30.000"},
                     {5, "4", "4.000"},   {2, "x", "1.500"},      {2, "", "1.500"},
                     {0, "7", "1"},       {3, "nan", "2.250"}};
        for (const auto& [column, text, shown] : cases) EXPECT_EQ(type(1, column, text), shown);
        const typeXYs4Tr pair = engine.Pairs()[0];
        EXPECT_EQ(pair.dXsour, 1.5);
        EXPECT_EQ(pair.dYsour, 2.25);
        EXPECT_EQ(pair.dXdest, -30);
        EXPECT_EQ(pair.dYdest, 4);
        const std::string residual = form.CellText(1, 8);
        EXPECT_EQ(type(1, 8, "0"), residual);
        engine.DoCalcTr();
        EXPECT_EQ(form.CellText(1, 8), residual) << "was not fitted after the last edit";
        EXPECT_EQ(platform.TakeTexts(), Texts{});

        auto precise = RoughPairs(4);
        precise[0].dXsour = 0.123456;
        engine.AddXY4Tr(precise, false);
        EXPECT_EQ(type(1, 2, "0.123"), "0.123");
        EXPECT_EQ(engine.Pairs()[0].dXsour, 0.123456) << "unchanged text changes no digit";
    });
}

TEST_F(FrmTr, OpensAndLeavesTheCellEditor) {
    engine.AddXY4Tr(RoughPairs(3), false);
    Open([&](frmTr& form) {
        const auto editor = [&] { return form.CellEditor().visible; };
        form.Grid1Click(1, 2);
        EXPECT_FALSE(editor());
        form.opMode(Mode::kEdit);
        EXPECT_FALSE(form.EscLeaves());
        form.Grid1Click(1, 6);
        EXPECT_FALSE(editor()) << "results are not edited";
        form.Grid1Click(0, 2);
        form.Grid1KeyPress("5");
        EXPECT_FALSE(editor()) << "headings are not edited";

        form.Grid1Click(2, 2);
        EXPECT_TRUE(editor());
        EXPECT_EQ(form.CellEditor().text, form.CellText(2, 2));
        form.txtEditChange("9");
        form.txtEditKeyDown(frmTr::EditKey::kEscape);
        EXPECT_FALSE(editor());
        EXPECT_NE(form.CellText(2, 2), "9.000");

        form.Grid1KeyPress("8");
        EXPECT_EQ(form.CellEditor().text, "8");
        EXPECT_EQ(form.CellEditor().caret, 1);
        form.txtEditKeyDown(frmTr::EditKey::kUp);
        EXPECT_EQ(form.CellText(2, 2), "8.000");
        EXPECT_EQ(form.CurrentRow(), 1);
        form.Grid1KeyPress("");
        EXPECT_EQ(form.CellEditor().text, form.CellText(1, 2));
        EXPECT_GE(form.CellEditor().caret, 10);
        form.txtEditKeyDown(frmTr::EditKey::kUp);
        EXPECT_EQ(form.CurrentRow(), 1) << "above is the heading";
        form.Grid1EnterCell(3, 2);
        form.Grid1KeyPress("7");
        form.txtEditKeyDown(frmTr::EditKey::kDown);
        EXPECT_EQ(form.CurrentRow(), 3) << "there is no row below";

        form.Grid1KeyPress("6");
        form.Grid1EnterCell(1, 1);
        EXPECT_FALSE(editor()) << "leaving the cell hides the editor";
        form.Grid1KeyPress("5");
        form.opMode(Mode::kTable);
        EXPECT_FALSE(editor());
        EXPECT_TRUE(form.EscLeaves());
        EXPECT_EQ(form.CellText(3, 2), "7.000");
        EXPECT_EQ(form.CellText(1, 1), "1");
    });
}

TEST_F(FrmTr, TakesALimitThatIsANumber) {
    engine.AddXY4Tr(RoughPairs(4), false);
    engine.gdErrLimit = 0.126;
    Open([&](frmTr& form) {
        EXPECT_EQ(form.LimitText(), "0.126");
        EXPECT_TRUE(form.txtLimit("0.126"));
        EXPECT_TRUE(form.txtLimit("0,035"));
        EXPECT_EQ(engine.gdErrLimit, 0.035);
        EXPECT_EQ(form.LimitText(), "0,035");
        form.Activate();
        EXPECT_EQ(form.LimitText(), "0.035");
        const std::pair<double, const char*> shown[] = {
            {5, "5.00"}, {0.2, "0.20"}, {0.004, "0.004"}, {1.0 / 3, "0.3333333333333333"}};
        for (const auto& [limit, text] : shown) {
            engine.gdErrLimit = limit;
            form.Activate();
            EXPECT_EQ(form.LimitText(), text);
        }
        engine.gdErrLimit = 1e-20;
        form.Activate();
        EXPECT_TRUE(form.txtLimit(form.LimitText()));
        EXPECT_EQ(engine.gdErrLimit, 1e-20) << "an untouched text keeps all digits";
        engine.gdErrLimit = 0.035;
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
        EXPECT_EQ(form.RowCount(), 4);
        EXPECT_EQ(form.ControlTexts().Text("lblExtCnt"), "Excluded:0");
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

TEST_F(FrmTr, CopiesTheTableWithAllDigits) {
    auto pairs = RoughPairs(3);
    pairs[1].dXsour = 1234567.0123456789;
    engine.AddXY4Tr(pairs, false);
    Open([](frmTr& form) {
        const std::string text = form.TableText(std::vector{2});
        EXPECT_EQ(text.substr(0, 57),
                  "Nr.\tPtNr.\tY1\tX1\tY2\tX2\tDy\tDx\tDyDx\n2\t2\t1234567.0123456789\t2");
        EXPECT_EQ(std::ranges::count(text, '\t'), 16);
    });
}

}  // namespace
}  // namespace kv_tr::test
