// The dialogs of the component: forms, shown by whatever windows a host has.
#include "kv_tr/forms/dialogs.h"

#include <utility>

#include "kv_tr/published/console_platform.h"

namespace kv_tr {
namespace {

class FormDialogs : public Dialogs {
public:
    explicit FormDialogs(Windows windows) : windows_(std::move(windows)) {}

    bool Adjust(clsTrCalc& engine, bool showApplyButton) override {
        if (!windows_.tr) return withoutWindow_->Adjust(engine, showApplyButton);
        frmTr form;
        return form.bDoModal(engine, showApplyButton, [&] { windows_.tr(form); });
    }
    bool ChooseParameters(clsTr& parameters) override {
        if (!windows_.chooseParameters) return withoutWindow_->ChooseParameters(parameters);
        frmChoosePrm form;
        return form.bDoModal(parameters, [&] { windows_.chooseParameters(form); });
    }
    bool EditAffine(clsTr& parameters) override {
        if (!windows_.affine) return withoutWindow_->EditAffine(parameters);
        frmAffinTrPrm form;
        return form.bDoModal(parameters, [&] { windows_.affine(form); });
    }
    bool ViewPolynomial(clsTr& parameters) override {
        if (!windows_.polynomial) return withoutWindow_->ViewPolynomial(parameters);
        frmPoliTrPrm form;
        return form.bDoModal(parameters, [&] { windows_.polynomial(form); });
    }
    bool ChooseNational(enuTR_TYPE& type) override {
        if (!windows_.chooseNational) return withoutWindow_->ChooseNational(type);
        frmChooseDAT2M1 form;
        return form.bDoModal(type, [&] { windows_.chooseNational(form); });
    }
    bool ListControlPoints(clsTr& parameters, const std::string& title) override {
        if (!windows_.controlPoints) return withoutWindow_->ListControlPoints(parameters, title);
        frmXY4Tr form;
        return form.bDoModal(*parameters.oCalcTr(), title, [&] { windows_.controlPoints(form); });
    }

private:
    Windows windows_;
    std::unique_ptr<Dialogs> withoutWindow_ = ConsolePlatform().dialogs;
};

}  // namespace

std::unique_ptr<Dialogs> MakeDialogs(Windows windows) {
    return std::make_unique<FormDialogs>(std::move(windows));
}

}  // namespace kv_tr
