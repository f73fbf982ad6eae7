// Failures on their way between exceptions and the HRESULTs of COM.
#include "kv_tr/com/failure.h"

#include <wrl/client.h>

#include <exception>
#include <new>

#include "kv_tr/published/errors.h"

namespace kv_tr::com {
namespace {

using Microsoft::WRL::ComPtr;

void Describe(REFIID interfaceId, const std::string& text) {
    ComPtr<ICreateErrorInfo> create;
    ComPtr<IErrorInfo> info;
    if (FAILED(CreateErrorInfo(&create)) || FAILED(create.As(&info))) return;
    std::wstring description = Wide(text);
    std::wstring source = L"KV_Tr";
    create->SetGUID(interfaceId);
    create->SetDescription(description.data());
    create->SetSource(source.data());
    SetErrorInfo(0, info.Get());
}

}  // namespace

HRESULT Guarded(REFIID interfaceId, const std::function<void()>& member) {
    SetErrorInfo(0, nullptr);
    try {
        member();
        return S_OK;
    } catch (const Failure& failure) {
        return failure.code;
    } catch (const RuntimeError& error) {
        Describe(interfaceId, error.what());
        return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<int>(error.Number()));
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        Describe(interfaceId, error.what());
        return E_FAIL;
    }
}

}  // namespace kv_tr::com
