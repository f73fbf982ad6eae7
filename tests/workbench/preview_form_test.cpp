// The choices of the preview, and the rows of the start page.
#include "workbench/preview_form.h"

#include <gtest/gtest.h>

#include "helpers/files.h"
#include "helpers/recording_platform.h"
#include "workbench/start_form.h"

namespace kv_tr::workbench {
namespace {

class PreviewFormTest : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    OpenPreview preview;
    PreviewForm form{preview};

    /// Chooses the entry that begins so.
    void Choose(PreviewChoice choice, const std::string& begin) {
        const auto entries = form.ListOf(choice).entries;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (entries[i].starts_with(begin)) return form.Choose(choice, i);
        }
        FAIL() << begin;
    }
    std::string Current(PreviewChoice choice) {
        const auto list = form.ListOf(choice);
        return list.entries.at(list.current);
    }
};

TEST_F(PreviewFormTest, SaysWhatWasFoundAndFollowsEachChoice) {
    preview.TakeText("P1;1,5;2,5;3,5;4,5\nP2;11,5;2,75;13,5;4,25\nP3;1,25;12,5;3,5;14,5\n");
    Choose(PreviewChoice::kFormat, "Columns");
    EXPECT_EQ(Current(PreviewChoice::kSeparator), "Automatic (semicolon (;))");
    EXPECT_EQ(Current(PreviewChoice::kDecimalSign), "Automatic (comma (,))");
    EXPECT_TRUE(preview.CanTake());
    Choose(PreviewChoice::kHeader, "names");
    EXPECT_FALSE(preview.CanTake()) << "numbers are no names";
    Choose(PreviewChoice::kHeader, "is");
    EXPECT_EQ(preview.Count(), 3U);
    Choose(PreviewChoice::kSourceAxes, "Y: west, X: south");
    EXPECT_EQ(preview.Take().settings.source.axes, AxisMapping::kWs);
    EXPECT_FALSE(form.ListOf(PreviewChoice::kLetters).matters) << "plain letters";

    ASSERT_EQ(form.ColumnCount(), 5U);
    const std::size_t firstOfSource = form.ColumnEntry(1);
    form.ChooseColumn(3, firstOfSource);
    EXPECT_EQ(preview.Take().pairs[0].point.source.first, 3.5);
    EXPECT_EQ(preview.Take().pairs[0].point.destination.first, 1.5) << "they change places";
    Choose(PreviewChoice::kSeparator, "Automatic");
    EXPECT_EQ(preview.Take().pairs[0].point.source.first, 1.5) << "columns are found out anew";
}

TEST_F(PreviewFormTest, ColumnsWhoseNamesNobodyKnowsAreChosenOneAfterTheOther) {
    preview.TakeText("Kő;a;b;c;d\nK1;1.5;2;3;4\nK2;5;6;7;8.5\nK3;9;1;2;3\n");
    Choose(PreviewChoice::kFormat, "Columns");
    Choose(PreviewChoice::kHeader, "names");
    EXPECT_FALSE(preview.CanTake());
    EXPECT_EQ(preview.FirstRows(9).names, (std::vector<std::string>{"Kő", "a", "b", "c", "d"}));
    ASSERT_EQ(form.ColumnCount(), 5U);
    for (std::size_t i = 0; i < 5; ++i) form.ChooseColumn(i, i == 0 ? 1 : 6 - i);
    ASSERT_TRUE(preview.CanTake());
    const ControlPoint point = preview.Take().pairs[1].point;
    EXPECT_EQ(point.id, "K2");
    EXPECT_EQ(point.destination.second, 5);
    EXPECT_EQ(point.source.first, 8.5);
}

TEST_F(PreviewFormTest, SwapsListsAndLeavesOutWhatListsDoNotHave) {
    preview.TakeLists(test::WriteFile(folder.File("old.txt"), "A 1.5 2\nB 3 4\nC 5 6.5\n"),
                      test::WriteFile(folder.File("new.txt"), "C 15 16\nA 11 12\nD 1 1\n"));
    EXPECT_FALSE(form.ListOf(PreviewChoice::kFormat).matters);
    EXPECT_EQ(form.ColumnCount(), 0U);
    ASSERT_EQ(preview.Count(), 2U);
    EXPECT_EQ(preview.Notes().size(), 2U) << "B and D are without a partner";
    preview.SwapLists();
    const Content content = preview.Take();
    EXPECT_EQ(content.settings.source.name, "new");
    EXPECT_EQ(content.pairs[0].point.destination.first - content.pairs[0].point.source.first, -10);
}

TEST_F(PreviewFormTest, RecentFilesStandOnceAndMissingOnesAreTold) {
    const std::string here = test::WriteFile(folder.File("here.kvtr"), "{}");
    const auto rows = RecentRows({{.file = here, .picture = "<svg/>", .points = 7}},
                                 {folder.File("gone.dat"), here});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].points, 7U);
    EXPECT_EQ(rows[0].day.size(), 10U);
    EXPECT_EQ(rows[0].name, "here.kvtr");
    EXPECT_TRUE(rows[1].isMissing);
    EXPECT_EQ(rows[1].day, "");
    EXPECT_TRUE(SamplesFor(folder.File("bin")).empty());
    EXPECT_EQ(SamplesFor(std::string(EXAMPLES) + "/../build/dev").size(), 2U);
}

}  // namespace
}  // namespace kv_tr::workbench
