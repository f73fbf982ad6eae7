// The languages that a user may choose.
#include "common/languages.h"

#include <algorithm>
#include <array>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr::app {
namespace {

constexpr std::array kLanguages{
    Language{"hu", "Magyar", kHungarian}, Language{"ro", "Română", kRomanian},
    Language{"vi", "Tiếng Việt", kVietnamese}, Language{"en", "English", kEnglish},
    Language{"sr", "Srpski (latinica)", kSerbian}};

}  // namespace

std::span<const Language> Languages() { return kLanguages; }

std::int32_t LanguageCoded(std::string_view code) {
    const auto found = std::ranges::find(kLanguages, code, &Language::code);
    return found == kLanguages.end() ? 0 : found->id;
}

}  // namespace kv_tr::app
