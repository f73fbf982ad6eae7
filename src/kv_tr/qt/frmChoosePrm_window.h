// The window of the chooser of where parameters come from.
#pragma once

#include "kv_tr/forms/frmChoosePrm.h"
#include "kv_tr/qt/form_window.h"

namespace kv_tr {

class frmChoosePrmWindow : public FormWindow {
public:
    explicit frmChoosePrmWindow(frmChoosePrm& form);

protected:
    void Redraw() override { ShowCaptions(form_.ControlTexts()); }

private:
    frmChoosePrm& form_;
};

}  // namespace kv_tr
