// The main window of the desktop program: what it shows, and what the user does with points.
#include "desktop/workbench_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QComboBox>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <algorithm>
#include <chrono>

#include "desktop/findings_tabs.h"
#include "desktop/guide_window.h"
#include "desktop/parameters_window.h"
#include "desktop/points_panel.h"
#include "desktop/start_page.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/published/settings.h"
#include "kv_tr/qt/cursor_scope.h"
#include "kv_tr/qt/mnemonics.h"
#include "kv_tr/qt/plan_widget.h"
#include "kv_tr/qt/warning_strip.h"
#include "workbench/panels.h"
#include "workbench/paste.h"
#include "workbench/plan_of.h"

namespace kv_tr::desktop {

using workbench::Phrase;

namespace {

constexpr const char* kDesktop = "Desktop";
constexpr const char* kColumns = "Columns";
constexpr const char* kBody = "TableAndPlan";
constexpr const char* kWhole = "Panels";
constexpr const char* kAngles = "Angles";
constexpr int kLeastHeight = 72;  // of the table and the plan

void SaveSplitter(const char* key, const QSplitter& splitter) {
    QStringList sizes;
    for (const int size : splitter.sizes()) sizes << QString::number(size);
    SaveSetting(kDesktop, key, sizes.join(' ').toStdString());
}

void RestoreSplitter(const char* key, QSplitter& splitter, const QList<int>& otherwise) {
    QList<int> sizes;
    for (const QString& size : QString::fromStdString(Setting(kDesktop, key, "")).split(' '))
        sizes << size.toInt();
    const bool isKept = sizes.size() == splitter.count() && sizes.front() > 0;
    splitter.setSizes(isKept ? sizes : otherwise);
}

}  // namespace

WorkbenchWindow::WorkbenchWindow(DesktopForm& form, std::string version,
                                 const std::filesystem::path& stateFolder)
    : form_(form),
      version_(std::move(version)),
      session_(stateFolder.empty() ? stateFolder : stateFolder / "recovery"),
      recent_(stateFolder) {
    setAcceptDrops(true);
    MakeMenus();
    MakeTools();
    MakeStart();
    MakeBody();
    MakeStatus();
    Recall();
    RedrawCaptions();
    benchChanged_ = bench_.Changed.Subscribe([this] { Redraw(); });
    formChanged_ = form_.Changed.Subscribe([this] {
        RedrawCaptions();
        Redraw();
    });
    Redraw();
    connect(&autosave_, &QTimer::timeout, this,
            [this] { session_.Tick(std::chrono::steady_clock::now()); });
    autosave_.start(std::chrono::seconds(5));
}

void WorkbenchWindow::MakeBody() {
    auto* centre = new QWidget(this);
    MakeStrip(centre);
    whole_ = new QSplitter(Qt::Vertical, centre);
    body_ = new QSplitter(whole_);
    points_ = new PointsPanel(bench_, view_, body_);
    plan_ = new PlanWidget(body_);
    tabs_ = new FindingsTabs(bench_, view_, whole_);
    body_->setStretchFactor(0, 3);
    body_->setStretchFactor(1, 2);
    body_->setChildrenCollapsible(false);
    for (QWidget* part : {static_cast<QWidget*>(&points_->Table()), static_cast<QWidget*>(plan_)})
        part->setMinimumHeight(kLeastHeight);
    whole_->setStretchFactor(0, 1);
    connect(&points_->Table(), &PointsTable::PointsSelected, this, [this] {
        ShowSelectionOnPlan();
        tabs_->ShowSelection();
        RedrawActions();
    });
    connect(&points_->Table(), &PointsTable::ColumnsChanged, this, &WorkbenchWindow::Remember);
    connect(tabs_, &FindingsTabs::Assessed, this, [this] {
        RenewPlan();
        points_->Redraw();
        RedrawStrip();
        ShowSelectionOnPlan();
    });
    connect(plan_, &PlanWidget::SelectionAsked, this, &WorkbenchWindow::SelectOnPlan);
    connect(plan_, &PlanWidget::ToggleAsked, this,
            [this](std::size_t place) { RunAction([&] { bench_.Toggle(place); }); });
    connect(plan_, &PlanWidget::PlaceHovered, this, &WorkbenchWindow::ShowPlace);
    connect(plan_, &PlanWidget::PlaceLeft, this, [this] {
        for (QLabel* label : {place_, figures_, outside_}) label->clear();
        outside_->hide();
    });
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(8, 8, 8, 0);
    layout->addWidget(strip_);
    layout->addWidget(whole_, 1);
    pages_ = new QStackedWidget(this);
    auto* rolled = new QScrollArea(pages_);  // a start page higher than the screen
    rolled->setWidget(start_);
    rolled->setWidgetResizable(true);
    rolled->setFrameShape(QFrame::NoFrame);
    pages_->addWidget(rolled);
    pages_->addWidget(centre);
    setCentralWidget(pages_);
}

void WorkbenchWindow::MakeStrip(QWidget* centre) {
    offer_ = new QPushButton(centre);
    offer_->setObjectName("offer");
    more_ = new QPushButton(centre);
    more_->setCheckable(true);
    strip_ = new WarningStrip(offer_, more_, centre);
    const auto take = [this](int line) {
        const StripLine offered = strip_->Line(line);
        RunAction([&] { bench_.TakeOffer(offered); });
    };
    connect(offer_, &QPushButton::clicked, this, [take] { take(0); });
    connect(strip_, &WarningStrip::OfferChosen, this, take);
    connect(more_, &QPushButton::clicked, this, [this] { Redraw(); });
    showPoint_ = new QPushButton(centre);
    notNow_ = new QPushButton(centre);
    notNow_->setObjectName("notNow");
    strip_->Add(showPoint_);
    strip_->Add(notNow_);
    connect(showPoint_, &QPushButton::clicked, this,
            [this] { ShowPoint(strip_->Line(0).warning.point); });
    connect(notNow_, &QPushButton::clicked, this, [this] {
        ++hidden_;
        RedrawStrip();
    });
}

void WorkbenchWindow::MakeStart() {
    start_ = new StartPage(this);
    const auto act = [](const Action& action) { return [action] { RunAction(action); }; };
    connect(start_, &StartPage::OpenWanted, this, act([this] { ChooseFile(); }));
    connect(start_, &StartPage::ListsWanted, this, act([this] { ChooseLists(); }));
    connect(start_, &StartPage::PasteWanted, this, act([this] { OpenClipboard(); }));
    connect(start_, &StartPage::FileWanted, this,
            [this](const QString& name) { OpenFiles({name.toStdString()}); });
    connect(start_, &StartPage::ForgetWanted, this, [this](const QString& name) {
        recent_.Remove(name.toStdString());
        form_.RemoveRecent(name.toStdString());
    });
}

void WorkbenchWindow::MakeStatus() {
    place_ = new QLabel(this);
    figures_ = new QLabel(this);
    outside_ = new QLabel(this);
    outside_->setAutoFillBackground(true);
    QPalette warning = outside_->palette();
    warning.setColor(QPalette::Window, "#ffefb8");
    warning.setColor(QPalette::WindowText, "#4a3700");
    outside_->setPalette(warning);
    outside_->hide();
    statusBar()->addPermanentWidget(place_);
    statusBar()->addPermanentWidget(figures_);
    statusBar()->addPermanentWidget(outside_);
}

void WorkbenchWindow::Recall() {
    view_.TakeColumnsText(Setting(kDesktop, kColumns, ""));
    resize(RememberedSize(kDesktop, {1280, 800}));
    RestoreSplitter(kBody, *body_, {width() * 3 / 5, width() * 2 / 5});
    const std::string angles = Setting(kDesktop, kAngles, "");
    for (const AngleUnit unit : kAngleUnits) {
        if (angles == std::to_string(static_cast<int>(unit))) SetAngles(unit);
    }
    RestoreSplitter(kWhole, *whole_, {height() * 7 / 10, height() * 3 / 10});
}

void WorkbenchWindow::Remember() {
    SaveSetting(kDesktop, kColumns, view_.ColumnsText());
    RememberSize(kDesktop, size());
    SaveSplitter(kBody, *body_);
    SaveSplitter(kWhole, *whole_);
}

void WorkbenchWindow::RedrawCaptions() {
    for (const Action& set : captions_) set();
    Letter();
    FitTools();
    plan_->SetWords(WordsOfPlan(bench_.Project()));
}

void WorkbenchWindow::resizeEvent(QResizeEvent*) { FitTools(); }

void WorkbenchWindow::Redraw() {
    setWindowTitle(QString::fromStdString(session_.Title()) + " – KV_Tr");
    const bool isEmpty = bench_.Project().Count() == 0;
    if (isEmpty) {
        start_->SetRecent(workbench::RecentRows(recent_.List(), form_.Recent()));
        start_->Redraw();
    }
    pages_->setCurrentIndex(isEmpty ? 0 : 1);
    RedrawStrip();
    points_->Redraw();
    RedrawPlan();
    tabs_->Redraw();
    RedrawTypes();
    RedrawActions();
    Tell(QString::fromStdString(bench_.Notice()));
}

void WorkbenchWindow::RedrawStrip() {
    std::vector<StripLine> lines = bench_.Project().Strip();
    if (std::exchange(hiddenOf_, bench_.Project().Version()) != bench_.Project().Version())
        hidden_ = 0;
    lines.erase(lines.begin(),
                lines.begin() + static_cast<std::ptrdiff_t>(std::min(hidden_, lines.size())));
    const std::size_t others = lines.empty() ? 0 : lines.size() - 1;
    more_->setText(
        QString::fromStdString(Translated(Text::kMoreWarnings, {std::to_string(others)})));
    if (!lines.empty()) {
        const StripLine& first = lines.front();
        QStringList taken;
        for (const QAction* menu : menuBar()->actions()) taken << menu->text();
        const auto letter = [&taken](QPushButton* button, const QString& caption) {
            taken << WithFreeMnemonic(caption, taken);
            button->setText(taken.back());
        };
        letter(offer_, QString::fromStdString(first.offer));
        letter(showPoint_, UiText(Phrase::kShowPoint));
        letter(notNow_, UiText(Phrase::kNotNow));
        showPoint_->setVisible(first.warning.point.has_value());
        notNow_->setToolTip(UiText(Phrase::kNotNowTip));
        notNow_->setVisible(first.look != StripLine::Look::kChecked);
    }
    strip_->Show(std::move(lines), more_->isChecked());
}

void WorkbenchWindow::RedrawPlan() {
    if (std::exchange(planned_, bench_.Project().Version()) != bench_.Project().Version() ||
        plan_->Index().Data().pairs.empty()) {
        RenewPlan();
        plan_->SetWords(WordsOfPlan(bench_.Project()));
    }
    ShowSelectionOnPlan();
}

void WorkbenchWindow::RenewPlan() {
    plan_->SetData(PlanOf(bench_.Project(), plan_->Options().showsEllipses));
}

void WorkbenchWindow::RedrawActions() {
    workbench::Document& document = bench_.Project();
    const workbench::History& history = bench_.Steps();
    const auto& steps = history.Steps();
    undo_->setEnabled(history.CanUndo());
    redo_->setEnabled(history.CanRedo());
    undo_->setToolTip(history.CanUndo()
                          ? UiText(Phrase::kUndoStep, {steps[history.Done()].text.Sentence()})
                          : UiText(Phrase::kUndo));
    redo_->setToolTip(history.CanRedo()
                          ? UiText(Phrase::kRedoStep, {steps[history.Done() + 1].text.Sentence()})
                          : UiText(Phrase::kRedo));
    const workbench::Places selected = Selected();
    const auto isUsed = [&](std::size_t place) { return document.PointAt(place).used; };
    exclude_->setEnabled(std::ranges::any_of(selected, isUsed));
    include_->setEnabled(!std::ranges::all_of(selected, isUsed));
    const QAction* offered = include_->isEnabled() && !exclude_->isEnabled() ? include_ : exclude_;
    exclusion_->setText(offered->iconText());
    exclusion_->setIcon(offered->icon());
    exclusion_->setToolTip(offered->toolTip());
    exclusion_->setEnabled(offered->isEnabled());
    for (QAction* action : needPoints_) action->setEnabled(document.Count() > 0);
    for (QAction* action : needFit_) action->setEnabled(document.HasFit());
    invert_->setEnabled(form_.CanInvert());
    saveParameters_->setEnabled(form_.HasParameters());
    for (const Action& set : switches_) set();
}

void WorkbenchWindow::Tell(const QString& text) {
    constexpr int kMilliseconds = 8000;
    if (text.isEmpty()) return statusBar()->clearMessage();
    statusBar()->showMessage(text, kMilliseconds);
}

void WorkbenchWindow::ShowPlace(Point onPlan) {
    const auto at = places_.AtDestination(DestinationOf(bench_.Project(), onPlan));
    const workbench::PlaceTexts texts = at ? TextsOf(*at, angles_) : workbench::PlaceTexts{};
    place_->setText(QString::fromStdString(texts.coordinates));
    figures_->setText(QString::fromStdString(texts.figures));
    outside_->setText(QString::fromStdString(texts.outside));
    outside_->setVisible(!texts.outside.empty());
}

void WorkbenchWindow::SetAngles(AngleUnit unit) {
    angles_ = unit;
    tabs_->SetAngles(unit);
    SaveSetting(kDesktop, kAngles, std::to_string(static_cast<int>(unit)));
    RedrawActions();
}

workbench::Places WorkbenchWindow::Selected() { return view_.SelectedPlaces(); }

void WorkbenchWindow::ShowSelectionOnPlan() { plan_->SetSelection(Selected()); }

/// Points that the filter hides cannot be selected in the table: the filter gives way.
void WorkbenchWindow::SelectOnPlan(const std::vector<std::size_t>& places, bool isAdded) {
    workbench::Places all = isAdded ? Selected() : workbench::Places();
    all.insert(all.end(), places.begin(), places.end());
    const auto isHidden = [this](std::size_t place) {
        return view_.RowOf(place) >= view_.RowCount();
    };
    if (all.size() < workbench::kMostPointRows && std::ranges::any_of(all, isHidden))
        points_->ClearFilter();
    std::vector<bool> wanted(bench_.Project().Count());
    for (const std::size_t place : all) wanted[place] = true;
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < view_.RowCount(); ++row) {
        if (wanted[view_.PlaceOf(row)]) rows.push_back(row);
    }
    view_.Select(rows);
    points_->Table().ShowSelection();
    if (!places.empty()) points_->Table().ShowPlace(places.front());
    ShowSelectionOnPlan();
    tabs_->ShowSelection();
    RedrawActions();
}

void WorkbenchWindow::Exclude() { bench_.Exclude(Selected()); }

void WorkbenchWindow::ShowPoint(std::optional<std::size_t> place) {
    if (!place || *place >= bench_.Project().Count()) return;
    SelectOnPlan({*place}, false);
    plan_->ShowPair(*place);
}

void WorkbenchWindow::NextSuspect() {
    const std::size_t place = bench_.Project().WorstSuspect();
    if (place >= bench_.Project().Count()) return Tell(UiText(Phrase::kNoSuspect));
    ShowPoint(place);
}

void WorkbenchWindow::Remark() {
    const workbench::Places places = Selected();
    if (places.empty()) return;
    const OwnCursors cursors;
    QInputDialog dialog(this);
    dialog.setWindowTitle(UiText(Phrase::kNoteColumn));
    dialog.setLabelText(UiText(Phrase::kNoteColumnTip));
    dialog.setTextValue(QString::fromStdString(bench_.Project().NoteAt(places.front())));
    dialog.setOkButtonText(UiText(Text::kOk));
    dialog.setCancelButtonText(UiText(Text::kCancel));
    if (dialog.exec() == QDialog::Accepted)
        bench_.SetNote(places, dialog.textValue().trimmed().toStdString());
}

/// Behind the last selected point.
void WorkbenchWindow::Paste() {
    workbench::Pasted pasted =
        workbench::ReadPasted(QApplication::clipboard()->text().toStdString());
    if (!pasted.Complete()) {
        std::string text;
        for (const std::string& problem : pasted.problems) text += problem + "\r\n";
        return ShowMessage(text, Icon::kExclamation);
    }
    if (pasted.pairs.empty()) return Tell(UiText(Phrase::kNothingToPaste));
    const workbench::Places selected = Selected();
    const std::size_t place = selected.empty() ? bench_.Project().Count() : selected.back() + 1;
    bench_.Insert(place, std::move(pasted.pairs));
}

/// At the chapter on what has the keyboard.
void WorkbenchWindow::ShowGuide() {
    const auto has = [focus = QApplication::focusWidget()](const QWidget* part) {
        return focus != nullptr && (part == focus || part->isAncestorOf(focus));
    };
    const char* chapter = has(points_) ? "The table of points"
                          : has(plan_) ? "The plan"
                          : has(tabs_) ? "The panels"
                                       : "The desktop program";
    auto* guide = findChild<GuideWindow*>();
    if (guide == nullptr) guide = new GuideWindow(this);
    guide->ShowChapter(chapter);
}

}  // namespace kv_tr::desktop
