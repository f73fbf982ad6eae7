// JSON as text.
#include "cli/json_text.h"

#include <charconv>
#include <cmath>

namespace kv_tr::cli {
namespace {

std::string NumberText(double value) {
    if (!std::isfinite(value)) return "null";
    char buffer[32];
    const auto end = std::to_chars(buffer, std::end(buffer), value).ptr;
    return {buffer, end};
}

/// Escapes the control characters that JSON would let pass: U+007F to U+009F.
std::string WithEscapedControls(const std::string& json) {
    std::string text;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const bool pair = json[i] == '\xC2' && static_cast<unsigned char>(json[i + 1]) <= 0x9F;
        const auto control = static_cast<unsigned char>(json[pair ? i + 1 : i]);
        if (!pair && control != 0x7F) {
            text += json[i];
            continue;
        }
        constexpr const char* kDigits = "0123456789abcdef";
        text += {'\\', 'u', '0', '0', kDigits[control / 16], kDigits[control % 16]};
        i += pair ? 1 : 0;
    }
    return text;
}

}  // namespace

std::string JsonText(const nlohmann::ordered_json& value, int indentation) {
    if (value.is_number_float()) return NumberText(value.get<double>());
    if (!value.is_structured() || value.empty()) {
        return WithEscapedControls(
            value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
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

nlohmann::ordered_json ParametersJson(const Transformation& transformation) {
    const auto& [type, a, b] = transformation;
    nlohmann::ordered_json parameters;
    for (std::size_t k = 0; k < a.size(); ++k) parameters["dA" + std::to_string(k)] = a[k];
    for (std::size_t k = 0; k < b.size(); ++k) parameters["dB" + std::to_string(k)] = b[k];
    return parameters;
}

}  // namespace kv_tr::cli
