// The tabs below table and plan: fit, types, points, distortion, history.
#include "desktop/findings_tabs.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QSplitter>
#include <chrono>

#include "desktop/ui_text.h"
#include "kv_tr/qt/findings_view.h"
#include "kv_tr/qt/form_window.h"
#include "workbench/panels.h"

namespace kv_tr::desktop {

using workbench::Phrase;

FindingsTabs::FindingsTabs(workbench::Workbench& bench, workbench::PointsView& view,
                           QWidget* parent)
    : QTabWidget(parent), bench_(bench), view_(view) {
    setObjectName("tabs");
    setDocumentMode(true);
    points_ = new FindingsView("pointFigures", this);
    distortion_ = new FindingsView("distortion", this);
    steps_ = new FindingsView("steps", this);
    const auto goTo = [this](int row) {
        RunAction([&] { bench_.GoTo(static_cast<std::size_t>(row)); });
    };
    connect(steps_, &QTableWidget::cellClicked, this, goTo);
    connect(steps_, &FindingsView::RowChosen, this, goTo);
    addTab(MakeFit(), "");
    addTab(MakeTypes(), "");
    addTab(points_, "");
    addTab(distortion_, "");
    addTab(steps_, "");
    connect(this, &QTabWidget::currentChanged, this,
            [this] { RunAction([this] { ShowFront(); }); });
    rest_.setSingleShot(true);
    rest_.setInterval(std::chrono::milliseconds(400));
    connect(&rest_, &QTimer::timeout, this, [this] {
        RunAction([this] {
            bench_.Project().Findings().Assessed();
            ShowFront();
            emit Assessed();
        });
    });
}

QWidget* FindingsTabs::MakeFit() {
    auto* page = new QWidget(this);
    fit_ = new QSplitter(page);
    fit_->setChildrenCollapsible(false);
    figures_ = new FindingsView("figures", fit_);
    parameters_ = new FindingsView("parameters", fit_);
    accurate_ = new QCheckBox(page);
    accurate_->setObjectName("accurate");
    connect(accurate_, &QCheckBox::clicked, this, [this](bool isAccurate) {
        RunAction(
            [&] { bench_.SetSolution(isAccurate ? Solution::kAccurate : Solution::kDocumented); });
    });
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(fit_, 1);
    layout->addWidget(accurate_);
    return page;
}

QWidget* FindingsTabs::MakeTypes() {
    auto* page = new QWidget(this);
    types_ = new FindingsView("types", page);
    advice_ = new QLabel(page);
    advice_->setWordWrap(true);
    advice_->setContentsMargins(8, 0, 8, 0);
    connect(types_, &QTableWidget::cellClicked, this, &FindingsTabs::ChooseType);
    connect(types_, &FindingsView::RowChosen, this, &FindingsTabs::ChooseType);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(types_, 1);
    layout->addWidget(advice_);
    return page;
}

void FindingsTabs::Redraw() {
    constexpr Phrase kTitles[] = {Phrase::kFitTab, Phrase::kTypesTab, Phrase::kPointsTab,
                                  Phrase::kDistortionTab, Phrase::kHistoryTab};
    for (int tab = kFit; tab <= kHistory; ++tab) setTabText(tab, UiText(kTitles[tab]));
    accurate_->setText(UiText(Text::kAccurateSolution));
    ShowFrontLater();
}

void FindingsTabs::ShowFrontLater() {
    rest_.stop();
    if (MustWait()) rest_.start();
    if (!MustWait() || currentIndex() == kHistory) ShowFront();
}

void FindingsTabs::SetAngles(AngleUnit unit) {
    angles_ = unit;
    ShowFrontLater();
}

/// Whether an assessment is missing that takes its time; the history alone needs none.
bool FindingsTabs::MustWait() {
    workbench::Document& document = bench_.Project();
    return document.HasFit() && !document.HasAssessment();
}

void FindingsTabs::ShowSelection() {
    if (currentIndex() == kPoints) ShowPoints();
}

void FindingsTabs::ShowFront() {
    switch (currentIndex()) {
        case kFit: return ShowFit();
        case kTypes: return ShowAdvice();
        case kPoints: return ShowPoints();
        case kDistortion: return distortion_->Show(DistortionTable(bench_.Project(), angles_));
        default: return ShowSteps();
    }
}

void FindingsTabs::ShowFit() {
    workbench::Document& document = bench_.Project();
    const bool hasFit = document.HasFit();
    figures_->Show(hasFit ? FiguresTable(document.Findings()) : FindingsTable{});
    parameters_->Show(hasFit ? ParametersTable(document.Findings(), angles_) : FindingsTable{});
    accurate_->setChecked(document.Current().solution == Solution::kAccurate);
    accurate_->setEnabled(hasFit);
}

void FindingsTabs::ShowAdvice() {
    workbench::Document& document = bench_.Project();
    if (document.UsedCount() < 2) {
        types_->Show({});
        return advice_->clear();
    }
    types_->Show(TypesTable(document.Findings()));
    const auto& types = document.Findings().Advised().types;
    for (std::size_t row = 0; row < types.size(); ++row) {
        if (types[row].type == document.Current().type) types_->selectRow(static_cast<int>(row));
    }
    advice_->setText(QString::fromStdString(AdviceText(document.Findings())) + " " +
                     UiText(Phrase::kChooseType));
}

void FindingsTabs::ChooseType(int row) {
    RunAction([&] {
        bench_.SetType(
            bench_.Project().Findings().Advised().types[static_cast<std::size_t>(row)].type);
    });
}

/// The selected points; without a selection the suspect one.
void FindingsTabs::ShowPoints() {
    workbench::Document& document = bench_.Project();
    workbench::Places places = view_.SelectedPlaces();
    if (places.empty() && document.WorstSuspect() < document.Count())
        places.push_back(document.WorstSuspect());
    points_->Show(PointsTable(document, places));
}

void FindingsTabs::ShowSteps() {
    const workbench::History& history = bench_.Steps();
    steps_->Show(StepsTable(history));
    const auto done = static_cast<int>(history.Done());
    const QColor gone = palette().color(QPalette::Disabled, QPalette::Text);
    for (int row = done + 1; row < steps_->rowCount(); ++row) {
        for (int column = 0; column < steps_->columnCount(); ++column)
            steps_->item(row, column)->setForeground(gone);
    }
    steps_->selectRow(done);
    steps_->scrollToItem(steps_->item(done, 0));
}

}  // namespace kv_tr::desktop
