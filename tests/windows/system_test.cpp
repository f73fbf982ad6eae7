// What is of Windows only: names and texts in UTF-16, settings in the registry, the decimal sign.
#include <gtest/gtest.h>

#include <chrono>

#include "helpers/files.h"
#include "kv_tr/files/control_point_file.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/registry_settings.h"
#include "kv_tr/text/paths.h"
#include "kv_tr/text/wide_text.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr::test {
namespace {

TEST(WideText, GoesThereAndBackAndReplacesWhatIsNoText) {
    const std::string text = "Bản đồ, űrlap, 😀";
    EXPECT_EQ(Wide(text).size(), 17U) << "the last sign takes two";
    EXPECT_EQ(Utf8(Wide(text)), text);
    EXPECT_EQ(Utf8(Wide(std::string("a\0b", 3))), std::string("a\0b", 3));
    EXPECT_EQ(Utf8(Wide("a\xFF")), "a\uFFFD");
    EXPECT_EQ(Utf8(L"a\xD83D"), "a\uFFFD");
    EXPECT_EQ(Wide(""), L"");
}

TEST(Paths, OpenFilesOfAnyNameAndNoneOfWhatIsNoName) {
    const TemporaryFolder folder;
    const std::string name =
        WriteFile(folder.File("pontok-űő-việt.dat"), "A 0 0 100 200\r\nB 10 0 110 200\r\n");
    EXPECT_EQ(NameOfPath(PathOf(name)), name);
    EXPECT_EQ(ReadControlPointFile(name).points.size(), 2U);
    EXPECT_TRUE(OpenToRead(PathOf(name)).is_open());
    ASSERT_TRUE(LastChange(PathOf(name)));
    EXPECT_LT(std::chrono::abs(*LastChange(PathOf(name)) - std::chrono::file_clock::now()),
              std::chrono::minutes(5));
    EXPECT_FALSE(LastChange(PathOf(folder.File("none"))));
    EXPECT_TRUE(PathOf("\xC5").empty());
    EXPECT_FALSE(OpenToRead(PathOf("\xC5")).is_open());
    EXPECT_FALSE(OpenToRead(PathOf(folder.File(""))).is_open());
    EXPECT_FALSE(ReadControlPointFile("\xC5").problems.empty());

    std::FILE* nameless = OpenNameless();
    ASSERT_NE(nameless, nullptr);
    EXPECT_GT(std::fputs("\n\x1A\n", nameless), -1);
    std::rewind(nameless);
    char read[4] = "";
    EXPECT_EQ(std::fread(read, 1, 4, nameless), 3U) << "every byte as it is";
    std::fclose(nameless);

    _wputenv_s(L"KV_TR_VARIABLE", L"ő");
    EXPECT_EQ(Environment("KV_TR_VARIABLE"), "ő");
    EXPECT_EQ(Environment("KV_TR_NO_VARIABLE"), "");
}

TEST(RegistrySettings, KeepTextsOfTheUser) {
    RegistrySettings settings;
    const SettingKey key{"KV_Tr test", "Sectiön", "Kulcs ű"};
    EXPECT_EQ(settings.Read(key, "none"), "none");
    settings.Write(key, "Érték 😀\n");
    EXPECT_EQ(RegistrySettings().Read(key, "none"), "Érték 😀\n");
    settings.Write(key, "");
    EXPECT_EQ(settings.Read(key, "none"), "");
    RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\KV_Tr test");
    EXPECT_EQ(settings.Read(key, "none"), "none");
}

TEST(UsersDecimalSeparator, IsThatOfTheSystem) {
    wchar_t shown[8] = L"";
    ASSERT_GT(GetNumberFormatEx(LOCALE_NAME_USER_DEFAULT, 0, L"0.5", nullptr, shown, 8), 0);
    const ComponentScope scope{Platform{}};
    EXPECT_EQ(DecimalSeparator(), std::wstring(shown).find(L',') == std::wstring::npos ? '.' : ',');
}

}  // namespace
}  // namespace kv_tr::test
