// Texts by number in the current language.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "kv_tr/published/platform.h"
#include "kv_tr/text/texts.h"

namespace kv_tr {

/// The text of an id in the current language, UTF-8. The Hungarian text beside the number tells
/// the reader of a call what it shows; the result always comes from the tables.
/// Throws RuntimeError kTextMissing for an id that no table has.
std::string GetMlString(int id, std::string_view sDefault);

/// What a text says in the current language, its places {0}, {1}, ... filled with the values.
std::string Translated(Text id, std::initializer_list<std::string> values = {});

/// Translated for the functions of the core.
TextLookup ComponentTexts();

/// Makes LanguageID the current language of the whole component, or Hungarian when it is none of
/// the supported ones. The name is not used.
void SetMlLanguage(std::int32_t LanguageID, std::string_view sName);

/// The current language; 0 before the first SetMlLanguage.
std::int32_t CurrentMlLanguage();

/// The languages there are, in the order in which hosts list them.
std::span<const std::int32_t> MlLanguages();

/// The display name of a language by its place in that list, counted from 0.
std::string MlLanguageName(std::size_t index);

/// Prepares the component's texts; calls after the first do nothing. In the mode of a separate
/// file it has the texts loaded from TextFile(), and a component without a language becomes
/// Hungarian.
void InitMlStrings();

/// Whether the texts come from a separate file. A host that wants that says so before it creates
/// the first object; by default the component has its own.
void UseTextFile(bool separate);

/// The file of that mode: KV_Tr.res beside the component.
std::string TextFile();

/// What every public object does with texts when it is created: initialises them, makes the
/// host's language the current one, and calls SetMlLanguage whenever the host switches language,
/// for as long as the result lives.
[[nodiscard]] Subscription FollowHostLanguage();

/// Calls the handler whenever the host has switched language, which is the current one by then.
[[nodiscard]] Subscription OnLanguageChange(std::function<void()> handler);

/// Texts by language and id.
using TextTable = std::map<std::pair<std::int32_t, int>, std::string>;

/// The string tables compiled into the component, and in front of them those of a file. Objects in
/// several threads may use it at once.
class EmbeddedTexts : public TextSource {
public:
    explicit EmbeddedTexts(std::int32_t hostLanguage) : hostLanguage_(hostLanguage) {}

    /// A file that cannot be read completely is shown to the user and leaves the texts as they are.
    void LoadFrom(const std::string& path) override;
    std::string Text(int id, std::int32_t languageId) override;
    std::int32_t HostLanguage() override { return hostLanguage_; }

    /// For the host: switches its language and raises LanguageChanged.
    void SwitchLanguage(std::int32_t languageId, const std::string& name);

private:
    std::atomic<std::int32_t> hostLanguage_;
    std::mutex mutex_;
    TextTable loaded_;
};

}  // namespace kv_tr
