// What makes the classes known to hosts: keys of the registry, and the type library.
#pragma once

#include <span>

#include "kv_tr/text/windows_api.h"

namespace kv_tr::com {

/// A class that hosts create by name.
struct CreatableClass {
    const CLSID& id;
    const wchar_t* name;  ///< without a version
    IDispatch* (*create)();
};

std::span<const CreatableClass> CreatableClasses();

/// Below Software\Classes of the current user, or of the machine, which asks for the rights of an
/// administrator.
HRESULT Register(HKEY root);
/// Removes what Register wrote; keys that are not there are no failure.
HRESULT Unregister(HKEY root);

}  // namespace kv_tr::com
