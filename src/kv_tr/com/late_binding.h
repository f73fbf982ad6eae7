// Calls by name: IDispatch::Invoke for scripts, macros and everything else that binds late.
#pragma once

#include "kv_tr/com/type_library.h"

namespace kv_tr::com {

/// Calls a member of a dual interface as its description in the type library says: arguments, also
/// named ones and those left out, become what the member takes, and what it changed goes back to
/// where it came from.
///
/// Beyond ITypeInfo::Invoke, a variant by reference suits every argument, and scripts, which know
/// no records, may pass arrays of variants for records and for arrays (values.h).
HRESULT InvokeByName(ITypeInfo& vtable, void* instance, DISPID member, WORD flags,
                     DISPPARAMS& given, VARIANT* result, EXCEPINFO* error, UINT* badArgument);

}  // namespace kv_tr::com
