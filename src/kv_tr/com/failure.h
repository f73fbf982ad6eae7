// Failures on their way between exceptions and the HRESULTs of COM.
#pragma once

#include <functional>

#include "kv_tr/com/bstr.h"

namespace kv_tr::com {

/// Thrown where a call of the system failed, or a caller's value does not suit.
struct Failure {
    HRESULT code;
};

inline void Check(HRESULT code) {
    if (FAILED(code)) throw Failure{code};
}

/// Runs a member of an interface. What it throws becomes an HRESULT, and what has a text also the
/// error object of the thread. RuntimeError n becomes 0x800A0000 + n: hosts with an Err object
/// read n there.
HRESULT Guarded(REFIID interfaceId, const std::function<void()>& member);

}  // namespace kv_tr::com
