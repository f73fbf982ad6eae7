// The window of the chooser of where parameters come from.
#pragma once

#include "kv_tr/forms/frmChoosePrm.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr {

class frmChoosePrmWindow : public FormWindow {
public:
    explicit frmChoosePrmWindow(frmChoosePrm& form);

private:
    frmChoosePrm& form_;
};

}  // namespace kv_tr
