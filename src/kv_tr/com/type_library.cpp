// What the component says about itself.
#include "kv_tr/com/type_library.h"

namespace kv_tr::com {

std::wstring ModulePath() {
    std::wstring path(32768, L'\0');  // longer ones there are not
    path.resize(GetModuleFileNameW(theModule, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

ITypeLib& TypeLibrary() {
    // Kept as long as the DLL is loaded.
    static ITypeLib* const library = [] {
        ITypeLib* loaded = nullptr;
        Check(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &loaded));
        return loaded;
    }();
    return *library;
}

ComPtr<ITypeInfo> TypeInfo(REFGUID id) {
    ComPtr<ITypeInfo> info;
    Check(TypeLibrary().GetTypeInfoOfGuid(id, &info));
    return info;
}

ComPtr<ITypeInfo> VtableInfo(REFGUID interfaceId) {
    const ComPtr<ITypeInfo> info = TypeInfo(interfaceId);
    if (TypeAttributes(*info.Get())->typekind != TKIND_DISPATCH) return info;
    constexpr UINT kOtherHalf = static_cast<UINT>(-1);
    HREFTYPE reference = 0;
    ComPtr<ITypeInfo> vtable;
    Check(info->GetRefTypeOfImplType(kOtherHalf, &reference));
    Check(info->GetRefTypeInfo(reference, &vtable));
    return vtable;
}

ComPtr<IRecordInfo> RecordInfo(REFGUID record) {
    ComPtr<IRecordInfo> info;
    Check(GetRecordInfoFromTypeInfo(TypeInfo(record).Get(), &info));
    return info;
}

}  // namespace kv_tr::com
