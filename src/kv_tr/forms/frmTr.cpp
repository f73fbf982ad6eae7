// The adjustment dialog without its window: what it shows and what each control does.
#include "kv_tr/forms/frmTr.h"

#include <algorithm>
#include <array>

#include "kv_tr/forms/save_parameters.h"
#include "kv_tr/forms/scratch_transformation.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {
namespace {

/// The types of the buttons RadioTrType(0), (1), ...
constexpr std::array kTypes{TR_HELMERT, TR_AFFIN,  TR_POLI_1,  TR_POLI_2,    TR_POLI_3,
                            TR_POLI_4,  TR_POLI_5, TR_AFFIN_5, TR_HELMERT_3, TR_BILINEAR};

}  // namespace

bool frmTr::bDoModal(clsTrCalc& engine, bool showApplyButton,
                     const std::function<void()>& showModal) {
    applied_ = false;
    exited_ = false;
    captions_.SetToolTip("RadioTrType(8)", 109);
    captions_.SetToolTip("RadioTrType(7)", 110);
    applyVisible_ = showApplyButton;
    if (!showApplyButton) captions_.SetCaption("cmdExit", 111);
    engine_ = &engine;
    Activate();
    const Subscription typeChanged =
        engine.TypeChanched.Subscribe([this](enuTR_TYPE& type) { SelectTypeOf(type); });
    const Subscription languageChanged = OnLanguageChange([this] { ShowResult(); });
    SelectTypeOf(engine.eTrType());
    CalcScale4Pic();
    Recalculate();
    showModal();
    engine_ = nullptr;
    return showApplyButton ? applied_ : exited_;
}

void frmTr::opMode(Mode mode) {
    constexpr std::array kToolTips{87, 88, 89};  // by mode
    mode_ = mode;
    captions_.SetToolTip("Grid1", kToolTips[static_cast<std::size_t>(mode)]);
    editor_.visible = false;
    if (mode == Mode::kGraph) CalcScale4Pic();  // points may have been swapped or edited
    ShowResult();
}

void frmTr::RadioTrType(int index) {
    const enuTR_TYPE type = kTypes[static_cast<std::size_t>(index)];
    if (engine_->bXYCntIsValid4TrType(type)) {
        engine_->eTrType(type);
        Recalculate();
    } else {
        ShowMessage(GetMlString(97, "A választott transzformációhoz kevés a közös pont!"));
    }
    SelectTypeOf(engine_->eTrType());
    ShowResult();
}

void frmTr::chkInverz() {
    engine_->SwapSourDest();
    if (mode_ == Mode::kGraph) CalcScale4Pic();
    Recalculate();
}

bool frmTr::txtLimit(const std::string& text) {
    if (text == limitText_) return true;
    const auto limit = TypedNumber(text);
    if (!limit) {
        ShowMessage(text, Icon::kExclamation, GetMlString(84, "Hibás érték!"));
        return false;
    }
    engine_->gdErrLimit = *limit;
    limitText_ = text;
    ShowResult();
    return true;
}

void frmTr::Activate() {
    limitText_ = kv_tr::LimitText(engine_->gdErrLimit);
    Changed.Raise();
}

void frmTr::cmdRemoveExt() {
    if (engine_->Held().UsedCount() < 2) {
        ShowMessage(GetMlString(112, "Legalább két érvényes pontpárnak kell lenni!"),
                    Icon::kInformation, GetMlString(113, "Kizárt pontok törlése"));
        return;
    }
    engine_->Held().RemoveExcluded();
    editor_.visible = false;
    currentRow_ = std::min(currentRow_, RowCount() - 1);
    SelectTypeOf(engine_->eTrType());
    ShowResult();
}

void frmTr::cmsResetExt() {
    Fit([this] { engine_->ResetAllNotUsed(); });
    SelectTypeOf(engine_->eTrType());
    ShowResult();
}

void frmTr::cmdSaveLog() {
    FileDialogArguments arguments{.Filter = GetMlString(100, "Jegyzőkönyv (*.txt)") + "|*.txt",
                                  .InitDir = InitDir(),
                                  .DlgTitle = GetMlString(36, "Jegyzőkönyv mentése"),
                                  .DefaultExt = "txt"};
    if (!GCommonDialog().VBGetSaveFileName(arguments)) return;
    engine_->SaveLog(arguments.Filename);
    RememberFolderOf(arguments.Filename);
}

void frmTr::cmdSavePrm() {
    ScratchTransformation parameters;
    parameters.udtTrPrm(engine_->udtTrPrm());
    ChooseFileAndSave(parameters);
}

void frmTr::cmdExit() {
    applied_ = false;
    exited_ = true;
}

void frmTr::SelectTypeOf(enuTR_TYPE type) {
    const auto found = std::ranges::find(kTypes, type);
    selectedType_ = found == kTypes.end() ? 0 : static_cast<int>(found - kTypes.begin());
    Changed.Raise();
}

void frmTr::ShowResult() {
    captions_.SetText("lblKh", FiguresText(engine_->Held().Figures()));
    captions_.SetText("lblCnt", UsedCountText(engine_->Held()));
    captions_.SetText("lblExtCnt", ExcludedCountText(engine_->Held()));
    marksAreCurrent_ = false;
    Changed.Raise();
}

void frmTr::Recalculate() {
    Fit([this] { engine_->DoCalcTr(); });
    ShowResult();
}

/// Runs what ends with a fit. When there is none, the user is told and the type goes back to the
/// one that was fitted last, or a step down from it, so that all figures belong to the pairs.
void frmTr::Fit(const std::function<void()>& fit) {
    try {
        fit();
    } catch (const RuntimeError& error) {
        if (error.Number() != ErrorNumber::kDivisionByZero) throw;
        ShowMessage(GetMlString(76, "A transzformáció nem számítható !"));
        const enuTR_TYPE failed = engine_->eTrType();
        const Type lower = StepDown(TypeOf(failed)).value_or(Type::kHelmert);
        engine_->eTrType(failed == fittedType_ ? PublishedType(lower) : fittedType_);
        engine_->DoCalcTr();
        SelectTypeOf(engine_->eTrType());
    }
    fittedType_ = engine_->eTrType();
}

}  // namespace kv_tr
