// The formula of a polynomial record as listings and logs print it.
#include "model/formula_text.h"

namespace kv_tr {

std::string PolyFormulaText(enuTR_TYPE eType) {
    if (eType == TR_BILINEAR) return " + y*x*a4";
    std::string text;
    if (eType > 1) text += " + y^2*a4 + y*x*a5 + x^2*a6";
    if (eType > 2) text += " + y^3*a7 + x*y^2*a8 + x^2*y*a9 + x^3*a10";
    if (eType > 3) {
        text += "\r\n\t\t+ y^4*a11 + x*y^3*a12 + x^2*y^2*a13 + x^3*y*a14 + x^4*a15";
    }
    if (eType > 4) {
        text += "\r\n\t\t+ y^5*a16 + x*y^4*a17 + x^2*y^3*a18 + x^3*y^2*a19 + x^4*y*a20 + x^5*a21";
    }
    return text;
}

}  // namespace kv_tr
