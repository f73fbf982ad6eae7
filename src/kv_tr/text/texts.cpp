// The texts for users, by number and language.
#include "kv_tr/text/texts.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/strings/table.h"

namespace kv_tr {
namespace {

constexpr std::array kLanguages{kHungarian, kRomanian, kEnglish, kVietnamese, kComment, kSerbian};
constexpr std::array kTables{HungarianStrings,  RomanianStrings, EnglishStrings,
                             VietnameseStrings, CommentStrings,  SerbianStrings};

}  // namespace

std::span<const std::int32_t> Languages() { return kLanguages; }

const char* BuiltInText(Text id, std::int32_t language) {
    const auto found = std::ranges::find(kLanguages, language);
    if (found == kLanguages.end()) return nullptr;
    const auto table = kTables[static_cast<std::size_t>(found - kLanguages.begin())]();
    const auto row = std::ranges::lower_bound(table, id, {}, &MlString::id);
    return row != table.end() && row->id == id ? row->text : nullptr;
}

TextLookup TextsIn(std::int32_t language) {
    return [language](Text id) -> std::string {
        for (const std::int32_t one : {language, kHungarian}) {
            if (const char* text = BuiltInText(id, one)) return text;
        }
        throw std::out_of_range("No text has the id " + std::to_string(static_cast<int>(id)));
    };
}

std::string FillPlaces(std::string_view text, std::initializer_list<std::string> values) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto value = i + 2 < text.size() && text[i] == '{' && text[i + 2] == '}'
                               ? static_cast<std::size_t>(text[i + 1]) - '0'
                               : values.size();
        if (value < values.size()) {
            filled += WithoutControls(std::data(values)[value]);
            i += 2;  // digit and brace
        } else {
            filled += text[i];
        }
    }
    return filled;
}

}  // namespace kv_tr
