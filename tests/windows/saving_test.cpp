// What a save leaves behind on Windows, where open files stay in their places.
#include <gtest/gtest.h>

#include <algorithm>

#include "helpers/files.h"
#include "kv_tr/text/replacing_file.h"
#include "kv_tr/text/windows_api.h"

namespace kv_tr::test {
namespace {

namespace fs = std::filesystem;

/// A file that somebody has open, and shares or not.
class Opened {
public:
    Opened(const std::string& name, DWORD shares)
        : handle_(CreateFileW(PathOf(name).c_str(), GENERIC_READ, shares, nullptr, OPEN_EXISTING, 0,
                              nullptr)) {}
    ~Opened() { CloseHandle(handle_); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

private:
    HANDLE handle_;
};

class Saving : public testing::Test {
protected:
    const TemporaryFolder folder;
    const std::string name = WriteFile(folder.File("pontok-űő-việt-😀.dat"), "old");

    static bool Save(const std::string& file, const std::string& text) {
        ReplacingFile saved(file);
        if (!saved.IsOpen()) return false;
        saved.Write(text);
        return saved.Commit();
    }
    std::size_t Count() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(PathOf(folder.File(""))), {}));
    }
};

TEST_F(Saving, ReplacesOnCommitAndLeavesNothingBehindOtherwise) {
    {
        ReplacingFile file(name);
        ASSERT_TRUE(file.IsOpen());
        file.Write("half");
        EXPECT_EQ(ReadFile(name), "old");
        EXPECT_EQ(Count(), 2U);
        EXPECT_EQ(file.Temporary().parent_path(), PathOf(name).parent_path());
    }
    EXPECT_EQ(ReadFile(name), "old");
    EXPECT_EQ(Count(), 1U);
    EXPECT_TRUE(Save(name, "new\n"));
    EXPECT_TRUE(Save(folder.File("más.dat"), "other"));
    EXPECT_EQ(ReadFile(name), "new\n") << "no end of line changes";
    EXPECT_EQ(ReadFile(folder.File("más.dat")), "other");
    EXPECT_EQ(Count(), 2U);
}

TEST_F(Saving, RefusesWhatIsLockedReadOnlyAFolderOrHasNoName) {
    {
        const Opened alone(name, 0);
        EXPECT_FALSE(Save(name, "new"));
    }
    {
        const Opened reader(name, FILE_SHARE_READ | FILE_SHARE_WRITE);  // but cannot be replaced
        EXPECT_FALSE(Save(name, "new"));
    }
    EXPECT_EQ(ReadFile(name), "old");
    EXPECT_EQ(Count(), 1U);
    EXPECT_FALSE(Save(folder.File("none/x"), "new"));
    EXPECT_FALSE(Save(folder.File(""), "new"));
    EXPECT_FALSE(Save(folder.File("\xFF.dat"), "new")) << "no UTF-8";
    EXPECT_FALSE(Save("", "new"));
    EXPECT_EQ(Count(), 1U);
    EXPECT_TRUE(Save(name, "new")) << "nobody has it any more";
}

TEST_F(Saving, RemovesWhatDeadWritersLeftAndNotWhatIsBeingWritten) {
    const std::string dead = WriteFile(folder.File(".kv_tr-1234.tmp"), "dead");
    const std::string foreign = WriteFile(folder.File(".kv_tr-12x.tmp"), "no name of ours");
    ReplacingFile living(name);
    ReplacingFile other(folder.File("other"));
    EXPECT_FALSE(fs::exists(PathOf(dead)));
    EXPECT_TRUE(fs::exists(PathOf(foreign)));
    EXPECT_TRUE(fs::exists(living.Temporary()));
    EXPECT_TRUE(fs::exists(other.Temporary()));
    other.Write("second");
    living.Write("first");
    EXPECT_TRUE(other.Commit());
    EXPECT_TRUE(living.Commit());
    EXPECT_EQ(ReadFile(name), "first");
}

}  // namespace
}  // namespace kv_tr::test
