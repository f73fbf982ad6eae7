// Asking for a file by one of the component's choosers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "kv_tr/published/settings.h"

namespace kv_tr {

/// Opens a chooser of the object in a folder, by default the remembered one. The choice, whose
/// folder then is the remembered one; nothing after a cancel.
template <class Object>
std::optional<std::string> ChooseFile(Object& object,
                                      bool (Object::*choose)(std::string&, std::string&,
                                                             std::int32_t),
                                      std::string folder = InitDir()) {
    std::string fileName;
    if (!(object.*choose)(fileName, folder, -1)) return std::nullopt;
    RememberFolderOf(fileName);
    return fileName;
}

}  // namespace kv_tr
