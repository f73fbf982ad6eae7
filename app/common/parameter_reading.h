// Parameter files, read whole or not at all.
#pragma once

#include <optional>
#include <string>

#include "kv_tr/files/parameter_file.h"

namespace kv_tr::app {

struct WholeParameters {
    std::optional<Transformation>
        transformation;     // nothing for a file that cannot be read to its end
    std::string complaint;  // why; empty when that has been shown
};

/// Reads a file in the format that its extension names; six numbers get the linear type.
WholeParameters ReadParametersWhole(const std::string& fileName, Type linearType,
                                    NumberStyle numbers, SuspectCommas commas);

}  // namespace kv_tr::app
