// clsTrCalc for hosts that create it by name or get it from a clsTr.
#include "kv_tr/com/classes.h"
#include "kv_tr/com/connection.h"
#include "kv_tr/com/pairs_array.h"
#include "kv_tr/com/record_ids.h"
#include "kv_tr/com/values.h"

namespace kv_tr::com {
namespace {

class TrCalc final : public Object<_clsTrCalc>, public IConnectionPointContainer {
public:
    explicit TrCalc(std::shared_ptr<kv_tr::clsTrCalc> engine)
        : Object(IID__clsTrCalc, CLSID_clsTrCalc),
          core_(std::move(engine)),
          lowered_(core_->TypeChanched.Subscribe(
              [this](kv_tr::enuTR_TYPE& type) { listeners_.Raise(type); })) {}

    STDMETHODIMP QueryInterface(REFIID id, void** out) override {
        return Object::QueryInterface(id, out);
    }
    STDMETHODIMP_(ULONG) AddRef() override { return Object::AddRef(); }
    STDMETHODIMP_(ULONG) Release() override { return Object::Release(); }
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    STDMETHODIMP FindConnectionPoint(REFIID id, IConnectionPoint** out) override {
        *out = nullptr;
        if (id != DIID___clsTrCalc) return CONNECT_E_NOCONNECTION;
        return listeners_.QueryInterface(IID_IConnectionPoint, reinterpret_cast<void**>(out));
    }

    STDMETHODIMP get_gdErrLimit(double* value) override {
        return Result(value, [&] { return core_->gdErrLimit; });
    }
    STDMETHODIMP put_gdErrLimit(double value) override {
        return Run([&] { core_->gdErrLimit = value; });
    }
    STDMETHODIMP AddXY4Tr(SAFEARRAY** pairs, VARIANT_BOOL append) override {
        return Run([&] { core_->AddXY4Tr(PairsOf(*pairs), FromCom(append)); });
    }
    STDMETHODIMP GetAllXYs(SAFEARRAY** pairs, LONG* count) override {
        return Run([&] {
            std::vector<kv_tr::typeXYs4Tr> all;
            std::int32_t number = 0;
            core_->GetAllXYs(all, number);
            SetPairs(pairs, all);
            *count = number;
        });
    }
    STDMETHODIMP GetXYs(SAFEARRAY** pairs, LONG* count, VARIANT_BOOL used) override {
        return Run([&] {
            std::vector<kv_tr::typeXYs4Tr> some;
            std::int32_t number = 0;
            core_->GetXYs(some, number, FromCom(used));
            if (number > 0) SetPairs(pairs, some);
            *count = number;
        });
    }
    STDMETHODIMP get_lFullCnt(LONG* value) override {
        return Result(value, [&] { return core_->lFullCnt(); });
    }
    STDMETHODIMP get_lNotUsedCnt(LONG* value) override {
        return Result(value, [&] { return core_->lNotUsedCnt(); });
    }
    STDMETHODIMP GetRect4Dest(double* dXmin, double* dYmin, double* dXmax, double* dYmax) override {
        return Run([&] { core_->GetRect4Dest(*dXmin, *dYmin, *dXmax, *dYmax); });
    }
    STDMETHODIMP bXYCntIsValid4TrType(::enuTR_TYPE type, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_->bXYCntIsValid4TrType(FromCom(type)); });
    }
    STDMETHODIMP get_eTrType(::enuTR_TYPE* value) override {
        return Result(value, [&] { return core_->eTrType(); });
    }
    STDMETHODIMP put_eTrType(::enuTR_TYPE value) override {
        return Run([&] { core_->eTrType(FromCom(value)); });
    }
    STDMETHODIMP get_udtTrPrm(::TR_PRM* value) override {
        return Result(value, [&] { return core_->udtTrPrm(); });
    }
    STDMETHODIMP put_udtTrPrm(::TR_PRM* value) override {
        return Run([&] { core_->udtTrPrm(FromCom(*value)); });
    }
    STDMETHODIMP bTypeIsPolinom(VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_->bTypeIsPolinom(); });
    }
    STDMETHODIMP SwapSourDest() override {
        return Run([&] { core_->SwapSourDest(); });
    }
    STDMETHODIMP ResetAllNotUsed() override {
        return Run([&] { core_->ResetAllNotUsed(); });
    }
    STDMETHODIMP ExcludeByIx(LONG index, VARIANT_BOOL fit) override {
        return Run([&] { core_->ExcludeByIx(index, FromCom(fit)); });
    }
    STDMETHODIMP DoCalcTr() override {
        return Run([&] { core_->DoCalcTr(); });
    }
    STDMETHODIMP DoCalc_Helmert3(short* passes) override {
        return Run([&] { core_->DoCalc_Helmert3(*passes); });
    }
    STDMETHODIMP DoCalc_Affin5(short* passes) override {
        return Run([&] { core_->DoCalc_Affin5(*passes); });
    }
    STDMETHODIMP get_dRmsErr(double* value) override {
        return Result(value, [&] { return core_->dRmsErr(); });
    }
    STDMETHODIMP get_dRmsErrX(double* value) override {
        return Result(value, [&] { return core_->dRmsErrX(); });
    }
    STDMETHODIMP get_dRmsErrY(double* value) override {
        return Result(value, [&] { return core_->dRmsErrY(); });
    }
    STDMETHODIMP get_dMiddleErrX(double* value) override {
        return Result(value, [&] { return core_->dMiddleErrX(); });
    }
    STDMETHODIMP get_dMiddleErrY(double* value) override {
        return Result(value, [&] { return core_->dMiddleErrY(); });
    }
    STDMETHODIMP TrXY(double dXsour, double dYsour, double* dXdest, double* dYdest) override {
        return Run([&] { core_->TrXY(dXsour, dYsour, *dXdest, *dYdest); });
    }
    STDMETHODIMP bTrXYArr(SAFEARRAY** dX, SAFEARRAY** dY, SAFEARRAY** dXtr, SAFEARRAY** dYtr,
                          VARIANT_BOOL* result) override {
        return Result(result, [&] {
            std::vector<double> firsts;
            std::vector<double> seconds;
            if (!core_->bTrXYArr(NumbersOf(*dX), NumbersOf(*dY), firsts, seconds)) return false;
            SetNumbers(dXtr, firsts);
            SetNumbers(dYtr, seconds);
            return true;
        });
    }

    STDMETHODIMP sListXYs(BSTR* result) override {
        return Result(result, [&] { return core_->sListXYs(); });
    }
    STDMETHODIMP bSaveXYs4Tr(BSTR* name, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_->bSaveXYs4Tr(Utf8(*name)); });
    }
    STDMETHODIMP bLoadXYsFromFile(BSTR* name, VARIANT_BOOL append, VARIANT_BOOL* result) override {
        return Result(result,
                      [&] { return core_->bLoadXYsFromFile(Utf8(*name), FromCom(append)); });
    }
    STDMETHODIMP bChooseFile4LoadXYs4Tr(BSTR* name, BSTR* folder, LONG* owner,
                                        VARIANT_BOOL* result) override {
        return Choose(&clsTrCalc::bChooseFile4LoadXYs4Tr, name, folder, *owner, result);
    }
    STDMETHODIMP bChooseFile4SaveXYs4Tr(BSTR* name, BSTR* folder, LONG* owner,
                                        VARIANT_BOOL* result) override {
        return Choose(&clsTrCalc::bChooseFile4SaveXYs4Tr, name, folder, *owner, result);
    }
    STDMETHODIMP SaveLog(BSTR* name, LONG* language) override {
        return Run([&] { core_->SaveLog(Utf8(*name), *language); });
    }
    STDMETHODIMP get_lDebugId(LONG* value) override {
        return Result(value, [&] { return core_->lDebugId(); });
    }
    STDMETHODIMP bDoModal(VARIANT_BOOL showApplyButton, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_->bDoModal(FromCom(showApplyButton)); });
    }
    STDMETHODIMP put_sInitDir(BSTR value) override {
        return Run([&] { core_->sInitDir(Utf8(value)); });
    }
    STDMETHODIMP setLanguageID(LONG language) override {
        return Run([&] { core_->setLanguageID(language); });
    }
    STDMETHODIMP TearDown() override {
        return Run([&] { core_->TearDown(); });
    }
    STDMETHODIMP get_vXYs(VARIANT* value) override {
        return Run([&] {
            OwnArray pairs;
            SetPairs(pairs.Place(), core_->Pairs());
            value->parray = TableOf(kXYs4Tr, pairs.Get());
            value->vt = VT_ARRAY | VT_VARIANT;
        });
    }

protected:
    void* OtherInterface(REFIID id) override {
        if (id != IID_IConnectionPointContainer) return nullptr;
        return static_cast<IConnectionPointContainer*>(this);
    }
    const GUID* Events() const override { return &DIID___clsTrCalc; }

private:
    HRESULT Choose(auto chooser, BSTR* name, BSTR* folder, LONG owner, VARIANT_BOOL* result) {
        return Result(result, [&] {
            std::string file = Utf8(*name);
            std::string initial = Utf8(*folder);
            const bool chosen = (core_.get()->*chooser)(file, initial, owner);
            SetText(name, file);
            SetText(folder, initial);
            return chosen;
        });
    }

    std::shared_ptr<kv_tr::clsTrCalc> core_;
    Connection listeners_{*this};
    Subscription lowered_;
};

}  // namespace

_clsTrCalc* Wrap(std::shared_ptr<kv_tr::clsTrCalc> engine) { return new TrCalc(std::move(engine)); }
IDispatch* NewTrCalc() { return Wrap(std::make_shared<kv_tr::clsTrCalc>()); }

}  // namespace kv_tr::com
