// Texts into files, safely.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr::workbench {

/// Puts a text into a file, which takes the place of an older one only when it is complete; what
/// went wrong in words of the current language, or nothing.
std::string SaveText(std::string_view text, const std::string& fileName);
/// The same with the letters of the component's listings and logs.
std::string SaveInCodePage(std::string_view utf8, const std::string& fileName);

}  // namespace kv_tr::workbench
