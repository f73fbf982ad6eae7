// The adjustment dialog without its window: what it shows and what each control does.
#include "kv_tr/forms/frmTr.h"

#include <algorithm>
#include <array>
#include <utility>

#include "kv_tr/forms/save_parameters.h"
#include "kv_tr/forms/save_report.h"
#include "kv_tr/forms/scratch_transformation.h"
#include "kv_tr/published/GCommonDialog.h"
#include "kv_tr/published/component.h"
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
    engine_ = &engine;
    Adjustment& adjustment = engine.Held();
    const Solution solution = engine.Solution();
    findings_.emplace(adjustment);
    table_.emplace(adjustment, engine.gdErrLimit, Changed, &*findings_);
    plan_.emplace(adjustment, engine.gdErrLimit, Changed);
    applied_ = false;
    exited_ = false;
    panel_ = Panel::kNone;
    allWarningsShown_ = false;
    applyVisible_ = showApplyButton;
    captions_ = Captions(TrCaptions());
    captions_.SetToolTip("RadioTrType(8)", Text::kHelmert3Unknowns);
    captions_.SetToolTip("RadioTrType(7)", Text::kAffine5Unknowns);
    if (!showApplyButton) captions_.SetCaption("cmdExit", Text::kContinue);
    captions_.SetText("lblKh", [&] { return FiguresText(adjustment.Figures()); });
    captions_.SetText("lblCnt", [&] { return UsedCountText(adjustment); });
    captions_.SetText("lblExtCnt", [&] { return ExcludedCountText(adjustment); });
    // Texts of their own for the controls that the letters of the others come before.
    captions_.SetText("chkAccurate", [] { return Translated(Text::kAccurateSolution); });
    captions_.SetText("cmdOffer", [this] { return FirstOffer(); });
    captions_.SetText("cmdMoreWarnings", [this] { return MoreWarnings(); });
    const Subscription edited = table_->Edited.Subscribe([this] { RecalculateAfterEdit(); });
    const Subscription typeChanged =
        engine.TypeChanched.Subscribe([this](enuTR_TYPE&) { Changed.Raise(); });
    opMode(Mode::kTable);
    Activate();
    Recalculate();
    showModal();
    captions_ = Captions(TrCaptions());
    plan_.reset();
    table_.reset();
    findings_.reset();
    engine.Solution(solution);
    engine_ = nullptr;
    return showApplyButton ? applied_ : exited_;
}

int frmTr::SelectedType() const {
    const auto found = std::ranges::find(kTypes, engine_->eTrType());
    return found == kTypes.end() ? 0 : static_cast<int>(found - kTypes.begin());
}

void frmTr::Grid1DblClick(int row, int column) {
    if (mode_ != Mode::kTable || row == 0) return;
    const ChangeEvent::Action action(Changed);
    Fit([&] { engine_->ExcludeByIx(row - 1, true); });
    table_->Grid1EnterCell(0, column);
}

void frmTr::Grid1MouseUp(int anchorRow, int row) {
    if (mode_ != Mode::kTable) return;
    const ChangeEvent::Action action(Changed);
    Changed.Raise();
    const auto [first, last] = std::minmax(anchorRow, row);
    for (int number = std::max(first, 1); number <= last; ++number) {
        engine_->ExcludeByIx(number - 1, false);
    }
    Recalculate();
}

bool frmTr::PicBoxMouseUp(double x, double y) {
    if (!plan_->PicBoxMouseUp()) return false;
    const auto nearest = plan_->NearestTo(x, y);
    if (!nearest) {
        ShowMessage(Translated(Text::kPickNearer), Icon::kInformation);
        return false;
    }
    Fit([&] { engine_->ExcludeByIx(*nearest, true); });
    return true;
}

void frmTr::opMode(Mode mode) {
    constexpr std::array kToolTips{Text::kTableModeTip, Text::kEditModeTip,
                                   Text::kGraphModeTip};  // by mode
    const ChangeEvent::Action action(Changed);
    mode_ = mode;
    captions_.SetToolTip("Grid1", kToolTips[static_cast<std::size_t>(mode)]);
    table_->Editable(mode == Mode::kEdit);
    if (mode == Mode::kGraph) plan_->CalcScale4Pic();  // points may have been swapped or edited
    Changed.Raise();
}

void frmTr::RadioTrType(int index) {
    const ChangeEvent::Action action(Changed);
    const enuTR_TYPE type = kTypes[static_cast<std::size_t>(index)];
    Changed.Raise();  // a button that is refused has marked itself
    if (engine_->bXYCntIsValid4TrType(type)) {
        engine_->eTrType(type);
        Recalculate();
    } else {
        ShowMessage(Translated(Text::kTooFewPoints));
    }
}

void frmTr::chkInverz() {
    const ChangeEvent::Action action(Changed);
    engine_->SwapSourDest();
    if (mode_ == Mode::kGraph) plan_->CalcScale4Pic();
    Recalculate();
}

bool frmTr::txtLimit(const std::string& text) {
    if (text == limitText_) return true;
    const auto limit = TypedNumber(text);
    if (!limit) {
        ShowMessage(text, Icon::kExclamation, Translated(Text::kBadValueTitle));
        return false;
    }
    engine_->gdErrLimit = *limit;
    limitText_ = text;
    Changed.Raise();
    return true;
}

void frmTr::Activate() {
    const std::string text = kv_tr::LimitText(engine_->gdErrLimit);
    if (std::exchange(limitText_, text) != text) Changed.Raise();
}

void frmTr::cmdRemoveExt() {
    if (engine_->Held().UsedCount() < 2) {
        ShowMessage(Translated(Text::kTwoPointsNeeded), Icon::kInformation,
                    Translated(Text::kRemoveExcludedTitle));
        return;
    }
    const ChangeEvent::Action action(Changed);
    table_->CloseEditor();
    engine_->Held().RemoveExcluded();
    findings_->Forget();
    Changed.Raise();
}

void frmTr::cmsResetExt() {
    Fit([this] { engine_->ResetAllNotUsed(); });
}

void frmTr::cmdSaveLog() {
    FileDialogArguments arguments{.Filter = Translated(Text::kLogFilter) + "|*.txt",
                                  .InitDir = InitDir(),
                                  .DlgTitle = Translated(Text::kSaveLog),
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

void frmTr::cmdReport() {
    if (engine_->lFullCnt() == 0) {
        ShowMessage(Translated(Text::kNothingToReport), Icon::kExclamation);
        return;
    }
    FileDialogArguments arguments{.Filter = "HTML (*.html)|*.html",
                                  .InitDir = InitDir(),
                                  .DlgTitle = Translated(Text::kReportTitle),
                                  .DefaultExt = "html"};
    if (MakerOfPdf()) arguments.Filter += "|PDF (*.pdf)|*.pdf";
    if (!GCommonDialog().VBGetSaveFileName(arguments)) return;
    RememberFolderOf(arguments.Filename);
    const std::string day = DayOfReportOrMessage();
    if (day.empty()) return;
    std::vector<ReportFile> files;
    for (const PointSource& file : engine_->Files()) files.push_back(ReportFileOf(file));
    const Report report = ReportOf({.adjustment = engine_->Held(),
                                    .assessment = findings_->Assessed(),
                                    .advice = findings_->Advised(),
                                    .options = {},
                                    .outcome = engine_->Outcome(),
                                    .solution = engine_->Solution(),
                                    .limit = engine_->gdErrLimit,
                                    .files = files,
                                    .date = day,
                                    .version = ReportingProgram()},
                                   ComponentTexts(), ComponentNumberStyle());
    SaveReport(report, arguments.Filename, MakerOfPdf());
    Changed.Raise();  // advice has been computed, which may add a warning
}

void frmTr::cmdExit() {
    applied_ = false;
    exited_ = true;
}

std::vector<StripLine> frmTr::Strip() const {
    if (panel_ == Panel::kStatistics || table_->IsAnyGroupShown()) findings_->Assessed();
    if (panel_ == Panel::kTypes) findings_->Advised();
    return StripOf(*findings_);
}

void frmTr::cmdOffer(const StripLine& line) {
    const Warning& warning = line.warning;
    const ChangeEvent::Action action(Changed);
    switch (warning.offer) {
        case Warning::Offer::kNone: return;
        case Warning::Offer::kAccurate: return Solve(Solution::kAccurate);
        case Warning::Offer::kType: return UseType(*warning.offeredType);
        case Warning::Offer::kDeleteExcluded: cmdRemoveExt(); return Recalculate();
        case Warning::Offer::kExclude: break;
    }
    if (!engine_->Held().Points()[*warning.point].used) return;
    Fit([&] { engine_->ExcludeByIx(static_cast<std::int32_t>(*warning.point), true); });
}

void frmTr::cmdMoreWarnings() {
    allWarningsShown_ = !allWarningsShown_;
    Changed.Raise();
}

std::string frmTr::FirstOffer() const {
    const auto lines = Strip();
    return lines.empty() ? std::string() : lines.front().offer;
}

std::string frmTr::MoreWarnings() const {
    const auto lines = Strip();
    return lines.size() < 2 ? std::string()
                            : Translated(Text::kMoreWarnings, {std::to_string(lines.size() - 1)});
}

void frmTr::TogglePanel(Panel panel) {
    panel_ = panel_ == panel ? Panel::kNone : panel;
    Changed.Raise();
}

int frmTr::TypesRow() const {
    const auto& types = findings_->Advised().types;
    const Type fitted = ModelOf(TypeOf(engine_->eTrType()));
    const auto found = std::ranges::find(types, fitted, &TypeFigures::type);
    return found == types.end() ? -1 : static_cast<int>(found - types.begin());
}

void frmTr::FitTypeOf(int row) {
    const auto& types = findings_->Advised().types;
    if (row < 0 || row >= std::ssize(types)) return;
    UseType(types[static_cast<std::size_t>(row)].type);
}

void frmTr::UseType(Type type) {
    const auto found = std::ranges::find(kTypes, PublishedType(type));
    if (found != kTypes.end()) RadioTrType(static_cast<int>(found - kTypes.begin()));
}

void frmTr::cmdColumns() { table_->ToggleAllGroups(); }

void frmTr::chkAccurate() {
    Solve(AccurateChecked() ? Solution::kDocumented : Solution::kAccurate);
}

void frmTr::Solve(Solution solution) {
    engine_->Solution(solution);
    Recalculate();
}

void frmTr::Recalculate() {
    Fit([this] { engine_->DoCalcTr(); });
}

/// The points no longer are those of their files, whose checksums would mislead.
void frmTr::RecalculateAfterEdit() {
    std::vector<PointSource> files = engine_->Files();
    for (PointSource& file : files) file.changed.reset();
    engine_->Files(std::move(files));
    Recalculate();
}

/// Runs what ends with a fit. When there is none, the user is told and the type goes back to the
/// one that was fitted last, or a step down from it, so that all figures belong to the pairs.
void frmTr::Fit(const std::function<void()>& fit) {
    const ChangeEvent::Action action(Changed);
    Changed.Raise();
    findings_->Forget();  // the points may be others already, and a message may show them
    try {
        fit();
    } catch (const RuntimeError& error) {
        if (error.Number() != ErrorNumber::kDivisionByZero) throw;
        ShowMessage(Translated(Text::kCannotCompute));
        const enuTR_TYPE failed = engine_->eTrType();
        const Type lower = StepDown(TypeOf(failed)).value_or(Type::kHelmert);
        engine_->eTrType(failed == fittedType_ ? PublishedType(lower) : fittedType_);
        engine_->DoCalcTr();
        Changed.Raise();
    }
    findings_->Forget();
    fittedType_ = engine_->eTrType();
}

}  // namespace kv_tr
