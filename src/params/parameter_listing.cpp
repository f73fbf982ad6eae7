// Parameters as printed text.
#include "params/parameter_listing.h"

#include "model/coefficients.h"
#include "model/formula_text.h"
#include "model/transformation_type.h"
#include "model/type_names.h"
#include "support/number_text.h"

namespace kv_tr {

std::string ListLinear(const TR_PRM& record) {
    if (IsPolynomial(record.eType)) return {};
    return SixParameterText(record) + "\r\n\r\n\r\n";
}

std::string ListPolynomial(const TR_PRM& record, const std::optional<std::string>& title) {
    if (!IsPolynomial(record.eType)) return {};
    const auto [a, b] = CoefficientsOf(record);
    std::string text = title.value_or(TypeName(record.eType)) + "\r\n\r\n";
    text += " sy = " + FormatFixed(a[0], 3, 0) + std::string(18, ' ') +
            "sx = " + FormatFixed(b[0], 3, 0) + "\r\n";
    for (int k = 1; k <= TermCount(record.eType); ++k) {
        const auto index = static_cast<std::size_t>(k);
        text += PadLeft(std::to_string(k), 3) + FormatSci(a[index]) + "  " + FormatSci(b[index]) +
                "\r\n";
    }
    return text;
}

}  // namespace kv_tr
