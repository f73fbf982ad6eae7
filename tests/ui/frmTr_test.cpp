// The rules of the adjustment dialog, as plain calls.
#include "ui/frmTr.h"

#include <gtest/gtest.h>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"

namespace kv_tr::test {
namespace {

class FrmTr : public EngineTest {
protected:
    /// Opens the dialog, plays the script in it and closes it by its frame.
    bool Open(const std::function<void(frmTr&)>& script, bool showApplyButton = false) {
        frmTr form;
        return form.bDoModal(engine, showApplyButton, [&] { script(form); });
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

}  // namespace
}  // namespace kv_tr::test
