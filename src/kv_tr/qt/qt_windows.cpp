// Every form in its Qt window.
#include "kv_tr/qt/qt_windows.h"

#include "kv_tr/qt/frmAffinTrPrm_window.h"
#include "kv_tr/qt/frmChooseDAT2M1_window.h"
#include "kv_tr/qt/frmChoosePrm_window.h"
#include "kv_tr/qt/frmTr_window.h"
#include "kv_tr/qt/text_window.h"

namespace kv_tr {

namespace {

/// Opens the window of a form and waits until it is closed.
template <class Window>
constexpr auto kShow = [](auto& form) { Window(form).exec(); };

}  // namespace

Windows QtWindows() {
    return {.tr = kShow<frmTrWindow>,
            .chooseParameters = kShow<frmChoosePrmWindow>,
            .affine = kShow<frmAffinTrPrmWindow>,
            .polynomial = kShow<PolynomialWindow>,
            .chooseNational = kShow<frmChooseDAT2M1Window>,
            .controlPoints = kShow<ControlPointWindow>};
}

}  // namespace kv_tr
