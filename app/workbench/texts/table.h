// One table of phrases a language, with a row for each phrase, in the order of the enumeration.
#pragma once

#include <cstddef>
#include <span>

#include "workbench/texts/phrase.h"

namespace kv_tr::workbench {

struct PhraseRow {
    Phrase phrase;
    const char* text;  // UTF-8
};

template <std::size_t count>
consteval bool IsWhole(const PhraseRow (&table)[count]) {
    if (count != kPhraseCount) return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (table[i].phrase != static_cast<Phrase>(i) || *table[i].text == '\0') return false;
    }
    return true;
}

std::span<const PhraseRow> HungarianPhrases();
std::span<const PhraseRow> EnglishPhrases();
std::span<const PhraseRow> RomanianPhrases();
std::span<const PhraseRow> VietnamesePhrases();
std::span<const PhraseRow> SerbianPhrases();

}  // namespace kv_tr::workbench
