// One action of the user's raises one Changed, and a message meanwhile finds everything drawn.
#include <gtest/gtest.h>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/frmAffinTrPrm.h"
#include "kv_tr/forms/frmChooseDAT2M1.h"
#include "kv_tr/forms/frmPoliTrPrm.h"
#include "kv_tr/forms/frmTr.h"
#include "kv_tr/forms/frmXY4Tr.h"
#include "kv_tr/published/message.h"

namespace kv_tr::test {
namespace {

template <class Form>
struct UserAction {
    const char* name;
    std::function<void(Form&)> action;
    int changes = 1;
};

class Changes : public EngineTest {
protected:
    /// Plays actions in their order on one form and counts.
    template <class Form>
    static void Count(Form& form, const std::vector<UserAction<Form>>& actions) {
        for (const auto& [name, action, changes] : actions) {
            int raised = 0;
            const Subscription counted = form.Changed.Subscribe([&] { ++raised; });
            action(form);
            EXPECT_EQ(raised, changes) << name;
        }
    }
    std::string Choose(const std::string& file, const std::string& text) {
        WriteFile(folder.File(file), text);
        platform.choices = {FileChoice{folder.File(file)}};
        return folder.File(file);
    }
};

TEST_F(Changes, OfTheAdjustmentAreOneAnAction) {
    using Key = PairTable::EditKey;
    using Mode = frmTr::Mode;
    engine.AddXY4Tr(ShiftedPairs(8), false);
    engine.eTrType(TR_POLI_2);
    frmTr form;
    form.bDoModal(engine, true, [&] {
        Count<frmTr>(form,
                     {{"none", [](frmTr&) {}, 0},
                      {"language", [&](frmTr&) { platform.texts->SwitchLanguage(kSerbian, {}); }},
                      {"type", [](frmTr& f) { f.RadioTrType(3); }},
                      {"inverse", [](frmTr& f) { f.chkInverz(); }},
                      {"exclude", [](frmTr& f) { f.Grid1DblClick(3, 2); }},
                      {"exclude, type lowered", [](frmTr& f) { f.Grid1MouseUp(5, 7); }},
                      {"limit", [](frmTr& f) { f.txtLimit("0.7"); }},
                      {"same limit", [](frmTr& f) { f.txtLimit("0.7"); }, 0},
                      {"bad limit", [](frmTr& f) { f.txtLimit("x"); }, 0},
                      {"activate", [](frmTr& f) { f.Activate(); }},  // 0.70
                      {"activate again", [](frmTr& f) { f.Activate(); }, 0},
                      {"move", [](frmTr& f) { f.Table().Grid1EnterCell(2, 2); }},
                      {"same cell", [](frmTr& f) { f.Table().Grid1EnterCell(2, 2); }, 0},
                      {"edit mode", [](frmTr& f) { f.opMode(Mode::kEdit); }},
                      {"exclude in edit mode", [](frmTr& f) { f.Grid1DblClick(1, 1); }, 0},
                      {"toggle in edit mode", [](frmTr& f) { f.Grid1MouseUp(1, 1); }, 0},
                      {"open", [](frmTr& f) { f.Table().Grid1Click(3, 3); }},
                      {"take", [](frmTr& f) { f.Table().txtEditKeyDown(Key::kDown); }},
                      {"open again", [](frmTr& f) { f.Table().Grid1KeyPress("8"); }},
                      {"focus", [](frmTr& f) { f.Table().Grid1GotFocus(); }},
                      {"open for leaving", [](frmTr& f) { f.Table().Grid1KeyPress("8"); }},
                      {"graph mode", [](frmTr& f) { f.opMode(Mode::kGraph); }},
                      {"chkNr", [](frmTr& f) { f.chkNr(); }},
                      {"chkDx", [](frmTr& f) { f.chkDx(); }},
                      {"chkDy", [](frmTr& f) { f.chkDy(); }},
                      {"chkRad", [](frmTr& f) { f.chkRad(); }},
                      {"double click", [](frmTr& f) { f.Plan().PicBoxDblClick(); }, 0},
                      {"pick", [](frmTr& f) { f.PicBoxMouseUp(1, 1); }},
                      {"inverse graph", [](frmTr& f) { f.chkInverz(); }},
                      {"resume", [](frmTr& f) { f.cmsResetExt(); }},
                      {"remove", [](frmTr& f) { f.cmdRemoveExt(); }},
                      {"exit", [](frmTr& f) { f.cmdExit(); }, 0}});
    });
}

TEST_F(Changes, OfTheOtherFormsAreOneAnAction) {
    platform.texts->SwitchLanguage(kHungarian, {});
    clsTr transformation;
    frmAffinTrPrm affine;
    affine.bDoModal(transformation, [&] {
        Count<frmAffinTrPrm>(affine, {{"number", [](auto& f) { f.txtTrPrm(0, "5"); }},
                                      {"no number", [](auto& f) { f.txtTrPrm(1, "x"); }},
                                      {"fathoms", [](auto& f) { f.cmdMeterOl(); }},
                                      {"metres", [](auto& f) { f.cmdOlMeter(); }},
                                      {"cancelled", [](auto& f) { f.cmdLoad(); }, 0},
                                      {"load",
                                       [&](auto& f) {
                                           Choose("a.trp", "1 2 3 4 5 6");
                                           f.cmdLoad();
                                       }},
                                      {"save", [](auto& f) { f.cmdSave(); }, 0},
                                      {"ok", [](auto& f) { f.cmdOk(); }, 0}});
    });
    frmPoliTrPrm polynomial;
    polynomial.bDoModal(transformation, [&] {
        Count<frmPoliTrPrm>(polynomial, {{"type", [](auto& f) { f.rtBox("t"); }, 0},
                                         {"national", [](auto& f) { f.cmdDAT2M1(); }, 0},
                                         {"load",
                                          [&](auto& f) {
                                              Choose("a.all",
                                                     "t\n\n sy = 7 sx = 8\n1 1 2\n2 3 4\n3 5 6\n");
                                              f.cmdLoad();
                                          }},
                                         {"national", [&](auto& f) {
                                              platform.nationalChoice = TR_STG_HER;
                                              f.cmdDAT2M1();
                                          }}});
    });
    frmXY4Tr points;
    points.bDoModal(engine, {}, [&] {
        Count<frmXY4Tr>(points, {{"cancelled", [](auto& f) { f.cmdLoad(); }, 0},
                                 {"load",
                                  [&](auto& f) {
                                      Choose("a.dat", "A 0 0 1 1\nB 1 0 2 1\n");
                                      f.cmdLoad();
                                  }},
                                 {"ok", [](auto& f) { f.cmdOk(); }, 0}});
    });
    frmChooseDAT2M1 national;
    enuTR_TYPE type = TR_STG_HER;
    national.bDoModal(type, [&] {
        Count<frmChooseDAT2M1>(national, {{"row", [](auto& f) { f.lstTr(3); }},
                                          {"same row", [](auto& f) { f.lstTr(3); }, 0},
                                          {"ok", [](auto& f) { f.cmdOk(); }, 0}});
    });
}

TEST_F(Changes, AreDrawnBeforeAMessageAndAtTheEnd) {
    ChangeEvent changed;
    std::string log;
    const Subscription drawn = changed.Subscribe([&] { log += "draw "; });
    platform.whileShown = [&] { log += "message "; };
    const auto act = [&](const std::function<void()>& action) {
        log.clear();
        try {
            const ChangeEvent::Action outer(changed);
            const ChangeEvent::Action inner(changed);
            action();
        } catch (const RuntimeError&) {
            log += "error";
        }
        return log;
    };
    const auto raise = [&] { changed.Raise(); };
    const auto tell = [] { ShowMessage("m"); };
    EXPECT_EQ(act([&] { raise(), raise(); }), "draw ");
    EXPECT_EQ(act(tell), "message ");
    EXPECT_EQ(act([&] { raise(), tell(); }), "draw message draw ");
    EXPECT_EQ(act([&] { tell(), raise(); }), "message draw ");
    EXPECT_EQ(act([&] {
                  raise();
                  throw RuntimeError(ErrorNumber::kSubscript, "e");
              }),
              "draw error");
    raise();
    EXPECT_EQ(log, "draw errordraw ") << "outside an action at once";

    engine.AddXY4Tr(ShiftedPairs(3), false);
    frmTr form;
    form.bDoModal(engine, true, [&] {
        int shown = 0;
        std::vector<int> seen;
        const Subscription window = form.Changed.Subscribe([&] { shown = form.SelectedType(); });
        platform.whileShown = [&] { seen.push_back(shown); };
        form.RadioTrType(1);
        form.Grid1MouseUp(1, 3);  // two stay, and the affine type has been lowered
        EXPECT_EQ(seen, (std::vector{0, 0}));
    });
}

}  // namespace
}  // namespace kv_tr::test
