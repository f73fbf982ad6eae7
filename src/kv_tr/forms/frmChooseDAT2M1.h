// The chooser of national transformations without its window.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kv_tr/forms/form.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

/// Lists the national transformations with the systems they lead from and to and the accuracy to
/// expect.
///
/// cmdOk is true when it closes the dialog.
class frmChooseDAT2M1 : public Form {
public:
    frmChooseDAT2M1() : Form(ChooseDAT2M1Captions()) {}

    /// Shows the dialog, with the row of the type selected, by calling showModal and waits until
    /// that returns; true when the user confirmed. The type is the chosen one then.
    bool bDoModal(enuTR_TYPE& type, const std::function<void()>& showModal);

    /// The headings of the columns, and a row for each type from 10 up: name, source, destination,
    /// accuracy in metres, area.
    static std::vector<std::string> Headings();
    static std::vector<std::vector<std::string>> Rows();

    /// The selected row from 0, -1 for none.
    int lstTr() const { return selected_; }
    void lstTr(int row);
    /// Which constants of the selected row are published, and how far to trust the others.
    std::string Origin() const;

    /// False without a selected row.
    bool cmdOk();

private:
    enuTR_TYPE type_ = TR_HELMERT;
    int selected_ = -1;
    bool confirmed_ = false;
};

}  // namespace kv_tr
