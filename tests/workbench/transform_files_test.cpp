// Files that are transformed: how they are read, where results go, what is told.
#include "workbench/transform_files.h"

#include <gtest/gtest.h>

#include "helpers/files.h"
#include "helpers/recording_platform.h"

namespace kv_tr::workbench {
namespace {

using test::ReadFile;
using test::WriteFile;
using State = FileProgress::State;

/// Y' = 100 + Y, X' = 200 - X.
AppliedTransformation Mirrored() {
    return {.transformation = {.type = Type::kAffine, .a = {100, 1, 0}, .b = {200, 0, -1}},
            .sources = {{0, 0}, {10, 0}, {10, 10}, {0, 10}},
            .destinations = {{100, 200}, {110, 200}, {110, 190}, {100, 190}}};
}

class TransformFilesTest : public testing::Test {
protected:
    test::RecordingPlatform platform;
    test::TemporaryFolder folder;
    TransformFiles form{Mirrored()};

    std::string Add(const std::string& name, const std::string& lines) {
        form.Add({WriteFile(folder.File(name), lines)});
        return folder.File(name);
    }
    std::vector<FileProgress> Done(bool mayReplace = false) {
        TransformJob job(form.Plan(mayReplace));
        job.Wait();
        text = job.TransformedText();
        EXPECT_TRUE(job.IsOver());
        return job.Files();
    }
    std::string text;
};

TEST_F(TransformFilesTest, FindOutHeadersAndDecimalCommasAndCountPointsOutside) {
    Add("a.txt", "Point;Y;X\r\nA;1,5;2,25\r\n\r\nB;10,5;3\r\n");
    EXPECT_EQ(form.Options().headerLines, 1U);
    EXPECT_TRUE(form.Options().decimalComma);
    const auto preview = form.Preview(0, 9);
    ASSERT_EQ(preview.size(), 4U);
    EXPECT_TRUE(preview[0].isHeader);
    EXPECT_EQ(preview[1].after, "A;101,500;197,750");
    form.AddText("C;1;2\n");
    EXPECT_EQ(form.FieldCount(1), 3U);
    auto files = Done();
    EXPECT_EQ(files[0].state, State::kDone);
    EXPECT_EQ(files[0].outside, 1U);
    EXPECT_EQ(ReadFile(folder.File("a_tr.txt")),
              "Point;Y;X\r\nA;101,500;197,750\r\n\r\nB;110,500;197,000\r\n");
    EXPECT_EQ(text, "C;1;2\n") << "one header line, as in the file";

    form.Inverse(true);
    form.Remove(1);
    form.Pattern("*_back");
    form.Add({folder.File("a_tr.txt")});
    form.Remove(0);
    files = Done();
    EXPECT_EQ(files[0].outside, 1U) << "of the destination";
    EXPECT_EQ(ReadFile(folder.File("a_tr_back.txt")),
              "Point;Y;X\r\nA;1,500;2,250\r\n\r\nB;10,500;3,000\r\n");
}

TEST_F(TransformFilesTest, TakeCoordinatesFromAnyColumnsInAnyOrder) {
    Add("a.csv", "code,7.5,note,1.25,id\n");
    app::CoordinateOptions options = form.Options();
    options.headerLines = 0;
    options.columns = {{3, 1}};
    form.Options(options);
    EXPECT_EQ(form.Preview(0, 1)[0].after, "code,192.500,note,101.250,id");
    options.columns = {{1, 3}};
    form.Options(options);
    EXPECT_EQ(form.Preview(0, 1)[0].after, "code,107.500,note,198.750,id");
    for (const std::array<std::size_t, 2> columns :
         {std::array<std::size_t, 2>{1, 2}, {1, 5}, {3, 3}}) {
        options.columns = columns;
        form.Options(options);
        EXPECT_EQ(form.Preview(0, 1)[0].after, "") << columns[1];
    }
}

TEST_F(TransformFilesTest, NameBadLinesByTheirNumbersInAFileOfManyBlocks) {
    std::string lines;
    constexpr std::uint64_t kLines = 200'000;
    for (std::uint64_t i = 1; i <= kLines; ++i)
        lines += i == 7 || i == 150'001 ? "A 1 bad\n" : "A 1.000 2.000\n";
    const std::string name = Add("a.txt", lines);
    auto files = Done();
    EXPECT_EQ(files[0].state, State::kFailed);
    ASSERT_EQ(files[0].problems.size(), 1U);
    EXPECT_EQ(files[0].problems[0], name + ", line 7: cannot be transformed: A 1 bad");
    EXPECT_FALSE(std::filesystem::exists(form.ResultOf(0)));
    app::CoordinateOptions options = form.Options();
    options.keepGoing = true;
    form.Options(options);
    files = Done();
    EXPECT_EQ(files[0].state, State::kDone);
    EXPECT_EQ(files[0].count, kLines - 2);
    ASSERT_EQ(files[0].problems.size(), 2U);
    EXPECT_NE(files[0].problems[1].find("line 150001:"), std::string::npos);
}

TEST_F(TransformFilesTest, ReplaceNothingWithoutBeingToldToAndGoOnAfterAFailure) {
    const std::string first = Add("a.txt", "A 1 2\n");
    form.Add({first, folder.File("missing.txt")});
    ASSERT_EQ(form.Count(), 2U) << "one file once";
    Add("b.txt", "B 3 4\n");
    WriteFile(folder.File("a_tr.txt"), "older");
    ASSERT_EQ(form.Existing().size(), 1U);
    EXPECT_EQ(PathOf(form.Existing()[0]), PathOf(folder.File("a_tr.txt")));
    auto files = Done(false);
    EXPECT_EQ(files[0].state, State::kFailed);
    EXPECT_EQ(files[1].problems,
              std::vector<std::string>{folder.File("missing.txt") + " cannot be opened."});
    EXPECT_EQ(files[2].state, State::kDone);
    EXPECT_EQ(ReadFile(folder.File("a_tr.txt")), "older");
    files = Done(true);
    EXPECT_EQ(ReadFile(folder.File("a_tr.txt")), "A 101.000 198.000\n");

    for (const char* pattern : {"", "x/*", "*", "same"}) {
        form.Pattern(pattern);
        EXPECT_FALSE(form.Obstacles().empty()) << pattern;
    }
    form.Pattern("new_*");
    EXPECT_TRUE(form.Obstacles().empty());
    form.Folder(folder.File("elsewhere"));
    EXPECT_EQ(PathOf(form.ResultOf(0)), PathOf(folder.File("elsewhere/new_a.txt")));
}

TEST_F(TransformFilesTest, LeaveNothingBehindWhenTheyAreCancelled) {
    std::string lines;
    while (lines.size() < (32U << 20)) lines += "A 1.000 2.000\n";
    Add("a.txt", lines);
    Add("b.txt", "B 3 4\n");
    { const TransformJob job(form.Plan(false)); }
    for (std::size_t i = 0; i < form.Count(); ++i)
        EXPECT_FALSE(std::filesystem::exists(form.ResultOf(i)));
}

TEST_F(TransformFilesTest, TransformDrawingsAlong) {
    Add("plan.DXF",
        "0\nSECTION\n2\nENTITIES\n0\nPOINT\n8\n0\n10\n1.5\n20\n2.5\n30\n0.0\n0\nENDSEC\n0\nEOF\n");
    Add("broken.dxf", "no drawing\n");
    EXPECT_TRUE(form.Preview(0, 5).empty());
    const auto files = Done();
    EXPECT_EQ(files[0].state, State::kDone);
    EXPECT_EQ(files[0].count, 1U);
    EXPECT_NE(ReadFile(folder.File("plan_tr.DXF")).find("\n10\n101.5\n20\n197.5\n"),
              std::string::npos);
    EXPECT_EQ(files[1].state, State::kFailed);
    EXPECT_NE(files[1].problems.at(0).find("line 1:"), std::string::npos);
}

}  // namespace
}  // namespace kv_tr::workbench
