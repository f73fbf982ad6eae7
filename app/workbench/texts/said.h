// What the workbench says, in the language of the component.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "workbench/texts/phrase.h"

namespace kv_tr::workbench {

inline constexpr std::size_t kMostValues = 4;

/// A phrase in the component's language, its places {0}, {1}, ... filled with the values, of which
/// there are at most kMostValues.
std::string Said(Phrase phrase, std::vector<std::string> values = {});

/// A phrase as the table of a language has it; Hungarian for a language without a table.
const char* PhraseIn(Phrase phrase, std::int32_t language);

}  // namespace kv_tr::workbench
