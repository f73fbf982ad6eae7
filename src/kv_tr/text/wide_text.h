// Text for the functions of Windows, which take UTF-16. For files of Windows only.
#pragma once

#include <string>
#include <string_view>

namespace kv_tr {

/// UTF-16 of UTF-8; what is no UTF-8 becomes U+FFFD.
std::wstring Wide(std::string_view utf8);

/// UTF-8 of UTF-16; halves of pairs that stand alone become U+FFFD.
std::string Utf8(std::wstring_view wide);

}  // namespace kv_tr
