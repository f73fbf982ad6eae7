// What a save leaves behind, whatever goes wrong.
#include "kv_tr/text/replacing_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <vector>

#include "helpers/files.h"
#include "helpers/recording_platform.h"

namespace {

std::function<void(int)> onSynchronise = [](int) {};

}  // namespace

/// Stands in for the system's call, so that tests see when it is made.
extern "C" int fsync(int file) {
    onSynchronise(file);
    return 0;
}

namespace kv_tr::test {
namespace {

namespace fs = std::filesystem;

/// Whether all of a function's checks hold in a process of its own, which may limit itself. It
/// runs as a user whom permissions bind.
bool HoldsInProcess(const std::function<bool()>& function) {
    const pid_t process = fork();
    if (process == 0) {
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(2);
        _exit(function() ? 0 : 1);
    }
    int status = -1;
    waitpid(process, &status, 0);
    return status == 0;
}

std::vector<std::string> NamesIn(const TemporaryFolder& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.File("")))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

TEST(ReplacingFile, ReplacesOnCommitAndNeverBefore) {
    const TemporaryFolder folder;
    const std::string longest(255, 'n');
    const std::string name = folder.File(longest);
    WriteFile(name, "old");
    fs::permissions(name, fs::perms{0640});
    fs::create_symlink(longest, folder.File("link"));
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

TEST(ReplacingFile, KeepsWhatItWritesPrivateAndTakesItsRightsLast) {
    const TemporaryFolder folder;
    WriteFile(folder.File("old"), "old");
    fs::permissions(folder.File("old"), fs::perms{0604});
    const mode_t before = umask(026);
    for (const auto& [name, rights] :
         {std::pair{"old", fs::perms{0604}}, {"new", fs::perms{0640}}}) {
        ReplacingFile file(folder.File(name));
        file.Write("secret");
        EXPECT_EQ(fs::status(file.Temporary()).permissions(), fs::perms{0600});
        EXPECT_TRUE(file.Commit());
        EXPECT_EQ(fs::status(folder.File(name)).permissions(), rights);
    }
    umask(before);
}

TEST(ReplacingFile, IsOnTheDiskBeforeItTakesThePlaceAndItsFolderAfterwards) {
    const TemporaryFolder folder;
    WriteFile(folder.File("file"), "old");
    std::string seen;
    onSynchronise = [&](int file) {
        struct stat status {};
        fstat(file, &status);
        seen +=
            S_ISDIR(status.st_mode) ? "folder of " : std::to_string(status.st_size) + " beside ";
        seen += ReadFile(folder.File("file")) + "; ";
    };
    ReplacingFile file(folder.File("file"));
    file.Write("newer");
    EXPECT_TRUE(file.Commit());
    onSynchronise = [](int) {};
    EXPECT_EQ(seen, "5 beside old; folder of newer; ");
}

TEST(ReplacingFile, FollowsLinksThatLeadNowhereButNotInCircles) {
    const TemporaryFolder folder;
    fs::create_directory(folder.File("deep"));
    fs::create_symlink("deep/next", folder.File("link"));
    fs::create_symlink("file", folder.File("deep/next"));
    fs::create_symlink("circle", folder.File("circle"));
    ReplacingFile file(folder.File("link"));
    file.Write("new");
    EXPECT_TRUE(file.Commit());
    EXPECT_TRUE(fs::is_symlink(folder.File("link")));
    EXPECT_TRUE(fs::is_symlink(folder.File("deep/next")));
    EXPECT_EQ(ReadFile(folder.File("deep/file")), "new");
    EXPECT_FALSE(ReplacingFile(folder.File("circle")).IsOpen());
    EXPECT_TRUE(fs::is_symlink(folder.File("circle")));
}

TEST(ReplacingFile, ObeysPermissionsAndWritesInPlaceOnlyWhatIsWhole) {
    const TemporaryFolder folder;
    fs::create_directory(folder.File("closed"));
    for (const char* name : {"protected", "closed/open"}) WriteFile(folder.File(name), "old");
    fs::permissions(folder.File(""), fs::perms{0755});
    fs::permissions(folder.File("protected"), fs::perms{0444});
    fs::permissions(folder.File("closed/open"), fs::perms{0666});
    fs::permissions(folder.File("closed"), fs::perms{0555});
    const std::string open = folder.File("closed/open");
    EXPECT_TRUE(HoldsInProcess([&] {
        ReplacingFile copied(open);
        copied.Write("new");
        const bool before = ReadFile(open) == "old";
        return before && copied.Commit() && ReadFile(open) == "new" &&
               !ReplacingFile(folder.File("protected")).IsOpen();
    }));
    EXPECT_TRUE(HoldsInProcess([&] {  // no room for more
        ReplacingFile copied(open);
        copied.Write(std::string(100000, 'x'));
        const rlimit limit{.rlim_cur = 5000, .rlim_max = 5000};
        std::signal(SIGXFSZ, SIG_IGN);
        return setrlimit(RLIMIT_FSIZE, &limit) == 0 && !copied.Commit();
    }));
    EXPECT_EQ(ReadFile(open), "new");
    fs::permissions(folder.File("closed"), fs::perms{0700});
}

TEST(ReplacingFile, RemovesWhatKilledWritersLeftAndNothingElse) {
    const TemporaryFolder folder;
    const std::string name = folder.File("file");
    WriteFile(folder.File(".kv_tr-12x.tmp"), "");
    const pid_t writer = fork();
    if (writer == 0) {
        ReplacingFile file(name);
        file.Write("lost");
        _exit(0);  // without destructors, as a kill would
    }
    waitpid(writer, nullptr, 0);
    const auto left = NamesIn(folder);
    ASSERT_EQ(left.size(), 2U);
    ReplacingFile slow(name);
    ReplacingFile quick(name);
    EXPECT_TRUE(quick.Commit());
    EXPECT_TRUE(slow.Commit());
    EXPECT_EQ(NamesIn(folder), (std::vector<std::string>{".kv_tr-12x.tmp", "file"}));
}

}  // namespace
}  // namespace kv_tr::test
