// What the tests of the component share: creating classes, texts, calls by name.
#pragma once

#include <windows.h>
#undef MessageBox

#include <oleauto.h>
#include <olectl.h>
#include <wrl/client.h>

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr_com.h"

namespace com_client {

using Microsoft::WRL::ComPtr;

/// A text of ours for members that take one.
class Bstr {
public:
    explicit Bstr(const std::wstring& text = {}) : text_(SysAllocString(text.c_str())) {}
    ~Bstr() { SysFreeString(text_); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    operator BSTR() const { return text_; }
    BSTR* operator&() { return &text_; }
    std::wstring Text() const { return {text_, SysStringLen(text_)}; }

private:
    BSTR text_;
};

/// An object of a class by its name; none when it cannot be created.
template <class Interface>
ComPtr<Interface> Create(const wchar_t* name, REFIID interfaceId) {
    CLSID id{};
    ComPtr<Interface> object;
    if (SUCCEEDED(CLSIDFromProgID(name, &id))) {
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, interfaceId,
                         reinterpret_cast<void**>(object.GetAddressOf()));
    }
    return object;
}
inline ComPtr<_clsTr> NewTr() { return Create<_clsTr>(L"KV_Tr.clsTr", IID__clsTr); }
inline ComPtr<_clsTrCalc> NewEngine() {
    return Create<_clsTrCalc>(L"KV_Tr.clsTrCalc", IID__clsTrCalc);
}

inline std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

/// The description of the thread's error object, which is taken away.
inline std::wstring LastError() {
    ComPtr<IErrorInfo> info;
    Bstr text;
    if (GetErrorInfo(0, &info) == S_OK) info->GetDescription(&text);
    return text.Text();
}

/// A variant of our own.
class Value {
public:
    Value() { VariantInit(&value_); }
    Value(double number) : Value() { value_.vt = VT_R8, value_.dblVal = number; }
    Value(int number) : Value() { value_.vt = VT_I4, value_.lVal = number; }
    Value(bool truth) : Value() { value_.vt = VT_BOOL, value_.boolVal = truth ? -1 : 0; }
    Value(const wchar_t* text) : Value() {
        value_.vt = VT_BSTR, value_.bstrVal = SysAllocString(text);
    }
    /// What a language passes for a variable: a reference to it.
    Value(double* place) : Value() { value_.vt = VT_BYREF | VT_R8, value_.pdblVal = place; }
    Value(short* place) : Value() { value_.vt = VT_BYREF | VT_I2, value_.piVal = place; }
    Value(VARIANT* place) : Value() { value_.vt = VT_BYREF | VT_VARIANT, value_.pvarVal = place; }
    Value(SAFEARRAY** records) : Value() {
        value_.vt = VT_BYREF | VT_ARRAY | VT_RECORD, value_.pparray = records;
    }
    /// An array of values, as scripts make them.
    Value(std::initializer_list<Value> values) : Value() {
        SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), 0};
        value_.vt = VT_ARRAY | VT_VARIANT;
        value_.parray = SafeArrayCreate(VT_VARIANT, 1, &bound);
        LONG place = 0;
        for (const Value& each : values) {
            SafeArrayPutElement(value_.parray, &place, const_cast<VARIANT*>(&each.value_));
            ++place;
        }
    }
    static Value Missing() {
        Value value;
        value.value_.vt = VT_ERROR, value.value_.scode = DISP_E_PARAMNOTFOUND;
        return value;
    }
    Value(const Value& other) : Value() {
        VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
    }
    Value& operator=(const Value& other) {
        VariantCopy(&value_, const_cast<VARIANT*>(&other.value_));
        return *this;
    }
    ~Value() { VariantClear(&value_); }
    VARIANT* operator->() { return &value_; }
    const VARIANT* operator->() const { return &value_; }
    VARIANT& operator*() { return value_; }

    /// An element of an array of variants, or of a table.
    Value At(LONG row, LONG column = -1) const {
        Value element;
        LONG place[2] = {row, column};
        if ((value_.vt & VT_ARRAY) != 0) SafeArrayGetElement(value_.parray, place, &element.value_);
        return element;
    }
    double Number() const {
        Value number;
        const bool is =
            SUCCEEDED(VariantChangeType(&number.value_, const_cast<VARIANT*>(&value_), 0, VT_R8));
        return is ? number.value_.dblVal : -1e300;
    }
    std::wstring Text() const {
        return value_.vt == VT_BSTR ? std::wstring(value_.bstrVal, SysStringLen(value_.bstrVal))
                                    : L"no text";
    }

private:
    VARIANT value_;
};

/// The outcome of a call by name.
struct Outcome {
    HRESULT code = S_OK;
    Value result{};
    SCODE error = 0;
    std::wstring description{};
    UINT badArgument = 99;
};

/// Calls a member as scripts do; arguments with a name follow those without.
inline Outcome Call(IUnknown* object, const wchar_t* member, WORD flags,
                    std::vector<Value> values = {},
                    std::vector<std::pair<const wchar_t*, Value>> named = {}) {
    Outcome outcome;
    ComPtr<IDispatch> dispatch;
    object->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.GetAddressOf()));
    std::vector<LPOLESTR> names{const_cast<LPOLESTR>(member)};
    for (const auto& [name, value] : named) names.push_back(const_cast<LPOLESTR>(name));
    std::vector<DISPID> ids(names.size());
    outcome.code = dispatch->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()),
                                           LOCALE_USER_DEFAULT, ids.data());
    if (FAILED(outcome.code)) return outcome;

    std::vector<VARIANT> passed;  // the last one first, those with names before all others
    std::vector<DISPID> namedIds(ids.begin() + 1, ids.end());
    for (auto& [name, value] : named) passed.push_back(*value);
    for (auto value = values.rbegin(); value != values.rend(); ++value) passed.push_back(**value);
    if ((flags & DISPATCH_PROPERTYPUT) != 0) namedIds.push_back(DISPID_PROPERTYPUT);
    DISPPARAMS given{passed.data(), namedIds.data(), static_cast<UINT>(passed.size()),
                     static_cast<UINT>(namedIds.size())};
    EXCEPINFO error{};
    outcome.code = dispatch->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, flags, &given,
                                    &*outcome.result, &error, &outcome.badArgument);
    outcome.error = error.scode;
    if (error.bstrDescription) outcome.description = error.bstrDescription;
    SysFreeString(error.bstrDescription);
    SysFreeString(error.bstrSource);
    return outcome;
}

inline Outcome CallMethod(IUnknown* object, const wchar_t* member, std::vector<Value> values = {},
                          std::vector<std::pair<const wchar_t*, Value>> named = {}) {
    return Call(object, member, DISPATCH_METHOD, std::move(values), std::move(named));
}
inline Outcome GetProperty(IUnknown* object, const wchar_t* member) {
    return Call(object, member, DISPATCH_PROPERTYGET);
}
inline Outcome PutProperty(IUnknown* object, const wchar_t* member, const Value& value) {
    return Call(object, member, DISPATCH_PROPERTYPUT, {value});
}

/// The HRESULT of a run-time error: its number in the facility of controls.
constexpr HRESULT ErrorOf(int number) {
    return static_cast<HRESULT>(0x800A0000U + static_cast<unsigned>(number));
}

}  // namespace com_client
