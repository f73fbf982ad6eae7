// The editor of six parameters without its window: what it shows and what each control does.
#pragma once

#include <array>
#include <functional>
#include <string>

#include "kv_tr/forms/copied_text.h"
#include "kv_tr/forms/form.h"
#include "kv_tr/published/clsTr.h"

namespace kv_tr {

/// Lets the user see and type the six coefficients of a Helmert or affine transformation, load and
/// save them, and fill in the conversions between fathoms and metres.
///
/// cmdOk is true when it closes the dialog.
class frmAffinTrPrm : public Form {
public:
    frmAffinTrPrm() : Form(AffinTrPrmCaptions()) {}

    /// Shows the dialog by calling showModal and waits until that returns; true when the user
    /// confirmed. The coefficients in the boxes become those of the object whichever way the
    /// dialog was closed: hosts rely on it, and those that keep the old ones look at the result.
    /// The object's type stays; for a polynomial object the editor begins with the identity.
    bool bDoModal(clsTr& parameters, const std::function<void()>& showModal);

    static constexpr int kBoxes = 6;

    std::string BoxText(int box) const;
    std::string SampleText(int line) const;
    /// Whether cmdMeterOl and cmdOlMeter are there: in the Hungarian interface only, as
    /// fathoms are the unit of old Hungarian surveys.
    bool FathomButtonsVisible() const { return fathomButtonsVisible_; }

    /// Takes the text of a box; false, with a message, if it is no number.
    bool txtTrPrm(int box, const std::string& text);
    void cmdMeterOl();
    void cmdOlMeter();
    void cmdLoad();
    /// Saves what the object holds, which is what the dialog was opened with or has loaded: typed
    /// values reach the object when the dialog closes, after they have been confirmed or not.
    void cmdSave();
    /// What the boxes say in a format of another program; nothing, after a message, where that
    /// cannot hold it.
    std::string cmdCopyAs(TransformationFormat format) const;
    bool cmdOk();

private:
    void Take(const AFFIN_PRM& record);
    AFFIN_PRM Working() const;

    clsTr* parameters_ = nullptr;
    enuTR_TYPE type_ = TR_HELMERT;
    std::array<double, kBoxes> values_{};  // in the order of the boxes
    bool fathomButtonsVisible_ = false;
    bool confirmed_ = false;
};

}  // namespace kv_tr
