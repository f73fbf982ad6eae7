// Texts on their way between COM and the component, which knows UTF-8 only.
#pragma once

#include <string>

#include "kv_tr/text/wide_text.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr::com {

/// A text as UTF-8; halves of letters become U+FFFD.
std::string Utf8(BSTR text);

/// A text for a caller, who frees it.
BSTR MakeBstr(const std::string& utf8);

/// Replaces a caller's text.
void SetText(BSTR* to, const std::string& utf8);

}  // namespace kv_tr::com
