// Every form in its Qt window.
#include "ui/qt/qt_windows.h"

#include "ui/qt/frmTr_window.h"

namespace kv_tr {

Windows QtWindows() {
    return {.tr = [](frmTr& form) { frmTrWindow(form).exec(); }};
}

}  // namespace kv_tr
