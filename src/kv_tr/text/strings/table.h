// One table of texts a language, rows in ascending order of their ids.
#pragma once

#include <cstddef>
#include <span>

#include "kv_tr/text/text_id.h"

namespace kv_tr {

struct MlString {
    Text id;
    const char* text;  // UTF-8
};

template <std::size_t count>
consteval bool IdsRise(const MlString (&table)[count]) {
    for (std::size_t i = 1; i < count; ++i) {
        if (table[i].id <= table[i - 1].id) return false;
    }
    return true;
}

std::span<const MlString> HungarianStrings();
std::span<const MlString> RomanianStrings();
std::span<const MlString> VietnameseStrings();
std::span<const MlString> EnglishStrings();
std::span<const MlString> SerbianStrings();
std::span<const MlString> CommentStrings();

}  // namespace kv_tr
