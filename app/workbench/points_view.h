// The table of points as the user looks at it: which rows and columns, in which order.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "workbench/columns.h"
#include "workbench/document.h"

namespace kv_tr::workbench {

/// A document's points as rows, counted from 0. Texts are made when they are asked for; the rows
/// when a row is asked for after the document or a choice has changed.
class PointsView {
public:
    /// The document outlives the view.
    explicit PointsView(Document& document);

    // Rows.

    std::size_t RowCount() { return Rows().size(); }
    /// The place of a row's point in the document.
    std::size_t PlaceOf(std::size_t row) { return Rows()[row]; }
    /// The row of a point; RowCount() where the filter hides the point.
    std::size_t RowOf(std::size_t place);

    struct Order {
        Column column = Column::kNumber;
        bool descending = false;

        bool operator==(const Order&) const = default;
    };
    /// Sorts by a column; equal cells stay in the order of the document. Cells without a figure
    /// come last, and behind them, where the column is computed, the excluded points.
    void Sort(Order order);
    const Order& Sorting() const { return order_; }
    /// Shows only points of which a shown cell contains the text, without regard to case and marks.
    void Filter(const std::string& text);
    const std::string& FilterText() const { return filter_; }
    /// Shows only points in use that the test or the error limit blames.
    void OnlySuspects(bool only);
    bool IsOnlySuspects() const { return onlySuspects_; }

    // Columns.

    bool IsShown(Column column) const { return shown_[static_cast<std::size_t>(column)]; }
    void Show(Column column, bool shown);
    std::vector<Column> ShownColumns() const;
    std::string Heading(Column column) const;
    /// What the column shows, in words; empty where the heading says all.
    std::string HeadingTip(Column column) const;
    /// The choice of columns as a text for settings; a text that is none leaves the usual ones.
    std::string ColumnsText() const;
    void TakeColumnsText(const std::string& text);

    // Cells.

    std::string CellText(std::size_t row, Column column);
    /// A text that takes as much room as any of the column.
    std::string WidestText(Column column);
    /// What shapes and colours tell of a row.
    enum class Mark { kGood, kBeyondLimit, kSuspect, kExcluded };
    Mark MarkOf(std::size_t row);
    /// The text that a cell begins to be edited with: numbers with all their digits.
    std::string EditText(std::size_t row, Column column);

    // Selection: of points, whatever rows they are in.

    void Select(const std::vector<std::size_t>& rows);
    /// Toggles one row, which is what a click with Ctrl does.
    void ToggleSelected(std::size_t row);
    bool IsSelected(std::size_t row);
    void SelectAll();
    /// The rows that are selected and shown, and their points.
    std::vector<std::size_t> SelectedRows();
    Places SelectedPlaces();

    /// Rows as tab-separated lines below the headings, numbers with all their digits.
    std::string CopyText(const std::vector<std::size_t>& rows);

private:
    const std::vector<std::size_t>& Rows();
    void Arrange();
    bool IsWanted(std::size_t place, const std::string& folded);
    void SortRows();
    std::string TextAt(std::size_t place, Column column);
    double NumberAt(std::size_t place, Column column);

    Document& document_;
    Order order_;
    std::string filter_;
    bool onlySuspects_ = false;
    std::array<bool, kColumnCount> shown_{};
    std::unordered_set<std::uint64_t> selected_;  // keys
    std::vector<std::size_t> rows_;
    std::uint64_t arranged_ = 0;  // the version that the rows belong to
    bool isArranged_ = false;
};

/// The same of a point, shown or not.
PointsView::Mark MarkAt(Document& document, std::size_t place);

}  // namespace kv_tr::workbench
