// Parameters and formulas as listings and logs print them.
#include "kv_tr/files/formula_text.h"

#include <algorithm>

namespace kv_tr {

std::string HigherTermsText(Type type) {
    if (type == Type::kBilinear) return " + y*x*a4";
    std::string text;
    if (type > Type::kPolynomial1) text += " + y^2*a4 + y*x*a5 + x^2*a6";
    if (type > Type::kPolynomial2) text += " + y^3*a7 + x*y^2*a8 + x^2*y*a9 + x^3*a10";
    if (type > Type::kPolynomial3) {
        text += "\r\n\t\t+ y^4*a11 + x*y^3*a12 + x^2*y^2*a13 + x^3*y*a14 + x^4*a15";
    }
    if (type > Type::kPolynomial4) {
        text += "\r\n\t\t+ y^5*a16 + x*y^4*a17 + x^2*y^3*a18 + x^3*y^2*a19 + x^4*y*a20 + x^5*a21";
    }
    return text;
}

std::vector<std::string> FormulaTexts(Type type) {
    if (!IsPolynomial(type)) return {"Y2 = a0 + a1 * Y1 + a2 * X1", "X2 = b0 + b1 * Y1 + b2 * X1"};
    const std::string first = "a1 + y*a2 + x*a3" + HigherTermsText(type);
    std::string second = first;
    std::ranges::replace(second, 'a', 'b');
    return {"y = Y1 - a0", "x = X1 - b0", "Y2 = " + first, "X2 = " + second};
}

std::string SixParameterText(const Transformation& t, NumberStyle style) {
    const auto line = [style](const char* label, double value, int decimals) {
        return "\t" + std::string(label) + FixedText(value, decimals, style) + "\r\n";
    };
    std::string text = line("a0 = ", t.a[0], 3) + line("a1 = ", t.a[1], 8) +
                       line("a2 = ", t.a[2], 8) + "\r\n" +  //
                       line("b0 = ", t.b[0], 3) + line("b1 = ", t.b[1], 8) +
                       line("b2 = ", t.b[2], 8) + "\r\n";
    for (const std::string& formula : FormulaTexts(Type::kAffine)) text += "\t" + formula + "\r\n";
    return text;
}

}  // namespace kv_tr
