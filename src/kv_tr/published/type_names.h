// The display names of the transformation types.
#pragma once

#include <string>

#include "kv_tr/published/records.h"

namespace kv_tr {

/// The name of a type in the current language. The national types are named in Hungarian only.
std::string TypeName(enuTR_TYPE type);

}  // namespace kv_tr
