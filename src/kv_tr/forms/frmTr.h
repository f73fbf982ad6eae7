// The adjustment dialog without its window: what it shows and what each control does.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "kv_tr/forms/captions.h"
#include "kv_tr/forms/colour.h"
#include "kv_tr/forms/graph_page.h"
#include "kv_tr/forms/residual_graph.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/event.h"

namespace kv_tr {

/// Lets the user inspect and steer an adjustment: the table of pairs with their residuals, the
/// statistics, the type, the error limit, exclusion, editing, the graph, log and parameters.
///
/// Functions named after a control are what a click on it does. Rows and columns of the table are
/// counted with its headings: row 0 has the column headings, rows 1, 2, ... the pairs, column 0
/// their running numbers. All work is done by the engine, which keeps all coordinates.
/// Everything below bDoModal is for the window while the dialog is open.
class frmTr {
public:
    enum class Mode { kTable, kEdit, kGraph };
    enum class EditKey { kEnter, kEscape, kUp, kDown };

    /// Fits, shows the dialog by calling showModal and waits until that returns. With an apply
    /// button true when it was pressed; without one true when the dialog was left by cmdExit.
    bool bDoModal(clsTrCalc& engine, bool showApplyButton, const std::function<void()>& showModal);

    /// Raised whenever anything that the window draws may have changed.
    Event<> Changed;

    // Captions and state of the controls.

    const Captions& ControlTexts() const { return captions_; }
    bool ApplyVisible() const { return applyVisible_; }
    Mode DisplayMode() const { return mode_; }
    /// Whether Esc presses cmdExit; while cells are edited it belongs to the editor.
    bool EscLeaves() const { return mode_ != Mode::kEdit; }
    int SelectedType() const { return selectedType_; }
    bool InverseChecked() const { return engine_->Held().IsSwapped(); }
    const GraphLabels& Labels() const { return labels_; }
    std::string LimitText() const { return limitText_; }

    // The table.

    static constexpr int kColumns = 9;
    int RowCount() const { return 1 + engine_->lFullCnt(); }
    std::string CellText(int row, int column) const;
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

    int CurrentRow() const { return currentRow_; }
    int CurrentColumn() const { return currentColumn_; }
    /// Moves the current cell, which hides the editor.
    void Grid1EnterCell(int row, int column);
    void Grid1Click(int row, int column);
    void Grid1DblClick(int row, int column);
    /// Right button released over rows selected from one to the other, in either order: toggles
    /// them all, then fits once.
    void Grid1MouseUp(int anchorRow, int row);
    /// A character typed over the current cell; empty for a key that is none.
    void Grid1KeyPress(const std::string& character);
    /// The table has the focus again, which commits what is in the editor.
    void Grid1GotFocus();

    // The cell editor.

    struct Editor {
        bool visible = false;
        std::string text;
        int caret = 0;  // beyond the text: at its end
    };
    const Editor& CellEditor() const { return editor_; }
    void txtEditChange(const std::string& text) { editor_.text = text; }
    void txtEditKeyDown(EditKey key);

    // The graph.

    /// The size of the surface in its own units; one that is too small keeps the scale.
    void Resize(double width, double height);
    const std::vector<GraphMark>& Marks() const;
    void PicBoxDblClick() { pickArmed_ = true; }
    /// Toggles the pair nearest to the place when a double click came before; true if it did.
    bool PicBoxMouseUp(double x, double y);
    /// One page of that size with title, type, statistics and graph.
    GraphPage PicturePage(double width, double height) const;

    // The other controls.

    void opMode(Mode mode);
    void RadioTrType(int index);
    void chkInverz();
    void chkNr() { ToggleLabel(labels_.identifier); }
    void chkDx() { ToggleLabel(labels_.first); }
    void chkDy() { ToggleLabel(labels_.second); }
    void chkRad() { ToggleLabel(labels_.total); }
    /// Takes the text of the box as the error limit; false, with a message, if it is no number.
    bool txtLimit(const std::string& text);
    /// The window was activated: shows the limit as it is.
    void Activate();
    void cmdRemoveExt();
    void cmsResetExt();
    void cmdSaveLog();
    void cmdSavePrm();
    void cmdApplyResult() { applied_ = true; }
    void cmdExit();

private:
    void SelectTypeOf(enuTR_TYPE type);
    void ShowResult();
    void CalcScale4Pic();
    void Recalculate();
    void Fit(const std::function<void()>& fit);
    void ToggleLabel(bool& label);
    void OpenEditor(const std::string& text, int caret);
    void CommitEdit();
    bool Accept(ControlPoint& point, int column) const;
    const ControlPoint& PointIn(int row) const;
    const Residual& ResidualIn(int row) const;
    double NumberIn(int row, int column) const;

    Captions captions_{TrCaptions()};
    clsTrCalc* engine_ = nullptr;  // moCalcTr
    enuTR_TYPE fittedType_ = TR_HELMERT;
    bool applyVisible_ = false;
    bool applied_ = false;
    bool exited_ = false;
    Mode mode_ = Mode::kTable;
    int selectedType_ = 0;
    std::string limitText_;
    int currentRow_ = 1;
    int currentColumn_ = 1;
    Editor editor_;
    double surfaceWidth_ = 0;
    double surfaceHeight_ = 0;
    GraphScale scale_;
    GraphLabels labels_;
    bool pickArmed_ = false;
    mutable std::vector<GraphMark> marks_;
    mutable bool marksAreCurrent_ = false;
};

}  // namespace kv_tr
