// Parameters as printed text. Lines end with CR LF.
#pragma once

#include <optional>
#include <string>

#include "kv_tr/published/records.h"

namespace kv_tr {

/// Six parameters with their formula; empty for a record that has no six.
std::string ListLinear(const TR_PRM& record);

/// The title (without one the type's name), the origin and one line a coefficient: what a
/// polynomial file holds. Empty for a record of the six-parameter family.
std::string ListPolynomial(const TR_PRM& record, const std::optional<std::string>& title);

}  // namespace kv_tr
