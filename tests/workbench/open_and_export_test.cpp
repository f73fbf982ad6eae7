// How files are understood before they are opened, and what is given to others.
#include <gtest/gtest.h>

#include "kv_tr/interchange/transformation_import.h"
#include "workbench/exports.h"
#include "workbench/open_preview.h"
#include "workbench/sample.h"

namespace kv_tr::workbench {
namespace {

class Preview : public WorkbenchTest {
protected:
    OpenPreview preview;

    std::string File(const std::string& name, const std::string& text) {
        return test::WriteFile(folder.File(name), text);
    }
    std::string Row(std::size_t row) {
        std::string text;
        const OpenPreview::Table table = preview.FirstRows(5);
        for (const std::string& cell : table.rows.at(row)) text += cell + "|";
        return text;
    }
};

TEST_F(Preview, FollowsEachChoice) {
    preview.TakeFile(File("a.csv", "id;y1;x1;y2;x2;w\nA;1,5;2;3;4;9\nB;5;6,5;7;8;9\n"));
    ASSERT_TRUE(preview.CanTake());
    EXPECT_EQ(preview.Format(), PointFormat::kCsv);
    EXPECT_EQ(preview.FirstRows(5).headings,
              (std::vector<std::string>{"Point", "Y1", "X1", "Y2", "X2", "(not read)"}));
    EXPECT_EQ(Row(1), "B|5|6,5|7|8|9|");
    EXPECT_EQ(preview.Take().pairs[0].point.source, (Point{1.5, 2}));

    auto choices = preview.Choices();
    choices.columns = {"id", "src_second", "src_first", "-", "dst_second", "dst_first"};
    preview.Choose(choices);
    ASSERT_TRUE(preview.CanTake());
    EXPECT_EQ(preview.Take().pairs[1].point, (ControlPoint{"B", {6.5, 5}, {9, 8}}));

    choices.columns = {"id", "src_first", "src_first", "dst_first", "dst_second"};
    preview.Choose(choices);
    EXPECT_FALSE(preview.CanTake()) << "a column twice, one missing";
    choices.columns = {};
    choices.header = false;
    preview.Choose(choices);
    EXPECT_FALSE(preview.CanTake()) << "the heading is no point";
    EXPECT_TRUE(preview.Problems()[0].starts_with("a.csv, line 1")) << preview.Problems()[0];
    choices.header.reset();
    choices.separator = ',';
    preview.Choose(choices);
    EXPECT_FALSE(preview.CanTake());
    choices.separator.reset();
    preview.Choose(choices);
    EXPECT_TRUE(preview.CanTake());
}

TEST_F(Preview, TellsWhatTheProjectIsMadeOf) {
    const std::string text =
        "A 10 20 110 220\r\nB 50 20 151 221\r\nC 30 90 131 290\r\nD 7 55 108 254\r\n";
    preview.TakeFile(File("régi.dat", text));
    ASSERT_TRUE(preview.CanTake());
    bench.Begin(preview.Take(), preview.Source());
    EXPECT_EQ(LastSentence(), "Opened régi.dat: 4 points");
    EXPECT_EQ(bench.Project().Current().type, Type::kAffine);
    EXPECT_EQ(bench.Project().Current().origins[0].checksum.size(), 64U);
    EXPECT_EQ(Row(3), "D|7|55|108|254|");
    preview.TakeText("1;2;3;4\n5;6;7;8\n");
    EXPECT_TRUE(preview.CanTake());
    EXPECT_TRUE(preview.Take().settings.origins.empty());
    preview.TakeFile(folder.File("none.dat"));
    EXPECT_FALSE(preview.CanTake());
    EXPECT_EQ(preview.Problems().size(), 1U);
    const auto ofNone = preview.Problems();
    preview.TakeFile(folder.File(""));  // the folder itself opens and cannot be read
    EXPECT_FALSE(preview.CanTake());
    EXPECT_EQ(preview.Problems().size(), 1U);
    EXPECT_NE(preview.Problems(), ofNone);
    preview.TakeText("");
    EXPECT_EQ(preview.Problems(), std::vector<std::string>{"There are no control points in it."});
}

TEST_F(Preview, ObeysAxesOfMapFormats) {
    preview.TakeText("-gcp 1 2 30 40\n-gcp 5 6 70 80\n-gcp 9 1 20 30");
    ASSERT_TRUE(preview.CanTake());
    EXPECT_EQ(preview.Take().pairs[0].point.destination, (Point{30, 40}));
    auto choices = preview.Choices();
    choices.targetAxes = AxisMapping::kNe;
    preview.Choose(choices);
    EXPECT_EQ(preview.Take().pairs[0].point.destination, (Point{40, 30}));
    EXPECT_EQ(preview.Take().settings.destination.axes, AxisMapping::kNe);
}

TEST_F(Preview, PairsListsAndTellsWhatIsLeft) {
    preview.TakeLists(File("old.txt", "A 1 2\nB 3 4\nC 5 6\nD 7 8\nD 9 9\n"),
                      File("new.txt", "C;105;206\nA;101;202\nE;1;1\nB;103,5;204\n"));
    ASSERT_TRUE(preview.CanTake()) << preview.Problems()[0];
    const Content content = preview.Take();
    ASSERT_EQ(content.pairs.size(), 3U);
    EXPECT_EQ(content.pairs[1].point, (ControlPoint{"B", {3, 4}, {103.5, 204}}));
    EXPECT_EQ(content.settings.source.name, "old");
    EXPECT_EQ(content.settings.origins.size(), 2U);
    EXPECT_EQ(preview.Notes(),
              (std::vector<std::string>{
                  "new.txt: points in this list only (1): E",
                  "old.txt, new.txt: identifiers that occur more than once (1): D"}));
    preview.TakeLists(File("old.txt", "A 1 2\n"), File("new.txt", "B 1 x\n"));
    EXPECT_TRUE(preview.Problems()[0].starts_with("new.txt, line 1, column 5"))
        << preview.Problems()[0];
}

class Export : public WorkbenchTest {};

TEST_F(Export, OffersEachFormatOrTheReasonWhyNot) {
    Open(9);
    std::size_t available = 0;
    for (const Offered& offered : AllExported(bench.Project())) {
        EXPECT_NE(offered.text.empty(), offered.reason.empty()) << offered.name;
        EXPECT_FALSE(offered.ending.empty());
        available += offered.IsAvailable() ? 1 : 0;
    }
    EXPECT_GT(available, 8U);
    EXPECT_LT(available, TransformationFormats().size()) << "an affine one is no similarity";
    const auto json = Exported(bench.Project(), TransformationFormat::kJson);
    const auto back = ReadTransformation(json.text, TransformationFormat::kJson);
    EXPECT_EQ(back.record.transformation, bench.Project().Adjusted().Result());
    EXPECT_EQ(back.record.sourceAxes, AxisMapping::kSw);
    EXPECT_EQ(back.record.targetCrs, "EPSG:23700");
    EXPECT_EQ(back.record.madeFrom, "a.dat, b.csv");
    bench.Begin({}, {});
    for (const Offered& offered : AllExported(bench.Project()))
        EXPECT_FALSE(offered.IsAvailable()) << offered.name;
    EXPECT_FALSE(ResidualVectors(bench.Project()).IsAvailable());
    EXPECT_FALSE(Log(bench.Project()).IsAvailable());
}

TEST_F(Export, SavesPointsThatOpenAsTheyWere) {
    Open(9);
    bench.Exclude({3});
    const Offered offered = PointsAs(bench.Project(), PointFormat::kCsv);
    EXPECT_EQ(offered.losses.size(), 2U) << "the system, and sigmas that not all points have";
    const std::string name = folder.File("points." + offered.ending);
    ASSERT_EQ(Save(offered, name), "");
    OpenPreview preview;
    preview.TakeFile(name);
    const Content content = preview.Take();
    ASSERT_EQ(content.pairs.size(), 9U);
    for (std::size_t i = 0; i < 9; ++i)
        EXPECT_EQ(content.pairs[i].point, bench.Project().PointAt(i));
    EXPECT_EQ(PointsAs(bench.Project(), PointFormat::kListing).losses.size(), 3U)
        << "the exclusion too";
    EXPECT_NE(Save(offered, folder.File("none/a.csv")), "");
}

TEST_F(Export, ReportsWhyPointsAreExcluded) {
    Open(12);
    const auto cells = [this] {
        std::vector<std::string> all;
        for (const ReportSection& section : ReportOn(bench.Project(), "2026-05-31").sections) {
            for (const ReportBlock& block : section.blocks) {
                const auto* table = std::get_if<ReportTable>(&block);
                if (table == nullptr) continue;
                for (const auto& column : table->columns) all.push_back(column.heading);
                for (const auto& row : table->rows) {
                    EXPECT_EQ(row.size(), table->columns.size());
                    all.insert(all.end(), row.begin(), row.end());
                }
            }
        }
        return all;
    };
    const auto count = [&cells](const std::string& text) {
        const auto all = cells();
        return std::ranges::count(all, text);
    };
    bench.Exclude({0});
    EXPECT_EQ(count("Remark"), 0) << "no note on an excluded point";
    bench.Exclude({4}, "stone moved");
    EXPECT_EQ(count("Remark"), 1);
    EXPECT_EQ(count("stone moved"), 1);
    EXPECT_EQ(count("abc"), 1) << "the checksum of a file";
    bench.SetCell(2, Column::kSourceFirst, "77");
    EXPECT_EQ(count("abc"), 0) << "the points are no longer those of the file";
}

}  // namespace
}  // namespace kv_tr::workbench
