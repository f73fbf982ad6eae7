// Texts by number in the current language.
#include "kv_tr/published/ml_strings.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "kv_tr/published/component.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/text_table_file.h"
#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/strings/table.h"

namespace kv_tr {
namespace {

constexpr std::array kLanguageNames{"Hungarian",  "Romanian", "English (United Kingdom)",
                                    "Vietnamese", "Komment",  "Serbian (Latin)"};
}  // namespace

std::string GetMlString(int id, std::string_view /*sDefault*/) {
    return TheComponent().platform.texts->Text(id, TheComponent().language);
}

std::string Translated(Text id, std::initializer_list<std::string> values) {
    return FillPlaces(GetMlString(static_cast<int>(id), {}), values);
}

TextLookup ComponentTexts() {
    return [](Text id) { return Translated(id); };
}

void SetMlLanguage(std::int32_t LanguageID, std::string_view /*sName*/) {
    const bool supported = std::ranges::count(Languages(), LanguageID) > 0;
    TheComponent().language = supported ? LanguageID : kHungarian;
}

std::int32_t CurrentMlLanguage() { return TheComponent().language; }

std::span<const std::int32_t> MlLanguages() { return Languages(); }

std::string MlLanguageName(std::size_t index) {
    return index < kLanguageNames.size() ? kLanguageNames[index] : "Invalid Language Index";
}

void InitMlStrings() {
    Component& component = TheComponent();
    if (component.stringsInitialised.exchange(true) || !component.useTextFile) return;
    component.platform.texts->LoadFrom(TextFile());
    if (component.language == 0) component.language = kHungarian;
}

void UseTextFile(bool separate) { TheComponent().useTextFile = separate; }

std::string TextFile() { return NameOfPath(ComponentFolder() / "KV_Tr.res"); }

Subscription FollowHostLanguage() {
    InitMlStrings();
    SetMlLanguage(TheComponent().platform.texts->HostLanguage(), {});
    return OnLanguageChange([] {});
}

Subscription OnLanguageChange(std::function<void()> handler) {
    return TheComponent().platform.texts->LanguageChanged.Subscribe(
        [handler = std::move(handler)](std::int32_t id, const std::string& name) {
            SetMlLanguage(id, name);
            handler();
        });
}

void EmbeddedTexts::LoadFrom(const std::string& path) {
    std::error_code error;
    std::ifstream stream;
    // A pipe of that name would make every start wait for its writer.
    if (std::filesystem::is_regular_file(PathOf(path), error)) stream = OpenToRead(PathOf(path));
    if (!stream.is_open()) return ReportOpenFailure(path);
    auto [texts, badLine] = ReadTextTable(*stream.rdbuf(), Languages(), HungarianStrings());
    if (badLine == 0) {
        const std::scoped_lock lock(mutex_);
        loaded_ = std::move(texts);
        return;
    }
    ShowMessage(Translated(Text::kTextFileDamaged, {path, std::to_string(badLine)}),
                Icon::kExclamation);
}

std::string EmbeddedTexts::Text(int id, std::int32_t languageId) {
    const std::scoped_lock lock(mutex_);
    for (const std::int32_t language : {languageId, kHungarian}) {
        if (const auto found = loaded_.find({language, id}); found != loaded_.end()) {
            return found->second;
        }
        if (const char* text = BuiltInText(kv_tr::Text{id}, language); text != nullptr) return text;
    }
    throw RuntimeError(ErrorNumber::kTextMissing, "No text has the id " + std::to_string(id));
}

void EmbeddedTexts::SwitchLanguage(std::int32_t languageId, const std::string& name) {
    hostLanguage_ = languageId;
    LanguageChanged.Raise(languageId, name);
}

}  // namespace kv_tr
