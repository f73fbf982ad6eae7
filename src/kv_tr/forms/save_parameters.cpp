// Saving parameters under a name that says what they are.
#include "kv_tr/forms/save_parameters.h"

#include "kv_tr/forms/choose_file.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/type_names.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr {

bool SuitsParameters(const std::string& fileName, enuTR_TYPE type) {
    const bool linearName = HasExtension(fileName, "trp") || HasExtension(fileName, "prm");
    const bool polynomial = type >= TR_POLI_1;
    if (polynomial ? !linearName : !HasExtension(fileName, "all")) return true;
    ShowMessage(Translated(Text::kWrongParameterExtension,
                           {fileName, TypeName(type), polynomial ? ".all" : ".trp, .prm"}),
                Icon::kExclamation);
    return false;
}

void ChooseFileAndSave(clsTr& parameters) {
    const bool polynomial = parameters.bTypeIsPolinom();
    const auto fileName = ChooseFile(parameters, polynomial ? &clsTr::bChooseFile4SavePoliTrPrm
                                                            : &clsTr::bChooseFile4SaveAffinTrPrm);
    if (!fileName || !SuitsParameters(*fileName, parameters.udtTrPrm().eType)) return;
    if (polynomial) {
        parameters.bSavePoliTrPrm(*fileName);
    } else {
        parameters.bSaveAffinTrPrm(*fileName, HasExtension(*fileName, "prm"));
    }
}

}  // namespace kv_tr
