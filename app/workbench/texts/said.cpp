// What the workbench says, in the language of the component.
#include "workbench/texts/said.h"

#include "kv_tr/published/ml_strings.h"
#include "workbench/texts/table.h"

namespace kv_tr::workbench {

const char* PhraseIn(Phrase phrase, std::int32_t language) {
    const auto table = [language] {
        switch (language) {
            case kEnglish: return EnglishPhrases();
            case kRomanian: return RomanianPhrases();
            case kVietnamese: return VietnamesePhrases();
            case kSerbian: return SerbianPhrases();
            default: return HungarianPhrases();
        }
    }();
    return table[static_cast<std::size_t>(phrase)].text;
}

std::string Said(Phrase phrase, std::vector<std::string> values) {
    values.resize(kMostValues);
    return FillPlaces(PhraseIn(phrase, CurrentMlLanguage()),
                      {values[0], values[1], values[2], values[3]});
}

}  // namespace kv_tr::workbench
