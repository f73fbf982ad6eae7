// The window of the chooser of national transformations.
#pragma once

#include "kv_tr/forms/frmChooseDAT2M1.h"
#include "kv_tr/qt/form_window.h"

class QLabel;
class QTreeWidget;

namespace kv_tr {

class frmChooseDAT2M1Window : public FormWindow {
public:
    explicit frmChooseDAT2M1Window(frmChooseDAT2M1& form);

protected:
    void Redraw() override;

private:
    frmChooseDAT2M1& form_;
    QTreeWidget* list_;
    QLabel* origin_;
    QPushButton* ok_;
};

}  // namespace kv_tr
