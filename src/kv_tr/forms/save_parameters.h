// Saving parameters under a name that says what they are.
#pragma once

#include <string>

#include "kv_tr/published/clsTr.h"

namespace kv_tr {

/// Whether a file of this name is opened as what parameters of this type are; tells the user when
/// the name belongs to the other kind, linear (trp, prm) or polynomial (all).
bool SuitsParameters(const std::string& fileName, enuTR_TYPE type);

/// Asks for a file and saves the parameters there, in the format of its name. Nothing is saved
/// under a name that does not suit them.
void ChooseFileAndSave(clsTr& parameters);

}  // namespace kv_tr
