// The dialogs of the component as Qt windows in a host that knows nothing of Qt.
#pragma once

#include "kv_tr/published/platform.h"

namespace kv_tr::com {

/// Makes the platform's dialogs Qt windows, and what makes its reports PDF that of Qt programs.
void UseQtDialogs(Platform& platform);

/// Whether a Qt window was opened: the DLL then stays loaded.
bool QtIsInUse();

}  // namespace kv_tr::com
