// JSON as text.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace kv_tr::cli {

/// The value as indented text. A number has the shortest digits that read back to the same
/// double, which the library's own writer does not promise; one that is not finite is null.
/// An ill-formed part of a text becomes U+FFFD.
std::string JsonText(const nlohmann::ordered_json& value, int indentation = 0);

}  // namespace kv_tr::cli
