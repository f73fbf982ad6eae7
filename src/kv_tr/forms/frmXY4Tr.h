// The list of control points as text, without its window.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kv_tr/forms/text_form.h"
#include "kv_tr/published/clsTr.h"

namespace kv_tr {

/// Shows an engine's control points as text that can be checked and edited; a changed text becomes
/// the engine's points.
class frmXY4Tr : public TextForm {
public:
    frmXY4Tr() : TextForm(XY4TrCaptions()) {}

    /// Shows the dialog by calling showModal and waits until that returns; true when the user
    /// confirmed. An empty title stands for the dialog's own.
    bool bDoModal(clsTrCalc& engine, const std::string& title,
                  const std::function<void()>& showModal);

    /// Shows the points of a file below its name; the engine changes only with cmdOk.
    void cmdLoad();
    /// Saves the text as it stands, the name of a loaded file included.
    void cmdSave();

private:
    std::string QuestionTitle() const override;
    bool TakeText() override;

    clsTrCalc* engine_ = nullptr;
    std::string original_;  // the text at first
    std::string nameLine_;  // of a loaded file, with its line end
    PointSource file_;      // that file
    std::vector<ControlPoint> filePoints_;
};

}  // namespace kv_tr
