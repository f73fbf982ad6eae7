// The adjustment dialog without its window: what it shows and what each control does.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "kv_tr/forms/findings_tables.h"
#include "kv_tr/forms/form.h"
#include "kv_tr/forms/pair_table.h"
#include "kv_tr/forms/residual_plan.h"
#include "kv_tr/published/clsTrCalc.h"

namespace kv_tr {

/// Lets the user inspect and steer an adjustment: the table of pairs with their residuals, the
/// statistics, the type, the error limit, exclusion, editing, the graph, log and parameters.
///
/// A strip above the table says whether the fit can be relied on, with an offer of what would help;
/// a panel below has the statistics, or compares the types. What they show is computed when they
/// show it.
///
/// All work is done by the engine, which keeps all coordinates. Fits end with a message where there
/// is one, and everything shown belongs to the last fit.
class frmTr : public Form {
public:
    enum class Mode { kTable, kEdit, kGraph };
    enum class Panel { kNone, kStatistics, kTypes };

    frmTr() : Form(TrCaptions()) {}

    /// Fits, shows the dialog by calling showModal and waits until that returns. With an apply
    /// button true when it was pressed; without one true when the dialog was left by cmdExit.
    bool bDoModal(clsTrCalc& engine, bool showApplyButton, const std::function<void()>& showModal);

    bool ApplyVisible() const { return applyVisible_; }
    Mode DisplayMode() const { return mode_; }
    /// Whether Esc presses cmdExit; while cells are edited it belongs to the editor.
    bool EscLeaves() const { return mode_ != Mode::kEdit; }
    /// The index of the type's button, 0 for a type that has none.
    int SelectedType() const;
    bool InverseChecked() const { return engine_->Held().IsSwapped(); }
    const std::string& LimitText() const { return limitText_; }

    PairTable& Table() { return *table_; }
    const PairTable& Table() const { return *table_; }
    ResidualPlan& Plan() { return *plan_; }
    const ResidualPlan& Plan() const { return *plan_; }

    void Grid1DblClick(int row, int column);
    /// Right button released over rows selected from one to the other, in either order: toggles
    /// them all, then fits once.
    void Grid1MouseUp(int anchorRow, int row);
    /// Toggles the pair nearest to the place when a double click came before; true if it did.
    bool PicBoxMouseUp(double x, double y);

    void opMode(Mode mode);
    void RadioTrType(int index);
    void chkInverz();
    void chkNr() { plan_->ToggleLabel(&GraphLabels::identifier); }
    void chkDx() { plan_->ToggleLabel(&GraphLabels::first); }
    void chkDy() { plan_->ToggleLabel(&GraphLabels::second); }
    void chkRad() { plan_->ToggleLabel(&GraphLabels::total); }
    /// Takes the text of the box as the error limit; false, with a message, if it is no number.
    bool txtLimit(const std::string& text);
    /// The window was activated or resized: shows the limit as it is.
    void Activate();
    void cmdRemoveExt();
    void cmsResetExt();
    void cmdSaveLog();
    void cmdSavePrm();
    /// Asks for a file ending in .html or .pdf and saves the report of the adjustment there.
    /// Without points there is none, which a message says.
    void cmdReport();
    void cmdApplyResult() { applied_ = true; }
    void cmdExit();

    // What the fit is worth.

    /// With what the panel and the columns that are shown add to the warnings.
    std::vector<StripLine> Strip() const;
    /// Does what a line of the strip offers. The line may be one that was shown before the last
    /// fit.
    void cmdOffer(const StripLine& line);
    /// Shows all lines of the strip, or the first one only.
    void cmdMoreWarnings();
    bool AllWarningsShown() const { return allWarningsShown_; }

    Panel ShownPanel() const { return panel_; }
    /// Show a panel, or hide the one that is shown.
    void cmdStatistics() { TogglePanel(Panel::kStatistics); }
    void cmdTypes() { TogglePanel(Panel::kTypes); }
    FindingsTable Figures() const { return FiguresTable(*findings_); }
    FindingsTable Parameters() const { return ParametersTable(*findings_); }
    FindingsTable Types() const { return TypesTable(*findings_); }
    std::string Advice() const { return AdviceText(*findings_); }
    /// The row of the fitted type in Types(); -1 when it is not there.
    int TypesRow() const;
    /// Fits the type of a row of Types().
    void FitTypeOf(int row);

    /// Shows the columns of the statistics in the table, or hides them.
    void cmdColumns();
    /// Whether the accurate solution is fitted instead of the documented one. That lasts until the
    /// dialog is closed.
    bool AccurateChecked() const { return engine_->Solution() == Solution::kAccurate; }
    void chkAccurate();
    /// What has been computed so far.
    const FindingsCache& Findings() const { return *findings_; }

private:
    void Solve(Solution solution);
    void UseType(Type type);
    void TogglePanel(Panel panel);
    std::string FirstOffer() const;
    std::string MoreWarnings() const;
    void Recalculate();
    void RecalculateAfterEdit();
    void Fit(const std::function<void()>& fit);

    clsTrCalc* engine_ = nullptr;                    // moCalcTr
    mutable std::optional<FindingsCache> findings_;  // filled when something is asked for
    std::optional<PairTable> table_;
    std::optional<ResidualPlan> plan_;
    enuTR_TYPE fittedType_ = TR_HELMERT;
    bool applyVisible_ = false;
    bool applied_ = false;
    bool exited_ = false;
    Mode mode_ = Mode::kTable;
    Panel panel_ = Panel::kNone;
    bool allWarningsShown_ = false;
    std::string limitText_;
};

}  // namespace kv_tr
