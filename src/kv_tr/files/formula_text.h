// Parameters and formulas as listings and logs print them.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/model/transformation.h"
#include "kv_tr/text/number_text.h"

namespace kv_tr {

/// The terms above order 1 of the first coordinate, in coefficient order: " + y*x*a4" for the
/// bilinear type, " + y^2*a4 + ..." for the orders from 2 up, nothing for the rest. Orders 4 and 5
/// begin a new line (CR LF and two tabs) without a leading blank.
std::string HigherTermsText(Type type);

/// The formulas of a type, one a text: the two coordinates, for polynomial types behind the two
/// reductions that they begin with.
std::vector<std::string> FormulaTexts(Type type);

/// The six parameters and their two formulas, a line each behind a tab, ended by CR LF. Shifts have
/// 3 decimals, the other coefficients 8.
std::string SixParameterText(const Transformation& transformation, NumberStyle style = {});

}  // namespace kv_tr
