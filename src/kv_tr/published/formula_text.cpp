// Parameters and formulas as listings and logs print them.
#include "kv_tr/published/formula_text.h"

#include <algorithm>

#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"

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

std::vector<std::string> FormulaTexts(enuTR_TYPE type) {
    if (!IsPolynomial(type)) return {"Y2 = a0 + a1 * Y1 + a2 * X1", "X2 = b0 + b1 * Y1 + b2 * X1"};
    const std::string first = "a1 + y*a2 + x*a3" + PolyFormulaText(type);
    std::string second = first;
    std::ranges::replace(second, 'a', 'b');
    return {"y = Y1 - a0", "x = X1 - b0", "Y2 = " + first, "X2 = " + second};
}

std::string SixParameterText(const TR_PRM& record) {
    const auto line = [](const char* label, double value, std::uint8_t decimals) {
        return "\t" + std::string(label) + FormatFixed(value, decimals, 0) + "\r\n";
    };
    std::string text = line("a0 = ", record.dA0, 3) + line("a1 = ", record.dA1, 8) +
                       line("a2 = ", record.dA2, 8) + "\r\n" +  //
                       line("b0 = ", record.dB0, 3) + line("b1 = ", record.dB1, 8) +
                       line("b2 = ", record.dB2, 8) + "\r\n";
    for (const std::string& formula : FormulaTexts(TR_AFFIN)) text += "\t" + formula + "\r\n";
    return text;
}

}  // namespace kv_tr
