// The chooser of where parameters come from, without its window.
#include "kv_tr/forms/frmChoosePrm.h"

#include "kv_tr/forms/choose_file.h"
#include "kv_tr/published/control_point_file.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {

bool frmChoosePrm::bDoModal(clsTr& parameters, const std::function<void()>& showModal) {
    parameters_ = &parameters;
    chosen_ = parameters.udtTrPrm();
    confirmed_ = false;
    showModal();
    parameters.udtTrPrm(chosen_);
    parameters_ = nullptr;
    return confirmed_;
}

bool frmChoosePrm::cmdAffin() {
    return parameters_->bShowAffinTrPrm() && Confirm(parameters_->udtTrPrm());
}

bool frmChoosePrm::cmdPoli() {
    return parameters_->bShowPoliTrPrm() && Confirm(parameters_->udtTrPrm());
}

bool frmChoosePrm::cmdCalc() {
    const auto owner = parameters_->oCalcTr();  // a host may let it go while a dialog is open
    clsTrCalc& engine = *owner;
    const auto fileName = ChooseFile(engine, &clsTrCalc::bChooseFile4LoadXYs4Tr);
    if (!fileName) return false;
    const LoadedPoints loaded = LoadControlPoints(*fileName, Comma::kSuspect);
    ReportFailure(loaded);
    if (!loaded.refused) {
        engine.Take(loaded.points, false);
        engine.Files({loaded.source});
    }
    if (!loaded.accepted || !parameters_->bShowXYs4Tr(*fileName)) return false;
    if (engine.lFullCnt() == 0) {
        ShowMessage(Translated(Text::kTooFewPoints));
        return false;
    }
    engine.eTrType(TR_AFFIN);
    return engine.bDoModal(true) && Confirm(engine.udtTrPrm());
}

bool frmChoosePrm::cmdOk() { return Confirm(chosen_); }

bool frmChoosePrm::Confirm(const TR_PRM& record) {
    chosen_ = record;
    confirmed_ = true;
    return true;
}

}  // namespace kv_tr
