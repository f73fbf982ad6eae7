// Values of scripts.
#include "kv_tr/com/values.h"

#include <cstring>
#include <new>

namespace kv_tr::com {
namespace {

/// Calls use(number, offset, type) for the fields of a record in their order.
void ForFields(REFGUID record, auto use) {
    const ComPtr<ITypeInfo> info = TypeInfo(record);
    const UINT count = TypeAttributes(*info.Get())->cVars;
    for (UINT i = 0; i < count; ++i) {
        VARDESC* field = nullptr;
        Check(info->GetVarDesc(i, &field));
        const ULONG offset = field->oInst;
        const VARTYPE type = KindOf(*info.Get(), field->elemdescVar.tdesc).type;
        info->ReleaseVarDesc(field);
        use(i, offset, type);
    }
}

struct Bounds {
    LONG first = 0;
    LONG last = -1;
    std::size_t Count() const { return static_cast<std::size_t>(last - first + 1); }
};

Bounds BoundsOf(SAFEARRAY* array, UINT dimension) {
    Bounds bounds;
    Check(SafeArrayGetLBound(array, dimension, &bounds.first));
    Check(SafeArrayGetUBound(array, dimension, &bounds.last));
    return bounds;
}

/// Takes the fields of a record from a row of a table.
void SetFieldsFromRow(REFGUID record, SAFEARRAY* table, LONG row, void* fields) {
    const Bounds columns = BoundsOf(table, 2);
    ForFields(record, [&](UINT i, ULONG offset, VARTYPE type) {
        LONG place[2] = {row, columns.first + static_cast<LONG>(i)};
        if (place[1] > columns.last) return;
        OwnVariant value;
        Check(SafeArrayGetElement(table, place, &*value));
        Store(static_cast<char*>(fields) + offset, type, *value);
    });
}

/// The elements of an array, whatever they are, byte by byte.
class RawElements {
public:
    explicit RawElements(SAFEARRAY* array) : array_(array), size_(SafeArrayGetElemsize(array)) {
        Check(SafeArrayAccessData(array, reinterpret_cast<void**>(&first_)));
    }
    ~RawElements() { SafeArrayUnaccessData(array_); }
    RawElements(const RawElements&) = delete;
    RawElements& operator=(const RawElements&) = delete;
    char* operator[](std::size_t i) const { return first_ + i * size_; }

private:
    SAFEARRAY* array_;
    std::size_t size_;
    char* first_ = nullptr;
};

}  // namespace

Kind KindOf(ITypeInfo& info, const TYPEDESC& description) {
    if (description.vt == VT_PTR) {
        Kind kind = KindOf(info, *description.lptdesc);
        kind.byReference = true;
        return kind;
    }
    if (description.vt == VT_SAFEARRAY) {
        Kind kind = KindOf(info, *description.lptdesc);
        kind.array = true;
        return kind;
    }
    if (description.vt != VT_USERDEFINED) return {.type = description.vt};
    ComPtr<ITypeInfo> type;
    Check(info.GetRefTypeInfo(description.hreftype, &type));
    const TypeAttributes attributes(*type.Get());
    switch (attributes->typekind) {
        case TKIND_ENUM: return {.type = VT_I4};
        case TKIND_RECORD: return {.type = VT_RECORD, .record = attributes->guid};
        case TKIND_ALIAS: return KindOf(*type.Get(), attributes->tdescAlias);
        default: return {.type = VT_DISPATCH};
    }
}

void Convert(VARIANT& to, const VARIANT& from, VARTYPE type) {
    const HRESULT code = VariantChangeType(&to, const_cast<VARIANT*>(&from), 0, type);
    if (FAILED(code)) throw Failure{code == DISP_E_OVERFLOW ? code : DISP_E_TYPEMISMATCH};
}

void Load(VARIANT& value, const void* place, VARTYPE type) {
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
    reference.byref = const_cast<void*>(place);
    Check(VariantCopyInd(&value, &reference));
}

void Store(void* place, VARTYPE type, const VARIANT& value) {
    OwnVariant wanted;
    Convert(*wanted, value, type);
    switch (type) {
        case VT_R8:
        case VT_CY:
        case VT_DATE: std::memcpy(place, &wanted->llVal, 8); break;
        case VT_R4:
        case VT_I4: std::memcpy(place, &wanted->lVal, 4); break;
        case VT_I2:
        case VT_BOOL: std::memcpy(place, &wanted->iVal, 2); break;
        case VT_BSTR: {
            BSTR old = nullptr;
            std::memcpy(&old, place, sizeof old);
            std::memcpy(place, &wanted->bstrVal, sizeof old);
            wanted->bstrVal = old;  // freed with the variant
            break;
        }
        default: throw Failure{DISP_E_TYPEMISMATCH};
    }
}

VARIANT& Inner(VARIANT& value) {
    VARIANT* inner = &value;
    while (inner->vt == (VT_BYREF | VT_VARIANT)) inner = inner->pvarVal;
    return *inner;
}

SAFEARRAY* VariantArray(VARIANT& value) {
    VARIANT& inner = Inner(value);
    if ((inner.vt & ~VT_BYREF) != (VT_ARRAY | VT_VARIANT)) return nullptr;
    return (inner.vt & VT_BYREF) != 0 ? *inner.pparray : inner.parray;
}

SAFEARRAY* NewArray(const Kind& kind, std::size_t count) {
    SAFEARRAYBOUND bound{static_cast<ULONG>(count), 0};
    SAFEARRAY* array = kind.type == VT_RECORD
                           ? SafeArrayCreateEx(VT_RECORD, 1, &bound, RecordInfo(kind.record).Get())
                           : SafeArrayCreate(kind.type, 1, &bound);
    if (!array) throw std::bad_alloc();
    return array;
}

void ReplaceArray(SAFEARRAY** place, OwnArray& fresh) {
    if (*place && ((*place)->fFeatures & (FADF_AUTO | FADF_STATIC | FADF_FIXEDSIZE)) != 0) {
        const bool alike = SafeArrayGetDim(*place) == 1 &&
                           SafeArrayGetElemsize(*place) == SafeArrayGetElemsize(fresh.Get());
        const bool fits =
            alike && (*place)->rgsabound[0].cElements == fresh.Get()->rgsabound[0].cElements;
        if (!fits) throw Failure{DISP_E_ARRAYISLOCKED};
        const LONG first = (*place)->rgsabound[0].lLbound;
        Check(SafeArrayCopyData(fresh.Get(), *place));
        (*place)->rgsabound[0].lLbound = first;
        return;
    }
    if (*place) Check(SafeArrayDestroy(*place));
    *place = fresh.Release();
}

SAFEARRAY* FieldsOf(REFGUID record, const void* fields) {
    const UINT count = TypeAttributes(*TypeInfo(record).Get())->cVars;
    OwnArray array(NewArray({.type = VT_VARIANT}, count));
    {
        const ArrayElements<VARIANT> values(array.Get());
        ForFields(record, [&](UINT i, ULONG offset, VARTYPE type) {
            Load((*values)[i], static_cast<const char*>(fields) + offset, type);
        });
    }
    return array.Release();
}

void SetFields(REFGUID record, VARIANT& array, void* fields) {
    SAFEARRAY* plain = VariantArray(array);
    if (!plain || SafeArrayGetDim(plain) != 1) throw Failure{DISP_E_TYPEMISMATCH};
    const ArrayElements<VARIANT> values(plain);
    ForFields(record, [&](UINT i, ULONG offset, VARTYPE type) {
        if (i < (*values).size()) Store(static_cast<char*>(fields) + offset, type, (*values)[i]);
    });
}

SAFEARRAY* TableOf(REFGUID record, SAFEARRAY* records) {
    const std::size_t count = records ? BoundsOf(records, 1).Count() : 0;
    SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(count), 0},
                                {TypeAttributes(*TypeInfo(record).Get())->cVars, 0}};
    OwnArray table(SafeArrayCreate(VT_VARIANT, 2, bounds));
    if (!table.Get()) throw std::bad_alloc();
    if (count == 0) return table.Release();
    const RawElements elements(records);
    ForFields(record, [&](UINT i, ULONG offset, VARTYPE type) {
        for (std::size_t row = 0; row < count; ++row) {
            OwnVariant value;
            Load(*value, elements[row] + offset, type);
            LONG place[2] = {static_cast<LONG>(row), static_cast<LONG>(i)};
            Check(SafeArrayPutElement(table.Get(), place, &*value));
        }
    });
    return table.Release();
}

SAFEARRAY* Typed(SAFEARRAY* plain, const Kind& kind) {
    const bool table = kind.type == VT_RECORD && SafeArrayGetDim(plain) == 2;
    if (SafeArrayGetDim(plain) != 1 && !table) throw Failure{DISP_E_TYPEMISMATCH};
    const Bounds rows = BoundsOf(plain, 1);
    OwnArray typed(NewArray(kind, rows.Count()));
    const RawElements elements(typed.Get());
    for (LONG row = rows.first; row <= rows.last; ++row) {
        void* element = elements[static_cast<std::size_t>(row - rows.first)];
        if (table) {
            SetFieldsFromRow(kind.record, plain, row, element);
            continue;
        }
        OwnVariant value;
        Check(SafeArrayGetElement(plain, &row, &*value));
        if (kind.type == VT_RECORD) {
            SetFields(kind.record, *value, element);
        } else {
            Store(element, kind.type, *value);
        }
    }
    return typed.Release();
}

SAFEARRAY* Plain(SAFEARRAY* typed, const Kind& kind) {
    if (kind.type == VT_RECORD) return TableOf(kind.record, typed);
    const std::size_t count = typed ? BoundsOf(typed, 1).Count() : 0;
    OwnArray plain(NewArray({.type = VT_VARIANT}, count));
    if (count == 0) return plain.Release();
    {
        const RawElements elements(typed);
        const ArrayElements<VARIANT> values(plain.Get());
        for (std::size_t i = 0; i < count; ++i) Load((*values)[i], elements[i], kind.type);
    }
    return plain.Release();
}

}  // namespace kv_tr::com
