// JSON as text.
#include "cli/json_text.h"

#include <charconv>
#include <cmath>

#include "model/coefficients.h"

namespace kv_tr::cli {
namespace {

std::string NumberText(double value) {
    if (!std::isfinite(value)) return "null";
    char buffer[32];
    const auto end = std::to_chars(buffer, std::end(buffer), value).ptr;
    return {buffer, end};
}

}  // namespace

std::string JsonText(const nlohmann::ordered_json& value, int indentation) {
    if (value.is_number_float()) return NumberText(value.get<double>());
    if (!value.is_structured() || value.empty()) {
        return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    }

    const std::string inner(static_cast<std::size_t>(indentation) + 2, ' ');
    std::string text;
    for (const auto& [key, item] : value.items()) {
        text += (text.empty() ? "\n" : ",\n") + inner;
        if (value.is_object()) text += nlohmann::ordered_json(key).dump() + ": ";
        text += JsonText(item, indentation + 2);
    }
    text += "\n" + inner.substr(2);
    return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

nlohmann::ordered_json ParametersJson(const TR_PRM& record) {
    const auto [a, b] = CoefficientsOf(record);
    nlohmann::ordered_json parameters;
    for (std::size_t k = 0; k < a.size(); ++k) parameters["dA" + std::to_string(k)] = a[k];
    for (std::size_t k = 0; k < b.size(); ++k) parameters["dB" + std::to_string(k)] = b[k];
    return parameters;
}

}  // namespace kv_tr::cli
