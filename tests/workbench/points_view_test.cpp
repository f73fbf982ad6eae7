// The table of points: order, filter, selection, copying and pasting.
#include "workbench/points_view.h"

#include "workbench/folding.h"
#include "workbench/paste.h"
#include "workbench/sample.h"
#include "workbench/texts/said.h"

namespace kv_tr::workbench {
namespace {

class View : public WorkbenchTest {
protected:
    PointsView view{bench.Project()};

    std::string Ids() {
        std::string ids;
        for (std::size_t row = 0; row < view.RowCount(); ++row)
            ids += view.CellText(row, Column::kIdentifier) + " ";
        return ids;
    }
};

TEST_F(View, SortsNumbersInIdentifiersAndKeepsEqualCellsInOrder) {
    Open(12);
    bench.SetCell(0, Column::kIdentifier, "p10");
    view.Sort({Column::kIdentifier});
    EXPECT_EQ(Ids(), "P2 P3 P4 P5 P6 P7 P8 P9 p10 P10 P11 P12 ");
    view.Sort({Column::kIdentifier, true});
    EXPECT_EQ(Ids(), "P12 P11 p10 P10 P9 P8 P7 P6 P5 P4 P3 P2 ");
    view.Sort({Column::kSigmaFirst, true});
    EXPECT_EQ(Ids(), "P2 P6 P10 p10 P3 P4 P5 P7 P8 P9 P11 P12 ") << "no figure: last, as they are";
    view.Sort({Column::kNumber, true});
    EXPECT_EQ(Ids().substr(0, 8), "P12 P11 ");
}

TEST_F(View, SortsByResidualsAsTheyAreAfterEachStep) {
    Open(10, 0.5);
    view.Sort({Column::kResidual, true});
    for (int step = 0; step < 3; ++step) {
        double last = std::numeric_limits<double>::infinity();
        for (std::size_t row = 0; row < view.RowCount(); ++row) {
            const std::size_t place = view.PlaceOf(row);
            const bool used = bench.Project().PointAt(place).used;
            EXPECT_EQ(used, row + static_cast<std::size_t>(step) < 10) << "excluded ones come last";
            if (!used) break;
            const double residual = bench.Project().Adjusted().Residuals()[place].Length();
            EXPECT_LE(residual, last);
            last = residual;
        }
        bench.Exclude({view.PlaceOf(0)});
    }
}

TEST_F(View, HeadsEachColumnWithoutBlanksAround) {
    Open(9);
    for (const Column column : view.ShownColumns()) {
        const std::string heading = view.Heading(column);
        ASSERT_FALSE(heading.empty());
        EXPECT_TRUE(heading.front() != ' ' && heading.back() != ' ') << heading;
    }
}

TEST_F(View, FiltersWhatIsShownWithoutRegardToCaseAndMarks) {
    Open(9);
    bench.SetCell(0, Column::kIdentifier, "Đức-7");
    bench.SetCell(1, Column::kIdentifier, "ŐRHEGY");
    view.Filter("duc");
    EXPECT_EQ(Ids(), "Đức-7 ");
    view.Filter("őrh");
    EXPECT_EQ(Ids(), "ŐRHEGY ");
    view.Filter("ko \"7");  // a note
    EXPECT_EQ(Ids(), "P8 ");
    view.Show(Column::kNote, false);
    EXPECT_EQ(view.RowCount(), 0U) << "the note is not shown";
    const std::string coordinate = bench.Project().Table().CellText(6, 3);
    view.Filter(coordinate.substr(coordinate.find_first_not_of(' ')));
    EXPECT_EQ(Ids(), "P6 ");
}

TEST_F(View, ShowsSuspectsOnly) {
    Content content = SampleContent(12, 0.001);
    content.pairs[4].point.destination.first += 0.7;
    bench.Begin(std::move(content), {});
    bench.SetLimit("100");
    view.OnlySuspects(true);
    EXPECT_EQ(Ids(), "P5 ");
    EXPECT_EQ(view.MarkOf(0), PointsView::Mark::kSuspect);
    bench.SetLimit("0.01");
    EXPECT_GT(view.RowCount(), 1U) << "beyond the limit as well";
    bench.Toggle(4);
    view.OnlySuspects(false);
    EXPECT_EQ(view.MarkOf(4), PointsView::Mark::kExcluded);
}

TEST_F(View, KeepsTheSelectionOfPointsWhateverRowsTheyAreIn) {
    Open(9);
    view.Sort({Column::kSourceFirst});
    view.Select({0, 4});
    const Places places = view.SelectedPlaces();
    const auto ids = [&] {
        std::string text;
        for (const std::size_t place : view.SelectedPlaces())
            text += bench.Project().PointAt(place).id + " ";
        return text;
    };
    const std::string selected = ids();
    view.Sort({Column::kIdentifier, true});
    EXPECT_EQ(view.SelectedPlaces(), places);
    bench.Insert(0, SampleContent(2).pairs);
    bench.Swap();
    EXPECT_EQ(ids(), selected);
    bench.Delete(view.SelectedPlaces());
    EXPECT_EQ(ids(), "");
    bench.Undo();
    EXPECT_EQ(ids(), selected) << "points that come back are selected as before";
    view.ToggleSelected(view.SelectedRows()[0]);
    EXPECT_EQ(view.SelectedRows().size(), 1U);
    view.SelectAll();
    EXPECT_EQ(view.SelectedPlaces().size(), 11U);
}

TEST_F(View, CopiesWhatCanBePastedInAnyLanguage) {
    Open(11);
    bench.SetCell(2, Column::kIdentifier, "a \"b\"\tc");
    bench.Exclude({4, 6});
    for (const Column column :
         {Column::kSigmaFirst, Column::kSigmaSecond, Column::kStudentisedFirst})
        view.Show(column, true);
    view.Show(Column::kSourceFirst, true);
    for (std::size_t i = 0; i < 11; ++i)  // all or none
        bench.SetCell(i, Column::kSigmaSecond, "0.0" + std::to_string(i + 1));
    for (const std::int32_t language : {kHungarian, kEnglish, kRomanian, kVietnamese, kSerbian}) {
        SetMlLanguage(language, {});
        for (const char sign : {'.', ','}) {
            DecimalSeparator(sign);
            view.SelectAll();
            const Pasted pasted = ReadPasted(view.CopyText(view.SelectedRows()));
            ASSERT_TRUE(pasted.Complete()) << language << ": " << pasted.problems[0];
            ASSERT_EQ(pasted.pairs.size(), 11U);
            for (std::size_t i = 0; i < 11; ++i)
                EXPECT_TRUE(pasted.pairs[i].IsSameAs(bench.Project().PairAt(i))) << i;
        }
    }
}

TEST_F(View, RemembersItsColumns) {
    view.Show(Column::kSigmaSecond, true);
    view.Show(Column::kNumber, false);
    PointsView other(bench.Project());
    other.TakeColumnsText(view.ColumnsText());
    EXPECT_EQ(other.ShownColumns(), view.ShownColumns());
    other.TakeColumnsText("id colour");
    other.TakeColumnsText("");
    EXPECT_EQ(other.ShownColumns(), view.ShownColumns()) << "no columns are worse than these";
}

TEST_F(View, ShowsNoFiguresWhereThereIsNoFit) {
    Content content;
    for (const Point place : {Point{0, 0}, Point{10, 1}, Point{-10, -1}})
        content.pairs.push_back({.point = {"c", place, {place.first * 3, place.second + 2}}});
    content.settings.type = Type::kAffine5;
    bench.Begin(std::move(content), {});
    ASSERT_FALSE(bench.Project().HasFit());
    EXPECT_EQ(view.CellText(1, Column::kResidual), "–");
    EXPECT_EQ(view.CellText(1, Column::kSourceFirst), "10.000");
    view.Sort({Column::kResidual});
    EXPECT_EQ(view.PlaceOf(2), 2U);
}

TEST_F(View, TakesRowsOfSpreadsheets) {
    const struct {
        std::string text, expected;
    } cases[] = {
        {"A\t1,5\t2\t3\t4\r\nB\t5\t6\t7\t8,25\r\n", "A 1.5 2 3 4, B 5 6 7 8.25, "},
        {"1.5;2;3;4\n5;6;7;8", "1 1.5 2 3 4, 2 5 6 7 8, "},
        {"x2\ty2\tpoint\ty1\tx1\n", ""},
        {"Y2;X2;Point;Y1;X1\n1;2;\"p;q\";3;4", "p;q 3 4 1 2, "},
        {"", ""},
        {"Psz.\tY1\tX1\tY2\tX2\nA\t1\t2\t3\t4", "A 1 2 3 4, "},
    };
    for (const auto& [text, expected] : cases) {
        const Pasted pasted = ReadPasted(text);
        EXPECT_EQ(pasted.Complete(), !expected.empty()) << text;
        std::string read;
        for (const Pair& pair : pasted.pairs) {
            const auto& [id, from, to, used] = pair.point;
            read += id;
            for (const double value : {from.first, from.second, to.first, to.second})
                read += " " + ShortestText(value);
            read += ", ";
        }
        EXPECT_EQ(read, expected) << text;
    }
}

TEST_F(View, TellsTheCellThatCannotBePasted) {
    const Pasted pasted =
        ReadPasted("A\t1\t2\t3\t4\n\"Bő\t\"\"7\t5\tsix\t7\t8\nC\t1\t2\t3\n\"Bő\t7\"\t5\tsix\t7\t8");
    EXPECT_TRUE(pasted.pairs.empty());
    const Pasted one = ReadPasted("A\t1\t2\t3\t4\n\"Bő\t7\"\t5\tsix\t7\t8\nC\t1\t2\t3\tx\n");
    ASSERT_EQ(one.problems.size(), 2U);
    EXPECT_TRUE(one.pairs.empty()) << "all or nothing";
    EXPECT_TRUE(one.problems[0].starts_with("Clipboard, line 2, column 3: ")) << one.problems[0];
    EXPECT_TRUE(one.problems[1].starts_with("Clipboard, line 3, column 5: ")) << one.problems[1];
}

TEST(Phrases, HaveTheSamePlacesInAllLanguages) {
    const auto places = [](const std::string& text) {
        std::string found;
        for (char digit = '0'; digit < '9'; ++digit) {
            if (text.find(std::string("{") + digit + "}") != text.npos) found += digit;
        }
        return found;
    };
    for (std::size_t i = 0; i < kPhraseCount; ++i) {
        const auto phrase = static_cast<Phrase>(i);
        const std::string english = PhraseIn(phrase, kEnglish);
        for (const std::int32_t language : {kHungarian, kRomanian, kVietnamese, kSerbian})
            EXPECT_EQ(places(PhraseIn(phrase, language)), places(english)) << english;
    }
}

TEST(Folding, KnowsTheLettersOfTheFiveLanguages) {
    EXPECT_EQ(Folded("ÁÉÍÓÖŐÚÜŰ áéíóöőúüű"), "aeiooouuu aeiooouuu");
    EXPECT_EQ(Folded("ĂÂÎȘȚ ŞŢ ČĆŽŠĐ ăâîșț čćžšđ"), "aaist st cczsd aaist cczsd");
    EXPECT_EQ(Folded("ƯỚC Ợ ữ Ỷ ẵ Ế Ị"), "uoc o u y a e i");
    EXPECT_EQ(Folded("u\u031bo\u031b\u0301c"), "uoc") << "marks that stand behind their letters";
    EXPECT_EQ(Folded("ЖΩ№日😀"), "жω№日😀");
}

TEST_F(View, ShowsFiguresOfVeryManyPointsWhenTheyHaveBeenComputed) {
    Open(FindingsCache::kAssessedPoints + 1);
    EXPECT_EQ(view.CellText(7, Column::kStudentisedFirst), "…");
    EXPECT_EQ(view.WidestText(Column::kStudentisedFirst), "-00.00");
    EXPECT_FALSE(bench.Project().Findings().IsAssessed()) << "only looked at";
    bench.Project().Findings().Assessed();
    EXPECT_NE(view.CellText(7, Column::kStudentisedFirst), "…");
    bench.Exclude({2});
    EXPECT_NE(view.CellText(7, Column::kStudentisedFirst), "…") << "few enough now";
}

}  // namespace
}  // namespace kv_tr::workbench
