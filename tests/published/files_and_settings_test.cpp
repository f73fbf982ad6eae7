// File names, text files of every form, and the settings file.
#include <gtest/gtest.h>

#include "helpers/recording_platform.h"
#include "kv_tr/published/clsFile.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/errors.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/text/file_names.h"

namespace kv_tr::test {
namespace {

namespace fs = std::filesystem;

TEST(FileNames, FallIntoTheirParts) {
    using Parts = std::array<std::string, 6>;  // path, extension, stripped, folder, titles
    for (const Parts& parts :
         {Parts{R"(C:\data/v1.2\pts)", R"(2\pts)", R"(C:\data/v1)", "C:\\data/v1.2", "pts", "pts"},
          {"A:pts.dat", "dat", "A:pts", "A:pts.dat", "pts.dat", "pts"},
          {"data/", "", "data/", "data", "", ""}}) {
        const std::string& path = parts[0];
        EXPECT_EQ(parts, (Parts{path, GetFileExt(path), StripFileExt(path), GetFolderPart(path),
                                GetFileTitle(path, true), GetFileTitle(path, false)}));
    }
}

TEST(clsFile, ReadsEveryKindOfLineAndWritesCrLfInTheCodePageOfTheLanguage) {
    const RecordingPlatform platform;
    const TemporaryFolder folder;
    using Lines = std::vector<std::string>;
    for (const auto& [language, bytes, lines, written] :
         {std::tuple<std::int32_t, std::string, Lines, std::string>{kEnglish, "", {}, ""},
          {kEnglish, "a\r\nb\n\r\r\n ", {"a", "b", "", "", " "}, "a\r\nb\r\n\r\n\r\n \r\n"},
          {kHungarian, "t\xFBr\xF5\r\n", {"tűrő"}, "t\xFBr\xF5\r\n"},
          {kVietnamese, "\xEF\xBB\xBFtűrő\n\xFF", {"tűrő", "\uFFFD"}, "t?r?\r\n?\r\n"},
          {kEnglish, "Győr\n\xFF\n", {"Gy\xC4\xB9\xE2\x80\x98r", "˙"}, "Gy\xC5\x91r\r\n\xFF\r\n"},
          {kEnglish, "a\nGyőr\nű\x1A\x1A", {"a", "Győr", "ű"}, "a\r\nGy\xF5r\r\n\xFB\r\n"},
          {kEnglish, "\xEF\xBB", {"ď»"}, "\xEF\xBB\r\n"}}) {  // begins like a UTF-8 mark
        SetMlLanguage(language, {});
        clsFile in, out;
        in.OpenIt(WriteFile(folder.File("in"), bytes), true);
        out.OpenIt(folder.File("out"));
        in.OpenIt(folder.File("gone"), true);  // keeps the file it has
        EXPECT_EQ(in.FileNr() * 10 + out.FileNr(), 12) << "the first that are free";
        Lines read;
        while (!in.AtEnd()) out.Print(read.emplace_back(in.ReadLine()));
        EXPECT_THROW(in.ReadLine(), RuntimeError);
        EXPECT_EQ(read, lines);
        out.CloseIt();
        EXPECT_EQ(ReadFile(folder.File("out")), written);
    }
}

TEST(clsFile, KeepsTheOlderFileWhenAnExceptionLeavesHalfANewOne) {
    const RecordingPlatform platform;
    const TemporaryFolder folder;
    const std::string name = folder.File("town.dat");
    const auto write = [&name](bool fails) {
        WriteFile(name, "old");
        clsFile file;
        file.OpenIt(name);
        file.Print("half");
        if (fails) throw std::runtime_error("text server gone");
    };
    EXPECT_THROW(write(true), std::runtime_error);
    EXPECT_EQ(ReadFile(name), "old");
    write(false);  // closed as the object goes away
    EXPECT_EQ(ReadFile(name), "half\r\n");
}

TEST(clsFile, ReportsWhatDoesNotOpenAndStillReturnsTrue) {
    RecordingPlatform platform;
    const TemporaryFolder folder;
    for (const auto& [name, input] : {std::pair{folder.File("gone"), true},
                                      {folder.File("gone/out"), false},
                                      {"/proc/self/mem", true}}) {  // opens, but cannot be read
        clsFile file;
        EXPECT_TRUE(file.OpenIt(name, input));
        EXPECT_EQ(platform.TakeTexts(), std::vector{"File open error:" + name});
        EXPECT_THROW(file.AtEnd(), RuntimeError);
        EXPECT_THROW(file.Print("x"), RuntimeError);
    }
}

const SettingKey kPath{"KV_Tr", "Settings", "Path"};

TEST(InitDir, IsAFolderThatExists) {
    RecordingPlatform platform;
    const TemporaryFolder folder;
    for (const auto& [stored, expected] : {std::pair{folder.File(""), folder.File("")},
                                           {WriteFile(folder.File("file"), ""), DefaultFolder()},
                                           {"", "unchanged"}}) {
        platform.settings["KV_Tr/Settings/Path"] = stored;
        InitDir("unchanged");
        LoadInitDir();
        EXPECT_EQ(InitDir(), expected);
    }
    for (const auto& [now, remembered] : {std::pair{"", DefaultFolder()}, {"/survey", "/survey"}}) {
        clsTrCalc().sInitDir(now);
        EXPECT_EQ(platform.settings["KV_Tr/Settings/Path"], remembered);
    }
    RememberFolderOf("/data/town/points.dat");
    EXPECT_EQ(InitDir(), "/data/town");
    clsComponent().sAppTitle("Other");
    SaveSetting("Section", "Key", "value");
    EXPECT_EQ(platform.settings["Other/Section/Key"], "value");
}

TEST(SettingsFile, ChangesItsOwnLineAndKeepsAllOthers) {
    for (const auto& [before, after] :
         {std::pair<std::string, std::string>{"", "[Settings]\nPath=/é=1\n"},
          {"; note\n[Other]\nPath=/x\n[Settings]\nSize=1\nPath=/old\n\n[Last]\nx=y",
           "; note\n[Other]\nPath=/x\n[Settings]\nSize=1\nPath=/é=1\n\n[Last]\nx=y\n"},
          {"[Settings]\r\nPaths=1\r\n[Last]\r\n", "[Settings]\nPaths=1\nPath=/é=1\n[Last]\n"},
          {"\xFF\x01[Settings]\nPath=/x",
           "\xFF\x01[Settings]\nPath=/x\n[Settings]\nPath=/é=1\n"}}) {
        const TemporaryFolder folder;
        WriteFile(folder.File("KV_Tr.ini"), before);
        SettingsFile settings(folder.File(""));
        settings.Write(kPath, "/é=1");
        EXPECT_EQ(ReadFile(folder.File("KV_Tr.ini")), after);
        EXPECT_EQ(settings.Read(kPath, "fallback"), "/é=1");
    }
}

TEST(SettingsFile, CreatesItsFolderOrStaysAsItIs) {
    const TemporaryFolder folder;
    for (const char* name : {"taken/KV_Tr.ini", "damaged"})
        fs::create_directories(folder.File(name));
    const std::string damaged = std::string(2 << 20, 'x') + "\n[Settings]\nPath=/x\n";
    WriteFile(folder.File("damaged/KV_Tr.ini"), damaged);
    for (const auto& [name, expected] : {std::pair{folder.File("new/deep"), "value"},
                                         {folder.File("damaged/KV_Tr.ini/below"), "fallback"},
                                         {folder.File("taken"), "fallback"},
                                         {folder.File("damaged"), "fallback"},
                                         {"", "fallback"}}) {
        SettingsFile settings(name);
        EXPECT_EQ(settings.Read(kPath, "fallback"), "fallback");
        settings.Write(kPath, "value");
        EXPECT_EQ(settings.Read(kPath, "fallback"), expected);
    }
    EXPECT_TRUE(ReadFile(folder.File("damaged/KV_Tr.ini")) == damaged) << "the rest would be lost";
}

}  // namespace
}  // namespace kv_tr::test
