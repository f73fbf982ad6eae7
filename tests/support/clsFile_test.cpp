// Text files of every form read and written, and what happens when that fails.
#include "support/clsFile.h"

#include <gtest/gtest.h>

#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "support/errors.h"

namespace kv_tr {
namespace {

namespace fs = std::filesystem;
using test::ReadFile;
using test::WriteFile;

/// The number of the RuntimeError that the action throws; 0 when it throws none.
int ThrownNumber(const std::function<void()>& action) {
    try {
        action();
        return 0;
    } catch (const RuntimeError& error) {
        return static_cast<int>(error.Number());
    }
}

TEST(clsFile, ReadsEveryKindOfLineAndWritesCrLfInTheCodePageOfTheLanguage) {
    const test::RecordingPlatform platform;
    const test::TemporaryFolder folder;
    const struct {
        std::int32_t language;
        std::string bytes;
        std::vector<std::string> lines;
        std::string written;
    } cases[] = {
        {kEnglish, "", {}, ""},
        {kEnglish,
         "a\r\nb\n\rc\r\r\n d ",
         {"a", "b", "", "c", "", " d "},
         "a\r\nb\r\n\r\nc\r\n\r\n d \r\n"},
        {kHungarian, "t\xFBr\xF5\r\n", {"tűrő"}, "t\xFBr\xF5\r\n"},
        {kVietnamese, "Vi\xEA\xF2t\n", {"Việt"}, "Vi\xEA\xF2t\r\n"},
        {kVietnamese, "\xEF\xBB\xBFtűrő\n\xFF", {"tűrő", "\uFFFD"}, "t?r?\r\n?\r\n"},
        {kEnglish, "\xEF\xBB", {"ď»"}, "\xEF\xBB\r\n"},  // begins like a UTF-8 mark
    };
    for (const auto& [language, bytes, lines, written] : cases) {
        SetMlLanguage(language, {});
        WriteFile(folder.File("in"), bytes);
        clsFile in, out;
        EXPECT_TRUE(in.OpenIt(folder.File("in"), true) && out.OpenIt(folder.File("out")));
        std::vector<std::string> read;
        while (!in.AtEnd()) out.Print(read.emplace_back(in.ReadLine()));
        EXPECT_EQ(ThrownNumber([&] { in.ReadLine(); }), 62);
        EXPECT_EQ(read, lines);
        out.CloseIt();
        EXPECT_EQ(ReadFile(folder.File("out")), written);
    }
}

TEST(clsFile, ReportsWhatDoesNotOpenAndStillReturnsTrue) {
    test::RecordingPlatform platform;
    const test::TemporaryFolder folder;
    std::map<std::string, bool> cases = {{folder.File("gone"), true},
                                         {folder.File("gone/out"), false},
                                         {folder.File(""), true},
                                         {folder.File("."), false},
                                         {"", false}};
    if (fs::exists("/proc/self/mem")) cases["/proc/self/mem"] = true;  // opens, but cannot be read
    for (const auto& [name, input] : cases) {
        SCOPED_TRACE(name);
        clsFile file;
        EXPECT_TRUE(file.OpenIt(name, input));
        EXPECT_FALSE(file.IsOpen());
        ASSERT_EQ(platform.messages.size(), 1U);
        EXPECT_EQ(platform.messages[0].icon, Icon::kExclamation);
        EXPECT_EQ(platform.messages[0].title, "");
        EXPECT_EQ(platform.TakeTexts()[0], "File open error:" + name);
        EXPECT_EQ(ThrownNumber([&] { file.AtEnd(); }), 52);
        EXPECT_EQ(ThrownNumber([&] { file.Print("x"); }), 52);
    }
    EXPECT_TRUE(fs::is_empty(folder.File("")));
}

TEST(clsFile, KeepsItsFileAndItsNumberUntilItIsClosed) {
    const test::RecordingPlatform platform;
    const test::TemporaryFolder folder;
    WriteFile(folder.File("a"), "first");
    WriteFile(folder.File("b"), "second");
    clsFile a, b, c;
    a.OpenIt(folder.File("a"), true);
    b.OpenIt(folder.File("b"), true);
    EXPECT_TRUE(a.OpenIt(folder.File("b"), false));
    EXPECT_EQ(ThrownNumber([&] { a.Print("x"); }), 52);
    EXPECT_EQ(a.ReadLine() + b.ReadLine(), "firstsecond");

    const std::int16_t number = a.FileNr();
    EXPECT_NE(b.FileNr(), number);
    a.FileNr(b.FileNr());
    a.TearDown();
    EXPECT_EQ(ThrownNumber([&] { a.ReadLine(); }), 52);
    c.OpenIt(folder.File("a"), true);
    EXPECT_EQ(c.FileNr(), number);
}

TEST(LineReader, RefusesLinesWithoutBoundAndFailingSources) {
    const std::string longest(LineReader::kLongestLine, 'x');
    std::stringbuf text(longest + "\r\n" + longest + "x\n");
    LineReader reader(text);
    EXPECT_TRUE(reader.Next());
    EXPECT_EQ(reader.Line(), longest);
    EXPECT_EQ(ThrownNumber([&] { reader.Next(); }), 63);

    struct : std::streambuf {
        int_type underflow() override { throw std::ios_base::failure("unplugged"); }
    } unplugged;
    EXPECT_EQ(ThrownNumber([&] { LineReader(unplugged).Next(); }), 57);
}

TEST(ReplacingFile, ReplacesOnCommitAndNeverBefore) {
    const test::TemporaryFolder folder;
    const std::string name = folder.File("out");
    WriteFile(name, "old");
    fs::permissions(name, fs::perms{0640});
    fs::create_symlink("out", folder.File("link"));
    ReplacingFile(name).Write("never committed");
    EXPECT_EQ(ReadFile(name), "old");

    ReplacingFile slow(folder.File("link"));
    ReplacingFile quick(name);
    slow.Write("slow");
    quick.Write("quick");
    EXPECT_TRUE(quick.Commit());
    EXPECT_EQ(ReadFile(name), "quick");
    EXPECT_TRUE(slow.Commit());
    EXPECT_EQ(ReadFile(name), "slow");
    EXPECT_EQ(fs::status(name).permissions(), fs::perms{0640});
    EXPECT_TRUE(fs::is_symlink(folder.File("link")));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.File("")), {}), 2);
}

TEST(ReplacingFile, ObeysPermissions) {
    const test::TemporaryFolder folder;
    fs::create_directory(folder.File("closed"));
    WriteFile(folder.File("closed/open"), "old");
    WriteFile(folder.File("protected"), "old");
    fs::permissions(folder.File("protected"), fs::perms{0400});
    fs::permissions(folder.File("closed"), fs::perms{0500});
    if (std::ofstream(folder.File("closed/new"))) GTEST_SKIP() << "this user may do everything";

    EXPECT_FALSE(ReplacingFile(folder.File("protected")).IsOpen());
    EXPECT_FALSE(ReplacingFile(folder.File("closed/new")).IsOpen());
    ReplacingFile direct(folder.File("closed/open"));
    direct.Write("new");
    EXPECT_TRUE(direct.Commit());
    EXPECT_EQ(ReadFile(folder.File("closed/open")), "new");
    fs::permissions(folder.File("closed"), fs::perms{0700});
}

}  // namespace
}  // namespace kv_tr
