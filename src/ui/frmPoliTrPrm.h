// The viewer of polynomial parameters without its window: what it shows and what each control does.
#pragma once

#include <functional>
#include <string>

#include "params/clsTr.h"
#include "ui/form.h"

namespace kv_tr {

/// Shows polynomial parameters as a listing that can be edited, loads and saves it, and lets the
/// user take a national transformation.
///
/// cmdOk is true when it closes the dialog. Texts have CR LF between lines.
class frmPoliTrPrm : public Form {
public:
    frmPoliTrPrm() : Form(PoliTrPrmCaptions()) {}

    /// Shows the dialog by calling showModal and waits until that returns; true when the user
    /// confirmed. Only then the object changes.
    bool bDoModal(clsTr& parameters, const std::function<void()>& showModal);

    /// Whether cmdDAT2M1 is there: in the Hungarian interface only, deliberately.
    bool NationalVisible() const { return nationalVisible_; }

    const std::string& rtBox() const { return text_; }
    void rtBox(const std::string& text) { text_ = text; }
    void cmdLoad();
    void cmdDAT2M1();
    /// Saves the text as it stands.
    void cmdSave();
    bool cmdOk();

private:
    void Show(const TR_PRM& record);
    bool TakeText();

    clsTr* parameters_ = nullptr;
    TR_PRM working_;
    std::string reference_;  // the working record's listing
    std::string text_;
    bool nationalVisible_ = false;
    bool confirmed_ = false;
};

}  // namespace kv_tr
