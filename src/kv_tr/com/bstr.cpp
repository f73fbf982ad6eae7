// Texts on their way between COM and the component.
#include "kv_tr/com/bstr.h"

#include <new>

namespace kv_tr::com {

std::string Utf8(BSTR text) { return kv_tr::Utf8({text, SysStringLen(text)}); }

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
