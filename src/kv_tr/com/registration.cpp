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
    void Delete(const std::wstring& key) const {
        const LSTATUS status = RegDeleteTreeW(key_, key.c_str());
        if (status != ERROR_FILE_NOT_FOUND) CheckStatus(status);
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

/// While it lives, what is written below HKEY_CLASSES_ROOT goes to the classes of that root: the
/// functions that register type libraries know that place only, which by itself is the machine's.
class Redirection {
public:
    Redirection(HKEY root, const ClassesKey& classes) {
        if (root == HKEY_LOCAL_MACHINE) return;
        CheckStatus(RegOverridePredefKey(HKEY_CLASSES_ROOT, classes.Get()));
    }
    ~Redirection() { RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr); }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;
};

}  // namespace

std::span<const CreatableClass> CreatableClasses() { return kClasses; }

HRESULT Register(HKEY root) {
    return Guarded(IID_IUnknown, [&] {
        const ClassesKey classes(root);
        WriteKeys(classes);
        ITypeLib& library = TypeLibrary();
        std::wstring path = ModulePath();
        const Redirection redirection(root, classes);
        Check(RegisterTypeLib(&library, path.data(), nullptr));
    });
}

HRESULT Unregister(HKEY root) {
    return Guarded(IID_IUnknown, [&] {
        const ClassesKey classes(root);
        {
            const Redirection redirection(root, classes);
            const SYSKIND kind = sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32;
            UnRegisterTypeLib(LIBID_KV_Tr, 1, 0, LOCALE_NEUTRAL, kind);  // may not be there
        }
        DeleteKeys(classes);
    });
}

}  // namespace kv_tr::com
