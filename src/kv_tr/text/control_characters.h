// Foreign text that must not command a terminal or forge a line.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// The UTF-8 text with "_" for each control character (U+0000 to U+001F, U+007F to U+009F) but
/// those that are kept.
std::string WithoutControls(std::string_view text, std::string_view kept = {});

}  // namespace kv_tr
