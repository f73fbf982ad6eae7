// The viewer of polynomial parameters without its window: what it shows and what each control does.
#include "kv_tr/forms/frmPoliTrPrm.h"

#include <algorithm>

#include "kv_tr/forms/choose_file.h"
#include "kv_tr/forms/save_parameters.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/decimal_commas.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/national.h"
#include "kv_tr/published/parameter_file.h"
#include "kv_tr/published/parameter_listing.h"
#include "kv_tr/published/working_folder.h"

namespace kv_tr {

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
    const std::string listing = ListPolynomial(record, std::nullopt);
    Show(listing, listing);
}

void frmPoliTrPrm::cmdLoad() {
    const auto fileName = ChooseFile(*parameters_, &clsTr::bChooseFile4LoadPoliTrPrm);
    if (!fileName) return;
    TR_PRM record;
    const PolynomialReading reading = [&] {
        const DecimalCommaScope commas(ParametersHaveDecimalCommas(*fileName));
        return ReadPolynomialFile(*fileName, record);
    }();
    if (reading.accepted && reading.badLine == 0) {
        Take(record);
    } else if (reading.opened) {
        ShowMessage(GetMlString(74, "Hibás fájl formátum!"), Icon::kExclamation);
    }
}

void frmPoliTrPrm::cmdDAT2M1() {
    enuTR_TYPE type = working_.eType;
    if (!OpenDialogs().ChooseNational(type)) return;
    if (const auto record = NationalRecord(type)) Take(*record);
}

void frmPoliTrPrm::cmdSave() {
    const auto fileName = ChooseFile(*parameters_, &clsTr::bChooseFile4SavePoliTrPrm);
    const enuTR_TYPE type = std::max(working_.eType, TR_POLI_1);  // what is listed
    if (fileName && SuitsParameters(*fileName, type)) WriteTextFile(*fileName, rtBox());
}

std::string frmPoliTrPrm::QuestionTitle() const {
    return GetMlString(86, "1-5 fokú polinom transzformációs paraméterek");
}

/// Reads the text into the working record; false, with a message, when not every line can be read:
/// a polynomial of the lines above a slip would be another one.
bool frmPoliTrPrm::TakeText() {
    TR_PRM record;
    const PolynomialReading reading =
        ReadPolynomialFile(WriteWorkingFile("tmp-PoliPrm.all", rtBox()), record);
    const bool read = reading.accepted && reading.badLine == 0;
    if (read) {
        working_ = record;
    } else {
        ShowMessage(GetMlString(74, "Hibás fájl formátum!"), Icon::kExclamation);
    }
    return read;
}

}  // namespace kv_tr
