// JSON as text.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "kv_tr/model/transformation.h"

namespace kv_tr::cli {

/// The value as indented text. A number has the shortest digits that read back to the same
/// double, which the library's own writer does not promise; one that is not finite is null.
/// An ill-formed part of a text becomes U+FFFD.
std::string JsonText(const nlohmann::ordered_json& value, int indentation = 0);

/// dA0 to dA21 and dB0 to dB21 of a transformation.
nlohmann::ordered_json ParametersJson(const Transformation& transformation);

}  // namespace kv_tr::cli
