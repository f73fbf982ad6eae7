// The DLL: what Windows and regsvr32 call.
#include <new>

#include "kv_tr/com/classes.h"
#include "kv_tr/com/registration.h"
#include "kv_tr/com/windows_platform.h"
#include "kv_tr/published/component.h"
#ifdef KV_TR_QT
#include "kv_tr/com/qt_dialogs.h"
#endif

namespace kv_tr::com {
namespace {

/// The first object finds the component with its surroundings.
void InstallOnce() {
    static const bool installed = (InstallPlatform(WindowsPlatform()), true);
    static_cast<void>(installed);
}

class Factory final : public IClassFactory {
public:
    explicit Factory(const CreatableClass& made) : class_(made) { ++livingObjects; }
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;

    STDMETHODIMP QueryInterface(REFIID id, void** out) override {
        *out = id == IID_IUnknown || id == IID_IClassFactory ? this : nullptr;
        if (!*out) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** out) override {
        *out = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return Guarded(IID_IClassFactory, [&] {
            InstallOnce();
            ComPtr<IDispatch> object;
            TakeOver(object, class_.create());
            Check(object->QueryInterface(id, out));
        });
    }
    STDMETHODIMP LockServer(BOOL lock) override {
        livingObjects += lock ? 1 : -1;
        return S_OK;
    }

private:
    virtual ~Factory() { --livingObjects; }

    const CreatableClass& class_;
    std::atomic<ULONG> references_ = 1;
};

HRESULT ClassObject(REFCLSID classId, REFIID id, void** out) {
    *out = nullptr;
    for (const CreatableClass& made : CreatableClasses()) {
        if (made.id != classId) continue;
        auto* factory = new (std::nothrow) Factory(made);
        if (!factory) return E_OUTOFMEMORY;
        const HRESULT code = factory->QueryInterface(id, out);
        factory->Release();
        return code;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

bool MayBeUnloaded() {
#ifdef KV_TR_QT
    if (QtIsInUse()) return false;  // its threads and windows would run on
#endif
    return livingObjects == 0;
}

}  // namespace
}  // namespace kv_tr::com

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** out) {
    return kv_tr::com::ClassObject(classId, id, out);
}

STDAPI DllCanUnloadNow() { return kv_tr::com::MayBeUnloaded() ? S_OK : S_FALSE; }

/// regsvr32 kv_tr_com.dll registers for the current user.
STDAPI DllRegisterServer() { return kv_tr::com::Register(HKEY_CURRENT_USER); }

STDAPI DllUnregisterServer() { return kv_tr::com::Unregister(HKEY_CURRENT_USER); }

/// regsvr32 /n /i:machine kv_tr_com.dll registers for all users.
STDAPI DllInstall(BOOL install, LPCWSTR where) {
    const bool machine = where && lstrcmpiW(where, L"machine") == 0;
    if (!machine && where && *where && lstrcmpiW(where, L"user") != 0) return E_INVALIDARG;
    const HKEY root = machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    return install ? kv_tr::com::Register(root) : kv_tr::com::Unregister(root);
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        kv_tr::com::theModule = module;
        DisableThreadLibraryCalls(module);
    }
    return TRUE;
}
