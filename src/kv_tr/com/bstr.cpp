// Texts on their way between COM and the component.
#include "kv_tr/com/bstr.h"

#include <new>

namespace kv_tr::com {

std::string Utf8(const wchar_t* text, std::size_t length) {
    const int wide = static_cast<int>(length);
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, wide, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, wide, utf8.data(), size, nullptr, nullptr);
    return utf8;
}

std::string Utf8(BSTR text) { return Utf8(text, SysStringLen(text)); }

std::wstring Wide(const std::string& utf8) {
    const int length = static_cast<int>(utf8.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(), size);
    return wide;
}

BSTR MakeBstr(const std::string& utf8) {
    const std::wstring wide = Wide(utf8);
    BSTR text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (!text) throw std::bad_alloc();
    return text;
}

void SetText(BSTR* to, const std::string& utf8) {
    BSTR text = MakeBstr(utf8);
    SysFreeString(*to);
    *to = text;
}

}  // namespace kv_tr::com
