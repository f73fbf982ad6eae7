// The captions and tool tips of the controls of a form.
#include "kv_tr/forms/captions.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr {
namespace {

// clang-format off
constexpr Caption kTrCaptions[] = {
    {"frmTr", Text::kAdjustmentTitle},
    {"Grid1", {}, Text::kTableModeTip},
    {"opMode(0)", Text::kTableMode},
    {"opMode(1)", Text::kEditMode},
    {"opMode(2)", Text::kGraphMode},
    {"frmTrType", Text::kTypeFrame},
    {"RadioTrType(0)", Text::kHelmertButton},
    {"RadioTrType(1)", Text::kAffineButton},
    {"RadioTrType(2)", Text::kOrder1Button},
    {"RadioTrType(3)", Text::kOrder2Button},
    {"RadioTrType(4)", Text::kOrder3Button},
    {"RadioTrType(5)", Text::kOrder4Button},
    {"RadioTrType(6)", Text::kOrder5Button},
    {"RadioTrType(7)", Text::kAffine5Button, Text::kAffine5Tip},
    {"RadioTrType(8)", Text::kHelmert3Button, Text::kHelmert3Tip},
    {"RadioTrType(9)", Text::kTrapezoidButton, Text::kBilinearTip},
    {"chkInverz", Text::kInverse},
    {"frmDsp", Text::kDisplayFrame},
    {"chkNr", Text::kDisplayIdentifier},
    {"chkDx", Text::kDisplayFirst},  // crosswise: surveyors call the fields named X Y
    {"chkDy", Text::kDisplaySecond},
    {"chkRad", {}, {}, "Dxy"},
    {"frmRes", Text::kStatisticsFrame},
    {"Label1", Text::kRmsErrorsLabel},
    {"lblKh", Text::kRmsLabel},
    {"lblCnt", Text::kUsedCount},
    {"lblExtCnt", Text::kExcludedCount},
    {"lblLimit", Text::kLimitLabel},
    {"txtLimit", {}, Text::kLimitTip},
    {"cmdRemoveExt", Text::kRemoveExcluded},
    {"cmsResetExt", Text::kReadmitExcluded},
    {"cmdSaveLog", Text::kSaveLog},
    {"cmdSavePrm", Text::kSaveParameters},
    {"cmdApplyResult", Text::kOkOfAdjustment},
    {"cmdExit", Text::kCancelOfAdjustment},
    {"PicBox", {}, Text::kGraphTip},
    {"cmdPrint", Text::kPrint},
    {"cmdSavePicture", Text::kSavePicture},
    {"cmdOffer"},
    {"cmdMoreWarnings"},
    {"cmdStatistics", Text::kStatisticsButton},
    {"cmdTypes", Text::kTypesButton},
    {"cmdColumns", Text::kColumnsButton},
    {"chkAccurate"},
};

constexpr Caption kAffinTrPrmCaptions[] = {
    {"frmAffinTrPrm", Text::kSixParametersTitle},
    {"frmPrm", Text::kSixParametersFrame},
    {"lblTrPrm(0)", Text::kLabelA0},
    {"lblTrPrm(1)", Text::kLabelA1},
    {"lblTrPrm(2)", Text::kLabelA2},
    {"lblTrPrm(3)", Text::kLabelB0},
    {"lblTrPrm(4)", Text::kLabelB1},
    {"lblTrPrm(5)", Text::kLabelB2},
    {"frmSample", Text::kSampleFrame},
    {"lblSample(0)", Text::kSampleFirst},
    {"lblSample(1)", Text::kSampleSecond},
    {"cmdMeterOl", Text::kMetresToFathoms},
    {"cmdOlMeter", Text::kFathomsToMetres},
    {"cmdCopyAs", Text::kCopyAs, Text::kCopyAsTip},
    {"cmdLoad", Text::kBrowse},
    {"cmdSave", Text::kSave},
    {"cmdOk", Text::kOk},
    {"cmdNok", Text::kCancel},
};

constexpr Caption kPoliTrPrmCaptions[] = {
    {"frmPoliTrPrm", Text::kPolynomialTitle},
    {"cmdDAT2M1", Text::kDat2M1Button},
    {"cmdCopyAs", Text::kCopyAs, Text::kCopyAsTip},
    {"cmdLoad", Text::kBrowse},
    {"cmdSave", Text::kSave},
    {"cmdOk", Text::kOk},
    {"cmdNok", Text::kCancel},
};

constexpr Caption kChoosePrmCaptions[] = {
    {"frmChoosePrm", Text::kChooseTitle},
    {"cmdAffin", {}, Text::kSixParametersTip, "Helmert/Affin"},
    {"cmdPoli", Text::kPolynomialButton, Text::kPolynomialTip},
    {"cmdCalc", Text::kByPointsButton, Text::kByPointsTip},
    {"cmdOk", Text::kOkOfAdjustment, Text::kKeepParametersTip},
    {"cmdNok", Text::kCancel},
};

constexpr Caption kChooseDAT2M1Captions[] = {
    {"frmChooseDAT2M1", Text::kNationalTitle},
    {"lstTr", {}, Text::kAccuracyMeaning},
    {"cmdOk", Text::kOk},
    {"cmdNok", Text::kCancel},
};

constexpr Caption kXY4TrCaptions[] = {
    {"frmXY4Tr", Text::kPointsTitle},
    {"cmdLoad", Text::kLoadPointsButton},
    {"cmdSave", Text::kSavePointsButton},
    {"cmdOk", Text::kOk},
    {"cmdNok", Text::kCancel},
};
// clang-format on

}  // namespace

void Captions::SetText(std::string_view control, std::function<std::string()> text) {
    texts_[Row(control).control] = std::move(text);
}

std::string Captions::TextOf(std::string_view control) const {
    if (const auto text = texts_.find(control); text != texts_.end()) return text->second();
    const Caption& row = Row(control);
    return row.caption ? Translated(*row.caption) : std::string(row.literal);
}

std::string Captions::ToolTip(std::string_view control) const {
    const Caption& row = Row(control);
    return row.toolTip ? Translated(*row.toolTip) : std::string();
}

const Caption& Captions::Row(std::string_view control) const {
    const auto row = std::ranges::find(rows_, control, &Caption::control);
    if (row == rows_.end()) throw std::out_of_range(std::string(control));
    return *row;
}

Caption& Captions::Row(std::string_view control) {
    return const_cast<Caption&>(std::as_const(*this).Row(control));
}

std::span<const Caption> TrCaptions() { return kTrCaptions; }
std::span<const Caption> AffinTrPrmCaptions() { return kAffinTrPrmCaptions; }
std::span<const Caption> PoliTrPrmCaptions() { return kPoliTrPrmCaptions; }
std::span<const Caption> ChoosePrmCaptions() { return kChoosePrmCaptions; }
std::span<const Caption> ChooseDAT2M1Captions() { return kChooseDAT2M1Captions; }
std::span<const Caption> XY4TrCaptions() { return kXY4TrCaptions; }

}  // namespace kv_tr
