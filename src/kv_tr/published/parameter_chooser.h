// The four file choosers for parameter files.
#pragma once

#include <cstdint>
#include <string>

namespace kv_tr {

/// Each asks for a file; true when one was chosen. fileName is the suggestion and then the
/// choice, empty after a cancel.
bool ChooseLinearToLoad(std::string& fileName, const std::string& initDir, std::int32_t owner);
bool ChooseLinearToSave(std::string& fileName, const std::string& initDir, std::int32_t owner);
bool ChoosePolynomialToLoad(std::string& fileName, const std::string& initDir, std::int32_t owner);
bool ChoosePolynomialToSave(std::string& fileName, const std::string& initDir, std::int32_t owner);

}  // namespace kv_tr
