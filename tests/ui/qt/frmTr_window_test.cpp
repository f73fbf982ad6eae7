// The wiring of the adjustment dialog's window.
#include "ui/qt/frmTr_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

#include "helpers/engine_test.h"
#include "helpers/sample_points.h"

namespace kv_tr::test {
namespace {

using FrmTrWindow = EngineTest;

TEST_F(FrmTrWindow, ForwardsTheTypeButtons) {
    engine.AddXY4Tr(ShiftedPairs(5), false);
    frmTr form;
    form.bDoModal(engine, true, [&] {
        frmTrWindow window(form);
        window.show();
        window.findChild<QAbstractButton*>("RadioTrType(1)")->click();
        EXPECT_EQ(engine.eTrType(), TR_AFFIN);
    });
}

}  // namespace
}  // namespace kv_tr::test
