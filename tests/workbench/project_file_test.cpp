// Projects as files, and copies that survive a crash.
#include "workbench/project_file.h"

#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <map>

#include "workbench/recovery.h"
#include "workbench/sample.h"

namespace kv_tr::workbench {
namespace {

using Kind = ProjectProblem::Kind;
using Action = AutosaveRule::Action;

class ProjectFile : public WorkbenchTest {};

TEST_F(ProjectFile, KeepsEveryDigitAndLetter) {
    Open(7);
    bench.SetCell(3, Column::kSourceFirst, "0.1000000000000000055511151231257827");
    bench.SetCell(4, Column::kDestinationFirst, "-1e-300");
    bench.SetCell(5, Column::kIdentifier, "\t\"Đ/ő\\\x01");
    bench.Exclude({1}, "két\nsor");
    bench.Swap();
    bench.SetSolution(Solution::kAccurate);
    bench.SetAlpha("0.001");
    const std::string name = folder.File("a.kvtr");
    ASSERT_EQ(SaveProject(bench.Project(), name), "");
    const ReadProject read = ProjectOfFile(name);
    ASSERT_TRUE(read.Complete()) << read.problem.member;
    EXPECT_EQ(read.content.settings, bench.Project().Current());
    EXPECT_TRUE(read.content.isSwapped);
    ASSERT_EQ(read.content.pairs.size(), 7U);
    for (std::size_t i = 0; i < 7; ++i)
        EXPECT_TRUE(read.content.pairs[i].IsSameAs(bench.Project().PairAt(i))) << i;
    EXPECT_EQ(ProjectText(Document(read.content)), test::ReadFile(name));
    EXPECT_NE(SaveProject(bench.Project(), folder.File("none/a.kvtr")), "");
}

TEST_F(ProjectFile, IsRefusedWithThePlaceOfWhatIsWrong) {
    Open(4);
    const std::string good = ProjectText(bench.Project());
    const struct {
        std::string from, to;
        Kind kind;
        std::string member;
        std::string lineOf;  // what stands in the line of the problem
    } cases[] = {
        {"kv_tr-project", "other", Kind::kNoProject, "", ""},
        {"\"version\": 1", "\"version\": 2", Kind::kNewer, "2", "\"version\""},
        {"\"limit\"", "\"limits\"", Kind::kUnknown, "limits", "\"limits\""},
        {"\"alpha\": 0.05,", "", Kind::kMissing, "alpha", ""},
        {"\"alpha\": 0.05", "\"alpha\": 1", Kind::kUnsuitable, "alpha", "\"alpha\""},
        {"\"type\": -1", "\"type\": 10", Kind::kUnsuitable, "type", "\"type\""},
        {"\"sw\"", "\"up\"", Kind::kUnsuitable, "source.axes", "\"up\""},
        {"\"edited\": false", "\"edited\": 0", Kind::kUnsuitable, "files[0].edited", "a.dat"},
        {"[0.011, 0.013]", "[0.011, 0]", Kind::kUnsuitable, "points[1].sigma", "\"P2\""},
        {"\"id\": \"P3\", \"source\": [", "\"id\": \"P3\", \"source\": [1, ", Kind::kUnsuitable,
         "points[2].source", "\"P3\""},
        {"\"id\": \"P4\"", "\"colour\": 3, \"id\": \"P4\"", Kind::kUnknown, "points[3].colour",
         "\"P4\""},
        {"\"id\": \"P4\", ", "", Kind::kMissing, "points[3].id", ""},
        {"\"solution\":", "\"solution\"", Kind::kNoJson, "", "\"solution\""},
        {"\"limit\": 0.2", "\"limit\": 1e999", Kind::kNoJson, "", "1e999"},
        {"\"id\": \"P4\"", "\"id\": \"P5\", \"id\": \"P4\"", Kind::kRepeated, "points[3].id",
         "\"P4\""},
    };
    for (const auto& [from, to, kind, member, lineOf] : cases) {
        std::string text = good;
        ASSERT_NE(text.find(from), std::string::npos) << from;
        text.replace(text.find(from), from.size(), to);
        const ProjectProblem problem = ProjectOf(text).problem;
        EXPECT_EQ(problem.kind, kind) << to;
        EXPECT_EQ(problem.member, member) << to;
        if (lineOf.empty()) continue;
        const auto before = text.substr(0, text.find(lineOf));
        EXPECT_EQ(problem.line, 1U + static_cast<std::size_t>(std::ranges::count(before, '\n')))
            << to;
        EXPECT_GT(problem.column, 0U);
    }
    for (std::size_t length = 0; length < good.size(); length += 7)
        EXPECT_FALSE(ProjectOf(good.substr(0, length)).Complete()) << length;
    EXPECT_EQ(Complaint({Kind::kUnsuitable, 7, 12, "alpha"}, "a.kvtr"),
              "a.kvtr, line 7, column 12: “alpha” is not as it should be");
    EXPECT_EQ(ProjectOfFile(folder.File("")).problem.kind, Kind::kNotOpened);
}

class Recovery : public WorkbenchTest {
protected:
    const std::filesystem::path place{folder.File("state")};

    /// Another program writes a copy of this project and dies.
    void Crash(const std::string& fileName) {
#ifdef _WIN32  // what a program wrote that ended well is put there again
        std::map<std::string, std::string> files;
        RecoveryCopy copy(place);
        ASSERT_TRUE(copy.Write(bench.Project(), fileName));
        for (const auto& entry : std::filesystem::directory_iterator(place))
            files[entry.path().string()] = test::ReadFile(entry.path().string());
        copy.Remove();
        for (const auto& [name, bytes] : files) {
            if (!std::filesystem::exists(name)) test::WriteFile(name, bytes);
        }
#else
        const pid_t child = fork();
        if (child == 0) {
            RecoveryCopy copy(place);
            const bool written = copy.Write(bench.Project(), fileName);
            _exit(written ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
#endif
    }
};

TEST_F(Recovery, OffersWhatDeadProgramsLeft) {
    Open(9);
    RecoveryCopy alive(place);
    EXPECT_TRUE(alive.Leftovers().empty());
    ASSERT_TRUE(alive.Write(bench.Project(), "a much longer name of a project.kvtr"));
    ASSERT_TRUE(alive.Write(bench.Project(), "mine.kvtr"));
    bench.Toggle(2);
    const std::string text = ProjectText(bench.Project());
    Crash("theirs.kvtr");
    RecoveryCopy next(place);
    RecoveryCopy other(place);
    const auto offered = next.Leftovers();
    ASSERT_EQ(offered.size(), 1U) << "not that of the living";
    EXPECT_EQ(offered[0].fileName, "theirs.kvtr");
    const ReadProject taken = next.Take(offered[0]);
    ASSERT_TRUE(taken.Complete());
    EXPECT_EQ(ProjectText(Document(taken.content)), text);
    EXPECT_FALSE(other.Take(offered[0]).Complete()) << "nobody gets it twice";
    EXPECT_TRUE(other.Leftovers().empty());
    next.Remove();
    alive.Remove();
    other.Remove();
    EXPECT_TRUE(std::filesystem::is_empty(place)) << "nothing stays behind";
}

TEST_F(Recovery, KeepsDamagedCopiesUntilTheyAreDiscarded) {
    Open(5);
    Crash("a.kvtr");
    RecoveryCopy next(place);
    const Leftover leftover = next.Leftovers().at(0);
    test::WriteFile(leftover.copy.string(), "{");
    EXPECT_FALSE(next.Take(leftover).Complete());
    ASSERT_EQ(next.Leftovers().size(), 1U);
    RecoveryCopy::Discard(leftover);
    EXPECT_TRUE(next.Leftovers().empty());
    EXPECT_FALSE(RecoveryCopy(std::filesystem::path{}).Write(bench.Project(), "")) << "no folder";
}

TEST(Autosave, LosesAMinuteOfWorkAtMost) {
    AutosaveRule rule;
    AutosaveRule::Moment now{};
    const auto after = [&now](int seconds) { return now += std::chrono::seconds(seconds); };
    EXPECT_EQ(rule.Next(), std::nullopt);
    rule.Watch(1, true, now);
    const auto begun = now;
    for (std::uint64_t version = 2; version < 60; ++version) {  // steady work postpones nothing
        rule.Watch(version, true, after(1));
        if (rule.Wanted(now) == Action::kWrite) break;
    }
    EXPECT_EQ(rule.Wanted(now), Action::kWrite);
    EXPECT_LE(now - begun, std::chrono::seconds(60));
    rule.Done(Action::kWrite, false, now);
    EXPECT_EQ(rule.Wanted(now), Action::kNone) << "a failure is not repeated at once";
    EXPECT_EQ(rule.Wanted(after(30)), Action::kWrite) << "but later";
    rule.Done(Action::kWrite, true, now);
    rule.Watch(31, true, after(1));
    EXPECT_EQ(rule.Next(), std::nullopt) << "the copy is that of this state";
    rule.Watch(32, false, after(1));
    EXPECT_EQ(rule.Wanted(now), Action::kRemove) << "saved: the copy is out of date";
    rule.Done(Action::kRemove, true, now);
    EXPECT_EQ(rule.Wanted(after(1000)), Action::kNone);
}

}  // namespace
}  // namespace kv_tr::workbench
