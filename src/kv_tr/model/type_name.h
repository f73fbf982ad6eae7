// The display names of the transformation types.
#pragma once

#include <string>

#include "kv_tr/model/type.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// The name of a type in a language. The national types are named in Hungarian only.
std::string TypeName(Type type, const TextLookup& texts);

}  // namespace kv_tr
