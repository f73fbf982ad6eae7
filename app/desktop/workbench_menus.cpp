// Menus and tools of the main window.
#include <QActionGroup>
#include <QComboBox>
#include <QFileInfo>
#include <QMenuBar>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>

#include "common/languages.h"
#include "desktop/findings_tabs.h"
#include "desktop/icon.h"
#include "desktop/points_panel.h"
#include "desktop/properties_dialog.h"
#include "desktop/workbench_window.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/published/coefficients.h"
#include "kv_tr/qt/form_window.h"
#include "kv_tr/qt/mnemonics.h"
#include "kv_tr/qt/plan_widget.h"

namespace kv_tr::desktop {

using workbench::Phrase;

namespace {

/// The types in the order of their unknowns.
constexpr Type kTypes[] = {Type::kHelmert3,    Type::kHelmert,     Type::kAffine5,
                           Type::kAffine,      Type::kBilinear,    Type::kPolynomial1,
                           Type::kPolynomial2, Type::kPolynomial3, Type::kPolynomial4,
                           Type::kPolynomial5};

/// Gives each entry of a menu, and of the menus in it, a letter for Alt.
void LetterMenu(QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions())
        if (!action->isSeparator()) texts << action->text().remove('&');
    const QStringList marked = WithMnemonics(texts);
    auto next = marked.begin();
    for (QAction* action : menu.actions())
        if (!action->isSeparator()) action->setText(*next++);
}

}  // namespace

void WorkbenchWindow::MakeMenus() {
    MakeFileMenu();
    MakeEditMenu();
    MakeViewMenu();
    MakeFitMenu();
    MakeTransformMenu();
    MakeParametersMenu();
    MakeLanguageMenu();
    QMenu* help = AddMenu(Text::kHelpMenu);
    Add(
        help, Phrase::kGuide, [this] { ShowGuide(); }, QKeySequence::HelpContents);
    Add(help, Text::kAbout, [this] { form_.ShowAbout(version_, qVersion()); });
}

void WorkbenchWindow::MakeFileMenu() {
    QMenu* menu = AddMenu(Text::kFileMenu);
    Add(
        menu, Phrase::kNewProject, [this] { NewProject(); }, QKeySequence::New);
    QAction* open = Add(
        menu, Phrase::kOpen, [this] { ChooseFile(); }, QKeySequence::Open);
    open->setObjectName("open");
    SetTip(open, Phrase::kOpenTip);
    Add(
        menu, Phrase::kOpenLists, [this] { ChooseLists(); }, QKeySequence("Ctrl+Shift+O"));
    Add(
        menu, Phrase::kOpenClipboard, [this] { OpenClipboard(); }, QKeySequence("Ctrl+Shift+V"));
    AddSubMenu(menu, Text::kRecentFiles, [this](QMenu* recent) { FillRecent(recent); });
    menu->addSeparator();
    QAction* save = Add(
        menu, Phrase::kSaveProject, [this] { Save(); }, QKeySequence::Save);
    save->setObjectName("save");
    captions_.emplace_back([save] { save->setIconText(UiText(Text::kSave)); });
    Add(
        menu, Phrase::kSaveProjectAs, [this] { SaveAs(); }, QKeySequence("Ctrl+Shift+S"));
    menu->addSeparator();
    QAction* report = Add(
        menu, Phrase::kReport, [this] { Report(); }, QKeySequence("Ctrl+R"));
    report->setObjectName("report");
    SetTip(report, Text::kReportTip);
    needPoints_.push_back(report);
    QMenu* exports = AddSubMenu(menu, Phrase::kExport, {});
    exports->menuAction()->setObjectName("export");
    exports->menuAction()->setShortcut(QKeySequence("Ctrl+E"));
    connect(exports->menuAction(), &QAction::triggered, this,
            [this, exports] { exports->popup(exportButton_->mapToGlobal(QPoint())); });
    AddSubMenu(exports, Phrase::kCopyTransformation, [this](QMenu* to) { FillExports(to, true); });
    AddSubMenu(exports, Phrase::kSaveTransformation, [this](QMenu* to) { FillExports(to, false); });
    AddSubMenu(exports, Phrase::kSavePoints, [this](QMenu* to) { FillPoints(to); });
    Add(exports, Phrase::kSaveLog, [this] { SaveOffered(workbench::Log(bench_.Project())); });
    Add(exports, Phrase::kSaveVectors,
        [this] { SaveOffered(workbench::ResidualVectors(bench_.Project())); });
    Add(exports, Phrase::kSavePlan, [this] { SavePlanAs(); });
    needPoints_.push_back(exports->menuAction());
    menu->addSeparator();
    Add(
        menu, Text::kQuit, [this] { close(); }, QKeySequence::Quit);
}

void WorkbenchWindow::MakeEditMenu() {
    QMenu* menu = AddMenu(Phrase::kEditMenu);
    undo_ = Add(
        menu, Phrase::kUndo, [this] { bench_.Undo(); }, QKeySequence::Undo);
    undo_->setObjectName("undo");
    redo_ = Add(menu, Phrase::kRedo, [this] { bench_.Redo(); });
    redo_->setShortcuts({QKeySequence("Ctrl+Y"), QKeySequence("Ctrl+Shift+Z")});
    redo_->setObjectName("redo");
    menu->addSeparator();
    Add(
        menu, Phrase::kCopy, [this] { points_->Table().CopySelected(); }, QKeySequence::Copy);
    Add(
        menu, Phrase::kPaste, [this] { Paste(); }, QKeySequence::Paste);
    Add(
        menu, Phrase::kSelectAll,
        [this] {
            view_.SelectAll();
            points_->Table().ShowSelection();
            ShowSelectionOnPlan();
        },
        QKeySequence::SelectAll);
    Add(
        menu, Phrase::kFind, [this] { points_->EnterFilter(); }, QKeySequence::Find);
    menu->addSeparator();
    exclude_ = Add(
        menu, Phrase::kExclude, [this] { Exclude(); }, QKeySequence(Qt::Key_Delete));
    exclude_->setObjectName("exclude");
    SetTip(exclude_, Phrase::kExcludeTip);
    include_ = Add(
        menu, Phrase::kInclude, [this] { bench_.Include(Selected()); },
        QKeySequence(Qt::Key_Insert));
    include_->setObjectName("include");
    SetTip(include_, Phrase::kIncludeTip);
    needPoints_.push_back(Add(menu, Phrase::kIncludeAll, [this] { bench_.IncludeAll(); }));
    Add(
        menu, Phrase::kRemark, [this] { Remark(); }, QKeySequence("Ctrl+M"));
    Add(
        menu, Phrase::kDelete, [this] { bench_.Delete(Selected()); }, QKeySequence("Ctrl+Del"));
}

void WorkbenchWindow::MakeViewMenu() {
    QMenu* menu = AddMenu(Phrase::kViewMenu);
    QAction* suspect = Add(
        menu, Phrase::kNextSuspect, [this] { NextSuspect(); }, QKeySequence(Qt::Key_F8));
    suspect->setObjectName("next_suspect");
    captions_.emplace_back([suspect] { suspect->setIconText(UiText(Phrase::kNextSuspectTool)); });
    SetTip(suspect, Phrase::kNextSuspectTip);
    needPoints_.push_back(suspect);
    menu->addSeparator();
    Add(
        menu, Phrase::kWholePlan, [this] { plan_->ShowAll(); }, QKeySequence("Ctrl+0"));
    AddSwitch(menu, Phrase::kVectors, &PlanOptions::showsVectors);
    AddSwitch(menu, Phrase::kNames, &PlanOptions::showsLabels);
    AddSwitch(menu, Phrase::kHull, &PlanOptions::showsHull);
    AddSwitch(menu, Phrase::kGrid, &PlanOptions::showsGrid);
    AddSwitch(menu, Phrase::kIsolines, &PlanOptions::showsDistortion);
    QAction* ellipses = AddSwitch(menu, Phrase::kEllipses, &PlanOptions::showsEllipses);
    connect(ellipses, &QAction::triggered, this, [this] { RunAction([this] { RenewPlan(); }); });
    Add(
        menu, Phrase::kLongerVectors, [this] { plan_->ScaleVectors(true); },
        QKeySequence(Qt::Key_F6));
    Add(
        menu, Phrase::kShorterVectors, [this] { plan_->ScaleVectors(false); },
        QKeySequence("Shift+F6"));
    Add(menu, Phrase::kBackground, [this] { ChooseBackground(); });
    Add(menu, Phrase::kNoBackground, [this] { plan_->SetBackground({}); });
    menu->addSeparator();
    QMenu* angles = AddSubMenu(menu, Phrase::kAngles, {});
    for (const auto& [unit, words] : {std::pair{AngleUnit::kGon, Phrase::kGon},
                                      {AngleUnit::kDegrees, Phrase::kDegrees},
                                      {AngleUnit::kSeconds, Phrase::kSeconds}}) {
        QAction* action = Add(angles, words, [this, unit = unit] { SetAngles(unit); });
        action->setCheckable(true);
        switches_.emplace_back(
            [this, action, unit = unit] { action->setChecked(unit == angles_); });
    }
}

void WorkbenchWindow::MakeFitMenu() {
    QMenu* menu = AddMenu(Phrase::kFitMenu);
    typeActions_ = new QActionGroup(menu);
    for (const Type type : kTypes) {
        QAction* action =
            menu->addAction("", this, [this, type] { RunAction([&] { bench_.SetType(type); }); });
        action->setCheckable(true);
        action->setData(NumberOf(type));
        typeActions_->addAction(action);
        captions_.emplace_back([action, type] {
            action->setText(QString::fromStdString(TypeName(type, ComponentTexts())));
        });
    }
    menu->addSeparator();
    QAction* swap = Add(
        menu, Phrase::kSwap, [this] { bench_.Swap(); }, QKeySequence("Ctrl+I"));
    swap->setObjectName("swap");
    captions_.emplace_back([swap] { swap->setIconText(UiText(Phrase::kSwapTool)); });
    SetTip(swap, Phrase::kSwapTip);
    needPoints_.push_back(Add(
        menu, Phrase::kProperties, [this] { PropertiesDialog(bench_, this).exec(); },
        QKeySequence("Ctrl+L")));
}

void WorkbenchWindow::MakeTransformMenu() {
    QMenu* menu = AddMenu(Phrase::kTransformMenu);
    QAction* transform = Add(
        menu, Phrase::kTransformFiles, [this] { Transform({}); }, QKeySequence("Ctrl+T"));
    transform->setObjectName("transform");
    SetTip(transform, Phrase::kTransformFilesTip);
    QAction* parameters = Add(menu, Phrase::kParametersOfFit, [this] {
        if (!MayGiveAway()) return;
        form_.TakeFit(bench_.Project().Adjusted().Result());
        ShowParameters();
    });
    needFit_.push_back(parameters);
}

void WorkbenchWindow::MakeParametersMenu() {
    QMenu* menu = AddMenu(Text::kParametersMenu);
    const auto add = [this, menu](Words words, const Action& action) {
        return Add(menu, words, [this, action] {
            const TR_PRM before = form_.Record();
            const bool had = form_.HasParameters();
            action();
            const bool isNew = TransformationOf(before) != TransformationOf(form_.Record());
            if (form_.HasParameters() && (isNew || !had)) ShowParameters();
        });
    };
    Add(
        menu, Phrase::kShowParameters, [this] { ShowParameters(); }, QKeySequence("Ctrl+P"));
    menu->addSeparator();
    add(Text::kChooseParameters, [this] { form_.ChooseParameters(); });
    add(Text::kOpenParameters, [this] { form_.OpenParameters(); });
    add(Text::kSixParameters, [this] { form_.EditAffine(); });
    add(Text::kPolynomial, [this] { form_.ViewPolynomial(); });
    add(Text::kNationalTransformation, [this] { form_.ChooseNational(); });
    needPoints_.push_back(add(Phrase::kAdjustmentDialog, [this] {
        form_.Adjust(bench_.Project().Points(), bench_.Project().Current().type);
    }));
    menu->addSeparator();
    invert_ = add(Text::kInvert, [this] { form_.Invert(); });
    saveParameters_ = Add(menu, Text::kSaveParametersAs, [this] { form_.SaveParameters(); });
}

void WorkbenchWindow::MakeLanguageMenu() {
    QMenu* menu = AddMenu(Text::kLanguageMenu);
    auto* group = new QActionGroup(menu);
    for (const app::Language& language : app::Languages()) {
        QAction* action = menu->addAction(language.name, this, [this, &language] {
            RunAction([&] { form_.SwitchLanguage(language.id); });
        });
        action->setCheckable(true);
        action->setActionGroup(group);
        captions_.emplace_back(
            [action, &language] { action->setChecked(language.id == CurrentMlLanguage()); });
    }
}

void WorkbenchWindow::MakeTools() {
    QToolBar* bar = addToolBar("");
    bar->setObjectName("tools");
    bar->setMovable(false);
    tools_ = bar;
    bar->setIconSize({20, 20});
    const auto add = [this, bar](const char* name) {
        auto* action = findChild<QAction*>(name);
        action->setIcon(Icon(name));
        bar->addAction(action);
    };
    exclude_->setIcon(Icon("exclude"));
    include_->setIcon(Icon("include"));
    add("open");
    add("save");
    bar->addSeparator();
    add("undo");
    add("redo");
    bar->addSeparator();
    types_ = new QComboBox(bar);
    types_->setObjectName("type");
    types_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    types_->setMinimumContentsLength(17);
    captions_.emplace_back([this] { types_->setToolTip(UiText(Phrase::kTypeTip)); });
    connect(types_, &QComboBox::activated, this, [this](int index) {
        RunAction([&] { bench_.SetType(static_cast<Type>(types_->itemData(index).toInt())); });
        RedrawTypes();
    });
    bar->addWidget(types_);
    add("swap");
    bar->addSeparator();
    exclusion_ = bar->addAction("", this, [this] {
        RunAction([this] { exclude_->isEnabled() ? Exclude() : include_->trigger(); });
    });
    add("next_suspect");
    bar->addSeparator();
    add("report");
    add("export");
    exportButton_ = qobject_cast<QToolButton*>(bar->widgetForAction(bar->actions().back()));
    exportButton_->setPopupMode(QToolButton::InstantPopup);
    add("transform");
}

/// Tools without captions where these find no room.
void WorkbenchWindow::FitTools() {
    constexpr int kLowScreen = 500;
    tools_->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    const bool isLow = screen()->availableSize().height() < kLowScreen;
    if (isLow || tools_->sizeHint().width() > width())
        tools_->setToolButtonStyle(Qt::ToolButtonIconOnly);
}

QMenu* WorkbenchWindow::AddMenu(Words words) {
    QMenu* menu = menuBar()->addMenu("");
    captions_.emplace_back([menu, words] { menu->setTitle(words.Now()); });
    return menu;
}

/// A menu in another one; what is filled in depends on the state, and is renewed when it opens.
QMenu* WorkbenchWindow::AddSubMenu(QMenu* menu, Words words,
                                   const std::function<void(QMenu*)>& fill) {
    QMenu* added = menu->addMenu("");
    captions_.emplace_back([added, words] { added->setTitle(words.Now()); });
    if (fill) {
        connect(added, &QMenu::aboutToShow, this, [added, fill] {
            added->clear();
            RunAction([&] { fill(added); });
        });
    }
    return added;
}

QAction* WorkbenchWindow::Add(QMenu* menu, Words words, const Action& action,
                              const QKeySequence& keys) {
    QAction* added = menu->addAction("", this, [action] { RunAction(action); });
    added->setShortcut(keys);
    captions_.emplace_back([added, words] {
        added->setText(words.Now());
        added->setIconText(words.Now().remove(QStringLiteral("…")));
    });
    SetTip(added, words);
    return added;
}

/// The tip, with the keys.
void WorkbenchWindow::SetTip(QAction* action, Words tip) {
    captions_.emplace_back([action, tip] {
        const QString keys = action->shortcut().toString(QKeySequence::NativeText);
        action->setToolTip(keys.isEmpty() ? tip.Now() : tip.Now() + " (" + keys + ")");
    });
}

QAction* WorkbenchWindow::AddSwitch(QMenu* menu, Words words, bool PlanOptions::*option) {
    QAction* action = Add(menu, words, [this, option] {
        PlanOptions options = plan_->Options();
        options.*option = !(options.*option);
        plan_->SetOptions(options);
    });
    action->setCheckable(true);
    switches_.emplace_back(
        [this, action, option] { action->setChecked(plan_->Options().*option); });
    return action;
}

/// Gives the menus, and the entries of each, letters for Alt.
void WorkbenchWindow::Letter() {
    QStringList titles;
    for (const QAction* menu : menuBar()->actions()) titles << menu->text();
    const QStringList marked = WithMnemonics(titles);
    auto next = marked.begin();
    for (QAction* menu : menuBar()->actions()) menu->setText(*next++);
    for (QMenu* menu : menuBar()->findChildren<QMenu*>()) LetterMenu(*menu);
}

void WorkbenchWindow::FillRecent(QMenu* menu) {
    const auto add = [this, menu](const std::string& name) {
        QString text = QFileInfo(QString::fromStdString(name)).filePath();
        menu->addAction(text.replace('&', "&&"), this, [this, name] { OpenFiles({name}); });
    };
    for (const workbench::RecentProject& project : recent_.List()) add(project.file);
    menu->addSeparator();
    for (const std::string& name : form_.Recent()) add(name);
}

void WorkbenchWindow::FillExports(QMenu* menu, bool toClipboard) {
    for (const workbench::Offered& offered : workbench::AllExported(bench_.Project())) {
        QAction* action =
            menu->addAction(QString::fromStdString(offered.name), this,
                            [this, offered, toClipboard] { GiveOut(offered, toClipboard); });
        action->setEnabled(offered.IsAvailable());
        action->setToolTip(QString::fromStdString(offered.reason));
    }
    menu->setToolTipsVisible(true);
    LetterMenu(*menu);
}

void WorkbenchWindow::FillPoints(QMenu* menu) {
    using enum PointFormat;
    for (const PointFormat format :
         {kListing, kCsv, kQgis, kGdal, kVrt, kEsriLink, kGrass, kGeoJson}) {
        menu->addAction(
            QString::fromStdString(workbench::FormatTitle(format)), this, [this, format] {
                RunAction([&] { SaveOffered(workbench::PointsAs(bench_.Project(), format)); });
            });
    }
    LetterMenu(*menu);
}

void WorkbenchWindow::RedrawTypes() {
    const Type current = bench_.Project().Current().type;
    types_->clear();
    for (QAction* action : typeActions_->actions()) {
        const auto type = static_cast<Type>(action->data().toInt());
        const std::string need = bench_.NeedOf(type);
        action->setChecked(type == current);
        action->setEnabled(need.empty());
        action->setToolTip(QString::fromStdString(need));
        if (!need.empty() && type != current) continue;
        types_->addItem(QString::fromStdString(TypeName(type, ComponentTexts())), NumberOf(type));
        if (type == current) types_->setCurrentIndex(types_->count() - 1);
    }
    types_->setEnabled(bench_.Project().Count() > 0);
}

}  // namespace kv_tr::desktop
