// The published formula text.
#pragma once

#include <string>

#include "kv_tr/files/formula_text.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr {

/// HigherTermsText of a type.
inline std::string PolyFormulaText(enuTR_TYPE eType) { return HigherTermsText(TypeOf(eType)); }

}  // namespace kv_tr
