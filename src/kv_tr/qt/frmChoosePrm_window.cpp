// The window of the chooser of where parameters come from.
#include "kv_tr/qt/frmChoosePrm_window.h"

#include <QBoxLayout>
#include <QPushButton>

namespace kv_tr {

frmChoosePrmWindow::frmChoosePrmWindow(frmChoosePrm& form)
    : FormWindow("frmChoosePrm", {360, 220}), form_(form) {
    const auto make = [this](const char* name, const std::function<bool()>& click) {
        return MakeButton(name, [this, click] {
            if (click()) accept();
        });
    };
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(make("cmdAffin", [this] { return form_.cmdAffin(); }));
    layout->addWidget(make("cmdPoli", [this] { return form_.cmdPoli(); }));
    layout->addWidget(make("cmdCalc", [this] { return form_.cmdCalc(); }));
    for (auto* button : findChildren<QPushButton*>()) button->setMinimumHeight(40);
    layout->addStretch();
    auto* ends = new QHBoxLayout;
    ends->addStretch();
    ends->addWidget(make("cmdOk", [this] { return form_.cmdOk(); }));
    QPushButton* cancel = MakeButton("cmdNok", [this] { reject(); });
    ends->addWidget(cancel);
    layout->addLayout(ends);
    Follow(form.Changed);
}

}  // namespace kv_tr
