// The table of control points with their residuals: cells, colours, the current cell, editing.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/forms/change_event.h"
#include "kv_tr/forms/colour.h"
#include "kv_tr/forms/findings_cache.h"

namespace kv_tr {

/// The points of an adjustment as rows of texts, which are made when they are asked for. Rows and
/// columns are counted with the headings: row 0 has the column headings, rows 1, 2, ... the points,
/// column 0 their running numbers. Behind the columns that always show stand those of the
/// statistics, which show when they are wanted.
///
/// A cell of an editable table is edited in a box above it, txtEdit, which opens and closes with
/// the functions named after the controls Grid1 and txtEdit. An edit changes the point; whoever
/// owns the adjustment fits again when Edited is raised.
class PairTable {
public:
    /// The adjustment, the error limit, the event and the findings outlive the table. Without
    /// findings there are no statistics.
    PairTable(Adjustment& adjustment, const double& limit, ChangeEvent& changed,
              FindingsCache* findings = nullptr)
        : adjustment_(adjustment), limit_(limit), changed_(changed), findings_(findings) {}

    /// Raised when an edit has changed a point.
    Event<> Edited;
    /// Raised whenever anything that is shown may have changed.
    ChangeEvent& Changed() const { return changed_; }

    static constexpr int kColumns = 9;      ///< that always show
    static constexpr int kAllColumns = 14;  ///< with those of the statistics
    int RowCount() const { return 1 + static_cast<int>(adjustment_.Points().size()); }
    std::string CellText(int row, int column) const;
    /// The cell as tables for other programs have it: a number with all its digits, no blanks
    /// around.
    std::string CopiedCell(int row, int column) const;
    /// What a cell shows as a number, from the first coordinate on; not a number where that is not
    /// defined.
    double NumberIn(int row, int column) const;
    /// What marks a cell; cells of the other columns look as any text does.
    struct CellColours {
        Colour text{};
        std::optional<Colour> background{};
    };
    std::optional<CellColours> ColoursOf(int row, int column) const;
    /// A text of the column's cells that takes as much room as any.
    std::string WidestText(int column) const;
    /// The rows as tab-separated lines below the headings, numbers with all their digits.
    std::string TableText(std::span<const int> rows) const;

    // The columns of the statistics: tY and tX, rY and rX, p.

    static constexpr std::array kFigureGroups{Text::kStudentisedColumns, Text::kRedundancyColumns,
                                              Text::kProbabilityColumn};
    bool IsColumnShown(int column) const;
    bool IsGroupShown(std::size_t group) const { return groupsShown_[group]; }
    bool IsAnyGroupShown() const;
    void ToggleGroup(std::size_t group);
    /// Hides all of them when any is shown, else shows all.
    void ToggleAllGroups();
    /// What a column of the statistics shows, in words; empty for the other columns.
    std::string HeadingTip(int column) const;

    // The current cell.

    int CurrentRow() const;
    int CurrentColumn() const { return currentColumn_; }
    /// Moves the current cell, which closes the editor.
    void Grid1EnterCell(int row, int column);

    // Editing.

    bool Editable() const { return editable_; }
    /// Closes the editor too.
    void Editable(bool editable);
    /// Puts a text into a cell and closes the editor; true if that changed the point. The text that
    /// the cell shows changes nothing, nor does one that is no number where one is needed, nor any
    /// text in a column that is computed.
    bool SetCell(int row, int column, const std::string& text);
    /// The point that such a text would make; nothing where it would change nothing.
    std::optional<ControlPoint> PointWith(int row, int column, const std::string& text) const;

    struct Editor {
        bool visible = false;
        std::string text;
        int caret = 0;  // beyond the text: at its end
    };
    enum class EditKey { kEnter, kEscape, kUp, kDown, kNext, kPrevious };

    const Editor& CellEditor() const { return editor_; }
    void CloseEditor();
    /// Makes a cell the current one and opens the editor on it, if it can be changed.
    void Grid1Click(int row, int column);
    /// A character typed over the current cell; empty for a key that is none.
    void Grid1KeyPress(const std::string& character);
    /// The table has the focus again, which takes what is in the editor.
    void Grid1GotFocus();
    void txtEditChange(const std::string& text) { editor_.text = text; }
    void txtEditKeyDown(EditKey key);

private:
    void OpenEditor(const std::string& text, int caret);
    void EditNeighbour(int step);
    const ControlPoint& PointIn(int row) const;
    const Residual& ResidualIn(int row) const;
    double FigureIn(int row, int column) const;

    Adjustment& adjustment_;
    const double& limit_;
    ChangeEvent& changed_;
    FindingsCache* findings_;
    std::array<bool, kFigureGroups.size()> groupsShown_{};
    int currentRow_ = 1;
    int currentColumn_ = 1;
    bool editable_ = false;
    Editor editor_;
};

}  // namespace kv_tr
