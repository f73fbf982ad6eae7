// File names, text files of every form, and the settings file.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <set>

#include "helpers/files.h"
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
          {"a/b:c.dat", "dat", "a/b:c", "a", "b:c.dat", "b:c"},
          {".dat", "dat", "", ".dat", ".dat", ""},
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
          {kVietnamese, "Vi\xEA\xF2t\n", {"Việt"}, "Vi\xEA\xF2t\r\n"},
          {kVietnamese, "\xEF\xBB\xBFtűrő\n\xFF", {"tűrő", "\uFFFD"}, "t?r?\r\n?\r\n"},
          {kEnglish,
           "a\nGyőr\n\xFF\nű",
           {"a", "Gy\xC4\xB9\xE2\x80\x98r", "˙", "Ĺ±"},
           "a\r\nGy\xC5\x91r\r\n\xFF\r\n\xC5\xB1\r\n"},  // valid in parts is not UTF-8
          {kEnglish, "a\nGyőr\nű\x1A\x1A", {"a", "Győr", "ű"}, "a\r\nGy\xF5r\r\n\xFB\r\n"},
          {kEnglish, "a\x1A\r\n\x1A", {"a\x1A"}, "a\x1A\r\n"},
          {kEnglish, "\xEF\xBB", {"ď»"}, "\xEF\xBB\r\n"}}) {  // begins like a UTF-8 mark
        SetMlLanguage(language, {});
        WriteFile(folder.File("in"), bytes);
        clsFile in, out;
        in.OpenIt(folder.File("in"), true);
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
    const auto write = [&name](auto finish) {
        WriteFile(name, "old");
        clsFile file;
        file.OpenIt(name);
        file.Print("half");
        finish(file);
    };
    EXPECT_THROW(write([](clsFile&) { throw std::runtime_error("text server gone"); }),
                 std::runtime_error);
    EXPECT_EQ(ReadFile(name), "old");
    write([](clsFile&) {});  // closed as it goes away
    EXPECT_EQ(ReadFile(name), "half\r\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.File("")), {}), 1);
}

TEST(clsFile, ReportsWhatDoesNotOpenAndStillReturnsTrue) {
    RecordingPlatform platform;
    const TemporaryFolder folder;
    for (const auto& [name, input] : {std::pair{folder.File("gone"), true},
                                      {folder.File("gone/out"), false},
                                      {folder.File("."), false},
                                      {"/proc/self/mem", true}}) {  // opens, but cannot be read
        clsFile file;
        EXPECT_TRUE(file.OpenIt(name, input));
        ASSERT_EQ(platform.messages.size(), 1U) << name;
        EXPECT_EQ(platform.TakeTexts()[0], "File open error:" + name);
        EXPECT_THROW(file.AtEnd(), RuntimeError);
        EXPECT_THROW(file.Print("x"), RuntimeError);
    }
    EXPECT_TRUE(fs::is_empty(folder.File("")));
}

const SettingKey kPath{"KV_Tr", "Settings", "Path"};

TEST(InitDir, IsAFolderThatExists) {
    RecordingPlatform platform;
    const TemporaryFolder folder;
    WriteFile(folder.File("file"), "");
    for (const auto& [stored, expected] : {std::pair{folder.File(""), folder.File("")},
                                           {folder.File("file"), DefaultFolder()},
                                           {"", "unchanged"}}) {
        platform.settings["KV_Tr/Settings/Path"] = stored;
        InitDir("unchanged");
        LoadInitDir();
        EXPECT_EQ(InitDir(), expected);
    }
    for (const auto& [folderNow, remembered] :
         {std::pair<std::string, std::string>{"", DefaultFolder()}, {"/survey", "/survey"}}) {
        clsTrCalc().sInitDir(folderNow);
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
    WriteFile(folder.File("file"), "");
    fs::create_directories(folder.File("taken/KV_Tr.ini"));
    fs::create_directories(folder.File("damaged"));
    fs::create_directories(folder.File("loop"));
    fs::create_symlink("KV_Tr.ini", folder.File("loop/KV_Tr.ini"));
    const std::string damaged = std::string(2 << 20, 'x') + "\n[Settings]\nPath=/x\n";
    WriteFile(folder.File("damaged/KV_Tr.ini"), damaged);
    for (const auto& [name, expected] : {std::pair{folder.File("new/deep"), "value"},
                                         {folder.File("file/below"), "fallback"},
                                         {folder.File("taken"), "fallback"},
                                         {folder.File("damaged"), "fallback"},
                                         {folder.File("loop"), "fallback"},
                                         {"", "fallback"}}) {
        SettingsFile settings(name);
        EXPECT_EQ(settings.Read(kPath, "fallback"), "fallback");
        settings.Write(kPath, "value");
        EXPECT_EQ(settings.Read(kPath, "fallback"), expected);
    }
    EXPECT_TRUE(ReadFile(folder.File("damaged/KV_Tr.ini")) == damaged) << "the rest would be lost";
    EXPECT_TRUE(fs::is_symlink(folder.File("loop/KV_Tr.ini")));
}

TEST(SettingsFile, StaysWholeWhileTwoProgramsWrite) {
    const TemporaryFolder folder;
    SettingsFile settings(folder.File(""));
    std::array<pid_t, 2> programs{};
    for (std::size_t i = 0; i < 2; ++i) {
        programs[i] = fork();
        if (programs[i] != 0) continue;
        const std::string value(20000, "ab"[i]);
        for (int k = 0; k < 200; ++k) settings.Write(kPath, value + std::to_string(k));
        _exit(0);
    }
    std::set<std::size_t> lengths;
    while (waitpid(programs[0], nullptr, WNOHANG) == 0) {
        const std::string value = settings.Read(kPath, std::string(20000, '-'));
        lengths.insert(std::min(value.find_first_not_of(value.front()), value.size()));
    }
    waitpid(programs[1], nullptr, 0);
    EXPECT_EQ(lengths, std::set<std::size_t>{20000});
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.File("")), {}), 1);
}

}  // namespace
}  // namespace kv_tr::test
