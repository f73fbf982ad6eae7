// Files of texts and files of settings: texts keep their places, settings are found again.
#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "fuzz/fuzz.h"
#include "helpers/recording_platform.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/published/text_table_file.h"
#include "kv_tr/text/code_page.h"

/// Settings would wait for the disk.
extern "C" int fsync(int) { return 0; }

namespace kv_tr::test {
namespace {

void CheckTexts(std::string_view bytes) {
    std::stringbuf source{std::string(bytes)};
    const auto [texts, badLine] = ReadTextTable(source, MlLanguages(), HungarianStrings());
    Require(badLine <= LineCount(bytes), "the bad line exists");
    for (const auto& [key, text] : texts) {
        const std::string filled = FillPlaces(text, {"one", "two", "three"});
        Require(IsUtf8(filled), "texts are valid");
        Require(text.find('{') == text.npos || filled != text, "the places of a text are filled");
    }
}

void CheckSettings(Input& input) {
    static const TemporaryFolder folder;
    const std::string name(input.Take(input.Byte() % 16));
    const std::string value(input.Take(input.Byte() % 32));
    WriteFile(folder.File("App.ini"), std::string(input.Rest()));
    SettingsFile file{std::filesystem::path(folder.File(""))};
    const SettingKey key{"App", "Settings", name};
    const SettingKey other{"App", "Other", "Key"};
    const std::string before = file.Read(other, "none");
    const bool plain = !name.empty() && name.find_first_of("\r\n=[") == name.npos &&
                       value.find_first_of("\r\n") == value.npos;
    for (const std::string& written : {value, std::string("second")}) {
        file.Write(key, written);
        Require(!plain || file.Read(key, "none") == written, "a setting is found again");
    }
    Require(!plain || file.Read(other, "none") == before, "other settings stay");
    for (const auto& entry : std::filesystem::directory_iterator(folder.File("")))
        Require(entry.path().filename() == "App.ini", "no temporary file stays");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    if (input.Below(8) != 0) {
        CheckTexts(input.Rest());
    } else {
        CheckSettings(input);
    }
    return 0;
}

}  // namespace kv_tr::test
