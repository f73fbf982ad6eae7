// The languages that a user may choose.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace kv_tr::app {

struct Language {
    std::string_view code;  // as locales name it
    const char* name;       // in the language itself
    std::int32_t id;
};
std::span<const Language> Languages();

/// The id of a code such as "hu"; 0 for an unknown one.
std::int32_t LanguageCoded(std::string_view code);

}  // namespace kv_tr::app
