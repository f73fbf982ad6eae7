// The viewer of polynomial parameters without its window: what it shows and what each control does.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "kv_tr/forms/copied_text.h"
#include "kv_tr/forms/text_form.h"
#include "kv_tr/published/clsTr.h"

namespace kv_tr {

/// Shows polynomial parameters as a listing that can be edited, loads and saves it, and lets the
/// user take a national transformation.
class frmPoliTrPrm : public TextForm {
public:
    frmPoliTrPrm() : TextForm(PoliTrPrmCaptions()) {}

    /// Shows the dialog by calling showModal and waits until that returns; true when the user
    /// confirmed. Only then the object changes.
    bool bDoModal(clsTr& parameters, const std::function<void()>& showModal);

    /// Whether cmdDAT2M1 is there: in the Hungarian interface only, whose users' country the
    /// national transformations are for.
    bool NationalVisible() const { return nationalVisible_; }

    void cmdLoad();
    void cmdDAT2M1();
    /// Saves the text as it stands.
    void cmdSave();
    /// What the text says in a format of another program, with all digits while it has not been
    /// edited; nothing, after a message, where it cannot be read or that cannot hold it.
    std::string cmdCopyAs(TransformationFormat format) const;

private:
    void Take(const TR_PRM& record);
    std::string QuestionTitle() const override;
    bool TakeText() override;
    std::optional<TR_PRM> RecordOfText() const;  // nothing, after a message, if it cannot be read

    clsTr* parameters_ = nullptr;
    TR_PRM working_;  // whose listing is the reference
    bool nationalVisible_ = false;
};

}  // namespace kv_tr
