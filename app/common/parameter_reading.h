// Parameter files, read whole or not at all.
#pragma once

#include <optional>
#include <string>

#include "kv_tr/model/transformation.h"

namespace kv_tr::app {

struct WholeParameters {
    std::optional<Transformation>
        transformation;     // nothing for a file that cannot be read to its end
    std::string complaint;  // why; empty when the file did not open, which has been shown
};

/// Reads a file in the format that its extension names; six numbers get the linear type.
WholeParameters ReadParametersWhole(const std::string& fileName, Type linearType,
                                    bool decimalComma);

}  // namespace kv_tr::app
