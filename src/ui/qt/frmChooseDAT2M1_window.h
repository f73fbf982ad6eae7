// The window of the chooser of national transformations.
#pragma once

#include "ui/frmChooseDAT2M1.h"
#include "ui/qt/form_window.h"

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
