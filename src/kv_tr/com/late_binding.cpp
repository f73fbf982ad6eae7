// Calls by name.
#include "kv_tr/com/late_binding.h"

#include <deque>
#include <new>
#include <vector>

#include "kv_tr/com/values.h"

namespace kv_tr::com {
namespace {

bool IsMissing(const VARIANT* value) {
    return !value || (value->vt == VT_ERROR && value->scode == DISP_E_PARAMNOTFOUND);
}

VARTYPE ByReference(VARTYPE type) { return static_cast<VARTYPE>(VT_BYREF | type); }

/// One argument on its way to the member and back, or the result.
class Argument {
public:
    Argument() = default;
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;
    ~Argument() {
        if (ownRecord_) recordInfo_->RecordDestroy(ownRecord_);
    }

    /// What DispCallFunc is told.
    VARTYPE PassedType() const { return passedType_; }
    VARIANTARG* Passed() { return &passed_; }

    void Take(const Kind& kind, VARIANT* given, const VARIANT* byDefault) {
        kind_ = kind;
        if (IsMissing(given)) {
            TakeNothing(byDefault);
        } else if (kind.array) {
            TakeArray(*given);
        } else if (kind.type == VT_RECORD) {
            TakeRecord(*given);
        } else {
            TakeValue(*given);
        }
    }

    void MakeRoomForResult(const Kind& kind) {
        kind_ = kind;
        if (kind.type == VT_RECORD) {
            Pass(ByReference(VT_RECORD), NewRecord());
        } else {
            if (kind.type != VT_VARIANT) value_->vt = kind.type;
            PassValue();
        }
    }

    void GiveBack() {
        if (!back_) return;
        if (kind_.array) {
            // Members make a new array, or leave the one that they get as it is.
            if (array_.Get() != givenArray_) GiveBackArray(Plain(array_.Get(), kind_));
        } else if (ownRecord_ && plainRecord_) {
            GiveBackArray(FieldsOf(kind_.record, ownRecord_));
        } else if (kind_.type == VT_RECORD) {
            Check(VariantClear(back_));
            MoveRecord(back_);
        } else if ((back_->vt & VT_BYREF) != 0) {
            Store(back_->byref, static_cast<VARTYPE>(back_->vt & ~VT_BYREF), *value_);
        } else {
            Check(VariantCopy(back_, &*value_));
        }
    }

    void MoveResult(VARIANT* result) {
        if (kind_.type == VT_RECORD) {
            MoveRecord(result);
        } else {
            value_.MoveTo(result);
        }
    }

private:
    void Pass(VARTYPE type, void* place) {
        passedType_ = type;
        passed_.vt = type;
        passed_.byref = place;
    }
    /// The address of the own value; for a variant that of the variant.
    void PassValue() {
        void* place = kind_.type == VT_VARIANT ? static_cast<void*>(&*value_) : &value_->llVal;
        Pass(ByReference(kind_.type), place);
    }

    void TakeNothing(const VARIANT* byDefault) {
        if (byDefault) {
            Convert(*value_, *byDefault, kind_.type);
        } else if (kind_.type == VT_VARIANT && !kind_.array) {
            value_->vt = VT_ERROR;
            value_->scode = DISP_E_PARAMNOTFOUND;
        } else {
            throw Failure{DISP_E_PARAMNOTOPTIONAL};
        }
        HandOn();
    }

    void TakeValue(VARIANT& given) {
        VARIANT& inner = Inner(given);
        if (kind_.byReference && inner.vt == ByReference(kind_.type)) {
            Pass(inner.vt, inner.byref);  // the caller's own variable
            return;
        }
        if (kind_.type == VT_VARIANT) {
            Check(VariantCopyInd(&*value_, &inner));
        } else {
            Convert(*value_, inner, kind_.type);
        }
        if (kind_.byReference && (&inner != &given || (inner.vt & VT_BYREF) != 0)) back_ = &inner;
        HandOn();
    }

    void TakeRecord(VARIANT& given) {
        VARIANT& inner = Inner(given);
        if ((inner.vt & ~VT_BYREF) == VT_RECORD) {
            GUID id{};
            if (inner.pRecInfo) Check(inner.pRecInfo->GetGuid(&id));
            if (id != kind_.record) throw Failure{DISP_E_TYPEMISMATCH};
            Pass(ByReference(VT_RECORD), inner.pvRecord);
            return;
        }
        plainRecord_ = VariantArray(inner) != nullptr;
        if (!plainRecord_ && inner.vt != VT_EMPTY) throw Failure{DISP_E_TYPEMISMATCH};
        Pass(ByReference(VT_RECORD), NewRecord());
        if (plainRecord_) SetFields(kind_.record, inner, ownRecord_);
        if ((given.vt & VT_BYREF) != 0) back_ = &inner;
    }

    void TakeArray(VARIANT& given) {
        VARIANT& inner = Inner(given);
        const VARTYPE typed = static_cast<VARTYPE>(VT_ARRAY | kind_.type);
        if ((inner.vt & ~VT_BYREF) == typed) {
            SAFEARRAY** place = (inner.vt & VT_BYREF) != 0 ? inner.pparray : &inner.parray;
            if (kind_.type == VT_RECORD && *place) CheckRecordOf(*place);
            Pass(ByReference(VT_ARRAY), place);
            return;
        }
        SAFEARRAY* plain = VariantArray(inner);
        if (!plain && inner.vt != VT_EMPTY) throw Failure{DISP_E_TYPEMISMATCH};
        if (plain) *array_.Place() = Typed(plain, kind_);
        givenArray_ = array_.Get();
        if ((given.vt & VT_BYREF) != 0) back_ = &inner;
        Pass(ByReference(VT_ARRAY), array_.Place());
    }

    /// The own value, or its address.
    void HandOn() {
        if (kind_.byReference) {
            PassValue();
        } else {
            passedType_ = kind_.type;
            passed_ = *value_;
        }
    }

    void CheckRecordOf(SAFEARRAY* array) const {
        ComPtr<IRecordInfo> info;
        GUID id{};
        if (FAILED(SafeArrayGetRecordInfo(array, &info)) || FAILED(info->GetGuid(&id)) ||
            id != kind_.record) {
            throw Failure{DISP_E_TYPEMISMATCH};
        }
    }

    void* NewRecord() {
        recordInfo_ = RecordInfo(kind_.record);
        ownRecord_ = recordInfo_->RecordCreate();
        if (!ownRecord_) throw std::bad_alloc();
        return ownRecord_;
    }

    void MoveRecord(VARIANT* to) {
        to->vt = VT_RECORD;
        to->pvRecord = std::exchange(ownRecord_, nullptr);
        to->pRecInfo = recordInfo_.Detach();
    }

    void GiveBackArray(SAFEARRAY* made) {
        OwnArray plain(made);
        if (back_->vt == (VT_BYREF | VT_ARRAY | VT_VARIANT)) {  // an array variable of the caller's
            ReplaceArray(back_->pparray, plain);
            return;
        }
        Check(VariantClear(back_));
        back_->vt = VT_ARRAY | VT_VARIANT;
        back_->parray = plain.Release();
    }

    Kind kind_;
    VARTYPE passedType_ = VT_EMPTY;  // VT_VARIANT for a variant by value, whatever is in it
    VARIANTARG passed_{};
    OwnVariant value_;
    VARIANT* back_ = nullptr;  // where the changed value goes
    ComPtr<IRecordInfo> recordInfo_;
    void* ownRecord_ = nullptr;
    bool plainRecord_ = false;  // the record came as an array of its fields
    OwnArray array_;
    const SAFEARRAY* givenArray_ = nullptr;  // what array_ was before the call
};

/// The description of a member that suits a call.
class Member {
public:
    Member(ITypeInfo& info, DISPID id, WORD flags) : info_(info) {
        if ((flags & DISPATCH_PROPERTYPUTREF) != 0) flags |= DISPATCH_PROPERTYPUT;
        const UINT count = TypeAttributes(info)->cFuncs;
        for (UINT i = 0; i < count; ++i) {
            Check(info.GetFuncDesc(i, &description_));
            if (description_->memid == id && (description_->invkind & flags) != 0) return;
            info.ReleaseFuncDesc(description_);
        }
        throw Failure{DISP_E_MEMBERNOTFOUND};
    }
    ~Member() { info_.ReleaseFuncDesc(description_); }
    Member(const Member&) = delete;
    Member& operator=(const Member&) = delete;
    const FUNCDESC* operator->() const { return description_; }

private:
    ITypeInfo& info_;
    FUNCDESC* description_ = nullptr;
};

/// The given values in the order of the member's arguments; places left out are empty.
class GivenValues {
public:
    GivenValues(DISPPARAMS& given, std::size_t count) : given_(given), values_(count) {
        const UINT unnamed = given.cArgs - given.cNamedArgs;
        for (UINT i = 0; i < unnamed; ++i) Put(i, given.cArgs - 1 - i);
        for (UINT i = 0; i < given.cNamedArgs; ++i) {
            const DISPID name = given.rgdispidNamedArgs[i];
            const bool assigned = name == DISPID_PROPERTYPUT;  // which is the last one
            Put(assigned ? count - 1 : static_cast<std::size_t>(name), i);
        }
    }
    VARIANT* operator[](std::size_t argument) const { return values_[argument]; }
    /// The place among the values as they were given.
    UINT PlaceOf(std::size_t argument) const {
        return values_[argument] ? static_cast<UINT>(values_[argument] - given_.rgvarg) : 0;
    }

private:
    void Put(std::size_t argument, UINT place) {
        if (argument >= values_.size() || values_[argument]) throw Failure{DISP_E_BADPARAMCOUNT};
        values_[argument] = &given_.rgvarg[place];
    }

    DISPPARAMS& given_;
    std::vector<VARIANT*> values_;
};

bool IsResult(const ELEMDESC& argument) {
    return (argument.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
}

const VARIANT* DefaultOf(const ELEMDESC& argument) {
    const bool has = (argument.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0;
    return has ? &argument.paramdesc.pparamdescex->varDefaultValue : nullptr;
}

void FillErrorOf(HRESULT code, EXCEPINFO* error) {
    if (!error) return;
    *error = {};
    error->scode = code;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, &info) != S_OK) return;
    info->GetSource(&error->bstrSource);
    info->GetDescription(&error->bstrDescription);
}

void Call(ITypeInfo& vtable, void* instance, const Member& member, DISPPARAMS& given,
          VARIANT* result, EXCEPINFO* error, UINT* badArgument) {
    const auto count = static_cast<std::size_t>(member->cParams);
    const bool yields = count > 0 && IsResult(member->lprgelemdescParam[count - 1]);
    const std::size_t taken = yields ? count - 1 : count;
    const GivenValues values(given, taken);
    std::deque<Argument> arguments(count);
    for (std::size_t i = 0; i < taken; ++i) {
        const ELEMDESC& argument = member->lprgelemdescParam[i];
        try {
            arguments[i].Take(KindOf(vtable, argument.tdesc), values[i], DefaultOf(argument));
        } catch (const Failure&) {
            if (badArgument) *badArgument = values.PlaceOf(i);
            throw;
        }
    }
    if (yields) {
        arguments[taken].MakeRoomForResult(KindOf(vtable, member->lprgelemdescParam[taken].tdesc));
    }

    std::vector<VARTYPE> types;
    std::vector<VARIANTARG*> passed;
    for (Argument& argument : arguments) {
        types.push_back(argument.PassedType());
        passed.push_back(argument.Passed());
    }
    OwnVariant code;
    Check(DispCallFunc(instance, static_cast<ULONG_PTR>(member->oVft), CC_STDCALL, VT_ERROR,
                       static_cast<UINT>(count), types.data(), passed.data(), &*code));
    if (FAILED(code->scode)) {
        FillErrorOf(code->scode, error);
        throw Failure{DISP_E_EXCEPTION};
    }
    for (std::size_t i = 0; i < taken; ++i) arguments[i].GiveBack();
    if (yields && result) arguments[taken].MoveResult(result);
}

}  // namespace

HRESULT InvokeByName(ITypeInfo& vtable, void* instance, DISPID member, WORD flags,
                     DISPPARAMS& given, VARIANT* result, EXCEPINFO* error, UINT* badArgument) {
    try {
        Call(vtable, instance, Member(vtable, member, flags), given, result, error, badArgument);
        return S_OK;
    } catch (const Failure& failure) {
        return failure.code;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace kv_tr::com
