// What the objects of all classes have in common.
#pragma once

#include <ocidl.h>
#include <olectl.h>

#include <atomic>
#include <bit>
#include <cstdint>
#include <string>

#include "kv_tr/com/late_binding.h"
#include "kv_tr/published/records.h"
#include "kv_tr_com.h"  // made from kv_tr.idl

namespace kv_tr::com {

/// How many objects keep the DLL loaded.
inline std::atomic<long> livingObjects = 0;

// Results as hosts take them.
inline double ToCom(double value) { return value; }
inline LONG ToCom(std::int32_t value) { return value; }
inline short ToCom(std::int16_t value) { return value; }
inline VARIANT_BOOL ToCom(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
inline BSTR ToCom(const std::string& value) { return MakeBstr(value); }
inline ::enuTR_TYPE ToCom(kv_tr::enuTR_TYPE value) { return static_cast<::enuTR_TYPE>(value); }
inline ::TR_PRM ToCom(const kv_tr::TR_PRM& value) { return std::bit_cast<::TR_PRM>(value); }
inline ::AFFIN_PRM ToCom(const kv_tr::AFFIN_PRM& value) {
    return std::bit_cast<::AFFIN_PRM>(value);
}

// And what hosts give.
inline bool FromCom(VARIANT_BOOL value) { return value != VARIANT_FALSE; }
inline kv_tr::enuTR_TYPE FromCom(::enuTR_TYPE value) {
    return static_cast<kv_tr::enuTR_TYPE>(value);
}
inline kv_tr::TR_PRM FromCom(const ::TR_PRM& value) { return std::bit_cast<kv_tr::TR_PRM>(value); }
inline kv_tr::AFFIN_PRM FromCom(const ::AFFIN_PRM& value) {
    return std::bit_cast<kv_tr::AFFIN_PRM>(value);
}

/// An object with one dual interface: counting, calls by name, errors, and what class it is. It is
/// made with one reference and belongs to the thread that made it.
template <class Interface>
class Object : public Interface, public ISupportErrorInfo, public IProvideClassInfo2 {
public:
    Object(REFIID interfaceId, REFCLSID classId) : interfaceId_(interfaceId), classId_(classId) {
        ++livingObjects;
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    STDMETHODIMP QueryInterface(REFIID id, void** out) override {
        if (id == IID_IUnknown || id == IID_IDispatch || id == interfaceId_) {
            *out = static_cast<Interface*>(this);
        } else if (id == IID_ISupportErrorInfo) {
            *out = static_cast<ISupportErrorInfo*>(this);
        } else if (id == IID_IProvideClassInfo || id == IID_IProvideClassInfo2) {
            *out = static_cast<IProvideClassInfo2*>(this);
        } else {
            *out = OtherInterface(id);
        }
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

    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        *count = 1;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT number, LCID, ITypeInfo** out) override {
        *out = nullptr;
        if (number != 0) return DISP_E_BADINDEX;
        return Run([&] { *out = TypeInfo(interfaceId_).Detach(); });
    }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        HRESULT code = S_OK;
        const HRESULT loaded = Run([&] { code = Vtable().GetIDsOfNames(names, count, ids); });
        return FAILED(loaded) ? loaded : code;
    }
    STDMETHODIMP Invoke(DISPID member, REFIID, LCID, WORD flags, DISPPARAMS* given, VARIANT* result,
                        EXCEPINFO* error, UINT* badArgument) override {
        return InvokeSafely(member, flags, *given, result, error, badArgument);
    }

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID id) override {
        return id == interfaceId_ ? S_OK : S_FALSE;
    }
    STDMETHODIMP GetClassInfo(ITypeInfo** out) override {
        *out = nullptr;
        return Run([&] { *out = TypeInfo(classId_).Detach(); });
    }
    STDMETHODIMP GetGUID(DWORD kind, GUID* id) override {
        const GUID* events = Events();
        if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || !events) return E_INVALIDARG;
        *id = *events;
        return S_OK;
    }

protected:
    virtual ~Object() { --livingObjects; }
    virtual void* OtherInterface(REFIID) { return nullptr; }
    virtual const GUID* Events() const { return nullptr; }

    /// Runs a member; what it throws becomes the HRESULT.
    HRESULT Run(auto member) { return Guarded(interfaceId_, member); }
    /// The same for a member that yields something.
    HRESULT Result(auto* result, auto member) {
        return Guarded(interfaceId_, [&] { *result = ToCom(member()); });
    }

private:
    ITypeInfo& Vtable() {
        if (!vtable_) vtable_ = VtableInfo(interfaceId_);
        return *vtable_.Get();
    }
    HRESULT InvokeSafely(DISPID member, WORD flags, DISPPARAMS& given, VARIANT* result,
                         EXCEPINFO* error, UINT* badArgument) {
        try {
            return InvokeByName(Vtable(), static_cast<Interface*>(this), member, flags, given,
                                result, error, badArgument);
        } catch (const Failure& failure) {
            return failure.code;
        }
    }

    const IID& interfaceId_;
    const CLSID& classId_;
    std::atomic<ULONG> references_ = 1;
    ComPtr<ITypeInfo> vtable_;
};

}  // namespace kv_tr::com
