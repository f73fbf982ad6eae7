// The two file choosers for control-point files.
#pragma once

#include <cstdint>
#include <string>

namespace kv_tr {

/// Asks for a control-point file to load. True when one was chosen; fileName then is its path,
/// otherwise it is empty. The caption is part of the title and of the filter; afterwards it holds
/// the chosen file's name without folder, or nothing, deliberately.
bool ChooseControlPointsToLoad(std::string& fileName, const std::string& initDir,
                               std::int32_t owner, std::string& caption);

/// The same for a file to save. It shows the open chooser too, deliberately.
bool ChooseControlPointsToSave(std::string& fileName, const std::string& initDir,
                               std::int32_t owner, std::string& caption);

}  // namespace kv_tr
