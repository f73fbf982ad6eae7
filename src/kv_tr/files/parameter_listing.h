// Parameters as printed text. Lines end with CR LF.
#pragma once

#include <string>

#include "kv_tr/model/transformation.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {

/// Six parameters with their formula; empty for a transformation that has no six.
std::string ListLinear(const Transformation& transformation, NumberStyle style = {});

/// The title, its control characters as "_", the origin and one line a coefficient: what a
/// polynomial file holds. Empty for a
/// transformation of the six-parameter family.
std::string ListPolynomial(const Transformation& transformation, const std::string& title,
                           NumberStyle style = {});

}  // namespace kv_tr
