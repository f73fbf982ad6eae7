// Ports for programs without windows.
#pragma once

#include <cstdint>

#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/platform.h"

namespace kv_tr {

/// Messages go to the standard error stream and are answered with their default button, file
/// choosers cancel, settings live in a file of the user's, texts are the embedded ones, and
/// dialogs say that there are no windows.
Platform ConsolePlatform(std::int32_t hostLanguage = kHungarian);

}  // namespace kv_tr
