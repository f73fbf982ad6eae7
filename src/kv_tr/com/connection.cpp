// Those who listen to the event of an engine.
#include "kv_tr/com/connection.h"

namespace kv_tr::com {

STDMETHODIMP Connection::QueryInterface(REFIID id, void** out) {
    *out = id == IID_IUnknown || id == IID_IConnectionPoint ? this : nullptr;
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

STDMETHODIMP Connection::GetConnectionInterface(IID* id) {
    *id = DIID___clsTrCalc;
    return S_OK;
}

STDMETHODIMP Connection::GetConnectionPointContainer(IConnectionPointContainer** out) {
    owner_.AddRef();
    *out = &owner_;
    return S_OK;
}

STDMETHODIMP Connection::Advise(IUnknown* sink, DWORD* cookie) {
    ComPtr<IDispatch> listener;
    if (FAILED(sink->QueryInterface(DIID___clsTrCalc,
                                    reinterpret_cast<void**>(listener.GetAddressOf()))) &&
        FAILED(sink->QueryInterface(IID_IDispatch,
                                    reinterpret_cast<void**>(listener.GetAddressOf())))) {
        return CONNECT_E_CANNOTCONNECT;
    }
    return Guarded(DIID___clsTrCalc, [&] {
        sinks_[lastCookie_ + 1] = listener;
        *cookie = ++lastCookie_;
    });
}

STDMETHODIMP Connection::Unadvise(DWORD cookie) {
    return sinks_.erase(cookie) > 0 ? S_OK : CONNECT_E_NOCONNECTION;
}

void Connection::Raise(kv_tr::enuTR_TYPE& type) {
    constexpr DISPID kTypeChanched = 1;
    LONG value = type;
    VARIANT argument;
    VariantInit(&argument);
    argument.vt = VT_BYREF | VT_I4;
    argument.plVal = &value;
    DISPPARAMS given{&argument, nullptr, 1, 0};
    const auto sinks = sinks_;
    for (const auto& [cookie, sink] : sinks) {
        if (!sinks_.contains(cookie)) continue;  // an earlier one disconnected it
        sink->Invoke(kTypeChanched, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &given, nullptr,
                     nullptr, nullptr);
    }
    type = static_cast<kv_tr::enuTR_TYPE>(value);
}

}  // namespace kv_tr::com
