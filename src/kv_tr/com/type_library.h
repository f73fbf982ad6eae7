// What the component says about itself: the type library among the resources of the DLL.
#pragma once

#include <oaidl.h>
#include <wrl/client.h>

#include <string>

#include "kv_tr/com/failure.h"

namespace kv_tr::com {

using Microsoft::WRL::ComPtr;

/// Takes over the reference that an object was made with; ComPtr::Attach of mingw adds another one.
template <class Interface>
void TakeOver(ComPtr<Interface>& pointer, Interface* made) {
    *pointer.ReleaseAndGetAddressOf() = made;
}

/// The DLL, for its path and its resources; set when it is loaded.
inline HMODULE theModule = nullptr;

std::wstring ModulePath();

/// The type library; throws Failure when the DLL cannot be read.
ITypeLib& TypeLibrary();

/// What the type library says about an interface, class or record.
ComPtr<ITypeInfo> TypeInfo(REFGUID id);

/// The members of a dual interface in the order of the vtable.
ComPtr<ITypeInfo> VtableInfo(REFGUID interfaceId);

ComPtr<IRecordInfo> RecordInfo(REFGUID record);

/// The attributes of a type for as long as they are looked at.
class TypeAttributes {
public:
    explicit TypeAttributes(ITypeInfo& info) : info_(info) {
        Check(info.GetTypeAttr(&attributes_));
    }
    ~TypeAttributes() { info_.ReleaseTypeAttr(attributes_); }
    TypeAttributes(const TypeAttributes&) = delete;
    TypeAttributes& operator=(const TypeAttributes&) = delete;
    const TYPEATTR* operator->() const { return attributes_; }

private:
    ITypeInfo& info_;
    TYPEATTR* attributes_ = nullptr;
};

}  // namespace kv_tr::com
