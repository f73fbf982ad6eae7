// Parameter files, read whole or not at all.
#pragma once

#include <optional>
#include <string>

#include "kv_tr/files/parameter_file.h"
#include "kv_tr/interchange/transformation_record.h"

namespace kv_tr::app {

struct WholeParameters {
    std::optional<TransformationRecord>
        record;             // nothing for a file that cannot be read to its end
    std::string complaint;  // why; empty when that has been shown
};

/// What a file is whose name does not tell its format.
enum class UnnamedFormat { kRefused, kSixNumbers };

/// Reads a file: a JSON record, a PROJ string or a geotransform whatever its name, otherwise in the
/// format that its extension names. Six numbers get the linear type.
WholeParameters ReadParametersWhole(const std::string& fileName, Type linearType,
                                    NumberStyle numbers, SuspectCommas commas,
                                    UnnamedFormat unnamed);

/// Whether a file holds a JSON record, a PROJ string or a geotransform, whatever its name, or six
/// numbers under the name of a world file. False for a file that does not open.
bool HoldsParametersOfOtherPrograms(const std::string& fileName);

}  // namespace kv_tr::app
