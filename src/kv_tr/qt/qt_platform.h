// The surroundings of the component in a Qt program.
#pragma once

#include <cstdint>

#include "kv_tr/published/platform.h"

namespace kv_tr {

/// Messages, file choosers and dialogs are Qt windows above the active one, settings the file of
/// the user's that all programs of the component share; reports can be PDF where libharu is there.
/// Needs a QApplication while in use.
///
/// A request to open a file that may be missing is answered by a chooser for saving, which asks
/// before a file is replaced. A request without a folder opens in the remembered one.
Platform QtPlatform(std::int32_t hostLanguage);

}  // namespace kv_tr
