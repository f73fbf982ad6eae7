// The dialogs of the component: forms, shown by whatever windows a host has.
#include "ui/dialogs.h"

#include <utility>

#include "support/console_platform.h"

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
        return withoutWindow_->ChooseParameters(parameters);
    }
    bool EditAffine(clsTr& parameters) override { return withoutWindow_->EditAffine(parameters); }
    bool ViewPolynomial(clsTr& parameters) override {
        return withoutWindow_->ViewPolynomial(parameters);
    }
    bool ChooseNational(enuTR_TYPE& type) override { return withoutWindow_->ChooseNational(type); }
    bool ListControlPoints(clsTr& parameters, const std::string& title) override {
        return withoutWindow_->ListControlPoints(parameters, title);
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
