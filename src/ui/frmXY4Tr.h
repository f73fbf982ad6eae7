// The list of control points as text, without its window.
#pragma once

#include <functional>
#include <string>

#include "params/clsTr.h"
#include "ui/form.h"

namespace kv_tr {

/// Shows an engine's control points as text that can be checked and edited.
///
/// cmdOk is true when it closes the dialog. Texts have CR LF between lines.
class frmXY4Tr : public Form {
public:
    frmXY4Tr() : Form(XY4TrCaptions()) {}

    /// Shows the dialog by calling showModal and waits until that returns; true when the user
    /// confirmed. An empty title stands for the dialog's own.
    bool bDoModal(clsTrCalc& engine, const std::string& title,
                  const std::function<void()>& showModal);

    std::string Title() const;

    const std::string& rtBox() const { return text_; }
    void rtBox(const std::string& text) { text_ = text; }
    /// Shows the points of a file below its name; the engine changes only with cmdOk.
    void cmdLoad();
    /// Saves the text as it stands, the name of a loaded file included.
    void cmdSave();
    /// Asks whether a changed text is to become the engine's points. A text that cannot be read to
    /// its end changes nothing and keeps the dialog open.
    bool cmdOk();

private:
    bool TakeText();

    clsTrCalc* engine_ = nullptr;
    std::string title_;
    std::string original_;  // the text at first
    std::string nameLine_;  // of a loaded file, with its line end
    std::string text_;
    bool confirmed_ = false;
};

}  // namespace kv_tr
