// The panel below the table: the statistics of the fit, or the types to choose from.
#include "kv_tr/qt/findings_panel.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QSplitter>
#include <utility>

#include "kv_tr/qt/findings_view.h"

namespace kv_tr {

FindingsPanel::FindingsPanel(frmTr& form, QCheckBox* accurate, QWidget* parent)
    : QWidget(parent),
      form_(form),
      accurate_(accurate),
      statistics_(new QSplitter(this)),
      advice_(new QLabel(this)) {
    statistics_->setChildrenCollapsible(false);
    figures_ = new FindingsView("figures", statistics_);
    parameters_ = new FindingsView("parameters", statistics_);
    types_ = new FindingsView("types", this);
    connect(types_, &FindingsView::RowChosen, this, &FindingsPanel::TypeChosen);
    advice_->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(statistics_, 1);
    layout->addWidget(accurate_);
    layout->addWidget(types_, 1);
    layout->addWidget(advice_);
}

void FindingsPanel::Redraw() {
    const frmTr::Panel shown = form_.ShownPanel();
    const bool isStatistics = shown == frmTr::Panel::kStatistics;
    const bool isTypes = shown == frmTr::Panel::kTypes;
    if (isStatistics) ShowStatistics();
    if (isTypes) ShowTypes();
    statistics_->setVisible(isStatistics);
    accurate_->setVisible(isStatistics);
    types_->setVisible(isTypes);
    advice_->setVisible(isTypes);
    setVisible(isStatistics || isTypes);
}

void FindingsPanel::ShowStatistics() {
    figures_->Show(form_.Figures());
    parameters_->Show(form_.Parameters());
    if (!std::exchange(sized_, true)) {
        statistics_->setSizes({figures_->sizeHint().width(), parameters_->sizeHint().width()});
    }
    accurate_->setChecked(form_.AccurateChecked());
}

void FindingsPanel::ShowTypes() {
    types_->Show(form_.Types());
    types_->selectRow(form_.TypesRow());
    advice_->setText(QString::fromStdString(form_.Advice()));
}

void FindingsPanel::EnterTypes() { types_->setFocus(); }

}  // namespace kv_tr
