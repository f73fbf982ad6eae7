// Parameters as printed text.
#include "kv_tr/published/parameter_listing.h"

#include "kv_tr/published/coefficients.h"
#include "kv_tr/published/formula_text.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/transformation_type.h"
#include "kv_tr/published/type_names.h"

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
