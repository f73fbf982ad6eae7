// The table of control points: texts, colours, editing.
#include "kv_tr/forms/pair_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "helpers/recording_platform.h"

namespace kv_tr::test {
namespace {

using Key = PairTable::EditKey;

class Table : public testing::Test {
protected:
    RecordingPlatform platform;
    double limit = 5;
    Adjustment adjustment{std::vector<ControlPoint>{{"first", {1, 2}, {3, 4}},
                                                    {"B", {0.123456, 20}, {30, 40}},
                                                    {"C", {-100, 200}, {300, 1234567.0123456789}}}};
    ChangeEvent changed;
    PairTable table{adjustment, limit, changed};
    int fits = 0;
    const Subscription edited = table.Edited.Subscribe([this] { ++fits; });
};

TEST_F(Table, HasARowForEachPoint) {
    adjustment.SetLastResiduals(std::vector<Residual>{{0.3, -0.4}, {0, 0}, {-20, 0}});
    std::string texts[3];
    for (int column = 0; column < PairTable::kColumns; ++column) {
        texts[0] += table.CellText(0, column) + "|";
        texts[1] += table.CellText(1, column) + "|";
        texts[2] += table.WidestText(column) + "|";
    }
    EXPECT_EQ(texts[0], "Nr.| PtNr.|    Y1|    X1|    Y2|    X2|    Dy|    Dx|    DyDx|");
    EXPECT_EQ(texts[1], "1|first|1.000|2.000|3.000|4.000|0.300|-0.400|0.500|");
    EXPECT_EQ(texts[2], "3|first|-100.000|200.000|300.000|1234567.012|-20.000|-0.400|20.000|");
    DecimalSeparator(',');
    EXPECT_EQ(table.TableText(std::vector{2, 3}),
              "Nr.\tPtNr.\tY1\tX1\tY2\tX2\tDy\tDx\tDyDx\n"
              "2\tB\t0,123456\t20\t30\t40\t0\t0\t0\n"
              "3\tC\t-100\t200\t300\t1234567,0123456789\t-20\t0\t20\n");
    adjustment.Assign({});
    EXPECT_EQ(table.WidestText(3), "");
}

TEST_F(Table, MarksCellsByLimitAndUse) {
    const std::vector<Residual> residuals{
        {3, 4}, {3, std::nextafter(4.0, 5.0) + 1e-12}, {std::nan(""), 0}};
    adjustment.SetLastResiduals(residuals);
    adjustment.Toggle(1);
    for (int row = 0; row <= 3; ++row) {
        for (int column = 0; column < PairTable::kColumns; ++column) {
            const auto colours = table.ColoursOf(row, column);
            ASSERT_EQ(colours.has_value(), row > 0 && (column == 1 || column == 8));
            if (!colours) continue;
            EXPECT_EQ(colours->text, row == 1 ? kBlue : kRed) << "blue up to the limit itself";
            EXPECT_EQ(colours->background, row == 2 ? std::optional(kYellow) : std::nullopt);
        }
    }
}

TEST_F(Table, TakesTextsThatAreValid) {
    const struct {
        int column;
        std::string text, shown;
        bool taken;
    } cases[] = {
        {2, "0.123", "0.123", false}, {1, "", "", true},
        {2, "1.5", "1.500", true},    {3, " 2,25 ", "2.250", true},
        {4, "-3e1", "-30.000", true}, {5, "4", "4.000", true},
        {2, "x", "1.500", false},     {3, "nan", "2.250", false},
        {0, "7", "2", false},         {6, "7", "0.000", false},
        {8, "7", "0.000", false},
    };
    int taken = 0;
    for (const auto& expected : cases) {
        EXPECT_EQ(table.SetCell(2, expected.column, expected.text), expected.taken);
        EXPECT_EQ(table.CellText(2, expected.column), expected.shown);
        EXPECT_EQ(fits, taken += expected.taken);
        EXPECT_TRUE(taken > 0 || adjustment.Points()[1].source.first == 0.123456);
    }
    EXPECT_EQ(adjustment.Points()[1].source, (Point{1.5, 2.25}));
    EXPECT_EQ(adjustment.Points()[1].destination, (Point{-30, 4}));
}

TEST_F(Table, EditsTheCurrentCell) {
    table.Grid1KeyPress("5");
    table.Grid1Click(1, 2);
    EXPECT_FALSE(table.CellEditor().visible) << "not editable";
    table.Editable(true);
    const struct {
        std::function<void()> action;
        std::string editor, cell;
        int row;
    } steps[] = {
        {[&] { table.Grid1Click(0, 2); }, "", "    Y1", 0},
        {[&] { table.Grid1KeyPress("5"); }, "", "    Y1", 0},  // nor are headings
        {[&] { table.Grid1Click(2, 2); }, "0.123@99", "0.123", 2},
        {[&] { table.txtEditKeyDown(Key::kEscape); }, "", "0.123", 2},
        {[&] { table.Grid1EnterCell(1, 2); }, "", "1.000", 1},
        {[&] { table.Grid1KeyPress(" "); }, "1.000@99", "1.000", 1},
        {[&] { table.txtEditKeyDown(Key::kUp); }, "", "1.000", 1},  // above is the heading
        {[&] { table.Grid1EnterCell(3, 2); }, "", "-100.000", 3},
        {[&] { table.Grid1KeyPress("7"); }, "7@1", "-100.000", 3},
        {[&] { table.txtEditKeyDown(Key::kDown); }, "", "7.000", 3},  // there is no row below
        {[&] { table.Grid1KeyPress("6"); }, "6@1", "7.000", 3},
        {[&] { table.Grid1EnterCell(1, 2); }, "", "1.000", 1},  // leaving hides the editor
        {[&] { table.Grid1EnterCell(3, 2); }, "", "7.000", 3},
        {[&] { table.Grid1Click(1, 5); }, "4.000@99", "4.000", 1},
        {[&] { table.txtEditKeyDown(Key::kNext); }, "B@99", "B", 2},
        {[&] { table.txtEditKeyDown(Key::kPrevious); }, "4.000@99", "4.000", 1},
        {[&] { table.Grid1Click(3, 5); }, "1234567.012@99", "1234567.012", 3},
        {[&] { table.txtEditKeyDown(Key::kNext); }, "", "1234567.012", 3},  // no cell is behind
        {[&] { table.Grid1EnterCell(3, 2); }, "", "7.000", 3},
        {[&] { adjustment.Assign(std::vector<ControlPoint>(2)); }, "", "0.000", 2},  // the last
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        SCOPED_TRACE(i);
        steps[i].action();
        const auto& [visible, text, caret] = table.CellEditor();
        EXPECT_EQ(visible ? text + "@" + std::to_string(std::min(caret, 99)) : "", steps[i].editor);
        EXPECT_EQ(table.CurrentRow(), steps[i].row);
        EXPECT_EQ(table.CellText(table.CurrentRow(), table.CurrentColumn()), steps[i].cell);
    }
}

}  // namespace
}  // namespace kv_tr::test
