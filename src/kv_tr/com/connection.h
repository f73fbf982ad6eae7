// Those who listen to the event of an engine.
#pragma once

#include <map>

#include "kv_tr/com/object.h"

namespace kv_tr::com {

/// The connection point of TypeChanched. It lives in the engine's object and counts its references
/// as that object's.
class Connection final : public IConnectionPoint {
public:
    explicit Connection(IConnectionPointContainer& owner) : owner_(owner) {}
    virtual ~Connection() = default;

    STDMETHODIMP QueryInterface(REFIID id, void** out) override;
    STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }
    STDMETHODIMP GetConnectionInterface(IID* id) override;
    STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** out) override;
    STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
    STDMETHODIMP Unadvise(DWORD cookie) override;
    STDMETHODIMP EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

    /// Tells everyone; a listener may change the type, connect and disconnect.
    void Raise(kv_tr::enuTR_TYPE& type);

private:
    IConnectionPointContainer& owner_;
    std::map<DWORD, ComPtr<IDispatch>> sinks_;
    DWORD lastCookie_ = 0;
};

}  // namespace kv_tr::com
