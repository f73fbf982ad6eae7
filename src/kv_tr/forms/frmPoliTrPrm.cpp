// The viewer of polynomial parameters without its window: what it shows and what each control does.
#include "kv_tr/forms/frmPoliTrPrm.h"

#include <algorithm>

#include "kv_tr/files/open_text.h"
#include "kv_tr/files/parameter_file.h"
#include "kv_tr/files/parameter_listing.h"
#include "kv_tr/forms/choose_file.h"
#include "kv_tr/forms/save_parameters.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/published/working_folder.h"

namespace kv_tr {
namespace {

/// A polynomial file read whole; nothing, after a message, when that fails.
std::optional<TR_PRM> Read(const std::string& fileName, SuspectCommas commas) {
    auto file = OpenText(fileName);
    if (!file) {
        ReportOpenFailure(fileName);
        return std::nullopt;
    }
    const auto reading = ReadParameters(
        *file, ParameterFormat::kPolynomial, Type::kAffine,
        {.codePage = FilesCodePage(), .numbers = ComponentNumberStyle(), .suspectCommas = commas});
    if (reading.Complete()) return RecordOf(reading.transformation);
    ShowMessage(Translated(Text::kBadFormat), Icon::kExclamation);
    return std::nullopt;
}

}  // namespace

bool frmPoliTrPrm::bDoModal(clsTr& parameters, const std::function<void()>& showModal) {
    parameters_ = &parameters;
    Take(parameters.udtTrPrm());
    nationalVisible_ = CurrentMlLanguage() == kHungarian;
    confirmed_ = false;
    showModal();
    if (confirmed_) parameters.udtTrPrm(working_);
    parameters_ = nullptr;
    return confirmed_;
}

void frmPoliTrPrm::Take(const TR_PRM& record) {
    working_ = record;
    const std::string listing =
        ListPolynomial(TransformationOf(record), TypeName(record.eType), ComponentNumberStyle());
    Show(listing, listing);
}

void frmPoliTrPrm::cmdLoad() {
    const auto fileName = ChooseFile(*parameters_, &clsTr::bChooseFile4LoadPoliTrPrm);
    if (!fileName) return;
    const auto record = Read(*fileName, SuspectCommas::kTaken);
    if (record) Take(*record);
}

void frmPoliTrPrm::cmdDAT2M1() {
    enuTR_TYPE type = working_.eType;
    if (!OpenDialogs().ChooseNational(type)) return;
    if (const auto national = NationalTransformation(TypeOf(type))) Take(RecordOf(*national));
}

void frmPoliTrPrm::cmdSave() {
    const auto fileName = ChooseFile(*parameters_, &clsTr::bChooseFile4SavePoliTrPrm);
    const enuTR_TYPE type = std::max(working_.eType, TR_POLI_1);  // what is listed
    if (fileName && SuitsParameters(*fileName, type)) WriteTextFile(*fileName, rtBox());
}

std::string frmPoliTrPrm::cmdCopyAs(TransformationFormat format) const {
    const auto record = IsChanged() ? RecordOfText() : std::optional(working_);
    return record ? CopiedText(TransformationOf(*record), format) : std::string();
}

std::string frmPoliTrPrm::QuestionTitle() const { return Translated(Text::kPolynomialParameters); }

/// Reads the text into the working record; false, with a message, when not every line can be read:
/// a polynomial of the lines above a slip would be another one.
bool frmPoliTrPrm::TakeText() {
    const auto record = RecordOfText();
    if (record) working_ = *record;
    return record.has_value();
}

std::optional<TR_PRM> frmPoliTrPrm::RecordOfText() const {
    return Read(WriteWorkingFile("tmp-PoliPrm.all", rtBox()), SuspectCommas::kIgnored);
}

}  // namespace kv_tr
