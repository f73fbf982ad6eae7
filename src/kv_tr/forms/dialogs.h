// The dialogs of the component: forms, shown by whatever windows a host has.
#pragma once

#include <functional>
#include <memory>

#include "kv_tr/forms/frmAffinTrPrm.h"
#include "kv_tr/forms/frmChooseDAT2M1.h"
#include "kv_tr/forms/frmChoosePrm.h"
#include "kv_tr/forms/frmPoliTrPrm.h"
#include "kv_tr/forms/frmTr.h"
#include "kv_tr/forms/frmXY4Tr.h"
#include "kv_tr/published/platform.h"

namespace kv_tr {

/// How each form is shown: each function opens a window of the form and returns when it is closed.
struct Windows {
    std::function<void(frmTr&)> tr{};
    std::function<void(frmChoosePrm&)> chooseParameters{};
    std::function<void(frmAffinTrPrm&)> affine{};
    std::function<void(frmPoliTrPrm&)> polynomial{};
    std::function<void(frmChooseDAT2M1&)> chooseNational{};
    std::function<void(frmXY4Tr&)> controlPoints{};
};

/// Dialogs that are forms in these windows. A form without a window tells the user that it cannot
/// be opened.
std::unique_ptr<Dialogs> MakeDialogs(Windows windows);

}  // namespace kv_tr
