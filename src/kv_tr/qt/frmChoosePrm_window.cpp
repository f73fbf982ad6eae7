// The window of the chooser of where parameters come from.
#include "kv_tr/qt/frmChoosePrm_window.h"

#include <QBoxLayout>
#include <QPushButton>

namespace kv_tr {

frmChoosePrmWindow::frmChoosePrmWindow(frmChoosePrm& form)
    : FormWindow(form, "frmChoosePrm", {360, 220}), form_(form) {
    const auto make = [this](const char* name, const std::function<bool()>& click) {
        return MakeButton(name, [this, click] {
            if (click()) accept();
        });
    };
    auto* layout = new QVBoxLayout(this);
    for (QPushButton* source : {make("cmdAffin", [this] { return form_.cmdAffin(); }),
                                make("cmdPoli", [this] { return form_.cmdPoli(); }),
                                make("cmdCalc", [this] { return form_.cmdCalc(); })}) {
        source->setMinimumHeight(40);
        layout->addWidget(source);
    }
    layout->addStretch();
    layout->addWidget(
        MakeEnds(make("cmdOk", [this] { return form_.cmdOk(); }), MakeCancelButton("cmdNok")));
    Follow();
}

}  // namespace kv_tr
