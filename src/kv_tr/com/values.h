// Values of scripts: variants and arrays of variants in the place of records, arrays of records and
// arrays of numbers.
#pragma once

#include <span>
#include <utility>

#include "kv_tr/com/type_library.h"

namespace kv_tr::com {

/// A variant of our own.
class OwnVariant {
public:
    OwnVariant() { VariantInit(&value_); }
    ~OwnVariant() { VariantClear(&value_); }
    OwnVariant(const OwnVariant&) = delete;
    OwnVariant& operator=(const OwnVariant&) = delete;
    VARIANT* operator->() { return &value_; }
    VARIANT& operator*() { return value_; }
    /// Hands the value on to a variant that holds nothing.
    void MoveTo(VARIANT* to) {
        *to = value_;
        VariantInit(&value_);
    }

private:
    VARIANT value_;
};

/// The elements of an array of one dimension for as long as they are looked at.
template <class Element>
class ArrayElements {
public:
    explicit ArrayElements(SAFEARRAY* array) : array_(array) {
        if (SafeArrayGetDim(array) != 1) throw Failure{DISP_E_TYPEMISMATCH};
        Check(SafeArrayAccessData(array, &first_));
    }
    ~ArrayElements() { SafeArrayUnaccessData(array_); }
    ArrayElements(const ArrayElements&) = delete;
    ArrayElements& operator=(const ArrayElements&) = delete;
    std::span<Element> operator*() const {
        return {static_cast<Element*>(first_), array_->rgsabound[0].cElements};
    }

private:
    SAFEARRAY* array_;
    void* first_ = nullptr;
};

/// An array of our own.
class OwnArray {
public:
    explicit OwnArray(SAFEARRAY* array = nullptr) : array_(array) {}
    ~OwnArray() {
        if (array_) SafeArrayDestroy(array_);
    }
    OwnArray(const OwnArray&) = delete;
    OwnArray& operator=(const OwnArray&) = delete;
    SAFEARRAY* Get() const { return array_; }
    SAFEARRAY** Place() { return &array_; }
    SAFEARRAY* Release() { return std::exchange(array_, nullptr); }

private:
    SAFEARRAY* array_;
};

/// The kind of an argument, a result or a field.
struct Kind {
    bool byReference = false;
    bool array = false;
    VARTYPE type = VT_EMPTY;  ///< of the elements, for an array
    GUID record{};            ///< for VT_RECORD
};

/// The kind that a type library describes; enumerations are VT_I4, objects, which are results only,
/// VT_DISPATCH.
Kind KindOf(ITypeInfo& info, const TYPEDESC& description);

/// A value as another type; throws Failure where there is no way. An empty one becomes 0 or "".
void Convert(VARIANT& to, const VARIANT& from, VARTYPE type);

/// The value of that type at a place of memory, and back there, converted. A text there is freed.
void Load(VARIANT& value, const void* place, VARTYPE type);
void Store(void* place, VARTYPE type, const VARIANT& value);

/// Behind variants that refer to variants.
VARIANT& Inner(VARIANT& value);

/// The array of variants in a variant, if it holds one, directly or by reference.
SAFEARRAY* VariantArray(VARIANT& value);

/// An array from 0 on, of variants, numbers, or records of that kind.
SAFEARRAY* NewArray(const Kind& kind, std::size_t count);

/// Puts another array in the place of a caller's. One of fixed size takes the elements when it has
/// room for just as many; otherwise Failure DISP_E_ARRAYISLOCKED.
void ReplaceArray(SAFEARRAY** place, OwnArray& fresh);

/// A record as an array of its fields, and back: fields that the array lacks stay as they are.
SAFEARRAY* FieldsOf(REFGUID record, const void* fields);
void SetFields(REFGUID record, VARIANT& array, void* fields);

/// Records as a table with a row for each: v(row, field), both from 0.
SAFEARRAY* TableOf(REFGUID record, SAFEARRAY* records);

/// What a script passes for an array of numbers or records: an array, for records an array of
/// arrays or a table.
SAFEARRAY* Typed(SAFEARRAY* plain, const Kind& kind);

/// What a script can read of an array of numbers or records: an array of variants, or a table.
SAFEARRAY* Plain(SAFEARRAY* typed, const Kind& kind);

}  // namespace kv_tr::com
