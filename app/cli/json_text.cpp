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

}  // namespace kv_tr::cli
