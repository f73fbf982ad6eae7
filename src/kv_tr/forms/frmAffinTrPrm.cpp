// The editor of six parameters without its window: what it shows and what each control does.
#include "kv_tr/forms/frmAffinTrPrm.h"

#include "kv_tr/files/open_text.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/forms/choose_file.h"
#include "kv_tr/forms/save_parameters.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/affine_record.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {

bool frmAffinTrPrm::bDoModal(clsTr& parameters, const std::function<void()>& showModal) {
    parameters_ = &parameters;
    Take(AffineOf(parameters.bTypeIsPolinom() ? Transformation{}
                                              : TransformationOf(parameters.udtTrPrm())));
    fathomButtonsVisible_ = CurrentMlLanguage() == kHungarian;
    confirmed_ = false;
    showModal();
    parameters.udtTrAffinPrm(Working());
    parameters_ = nullptr;
    return confirmed_;
}

void frmAffinTrPrm::Take(const AFFIN_PRM& record) {
    type_ = record.eType;
    values_ = {record.dA0, record.dA1, record.dA2, record.dB0, record.dB1, record.dB2};
    Changed.Raise();
}

AFFIN_PRM frmAffinTrPrm::Working() const {
    const auto& [a0, a1, a2, b0, b1, b2] = values_;
    return {.eType = type_, .dA0 = a0, .dA1 = a1, .dA2 = a2, .dB1 = b1, .dB0 = b0, .dB2 = b2};
}

std::string frmAffinTrPrm::BoxText(int box) const {
    const bool shift = box % 3 == 0;
    return FormatFixed(values_[static_cast<std::size_t>(box)], shift ? 3 : 8, 0);
}

std::string frmAffinTrPrm::SampleText(int line) const {
    const int first = 3 * line;
    return (line == 0 ? " Y' = [" : " X' = [") + BoxText(first) + "] + [" + BoxText(first + 1) +
           "] * Y + [" + BoxText(first + 2) + "] * X";
}

bool frmAffinTrPrm::txtTrPrm(int box, const std::string& text) {
    const auto number = TypedNumber(text);
    if (number) {
        // What was shown is not the whole value: leaving the box as it is must not round it.
        if (text != BoxText(box)) values_[static_cast<std::size_t>(box)] = *number;
    } else {
        ShowMessage(text, Icon::kExclamation, Translated(Text::kBadValueTitle));
    }
    Changed.Raise();
    return number.has_value();
}

void frmAffinTrPrm::cmdMeterOl() { Take(AffineOf(MetreToFathom())); }

void frmAffinTrPrm::cmdOlMeter() { Take(AffineOf(FathomToMetre())); }

void frmAffinTrPrm::cmdLoad() {
    const auto fileName = ChooseFile(*parameters_, &clsTr::bChooseFile4LoadAffinTrPrm);
    if (!fileName) return;
    auto file = OpenText(*fileName);
    if (!file) return ReportOpenFailure(*fileName);
    Transformation loaded = TransformationOf(parameters_->udtTrPrm());
    if (IsPolynomial(loaded.type)) loaded.type = Type::kAffine;
    TextLines lines(*file->rdbuf(), FilesCodePage());
    const auto problem = ReadLinear(
        lines, HasExtension(*fileName, "prm") ? LinearFormat::kItr25 : LinearFormat::kNative,
        ComponentNumberStyle(), SuspectCommas::kTaken, loaded);
    parameters_->udtTrPrm(RecordOf(loaded));
    if (problem) return ShowMessage(Translated(Text::kBadFormat), Icon::kExclamation);
    parameters_->gName = DirectoryOf(*fileName);
    Take(AffineOf(TransformationOf(parameters_->udtTrPrm())));
}

void frmAffinTrPrm::cmdSave() {
    const auto fileName = ChooseFile(*parameters_, &clsTr::bChooseFile4SaveAffinTrPrm);
    if (!fileName) return;
    if (parameters_->bTypeIsPolinom()) {
        ShowMessage(Translated(Text::kFormatCannotHold, {*fileName, parameters_->sTrTypeName()}),
                    Icon::kExclamation);
    } else if (SuitsParameters(*fileName, parameters_->udtTrPrm().eType)) {
        parameters_->bSaveAffinTrPrm(*fileName, HasExtension(*fileName, "prm"));
    }
}

std::string frmAffinTrPrm::cmdCopyAs(TransformationFormat format) const {
    const auto& [a0, a1, a2, b0, b1, b2] = values_;
    return CopiedText({.type = TypeOf(type_), .a = {a0, a1, a2}, .b = {b0, b1, b2}}, format);
}

bool frmAffinTrPrm::cmdOk() {
    confirmed_ = values_ != std::array{0.0, 1.0, 0.0, 0.0, 0.0, 1.0} ||
                 Ask({.text = Translated(Text::kIdentityQuestion) + "\r\n" +
                              Translated(Text::kStartQuestion),
                      .title = Translated(Text::kWarningTitle),
                      .icon = Icon::kExclamation,
                      .buttons = Buttons::kYesNo,
                      .defaultAnswer = Answer::kNo}) == Answer::kYes;
    return confirmed_;
}

}  // namespace kv_tr
