// One action of the user's raises one Changed, and a message meanwhile finds everything drawn.
#include <gtest/gtest.h>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"
#include "kv_tr/forms/frmAffinTrPrm.h"
#include "kv_tr/forms/frmTr.h"
#include "kv_tr/published/message.h"

namespace kv_tr::test {
namespace {

class Changes : public EngineTest {
protected:
    /// Plays actions in their order; a digit for each is how often the form changed.
    static std::string Counts(Form& form, const std::vector<std::function<void()>>& actions) {
        std::string counts;
        for (const auto& action : actions) {
            int raised = 0;
            const Subscription counted = form.Changed.Subscribe([&raised] { ++raised; });
            action();
            counts += std::to_string(raised);
        }
        return counts;
    }
};

TEST_F(Changes, OfTheAdjustmentAreOneAnAction) {
    using Key = PairTable::EditKey;
    using Mode = frmTr::Mode;
    engine.AddXY4Tr(ShiftedPairs(8), false);
    engine.eTrType(TR_POLI_2);
    frmTr f;
    f.bDoModal(engine, true, [&] {
        PairTable& table = f.Table();
        EXPECT_EQ(
            Counts(f, {[&] { platform.texts->SwitchLanguage(kSerbian, {}); },
                       [&] { f.RadioTrType(3); }, [&] { f.chkInverz(); },
                       [&] { f.Grid1DblClick(3, 2); }, [&] { f.Grid1MouseUp(5, 7); },
                       [&] { f.txtLimit("0.7"); }, [&] { f.Activate(); },
                       [&] { table.Grid1EnterCell(2, 2); }, [&] { f.opMode(Mode::kEdit); },
                       [&] { table.Grid1Click(3, 3); }, [&] { table.txtEditKeyDown(Key::kDown); },
                       [&] { table.Grid1KeyPress("8"); }, [&] { table.Grid1GotFocus(); },
                       [&] { table.Grid1KeyPress("8"); }, [&] { f.opMode(Mode::kGraph); }}),
            std::string(15, '1'));
        f.Plan().PicBoxDblClick();
        EXPECT_EQ(
            Counts(f, {[&] { f.chkNr(); }, [&] { f.chkDx(); }, [&] { f.chkDy(); },
                       [&] { f.chkRad(); }, [&] { f.PicBoxMouseUp(1, 1); }, [&] { f.chkInverz(); },
                       [&] { f.cmsResetExt(); }, [&] { f.cmdRemoveExt(); }}),
            "11111111");
        EXPECT_EQ(Counts(f, {[&] { f.txtLimit("x"); }, [&] { f.Activate(); },
                             [&] { table.Grid1EnterCell(4, 3); }, [&] { f.Grid1DblClick(1, 1); },
                             [&] { f.Grid1MouseUp(1, 1); }, [&] { f.Plan().PicBoxDblClick(); }}),
                  "000000");
    });
}

TEST_F(Changes, OfTheParameterEditorAreOneAnAction) {
    clsTr transformation;
    frmAffinTrPrm affine;
    affine.bDoModal(transformation, [&] {
        platform.choices = {FileChoice{test::WriteFile(name, "1 2 3 4 5 6")}};
        EXPECT_EQ(Counts(affine, {[&] { affine.txtTrPrm(0, "5"); },
                                  [&] { affine.txtTrPrm(1, "x"); }, [&] { affine.cmdMeterOl(); },
                                  [&] { affine.cmdOlMeter(); }, [&] { affine.cmdLoad(); },
                                  [&] { affine.cmdLoad(); }, [&] { affine.cmdOk(); }}),
                  "1111100");
    });
}

TEST_F(Changes, AreDrawnBeforeAMessageAndAtTheEnd) {
    ChangeEvent changed;
    std::string log;
    const Subscription drawn = changed.Subscribe([&] { log += "draw "; });
    platform.whileShown = [&] { log += "message "; };
    {
        const ChangeEvent::Action outer(changed);
        const ChangeEvent::Action inner(changed);
        ShowMessage("nothing to draw");
        changed.Raise(), changed.Raise(), ShowMessage("m"), changed.Raise(), changed.Raise();
    }
    changed.Raise();
    EXPECT_EQ(log, "message draw message draw draw ");
}

}  // namespace
}  // namespace kv_tr::test
