// Texts by number in the current language.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/platform.h"

namespace kv_tr {

// Language ids of the component.
inline constexpr std::int32_t kHungarian = 1038;
inline constexpr std::int32_t kRomanian = 1048;
inline constexpr std::int32_t kEnglish = 2057;
inline constexpr std::int32_t kVietnamese = 1066;
inline constexpr std::int32_t kComment = 100000;  // placeholder texts for checking captions
inline constexpr std::int32_t kSerbian = 2074;    // Latin script

/// The text of an id in the current language, UTF-8. The Hungarian text beside the number tells
/// the reader of a call what it shows; the result always comes from the tables.
/// Throws RuntimeError kTextMissing for an id that no table has.
std::string GetMlString(int id, std::string_view sDefault);

/// Makes LanguageID the current language of the whole component, or Hungarian when it is none of
/// the supported ones. The name is not used.
void SetMlLanguage(std::int32_t LanguageID, std::string_view sName);

/// The current language; 0 before the first SetMlLanguage.
std::int32_t CurrentMlLanguage();

/// Prepares the component's texts; calls after the first do nothing.
void InitMlStrings();

/// What every public object does with texts when it is created: initialises them, makes the
/// host's language the current one, and calls SetMlLanguage whenever the host switches language,
/// for as long as the result lives.
[[nodiscard]] Subscription FollowHostLanguage();

/// The string tables compiled into the component.
class EmbeddedTexts : public TextSource {
public:
    explicit EmbeddedTexts(std::int32_t hostLanguage) : hostLanguage_(hostLanguage) {}

    std::string Text(int id, std::int32_t languageId) override;
    std::int32_t HostLanguage() override { return hostLanguage_; }

    /// For the host: switches its language and raises LanguageChanged.
    void SwitchLanguage(std::int32_t languageId, const std::string& name);

private:
    std::int32_t hostLanguage_;
};

}  // namespace kv_tr
