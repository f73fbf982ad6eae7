// Every form in its Qt window.
#pragma once

#include "kv_tr/forms/dialogs.h"

namespace kv_tr {

/// Each opens a modal window of the form. Needs a QApplication while in use.
Windows QtWindows();

}  // namespace kv_tr
