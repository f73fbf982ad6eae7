// The way to talk to the user.
#pragma once

#include <functional>
#include <string>

#include "kv_tr/model/type.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/event.h"
#include "kv_tr/published/platform.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr {

/// Shows a message with an OK button and waits for it. Without a title the host's own is shown.
void ShowMessage(const std::string& text, Icon icon = Icon::kNone, const std::string& title = {});

/// Calls a handler before each message and question that this thread shows: what is drawn behind
/// it may have to be brought up to date.
[[nodiscard]] Subscription BeforeMessages(std::function<void()> handler);

/// Tells the user that a file does not open (text 70).
void ReportOpenFailure(const std::string& fileName);

/// Tells the user that the iteration of a fit of that type has not converged (text 77, or 76).
void ReportNotConverged(Type type);

/// The error of a file that could not be written completely.
RuntimeError WriteFailure(const std::string& fileName);

/// The error of a file that cannot be read on, in the user's language.
RuntimeError ReadFailure(const TextError& error);

/// Asks a question with the buttons of the message and waits for the answer.
Answer Ask(const Message& question);

/// Asks whether a file that exists may be replaced (text 1191).
bool MayReplace(const std::string& fileName);

}  // namespace kv_tr
