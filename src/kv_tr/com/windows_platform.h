// The surroundings of the component in a host of Windows.
#pragma once

#include "kv_tr/published/platform.h"

namespace kv_tr::com {

/// Messages and file choosers are those of Windows. What cannot be shown, in a service or without a
/// screen, goes to the standard error stream, and a chooser cancels. Dialogs are Qt windows where
/// the DLL has them, otherwise a message says that there are none. The language is Hungarian until
/// a host chooses another one.
Platform WindowsPlatform();

}  // namespace kv_tr::com
