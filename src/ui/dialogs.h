// The dialogs of the component: forms, shown by whatever windows a host has.
#pragma once

#include <functional>
#include <memory>

#include "support/platform.h"
#include "ui/frmTr.h"

namespace kv_tr {

/// How each form is shown: each function opens a window of the form and returns when it is closed.
struct Windows {
    std::function<void(frmTr&)> tr;
};

/// Dialogs that are forms in these windows. A form without a window tells the user that it cannot
/// be opened.
std::unique_ptr<Dialogs> MakeDialogs(Windows windows);

}  // namespace kv_tr
