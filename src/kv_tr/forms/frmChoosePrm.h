// The chooser of where parameters come from, without its window.
#pragma once

#include <functional>

#include "kv_tr/forms/form.h"
#include "kv_tr/published/clsTr.h"

namespace kv_tr {

/// Asks where parameters are to come from: typed in, a polynomial or national transformation, or a
/// fit to the control points of a file, which it then sees through.
///
/// The functions of the buttons are true when they close the dialog.
class frmChoosePrm : public Form {
public:
    frmChoosePrm() : Form(ChoosePrmCaptions()) {}

    /// Shows the dialog by calling showModal and waits until that returns; true when the user
    /// confirmed. The object then has the chosen parameters, otherwise those it had before,
    /// whatever an editor that was cancelled has left in it.
    bool bDoModal(clsTr& parameters, const std::function<void()>& showModal);

    bool cmdAffin();
    bool cmdPoli();
    /// Loads a control-point file into the object's engine, shows the points, fits. The points stay
    /// in the engine when a later step is cancelled.
    bool cmdCalc();
    bool cmdOk();

private:
    bool Confirm(const TR_PRM& record);

    clsTr* parameters_ = nullptr;
    TR_PRM chosen_;
    bool confirmed_ = false;
};

}  // namespace kv_tr
