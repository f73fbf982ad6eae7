// What makes the classes known to hosts.
#include "kv_tr/com/registration.h"

#include "kv_tr/com/classes.h"

namespace kv_tr::com {
namespace {

constexpr CreatableClass kClasses[] = {
    {CLSID_clsTr, L"KV_Tr.clsTr", NewTr},
    {CLSID_clsTrCalc, L"KV_Tr.clsTrCalc", NewTrCalc},
    {CLSID_clsFile, L"KV_Tr.clsFile", NewFile},
    {CLSID_GCommonDialog, L"KV_Tr.GCommonDialog", NewCommonDialog},
    {CLSID_clsComponent, L"KV_Tr.clsComponent", NewComponent},
    {CLSID_clsDebug, L"KV_Tr.clsDebug", NewDebug},
    {CLSID_clsRec, L"KV_Tr.clsRec", NewRec},
};

void CheckStatus(LSTATUS status) { Check(HRESULT_FROM_WIN32(static_cast<DWORD>(status))); }

/// The key Software\Classes of a root.
class ClassesKey {
public:
    explicit ClassesKey(HKEY root) {
        CheckStatus(RegCreateKeyExW(root, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS,
                                    nullptr, &key_, nullptr));
    }
    ~ClassesKey() { RegCloseKey(key_); }
    ClassesKey(const ClassesKey&) = delete;
    ClassesKey& operator=(const ClassesKey&) = delete;
    HKEY Get() const { return key_; }

    void Set(const std::wstring& key, const wchar_t* name, const std::wstring& value) const {
        const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
        CheckStatus(RegSetKeyValueW(key_, key.c_str(), name, REG_SZ, value.c_str(), bytes));
    }
    bool Has(const std::wstring& key) const {
        HKEY opened = nullptr;
        if (RegOpenKeyExW(key_, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return false;
        RegCloseKey(opened);
        return true;
    }
    void Delete(const std::wstring& key) const {
        const LSTATUS status = RegDeleteTreeW(key_, key.c_str());
        if (status != ERROR_FILE_NOT_FOUND) CheckStatus(status);
    }

    void DeleteIfEmpty(const wchar_t* key) const {
        DWORD keys = 0, values = 0;
        HKEY opened = nullptr;
        if (RegOpenKeyExW(key_, key, 0, KEY_READ, &opened) != ERROR_SUCCESS) return;
        const LSTATUS status =
            RegQueryInfoKeyW(opened, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                             nullptr, nullptr, nullptr, nullptr);
        RegCloseKey(opened);
        if (status == ERROR_SUCCESS && keys == 0 && values == 0) Delete(key);
    }

private:
    HKEY key_ = nullptr;
};

std::wstring TextOf(REFGUID id) {
    wchar_t text[40];
    StringFromGUID2(id, text, 40);
    return text;
}

void WriteKeys(const ClassesKey& classes) {
    for (const CreatableClass& made : kClasses) {
        const std::wstring name = made.name;
        const std::wstring first = name + L".1";
        const std::wstring key = L"CLSID\\" + TextOf(made.id);
        classes.Set(key, nullptr, name);
        classes.Set(key + L"\\InprocServer32", nullptr, ModulePath());
        classes.Set(key + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
        classes.Set(key + L"\\ProgID", nullptr, first);
        classes.Set(key + L"\\VersionIndependentProgID", nullptr, name);
        classes.Set(key + L"\\TypeLib", nullptr, TextOf(LIBID_KV_Tr));
        classes.Set(key + L"\\Version", nullptr, L"1.0");
        classes.Set(key + L"\\Programmable", nullptr, L"");
        for (const std::wstring& known : {name, first}) {
            classes.Set(known, nullptr, name);
            classes.Set(known + L"\\CLSID", nullptr, TextOf(made.id));
        }
        classes.Set(name + L"\\CurVer", nullptr, first);
    }
}

void DeleteKeys(const ClassesKey& classes) {
    for (const CreatableClass& made : kClasses) {
        classes.Delete(L"CLSID\\" + TextOf(made.id));
        classes.Delete(made.name);
        classes.Delete(made.name + std::wstring(L".1"));
    }
}

/// The keys of the type library: of all versions, of ours, and of a DLL of ours for either size of
/// programs. The 0 is the language: any.
std::wstring LibraryKey() { return L"TypeLib\\" + TextOf(LIBID_KV_Tr); }
std::wstring VersionKey() { return LibraryKey() + L"\\1.0"; }
std::wstring DllKey(bool for64Bits) {
    return VersionKey() + (for64Bits ? L"\\0\\win64" : L"\\0\\win32");
}
constexpr bool k64Bits = sizeof(void*) == 8;

/// Calls use(key, name, dual) for each interface of the type library.
void ForInterfaces(auto use) {
    ITypeLib& library = TypeLibrary();
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        Check(library.GetTypeInfo(i, &info));
        const TypeAttributes attributes(*info.Get());
        if (attributes->typekind != TKIND_DISPATCH) continue;
        BSTR text = nullptr;
        Check(info->GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr));
        const std::wstring name(text, SysStringLen(text));
        SysFreeString(text);
        use(L"Interface\\" + TextOf(attributes->guid), name,
            (attributes->wTypeFlags & TYPEFLAG_FDUAL) != 0);
    }
}

/// The system's own functions for this also write elsewhere than below the key.
void WriteLibrary(const ClassesKey& classes) {
    classes.Set(VersionKey(), nullptr, L"KV_Tr: plane coordinate transformations");
    classes.Set(VersionKey() + L"\\FLAGS", nullptr, L"0");
    classes.Set(DllKey(k64Bits), nullptr, ModulePath());
    ForInterfaces([&](const std::wstring& key, const std::wstring& name, bool dual) {
        // What carries calls between apartments: oleaut32, which reads the type library for that.
        constexpr auto* kDual = L"{00020424-0000-0000-C000-000000000046}";
        constexpr auto* kDispatch = L"{00020420-0000-0000-C000-000000000046}";
        classes.Set(key, nullptr, name);
        classes.Set(key + L"\\ProxyStubClsid32", nullptr, dual ? kDual : kDispatch);
        classes.Set(key + L"\\TypeLib", nullptr, TextOf(LIBID_KV_Tr));
        classes.Set(key + L"\\TypeLib", L"Version", L"1.0");
    });
}

/// The DLL for programs of the other size keeps its part of the library.
void DeleteLibrary(const ClassesKey& classes) {
    classes.Delete(DllKey(k64Bits));
    if (!classes.Has(DllKey(!k64Bits))) classes.Delete(LibraryKey());
    ForInterfaces([&](const std::wstring& key, const auto&, bool) { classes.Delete(key); });
}

}  // namespace

std::span<const CreatableClass> CreatableClasses() { return kClasses; }

HRESULT Register(HKEY root) {
    return Guarded(IID_IUnknown, [&] {
        const ClassesKey classes(root);
        WriteKeys(classes);
        WriteLibrary(classes);
    });
}

HRESULT Unregister(HKEY root) {
    return Guarded(IID_IUnknown, [&] {
        const ClassesKey classes(root);
        DeleteLibrary(classes);
        DeleteKeys(classes);
        // A user whose first classes were ours had none of these before.
        for (const wchar_t* key : {L"CLSID", L"Interface", L"TypeLib"}) classes.DeleteIfEmpty(key);
    });
}

}  // namespace kv_tr::com
