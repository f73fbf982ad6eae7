// The texts for users, by number and language.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

#include "kv_tr/text/text_id.h"

namespace kv_tr {

// Language ids of the component.
inline constexpr std::int32_t kHungarian = 1038;
inline constexpr std::int32_t kRomanian = 1048;
inline constexpr std::int32_t kEnglish = 2057;
inline constexpr std::int32_t kVietnamese = 1066;
inline constexpr std::int32_t kComment = 100000;  ///< placeholder texts for checking captions
inline constexpr std::int32_t kSerbian = 2074;    ///< Latin script

/// The languages there are, in the order in which hosts list them.
std::span<const std::int32_t> Languages();

/// What a text says in a language, UTF-8; a null pointer where the language lacks it.
const char* BuiltInText(Text id, std::int32_t language);

/// Yields what a text says in the language that a caller wants.
using TextLookup = std::function<std::string(Text id)>;

/// The built-in texts of a language, in Hungarian where it lacks one. A text that no language has
/// is std::out_of_range.
TextLookup TextsIn(std::int32_t language);

/// Fills the places {0}, {1}, ... of a text with the values, control characters in them as "_"; a
/// place beyond the values stays.
std::string FillPlaces(std::string_view text, std::initializer_list<std::string> values);

}  // namespace kv_tr
