// The window of the adjustment dialog.
#include "kv_tr/qt/frmTr_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QButtonGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QSplitter>
#include <QTimer>

#include "kv_tr/published/number_format.h"
#include "kv_tr/qt/findings_panel.h"
#include "kv_tr/qt/findings_view.h"
#include "kv_tr/qt/graph_area.h"
#include "kv_tr/qt/page_output.h"
#include "kv_tr/qt/pair_grid.h"
#include "kv_tr/qt/warning_strip.h"

namespace kv_tr {
namespace {

/// On a small screen the controls scroll.
QScrollArea* Scrollable(QWidget* panel) {
    auto* area = new QScrollArea(panel->parentWidget());
    area->setWidget(panel);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    return area;
}

}  // namespace

frmTrWindow::frmTrWindow(frmTr& form) : FormWindow(form, "frmTr", {1040, 680}), form_(form) {
    MakeViews();
    MakeStrip();  // before the panel: where letters for Alt run out, the strip has its own
    auto* views = new QSplitter(Qt::Vertical, this);
    views->setChildrenCollapsible(false);
    for (QWidget* view : std::initializer_list<QWidget*>{grid_, picture_, MakeFindings()}) {
        views->addWidget(view);
    }
    views->setStretchFactor(views->indexOf(grid_), 1);
    views->setStretchFactor(views->indexOf(picture_), 1);
    auto* left = new QVBoxLayout;
    left->addWidget(views, 1);
    left->addWidget(MakePanelButtons());
    auto* layout = new QHBoxLayout;
    layout->addLayout(left, 1);
    auto* whole = new QVBoxLayout(this);
    whole->addWidget(strip_);
    whole->addLayout(layout, 1);
    panel_ = Scrollable(MakePanel());
    auto* side = new QVBoxLayout;
    side->addWidget(panel_);
    side->addWidget(MakeExits());
    layout->addLayout(side);
    connect(new QShortcut(QKeySequence::Copy, this), &QShortcut::activated, [this] { Copy(); });
    Follow();
    grid_->setFocus();
}

void frmTrWindow::MakeViews() {
    const auto act = [this](const std::function<void()>& action) { ActOnCells(action); };
    grid_ = Bind("Grid1", new PairGrid(form_.Table(), act, this));
    picture_ = Bind("PicBox", new GraphArea(form_.Plan(), this));
    for (QWidget* view : std::initializer_list<QWidget*>{grid_, picture_}) {
        view->setMinimumWidth(320);
    }
    connect(grid_, &PairGrid::PairDoubleClicked, this,
            [this, act](int row, int column) { act([&] { form_.Grid1DblClick(row, column); }); });
    connect(grid_, &PairGrid::RowsToggled, this,
            [this, act](int first, int last) { act([&] { form_.Grid1MouseUp(first, last); }); });
    connect(picture_, &GraphArea::MouseReleased, this, [this, act](QPointF place) {
        act([&] {
            if (form_.PicBoxMouseUp(place.x(), place.y())) QApplication::beep();
        });
    });
}

void frmTrWindow::MakeStrip() {
    QPushButton* offer = MakePlainButton("cmdOffer");
    offer->setFocusPolicy(Qt::TabFocus);  // a click must not change the offer before it is taken
    QPushButton* more = MakeButton("cmdMoreWarnings", [this] { form_.cmdMoreWarnings(); });
    more->setCheckable(true);
    strip_ = new WarningStrip(offer, more, this);
    connect(offer, &QPushButton::clicked, this, [this] { TakeOffer(0); });
    connect(strip_, &WarningStrip::OfferChosen, this, &frmTrWindow::TakeOffer);
}

void frmTrWindow::TakeOffer(int line) {
    const StripLine offered = strip_->Line(line);
    Act([&] { form_.cmdOffer(offered); });
}

QWidget* frmTrWindow::MakeFindings() {
    findings_ = new FindingsPanel(
        form_, MakeCheckBox("chkAccurate", [this] { form_.chkAccurate(); }), this);
    connect(findings_, &FindingsPanel::TypeChosen, this,
            [this](int row) { Act([this, row] { form_.FitTypeOf(row); }); });
    return findings_;
}

QWidget* frmTrWindow::MakePanelButtons() {
    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    const auto make = [&](const char* name, Qt::Key key, const std::function<void()>& toggle) {
        QPushButton* button = MakePlainButton(name);
        button->setCheckable(true);
        connect(button, &QPushButton::clicked, this, [this, toggle] { TogglePanel(toggle); });
        connect(new QShortcut(key, this), &QShortcut::activated, button, &QPushButton::click);
        layout->addWidget(button);
        return button;
    };
    statisticsButton_ = make("cmdStatistics", Qt::Key_F7, [this] { form_.cmdStatistics(); });
    typesButton_ = make("cmdTypes", Qt::Key_F8, [this] { form_.cmdTypes(); });
    columnsButton_ = make("cmdColumns", Qt::Key_F6, [this] { form_.cmdColumns(); });
    QPushButton* report = MakeButton("cmdReport", [this] { form_.cmdReport(); });
    connect(new QShortcut(Qt::Key_F9, this), &QShortcut::activated, report, &QPushButton::click);
    layout->addWidget(report);
    layout->addStretch();
    return bar;
}

/// Whoever opens the table of types moves in it; whoever closes a panel is in the table again.
void frmTrWindow::TogglePanel(const std::function<void()>& toggle) {
    Act(toggle);
    if (form_.ShownPanel() == frmTr::Panel::kTypes) {
        findings_->EnterTypes();
    } else if (grid_->isVisible()) {
        grid_->setFocus();
    }
}

QWidget* frmTrWindow::MakePanel() {
    auto* panel = new QWidget(this);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(MakeModes());
    layout->addWidget(MakeTypes());
    inverse_ = MakeCheckBox("chkInverz", [this] { form_.chkInverz(); });
    layout->addWidget(inverse_);
    layout->addWidget(MakeDisplay());
    layout->addWidget(MakeStatistics());
    layout->addWidget(MakeButton("cmdRemoveExt", [this] { form_.cmdRemoveExt(); }));
    layout->addWidget(MakeButton("cmsResetExt", [this] { form_.cmsResetExt(); }));
    layout->addWidget(MakeButton("cmdSaveLog", [this] { form_.cmdSaveLog(); }));
    layout->addWidget(MakeButton("cmdSavePrm", [this] { form_.cmdSavePrm(); }));
    print_ = MakeButton("cmdPrint", [this] {
        PreviewAndPrint(form_.Plan(), form_.ControlTexts().TextOf("cmdPrint"), this);
    });
    savePicture_ = MakeButton("cmdSavePicture", [this] {
        ChooseAndSavePicture(form_.Plan(), form_.ControlTexts().TextOf("cmdSavePicture"));
    });
    layout->addWidget(print_);
    layout->addWidget(savePicture_);
    layout->addStretch();
    return panel;
}

QWidget* frmTrWindow::MakeExits() {
    apply_ = MakeButton("cmdApplyResult", [this] {
        form_.cmdApplyResult();
        accept();
    });
    exit_ = MakePlainButton("cmdExit");   // no entry in a box can keep the user from leaving
    exit_->setFocusPolicy(Qt::TabFocus);  // a click must not have the limit checked before it
    connect(exit_, &QPushButton::clicked, this, [this] {
        const ChangeEvent::Action action(form_.Changed);
        TakeWhatIsTyped();
        form_.cmdExit();
        accept();
    });
    return MakeEnds(apply_, exit_);
}

QWidget* frmTrWindow::MakeModes() {
    auto* bar = new QWidget(this);
    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* group = new QButtonGroup(bar);
    for (int i = 0; i < 3; ++i) {
        auto* button = MakeButton(Numbered("opMode", i),
                                  [this, i] { form_.opMode(static_cast<frmTr::Mode>(i)); });
        button->setCheckable(true);
        connect(button, &QPushButton::clicked, this, [this] {
            if (grid_->isVisible()) grid_->setFocus();  // whoever wants to edit moves and types
        });
        group->addButton(button);
        layout->addWidget(button);
        modes_[static_cast<std::size_t>(i)] = button;
    }
    return bar;
}

QGroupBox* frmTrWindow::MakeTypes() {
    auto* frame = Bind("frmTrType", new QGroupBox(this));
    auto* layout = new QGridLayout(frame);
    constexpr std::array kOrder{0, 1, 8, 7, 9, 2, 3, 4, 5, 6};  // linear left, polynomials right
    for (int place = 0; place < 10; ++place) {
        const int index = kOrder[static_cast<std::size_t>(place)];
        auto* button = Bind(Numbered("RadioTrType", index), new QRadioButton(frame));
        connect(button, &QRadioButton::clicked,
                [this, index] { Act([this, index] { form_.RadioTrType(index); }); });
        layout->addWidget(button, place % 5, place / 5);
        types_[static_cast<std::size_t>(index)] = button;
    }
    return frame;
}

QGroupBox* frmTrWindow::MakeDisplay() {
    auto* frame = Bind("frmDsp", new QGroupBox(this));
    auto* layout = new QHBoxLayout(frame);
    labels_ = {MakeCheckBox("chkNr", [this] { form_.chkNr(); }),
               MakeCheckBox("chkDx", [this] { form_.chkDx(); }),
               MakeCheckBox("chkDy", [this] { form_.chkDy(); }),
               MakeCheckBox("chkRad", [this] { form_.chkRad(); })};
    for (QCheckBox* box : labels_) layout->addWidget(box);
    return frame;
}

QLabel* frmTrWindow::MakeLabel(const QString& name, QBoxLayout& layout) {
    auto* label = Bind(name, new QLabel(this));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    statistics_.push_back(label);
    layout.addWidget(label);
    return label;
}

QGroupBox* frmTrWindow::MakeStatistics() {
    auto* frame = Bind("frmRes", new QGroupBox(this));
    auto* layout = new QVBoxLayout(frame);
    MakeLabel("Label1", *layout);
    MakeLabel("lblKh", *layout);
    auto* counts = new QHBoxLayout;
    MakeLabel("lblCnt", *counts);
    MakeLabel("lblExtCnt", *counts);
    layout->addLayout(counts);
    auto* row = new QHBoxLayout;
    QLabel* label = MakeLabel("lblLimit", *row);
    limit_ = Bind("txtLimit", new QLineEdit(frame));
    limit_->setAlignment(Qt::AlignRight);
    limit_->installEventFilter(this);
    label->setBuddy(limit_);
    row->addWidget(limit_);
    layout->addLayout(row);
    return frame;
}

void frmTrWindow::Redraw() {
    FormWindow::Redraw();
    const bool graph = form_.DisplayMode() == frmTr::Mode::kGraph;
    grid_->setVisible(!graph);
    picture_->setVisible(graph);
    print_->setVisible(graph);
    savePicture_->setVisible(graph);
    apply_->setVisible(form_.ApplyVisible());
    modes_[static_cast<std::size_t>(form_.DisplayMode())]->setChecked(true);
    types_[static_cast<std::size_t>(form_.SelectedType())]->setChecked(true);
    inverse_->setChecked(form_.InverseChecked());
    const GraphLabels& labels = form_.Plan().Labels();
    const std::array shown{labels.identifier, labels.first, labels.second, labels.total};
    for (std::size_t i = 0; i < shown.size(); ++i) {
        labels_[i]->setChecked(shown[i]);
        labels_[i]->setEnabled(graph);
    }
    if (!limit_->isModified()) limit_->setText(QString::fromStdString(form_.LimitText()));
    grid_->Redraw();
    picture_->update();
    RedrawFindings();
    FitPanel();
}

void frmTrWindow::RedrawFindings() {
    findings_->Redraw();
    statisticsButton_->setChecked(form_.ShownPanel() == frmTr::Panel::kStatistics);
    typesButton_->setChecked(form_.ShownPanel() == frmTr::Panel::kTypes);
    columnsButton_->setChecked(form_.Table().IsAnyGroupShown());
    strip_->Show(form_.Strip(), form_.AllWarningsShown());
}

void frmTrWindow::resizeEvent(QResizeEvent* event) {
    FormWindow::resizeEvent(event);
    form_.Activate();
    FitPanel();
}

/// Makes the panel as wide as its controls, and its scroll bar where there is one, need it.
void frmTrWindow::FitPanel() {
    const QSize needed = panel_->widget()->sizeHint();
    const bool scrolls = needed.height() > panel_->height();
    const int bar = scrolls ? panel_->verticalScrollBar()->sizeHint().width() : 0;
    panel_->setFixedWidth(needed.width() + bar);
    layout()->activate();  // at once, lest the window show with the panel's edge outside
}

/// A button pressed by its letter leaves the focus where it is: what stands in the cell editor
/// belongs to the rows as they are now.
void frmTrWindow::Act(const std::function<void()>& action) {
    ActOnCells([&] {
        form_.Table().Grid1GotFocus();
        action();
    });
}

/// An action waits until the limit is right; a button that was pressed has marked itself already.
void frmTrWindow::ActOnCells(const std::function<void()>& action) {
    FormWindow::Act([&] { SettleLimit() ? action() : form_.Changed.Raise(); });
}

/// Copies what is selected in the statistics, else the table that has the focus.
void frmTrWindow::Copy() {
    if (const auto* view = dynamic_cast<FindingsView*>(focusWidget())) return view->Copy();
    for (const QLabel* label : statistics_) {
        if (!label->hasSelectedText()) continue;
        return QApplication::clipboard()->setText(label->selectedText());
    }
    grid_->Copy();
}

/// Takes what stands in the cell editor and in the limit box, without a word on what is no number.
void frmTrWindow::TakeWhatIsTyped() {
    FormWindow::Act([this] { form_.Table().Grid1GotFocus(); });
    const std::string limit = limit_->text().toStdString();
    if (limit_->isModified() && TypedNumber(limit)) form_.txtLimit(limit);
    limit_->setModified(false);
}

/// Hands a changed limit to the form; when that refuses it, the box keeps the focus.
bool frmTrWindow::SettleLimit() {
    if (!limit_->isModified()) return true;
    limit_->setModified(false);  // the message takes the focus from the box, once
    if (form_.txtLimit(limit_->text().toStdString())) return true;
    limit_->setModified(true);
    limit_->setFocus();
    limit_->selectAll();
    return false;
}

void frmTrWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) return FormWindow::keyPressEvent(event);
    if (form_.EscLeaves()) exit_->click();
}

void frmTrWindow::changeEvent(QEvent* event) {
    FormWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow()) return;
    form_.Activate();
    Redraw();
}

bool frmTrWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == limit_ && event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        // Later, when the focus has arrived: a message in between would disturb its way.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) {
            QTimer::singleShot(0, this, [this] { SettleLimit(); });
        }
    }
    const bool enter = event->type() == QEvent::KeyPress &&
                       (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Return ||
                        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Enter);
    if (watched == limit_ && enter) {
        SettleLimit();
        return true;
    }
    return FormWindow::eventFilter(watched, event);
}

}  // namespace kv_tr
