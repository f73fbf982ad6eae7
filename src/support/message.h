// The way to talk to the user.
#pragma once

#include <string>

#include "support/platform.h"

namespace kv_tr {

/// Shows a message with an OK button and waits for it. Without a title the host's own is shown.
void ShowMessage(const std::string& text, Icon icon = Icon::kNone, const std::string& title = {});

/// Asks a question with the buttons of the message and waits for the answer.
Answer Ask(const Message& question);

}  // namespace kv_tr
