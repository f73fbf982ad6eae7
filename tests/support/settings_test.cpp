// The remembered folder, and the settings file in every state it can be found in.
#include "support/settings.h"

#include <gtest/gtest.h>

#include "helpers/files.h"
#include "helpers/recording_platform.h"

namespace kv_tr {
namespace {

const SettingKey kPath{"KV_Tr", "Settings", "Path"};

TEST(LoadInitDir, TakesOnlyAFolderThatExists) {
    test::RecordingPlatform platform;
    const test::TemporaryFolder folder;
    test::WriteFile(folder.File("file"), "");
    for (const auto& [stored, expected] : {std::pair{folder.File(""), folder.File("")},
                                           {folder.File("gone"), DefaultFolder()},
                                           {folder.File("file"), DefaultFolder()},
                                           {"", "unchanged"}}) {
        platform.settings = {{"KV_Tr/Settings/Path", stored}};
        InitDir("unchanged");
        LoadInitDir();
        EXPECT_EQ(InitDir(), expected);
    }
    TheComponent().appTitle = "Host";  // has no setting yet
    LoadInitDir();
    EXPECT_EQ(InitDir(), DefaultFolder());
    InitDir("");
    SaveInitDir();
    EXPECT_EQ(platform.settings["Host/Settings/Path"], DefaultFolder());
}

TEST(SettingsFile, ChangesItsOwnLineAndKeepsAllOthers) {
    for (const auto& [before, after] :
         {std::pair<std::string, std::string>{"", "[Settings]\nPath=/é=1\n"},
          {"; note\n[Other]\nPath=/x\n[Settings]\nSize=1\nPath=/old\n\n[Last]\nx=y",
           "; note\n[Other]\nPath=/x\n[Settings]\nSize=1\nPath=/é=1\n\n[Last]\nx=y\n"},
          {"[Settings]\r\nPaths=1\r\n[Last]\r\n", "[Settings]\nPaths=1\nPath=/é=1\n[Last]\n"},
          {"\xFF\x01[Settings]\nPath=/x", "\xFF\x01[Settings]\nPath=/x\n[Settings]\nPath=/é=1\n"},
          {"[Settings]\n" + std::string(2 << 20, 'x'), "[Settings]\nPath=/é=1\n"}}) {
        const test::TemporaryFolder folder;
        test::WriteFile(folder.File("KV_Tr.ini"), before);
        SettingsFile settings(folder.File(""));
        settings.Write(kPath, "/é=1");
        EXPECT_EQ(test::ReadFile(folder.File("KV_Tr.ini")), after);
        EXPECT_EQ(settings.Read(kPath, "fallback"), "/é=1");
    }
}

TEST(SettingsFile, CreatesItsFolderOrStaysAsItIs) {
    const test::TemporaryFolder folder;
    test::WriteFile(folder.File("file"), "content");
    std::filesystem::create_directories(folder.File("taken/KV_Tr.ini"));
    for (const auto& [name, expected] : {std::pair{folder.File("new/deep"), "value"},
                                         {folder.File("file/below"), "fallback"},
                                         {folder.File("taken"), "fallback"},
                                         {"", "fallback"}}) {
        SettingsFile settings(name);
        EXPECT_EQ(settings.Read(kPath, "fallback"), "fallback");
        settings.Write(kPath, "value");
        EXPECT_EQ(settings.Read(kPath, "fallback"), expected);
    }
    EXPECT_EQ(test::ReadFile(folder.File("file")), "content");
}

}  // namespace
}  // namespace kv_tr
