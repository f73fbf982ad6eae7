// Texts on their way between COM and the component, which knows UTF-8 only.
#pragma once

#include <windows.h>
#undef MessageBox  // the name of a port

#include <oleauto.h>

#include <string>

namespace kv_tr::com {

/// A text as UTF-8; halves of letters become U+FFFD.
std::string Utf8(const wchar_t* text, std::size_t length);
std::string Utf8(BSTR text);

std::wstring Wide(const std::string& utf8);

/// A text for a caller, who frees it.
BSTR MakeBstr(const std::string& utf8);

/// Replaces a caller's text.
void SetText(BSTR* to, const std::string& utf8);

}  // namespace kv_tr::com
