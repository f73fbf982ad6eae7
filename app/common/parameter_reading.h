// Parameter files, read whole or not at all.
#pragma once

#include <optional>
#include <string>

#include "kv_tr/published/records.h"

namespace kv_tr::host {

struct RecordReading {
    std::optional<TR_PRM> record;  // nothing for a file that cannot be read to its end
    std::string complaint;         // why; empty when the file did not open, which has been shown
};

/// Reads a file in the format that its extension names; six numbers get the linear type.
RecordReading ReadRecord(const std::string& fileName, enuTR_TYPE linearType, bool decimalComma);

}  // namespace kv_tr::host
