// Text files by their names.
#pragma once

#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "kv_tr/text/code_page.h"

namespace kv_tr {

/// Opens a text for reading; nothing for a folder and for what cannot be opened or read.
std::optional<std::ifstream> OpenText(const std::string& fileName);

/// Writes a file that holds just this text, with single bytes of a code page; it takes the place of
/// an older one only when it is complete.
enum class Written { kYes, kNotOpened, kFailed };
Written WriteText(const std::string& fileName, std::string_view utf8, CodePage page);

}  // namespace kv_tr
