// A session: names, saving, recovery, and the projects that were open last.
#include "workbench/session.h"

#include "workbench/recent_projects.h"
#include "workbench/sample.h"

namespace kv_tr::workbench {
namespace {

class Sessions : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    const std::filesystem::path state{folder.File("state")};
    const std::string name = folder.File("mérés.kvtr");
    AutosaveRule::Moment now{};

    /// A session with a project of the sample's points.
    std::unique_ptr<Session> Begun() {
        auto session = std::make_unique<Session>(state);
        OpenPreview preview;
        preview.TakeText("A 10 20 110 220\nB 50 20 151 221\nC 30 90 131 290\nD 7 55 108 254\n");
        session->Begin(preview);
        return session;
    }
    bool TickAfter(Session& session, int seconds) {
        return session.Tick(now += std::chrono::seconds(seconds));
    }
    std::size_t Files() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(state), {}));
    }
};

TEST_F(Sessions, KnowTheNameAndWhetherEverythingIsSaved) {
    const auto session = Begun();
    EXPECT_EQ(session->Title(), "Untitled project*") << "points of a text are saved nowhere";
    EXPECT_NE(session->Save(), "") << "under no name";
    ASSERT_EQ(session->SaveAs(name), "");
    EXPECT_EQ(session->Title(), "mérés.kvtr");
    session->Bench().Toggle(1);
    EXPECT_EQ(session->Title(), "mérés.kvtr*");
    EXPECT_NE(session->SaveAs(folder.File("none/a.kvtr")), "");
    EXPECT_EQ(session->Title(), "mérés.kvtr*") << "the failure changed nothing";
    EXPECT_EQ(session->Save(), "");

    EXPECT_NE(session->Open(folder.File("none.kvtr")), "");
    test::WriteFile(folder.File("bad.kvtr"), "{\n  \"format\": 7,,\n}");
    EXPECT_NE(session->Open(folder.File("bad.kvtr")).find("bad.kvtr, line 2, column 15: "),
              std::string::npos)
        << session->Open(folder.File("bad.kvtr"));
    EXPECT_EQ(session->Bench().Project().Count(), 4U) << "what was open stays";
    Session other(state);
    ASSERT_EQ(other.Open(name), "");
    EXPECT_EQ(other.Title(), "mérés.kvtr");
    EXPECT_FALSE(other.Bench().Project().PointAt(1).used);
    EXPECT_FALSE(session->IsFileChanged());
    test::WriteFile(name, "x");
    std::filesystem::last_write_time(
        PathOf(name), std::filesystem::last_write_time(PathOf(name)) + std::chrono::seconds(3));
    EXPECT_TRUE(session->IsFileChanged());
    OpenPreview preview;
    preview.TakeFile(test::WriteFile(folder.File("a.dat"), "A 1 2 3 4\nB 5 2 9 4\n"));
    session->Begin(preview);
    EXPECT_EQ(session->Title(), "Untitled project") << "the file has the points";
    EXPECT_FALSE(session->IsFileChanged());
}

TEST_F(Sessions, CopyWhatIsNotSavedAndCleanUp) {
    auto session = Begun();
    EXPECT_TRUE(TickAfter(*session, 1));
    ASSERT_TRUE(session->NextTick().has_value());
    EXPECT_TRUE(TickAfter(*session, 58));
    EXPECT_EQ(Files(), 2U) << "the copy and its lock";
    ASSERT_EQ(session->SaveAs(name), "");
    TickAfter(*session, 1);
    EXPECT_EQ(Files(), 0U) << "the copy is out of date";
    session->Bench().Toggle(0);
    TickAfter(*session, 1);
    TickAfter(*session, 60);
    EXPECT_EQ(Files(), 2U);
    session.reset();
    EXPECT_EQ(Files(), 0U) << "closed in order";
}

TEST_F(Sessions, RecoverUnderTheNameOfTheProject) {
    std::filesystem::create_directories(state);
    Document left(SampleContent(6));
    const std::string copy = (state / "project-7.kvtr").string();
    ASSERT_EQ(SaveProject(left, copy), "");
    test::WriteFile((state / "project-7.lock").string(), name + "\nrest");
    Session session(state);
    const auto offered = session.Leftovers();
    ASSERT_EQ(offered.size(), 1U);
    ASSERT_EQ(session.Recover(offered[0]), "");
    EXPECT_EQ(session.FileName(), name);
    EXPECT_EQ(session.Title(), "mérés.kvtr*");
    EXPECT_EQ(session.Bench().Project().Count(), 6U);
    TickAfter(session, 1);
    EXPECT_FALSE(session.NextTick()) << "what was left is the copy";
    EXPECT_NE(session.Recover(offered[0]), "") << "it is taken";
    EXPECT_EQ(session.Bench().Project().Count(), 6U);
    EXPECT_EQ(session.Save(), "");
    TickAfter(session, 1);
    EXPECT_EQ(Files(), 0U);
}

TEST_F(Sessions, RememberProjectsWithAPicture) {
    RecentProjects recent(state);
    EXPECT_TRUE(recent.List().empty());
    Document document(SampleContent(9, 0.5));
    for (int i = 0; i < 15; ++i) recent.Add(document, folder.File(std::to_string(i)));
    RecentProjects(state).Add(document, folder.File("9"));
    const auto list = recent.List();
    ASSERT_EQ(list.size(), RecentProjects::kMost);
    EXPECT_EQ(list[0].file, folder.File("9"));
    EXPECT_EQ(list[1].file, folder.File("14"));
    EXPECT_EQ(list[0].points, 9U);
    std::size_t circles = 0;
    for (std::size_t at = 0; (at = list[0].picture.find("<circle", at)) != std::string::npos; ++at)
        ++circles;
    EXPECT_EQ(circles, 9U);
    recent.Remove(folder.File("14"));
    EXPECT_EQ(recent.List()[1].file, folder.File("13"));
    test::WriteFile((state / "recent.json").string(), "[3, {\"file\": 4}, {\"file\": \"a\"}");
    EXPECT_TRUE(recent.List().empty());
    recent.Add(document, "b");
    EXPECT_EQ(recent.List().size(), 1U);
}

}  // namespace
}  // namespace kv_tr::workbench
