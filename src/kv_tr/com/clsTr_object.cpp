// clsTr for hosts that create it by name.
#include <optional>

#include "kv_tr/com/classes.h"
#include "kv_tr/com/record_ids.h"
#include "kv_tr/com/values.h"
#include "kv_tr/published/clsTr.h"

namespace kv_tr::com {
namespace {

/// An optional title: nothing when it is left out or is no text.
std::optional<std::string> TitleOf(const VARIANT& title) {
    if (title.vt == VT_ERROR) return std::nullopt;
    OwnVariant text;
    Convert(*text, title, VT_BSTR);
    return Utf8(text->bstrVal);
}

class Tr final : public Object<_clsTr> {
public:
    Tr() : Object(IID__clsTr, CLSID_clsTr) { TakeOver(engine_, Wrap(core_.oCalcTr())); }

    STDMETHODIMP get_gName(BSTR* value) override {
        return Result(value, [&] { return core_.gName; });
    }
    STDMETHODIMP put_gName(BSTR value) override {
        return Run([&] { core_.gName = Utf8(value); });
    }
    STDMETHODIMP get_gId(LONG* value) override { return *value = core_.gId, S_OK; }
    STDMETHODIMP put_gId(LONG value) override { return core_.gId = value, S_OK; }
    STDMETHODIMP get_PI(double* value) override { return *value = core_.PI, S_OK; }
    STDMETHODIMP put_PI(double value) override { return core_.PI = value, S_OK; }
    STDMETHODIMP get_RAD_90(double* value) override { return *value = core_.RAD_90, S_OK; }
    STDMETHODIMP put_RAD_90(double value) override { return core_.RAD_90 = value, S_OK; }
    STDMETHODIMP get_RAD_180(double* value) override { return *value = core_.RAD_180, S_OK; }
    STDMETHODIMP put_RAD_180(double value) override { return core_.RAD_180 = value, S_OK; }
    STDMETHODIMP get_RAD_270(double* value) override { return *value = core_.RAD_270, S_OK; }
    STDMETHODIMP put_RAD_270(double value) override { return core_.RAD_270 = value, S_OK; }
    STDMETHODIMP get_RAD_360(double* value) override { return *value = core_.RAD_360, S_OK; }
    STDMETHODIMP put_RAD_360(double value) override { return core_.RAD_360 = value, S_OK; }

    STDMETHODIMP get_lDebugId(LONG* value) override {
        return Result(value, [&] { return core_.lDebugId(); });
    }
    STDMETHODIMP TearDown() override {
        return Run([&] {
            core_.TearDown();
            engine_.Reset();
        });
    }
    STDMETHODIMP get_lNumberOfParameters(LONG* value) override {
        return Result(value, [&] { return core_.lNumberOfParameters(); });
    }
    STDMETHODIMP get_udtTrPrm(::TR_PRM* value) override {
        return Result(value, [&] { return core_.udtTrPrm(); });
    }
    STDMETHODIMP put_udtTrPrm(::TR_PRM* value) override {
        return Run([&] { core_.udtTrPrm(FromCom(*value)); });
    }
    STDMETHODIMP put_udtTrAffinPrm(::AFFIN_PRM* value) override {
        return Run([&] { core_.udtTrAffinPrm(FromCom(*value)); });
    }
    STDMETHODIMP put_udtTrPrmByDAT2M1(::enuTR_TYPE value) override {
        return Run([&] { core_.udtTrPrmByDAT2M1(FromCom(value)); });
    }
    STDMETHODIMP bLoadByDAT2M1(VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bLoadByDAT2M1(); });
    }
    STDMETHODIMP bGetAffinPrm(double* a0, double* a1, double* a2, double* b0, double* b1,
                              double* b2, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bGetAffinPrm(*a0, *a1, *a2, *b0, *b1, *b2); });
    }
    STDMETHODIMP bGetHelmertPrm(double* a0, double* a1, double* a2, double* b0, double* b1,
                                double* b2, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bGetHelmertPrm(*a0, *a1, *a2, *b0, *b1, *b2); });
    }
    STDMETHODIMP bGetInversePrm(::AFFIN_PRM* record, VARIANT_BOOL* result) override {
        return Result(result, [&] {
            kv_tr::AFFIN_PRM inverse = FromCom(*record);
            const bool has = core_.bGetInversePrm(inverse);
            *record = ToCom(inverse);
            return has;
        });
    }
    STDMETHODIMP get_sTrTypeName(BSTR* value) override {
        return Result(value, [&] { return core_.sTrTypeName(); });
    }
    STDMETHODIMP TrXY(double dX, double dY, double* dXtr, double* dYtr) override {
        return Run([&] { core_.TrXY(dX, dY, *dXtr, *dYtr); });
    }

    STDMETHODIMP bChooseFile4LoadAffinTrPrm(BSTR* name, BSTR* folder, LONG* owner,
                                            VARIANT_BOOL* result) override {
        return Choose(&clsTr::bChooseFile4LoadAffinTrPrm, name, folder, *owner, result);
    }
    STDMETHODIMP bChooseFile4SaveAffinTrPrm(BSTR* name, BSTR* folder, LONG* owner,
                                            VARIANT_BOOL* result) override {
        return Choose(&clsTr::bChooseFile4SaveAffinTrPrm, name, folder, *owner, result);
    }
    STDMETHODIMP bChooseFile4LoadPoliTrPrm(BSTR* name, BSTR* folder, LONG* owner,
                                           VARIANT_BOOL* result) override {
        return Choose(&clsTr::bChooseFile4LoadPoliTrPrm, name, folder, *owner, result);
    }
    STDMETHODIMP bChooseFile4SavePoliTrPrm(BSTR* name, BSTR* folder, LONG* owner,
                                           VARIANT_BOOL* result) override {
        return Choose(&clsTr::bChooseFile4SavePoliTrPrm, name, folder, *owner, result);
    }
    STDMETHODIMP bTypeIsPolinom(VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bTypeIsPolinom(); });
    }
    STDMETHODIMP bChooseTrPrm(VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bChooseTrPrm(); });
    }
    STDMETHODIMP bChooseFileAndSaveTrPrm(BSTR* name, BSTR* folder, LONG* owner,
                                         VARIANT* result) override {
        VariantInit(result);  // the result that is documented is none
        return WithTexts(name, folder, [&](std::string& file, std::string& initial) {
            core_.bChooseFileAndSaveTrPrm(file, initial, *owner);
        });
    }

    STDMETHODIMP bSaveAffinTrPrm(BSTR* name, VARIANT_BOOL* itr25, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bSaveAffinTrPrm(Utf8(*name), FromCom(*itr25)); });
    }
    STDMETHODIMP bLoadAffinTrPrmFromFile(BSTR* name, VARIANT_BOOL* itr25,
                                         VARIANT_BOOL* result) override {
        return Result(result,
                      [&] { return core_.bLoadAffinTrPrmFromFile(Utf8(*name), FromCom(*itr25)); });
    }
    STDMETHODIMP bLoadPoliTrPrmFromFile(BSTR* name, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bLoadPoliTrPrmFromFile(Utf8(*name)); });
    }
    STDMETHODIMP bSavePoliTrPrm(BSTR* name, VARIANT title, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bSavePoliTrPrm(Utf8(*name), TitleOf(title)); });
    }
    STDMETHODIMP sListHelmertTrPrm(VARIANT title, BSTR* result) override {
        return Result(result, [&] { return core_.sListHelmertTrPrm(TitleOf(title)); });
    }
    STDMETHODIMP sListPoliTrPrm(VARIANT title, BSTR* result) override {
        return Result(result, [&] { return core_.sListPoliTrPrm(TitleOf(title)); });
    }
    STDMETHODIMP bShowAffinTrPrm(VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bShowAffinTrPrm(); });
    }
    STDMETHODIMP bShowPoliTrPrm(VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bShowPoliTrPrm(); });
    }
    STDMETHODIMP bShowXYs4Tr(BSTR* title, VARIANT_BOOL* result) override {
        return Result(result, [&] { return core_.bShowXYs4Tr(Utf8(*title)); });
    }
    STDMETHODIMP TrAngle(double dAngle, double* dAngleTr, double dX, double dY,
                         double* dLength) override {
        return Run([&] { core_.TrAngle(dAngle, *dAngleTr, dX, dY, *dLength); });
    }
    STDMETHODIMP get_oCalcTr(_clsTrCalc** value) override {
        *value = nullptr;
        return Run([&] {
            core_.oCalcTr();  // throws once the engine has been let go
            Check(engine_.CopyTo(value));
        });
    }
    STDMETHODIMP put_sInitDir(BSTR value) override {
        return Run([&] { core_.sInitDir(Utf8(value)); });
    }
    STDMETHODIMP get_vTrPrm(VARIANT* value) override {
        return Run([&] {
            const kv_tr::TR_PRM record = core_.udtTrPrm();
            value->parray = FieldsOf(kTrPrm, &record);
            value->vt = VT_ARRAY | VT_VARIANT;
        });
    }
    STDMETHODIMP put_vTrPrm(VARIANT value) override {
        return Run([&] {
            kv_tr::TR_PRM record;
            SetFields(kTrPrm, value, &record);
            core_.udtTrPrm(record);
        });
    }

private:
    /// Calls a member that changes a file name and a folder.
    HRESULT WithTexts(BSTR* name, BSTR* folder, auto member) {
        return Run([&] {
            std::string file = Utf8(*name);
            std::string initial = Utf8(*folder);
            member(file, initial);
            SetText(name, file);
            SetText(folder, initial);
        });
    }
    HRESULT Choose(auto chooser, BSTR* name, BSTR* folder, LONG owner, VARIANT_BOOL* result) {
        return WithTexts(name, folder, [&](std::string& file, std::string& initial) {
            *result = ToCom((core_.*chooser)(file, initial, owner));
        });
    }

    kv_tr::clsTr core_;
    ComPtr<_clsTrCalc> engine_;
};

}  // namespace

IDispatch* NewTr() { return new Tr; }

}  // namespace kv_tr::com
