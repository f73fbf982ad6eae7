// The display names of the transformation types.
#pragma once

#include <string>

#include "kv_tr/model/type_name.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/transformation_type.h"

namespace kv_tr {

/// The name of a type in the current language. The national types are named in Hungarian only.
inline std::string TypeName(enuTR_TYPE type) { return TypeName(TypeOf(type), ComponentTexts()); }

}  // namespace kv_tr
