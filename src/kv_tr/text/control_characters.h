// Foreign text that must not command a terminal or forge a line.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// The text as valid UTF-8, with "_" for each control character (U+0000 to U+001F, U+007F to
/// U+009F) but those that are kept, and U+FFFD for what is no UTF-8.
std::string WithoutControls(std::string_view foreign, std::string_view kept = {});

}  // namespace kv_tr
