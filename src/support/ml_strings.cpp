// Texts by number in the current language.
#include "support/ml_strings.h"

#include <algorithm>
#include <array>
#include <span>

#include "support/component.h"
#include "support/errors.h"
#include "support/strings/table.h"

namespace kv_tr {
namespace {

struct Language {
    std::int32_t id;
    std::span<const MlString> (*strings)();
};

constexpr std::array kLanguages{
    Language{kHungarian, HungarianStrings}, Language{kRomanian, RomanianStrings},
    Language{kEnglish, EnglishStrings},     Language{kVietnamese, VietnameseStrings},
    Language{kComment, CommentStrings},     Language{kSerbian, SerbianStrings},
};

const char* Find(std::span<const MlString> table, int id) {
    const auto row = std::ranges::lower_bound(table, id, {}, &MlString::id);
    return row != table.end() && row->id == id ? row->text : nullptr;
}

}  // namespace

std::string GetMlString(int id, std::string_view /*sDefault*/) {
    return TheComponent().platform.texts->Text(id, TheComponent().language);
}

void SetMlLanguage(std::int32_t LanguageID, std::string_view /*sName*/) {
    const bool supported = std::ranges::count(kLanguages, LanguageID, &Language::id) > 0;
    TheComponent().language = supported ? LanguageID : kHungarian;
}

std::int32_t CurrentMlLanguage() { return TheComponent().language; }

void InitMlStrings() {
    if (TheComponent().stringsInitialised) return;
    TheComponent().platform.texts->Prepare();
    TheComponent().stringsInitialised = true;
}

Subscription FollowHostLanguage() {
    InitMlStrings();
    TextSource& texts = *TheComponent().platform.texts;
    SetMlLanguage(texts.HostLanguage(), {});
    return texts.LanguageChanged.Subscribe(
        [](std::int32_t id, const std::string& name) { SetMlLanguage(id, name); });
}

std::string EmbeddedTexts::Text(int id, std::int32_t languageId) {
    const auto language = std::ranges::find(kLanguages, languageId, &Language::id);
    const char* text = language == kLanguages.end() ? nullptr : Find(language->strings(), id);
    if (text == nullptr) text = Find(HungarianStrings(), id);
    if (text == nullptr) {
        throw RuntimeError(ErrorNumber::kTextMissing, "No text has the id " + std::to_string(id));
    }
    return text;
}

void EmbeddedTexts::SwitchLanguage(std::int32_t languageId, const std::string& name) {
    hostLanguage_ = languageId;
    LanguageChanged.Raise(languageId, name);
}

}  // namespace kv_tr
