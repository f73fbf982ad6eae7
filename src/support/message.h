// The way to talk to the user.
#pragma once

#include <string>

#include "support/platform.h"

namespace kv_tr {

/// Shows a message with an OK button and waits for it. Without a title the host's own is shown.
void ShowMessage(const std::string& text, Icon icon = Icon::kNone, const std::string& title = {});

}  // namespace kv_tr
