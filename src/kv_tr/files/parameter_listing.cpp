// Parameters as printed text.
#include "kv_tr/files/parameter_listing.h"

#include "kv_tr/files/formula_text.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {

std::string ListLinear(const Transformation& transformation, NumberStyle style) {
    if (IsPolynomial(transformation.type)) return {};
    return SixParameterText(transformation, style) + "\r\n\r\n\r\n";
}

std::string ListPolynomial(const Transformation& transformation, const std::string& title,
                           NumberStyle style) {
    const auto& [type, a, b] = transformation;
    if (!IsPolynomial(type)) return {};
    const auto coefficient = [style](double value) { return PadLeft(SciText(value, style), 30); };
    std::string text = WithoutControls(title) + "\r\n\r\n";
    text += " sy = " + FixedText(a[0], 3, style) + std::string(18, ' ') +
            "sx = " + FixedText(b[0], 3, style) + "\r\n";
    for (int k = 1; k <= TermCount(type); ++k) {
        const auto index = static_cast<std::size_t>(k);
        text += PadLeft(std::to_string(k), 3) + coefficient(a[index]) + "  " +
                coefficient(b[index]) + "\r\n";
    }
    return text;
}

}  // namespace kv_tr
